#pragma once

#include "device/commands.h"
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
// A scan comes in pages, and the link hands over the last page again and again until there is
// another: a page counts as new only if it differs from the report before it, or if its scan was
// asked for again. Pages are ignored as long as the device has not told the light counts.
//
// The levels of a test can be logged in TestLog.csv in the working directory, one row a scan of
// the axes under test, in signal units; the file is written when the test ends.
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

protected:
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    enum class Row { None, X, Y };
    // What the pages of one axis go into.
    struct AxisData
    {
        Row axis;
        std::span<QPoint> adc;
        std::span<QPoint> agc;
        std::span<QPoint> ripple;
        qint32 total;   // lights
        qint32 &enable; // progress
        bool &asked;

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
    void takeCounts(const Frame &frame);
    void takePage(const AxisData &axis, const Frame &page, bool repeated);
    void completeScan(const AxisData &axis);
    void makeMaps(int ratio);
    void drawPicture();
    void openMenu(const QPoint &globalPos);

    // The log.
    void doCVSstring_Title();
    void doCVSstring_X(int index, int value);
    void doCVSstring_Y(int index, int value);
    void writeLog();
    void onLogToggled(bool on);
    void beginLog();
    void endLog();
    void logLevel(Row axis, int index, int value);
    void fillRow(int until);
    void endRow();
    bool storeLog();

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
    Frame lastReport{};
    bool askedX = false; // and no new first page has come since
    bool askedY = false;

    SignalPlot plot;
    QPixmap BGmap;        // the scale
    QImage mainmap;       // the picture
    bool outdated = true; // mainmap does not show what the members above say
    QTimer *timer;        // child

    QAction *logAction; // child
    QMenu *menu;        // child
    QString CVSstring;
    bool testing = false;   // a test runs whose end has not come
    bool logging = false;   // its levels go into CVSstring
    bool unsaved = false;   // CVSstring holds what the file does not
    bool warned = false;    // of the file, in this test
    Row logRow = Row::None; // the axis being appended to the last row
    int nextLight = 0;      // of that axis
};
