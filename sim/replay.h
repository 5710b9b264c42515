// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "capture/record.h"
#include "firmware.h"

#include <QCoreApplication>
#include <QString>

#include <deque>
#include <map>
#include <optional>
#include <vector>

namespace sim {

// The device's side of a recording. It takes what the host sends, finds it in the recording, and
// says what the device said then, each answer as long after its question as it came then; it goes
// when the device went, and comes back if it did. Where the host sends something else it tells so,
// and goes on from there.
//
// Rates of a serial line are no part of it, and neither are readings that brought nothing new.
class Replay
{
    Q_DECLARE_TR_FUNCTIONS(sim::Replay)

public:
    // A device that came back did so at once, as far as a recording knows: no link begins sooner.
    static constexpr auto LongestAbsence = std::chrono::milliseconds(1000);
    // What came later than that after its question is said then.
    static constexpr auto LongestDelay = std::chrono::milliseconds(10 * 60 * 1000);

    // Nothing, and the reason in problem, for a file that is no recording or has no frame in it.
    static std::optional<Replay> load(const QString &path, Clock clock, QString *problem);
    Replay(const std::vector<capture::Record> &records, Clock clock);

    // The cable goes in. What was said then without a question begins with the first transfer.
    void restart();
    // A host that transfers is there.
    void awake();
    // A command of which a link has carried so many bytes.
    void command(const Frame &frame, int arrived = FrameSize);
    // Whether a report, or the end of the device, is due.
    bool isDue() const;
    // Until then; nothing when the recording has no more to say unless the host sends something.
    std::optional<std::chrono::milliseconds> untilDue() const;
    // Takes the next report that is due; nothing when that is something else.
    std::optional<Frame> takeReport();
    // Takes the device's end if it is what is due next.
    struct Absence
    {
        std::optional<std::chrono::milliseconds> back; // nothing when it never came back
    };
    std::optional<Absence> takeAbsence();

    // How the host has just departed from the recording, or that this is at its end; once.
    QString takeNews();
    int commands() const { return int(exchanges.size()); }
    int replayed() const { return followed; } // commands that came when they were expected
    int departures() const { return departed; }
    // "replayed=12/40 departures=1"
    QString state() const;

private:
    struct Said
    {
        std::chrono::milliseconds after{0}; // the question
        std::optional<Absence> absence;     // instead of a report
        Frame report{};
    };
    struct Exchange
    {
        Frame question{};
        std::vector<Said> answers;
    };
    struct Waiting
    {
        std::chrono::milliseconds due;
        Said said;
    };
    class Builder;

    explicit Replay(Clock clock);
    void answer(const Exchange &exchange);
    std::optional<size_t> find(const Frame &frame, int arrived) const;
    void depart(const QString &how);

    Clock clock;
    std::vector<Exchange> exchanges;  // in the order of their questions
    std::vector<Exchange> beginnings; // one for each link: what was said without a question
    size_t next = 0;                  // of exchanges: what is expected
    size_t link = 0;                  // of beginnings: the present one's, or the next
    bool asleep = true;               // since the cable went in nobody has transferred
    std::deque<Waiting> waiting;      // by the time when it is due
    int followed = 0;
    int departed = 0;
    QString news;
};

} // namespace sim
