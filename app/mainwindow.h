// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/link.h"
#include "device/seriallink.h"
#include "device/usblink.h"
#include "statusline.h"

#include <QMainWindow>
#include <QSystemTrayIcon>

#include <memory>

namespace Ui {
class MainWindow;
}
class Calibration_Dlg;
class LightSet_dlg;
class QAction;
class QPushButton;
class ReadHotplugThread;
class RecordAction;
class Rotation_dlg;
class Setting_dlg;
class Tray;
class Version_Dlg;
class WindowMenu;
class advset_dlg;
class connect_dlg;
class smoothing_dlg;
class test_win;
class useradv_dlg;

// The hub of the program: holds the link to the touch frame and every dialog, passes frames between
// them, and shows whether a frame is linked. Everything here runs on the main thread.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    using ConnectState = Link::Kind;
    using enum Link::Kind;

    // Without an adapter of the caller's, looks for frames behind the kernel's hiddev nodes.
    // Records into a file from the first frame on, if one is given; see recordProblem().
    explicit MainWindow(std::shared_ptr<HID_AdpterPacket::HID_Adapter> adapter = nullptr,
                        const QString &recordFile = {});
    ~MainWindow() override;

    // The link, under the names that the window has always offered it by; see there.
    ConnectState connectState() const { return link->kind(); }
    bool CheckUSBDevCon() { return link->lookForDevice(); }
    bool CheckUSBDevRem(bool force);
    bool OpenUart(const QString &portName, const PortSettings &settings);
    void CLoseUart() { link->closeSerial(); }
    QString uartProblem() const { return link->serialProblem(); }
    void toMyComSetting(const PortSettings &settings) { link->serial().toMyComSetting(settings); }
    void UartSetBaud(int code); // of BaudRateType
    void DefUartData() { link->serial().DefUartData(); }
    void doRegisterForDevNotification() { link->usb().registerForNotification(this); }
    void GetHIDver();

    // Why nothing is recorded into that file; empty when it is.
    QString recordProblem() const { return noRecording; }

    // Ends the link in good order and for good: the program ends.
    void endLink();

    // The status line and the buttons that make sense with a frame only. Without one, the dialogs
    // that work on a frame are closed.
    void UiWhenCon();
    void UiWhenUncon();
    void addTray();
    void setStringFont();
    // Says of itself that it shows no real frame, with an icon of its own.
    void setSimulated(const QIcon &icon);

signals:
    void Write03(UCHAR *WriteBuf);
    void Recv03(UCHAR *RecvBuf);          // valid during the call only
    void USBConnect();                    // once each time a USB frame becomes connected
    void calibrationSaved(int deviation); // per cent

public slots:
    void OnWrite03(UCHAR *WriteBuf) { link->send(WriteBuf); }
    void OnRecv03(QChar status) { link->usb().OnRecv03(status); }
    void OnWriteOver(QChar status) { link->usb().OnWriteOver(status); }
    void OnRecvUart() { link->receiveSerial(); }
    void DoRecv03(UCHAR *RecvBuf);
    void ontimer() { link->lookForDevice(); }
    void iconActivated(QSystemTrayIcon::ActivationReason reason);
    void OnDeviceAdded() { link->deviceAdded(); }
    void OnDeviceRemoved() { link->deviceRemoved(); }
    void OnEventsLost() { link->eventsLost(); }
    void OnExit();
    void handleMessage(const QString &message);

    void on_calbtn_clicked();
    void on_setbtn_clicked();
    void on_conbtn_clicked();
    void on_pushButton_clicked();
    void on_pushButton_2_clicked();
    void on_rotationButton_clicked();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void connectLink();
    void addDialogs();
    template <typename Dialog>
    void wire(Dialog *dialog);
    void addContextMenu();
    void setPictures();
    QList<QPushButton *> deviceButtons() const;
    void showLinked(bool linked);
    void onLinkChanged(const Link::State &state);
    void onLinkEnding(Link::End how);
    void useUsb();
    void reopenUart(const QString &portName, const PortSettings &settings);
    void tellConnection(const QString &usbProblem = {});

    std::unique_ptr<Ui::MainWindow> ui;
    StatusLine statusLine; // of ui
    Link *link;            // child
    std::unique_ptr<ReadHotplugThread> hotplugThread;
    bool removedBehind = false; // a frame was removed while this window was hidden

    // Dialogs that show a sibling find it among this window's children.
    smoothing_dlg *smoothingdlg = nullptr; // child
    Setting_dlg *settingdlg = nullptr;     // child
    useradv_dlg *useradvdlg = nullptr;     // child
    advset_dlg *advdlg = nullptr;          // child
    test_win *testwin = nullptr;           // child
    LightSet_dlg *lightsetdlg = nullptr;   // child
    connect_dlg *connectdlg = nullptr;     // child
    Version_Dlg *versiondlg = nullptr;     // child
    Rotation_dlg *rotationdlg = nullptr;   // child

    WindowMenu *contextMenu = nullptr; // child; leads to what the form has no visible button for
    QAction *settingAction = nullptr;  // of contextMenu
    RecordAction *recordAction;        // child
    QString noRecording;

    std::unique_ptr<Tray> tray;
    std::unique_ptr<Calibration_Dlg> calibrationdlg; // a window of its own
};
