// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/calibrationsteps.h"
#include "screenlayout.h"
#include "showing.h"
#include "wholescreen.h"

#include <QPixmap>
#include <QPointer>

#include <array>
#include <memory>

namespace Ui {
class Calibration_Dlg;
}
class CalEnd_dlg;
class QScreen;
class QTimer;

// The full-screen window with the four targets that the user touches one after the other.
//
// The device leads: it says which step it is ready for, and the window echoes the step and moves
// the target. At the end the user is asked whether to save. However the window is left, the device
// is told to save or to reset, unless it is gone. What one device said is neither asked about nor
// answered on the link of another: a session ends with its link (OnLinkEnding).
class Calibration_Dlg : public WholeScreen
{
    Q_OBJECT
public:
    explicit Calibration_Dlg(QWidget *parent = nullptr);
    ~Calibration_Dlg() override;

    // Chooses the screen, an index of QGuiApplication::screens(). Before every showing.
    void setPrimaryScr(int screen);
    // The same for a given layout.
    void setPrimaryScr(int screen, const ScreenLayout &layout);
    // What waits for the question at the end; not owned.
    void setOpener(QWidget *window) { opener = window; }

    void SendCalStep(int step); // 0 begins, 1 to 4 echo, 5 is the check
    void SendCalSave();
    void SendCalReset();
    // Acts on a calibration reply of FrameSize bytes; repeated and out-of-order ones do nothing.
    void DoOldCalibration(unsigned char *buf);

    // An estimate of the deviation from four touched points, in the order of the targets. The
    // calibration itself goes by what the device reports.
    int GetDeviation() const;
    std::array<int, 4> cal_x{};
    std::array<int, 4> cal_y{};

    UCHAR m_IsCali = 0; // 1 while the window is shown

    // The calibrated screen in native pixels of the desktop.
    QRect calibratedScreen() const;
    // Its native pixels for each one that the toolkit counts.
    qreal scale() const;
    // Centres of the targets in native pixels of that screen: top left, top right, bottom right,
    // bottom left.
    const std::array<int, 4> &targetsX() const { return ellipse_x; }
    const std::array<int, 4> &targetsY() const { return ellipse_y; }
    int currentTarget() const { return steps.target(); }

signals:
    void Write03(UCHAR *WriteBuf);
    // Not by the user; and why, as a sentence.
    void endedByItself(const QString &why);
    // The frame has been told to save; per cent, as it reported them.
    void saved(int deviation);

public slots:
    void ontimer();
    void DoRecv03(UCHAR *RecvBuf);
    // The link to the device is about to end: a question that is being asked goes away, and until
    // the next showing nothing more is sent or asked. A device that can still hear is told to reset
    // if a calibration is under way, and the window hides.
    void OnLinkEnding(bool deviceGone);

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void send(Frame frame);
    void finishSession();
    void watch(QScreen *screen);
    void lookAtScreens();

    std::unique_ptr<Ui::Calibration_Dlg> ui;
    Showing showing{this};
    bool cal_end = false;           // the device has reported the end
    bool underWay = false;          // begun, and the device not yet told what becomes of it
    int session = 0;                // counts showings and ended links
    int ellipse_step = 0;           // animation phase, 0 to 2
    std::array<int, 4> ellipse_x{}; // target centres, native pixels of the calibrated screen
    std::array<int, 4> ellipse_y{};
    int time_step = 0; // half-seconds since the showing
    QTimer *timer;     // child
    QPixmap mainmap;   // everything is drawn here first; native size of the calibrated screen, and
                       // null while the window is hidden
    CalibrationSteps steps;
    CalibrationScreen area{{0, 0, 0, 0}, {0, 0}};
    qreal compositorScale = 0; // of that screen, where it is not the toolkit that scales; else 0
    QPointer<QScreen> covered; // one of the desktop's, until that takes it away
    QRect rect;                // where the window goes, in Qt's coordinates
    QPointer<CalEnd_dlg> question; // while it is being asked
    QPointer<QWidget> opener;
};
