// SPDX-License-Identifier: GPL-3.0-or-later

// F1 in every window of the tool shows the manual where it tells of that window.

#include "app/helpaction.h"
#include "app/helpwindow.h"
#include "app/mainwindow.h"
#include "app/recordaction.h"
#include "dialogs/calend_dlg.h"
#include "dialogs/rotation_dlg.h"
#include "resources/resources.h"
#include "sim/sim_adapter.h"
#include "tests/support/files.h"
#include "tests/support/hand.h"
#include "tests/support/settingshome.h"
#include "tests/support/widgets.h"

#include <QAccessible>
#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;

// In the place of the user's.
class Browser : public QObject
{
    Q_OBJECT

public:
    QUrl url;

public slots:
    void open(const QUrl &asked) { url = asked; }
};

class TestHelp : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;
    std::shared_ptr<sim::SimAdapter> frame;
    std::unique_ptr<MainWindow> main;
    std::unique_ptr<CalEnd_dlg> question;

    static HelpWindow *manual() { return topLevel<HelpWindow>(); }
    static QTextBrowser *browser() { return manual()->findChild<QTextBrowser *>(); }
    static QString shownPlace()
    {
        const QUrl source = browser()->source();
        return source.hasFragment() ? source.fileName() + u'#' + source.fragment()
                                    : source.fileName();
    }
    static QPushButton *button(const QString &text)
    {
        for (auto *found : manual()->findChildren<QPushButton *>())
            if (found->text() == text)
                return found;
        return nullptr;
    }
    // The words of the heading that has this anchor, if they can be seen.
    static QString seenHeading(const QString &anchor)
    {
        const QTextDocument *page = browser()->document();
        for (QTextBlock block = page->begin(); block.isValid(); block = block.next()) {
            for (auto part = block.begin(); !part.atEnd(); ++part) {
                if (!part.fragment().charFormat().anchorNames().contains(anchor))
                    continue;
                const QRect place = browser()->cursorRect(QTextCursor(block));
                return browser()->viewport()->rect().intersects(place) ? block.text() : QString();
            }
        }
        return {};
    }
    HelpAction *action() const { return main->findChild<HelpAction *>(); }
    QWidget *windowOf(const QByteArray &name) const
    {
        // Made by the menu when they are first asked for.
        for (const auto &[window, entry] :
             {std::pair("CalibrationCheck_dlg", u"Check calibration"_s),
              std::pair("TryOut_dlg", u"Try out gestures"_s),
              std::pair("LightCheck_dlg", u"Light check..."_s),
              std::pair("SupportFile_dlg", u"Support file..."_s)})
            for (QAction *action : main->findChildren<QAction *>())
                if (name == window && action->text().remove(u'&') == entry)
                    action->trigger();
        for (QWidget *window : QApplication::topLevelWidgets())
            if (window->inherits(name))
                return window;
        return main->findChild<QWidget *>(QString::fromLatin1(name));
    }
    QMessageBox *box() const { return main->findChild<QMessageBox *>(); }

private slots:
    void initTestCase()
    {
        initResources();
        QGuiApplication::setQuitOnLastWindowClosed(false);
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    }
    void init()
    {
        home = std::make_unique<SettingsHome>();
        frame = std::make_shared<sim::SimAdapter>(
            sim::Profile(), sim::FaultPlan(),
            sim::SimOptions{.plugged = true, .paced = false, .clock = {}});
        main = std::make_unique<MainWindow>(frame);
        action()->setFolder(QStringLiteral(QUORVEL_MANUAL));
        main->show();
        QVERIFY(QTest::qWaitForWindowActive(main.get()));
        QTRY_COMPARE(main->connectState(), MainWindow::UsbConnected);
    }
    void cleanup()
    {
        main.reset();
        QVERIFY(!manual());
        question.reset();
        home.reset();
    }

    void nothing_of_it_is_there_before_it_is_asked_for() { QVERIFY(!manual()); }

    void f1_tells_of_the_window_it_is_pressed_in_data()
    {
        QTest::addColumn<QString>("place");
        QTest::addColumn<QString>("heading");
        const auto row = [](const char *window, const QString &place, const QString &heading) {
            QTest::newRow(window) << place << heading;
        };
        row("MainWindow", u"first-connection.html#the-main-window"_s, u"The main window"_s);
        row("Calibration_Dlg", u"calibration.html#the-four-targets"_s, u"The four targets"_s);
        row("CalEnd_dlg", u"calibration.html#the-question"_s, u"The question"_s);
        row("CalibrationCheck_dlg", u"calibration.html#checking-it"_s, u"Checking it"_s);
        row("TryOut_dlg", u"gestures.html#trying-them-out"_s, u"Trying them out"_s);
        row("LightCheck_dlg", u"reading-the-lights.html#measuring"_s, u"Measuring"_s);
        row("Setting_dlg", u"gestures.html#what-the-screen-is-used-for"_s,
            u"What the screen is used for"_s);
        row("useradv_dlg", u"gestures.html#press-and-hold-double-click-wheel"_s,
            u"Press and hold, double click, wheel"_s);
        row("smoothing_dlg", u"gestures.html#smoothing"_s, u"Smoothing"_s);
        row("Version_Dlg", u"rotation.html#versions-and-serial-numbers"_s,
            u"Versions and serial numbers"_s);
        row("connect_dlg", u"serial-line.html#the-window-connect"_s, u"The window Connect"_s);
        row("advset_dlg", u"diagnostics.html#the-way-there"_s, u"The way there"_s);
        row("test_win", u"diagnostics.html#signal-test"_s, u"Signal test"_s);
        row("LightSet_dlg", u"diagnostics.html#light-setting"_s, u"Light setting"_s);
        row("SupportFile_dlg", u"support.html#the-support-file"_s, u"The support file"_s);
    }
    void f1_tells_of_the_window_it_is_pressed_in()
    {
        QFETCH(const QString, place);
        QFETCH(const QString, heading);
        question = std::make_unique<CalEnd_dlg>();
        QWidget *window = windowOf(QTest::currentDataTag());
        QVERIFY(window);
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window));
        // As a person does it: it goes to what has the keyboard.
        QTest::keyClick(window->windowHandle(), Qt::Key_F1);
        QVERIFY(manual());
        QTRY_VERIFY(manual()->isActiveWindow());
        QCOMPARE(shownPlace(), place);
        QTRY_COMPARE(seenHeading(place.section(u'#', 1)), heading);
        window->hide();
    }

    void f1_tells_of_a_question_while_that_keeps_other_windows_waiting()
    {
        QString place;
        bool followed = false;
        QTimer::singleShot(500, this, [&] {
            auto *asked = main->findChild<QMessageBox *>(u"resetQuestion"_s);
            QTest::keyClick(asked, Qt::Key_F1);
            place = shownPlace();
            QVERIFY(QTest::qWaitForWindowActive(manual()));
            QTest::mouseClick(manual()->windowHandle(), Qt::LeftButton, {},
                              button(u"&Contents"_s)->mapTo(manual(), QPoint(5, 5)));
            followed = shownPlace() == u"index.html"_s;
            manual()->close();
            asked->reject();
        });
        main->on_pushButton_2_clicked();
        QCOMPARE(place, u"rotation.html#resetting-the-frame"_s);
        QVERIFY(followed);
    }

    void f1_tells_of_the_rotation_while_that_is_open()
    {
        auto *rotation = main->findChild<Rotation_dlg *>();
        QString place;
        QTimer::singleShot(1500, this, [&] {
            QTest::keyClick(rotation, Qt::Key_F1);
            place = shownPlace();
            rotation->close();
        });
        rotation->exec();
        QCOMPARE(place, u"rotation.html#turning-the-touch"_s);
    }

    void f1_tells_of_recordings_while_a_file_for_one_is_asked_for()
    {
        QString place;
        whenOpen<QFileDialog>([&place](QFileDialog *dialog) {
            QTest::keyClick(dialog, Qt::Key_F1);
            place = shownPlace();
            dialog->reject();
        });
        main->findChild<RecordAction *>()->trigger();
        QCOMPARE(place, u"support.html#recordings"_s);
        // And when that file will not do.
        place.clear();
        whenOpen<QFileDialog>([&place](QFileDialog *dialog) {
            whenOpen<QMessageBox>([&place](QMessageBox *refusal) {
                QTest::keyClick(refusal, Qt::Key_F1);
                place = shownPlace();
                refusal->reject();
            });
            chooseFile(dialog, u"/proc/nowhere.pcap"_s);
        });
        main->findChild<RecordAction *>()->trigger();
        QCOMPARE(place, u"support.html#recordings"_s);
    }

    void f1_tells_of_what_to_do_next()
    {
        frame->unplug();
        main->OnDeviceRemoved();
        QTRY_COMPARE(main->connectState(), MainWindow::NotConnected);
        main->findChild<QPushButton *>(u"nextbtn"_s)->click();
        QVERIFY(box());
        QTest::keyClick(box(), Qt::Key_F1);
        QCOMPARE(shownPlace(), u"first-connection.html#when-no-frame-is-linked"_s);
    }

    void the_menu_opens_the_manual_and_tells_the_key()
    {
        QCOMPARE(action()->shortcut(), QKeySequence(Qt::Key_F1));
        action()->trigger();
        QCOMPARE(shownPlace(), u"first-connection.html#the-main-window"_s);
        // The same window tells of another one.
        QTest::keyClick(main->findChild<QWidget *>(u"connect_dlg"_s), Qt::Key_F1);
        QCOMPARE(shownPlace(), u"serial-line.html#the-window-connect"_s);
        // It comes to the front again.
        main->activateWindow();
        QTRY_COMPARE(QApplication::activeWindow(), main.get());
        action()->trigger();
        QTRY_COMPARE(QApplication::activeWindow(), manual());
    }

    void the_manual_has_the_size_of_a_page_within_the_screen()
    {
        action()->trigger();
        QCOMPARE(manual()->size(),
                 QSize(720, 560).boundedTo(main->screen()->availableSize() * 9 / 10));
        const QSize page = manual()->findChild<QTextBrowser *>()->size();
        QVERIFY(page.width() > 680 && page.height() > 460);
        // The way out is at the other end of the row, and no button is wider than its words need.
        QVERIFY(button(u"C&lose"_s)->geometry().right() > 680);
        for (const auto *one : manual()->findChildren<QPushButton *>())
            QCOMPARE(one->width(), one->sizeHint().width());
        QVERIFY(manual()->windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
    }

    void the_manual_comes_back_where_it_was_left()
    {
        constexpr int SettleMs = 200; // until the window manager has placed it
        const QPoint place(81, 92);
        action()->trigger();
        QVERIFY(QTest::qWaitForWindowExposed(manual()));
        QTest::qWait(SettleMs);
        QVERIFY(hand::move(manual()->winId(), place));
        QTRY_COMPARE(manual()->geometry().topLeft(), place);
        manual()->close();
        QTRY_VERIFY(!manual());
        action()->trigger();
        QVERIFY(QTest::qWaitForWindowExposed(manual()));
        QTest::qWait(SettleMs);
        QCOMPARE(manual()->geometry().topLeft(), place);
    }

    void f1_with_another_key_is_left_to_the_window()
    {
        QTest::keyClick(main.get(), Qt::Key_F1, Qt::ShiftModifier);
        QTest::keyClick(main.get(), Qt::Key_F2);
        QVERIFY(!manual());
        QTest::keyRelease(main.get(), Qt::Key_F1); // of a press that opened something else
        QVERIFY(!manual());
        // Held, it opens nothing once more that was closed meanwhile.
        QKeyEvent held(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(main.get(), &held);
        QVERIFY(!manual());
    }

    void the_button_at_the_end_closes_the_manual()
    {
        action()->trigger();
        QTest::mouseClick(button(u"C&lose"_s), Qt::LeftButton);
        QTRY_VERIFY(!manual());
    }

    void links_are_followed_there_and_back_by_keyboard()
    {
        // As a person does it: the X server and the toolkit have their say.
        const auto type = [](const QStringList &keys) {
            QVERIFY(hand::does(QStringList(u"key"_s) + keys));
        };
        action()->trigger();
        QVERIFY(QTest::qWaitForWindowActive(manual()));
        QVERIFY(!button(u"&Back"_s)->isEnabled());
        QVERIFY(!button(u"&Forward"_s)->isEnabled());
        const QScrollBar *down = browser()->verticalScrollBar();
        QTRY_VERIFY(down->value() > 0); // where the main window is told of
        const int before = down->value();
        type({u"Next"_s});
        QTRY_VERIFY(down->value() > before);
        type({u"alt+c"_s});
        QTRY_COMPARE(shownPlace(), u"index.html"_s);
        type({u"Tab"_s, u"Return"_s});
        QTRY_COMPARE(shownPlace(), u"troubleshooting.html"_s);
        type({u"alt+b"_s});
        QTRY_COMPARE(shownPlace(), u"index.html"_s);
        QVERIFY(button(u"&Forward"_s)->isEnabled());
        type({u"alt+f"_s});
        QTRY_COMPARE(shownPlace(), u"troubleshooting.html"_s);
        QVERIFY(!button(u"&Forward"_s)->isEnabled());
        type({u"F1"_s});
        QTRY_COMPARE(shownPlace(), u"index.html"_s);
        type({u"Escape"_s});
        QTRY_VERIFY(!manual());
    }

    void a_link_to_the_world_is_left_to_the_browser()
    {
        const QTemporaryDir folder;
        writeFile(folder.filePath(u"first-connection.html"_s),
                  "<p>See <a href=\"quorvel-test://elsewhere/page\">there</a>.</p>");
        action()->setFolder(folder.path());
        Browser opened;
        QDesktopServices::setUrlHandler(u"quorvel-test"_s, &opened, "open");
        const auto usual =
            qScopeGuard([] { QDesktopServices::unsetUrlHandler(u"quorvel-test"_s); });
        action()->trigger();
        QVERIFY(QTest::qWaitForWindowActive(manual()));
        QTest::keyClick(browser(), Qt::Key_Tab);
        QTest::keyClick(browser(), Qt::Key_Return);
        QCOMPARE(opened.url, QUrl(u"quorvel-test://elsewhere/page"_s));
        QCOMPARE(shownPlace(), u"first-connection.html#the-main-window"_s);
        QCOMPARE(browser()->toPlainText(), u"See there."_s);
    }

    void what_has_the_keyboard_is_spoken_of()
    {
        action()->trigger();
        int controls = 0;
        for (QWidget *widget : manual()->findChildren<QWidget *>()) {
            if ((widget->focusPolicy() & Qt::TabFocus) == 0 || !widget->isVisible())
                continue;
            ++controls;
            const QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(widget);
            QVERIFY(spoken);
            QVERIFY2(!spoken->text(QAccessible::Name).isEmpty(), widget->metaObject()->className());
        }
        QCOMPARE(controls, 5);
    }

    void pictures_are_no_wider_than_the_window()
    {
        action()->trigger();
        for (const QSize size : {QSize(720, 560), QSize(400, 400)}) {
            manual()->close();
            QTRY_VERIFY(!manual());
            action()->trigger();
            manual()->resize(size);
            QTRY_COMPARE(manual()->size(), size);
            QTest::keyClick(main->findChild<QWidget *>(u"test_win"_s), Qt::Key_F1);
            QTRY_COMPARE(shownPlace(), u"diagnostics.html#signal-test"_s);
            QTRY_COMPARE(browser()->horizontalScrollBar()->maximum(), 0);
        }
    }

    void the_manual_is_found_beside_the_program()
    {
        QCOMPARE(HelpAction::installed(QStringLiteral(QUORVEL_PROGRAM_FOLDER)),
                 QFileInfo(QStringLiteral(QUORVEL_MANUAL)).canonicalFilePath());

        const QTemporaryDir prefix;
        const QString programs = prefix.filePath(u"bin"_s);
        QVERIFY(QDir(prefix.path()).mkdir(u"bin"_s));
        QCOMPARE(HelpAction::installed(programs), QString());
        const QString manual = prefix.filePath(QStringLiteral(QUORVEL_DOCDIR "/manual"));
        QVERIFY(QDir().mkpath(manual));
        QCOMPARE(HelpAction::installed(programs), QFileInfo(manual).canonicalFilePath());
    }

    void without_the_manual_its_package_is_named()
    {
        const QTemporaryDir empty;
        action()->setFolder(empty.path());
        action()->trigger();
        QCOMPARE(browser()->toPlainText(),
                 u"The manual is not installed. The package quorvel-doc brings it."_s);
        QVERIFY(!button(u"&Back"_s)->isEnabled());
        QVERIFY(!button(u"&Forward"_s)->isEnabled());
    }
};

QTEST_MAIN(TestHelp)
#include "tst_help.moc"
