// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/reportnews.h"
#include "lightcontrol.h"
#include "lightplot.h"
#include "scanwatch.h"
#include "showing.h"
#include "wholescreen.h"

#include <QBasicTimer>
#include <QDeadlineTimer>
#include <QPointer>
#include <QRect>

#include <memory>
#include <optional>

namespace Ui {
class LightSet_dlg;
}
class QLineEdit;
class QTimer;
class test_win;

// The full-screen window that shows the levels of every light beside the edge of the frame that
// the lights stand in, and sets one light's gain, switches it off or on, and sets the ADC lines.
//
// While it is shown it asks the device in turns for the chosen light, the Y scan and the X scan,
// and a signal test beside it stands aside. Before the user chooses a light, the one that the
// device speaks of is shown; afterwards that choice holds.
class LightSet_dlg : public WholeScreen
{
    Q_OBJECT
public:
    explicit LightSet_dlg(QWidget *parent = nullptr);
    ~LightSet_dlg() override;

    // As if its user had, also while it is hidden.
    void chooseLight(const LightPlot::Light &light);
    // While a light check has the frame for itself, nothing is asked and nothing taken.
    void standAside(bool aside);

signals:
    void Write03(UCHAR *WriteBuf);

public slots:
    void on_LightChooseBtn_2_clicked();
    void on_LightChooseBtn_clicked();
    void on_LightDecBtn_clicked();
    void on_LightAddBtn_clicked();
    void on_ADCSetBtn_clicked();
    void on_ADCDefBtn_clicked();
    void on_ExitBtn_clicked();
    void ontimer();
    // Takes in a report of FrameSize bytes.
    void DoRecv03(UCHAR *RecvBuf);
    // The next device is another one: nothing of this one is shown any more.
    void OnLinkEnded();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void GetADCData();
    void SendADCData();
    void SendSetLightData();
    void askForSettings();
    void askAbout(const command::LightRequest &request);
    void requestScan(UCHAR axis);
    void send(Frame frame);
    void beginAsking();

    void takeSettings(const command::AdcReport &report);
    void takeLight(command::LightReport report);
    void takePage(const command::ScanPage &page);
    void doubtLayout(); // and ask for it with the next tick
    int pages(UCHAR axis) const;
    // What the fields say; nothing, with the field shown, if they make no sense.
    std::optional<command::AdcLines> typedLines();
    void refuse(QLineEdit *field, const QString &words);

    static command::LightName nameOf(const LightPlot::Light &light);
    void setChosen(const LightPlot::Light &light);
    void onChosen();
    // What LightDir and LightNum name.
    std::optional<LightPlot::Light> namedLight() const;
    // The same if the device has such a light.
    std::optional<LightPlot::Light> chosenLight() const;
    void step(int by);
    void updateLight();
    void updateNotice();
    QString lightNotice() const;
    test_win *signalTest() const;
    void followScreen();
    void showValuesPlainly();

    std::unique_ptr<Ui::LightSet_dlg> ui;
    QRect panelPlace; // where there is room for it
    Showing showing{this};
    LightPlot plot;
    LightControl control;
    ReportNews news;
    ScanWatch watch;
    int TimerStop = 0;  // ticks still to let pass without a request
    int TimerStep = 0;  // 0 the chosen light, 1 the Y scan, 2 the X scan
    bool Ready = false; // the first request after the showing is due: there is something to paint
    bool postponed = false;   // a tick waits for the end of a scan
    bool believing = true;    // pages have this window's layout
    QDeadlineTimer layoutDue; // to be asked for again
    bool isAside = false;     // a light check has the frame
    bool userChose = false;   // the light
    bool unasked = false;     // and the device was not asked about it yet
    QDeadlineTimer lightDue = QDeadlineTimer(QDeadlineTimer::Forever); // for an answer about it
    std::optional<command::AdcLines> written; // what the device has not said since
    bool isOther = false;                     // the device said something else instead
    QString refusal;                          // what is wrong with a field
    QPointer<QWidget> parked;                 // button that had the keyboard when it was disabled
    QTimer *timer;                            // child
    QBasicTimer late;                         // a tick that waited for the end of a scan
    QBasicTimer look;                         // for what is overdue
    QBasicTimer readBack;
    QRect drawnFor;       // the screen in Qt's coordinates, and its scaling, as the plot knows them
    qreal drawnRatio = 0; // of the toolkit, when the scaling was found out
    qreal drawnScale = 0;
};
