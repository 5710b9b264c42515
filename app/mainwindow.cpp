#include "mainwindow.h"

#include "device/link_log.h"
#include "device/linux_hid_adapter.h"
#include "device/malvoutil.h"
#include "device/posix_qextserialport.h"
#include "device/readreportthread.h"
#include "device/writereportthread.h"
#include "dialogs/advset_dlg.h"
#include "dialogs/calibration_dlg.h"
#include "dialogs/connect_dlg.h"
#include "dialogs/lightset_dlg.h"
#include "dialogs/present.h"
#include "dialogs/rotation_dlg.h"
#include "dialogs/setting_dlg.h"
#include "dialogs/smoothing_dlg.h"
#include "dialogs/test_win.h"
#include "dialogs/useradv_dlg.h"
#include "dialogs/version_dlg.h"
#include "readhotplug.h"
#include "ui_mainwindow.h"

#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QMessageBox>
#include <QMutexLocker>
#include <QScopedValueRollback>
#include <QScreen>
#include <QShortcut>
#include <QTimer>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <thread>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using HID_AdpterPacket::NodeProblem;

namespace {

constexpr auto CheckPeriod = 500ms;
// The kernel tells of a new device before its node exists.
constexpr auto RetryPeriod = 20ms;
constexpr int RetriesAfterPlug = 75;
// A new node gets its final permissions a moment after it appears.
constexpr qint64 ProblemSettlesMs = 400;
constexpr auto PauseBetweenResets = 500us;
// Many times what a send takes.
constexpr auto SendPatience = 500ms;
constexpr size_t MaxOutbox = 64;

constexpr QSize WindowSize(350, 272);
constexpr Qt::WindowFlags CalibrationFlags(Qt::SubWindow);
constexpr QChar ReadFinished(1);
constexpr QChar WriteFailed(1);

Frame commandFrame(UCHAR commandClass, UCHAR sub)
{
    Frame frame{};
    frame[command::offset::Class] = commandClass;
    frame[command::offset::Sub] = sub;
    return frame;
}

QString advice(const NodeProblem &problem)
{
    const QString cause = QString::fromLocal8Bit(std::strerror(problem.error));
    if (problem.error == EACCES || problem.error == EPERM) {
        return MainWindow::tr("A touch frame is at %1 but this user may not open it (%2). Install "
                              "the udev rule 70-quorvel.rules, or join the group plugdev if the "
                              "rule is there, and plug the frame in again.")
            .arg(problem.node, cause);
    }
    return MainWindow::tr("A touch frame is at %1 but it cannot be opened (%2). Unplug it and plug "
                          "it in again.")
        .arg(problem.node, cause);
}

} // namespace

MainWindow::MainWindow(std::shared_ptr<HID_AdpterPacket::HID_Adapter> adapter)
    : ui(std::make_unique<Ui::MainWindow>())
    , HID_Util03(std::move(adapter))
    , timer(new QTimer(this))
    , retryTimer(new QTimer(this))
{
    ui->setupUi(this);
    if (!HID_Util03)
        HID_Util03 = std::make_shared<HID_AdpterPacket::OP_HID_Adapter>();
    readThread03 = std::make_unique<ReadReportThread>(RecvBuf03.data());
    writeThread03 = std::make_unique<writereportthread>(SendBuf03.data());
    doRegisterForDevNotification();

    DefUartData();
    hotplugThread = std::make_unique<ReadHotplugThread>();
    myCOM = new Posix_QextSerialPort(u"COM1"_s, defUartData, Posix_QextSerialPort::Polling, this);

    connect(readThread03.get(), &ReadReportThread::ReadOver, this, &MainWindow::OnRecv03);
    connect(myCOM, &Posix_QextSerialPort::readyRead, this, &MainWindow::OnRecvUart);
    connect(myCOM, &Posix_QextSerialPort::hangUp, this, &MainWindow::OnUartHangUp);
    connect(this, &MainWindow::Recv03, this, &MainWindow::DoRecv03);
    connect(this, &MainWindow::Write03, this, &MainWindow::OnWrite03);
    connect(writeThread03.get(), &writereportthread::WriteOver, this, &MainWindow::OnWriteOver);
    connect(writeThread03.get(), &QThread::finished, this, &MainWindow::OnWriterFinished);

    addDialogs();
    addContextMenu();

    connect(hotplugThread.get(), &ReadHotplugThread::DeviceAdd, this, &MainWindow::OnDeviceAdded);
    connect(hotplugThread.get(), &ReadHotplugThread::DeviceRemove, this,
            &MainWindow::OnDeviceRemoved);
    connect(hotplugThread.get(), &ReadHotplugThread::EventsLost, this, &MainWindow::OnEventsLost);

    connect(timer, &QTimer::timeout, this, &MainWindow::ontimer);
    timer->setObjectName(u"checkTimer"_s);
    timer->start(CheckPeriod);
    retryTimer->setInterval(RetryPeriod);
    connect(retryTimer, &QTimer::timeout, this, &MainWindow::retrySearch);

    addTray();
    setStringFont();
    setPictures();
    hotplugThread->start(QThread::InheritPriority);
    CheckUSBDevCon();
}

MainWindow::~MainWindow()
{
    // Leaving a calibration that is under way tells the frame so; let that frame out.
    calibrationdlg->close();
    writeThread03->wait();
    if (connect_sta == UsbConnected)
        endUsb();
    hotplugThread.reset();
}

bool MainWindow::CheckUSBDevCon()
{
    if (connect_sta == UsbConnected)
        return false;
    const bool found = HID_Util03->DoFindDev(u"col03"_s, true);
    announceProblem();
    if (!found || !HID_Util03->IsDevOpened())
        return false;

    UiWhenCon();
    readThread03->setHIDAdapter(HID_Util03.get(), command::ReportId);
    readThread03->start(QThread::InheritPriority);
    writeThread03->setHIDAdapter(HID_Util03.get(), command::ReportId);
    setState(UsbConnected);
    emit USBConnect();
    GetHIDver();
    return true;
}

bool MainWindow::CheckUSBDevRem(bool force)
{
    if (connect_sta == UsbConnected && (force || !HID_Util03->DoFindDev(u"col03"_s, false))) {
        // First of all, so that nothing that closes now sends to the next device.
        calibrationdlg->OnLinkEnding(true);
        if (!isHidden())
            UiWhenUncon();
        endUsb();
    }
    return connect_sta != 0;
}

void MainWindow::setState(ConnectState state)
{
    connect_sta = state;
    useradvdlg->setConnected(state == UsbConnected || state == SerialOpen);
    tellConnection();
}

// Stops the threads and closes the device; nothing that it said is delivered any more.
void MainWindow::endUsb()
{
    readThread03->terminate();
    readThread03->wait();
    writeThread03->terminate();
    writeThread03->wait();
    HID_Util03->CloseDevice();
    readThread03->discardWaiting();
    outbox.clear();
    // A receiver may be in an event loop of its own, with the others still to be handed this frame.
    RecvBuf03.fill(0);
    setState(NotConnected);
}

void MainWindow::OnDeviceAdded()
{
    if (CheckUSBDevCon() || connect_sta == UsbConnected)
        return;
    retriesLeft = RetriesAfterPlug;
    retryTimer->start();
}

void MainWindow::retrySearch()
{
    if (CheckUSBDevCon() || connect_sta == UsbConnected || --retriesLeft <= 0)
        retryTimer->stop();
}

void MainWindow::OnDeviceRemoved()
{
    CheckUSBDevRem(true);
}

void MainWindow::OnEventsLost()
{
    CheckUSBDevRem(false);
    OnDeviceAdded();
}

void MainWindow::ontimer()
{
    CheckUSBDevCon();
}

// Tells the user what keeps a frame from being opened: once for each change, and only when it
// stays so.
void MainWindow::announceProblem()
{
    const NodeProblem problem = HID_Util03->LastProblem();
    if (problem != seenProblem) {
        seenProblem = problem;
        problemSince.start();
    }
    if (problem == announcedProblem)
        return;
    if (!problem.node.isEmpty() && !problemSince.hasExpired(ProblemSettlesMs))
        return;
    announcedProblem = problem;
    const QString text = problem.node.isEmpty() ? QString() : advice(problem);
    ui->stalab->setToolTip(text);
    ui->stalab->setAccessibleDescription(text);
    if (!text.isEmpty())
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

void MainWindow::OnWrite03(UCHAR *WriteBuf)
{
    const QMutexLocker lock(&mutexWrite03);
    if (connect_sta == UsbConnected) {
        if (outbox.size() >= MaxOutbox) {
            qCWarning(lcLink, "%zu frames wait for the touch frame: one more is dropped",
                      MaxOutbox);
            return;
        }
        // The next frame waits for the last one to be out, but not for a device that hangs.
        const bool hanging = !outbox.empty();
        MALVOUTIL::Buf_util::CopyBuf(WriteBuf, outbox.emplace_back().data(), FrameSize);
        if (!hanging && writeThread03->waitFor(SendPatience))
            sendNext();
    } else if (connect_sta == SerialOpen) {
        SendBufUart[0] = command::serial::Sync1;
        SendBufUart[1] = command::serial::Sync2;
        MALVOUTIL::Buf_util::CopyBuf(WriteBuf, &SendBufUart[command::serial::SyncSize], FrameSize);
        // The calibration class has data where others have their length.
        const int length = std::min(command::serial::wireLength(WriteBuf[command::offset::Length]),
                                    command::serial::BufferSize);
        myCOM->writeData(reinterpret_cast<const char *>(SendBufUart.data()), length);
    }
}

// Hands the first waiting frame to the writer, which has ended.
void MainWindow::sendNext()
{
    SendBuf03 = outbox.front();
    outbox.pop_front();
    writeThread03->start(QThread::InheritPriority);
}

void MainWindow::OnWriterFinished()
{
    const QMutexLocker lock(&mutexWrite03);
    if (!outbox.empty() && writeThread03->waitFor(SendPatience))
        sendNext();
}

void MainWindow::OnRecv03(QChar status)
{
    // A receiver that runs an event loop gets this far again: its frame goes to everybody first.
    if (status != ReadFinished || delivering)
        return;
    const QScopedValueRollback guard(delivering, true);
    while (readThread03->takeFrame()) {
        if (RecvBuf03[command::offset::ReportId] == command::ReportId)
            emit Recv03(RecvBuf03.data());
    }
}

void MainWindow::OnWriteOver(QChar status)
{
    if (connect_sta == UsbConnected && status == WriteFailed)
        qCWarning(lcLink, "a frame could not be sent to the touch frame");
}

void MainWindow::DoRecv03(UCHAR *RecvBuf)
{
    if (connect_sta != UsbConnected)
        return;
    Frame frame;
    MALVOUTIL::Buf_util::CopyBuf(RecvBuf, frame.data(), FrameSize);
    if (frame[command::offset::Class] != command::Firmware ||
        frame[command::offset::Sub] != command::replyTo(command::firmware::Query))
        return;
    const auto byte = [&frame](int offset) { return quint32(frame[size_t(offset)]); };
    using namespace command::firmware;
    hidver.SVNNUM = byte(Revision) | byte(Revision + 1) << 8 | byte(Revision + 2) << 16;
    hidver.CHECKSUM = byte(Checksum) | byte(Checksum + 1) << 8 | byte(Checksum + 2) << 16 |
                      byte(Checksum + 3) << 24;
    hidver.P_FID = byte(ProductFamily);
    hidver.P_DATE =
        (byte(ProductDate + 2) & 0x0F) << 12 | byte(ProductDate + 1) << 4 | byte(ProductDate) >> 4;
    hidver.P_NUM =
        byte(ProductNum) | byte(ProductNum + 1) << 8 | (byte(ProductNum + 2) & 0x0F) << 16;
}

void MainWindow::GetHIDver()
{
    HID_Util03->GetVersion();
    if (isCurrentGeneration(hidver.VersionNumber)) {
        Frame frame = commandFrame(command::Firmware, command::firmware::Query);
        emit Write03(frame.data());
    } else {
        hidver.SVNNUM = hidver.CHECKSUM = hidver.P_FID = hidver.P_DATE = hidver.P_NUM = 0;
    }
}

// The order decides who hears of a connection first, so what is sent then comes in that order too.
void MainWindow::addDialogs()
{
    smoothingdlg = new smoothing_dlg(this);
    connect(smoothingdlg, &smoothing_dlg::Write03, this, &MainWindow::OnWrite03);

    settingdlg = new Setting_dlg(this);
    connect(settingdlg, &Setting_dlg::Write03, this, &MainWindow::OnWrite03);
    connect(this, &MainWindow::Recv03, settingdlg, &Setting_dlg::DoRecv03);
    connect(this, &MainWindow::USBConnect, settingdlg, &Setting_dlg::OnUSBConnect);

    useradvdlg = new useradv_dlg(this);
    connect(useradvdlg, &useradv_dlg::Write03, this, &MainWindow::OnWrite03);
    connect(this, &MainWindow::Recv03, useradvdlg, &useradv_dlg::DoRecv03);
    connect(this, &MainWindow::USBConnect, useradvdlg, &useradv_dlg::OnUSBConnect);

    advdlg = new advset_dlg(this);
    connect(advdlg, &advset_dlg::Write03, this, &MainWindow::OnWrite03);
    connect(this, &MainWindow::Recv03, advdlg, &advset_dlg::DoRecv03);

    testwin = new test_win(this);
    connect(testwin, &test_win::Write03, this, &MainWindow::OnWrite03);
    connect(this, &MainWindow::Recv03, testwin, &test_win::DoRecv03);

    lightsetdlg = new LightSet_dlg(this);
    connect(lightsetdlg, &LightSet_dlg::Write03, this, &MainWindow::OnWrite03);
    connect(this, &MainWindow::Recv03, lightsetdlg, &LightSet_dlg::DoRecv03);

    connectdlg = new connect_dlg(this);
    connect(connectdlg, &connect_dlg::Write03, this, &MainWindow::OnWrite03);
    connect(this, &MainWindow::Recv03, connectdlg, &connect_dlg::DoRecv03);
    connect(connectdlg, &connect_dlg::useUsb, this, &MainWindow::useUsb);
    connect(connectdlg, &connect_dlg::openUart, this, &MainWindow::reopenUart);
    connect(connectdlg, &connect_dlg::closeUart, this, &MainWindow::endUart);
    connect(myCOM, &Posix_QextSerialPort::hangUp, this, &MainWindow::tellConnection);

    calibrationdlg = std::make_unique<Calibration_Dlg>();
    connect(calibrationdlg.get(), &Calibration_Dlg::Write03, this, &MainWindow::OnWrite03);
    connect(this, &MainWindow::Recv03, calibrationdlg.get(), &Calibration_Dlg::DoRecv03);

    versiondlg = new Version_Dlg(this);

    rotationdlg = new Rotation_dlg(this);
    connect(rotationdlg, &Rotation_dlg::Write03, this, &MainWindow::OnWrite03);
    connect(this, &MainWindow::Recv03, rotationdlg, &Rotation_dlg::DoRecv03);
}

void MainWindow::on_calbtn_clicked()
{
    calibrationdlg->setPrimaryScr(int(QGuiApplication::screens().indexOf(screen())));
    calibrationdlg->setWindowFlags(CalibrationFlags);
    calibrationdlg->show();
}

void MainWindow::on_setbtn_clicked()
{
    present(settingdlg);
}

void MainWindow::on_conbtn_clicked()
{
    present(connectdlg);
}

void MainWindow::on_pushButton_clicked()
{
    present(versiondlg);
}

void MainWindow::on_rotationButton_clicked()
{
    rotationdlg->exec();
}

void MainWindow::on_pushButton_2_clicked()
{
    QMessageBox::about(this, tr("Reset"), tr("Reset the device"));
    Frame frame = isCurrentGeneration(hidver.VersionNumber)
                      ? commandFrame(command::Settings, command::settings::Reset)
                      : commandFrame(command::OldReset, command::oldreset::Reset);
    emit Write03(frame.data());
    std::this_thread::sleep_for(PauseBetweenResets);
    frame = commandFrame(command::OldReset, command::oldreset::Reset);
    emit Write03(frame.data());
}

void MainWindow::doRegisterForDevNotification()
{
    HID_Util03->DeviceNotification(this);
}

// Serial link

void MainWindow::DefUartData()
{
    defUartData = {};
}

bool MainWindow::OpenUart(const QString &portName, const PortSettings &settings)
{
    if (connect_sta == UsbConnected)
        CheckUSBDevRem(true);
    myCOM->setPortName(portName);
    uartName = portName;
    serialProblem.clear();
    if (!myCOM->open(QIODevice::ReadWrite)) {
        serialProblem = myCOM->errorString();
        UiWhenUncon();
        setState(SerialFailed);
        return false;
    }
    setState(SerialOpen);
    UiWhenCon();
    toMyComSetting(settings);
    return true;
}

void MainWindow::CLoseUart()
{
    myCOM->close();
    serialProblem.clear();
    if (connect_sta != SerialOpen)
        return;
    calibrationdlg->OnLinkEnding(true);
    setState(SerialClosed);
    updateUi();
}

void MainWindow::OnUartHangUp()
{
    const QString problem = myCOM->errorString();
    CLoseUart();
    serialProblem = problem;
}

void MainWindow::toMyComSetting(const PortSettings &settings)
{
    QStringList refusals;
    const auto demand = [this, &refusals](bool taken) {
        if (!taken && !refusals.contains(myCOM->errorString()))
            refusals += myCOM->errorString();
        return taken;
    };
    // The device may be listening at any of these, and understands nothing sent at another.
    for (const BaudRateType rate : {BAUD9600, BAUD57600, BAUD115200}) {
        if (demand(myCOM->setBaudRate(rate)))
            UartSetBaud(settings.BaudRate);
    }
    demand(myCOM->setBaudRate(settings.BaudRate));
    demand(myCOM->setDataBits(settings.DataBits));
    demand(myCOM->setStopBits(settings.StopBits));
    demand(myCOM->setParity(settings.Parity));
    serialProblem = refusals.join(u' ');
}

void MainWindow::UartSetBaud(int code)
{
    Frame frame = commandFrame(command::SerialBaud, command::serialbaud::Set);
    frame[command::offset::Length] = command::serialbaud::SetLength;
    command::putLe16(&frame[command::serialbaud::Code], code);
    frame[command::serialbaud::Code + 2] = UCHAR(code / 0x10000 & 0xFF);
    emit Write03(frame.data());
}

void MainWindow::OnRecvUart()
{
    // Notifications come when bytes arrive, not while bytes remain.
    while (!delivering) {
        const UartReceiver::Outcome outcome = uartReceiver.step(*myCOM);
        if (outcome == UartReceiver::Outcome::Waits)
            return;
        if (outcome == UartReceiver::Outcome::FrameFound) {
            const QScopedValueRollback guard(delivering, true);
            emit Recv03(uartReceiver.frame());
        }
    }
}

// What the connection dialog asks for

void MainWindow::useUsb()
{
    CLoseUart();
    CheckUSBDevCon();
    tellConnection();
    const NodeProblem found = HID_Util03->LastProblem();
    if (connect_sta != UsbConnected && !found.node.isEmpty())
        connectdlg->setState(connect_dlg::Link::None, QString(), advice(found));
}

void MainWindow::reopenUart(const QString &portName, const PortSettings &settings)
{
    if (myCOM->isOpen())
        CLoseUart();
    OpenUart(portName, settings);
    tellConnection();
}

void MainWindow::endUart()
{
    CLoseUart();
    tellConnection();
}

void MainWindow::tellConnection()
{
    const connect_dlg::Link link = connect_sta == UsbConnected ? connect_dlg::Link::Usb
                                   : connect_sta == SerialOpen ? connect_dlg::Link::Serial
                                                               : connect_dlg::Link::None;
    // What went wrong with a port is no news any more once frames have come and gone by USB.
    const bool aboutUart = connect_sta != UsbConnected && connect_sta != NotConnected;
    connectdlg->setState(link, myCOM->isOpen() ? uartName : QString(),
                         aboutUart ? uartProblem() : QString());
}

// Window and tray

// In code, since a pixmap named in the form comes without its version for high-dpi screens.
void MainWindow::setPictures()
{
    const std::pair<QLabel *, QString> pictures[] = {{ui->label_6, u"icon1"_s},
                                                     {ui->label_7, u"icon2"_s},
                                                     {ui->label_8, u"icon3"_s},
                                                     {ui->label_10, u"iconrotation"_s}};
    for (const auto &[label, name] : pictures) {
        const QIcon icon(u":/new/ico/image/%1.png"_s.arg(name));
        label->setPixmap(icon.pixmap(label->size(), devicePixelRatioF()));
    }
}

void MainWindow::setStringFont()
{
    const QFont font(u"Tahoma"_s, 9);
    for (QWidget *widget : std::initializer_list<QWidget *>{
             ui->label_3, ui->label_4, ui->label_5, ui->label_9, ui->calbtn, ui->setbtn, ui->conbtn,
             ui->pushButton_2, ui->rotationButton})
        widget->setFont(font);
    ui->groupBox_2->hide();
    ui->groupBox_3->hide();
    ui->pushButton_2->move(10, 221);
    ui->pushButton->move(170, 221);
    ui->pushButton->resize(170, 26);
    setFixedSize(WindowSize);
}

void MainWindow::addContextMenu()
{
    contextMenu = new QMenu(this);
    settingAction = contextMenu->addAction(tr("&Setting"), this, &MainWindow::on_setbtn_clicked);
    settingAction->setEnabled(ui->setbtn->isEnabled());
    contextMenu->addAction(tr("S&moothing"), this, [this] { present(smoothingdlg); });
    contextMenu->addAction(tr("&Connect"), this, &MainWindow::on_conbtn_clicked);

    // Disabled buttons swallow the event.
    for (QPushButton *button : deviceButtons())
        button->installEventFilter(this);
    // Qt knows the Menu key only.
    const auto *shiftF10 = new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F10), this);
    connect(shiftF10, &QShortcut::activated, this, [this] {
        const QWidget *at = focusWidget() ? focusWidget() : this;
        contextMenu->popup(at->mapToGlobal(at->rect().center()));
    });
}

void MainWindow::contextMenuEvent(QContextMenuEvent *event)
{
    contextMenu->popup(event->globalPos());
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ContextMenu)
        return QMainWindow::eventFilter(watched, event);
    contextMenuEvent(static_cast<QContextMenuEvent *>(event));
    return true;
}

void MainWindow::addTray()
{
    iTraymenu = std::make_unique<QMenu>();
    iTraymenu->addAction(tr("Show"), this, &MainWindow::show);
    iTraymenu->addSeparator();
    iTraymenu->addAction(tr("Exit"), this, &MainWindow::OnExit);

    iTrayIcon =
        std::make_unique<QSystemTrayIcon>(QIcon(u":/new/ico/image/MalvoTouch Tool Menu.png"_s));
    iTrayIcon->setToolTip(tr("Quorvel"));
    iTrayIcon->setContextMenu(iTraymenu.get());
    connect(iTrayIcon.get(), &QSystemTrayIcon::activated, this, &MainWindow::iconActivated);
    // From the event loop, which a start that only hands over never runs: it shows no icon.
    QMetaObject::invokeMethod(iTrayIcon.get(), &QSystemTrayIcon::show, Qt::QueuedConnection);
}

void MainWindow::iconActivated(QSystemTrayIcon::ActivationReason reason)
{
    if (reason != QSystemTrayIcon::Trigger)
        return;
    show();
    updateUi();
}

// Those that make sense with a frame only.
QList<QPushButton *> MainWindow::deviceButtons() const
{
    return {ui->calbtn, ui->setbtn, ui->pushButton_2, ui->rotationButton};
}

void MainWindow::setDeviceButtonsEnabled(bool enabled)
{
    for (QPushButton *button : deviceButtons())
        button->setEnabled(enabled);
    settingAction->setEnabled(enabled);
}

void MainWindow::UiWhenCon()
{
    setDeviceButtonsEnabled(true);
    ui->stalab->setText(tr("Already link equipment"));
}

void MainWindow::UiWhenUncon()
{
    setDeviceButtonsEnabled(false);
    ui->stalab->setText(tr("Have not linked equipment"));
    for (QWidget *dialog :
         std::initializer_list<QWidget *>{smoothingdlg, advdlg, settingdlg, useradvdlg, testwin,
                                          versiondlg, calibrationdlg.get(), lightsetdlg})
        dialog->close();
}

void MainWindow::updateUi()
{
    if (connect_sta == UsbConnected || connect_sta == SerialOpen)
        UiWhenCon();
    else
        UiWhenUncon();
}

void MainWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    // What happened while the window was hidden has not been shown yet.
    if (!event->spontaneous())
        updateUi();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!isHidden()) {
        hide();
        event->ignore();
        if (!QSystemTrayIcon::isSystemTrayAvailable())
            std::fprintf(
                stderr, "%s\n",
                qPrintable(tr("This desktop has no tray to hide in. Start quorvel again to "
                              "show its window, or quorvel -close to end it.")));
        return;
    }
    iTrayIcon->hide();
    event->accept();
    QCoreApplication::exit(0);
}

void MainWindow::OnExit()
{
    hide();
    close();
}

void MainWindow::handleMessage(const QString &message)
{
    if (message.contains("-C"_L1))
        OnExit();
    if (message.contains("-W"_L1))
        present(this);
}
