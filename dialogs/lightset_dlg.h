#pragma once

#include "device/reportnews.h"
#include "lightplot.h"

#include <QDialog>
#include <QRect>

#include <memory>
#include <optional>

namespace Ui {
class LightSet_dlg;
}
class QTimer;

// The full-screen window that shows the levels of every light beside the edge of the frame that
// the lights stand in, and sets one light's gain, switches it off or on, and sets the ADC lines.
//
// While it is shown it asks the device in turns for the chosen light, the Y scan and the X scan.
class LightSet_dlg : public QDialog
{
    Q_OBJECT
public:
    explicit LightSet_dlg(QWidget *parent = nullptr);
    ~LightSet_dlg() override;

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
    void paintEvent(QPaintEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void GetADCData();
    void SendADCData();
    void SendSetLightData();
    void requestScan(UCHAR axis);
    void askAbout(const command::LightRequest &request);
    void send(Frame frame);
    void takeSettings(const command::AdcReport &report);
    void showLight(const command::LightReport &report);
    void setChosen(const LightPlot::Light &light);
    // What LightDir and LightNum name, if the device has such a light.
    std::optional<LightPlot::Light> chosenLight() const;
    void followScreen();

    std::unique_ptr<Ui::LightSet_dlg> ui;
    LightPlot plot;
    ReportNews news;
    int TimerStop = 0;    // ticks still to let pass without a request
    int TimerStep = 0;    // 0 the chosen light, 1 the Y scan, 2 the X scan
    bool Ready = false;   // the first request after the showing is due: there is something to paint
    bool unasked = false; // the user has chosen a light that the device was not asked about yet
    QTimer *timer;        // child
    QRect drawnFor;       // the screen in Qt's coordinates, and its scaling, as the plot knows them
    qreal drawnScale = 0;
};
