#pragma once

#include "device/records.h"
#include "device/reportnews.h"
#include "signallog.h"
#include "signalplot.h"

#include <QMainWindow>
#include <QPixmap>

#include <array>
#include <memory>
#include <span>

namespace Ui {
class test_win;
}
class QAction;
class QMenu;
class QTimer;

// Shows the signal level of every light of both axes as curves between two limits, for one scan
// or, until it is stopped, for one scan after the other.
//
// A scan comes in pages; those that the link only hands over again are left out. Pages are ignored
// as long as the device has not told the light counts. The levels of a test can be logged.
class test_win : public QMainWindow
{
    Q_OBJECT
public:
    // The continuous test's period for each unit of the field "Interval (s):".
    static constexpr int IntervalUnitMs = 150;
    // How long the link takes to bring one report, with some room. An interval of 0 waits so long
    // for each page of the scan it has asked for: asking faster brings no more answers, and the
    // window would stand still while requests wait for the writer.
    static constexpr int ReportMs = 70;

    explicit test_win(QWidget *parent = nullptr);
    ~test_win() override;

signals:
    void Write03(UCHAR *WriteBuf);

public slots:
    void on_exitbtn_clicked();
    void on_def_btn_clicked();
    void on_Xbtn_clicked();
    void on_Ybtn_clicked();
    void on_ALL_btn_clicked();
    void ontimer();
    void DoRecv03(UCHAR *RecvBuf);
    // The next device is another one: a test ends, and nothing of this one is shown any more.
    void OnLinkEnded();

protected:
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    using Row = SignalLog::Row;
    // What the pages of one axis go into.
    struct AxisData
    {
        Row axis;
        std::span<QPoint> adc;
        std::span<QPoint> agc;
        std::span<QPoint> ripple;
        qint32 total;   // lights
        qint32 &enable; // progress

        int lights() const; // that there is room for
    };

    AxisData dataX();
    AxisData dataY();
    bool takeSettings();
    void startSingle(UCHAR axis);
    void startContinuous();
    void stopContinuous();
    bool isContinuous() const;
    void enableInputs(bool enabled);
    void showPlot();
    void send(UCHAR sub);
    void takeCounts(const command::LightCounts &counts);
    void takePage(const AxisData &axis, const command::ScanPage &page);
    void completeScan(const AxisData &axis);
    void makeMaps(int ratio);
    void drawPicture();
    void openMenu(const QPoint &globalPos);

    void onLogToggled(bool on);

    std::unique_ptr<Ui::test_win> ui;
    bool X_finish = false; // the next tick asks for Y
    qint32 X_enable = 0;   // 0: not under test; else 1 more than complete scans, up to 5
    qint32 Y_enable = 0;
    TEST_DATA testdata;
    // Pixels of the picture, by light.
    std::array<QPoint, command::MaxLightsX> XADC_point;
    std::array<QPoint, command::MaxLightsY> YADC_point;
    std::array<QPoint, command::MaxLightsX> XAGC_point;
    std::array<QPoint, command::MaxLightsY> YAGC_point;
    std::array<QPoint, command::MaxLightsX> XRIP_point;
    std::array<QPoint, command::MaxLightsY> YRIP_point;
    ReportNews news;

    SignalPlot plot;
    QPixmap BGmap;        // the scale
    QImage mainmap;       // the picture
    bool outdated = true; // mainmap does not show what the members above say
    QTimer *timer;        // child

    QAction *logAction; // child
    QMenu *menu;        // child
    SignalLog log;
    bool testing = false; // a test runs whose end has not come
};
