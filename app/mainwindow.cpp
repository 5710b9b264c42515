// SPDX-License-Identifier: GPL-3.0-or-later

#include "mainwindow.h"

#include "device/records.h"
#include "device/version.h"
#include "dialogs/advset_dlg.h"
#include "dialogs/calend_dlg.h"
#include "dialogs/calibration_dlg.h"
#include "dialogs/connect_dlg.h"
#include "dialogs/lightset_dlg.h"
#include "dialogs/present.h"
#include "dialogs/readable.h"
#include "dialogs/rotation_dlg.h"
#include "dialogs/scrolled.h"
#include "dialogs/setting_dlg.h"
#include "dialogs/smoothing_dlg.h"
#include "dialogs/test_win.h"
#include "dialogs/useradv_dlg.h"
#include "dialogs/version_dlg.h"
#include "helpaction.h"
#include "lightcheckaction.h"
#include "picture.h"
#include "readhotplug.h"
#include "recordaction.h"
#include "resetquestion.h"
#include "supportfileaction.h"
#include "tray.h"
#include "ui_mainwindow.h"
#include "windowmenu.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>

#include <thread>
#include <utility>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

constexpr auto PauseBetweenResets = 500us;
constexpr QSize WindowSize(350, 272);
constexpr Qt::WindowFlags CalibrationFlags(Qt::SubWindow);

std::unique_ptr<Ui::MainWindow> makeForm(QMainWindow *window)
{
    auto form = std::make_unique<Ui::MainWindow>();
    form->setupUi(window);
    return form;
}

} // namespace

MainWindow::MainWindow(std::shared_ptr<HID_AdpterPacket::HID_Adapter> adapter,
                       const QString &recordFile)
    : ui(makeForm(this))
    , statusLine(ui->stalab, ui->nextbtn)
    , link(new Link(std::move(adapter), this))
    , recordAction(new RecordAction(*link, this))
{
    ui->pushButton->setText(tr("Quorvel v%1").arg(QLatin1StringView(QUORVEL_VERSION)));
    doRegisterForDevNotification();
    hotplugThread = std::make_unique<ReadHotplugThread>();
    connect(this, &MainWindow::Recv03, this, &MainWindow::DoRecv03);
    connect(this, &MainWindow::Write03, this, &MainWindow::OnWrite03);

    // For every window that has no other.
    setWindowIcon(picture(u"MalvoTouch Tool Menu"_s));
    QGuiApplication::setWindowIcon(windowIcon());
    addDialogs();
    addContextMenu();
    connectLink();

    addTray();
    setStringFont();
    keepOnScreen(this);
    readable::keep(ui->pushButton);
    setPictures();
    if (!recordFile.isEmpty())
        noRecording = recordAction->start(recordFile);
    hotplugThread->begin();
    link->start();
}

MainWindow::~MainWindow()
{
    endLink();
    hotplugThread.reset();
}

void MainWindow::endLink()
{
    // A calibration that is under way tells the frame so.
    link->end();
}

// The link

void MainWindow::connectLink()
{
    connect(link, &Link::received, this, &MainWindow::Recv03);
    connect(link, &Link::stateChanged, this, &MainWindow::onLinkChanged);
    connect(link, &Link::aboutToEnd, this, &MainWindow::onLinkEnding);
    connect(link, &Link::usbConnected, this, [this] {
        emit USBConnect();
        GetHIDver();
    });
    connect(hotplugThread.get(), &ReadHotplugThread::DeviceAdd, this, &MainWindow::OnDeviceAdded);
    connect(hotplugThread.get(), &ReadHotplugThread::DeviceRemove, this,
            &MainWindow::OnDeviceRemoved);
    connect(hotplugThread.get(), &ReadHotplugThread::EventsLost, this, &MainWindow::OnEventsLost);
}

bool MainWindow::CheckUSBDevRem(bool force)
{
    link->lookForRemoval(force);
    return connectState() != 0;
}

bool MainWindow::OpenUart(const QString &portName, const PortSettings &settings)
{
    const bool open = link->openSerial(portName, settings);
    if (connectState() == SerialFailed)
        UiWhenUncon();
    return open;
}

void MainWindow::UartSetBaud(int code)
{
    emit Write03(command::BaudCommand{code}.encode().data());
}

void MainWindow::DoRecv03(UCHAR *RecvBuf)
{
    if (link->takeVersion(RecvBuf))
        versiondlg->refresh();
}

void MainWindow::GetHIDver()
{
    if (link->readVersion())
        emit Write03(command::request(command::Firmware, command::firmware::Query).data());
}

void MainWindow::onLinkChanged(const Link::State &state)
{
    useradvdlg->setConnected(link->isLinked());
    showLinked(link->isLinked());
    statusLine.show(state);
    if (tray)
        tray->tell(statusLine.sentence());
    tellConnection();
}

void MainWindow::onLinkEnding(Link::End how)
{
    calibrationdlg->OnLinkEnding(how == Link::End::DeviceGone);
    if (connectState() == SerialOpen)
        calibrationdlg->close();
    // What works on a frame goes with a frame that is pulled out.
    if (connectState() != UsbConnected || how == Link::End::Closed)
        return;
    removedBehind = isHidden();
    if (!removedBehind)
        UiWhenUncon();
}

// What the connection dialog asks for

void MainWindow::useUsb()
{
    link->useUsb();
    tellConnection(link->usbProblem());
}

void MainWindow::reopenUart(const QString &portName, const PortSettings &settings)
{
    if (!link->openPort().isEmpty())
        link->closePort();
    OpenUart(portName, settings);
    tellConnection();
}

void MainWindow::tellConnection(const QString &usbProblem)
{
    const connect_dlg::Link shown = connectState() == UsbConnected ? connect_dlg::Link::Usb
                                    : connectState() == SerialOpen ? connect_dlg::Link::Serial
                                                                   : connect_dlg::Link::None;
    connectdlg->setState(shown, link->openPort(),
                         usbProblem.isEmpty() ? link->serialProblem() : usbProblem);
}

// Dialogs

// A dialog sends and hears frames through this window.
template <typename Dialog>
void MainWindow::wire(Dialog *dialog)
{
    connect(dialog, &Dialog::Write03, this, &MainWindow::OnWrite03);
    if constexpr (requires { &Dialog::DoRecv03; })
        connect(this, &MainWindow::Recv03, dialog, &Dialog::DoRecv03);
    if constexpr (requires { &Dialog::OnUSBConnect; })
        connect(this, &MainWindow::USBConnect, dialog, &Dialog::OnUSBConnect);
    if constexpr (requires { &Dialog::OnLinkEnded; })
        connect(link, &Link::ended, dialog, &Dialog::OnLinkEnded);
}

// The order decides who hears of a connection first, so what is sent then comes in that order too.
void MainWindow::addDialogs()
{
    wire(smoothingdlg = new smoothing_dlg(this));
    wire(settingdlg = new Setting_dlg(this));
    wire(useradvdlg = new useradv_dlg(this));
    connect(link, &Link::wokeUp, useradvdlg, &useradv_dlg::OnWakeUp);
    wire(advdlg = new advset_dlg(this));
    wire(testwin = new test_win(this));
    wire(lightsetdlg = new LightSet_dlg(this));
    wire(connectdlg = new connect_dlg(this));
    connect(connectdlg, &connect_dlg::useUsb, this, &MainWindow::useUsb);
    connect(connectdlg, &connect_dlg::openUart, this, &MainWindow::reopenUart);
    connect(connectdlg, &connect_dlg::closeUart, this, [this] {
        link->closePort();
        tellConnection();
    });
    calibrationdlg = std::make_unique<Calibration_Dlg>();
    calibrationdlg->setOpener(this);
    wire(calibrationdlg.get());
    connect(calibrationdlg.get(), &Calibration_Dlg::saved, this, &MainWindow::calibrationSaved);
    connect(calibrationdlg.get(), &Calibration_Dlg::saved, this, [this](int deviation) {
        statusLine.setCalibrationNote(CalEnd_dlg::accuracyText(deviation));
    });
    connect(calibrationdlg.get(), &Calibration_Dlg::endedByItself, this,
            [this](const QString &why) { statusLine.setCalibrationNote(why); });
    versiondlg = new Version_Dlg(this);
    connect(link, &Link::ended, versiondlg, &Version_Dlg::refresh);
    wire(rotationdlg = new Rotation_dlg(this));
}

void MainWindow::on_calbtn_clicked()
{
    statusLine.setCalibrationNote({});
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
    // The question that went out with the connection, or its answer, may have been lost.
    if (link->lacksVersion())
        GetHIDver();
    present(versiondlg);
}

void MainWindow::on_rotationButton_clicked()
{
    rotationdlg->exec();
}

void MainWindow::on_pushButton_2_clicked()
{
    if (!resetIsConfirmed(this, *link))
        return;
    const Frame old = command::request(command::OldReset, command::oldreset::Reset);
    Frame frame = isCurrentGeneration(hidver.VersionNumber)
                      ? command::request(command::Settings, command::settings::Reset)
                      : old;
    emit Write03(frame.data());
    std::this_thread::sleep_for(PauseBetweenResets);
    frame = old;
    emit Write03(frame.data());
}

// Window and tray

void MainWindow::setSimulated(const QIcon &icon)
{
    setWindowTitle(tr("Quorvel (simulated touch frame)"));
    setWindowIcon(icon);
    QGuiApplication::setWindowIcon(icon);
    tray->setIcon(icon);
}

// In code, since a pixmap named in the form comes without its version for high-dpi screens.
void MainWindow::setPictures()
{
    const std::pair<QLabel *, QString> pictures[] = {{ui->label_6, u"icon1"_s},
                                                     {ui->label_7, u"icon2"_s},
                                                     {ui->label_8, u"icon3"_s},
                                                     {ui->label_10, u"iconrotation"_s}};
    for (const auto &[label, name] : pictures) {
        label->setPixmap(picture(name).pixmap(label->size(), devicePixelRatioF()));
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
    contextMenu = new WindowMenu(this);
    settingAction = contextMenu->addAction(tr("&Setting"), this, &MainWindow::on_setbtn_clicked);
    settingAction->setEnabled(ui->setbtn->isEnabled());
    contextMenu->addAction(tr("S&moothing"), this, [this] { present(smoothingdlg); });
    contextMenu->addAction(tr("&Connect"), this, &MainWindow::on_conbtn_clicked);
    auto *lightCheck = new LightCheckAction(*link, this);
    contextMenu->addAction(lightCheck);
    addAction(lightCheck);
    testwin->addToMenu(lightCheck);
    advdlg->addAction(lightCheck);
    contextMenu->addTrials();
    contextMenu->addAction(recordAction);
    contextMenu->addAction(new SupportFileAction(*link, this));
    contextMenu->addAction(new HelpAction(this));
    connect(recordAction, &RecordAction::noteChanged, this,
            [this] { statusLine.setRecordingNote(recordAction->note()); });
    for (QPushButton *button : deviceButtons())
        contextMenu->openOn(button);
    ui->menubtn->setMenu(contextMenu);
}

void MainWindow::addTray()
{
    tray = std::make_unique<Tray>(contextMenu->actions());
    tray->tell(statusLine.sentence());
    connect(tray.get(), &Tray::activated, this, &MainWindow::iconActivated);
    connect(tray.get(), &Tray::showAsked, this, [this] { present(this); });
    connect(tray.get(), &Tray::exitAsked, this, &MainWindow::OnExit);
}

void MainWindow::iconActivated(QSystemTrayIcon::ActivationReason reason)
{
    if (reason != QSystemTrayIcon::Trigger)
        return;
    present(this);
    // Closing more than what worked on that frame would cost the user what was not applied yet.
    if (std::exchange(removedBehind, false) && !link->isLinked())
        UiWhenUncon();
}

// Those that make sense with a frame only.
QList<QPushButton *> MainWindow::deviceButtons() const
{
    return {ui->calbtn, ui->setbtn, ui->pushButton_2, ui->rotationButton};
}

void MainWindow::showLinked(bool linked)
{
    for (QPushButton *button : deviceButtons())
        button->setEnabled(linked);
    settingAction->setEnabled(linked);
    ui->stalab->setText(linked ? tr("Already link equipment") : tr("Have not linked equipment"));
}

void MainWindow::UiWhenCon()
{
    showLinked(true);
}

void MainWindow::UiWhenUncon()
{
    showLinked(false);
    for (QWidget *dialog :
         std::initializer_list<QWidget *>{smoothingdlg, advdlg, settingdlg, useradvdlg, testwin,
                                          versiondlg, calibrationdlg.get(), lightsetdlg})
        dialog->close();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!isHidden()) {
        hide();
        event->ignore();
        tray->tellIfThereIsNone(this);
        return;
    }
    tray->hide();
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
