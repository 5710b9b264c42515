#pragma once

#include "device/commands.h"
#include "device/hid_adapter.h"
#include "device/portsettings.h"
#include "device/struct.h"
#include "device/uartreceiver.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QMutex>
#include <QSystemTrayIcon>

#include <array>
#include <deque>
#include <memory>

namespace Ui {
class MainWindow;
}
class Calibration_Dlg;
class LightSet_dlg;
class Posix_QextSerialPort;
class QAction;
class QMenu;
class QPushButton;
class QTimer;
class ReadHotplugThread;
class ReadReportThread;
class Rotation_dlg;
class Setting_dlg;
class Version_Dlg;
class advset_dlg;
class connect_dlg;
class smoothing_dlg;
class test_win;
class useradv_dlg;
class writereportthread;

// The hub of the program: owns the link to the touch frame and every dialog, routes frames between
// them, and shows whether a frame is connected. Everything here runs on the main thread.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    enum ConnectState {
        UsbConnected = 1,
        NotConnected = 2,
        SerialOpen = 3,
        SerialClosed = 4,
        SerialFailed = 5,
    };

    // Without an adapter of the caller's, looks for frames behind the kernel's hiddev nodes.
    explicit MainWindow(std::shared_ptr<HID_AdpterPacket::HID_Adapter> adapter = nullptr);
    ~MainWindow() override;

    ConnectState connectState() const { return connect_sta; }

    // Looks for a frame and connects it; true when one became connected just now.
    bool CheckUSBDevCon();
    // Disconnects when the frame is gone, or in any case when forced. True while the state is set.
    bool CheckUSBDevRem(bool force);
    // Opens a serial port; false, with the state SerialFailed, when that fails. A port that does
    // not take all settings is open; see uartProblem().
    bool OpenUart(const QString &portName, const PortSettings &settings);
    void CLoseUart();
    // Why the port did not open, which settings it does not take, or how it was lost, as sentences
    // for the user; empty when all is as the last OpenUart() or CLoseUart() asked.
    QString uartProblem() const { return serialProblem; }

signals:
    void Write03(UCHAR *WriteBuf);
    void Recv03(UCHAR *RecvBuf); // valid during the call only
    void USBConnect();           // once each time a USB frame becomes connected

public slots:
    void OnWrite03(UCHAR *WriteBuf);
    void OnRecv03(QChar status);
    void OnWriteOver(QChar status);
    void OnWriterFinished();
    void OnRecvUart();
    void DoRecv03(UCHAR *RecvBuf);
    void ontimer();
    void iconActivated(QSystemTrayIcon::ActivationReason reason);
    void OnDeviceAdded();
    void OnDeviceRemoved();
    void OnEventsLost();
    void OnExit();
    void handleMessage(const QString &message);

private slots:
    void on_calbtn_clicked();
    void on_setbtn_clicked();
    void on_conbtn_clicked();
    void on_pushButton_clicked();
    void on_pushButton_2_clicked();
    void on_rotationButton_clicked();

protected:
    void closeEvent(QCloseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void addDialogs();
    void addContextMenu();
    void addTray();
    void setState(ConnectState state);
    void doRegisterForDevNotification();
    void setStringFont();
    void setPictures();
    void UiWhenCon();
    void UiWhenUncon();
    void updateUi();
    QList<QPushButton *> deviceButtons() const;
    void setDeviceButtonsEnabled(bool enabled);
    void GetHIDver();
    void DefUartData();
    void toMyComSetting(const PortSettings &settings);
    void UartSetBaud(int code); // of BaudRateType
    void OnUartHangUp();
    void useUsb();
    void reopenUart(const QString &portName, const PortSettings &settings);
    void endUart();
    void tellConnection();
    void retrySearch();
    void announceProblem();
    void endUsb();
    void sendNext();

    std::unique_ptr<Ui::MainWindow> ui;
    std::shared_ptr<HID_AdpterPacket::HID_Adapter> HID_Util03;

    // Written by takeFrame() on this thread; what a Recv03 receiver is handed.
    Frame RecvBuf03{};
    Frame SendBuf03{};        // read by the writer, changed while it does not run
    std::deque<Frame> outbox; // frames behind one that the device takes long to accept
    std::array<UCHAR, command::serial::BufferSize> SendBufUart{};
    bool delivering = false; // a Recv03 receiver is at work, perhaps in an event loop of its own
    QMutex mutexWrite03;     // held for a whole send

    // The threads use the adapter, so they stand behind it and go first.
    std::unique_ptr<ReadReportThread> readThread03;
    std::unique_ptr<writereportthread> writeThread03;
    std::unique_ptr<ReadHotplugThread> hotplugThread;

    PortSettings defUartData;
    Posix_QextSerialPort *myCOM = nullptr; // child
    UartReceiver uartReceiver;
    QString uartName; // of the last OpenUart()
    QString serialProblem;

    ConnectState connect_sta = NotConnected;
    QTimer *timer;      // child; looks for a frame twice a second
    QTimer *retryTimer; // child; looks again soon after a plug event
    int retriesLeft = 0;

    HID_AdpterPacket::NodeProblem seenProblem;      // of the last search
    HID_AdpterPacket::NodeProblem announcedProblem; // the one that the user has been told
    QElapsedTimer problemSince;

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

    QMenu *contextMenu = nullptr;     // child; leads to what the form has no visible button for
    QAction *settingAction = nullptr; // of contextMenu

    std::unique_ptr<QMenu> iTraymenu;
    std::unique_ptr<QSystemTrayIcon> iTrayIcon;
    std::unique_ptr<Calibration_Dlg> calibrationdlg; // a window of its own
};
