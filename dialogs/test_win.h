// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/records.h"
#include "device/reportnews.h"
#include "frameusers.h"
#include "scanwatch.h"
#include "scrolled.h"
#include "signallog.h"
#include "signalpicture.h"

#include <QBasicTimer>
#include <QDeadlineTimer>
#include <QMainWindow>

#include <memory>
#include <optional>

namespace Ui {
class test_win;
}
class QAction;
class QLabel;
class QMenu;
class QTimer;

// Shows the signal level of every light of both axes as curves between two limits, for one scan
// or, until it is stopped, for one scan after the other.
//
// A scan comes in pages; those that the link only hands over again are left out, and so are those
// of the light screen's layout: pages count once the light counts have been told after this
// window's own question, until somebody reads the ADC settings. The levels of a test can be logged.
class test_win : public QMainWindow
{
    Q_OBJECT
public:
    // The continuous test's period for each unit of the field "Interval (s):". An interval of 0
    // waits as long as the link takes for each page that is asked for: asking faster brings no more
    // answers, and the window would stand still while requests wait for the writer.
    static constexpr int IntervalUnitMs = 150;
    explicit test_win(QWidget *parent = nullptr);
    ~test_win() override;

    // While another one has the frame for itself, nothing is asked and nothing taken. A test that
    // runs then goes on.
    void standAside(FrameUsers::User user, bool aside);
    // For what the menu has besides logging; its shortcut works in this window too.
    void addToMenu(QAction *action);

signals:
    void Write03(UCHAR *WriteBuf);

public slots:
    void on_exitbtn_clicked();
    void on_def_btn_clicked();
    void on_Xbtn_clicked() { startSingle(command::scan::AxisX); }
    void on_Ybtn_clicked() { startSingle(command::scan::AxisY); }
    void on_ALL_btn_clicked();
    void ontimer();
    void DoRecv03(UCHAR *RecvBuf);
    // The next device is another one: a test ends, and nothing of this one is shown any more.
    void OnLinkEnded();

protected:
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    // Lights of an axis that there is room for.
    int lights(UCHAR axis) const
    {
        const bool isX = axis == command::scan::AxisX;
        return SignalPicture::room(axis, isX ? testdata.X_total : testdata.Y_total);
    }
    int pages(UCHAR axis) const
    {
        return ScanWatch::pagesOf(lights(axis), command::scan::LevelsPerPage);
    }
    qint32 &progress(UCHAR axis) { return axis == command::scan::AxisX ? X_enable : Y_enable; }
    bool takeSettings();
    std::optional<int> read(const QLabel *name, int most);
    void begin();
    void ask();
    void askForCounts();
    void startSingle(UCHAR axis);
    void startContinuous();
    void stopContinuous();
    bool isContinuous() const { return continuous; }
    void enableInputs(bool enabled);
    QRect plotPlace() const
    {
        return {QPoint(25, 25) - scrolled->offset(), SignalPlot::BackgroundSize};
    }
    void showPlot();
    void send(UCHAR sub);
    void takeCounts(const command::LightCounts &counts);
    void takePage(const command::ScanPage &page);
    void completeScan(UCHAR axis);
    void updateNotice();

    void onLogToggled(bool on);

    std::unique_ptr<Ui::test_win> ui;
    Scrolled *scrolled;    // child
    bool X_finish = false; // the next tick asks for Y
    qint32 X_enable = 0;   // 0: not under test; else 1 more than complete scans, up to 5
    qint32 Y_enable = 0;
    TEST_DATA testdata;
    ReportNews news;
    ScanWatch watch;
    bool believing = false;   // pages have this window's layout
    QDeadlineTimer countsDue; // to be asked for again
    FrameUsers users;         // others, for whom this stands aside
    QString refusal;          // what is wrong with a field
    QBasicTimer late;         // a tick that waits for the end of a scan
    QBasicTimer look;         // for what is overdue, while something is

    SignalPicture picture;
    QTimer *timer; // child

    QAction *logAction; // child
    QMenu *menu;        // child
    SignalLog log;
    bool testing = false;    // a test runs whose end has not come
    bool continuous = false; // until it is stopped
};
