// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "axisscan.h"
#include "measurement.h"
#include "scancollector.h"
#include "thresholds.h"

#include <QBasicTimer>
#include <QDeadlineTimer>
#include <QObject>

#include <deque>
#include <optional>
#include <vector>

namespace lights {

// The dead lights of a measurement, which are worth asking whether somebody has switched them off;
// of very many nobody has, so there is a bound.
std::vector<command::LightName> lightsToAsk(const Measurement &measurement,
                                            const Thresholds &thresholds);

// Measures a frame over a link, for who must not block: asks for one scan after the other, whatever
// comes in between, and for lost pages again. Scans carry gains, so the light screen's layout is
// chosen; only what comes after the answer to that counts. Whoever else scans stays quiet
// meanwhile.
//
// When the link ends, a measurement waits, and begins anew with whatever frame is there next.
class Measuring : public QObject
{
    Q_OBJECT
public:
    static constexpr int UsualScans = 16;

    // Where reports come from. On a line each comes once; by USB the last one is read again and
    // again, and all but older frames tell of themselves.
    enum class Source { Line, OlderUsb, Usb };

    struct Wish
    {
        int scans = UsualScans; // of each axis, 1 to MaxScans; a series keeps as many
        bool goesOn = false;    // a series: until it is stopped
    };

    explicit Measuring(QObject *parent = nullptr);

    // A frame is asked for itself only if it tells that. Without a link it waits for one.
    void start(const Wish &wish);
    void stop();
    bool isRunning() const { return step != Step::Idle; }
    // There is a frame; begins what has waited for it.
    void linkBegan(Source theSource);
    void linkEnded();
    bool isLinked() const { return linked; }

    // Every report of the link, of any kind, in turn.
    void received(const Frame &report);

    // What is known by now; dated with the last scan.
    Measurement measurement() const;
    // Whole scans of the axis that has fewer.
    int scans() const { return rounds; }

signals:
    void ask(const Frame &question);
    // Of this measurement, in pages; all is 0 while that is not known.
    void progressed(int pages, int all);
    // Each axis has been scanned once more.
    void scanned();
    // All that was wished for is there. A series never finishes.
    void finished();
    // It has ended because the frame does not do its part; why, in words.
    void failed(const QString &why);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    enum class Step { Idle, Unlinked, Firmware, Settings, Pages, OneLight };

    void begin();
    void go(Step next);
    void send();
    Frame question() const;
    bool isAnswer(const Frame &report) const;
    void take(const Frame &report);
    void takePage(const command::ScanPage &page);
    void endScan();
    void endRound();
    void askNextLight();
    void tryAgain();
    void tellProgress(int pagesOfScan);
    int pages(UCHAR axis) const;
    UCHAR firstAxis() const;

    Wish wish;
    Step step = Step::Idle;
    bool linked = false;
    Source source = Source::Line;
    ScanCollector collector;
    command::LightCounts counts;
    UCHAR axis = command::scan::AxisX; // under scan
    AxisScan scan;
    bool doubtful = false;        // a scan may have been torn, and is asked for once more
    std::deque<Frame> scanFrames; // of the scan under way, for the collector when it is whole
    int rounds = 0;
    std::vector<command::LightName> dead;  // still to be asked about
    std::vector<command::LightName> asked; // were
    QDateTime date;
    int attempts = 0;
    std::optional<Frame> last; // report
    QDeadlineTimer stale;      // until then a report that equals the last one is that
    QBasicTimer silence;
};

} // namespace lights
