// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/mainwindow.h"
#include "config/xml_class.h"
#include "device/readreportthread.h"
#include "dialogs/calend_dlg.h"
#include "dialogs/calibration_dlg.h"
#include "dialogs/calibrationcheck_dlg.h"
#include "dialogs/connect_dlg.h"
#include "dialogs/rotation_dlg.h"
#include "dialogs/setting_dlg.h"
#include "dialogs/smoothing_dlg.h"
#include "dialogs/tryout_dlg.h"
#include "dialogs/useradv_dlg.h"
#include "dialogs/version_dlg.h"
#include "resources/resources.h"
#include "tests/support/calibrating.h"
#include "tests/support/capture.h"
#include "tests/support/fakeadapter.h"
#include "tests/support/hand.h"
#include "tests/support/pty.h"
#include "tests/support/quickest.h"
#include "tests/support/settingshome.h"
#include "tests/support/shownwindow.h"
#include "tests/support/widgets.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEventLoop>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QTimer>

#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString Linked = u"Already link equipment"_s;
const QString Unlinked = u"Have not linked equipment"_s;

// What docks in the tray is a widget of the toolkit's own.
QWidget *docked()
{
    for (QWidget *widget : QApplication::allWidgets())
        if (widget->inherits("QSystemTrayIconSys") && widget->isVisible())
            return widget;
    return nullptr;
}

// The other menus belong to windows.
QMenu *trayMenu()
{
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (auto *menu = qobject_cast<QMenu *>(widget); menu && !menu->parentWidget())
            return menu;
    return nullptr;
}

// Text that does not fit into its widget.
QStringList clippedTexts(const QWidget &window)
{
    QStringList clipped;
    for (const QLabel *label : window.findChildren<QLabel *>()) {
        if (!label->isVisibleTo(&window) || label->text().isEmpty())
            continue;
        const int height =
            label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height();
        const bool tooWide = !label->wordWrap() && label->sizeHint().width() > label->width();
        if (height > label->height() || tooWide)
            clipped.append(label->objectName());
    }
    for (const QAbstractButton *button : window.findChildren<QAbstractButton *>()) {
        if (button->isVisibleTo(&window) &&
            button->fontMetrics().horizontalAdvance(QString(button->text()).remove(u'&')) + 8 >
                button->width())
            clipped.append(button->objectName());
    }
    return clipped;
}

} // namespace

class TestMainWindow : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;
    std::shared_ptr<FakeAdapter> frame;
    std::unique_ptr<MainWindow> window;

    QString status() const { return in<QLabel>(window, "stalab")->text(); }
    bool deviceButtonsEnabled(bool enabled) const
    {
        for (const char *name : {"calbtn", "setbtn", "pushButton_2", "rotationButton"}) {
            if (in(window, name)->isEnabled() != enabled)
                return false;
        }
        return true;
    }
    void connectFrame()
    {
        frame->present = true;
        window->OnDeviceAdded();
        QCOMPARE(window->connectState(), MainWindow::UsbConnected);
        // The gestures and, to a current device, the version query.
        QTRY_COMPARE(frame->sent().size(), frame->version > 0x2FFF ? 2 : 1);
        frame->forgetSent();
    }
    void removeFrame()
    {
        frame->present = false;
        window->OnDeviceRemoved();
        QCOMPARE(window->connectState(), MainWindow::NotConnected);
    }
    void send(const QByteArray &bytes)
    {
        UCHAR buffer[64] = {};
        memcpy(buffer, bytes.constData(), size_t(bytes.size()));
        emit window->Write03(buffer);
    }
    // Numbers of the reports that a receiver has been handed.
    QList<int> *received(QObject *context)
    {
        auto numbers = std::make_shared<QList<int>>();
        connect(window.get(), &MainWindow::Recv03, context,
                [numbers](UCHAR *buf) { numbers->append(FakeAdapter::numberOf(buf)); });
        return numbers.get();
    }
    // The program's event loop; TooLate when nothing ends it.
    static constexpr int TooLate = 77;
    int runAtMost(std::chrono::milliseconds time)
    {
        QTimer end;
        connect(&end, &QTimer::timeout, this, [] { QCoreApplication::exit(TooLate); });
        end.start(time);
        return QApplication::exec();
    }
    void dismissReset()
    {
        QTimer::singleShot(100, this, [this] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            QVERIFY(box);
            QCOMPARE(box->windowTitle(), u"Reset"_s);
            QCOMPARE(box->text(), u"Reset the device"_s);
            const QPixmap picture = box->iconPixmap();
            QVERIFY(!picture.isNull());
            QCOMPARE(
                picture.toImage(),
                window->windowIcon().pixmap(picture.deviceIndependentSize().toSize()).toImage());
            box->accept();
        });
        press(window, "pushButton_2");
    }

private slots:
    void initTestCase() { initResources(); }
    void init()
    {
        hidver = {};
        QGuiApplication::setQuitOnLastWindowClosed(false);
        home = std::make_unique<SettingsHome>();
        frame = std::make_shared<FakeAdapter>();
        frame->present = false;
        window = shownWindow(frame);
        QVERIFY(window);
    }
    void cleanup()
    {
        window.reset();
        frame.reset();
        home.reset();
        runAtMost(0ms); // a request to end that no event loop has taken lasts until the next one
    }

    // The window

    void the_form_says_what_it_should()
    {
        QCOMPARE(window->windowTitle(), u"Quorvel"_s);
        const std::pair<const char *, QString> texts[] = {
            {"calbtn", u"&Calibration"_s},
            {"setbtn", u"Setting"_s},
            {"conbtn", u"Connect"_s},
            {"rotationButton", u"&Rotation"_s},
            {"pushButton", u"Quorvel v3.0.1.0"_s},
            {"pushButton_2", u"Reset"_s},
        };
        for (const auto &[name, text] : texts)
            QCOMPARE(in(window, name)->text(), text);
        const std::pair<const char *, QString> labels[] = {
            {"label_3", u"Calibrate your touch device, make it more suitable for your screen."_s},
            {"label_4", u"Set your touch device, make it more suitable for your custom."_s},
            {"label_5", u"Choose USB or UART mode, and set the TUIO options."_s},
            {"label_9", u"Rotate your touch device,\nmake it more suitable for your\nscreen"_s},
            {"label_2", u"Quorvel"_s},
            {"stalab", Unlinked},
        };
        for (const auto &[name, text] : labels)
            QCOMPARE(in<QLabel>(window, name)->text(), text);
        for (const char *name : {"label_6", "label_7", "label_8", "label_10"})
            QCOMPARE(in<QLabel>(window, name)->pixmap().size(), QSize(48, 48));
        QVERIFY(in(window, "pushButton")->styleSheet().contains(u"color: rgb(75, 76, 161);"_s));
    }

    void each_picture_stands_beside_what_it_is_about()
    {
        const std::pair<const char *, QString> pictures[] = {{"label_6", u"icon1"_s},
                                                             {"label_7", u"icon2"_s},
                                                             {"label_8", u"icon3"_s},
                                                             {"label_10", u"iconrotation"_s}};
        QList<QImage> seen;
        for (const auto &[label, name] : pictures) {
            const QPixmap expected(u":/new/ico/image/%1.png"_s.arg(name));
            QVERIFY(!expected.isNull());
            const QImage shown = in<QLabel>(window, label)->pixmap().toImage();
            QCOMPARE(shown, expected.toImage());
            QVERIFY(!seen.contains(shown));
            seen.append(shown);
        }
    }

    void fonts_places_and_hidden_groups_are_as_described()
    {
        for (const char *name : {"label_3", "label_4", "label_5", "label_9", "calbtn", "setbtn",
                                 "conbtn", "pushButton_2", "rotationButton"}) {
            const QFont font = in<QWidget>(window, name)->font();
            QCOMPARE(font.family(), u"Tahoma"_s);
            QCOMPARE(font.pointSize(), 9);
        }
        QVERIFY(in<QGroupBox>(window, "groupBox")->isVisible());
        QVERIFY(!in<QGroupBox>(window, "groupBox_2")->isVisible());
        QVERIFY(!in<QGroupBox>(window, "groupBox_3")->isVisible());
        QVERIFY(in<QGroupBox>(window, "groupBoxRotation")->isVisible());
        QCOMPARE(in(window, "pushButton_2")->pos(), QPoint(10, 221));
        QCOMPARE(in(window, "pushButton")->geometry(), QRect(170, 221, 170, 26));
    }

    void the_window_cannot_be_resized()
    {
        QCOMPARE(window->size(), QSize(350, 272));
        window->resize(500, 400);
        QTest::qWait(50);
        QCOMPARE(window->size(), QSize(350, 272));
        QCOMPARE(window->minimumSize(), window->maximumSize());
    }

    void nothing_is_clipped() { QCOMPARE(clippedTexts(*window), QStringList()); }

    void everything_is_reachable_by_keyboard_and_named()
    {
        connectFrame();
        QStringList reached;
        in(window, "calbtn")->setFocus();
        for (int i = 0; i < 6; ++i) {
            reached.append(QApplication::focusWidget()->objectName());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(reached, QStringList({u"calbtn"_s, u"rotationButton"_s, u"pushButton_2"_s,
                                       u"pushButton"_s, u"nextbtn"_s, u"menubtn"_s}));
        // A name would be read instead of the status.
        QCOMPARE(in<QLabel>(window, "stalab")->accessibleName(), QString());
    }

    // Connecting

    void before_the_first_connection_the_device_buttons_are_disabled()
    {
        QCOMPARE(window->connectState(), MainWindow::NotConnected);
        QVERIFY(deviceButtonsEnabled(false));
        QVERIFY(in(window, "conbtn")->isEnabled());
        QVERIFY(in(window, "pushButton")->isEnabled());
        QCOMPARE(status(), Unlinked);
    }

    void a_frame_that_is_there_at_start_is_connected_at_once()
    {
        window.reset();
        frame->present = true;
        window = std::make_unique<MainWindow>(frame);
        QCOMPARE(window->connectState(), MainWindow::UsbConnected);
        QVERIFY(deviceButtonsEnabled(true));
        QCOMPARE(status(), Linked);
    }

    void connecting_enables_the_buttons_and_tells_once()
    {
        QSignalSpy connected(window.get(), &MainWindow::USBConnect);
        connectFrame();
        QVERIFY(deviceButtonsEnabled(true));
        QCOMPARE(status(), Linked);
        for (int i = 0; i < 5; ++i) {
            window->OnDeviceAdded();
            window->ontimer();
        }
        QCOMPARE(connected.size(), 1);
    }

    void after_every_removal_the_device_buttons_are_disabled()
    {
        for (int round = 0; round < 3; ++round) {
            connectFrame();
            removeFrame();
            QVERIFY(deviceButtonsEnabled(false));
            QCOMPARE(status(), Unlinked);
        }
    }

    void the_timer_finds_a_frame_without_any_event()
    {
        frame->present = true;
        QTRY_COMPARE_WITH_TIMEOUT(window->connectState(), MainWindow::UsbConnected, 2000);
    }

    void a_frame_whose_node_comes_after_the_event_is_found_soon()
    {
        window->findChild<QTimer *>(u"checkTimer"_s)->stop();
        window->OnDeviceAdded();
        QCOMPARE(window->connectState(), MainWindow::NotConnected);
        std::this_thread::sleep_for(30ms);
        frame->present = true;
        QTRY_COMPARE(window->connectState(), MainWindow::UsbConnected);
    }

    void a_forced_removal_disconnects_a_frame_that_is_still_there_until_the_next_tick()
    {
        connectFrame();
        window->OnDeviceRemoved();
        QCOMPARE(window->connectState(), MainWindow::NotConnected);
        QCOMPARE(status(), Unlinked);
        QTRY_COMPARE_WITH_TIMEOUT(window->connectState(), MainWindow::UsbConnected, 2000);
    }

    void an_unforced_check_leaves_a_frame_that_is_still_there()
    {
        connectFrame();
        QVERIFY(window->CheckUSBDevRem(false));
        QCOMPARE(window->connectState(), MainWindow::UsbConnected);
        frame->present = false;
        QVERIFY(window->CheckUSBDevRem(false));
        QCOMPARE(window->connectState(), MainWindow::NotConnected);
    }

    void lost_events_are_looked_up()
    {
        connectFrame();
        frame->present = false;
        window->OnEventsLost();
        QCOMPARE(window->connectState(), MainWindow::NotConnected);
        frame->present = true;
        window->OnEventsLost();
        QCOMPARE(window->connectState(), MainWindow::UsbConnected);
    }

    void a_removal_while_hidden_shows_when_the_window_does_data()
    {
        QTest::addColumn<bool>("byTray");
        QTest::newRow("tray icon") << true;
        QTest::newRow("second start") << false;
    }
    void a_removal_while_hidden_shows_when_the_window_does()
    {
        QFETCH(const bool, byTray);
        connectFrame();
        window->hide();
        removeFrame();
        if (byTray)
            window->iconActivated(QSystemTrayIcon::Trigger);
        else
            window->handleMessage(u"-W"_s);
        QVERIFY(window->isVisible());
        QCOMPARE(status(), Unlinked);
        QVERIFY(deviceButtonsEnabled(false));
    }

    void a_node_that_may_not_be_opened_is_told_once_and_taken_back()
    {
        const auto *label = in<QLabel>(window, "stalab");
        Capture errors(stderr);
        frame->setProblem({u"/dev/usb/hiddev3"_s, EACCES});
        QTRY_VERIFY_WITH_TIMEOUT(label->toolTip().startsWith(u"A touch frame is at"_s), 3000);
        // What helps depends on whether the rule is installed here.
        QVERIFY2(label->toolTip().startsWith(u"A touch frame is at /dev/usb/hiddev3 but this user "
                                             "may not open it (Permission denied). "_s),
                 qPrintable(label->toolTip()));
        QVERIFY(label->toolTip().contains(u"70-quorvel.rules"_s));
        QCOMPARE(label->accessibleDescription(), label->toolTip());
        QCOMPARE(status(), Unlinked);
        for (int i = 0; i < 5; ++i)
            window->ontimer();
        QCOMPARE(errors.text(), label->toolTip().toLocal8Bit() + '\n');

        frame->setProblem({});
        connectFrame();
        QVERIFY(label->toolTip().startsWith(u"Linked by USB"_s));
        removeFrame();
        frame->setProblem({u"/dev/usb/hiddev3"_s, EACCES});
        QTRY_VERIFY_WITH_TIMEOUT(label->toolTip().startsWith(u"A touch frame is at"_s), 3000);
        QCOMPARE(errors.text().count('\n'), 2);
    }

    void permissions_that_come_a_moment_late_are_not_complained_about()
    {
        Capture errors(stderr);
        frame->setProblem({u"/dev/usb/hiddev3"_s, EACCES});
        window->OnDeviceAdded();
        QTest::qWait(100);
        frame->setProblem({});
        connectFrame();
        QTest::qWait(600);
        QCOMPARE(errors.text(), "");
        QVERIFY(in<QLabel>(window, "stalab")->toolTip().startsWith(u"Linked by USB"_s));
    }

    // Who hears and is heard

    void what_the_window_says_of_a_link_can_be_told_from_outside()
    {
        window->UiWhenCon();
        QCOMPARE(status(), Linked);
        QVERIFY(deviceButtonsEnabled(true));
        window->UiWhenUncon();
        QCOMPARE(status(), Unlinked);
        QVERIFY(deviceButtonsEnabled(false));
    }

    void a_rate_is_sent_as_its_code()
    {
        connectFrame();
        window->UartSetBaud(BAUD115200);
        QTRY_COMPARE(frame->sent().size(), 1);
        QCOMPARE(frame->sentBytes(7), QByteArrayList({"b1 00 03 00 13 00 00"}));
    }

    void dialogs_hear_and_are_heard_as_the_table_says_data()
    {
        QTest::addColumn<bool>("isHeard");
        QTest::addColumn<bool>("hearsReports");
        QTest::addColumn<bool>("hearsConnections");
        QTest::addColumn<bool>("hearsEnds");
        QTest::newRow("smoothing_dlg") << true << false << false << false;
        QTest::newRow("Setting_dlg") << true << true << true << false;
        QTest::newRow("useradv_dlg") << true << true << true << false;
        QTest::newRow("advset_dlg") << true << true << false << false;
        QTest::newRow("test_win") << true << true << false << true;
        QTest::newRow("LightSet_dlg") << true << true << false << true;
        QTest::newRow("connect_dlg") << true << true << false << false;
        QTest::newRow("Calibration_Dlg") << true << true << false << false;
        QTest::newRow("Version_Dlg") << false << false << false << true;
        QTest::newRow("Rotation_dlg") << true << true << false << true;
    }
    void dialogs_hear_and_are_heard_as_the_table_says()
    {
        const QByteArray name = QTest::currentDataTag();
        const QWidget *dialog =
            name == "Calibration_Dlg" ? calibrationScreen() : in<QWidget>(window, name.constData());
        QVERIFY(dialog);
        QCOMPARE(dialog->metaObject()->className(), name.constData());
        const auto *link = window->findChild<Link *>();
        // Taking a connection away tells whether there was one.
        QTEST(dialog->metaObject()->indexOfSignal("Write03(UCHAR*)") >= 0 &&
                  QObject::disconnect(dialog, SIGNAL(Write03(UCHAR *)), window.get(), nullptr),
              "isHeard");
        QTEST(QObject::disconnect(window.get(), SIGNAL(Recv03(UCHAR *)), dialog, nullptr),
              "hearsReports");
        QTEST(QObject::disconnect(window.get(), SIGNAL(USBConnect()), dialog, nullptr),
              "hearsConnections");
        QTEST(QObject::disconnect(link, SIGNAL(ended()), dialog, nullptr), "hearsEnds");
    }

    void nobody_hears_twice()
    {
        struct CountingWindow : MainWindow
        {
            using MainWindow::MainWindow;
            using QObject::receivers;
        };
        window.reset();
        const CountingWindow counted(frame);
        // Those of the table above, and the window itself.
        QCOMPARE(counted.receivers(SIGNAL(Recv03(UCHAR *))), 8 + 1);
        QCOMPARE(counted.receivers(SIGNAL(USBConnect())), 2);
        QCOMPARE(counted.receivers(SIGNAL(Write03(UCHAR *))), 1);
    }

    void every_connection_sends_the_stored_gestures_and_then_asks_for_the_version()
    {
        // A hold of 2000 ms within 4, the wheel at 1.
        const QByteArrayList stored{"a2 00 05 00 01 01 d0 07 04 01 01",
                                    "a3 00 00 00 00 00 00 00 00 00 00"};
        XML_CLASS().write_setting({.all_en = 1,
                                   .rb_en = 1,
                                   .rb_duration = 2000,
                                   .rb_ran = 4,
                                   .db_speed = 600,
                                   .db_ran = 30,
                                   .wheel_en = 1,
                                   .wheel_sen = 1});
        for (int round = 0; round < 2; ++round) {
            frame->forgetSent();
            frame->present = true;
            window->OnDeviceAdded();
            QTRY_COMPARE(frame->sentBytes(11), stored);
            removeFrame();
        }
    }

    // Some frames have restarted meanwhile.
    void a_machine_that_has_slept_tells_the_frame_its_gestures_again()
    {
        connectFrame();
        emit window->findChild<Link *>()->wokeUp();
        QTRY_COMPARE(frame->sentBytes(11), QByteArrayList({"a2 00 05 00 01 01 dc 05 03 01 02"}));
    }

    // Dialogs

    void the_context_menu_leads_to_what_the_form_hides_data()
    {
        QTest::addColumn<QString>("clicked");
        QTest::addColumn<QString>("key");
        QTest::newRow("right click on a text") << u"label_3"_s << QString();
        QTest::newRow("right click on a disabled button") << u"rotationButton"_s << QString();
        QTest::newRow("menu key") << QString() << u"Menu"_s;
        QTest::newRow("shift and F10") << QString() << u"shift+F10"_s;
    }
    void the_context_menu_leads_to_what_the_form_hides()
    {
        QFETCH(const QString, clicked);
        QFETCH(const QString, key);
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        in(window, "pushButton")->setFocus();
        // As a person does it: the X server and the toolkit have their say.
        if (key.isEmpty()) {
            const auto *at = in<QWidget>(window, clicked.toLatin1().constData());
            QVERIFY(hand::click(at->mapToGlobal(at->rect().center()), 3));
        } else {
            QVERIFY(hand::press(key));
        }
        QTRY_VERIFY(QApplication::activePopupWidget());
        const auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        QStringList texts;
        QList<bool> enabled;
        for (const QAction *action : menu->actions()) {
            texts.append(action->text());
            enabled.append(action->isEnabled());
        }
        QCOMPARE(texts,
                 QStringList({u"&Setting"_s, u"S&moothing"_s, u"&Connect"_s, u"L&ight check..."_s,
                              u"&Try out gestures"_s, u"Check c&alibration"_s, u"&Record..."_s,
                              u"Support &file..."_s, u"&Help"_s}));
        QCOMPARE(enabled, QList<bool>({false, true, true, true, true, true, true, true, true}));
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_M);
        QTRY_VERIFY(in<smoothing_dlg>(window, "smoothing_dlg")->isVisible());
    }

    // Made when they are first asked for: a start does without.
    void what_shows_how_touches_arrive_comes_up_once_from_either_menu()
    {
        const auto choose = [](const QMenu *menu, const QString &text) {
            for (QAction *action : menu->actions())
                if (action->text() == text)
                    action->trigger();
        };
        QVERIFY(!window->findChild<TryOut_dlg *>());
        QVERIFY(!window->findChild<CalibrationCheck_dlg *>());
        choose(in(window, "menubtn")->menu(), u"&Try out gestures"_s);
        auto *tryOut = window->findChild<TryOut_dlg *>();
        QVERIFY(tryOut && tryOut->isVisible());
        choose(in(window, "menubtn")->menu(), u"Check c&alibration"_s);
        auto *check = window->findChild<CalibrationCheck_dlg *>();
        QVERIFY(check);
        QVERIFY(QTest::qWaitForWindowActive(check));
        QTRY_COMPARE(check->geometry(), window->screen()->geometry());
        QTest::keyClick(check, Qt::Key_Escape);
        QVERIFY(!check->isVisible());
        tryOut->close();

        // The tray's, with the main window gone.
        window->hide();
        choose(trayMenu(), u"&Try out gestures"_s);
        choose(trayMenu(), u"Check c&alibration"_s);
        QVERIFY(tryOut->isVisible());
        QVERIFY(QTest::qWaitForWindowActive(check));
        QTRY_COMPARE(check->geometry(), window->screen()->geometry());
        check->close();
        QCOMPARE(window->findChildren<TryOut_dlg *>().size(), 1);
        QCOMPARE(window->findChildren<CalibrationCheck_dlg *>().size(), 1);
    }

    void the_keyboard_opens_what_shows_how_touches_arrive_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("opened");
        QTest::newRow("gestures") << u"t"_s << u"TryOut_dlg"_s;
        QTest::newRow("calibration") << u"a"_s << u"CalibrationCheck_dlg"_s;
    }
    void the_keyboard_opens_what_shows_how_touches_arrive()
    {
        QFETCH(const QString, key);
        QFETCH(const QString, opened);
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        QVERIFY(hand::press(u"shift+F10"_s));
        QTRY_VERIFY(QApplication::activePopupWidget());
        QVERIFY(hand::press(key));
        QTRY_VERIFY(window->findChild<QWidget *>(opened));
        QVERIFY(QTest::qWaitForWindowActive(window->findChild<QWidget *>(opened)));
        // The keyboard follows the window a moment later.
        QTRY_VERIFY(hand::press(u"Escape"_s) && !window->findChild<QWidget *>(opened)->isVisible());
    }

    void setting_in_the_menu_is_enabled_exactly_when_the_button_is()
    {
        const auto *menu = window->findChild<QMenu *>();
        const QAction *setting = menu->actions().first();
        QVERIFY(!setting->isEnabled());
        connectFrame();
        QVERIFY(in(window, "setbtn")->isEnabled() && setting->isEnabled());
        removeFrame();
        QVERIFY(!in(window, "setbtn")->isEnabled() && !setting->isEnabled());
        Pty pty;
        QVERIFY(window->OpenUart(pty.path(), {}));
        QVERIFY(in(window, "setbtn")->isEnabled() && setting->isEnabled());
        window->CLoseUart();
        QVERIFY(!in(window, "setbtn")->isEnabled() && !setting->isEnabled());
    }

    void the_usage_dialog_leads_to_the_gestures()
    {
        connectFrame();
        window->findChild<QMenu *>()->actions().first()->trigger();
        auto *usage = in<Setting_dlg>(window, "Setting_dlg");
        QTRY_VERIFY(usage->isVisible());
        press(window, "AdvBtn");
        QTRY_VERIFY(in<useradv_dlg>(window, "useradv_dlg")->isVisible());
        QVERIFY(usage->isVisible());
    }

    void gestures_that_are_applied_reach_the_frame()
    {
        connectFrame();
        auto *gestures = in<useradv_dlg>(window, "useradv_dlg");
        gestures->show();
        gestures->findChild<QSlider *>(u"rbspeed"_s)->setValue(2500);
        auto *apply = gestures->findChild<QPushButton *>(u"applybtn"_s);
        QTest::mouseClick(apply, Qt::LeftButton);
        QCOMPARE(apply->toolTip(), QString()); // nothing stands in the way
        QTRY_COMPARE(frame->sentBytes(11), QByteArrayList({"a2 00 05 00 01 01 c4 09 03 01 02"}));
        QCOMPARE(XML_CLASS().read_setting().rb_duration, 2500);
    }

    void gestures_applied_without_a_frame_say_so_and_go_out_at_the_next_connection()
    {
        connectFrame();
        auto *gestures = in<useradv_dlg>(window, "useradv_dlg");
        auto *apply = gestures->findChild<QPushButton *>(u"applybtn"_s);
        gestures->show();
        // Behind a hidden window the dialog stays when the frame goes.
        window->hide();
        removeFrame();
        QVERIFY(gestures->isVisible());
        gestures->findChild<QSlider *>(u"rbran"_s)->setValue(5);
        QTest::mouseClick(apply, Qt::LeftButton);
        QVERIFY(apply->toolTip().contains(u"will be sent"_s));
        QTest::qWait(150);
        QCOMPARE(frame->sent().size(), 0);

        frame->present = true;
        window->OnDeviceAdded();
        QTRY_COMPARE(frame->sentBytes(11), QByteArrayList({"a2 00 05 00 01 01 dc 05 05 01 02",
                                                           "a3 00 00 00 00 00 00 00 00 00 00"}));
        QCOMPARE(apply->toolTip(), QString());
    }

    void a_removal_closes_the_dialogs_but_not_the_rotation()
    {
        connectFrame();
        const QWidgetList closed{
            in<QWidget>(window, "smoothing_dlg"), in<QWidget>(window, "advset_dlg"),
            in<QWidget>(window, "Setting_dlg"),   in<QWidget>(window, "useradv_dlg"),
            in<QWidget>(window, "test_win"),      in<QWidget>(window, "Version_Dlg"),
            in<QWidget>(window, "LightSet_dlg")};
        auto *rotation = in<QWidget>(window, "Rotation_dlg");
        for (QWidget *dialog : closed)
            dialog->show();
        rotation->show();
        removeFrame();
        for (const QWidget *dialog : closed)
            QVERIFY2(!dialog->isVisible(), qPrintable(dialog->objectName()));
        QVERIFY(rotation->isVisible());
    }

    void the_version_button_shows_what_the_frame_told()
    {
        frame->setReport(
            QByteArray::fromHex("FC A3 80 0E 00 12 38 01 78 56 34 92 BC 9A 7E 5D F6 02"));
        connectFrame();
        QTRY_COMPARE(hidver.P_FID, 2u);
        press(window, "pushButton");
        auto *versions = in<Version_Dlg>(window, "Version_Dlg");
        QTRY_VERIFY(versions->isVisible());
        QCOMPARE(versions->findChild<QLabel *>(u"label_3"_s)->text(), u"Device version: 3.0.1.0"_s);
        QCOMPARE(versions->findChild<QLabel *>(u"label_4"_s)->text(), u"Hardware: 5156 - 0001"_s);
        QCOMPARE(versions->findChild<QLabel *>(u"label_5"_s)->text(), u"SID: 92345678 - 013812"_s);
        QCOMPARE(versions->findChild<QLabel *>(u"label_6"_s)->text(), u"PID: TELMA - 65D7E9ABC"_s);
    }

    void the_rotation_button_asks_the_frame_and_runs_until_it_is_closed()
    {
        frame->setReport(QByteArray::fromHex("FC A7 82 02 00 03"));
        connectFrame();
        QString shown;
        QTimer poll;
        connect(&poll, &QTimer::timeout, this, [&] {
            auto *dialog = qobject_cast<Rotation_dlg *>(QApplication::activeModalWidget());
            if (!dialog || dialog->findChild<QLabel *>(u"Rotationlab"_s)->text() == u"-1"_s)
                return;
            poll.stop();
            shown = dialog->findChild<QLabel *>(u"Rotationlab"_s)->text();
            press(dialog, "okbtn");
        });
        poll.start(20);
        press(window, "rotationButton");
        QCOMPARE(shown, u"270"_s);
        QVERIFY(frame->sentBytes(3).contains("a7 02 00"));
    }

    // Versions and reset

    void the_version_query_goes_to_current_devices_only_data()
    {
        QTest::addColumn<quint32>("version");
        QTest::addColumn<QByteArrayList>("sent");
        QTest::newRow("0x2FFF is older") << 0x2FFFu << QByteArrayList({"a2 00 05"});
        QTest::newRow("0x3000 is current") << 0x3000u << QByteArrayList({"a2 00 05", "a3 00 00"});
        QTest::newRow("0x3010 is current") << 0x3010u << QByteArrayList({"a2 00 05", "a3 00 00"});
    }
    void the_version_query_goes_to_current_devices_only()
    {
        QFETCH(const quint32, version);
        QFETCH(const QByteArrayList, sent);
        hidver.SVNNUM = hidver.CHECKSUM = hidver.P_FID = hidver.P_DATE = hidver.P_NUM = 77;
        frame->version = version;
        frame->present = true;
        window->OnDeviceAdded();
        QTRY_COMPARE(frame->sentBytes(3), sent);
        QTest::qWait(200);
        QCOMPARE(frame->sentBytes(3), sent);
        const quint32 expected = sent.size() == 1 ? 0 : 77;
        QCOMPARE(hidver.SVNNUM, expected);
        QCOMPARE(hidver.CHECKSUM, expected);
        QCOMPARE(hidver.P_FID, expected);
        QCOMPARE(hidver.P_DATE, expected);
        QCOMPARE(hidver.P_NUM, expected);
    }

    void a_version_reply_is_decoded()
    {
        frame->setReport(
            QByteArray::fromHex("FC A3 80 0E 00 12 38 01 78 56 34 92 BC 9A 7E 5D F6 02"));
        connectFrame();
        QTRY_COMPARE(hidver.P_FID, 2u);
        QCOMPARE(hidver.SVNNUM, 0x013812u);
        QCOMPARE(hidver.CHECKSUM, 0x92345678u);
        QCOMPARE(hidver.P_NUM, 0xE9ABCu);
        QCOMPARE(hidver.P_DATE, 0x65D7u);
    }

    void a_report_with_another_id_is_dropped()
    {
        frame->setReport(QByteArray::fromHex("FC A3 80 0E 00 12 38 01"));
        frame->otherId = 0xFB;
        connectFrame();
        QSignalSpy delivered(window.get(), &MainWindow::Recv03);
        const int before = frame->reads;
        QTRY_VERIFY(frame->reads > before + 3);
        QTest::qWait(50);
        QCOMPARE(delivered.size(), 0);
        QCOMPARE(hidver.SVNNUM, 0u);
        frame->otherId = 0;
        QTRY_COMPARE(hidver.SVNNUM, 0x013812u);
    }

    void a_late_completion_of_a_removed_device_delivers_nothing()
    {
        connectFrame();
        removeFrame();
        QSignalSpy delivered(window.get(), &MainWindow::Recv03);
        window->OnRecv03(QChar(1));
        window->OnRecv03(QChar(2));
        QCOMPARE(delivered.size(), 0);
    }

    void reset_sends_the_command_of_the_generation_and_then_the_older_one_data()
    {
        QTest::addColumn<quint32>("version");
        QTest::addColumn<QByteArray>("first");
        QTest::newRow("current") << 0x3010u << QByteArray("a2 03 00 00 00 00 00 00");
        QTest::newRow("older") << 0x2FFFu << QByteArray("10 00 00 00 00 00 00 00");
    }
    void reset_sends_the_command_of_the_generation_and_then_the_older_one()
    {
        QFETCH(const quint32, version);
        QFETCH(const QByteArray, first);
        frame->version = version;
        connectFrame();
        dismissReset();
        QTRY_COMPARE(frame->sentBytes(), QByteArrayList({first, "10 00 00 00 00 00 00 00"}));
    }

    void the_older_reset_command_follows_half_a_millisecond_after_the_other()
    {
        // A port takes a frame at once; over USB the second one would wait for the first.
        Pty line;
        QVERIFY(window->OpenUart(line.path(), {}));
        QList<FakeAdapter::Clock::time_point> sent;
        connect(window.get(), &MainWindow::Write03, this,
                [&sent] { sent.append(FakeAdapter::Clock::now()); });
        const auto pause = quickest(20ms, [&] {
            sent.clear();
            dismissReset();
            return sent.size() == 2 ? sent[1] - sent[0] : 0ns;
        });
        QVERIFY(pause >= 500us);
        QVERIFY(pause < 20ms);
    }

    // Frames

    void two_frames_in_quick_succession_go_out_one_after_the_other()
    {
        connectFrame();
        const auto begin = FakeAdapter::Clock::now();
        send(QByteArray::fromHex("00 A7 00 02 00 02"));
        send(QByteArray::fromHex("00 A7 02"));
        const auto blocked = FakeAdapter::Clock::now() - begin;
        QVERIFY(blocked >= 50ms);
        QTRY_COMPARE(frame->sent().size(), 2);
        QCOMPARE(frame->sentBytes(5), QByteArrayList({"a7 00 02 00 02", "a7 02 00 00 00"}));
        const auto sent = frame->sent();
        QVERIFY(sent[0].when - begin >= 50ms);
        QVERIFY(sent[1].when - sent[0].when >= 50ms);
    }

    void a_caller_may_reuse_its_buffer_at_once()
    {
        connectFrame();
        UCHAR buffer[64] = {0x00, 0xA5, 0x01};
        emit window->Write03(buffer);
        memset(buffer, 0xEE, sizeof buffer);
        QTRY_COMPARE(frame->sent().size(), 1);
        QCOMPARE(frame->sentBytes(3), QByteArrayList({"a5 01 00"}));
    }

    void a_frame_without_a_device_is_dropped_data()
    {
        QTest::addColumn<int>("state");
        QTest::newRow("not connected") << int(MainWindow::NotConnected);
        QTest::newRow("serial closed") << int(MainWindow::SerialClosed);
        QTest::newRow("serial failed") << int(MainWindow::SerialFailed);
    }
    void a_frame_without_a_device_is_dropped()
    {
        QFETCH(const int, state);
        Pty line;
        if (state == MainWindow::SerialClosed) {
            QVERIFY(window->OpenUart(line.path(), {}));
            window->CLoseUart();
        } else if (state == MainWindow::SerialFailed) {
            QVERIFY(!window->OpenUart(u"/dev/no-such-port"_s, {}));
        }
        QCOMPARE(int(window->connectState()), state);
        line.received();
        send(QByteArray::fromHex("00 A7 02"));
        QTest::qWait(120);
        QCOMPARE(frame->sent().size(), 0);
        QCOMPARE(line.received(), QByteArray());
    }

    void the_same_report_is_delivered_every_cycle()
    {
        frame->setReport(QByteArray::fromHex("FC A7 82 02 00 01"));
        connectFrame();
        QByteArrayList seen;
        connect(window.get(), &MainWindow::Recv03, this, [&seen](UCHAR *buf) {
            seen.append(QByteArray(reinterpret_cast<char *>(buf), 6).toHex(' '));
        });
        QTRY_VERIFY(seen.size() >= 5);
        for (const QByteArray &report : seen)
            QCOMPARE(report, QByteArray("fc a7 82 02 00 01"));
    }

    void every_report_reaches_every_receiver_once_through_a_blocked_window()
    {
        QObject first;
        QObject second;
        QList<int> *ones = received(&first);
        QList<int> *twos = received(&second);
        connectFrame();
        QTRY_VERIFY(ones->size() >= 3);
        const int before = frame->reads;
        std::this_thread::sleep_for(2s);
        const int after = frame->reads;
        QVERIFY(after - before > 100);
        QTRY_VERIFY(ones->size() >= after);
        for (int i = 0; i < after; ++i) {
            QCOMPARE(ones->at(i), i + 1);
            QCOMPARE(twos->at(i), i + 1);
        }
    }

    void a_receiver_with_an_event_loop_of_its_own_changes_nothing_for_the_others()
    {
        QList<int> *before = received(this);
        int depth = 0;
        bool once = false;
        QObject context;
        connect(window.get(), &MainWindow::Recv03, &context, [&] {
            QCOMPARE(depth, 0);
            if (std::exchange(once, true))
                return;
            ++depth;
            QEventLoop nested;
            QTimer::singleShot(300, &nested, &QEventLoop::quit);
            nested.exec();
            --depth;
        });
        QList<int> *behind = received(this);
        connectFrame();
        QTRY_VERIFY_WITH_TIMEOUT(behind->size() > 50, 10000);
        QVERIFY(once);
        for (int i = 0; i < 50; ++i) {
            QCOMPARE(before->at(i), i + 1);
            QCOMPARE(behind->at(i), i + 1);
        }
    }

    void reports_of_a_removed_device_are_never_delivered()
    {
        connectFrame();
        QSignalSpy delivered(window.get(), &MainWindow::Recv03);
        std::this_thread::sleep_for(200ms); // reports wait, and so do their signals
        removeFrame();
        QTest::qWait(200);
        QCOMPARE(delivered.size(), 0);

        QList<int> *numbers = received(this);
        const int readBefore = frame->reads;
        connectFrame();
        QTRY_VERIFY(numbers->size() >= 5);
        for (int i = 0; i < 5; ++i)
            QCOMPARE(numbers->at(i), readBefore + i + 1);
    }

    void a_removal_inside_a_receivers_event_loop_spares_the_next_receiver_the_report()
    {
        frame->setReport(QByteArray::fromHex("FC A7 82"));
        bool remove = false;
        QByteArrayList seenBehind;
        connect(window.get(), &MainWindow::Recv03, this, [&] {
            if (!std::exchange(remove, false))
                return;
            QEventLoop nested;
            QTimer::singleShot(50, this, [&] {
                removeFrame();
                nested.quit();
            });
            seenBehind.clear();
            nested.exec();
        });
        connect(window.get(), &MainWindow::Recv03, this, [&seenBehind](UCHAR *buf) {
            seenBehind.append(QByteArray(reinterpret_cast<char *>(buf), 64));
        });
        connectFrame();
        remove = true;
        QTRY_COMPARE(window->connectState(), MainWindow::NotConnected);
        QCOMPARE(seenBehind.size(), 1);
        QCOMPARE(seenBehind.first(), QByteArray(64, '\0'));
    }

    void a_stalled_device_keeps_nobody_from_ending()
    {
        connectFrame();
        frame->stallReads(true);
        QTRY_COMPARE(frame->nowReading.load(), 1);
        std::thread later([this] {
            std::this_thread::sleep_for(300ms);
            frame->stallReads(false);
        });
        removeFrame();
        later.join();
        QCOMPARE(frame->nowReading.load(), 0);
        QCOMPARE(frame->closes.load(), 1);
    }

    void the_window_ends_cleanly_while_a_device_is_read()
    {
        connectFrame();
        QTRY_VERIFY(frame->reads > 3);
        send(QByteArray::fromHex("00 A7 02"));
        window.reset();
        QCOMPARE(frame->nowReading.load(), 0);
        QCOMPARE(frame->closes.load(), 1);
        QCOMPARE(frame->sentBytes(2), QByteArrayList({"a7 02"})); // what was under way went out
        const int reads = frame->reads;
        std::this_thread::sleep_for(100ms);
        QCOMPARE(frame->reads.load(), reads);
    }

    // Tray and closing

    void closing_the_visible_window_hides_it()
    {
        QTRY_VERIFY(docked());
        Capture errors(stderr);
        QVERIFY(!window->close());
        // Where there is a tray to hide in, nothing has to be said.
        QCOMPARE(errors.text(), "");
        QVERIFY(!window->findChild<QMessageBox *>());
        QVERIFY(!window->isVisible());
        QVERIFY(window->findChild<QTimer *>(u"checkTimer"_s)->isActive());
    }

    void exit_ends_the_event_loop_data()
    {
        QTest::addColumn<bool>("shown");
        QTest::newRow("from a shown window") << true;
        QTest::newRow("from the tray") << false;
    }
    void exit_ends_the_event_loop()
    {
        QFETCH(const bool, shown);
        window->setVisible(shown);
        QTimer::singleShot(0, window.get(), &MainWindow::OnExit);
        QCOMPARE(runAtMost(5s), 0);
        QVERIFY(!window->isVisible());
    }

    void exit_works_for_a_window_that_was_never_shown()
    {
        window = std::make_unique<MainWindow>(frame);
        QTimer::singleShot(0, window.get(), &MainWindow::OnExit);
        QCOMPARE(runAtMost(5s), 0);
    }

    void closing_the_last_other_window_leaves_the_tray_alone()
    {
        connectFrame();
        press(window, "calbtn");
        window->hide();
        QTimer::singleShot(100, this, [] { calibrationScreen()->close(); });
        QCOMPARE(runAtMost(600ms), TooLate);
    }

    void a_click_on_the_tray_icon_shows_the_window_and_a_double_click_does_not()
    {
        window->hide();
        for (const auto reason : {QSystemTrayIcon::DoubleClick, QSystemTrayIcon::Context,
                                  QSystemTrayIcon::MiddleClick, QSystemTrayIcon::Unknown}) {
            window->iconActivated(reason);
            QVERIFY(!window->isVisible());
        }
        window->iconActivated(QSystemTrayIcon::Trigger);
        QVERIFY(window->isVisible());
    }

    void the_tray_icon_shows_its_picture_and_names_the_program()
    {
        QTRY_VERIFY(docked());
        QVERIFY(docked()->toolTip().startsWith(u"Quorvel"_s));
        const auto onWhite = [](const auto &draw) {
            QImage image(docked()->size(), QImage::Format_ARGB32);
            image.fill(Qt::white);
            draw(image);
            return image;
        };
        const QIcon picture(u":/new/ico/image/MalvoTouch Tool Menu.png"_s);
        const QImage expected = onWhite([&picture](QImage &image) {
            QPainter painter(&image);
            picture.paint(&painter, image.rect());
        });
        const QImage shown = onWhite(
            [](QImage &image) { docked()->render(&image, {}, {}, QWidget::RenderFlags()); });
        QVERIFY(expected != onWhite([](QImage &) {}));
        QCOMPARE(shown, expected);
    }

    void the_tray_menu_shows_and_exits()
    {
        const QMenu *menu = trayMenu();
        if (!menu)
            QFAIL("the tray icon has no menu");
        const QList<QAction *> actions = menu->actions();
        QCOMPARE(actions.first()->text(), u"Show"_s);
        QVERIFY(actions[1]->isSeparator());
        QVERIFY(actions[actions.size() - 2]->isSeparator());
        QCOMPARE(actions.last()->text(), u"Exit"_s);
        window->hide();
        actions[0]->trigger();
        QVERIFY(window->isVisible());
        QTimer::singleShot(0, actions.last(), &QAction::trigger);
        QCOMPARE(runAtMost(5s), 0);
    }

    void the_trays_menu_has_what_the_windows_has()
    {
        const auto texts = [](const QMenu *menu) {
            QStringList all;
            for (const QAction *action : menu->actions())
                if (!action->isSeparator())
                    all.append(action->text());
            return all;
        };
        const auto *menu = in(window, "menubtn")->menu();
        QVERIFY(texts(menu).contains(u"&Setting"_s));
        QCOMPARE(texts(trayMenu()), QStringList(u"Show"_s) + texts(menu) + QStringList(u"Exit"_s));
        window->hide();
        trayMenu()->actions().at(3)->trigger();
        QVERIFY(window->findChild<smoothing_dlg *>()->isVisible());
    }

    void the_menu_button_opens_the_menu()
    {
        // Some versions of the toolkit return from the click only when the menu is closed.
        QWidget *opened = nullptr;
        QTimer poll;
        connect(&poll, &QTimer::timeout, this, [&opened] {
            if (QWidget *menu = QApplication::activePopupWidget()) {
                opened = menu;
                menu->close();
            }
        });
        poll.start(50);
        press(window, "menubtn");
        QTRY_VERIFY(opened);
        QCOMPARE(opened, in(window, "menubtn")->menu());
    }

    void the_trays_menu_opens_while_a_window_asks_data()
    {
        QTest::addColumn<QString>("asking");
        for (const char *asking : {"rotation", "reset", "calibration", "recording"})
            QTest::addRow("%s", asking) << QString::fromLatin1(asking);
    }
    void the_trays_menu_opens_while_a_window_asks()
    {
        QFETCH(const QString, asking);
        connectFrame();
        QTRY_VERIFY(docked());
        QTest::qWait(300); // until the tray has placed it
        const QPoint icon = docked()->mapToGlobal(docked()->rect().center());
        bool isModal = false;
        bool opened = false;
        int turns = 0;
        QTimer poll;
        connect(&poll, &QTimer::timeout, this, [&] {
            QWidget *modal = QApplication::activeModalWidget();
            if (QWidget *menu = QApplication::activePopupWidget()) {
                opened = menu == trayMenu();
                menu->close();
            } else if (modal && (opened || turns > 100)) {
                static_cast<QDialog *>(modal)->reject();
            } else if (modal) {
                isModal = true;
                // A busy machine may lose the menu.
                if (turns++ % 40 == 0)
                    QProcess::startDetached(u"xdotool"_s,
                                            {u"mousemove"_s, QString::number(icon.x()),
                                             QString::number(icon.y()), u"click"_s, u"3"_s});
            }
        });
        poll.start(50);
        if (asking == "rotation"_L1) {
            press(window, "rotationButton");
        } else if (asking == "reset"_L1) {
            press(window, "pushButton_2");
        } else if (asking == "recording"_L1) {
            const QList<QAction *> actions = in(window, "menubtn")->menu()->actions();
            const auto record =
                std::find_if(actions.begin(), actions.end(),
                             [](const QAction *one) { return one->text() == "&Record..."_L1; });
            QVERIFY(record != actions.end());
            (*record)->trigger();
        } else {
            press(window, "calbtn");
            QTRY_VERIFY(calibrationScreen()->isVisible());
            for (const UCHAR step : {0, 1, 2, 3, 4, 5, 0xFF}) {
                UCHAR reply[64] = {0xFC, 0x01, step};
                calibrationScreen()->DoRecv03(reply);
            }
        }
        QVERIFY(isModal);
        QVERIFY(opened);
    }

    void the_main_window_waits_for_the_question_about_a_calibration()
    {
        connectFrame();
        press(window, "calbtn");
        QTRY_VERIFY(calibrationScreen()->isVisible());
        QTest::qWait(100);
        frame->forgetSent();
        bool blocked = false;
        QTimer::singleShot(300, this, [&] {
            auto *question = qobject_cast<CalEnd_dlg *>(QApplication::activeModalWidget());
            QVERIFY(question);
            blocked = question->windowHandle()->transientParent() == window->windowHandle();
            // Who gets there all the same begins anew, and the frame hears of that.
            window->on_calbtn_clicked();
            QVERIFY(!question->isVisible());
        });
        for (const UCHAR step : {0, 1, 2, 3, 4, 5, 0xFF}) {
            UCHAR reply[64] = {0xFC, 0x01, step};
            calibrationScreen()->DoRecv03(reply);
        }
        QVERIFY(blocked);
        QTRY_VERIFY(frame->sentBytes(2).endsWith("01 00"));
        QCOMPARE(frame->sentBytes(2).sliced(frame->sentBytes(2).size() - 2),
                 QList<QByteArray>({"01 06", "01 00"}));
        QVERIFY(calibrationScreen()->isVisible());
    }

    void a_window_comes_back_where_the_user_left_it()
    {
        for (QWidget *shown :
             std::initializer_list<QWidget *>{window.get(), window->findChild<connect_dlg *>()}) {
            shown->show();
            QVERIFY(QTest::qWaitForWindowExposed(shown));
            const QPoint place(81, 92);
            QTest::qWait(200); // until the window manager has placed it
            QVERIFY(hand::move(shown->winId(), place));
            QTRY_COMPARE(shown->geometry().topLeft(), place);
            shown->close();
            QVERIFY(!shown->isVisible());
            shown->show();
            QVERIFY(QTest::qWaitForWindowExposed(shown));
            QTest::qWait(200);
            QTRY_COMPARE(shown->geometry().topLeft(), place);
        }
    }

    void a_window_without_an_icon_of_its_own_has_the_programs()
    {
        QVERIFY(!window->windowIcon().isNull());
        for (const QWidget *other : windowsOfTool())
            QVERIFY2(!other->windowIcon().isNull(), qPrintable(other->objectName()));
    }

    void a_simulated_frame_has_an_icon_of_its_own()
    {
        const auto shown = [] {
            QTest::qWait(100);
            return docked()->grab().toImage();
        };
        QTRY_VERIFY(docked());
        const QImage before = shown();
        QPixmap other(22, 22);
        other.fill(Qt::magenta);
        window->setSimulated(QIcon(other));
        QVERIFY(shown() != before);
        QCOMPARE(window->windowTitle(), u"Quorvel (simulated touch frame)"_s);
        // Windows that come later have it too.
        const auto colour = [](const QIcon &icon) {
            return icon.pixmap(22).toImage().pixelColor(1, 1);
        };
        QCOMPARE(colour(window->windowIcon()), QColor(Qt::magenta));
        QCOMPARE(colour(QWidget().windowIcon()), QColor(Qt::magenta));
    }

    void the_trays_tool_tip_tells_whether_a_frame_is_linked()
    {
        QTRY_VERIFY(docked());
        QCOMPARE(docked()->toolTip(), u"Quorvel: no touch frame is linked"_s);
        connectFrame();
        QTRY_COMPARE(docked()->toolTip(), u"Quorvel: a touch frame is linked"_s);
        removeFrame();
        QTRY_COMPARE(docked()->toolTip(), u"Quorvel: no touch frame is linked"_s);
    }

    void the_button_beside_the_status_tells_what_to_do_next()
    {
        QCOMPARE(in(window, "nextbtn")->text(), u"&What to do next"_s);
        press(window, "nextbtn");
        auto *box = window->findChild<QMessageBox *>();
        QVERIFY(QTest::qWaitForWindowExposed(box));
        QVERIFY(!box->isModal());
        QCOMPARE(box->windowTitle(), u"What to do next"_s);
        QCOMPARE(box->text(), in<QLabel>(window, "stalab")->toolTip());
        QVERIFY(!box->text().isEmpty());
        // For whoever looks it up elsewhere, by keyboard.
        auto *words = box->findChild<QLabel *>(u"qt_msgbox_label"_s);
        QTest::mouseClick(words, Qt::LeftButton);
        QTest::keyClick(words, Qt::Key_Home, Qt::ControlModifier);
        QTest::keyClick(words, Qt::Key_End, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(words->selectedText(), box->text());
        connectFrame();
        QCOMPARE(in(window, "nextbtn")->text(), u"&Details"_s);
        QCOMPARE(box->windowTitle(), u"Details"_s);
        QCOMPARE(box->text(), u"Linked by USB, at /dev/usb/fake."_s);
    }

    void messages_are_searched_for_both_texts_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("visible");
        QTest::newRow("show") << u"-W"_s << true;
        QTest::newRow("show, inside other text") << u"abc -W def"_s << true;
        QTest::newRow("nothing known") << u"-w -c"_s << false;
        QTest::newRow("empty") << QString() << false;
        QTest::newRow("both") << u"-W-C"_s << true;
    }
    void messages_are_searched_for_both_texts()
    {
        QFETCH(const QString, message);
        window->hide();
        window->handleMessage(message);
        QTEST(window->isVisible(), "visible");
    }

    // Calibration

    void calibration_opens_full_screen_and_tells_the_frame()
    {
        connectFrame();
        press(window, "calbtn");
        Calibration_Dlg *screen = calibrationScreen();
        QTRY_VERIFY(screen->isVisible());
        // The toolkit adds that it is a window, as it has no parent.
        QCOMPARE(int(screen->windowFlags() & Qt::WindowType_Mask), 0x12 | 0x01);
        QTRY_COMPARE(screen->geometry(), QRect(0, 0, 1280, 800));
        QTRY_COMPARE(frame->sentBytes(3), QByteArrayList({"01 00 00"}));
    }

    void unplugging_closes_the_calibration_at_once_and_sends_nothing()
    {
        connectFrame();
        press(window, "calbtn");
        QTRY_COMPARE(frame->sent().size(), 1);
        frame->forgetSent();
        removeFrame();
        QVERIFY(!calibrationScreen()->isVisible());
        connectFrame();
        QTest::qWait(150);
        QCOMPARE(frame->sent().size(), 0); // besides what every connection sends
    }

    void unplugging_behind_a_hidden_window_leaves_the_calibration_to_its_time_out()
    {
        connectFrame();
        press(window, "calbtn");
        QTRY_COMPARE(frame->sent().size(), 1);
        frame->forgetSent();
        window->hide();
        removeFrame();
        Calibration_Dlg *screen = calibrationScreen();
        QVERIFY(screen->isVisible());
        connectFrame();
        for (int tick = 0; tick < 60; ++tick)
            screen->ontimer();
        QVERIFY(!screen->isVisible());
        QTest::qWait(150);
        QCOMPARE(frame->sentBytes(), QByteArrayList()); // the new device is not told to reset
    }

    void unplugging_takes_the_question_away_and_saves_nothing()
    {
        connectFrame();
        press(window, "calbtn");
        QTRY_COMPARE(frame->sent().size(), 1);
        for (const char *step : {"01", "02", "03", "04", "05", "FF"}) {
            frame->setReport(QByteArray::fromHex(QByteArray("FC 01 ") + step));
            if (QByteArray(step) == "FF")
                break;
            QTRY_COMPARE(frame->lastSent(2), QByteArray("01 ") + step);
        }
        // The question runs an event loop of its own, so this happens inside of it.
        bool asked = false;
        QTimer poll;
        connect(&poll, &QTimer::timeout, this, [&] {
            if (!qobject_cast<CalEnd_dlg *>(QApplication::activeModalWidget()))
                return;
            poll.stop();
            asked = true;
            frame->forgetSent();
            removeFrame();
            frame->setReport({});
        });
        poll.start(10);
        QTRY_VERIFY_WITH_TIMEOUT(asked, 3000);
        QVERIFY(!QApplication::activeModalWidget());
        connectFrame();
        QTest::qWait(150);
        QCOMPARE(frame->sent().size(), 0); // besides what every connection sends
    }

    void ending_the_program_during_a_calibration_resets_the_frame()
    {
        connectFrame();
        press(window, "calbtn");
        QTRY_COMPARE(frame->sent().size(), 1);
        frame->forgetSent();
        window.reset();
        QCOMPARE(frame->sentBytes(3), QByteArrayList({"01 06 00"}));
    }

    // Serial

    void a_serial_connection_enables_the_device_buttons()
    {
        Pty line;
        QVERIFY(window->OpenUart(line.path(), {}));
        QCOMPARE(window->connectState(), MainWindow::SerialOpen);
        QVERIFY(deviceButtonsEnabled(true));
        QCOMPARE(status(), Linked);
        QCOMPARE(in(window, "nextbtn")->text(), u"&Details"_s);
        QTRY_VERIFY(docked());
        QTRY_COMPARE(docked()->toolTip(), u"Quorvel: a touch frame is linked"_s);
        window->CLoseUart();
        QCOMPARE(window->connectState(), MainWindow::SerialClosed);
        QVERIFY(deviceButtonsEnabled(false));
        QCOMPARE(in(window, "nextbtn")->text(), u"&What to do next"_s);
        QTRY_COMPARE(docked()->toolTip(), u"Quorvel: no touch frame is linked"_s);
    }

    void opening_tells_the_device_its_rate_at_three_rates()
    {
        Pty line;
        PortSettings settings;
        settings.BaudRate = BAUD115200;
        QVERIFY(window->OpenUart(line.path(), settings));
        const QByteArray command = QByteArray::fromHex("51 56 00 B1 00 03 00 13 00 00 00");
        QByteArray bytes;
        QTRY_COMPARE((bytes += line.received()), command + command + command);
    }

    void a_frame_without_payload_travels_as_eight_bytes()
    {
        Pty line;
        QVERIFY(window->OpenUart(line.path(), {}));
        QTest::qWait(100);
        line.received();
        send(QByteArray::fromHex("00 A3 00 00 00 00 EE"));
        QByteArray bytes;
        QTRY_COMPARE((bytes += line.received()), QByteArray::fromHex("51 56 00 A3 00 00 00 00"));
        QTest::qWait(50);
        QCOMPARE(line.received(), QByteArray());
    }

    void on_a_single_screen_the_serial_check_is_cut_after_byte_5()
    {
        Pty line;
        QVERIFY(window->OpenUart(line.path(), {}));
        QTest::qWait(100);
        line.received();
        calibrationScreen()->setPrimaryScr(0);
        calibrationScreen()->SendCalStep(5);
        QByteArray bytes;
        QTRY_COMPARE((bytes += line.received()), QByteArray::fromHex("51 56 00 01 05 00 00 00"));
    }

    void the_longest_serial_frame_is_the_whole_buffer()
    {
        Pty line;
        QVERIFY(window->OpenUart(line.path(), {}));
        QTest::qWait(100);
        line.received();
        send(QByteArray::fromHex("00 01 05 FF"));
        QByteArray bytes;
        QTRY_COMPARE((bytes += line.received()).size(), 66);
        QTest::qWait(50);
        QCOMPARE(line.received(), QByteArray());
    }

    void a_version_reply_over_the_serial_line_changes_nothing()
    {
        Pty line;
        QVERIFY(window->OpenUart(line.path(), {}));
        hidver.SVNNUM = 5;
        QSignalSpy delivered(window.get(), &MainWindow::Recv03);
        line.send(QByteArray::fromHex("51 56 FC A3 80 02 00 12 38 01"));
        QTRY_COMPARE(delivered.size(), 1);
        QCOMPARE(hidver.SVNNUM, 5u);
    }

    void a_usb_frame_takes_over_from_the_serial_line()
    {
        Pty line;
        QVERIFY(window->OpenUart(line.path(), {}));
        connectFrame();
        QCOMPARE(status(), Linked);
    }

    void opening_a_serial_line_ends_the_usb_link_first()
    {
        connectFrame();
        frame->present = false;
        Pty line;
        QVERIFY(window->OpenUart(line.path(), {}));
        QCOMPARE(window->connectState(), MainWindow::SerialOpen);
        QCOMPARE(frame->nowReading.load(), 0);
        QCOMPARE(frame->closes.load(), 1);
    }

    void a_serial_hang_up_shows()
    {
        Pty line;
        QVERIFY(window->OpenUart(line.path(), {}));
        line.hangUp();
        QTRY_COMPARE(window->connectState(), MainWindow::SerialClosed);
        QCOMPARE(status(), Unlinked);
        QVERIFY(deviceButtonsEnabled(false));
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
