// SPDX-License-Identifier: GPL-3.0-or-later

// The light check at a simulated frame, as a technician uses it.

#include "dialogs/curves.h"
#include "dialogs/lightcheck_dlg.h"
#include "dialogs/lightset_dlg.h"
#include "dialogs/lightwall.h"
#include "dialogs/test_win.h"
#include "lights/words.h"
#include "sim/firmware.h"
#include "tests/support/frames.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using lights::Axis;
using lights::LightPlace;

namespace {

sim::Profile wornFrame()
{
    sim::Profile profile;
    profile.lightsX = 60;
    profile.lightsY = 40;
    profile.oddLights = {{.axis = command::settings::AxisX, .number = 17, .level = 0},
                         {.axis = command::settings::AxisY, .number = 30, .level = 60}};
    return profile;
}

// A frame that answers as soon as the event loop comes to it.
class QuickLink : public QObject
{
public:
    explicit QuickLink(const sim::Profile &profile)
        : firmware(profile, [this] { return std::chrono::milliseconds(now += 100); })
    {
    }

    template <typename Window>
    void attach(Window *window)
    {
        connect(window, &Window::Write03, this, [this](const UCHAR *bytes) {
            const Frame frame = command::frameAt(bytes);
            asked += text(frame);
            QMetaObject::invokeMethod(
                this, [this, frame] { answer(frame); }, Qt::QueuedConnection);
        });
        receivers.push_back([window](UCHAR *bytes) { window->DoRecv03(bytes); });
    }

    sim::Firmware firmware;
    QList<QByteArray> asked;
    bool unplugged = false;
    int silentAfter = 1000000; // reports

private:
    void answer(const Frame &frame)
    {
        if (unplugged)
            return;
        firmware.command(frame);
        while (firmware.queuedReplies() > 0 && silentAfter-- > 0) {
            const Frame report = firmware.report();
            for (const auto &receiver : receivers) {
                Frame copy = report;
                receiver(copy.data());
            }
        }
    }

    int now = 0;
    std::vector<std::function<void(UCHAR *)>> receivers;
};

} // namespace

class TestLightCheckDlg : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<QWidget> parent;
    std::unique_ptr<QuickLink> link;
    test_win *test = nullptr;
    LightSet_dlg *screen = nullptr;
    LightCheck_dlg *dialog = nullptr;

    template <typename Widget>
    Widget *the(const char *name) const
    {
        return dialog->findChild<Widget *>(QString::fromLatin1(name));
    }
    QString words(const char *label) const { return the<QLabel>(label)->text(); }
    QString notice() const
    {
        const auto *label = the<QLabel>("notice");
        return label->isVisible() ? label->text() : QString();
    }
    void press(const char *button) const
    {
        QTest::mouseClick(the<QPushButton>(button), Qt::LeftButton);
    }
    bool isMeasuring() const { return the<QPushButton>("measureButton")->text() == u"&Stop"_s; }
    void start(const sim::Profile &profile = wornFrame())
    {
        parent = std::make_unique<QWidget>();
        link = std::make_unique<QuickLink>(profile);
        test = new test_win(parent.get());
        screen = new LightSet_dlg(parent.get());
        dialog = new LightCheck_dlg(parent.get());
        link->attach(test);
        link->attach(screen);
        link->attach(dialog);
        dialog->linkBegan(true);
        dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog));
    }
    void measure()
    {
        press("measureButton");
        QVERIFY(isMeasuring());
        QTRY_VERIFY_WITH_TIMEOUT(!isMeasuring(), 20000);
    }
    int rowOf(const QString &name) const
    {
        const auto *rows = the<QTableView>("table")->model();
        for (int row = 0; row < rows->rowCount(); ++row) {
            if (rows->index(row, 0).data().toString() == name)
                return row;
        }
        return -1;
    }
    QString chosenRow() const
    {
        return the<QTableView>("table")->currentIndex().siblingAtColumn(0).data().toString();
    }

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(folder->path()));
    }
    void cleanup()
    {
        parent.reset();
        link.reset();
    }

    void a_measurement_ends_in_a_verdict()
    {
        start();
        QCOMPARE(words("verdictLab"), u"Not measured yet"_s);
        QVERIFY(!the<QPushButton>("reportButton")->isEnabled());
        measure();
        QCOMPARE(words("verdictLab"), u"SERVICE NEEDED"_s);
        QVERIFY(words("unitLab").startsWith(u"Unit 21-01234-1605, measured "_s));
        QCOMPARE(dialog->shown().measurement.x.scans.size(), 16U);
        QVERIFY(the<QPushButton>("reportButton")->isEnabled());
        QStringList findings;
        for (int i = 0; i < the<QListWidget>("findingsList")->count(); ++i)
            findings += the<QListWidget>("findingsList")->item(i)->text();
        QVERIFY(findings.contains(u"X 17: dead. See whether light X 17 is covered; if not, replace "
                                  "its board."_s));
        QVERIFY(!findings.filter(u"Touches at light X 17 are missed."_s).isEmpty());
    }

    void a_healthy_frame_passes()
    {
        start({});
        measure();
        QCOMPARE(words("verdictLab"), u"PASS"_s);
        QCOMPARE(the<QListWidget>("findingsList")->count(), 0);
    }

    void the_table_has_every_light_and_sorts_by_what_is_asked()
    {
        start();
        measure();
        the<QTabWidget>("tabs")->setCurrentIndex(1);
        auto *table = the<QTableView>("table");
        QCOMPARE(table->model()->rowCount(), 100);
        QCOMPARE(rowOf(u"X 2"_s), 2); // not behind X 19
        table->sortByColumn(2, Qt::AscendingOrder);
        QCOMPARE(rowOf(u"X 17"_s), 0);
        QCOMPARE(rowOf(u"Y 30"_s), 1);
        const QModelIndex verdict = table->model()->index(1, 1);
        QCOMPARE(verdict.data().toString(), u"weak"_s);
        QCOMPARE(verdict.data(Qt::AccessibleTextRole).toString(), u"Verdict of light Y 30: weak"_s);
    }

    void a_finding_shows_its_place()
    {
        start();
        measure();
        auto *list = the<QListWidget>("findingsList");
        const auto weak = list->findItems(u"Y 30: weak"_s, Qt::MatchStartsWith);
        QCOMPARE(weak.size(), 1);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(weak.first()).center());
        QCOMPARE(chosenRow(), u"Y 30"_s);
        QVERIFY(the<LightWall>("wall")->accessibleName().contains(u"Y 30: weak, level "_s));
        QVERIFY(the<QWidget>("curves")->accessibleName().contains(u"Y 30: weak, level "_s));
    }

    void the_keyboard_walks_along_the_frame_and_the_curves()
    {
        start();
        measure();
        auto *wall = the<LightWall>("wall");
        wall->setFocus();
        for (int i = 0; i < 17; ++i)
            QTest::keyClick(wall, Qt::Key_Right);
        QCOMPARE(chosenRow(), u"X 17"_s);
        QVERIFY(wall->accessibleName().contains(u"X 17: dead, level "_s));
        QTest::keyClick(wall, Qt::Key_Down);
        QCOMPARE(chosenRow(), u"Y 0"_s);
        QTest::keyClick(wall, Qt::Key_End);
        QCOMPARE(chosenRow(), u"Y 39"_s);
        auto *curves = the<QWidget>("curves");
        curves->setFocus();
        QTest::keyClick(curves, Qt::Key_Left);
        QCOMPARE(chosenRow(), u"Y 38"_s);
        QTest::keyClick(curves, Qt::Key_Up);
        QCOMPARE(chosenRow(), u"X 38"_s);
        QVERIFY(curves->accessibleName().contains(u"X 38: healthy, level "_s));
        QTest::qWait(100); // it is drawn anew
        const QImage whole = curves->grab().toImage();
        QTest::keyClick(curves, Qt::Key_Plus);
        QTRY_VERIFY(curves->grab().toImage() != whole);
        QTest::keyClick(curves, Qt::Key_0);
        QTRY_VERIFY(curves->grab().toImage() == whole);
    }

    void enter_opens_a_light_in_the_light_screen()
    {
        start();
        measure();
        auto *wall = the<LightWall>("wall");
        wall->choose({Axis::Y, 30});
        wall->setFocus();
        QTest::keyClick(wall, Qt::Key_Return);
        QTRY_VERIFY(screen->isVisible());
        QCOMPARE(screen->findChild<QLineEdit *>(u"LightDir"_s)->text(), u"Y"_s);
        QCOMPARE(screen->findChild<QLineEdit *>(u"LightNum"_s)->text(), u"30"_s);
        QTRY_COMPARE_WITH_TIMEOUT(screen->findChild<QLineEdit *>(u"LightAGC"_s)->text().isEmpty(),
                                  false, 10000);
        QCOMPARE(screen->findChild<QLineEdit *>(u"LightNum"_s)->text(), u"30"_s);
        screen->close();
    }

    void a_click_on_a_light_opens_it()
    {
        start();
        measure();
        auto *wall = the<LightWall>("wall");
        const lights::Wall places(dialog->shown().measurement, QSizeF(wall->size()));
        QTest::mouseClick(wall, Qt::LeftButton, {},
                          places.light({Axis::X, 17})[1].center().toPoint());
        QTRY_VERIFY(screen->isVisible());
        QCOMPARE(screen->findChild<QLineEdit *>(u"LightNum"_s)->text(), u"17"_s);
        screen->close();
    }

    void a_series_follows_the_frame_until_it_is_stopped()
    {
        start({});
        the<QCheckBox>("followBox")->setChecked(true);
        press("measureButton");
        QTRY_COMPARE_WITH_TIMEOUT(words("verdictLab"), u"PASS"_s, 5000);
        link->firmware.command(command::LightRequest{.sub = command::settings::SwitchLight,
                                                     .light = {command::settings::AxisX, 50},
                                                     .off = true}
                                   .encode());
        QTRY_COMPARE_WITH_TIMEOUT(words("verdictLab"), u"SERVICE NEEDED"_s, 10000);
        QTRY_VERIFY(notice().startsWith(u"Following the touch frame: "_s));
        QVERIFY(isMeasuring());
        press("measureButton");
        QVERIFY(!isMeasuring());
        link->asked.clear();
        QTest::qWait(300);
        QCOMPARE(link->asked, QList<QByteArray>());
    }

    void the_signal_test_stands_aside_and_goes_on_afterwards()
    {
        start();
        test->show();
        test->findChild<QLineEdit *>(u"interal_text"_s)->setText(u"1"_s);
        QTest::mouseClick(test->findChild<QPushButton *>(u"ALL_btn"_s), Qt::LeftButton);
        QTRY_VERIFY(link->asked.contains("00 A5"));
        the<QCheckBox>("followBox")->setChecked(true);
        press("measureButton");
        link->asked.clear();
        QTRY_VERIFY_WITH_TIMEOUT(dialog->shown().measurement.x.scans.size() == 16, 20000);
        QVERIFY(!link->asked.contains("00 A5"));
        QCOMPARE(test->findChild<QLabel *>(u"notice"_s)->text(),
                 u"The test waits until the light check has ended"_s);
        link->asked.clear();
        press("measureButton");
        QTRY_VERIFY(link->asked.contains("00 A5"));
        QTest::mouseClick(test->findChild<QPushButton *>(u"ALL_btn"_s), Qt::LeftButton);
    }

    void the_light_screen_stands_aside_and_goes_on_afterwards()
    {
        start();
        the<QCheckBox>("followBox")->setChecked(true);
        press("measureButton");
        screen->show();
        QVERIFY(QTest::qWaitForWindowExposed(screen));
        QTest::qWait(600);
        QCOMPARE(screen->findChild<QLineEdit *>(u"MinADC"_s)->text(), QString());
        QTRY_COMPARE(screen->findChild<QLabel *>(u"notice"_s)->text(),
                     u"This waits until the light check has ended"_s);
        dialog->close();
        QTRY_VERIFY_WITH_TIMEOUT(!screen->findChild<QLineEdit *>(u"MinADC"_s)->text().isEmpty(),
                                 5000);
        QVERIFY(screen->findChild<QLabel *>(u"notice"_s)->text().isEmpty());
        screen->close();
    }

    void an_unplug_is_survived()
    {
        start();
        press("measureButton");
        link->unplugged = true;
        dialog->OnLinkEnded();
        QVERIFY(isMeasuring());
        QCOMPARE(notice(), u"The touch frame is gone. Measuring begins anew when one is there."_s);
        QCoreApplication::processEvents();
        link->unplugged = false;
        dialog->linkBegan(true);
        QTRY_VERIFY_WITH_TIMEOUT(!isMeasuring(), 20000);
        QCOMPARE(words("verdictLab"), u"SERVICE NEEDED"_s);
        dialog->OnLinkEnded();
        QCOMPARE(words("verdictLab"), u"SERVICE NEEDED"_s); // and says of which unit
        QVERIFY(!the<QPushButton>("measureButton")->isEnabled());
    }

    void a_frame_that_falls_silent_is_told()
    {
        start();
        link->silentAfter = 10;
        press("measureButton");
        QTRY_VERIFY_WITH_TIMEOUT(!isMeasuring(), 15000);
        QVERIFY2(!notice().isEmpty(), qPrintable(notice()));
        QCOMPARE(words("verdictLab"), u"Not measured yet"_s);
    }

    void what_was_remembered_is_compared_with()
    {
        start({});
        measure();
        press("rememberButton");
        QVERIFY2(notice().startsWith(u"Remembered."_s), qPrintable(notice()));
        QTest::qWait(1100); // dates are of whole seconds
        link->firmware = sim::Firmware(
            [] {
                sim::Profile profile;
                profile.oddLights = {{.axis = command::settings::AxisX, .number = 17, .level = 60}};
                return profile;
            }(),
            [] { return std::chrono::milliseconds(0); });
        measure();
        QVERIFY2(words("comparisonLab").contains(u"light X 17 has changed most"_s),
                 qPrintable(words("comparisonLab")));
        auto *table = the<QTableView>("table");
        const QString change = table->model()->index(rowOf(u"X 17"_s), 5).data().toString();
        QVERIFY2(change.toDouble() < -50, qPrintable(change));
        // Not compared with anything.
        auto *menu = the<QPushButton>("compareButton")->menu();
        emit menu->aboutToShow();
        QCOMPARE(menu->actions().size(), 5); // the newest, its date, a line, a file, nothing
        menu->actions().last()->trigger();
        QCOMPARE(words("comparisonLab"), QString());
    }

    void a_unit_that_tells_nothing_is_asked_for_a_name()
    {
        start();
        dialog->OnLinkEnded();
        dialog->linkBegan(false);
        measure();
        press("rememberButton");
        QVERIFY2(notice().contains(u"give it a name"_s), qPrintable(notice()));
        QCOMPARE(dialog->focusWidget(), the<QLineEdit>("nameEdit"));
        QTest::keyClicks(the<QLineEdit>("nameEdit"), u"Hall"_s);
        press("rememberButton");
        QVERIFY2(notice().startsWith(u"Remembered."_s), qPrintable(notice()));
        QVERIFY(QDir(folder->filePath(u"quorvel/lights/Hall"_s)).exists());
    }

    void a_report_is_written_as_its_name_says()
    {
        start();
        measure();
        const std::pair<const char *, const char *> kinds[] = {
            {"pdf", "%PDF-"}, {"html", "<!DOCTYPE html>"}, {"json", "{"}, {"csv", "axis,light,"}};
        for (const auto &[suffix, first] : kinds) {
            const QString path = folder->filePath(u"report."_s + QLatin1StringView(suffix));
            dialog->saveReport(path);
            QCOMPARE(notice(), u"Written to %1."_s.arg(path));
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadOnly));
            QVERIFY2(file.readAll().startsWith(first), suffix);
        }
        dialog->saveReport(u"/nowhere/report.html"_s);
        QVERIFY(notice().startsWith(u"/nowhere/report.html cannot be written"_s));
        dialog->saveReport(folder->filePath(u"report.txt"_s));
        QVERIFY(notice().contains(u"whose name ends with"_s));
    }

    void the_tab_key_reaches_everything_and_each_has_a_name()
    {
        start();
        measure();
        the<QPushButton>("measureButton")->setFocus();
        QStringList reached;
        for (int i = 0; i < 20; ++i) {
            QWidget *focus = dialog->focusWidget();
            const QString name = focus->objectName();
            if (reached.contains(name))
                break;
            reached += name;
            QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(focus);
            QVERIFY2(spoken && (!spoken->text(QAccessible::Name).isEmpty() ||
                                name == u"qt_tabwidget_tabbar"_s),
                     qPrintable(name));
            QTest::keyClick(focus, Qt::Key_Tab);
        }
        for (const char *name :
             {"measureButton", "followBox", "nameEdit", "wall", "findingsList", "curves",
              "rememberButton", "compareButton", "reportButton", "closeButton"})
            QVERIFY2(reached.contains(QString::fromLatin1(name)), name);
    }

    void closing_ends_the_measurement()
    {
        start();
        the<QCheckBox>("followBox")->setChecked(true);
        press("measureButton");
        QTRY_VERIFY(!dialog->shown().measurement.x.scans.empty());
        dialog->close();
        link->asked.clear();
        QTest::qWait(200);
        QCOMPARE(link->asked, QList<QByteArray>());
        dialog->show();
        QVERIFY(!isMeasuring());
    }

    void it_fits_the_screen_and_shows_everything_at_800_by_600()
    {
        start();
        measure();
        const QRect room = dialog->screen()->availableGeometry();
        QTRY_VERIFY(room.contains(dialog->frameGeometry()));
        dialog->resize(800, 560);
        QTRY_COMPARE(dialog->size(), QSize(800, 560));
        for (const char *name : {"measureButton", "reportButton", "wall", "findingsList", "curves",
                                 "verdictLab", "closeButton"}) {
            const auto *widget = the<QWidget>(name);
            const QRect place(widget->mapTo(dialog, QPoint()), widget->size());
            QVERIFY2(dialog->rect().contains(place), name);
        }
        // Smaller than that it scrolls.
        dialog->resize(500, 380);
        QTRY_COMPARE(dialog->size(), QSize(500, 380));
        const auto bars = [this] {
            int visible = 0;
            for (const QScrollBar *bar : dialog->findChildren<QScrollBar *>())
                visible += bar->isVisible() && bar->accessibleName().startsWith(u"Scroll"_s);
            return visible;
        };
        QTRY_COMPARE(bars(), 2);
    }
};

QTEST_MAIN(TestLightCheckDlg)
#include "tst_lightcheck_dlg.moc"
