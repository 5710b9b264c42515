// SPDX-License-Identifier: GPL-3.0-or-later

// Both diagnostic screens on a simulated frame, as a technician uses them.

#include "app/mainwindow.h"
#include "dialogs/advset_dlg.h"
#include "dialogs/lightcheck_dlg.h"
#include "dialogs/lightset_dlg.h"
#include "dialogs/setting_dlg.h"
#include "dialogs/test_win.h"
#include "dialogs/useradv_dlg.h"
#include "resources/resources.h"
#include "sim/sim_adapter.h"
#include "tests/support/paints.h"
#include "tests/support/settingshome.h"
#include "tests/support/signalcurves.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <malloc.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// The sanitizer watches what is freed; gcc and clang tell of it in different ways.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool FreedStaysInUse = true;
#elif defined(__has_feature)
constexpr bool FreedStaysInUse = __has_feature(address_sanitizer);
#else
constexpr bool FreedStaysInUse = false;
#endif

constexpr UCHAR X = 1;
constexpr UCHAR Y = 2;

bool isLoaded(const QByteArray &library)
{
    QFile maps(u"/proc/self/maps"_s);
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(library);
}

} // namespace

class TestDiagnostics : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;
    std::shared_ptr<sim::SimAdapter> frame;
    std::unique_ptr<MainWindow> window;

    void start(const sim::Profile &profile = {})
    {
        frame = std::make_shared<sim::SimAdapter>(profile);
        window = std::make_unique<MainWindow>(frame);
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        QCOMPARE(window->connectState(), MainWindow::UsbConnected);
    }
    template <typename Widget>
    Widget *the() const
    {
        return window->findChild<Widget *>();
    }
    QString field(const char *name) const
    {
        return in<QLineEdit>(the<LightSet_dlg>(), name)->text();
    }
    void type(const char *name, const QString &text) const
    {
        auto *line = in<QLineEdit>(the<LightSet_dlg>(), name);
        line->setFocus();
        line->selectAll();
        QTest::keyClicks(line, text);
    }
    template <typename Value>
    Value model(const std::function<Value(const sim::Firmware &)> &of) const
    {
        Value value{};
        frame->inspect([&](const sim::Firmware &firmware) { value = of(firmware); });
        return value;
    }
    sim::LightState light(UCHAR axis, int number) const
    {
        return model<sim::LightState>(
            [=](const sim::Firmware &firmware) { return firmware.light(axis, number); });
    }
    // Frames of a class and sub-command that the window has handed out, each repetition once.
    QList<QByteArray> *reports(UCHAR cls, UCHAR sub)
    {
        auto seen = std::make_shared<QList<QByteArray>>();
        connect(window.get(), &MainWindow::Recv03, this, [=](UCHAR *buf) {
            const QByteArray report(reinterpret_cast<char *>(buf), FrameSize);
            if (buf[1] == cls && buf[2] == sub && (seen->isEmpty() || seen->last() != report))
                seen->append(report);
        });
        return seen.get();
    }
    bool everyPairBringsScans()
    {
        window.reset();
        start();
        auto *test = the<test_win>();
        test->show();
        const QObject scope;
        int asked = 0;
        connect(test, &test_win::Write03, &scope,
                [&asked](const UCHAR *buf) { asked += buf[2] == 1 || buf[2] == 2 ? 1 : 0; });
        // The first page of X is the one from light 0, its last from light 55; Y has one.
        const QList<QByteArray> *xPages = reports(0xA5, 0x81);
        const QList<QByteArray> *yPages = reports(0xA5, 0x82);
        press(test, "ALL_btn");
        const bool enough = QTest::qWaitFor([&asked] { return asked >= 40; }, 60000);
        press(test, "ALL_btn");
        const int pairs = asked / 2;
        return enough && QTest::qWaitFor([=] {
                   return xPages->size() >= 2 * pairs && yPages->size() >= pairs;
               });
    }

private slots:
    void initTestCase()
    {
        initResources();
        QGuiApplication::setQuitOnLastWindowClosed(false);
    }
    void init()
    {
        home = std::make_unique<SettingsHome>();
        QVERIFY(QDir::setCurrent(home->folder()));
    }
    void cleanup()
    {
        window.reset();
        frame.reset();
        QDir::setCurrent(QDir::rootPath());
        home.reset();
    }

    void the_key_C_in_the_gestures_leads_to_both_screens()
    {
        start();
        auto *gestures = the<useradv_dlg>();
        the<Setting_dlg>()->show();
        QVERIFY(QTest::qWaitForWindowActive(the<Setting_dlg>()));
        press(the<Setting_dlg>(), "AdvBtn");
        QVERIFY(QTest::qWaitForWindowActive(gestures));
        const auto settings = [gestures] {
            QList<int> values;
            for (const QSlider *one : gestures->findChildren<QSlider *>())
                values.append(one->value());
            return values;
        };
        const QList<int> before = settings();
        // As the README says: a click on the words.
        auto *words = in<QLabel>(gestures, "label_3");
        QCOMPARE(words->text(), u"Spatial tolerance:"_s);
        QTest::mouseClick(words, Qt::LeftButton);
        QCOMPARE(gestures->focusWidget(), in<QSlider>(gestures, "dbran"));
        gestures->activateWindow();
        QTRY_VERIFY(gestures->focusWidget()->hasFocus());
        QTest::keyClick(gestures->focusWidget(), Qt::Key_C);
        QCOMPARE(settings(), before);
        QTRY_VERIFY(the<advset_dlg>()->isVisible());
        press(the<advset_dlg>(), "testbtn");
        QTRY_VERIFY(the<test_win>()->isVisible());
        press(the<advset_dlg>(), "testbtn_2");
        QTRY_VERIFY(the<LightSet_dlg>()->isVisible());
        QTRY_COMPARE(the<LightSet_dlg>()->size(), the<LightSet_dlg>()->screen()->size());
        press(the<advset_dlg>(), "canbtn");
        QVERIFY(!the<advset_dlg>()->isVisible());
        QVERIFY(the<test_win>()->isVisible() && the<LightSet_dlg>()->isVisible());
    }

    void the_light_check_opens_from_the_menus_and_by_the_keyboard()
    {
        start();
        // Made, and its library loaded, when it is asked for.
        QVERIFY(!the<LightCheck_dlg>() && !isLoaded("libQt6PrintSupport"));
        window->activateWindow();
        QTest::keyClick(window.get(), Qt::Key_L, Qt::ControlModifier);
        QTRY_VERIFY(the<LightCheck_dlg>() && the<LightCheck_dlg>()->isVisible());
        QVERIFY(isLoaded("libQt6PrintSupport"));
        the<LightCheck_dlg>()->close();
        auto *test = the<test_win>();
        test->show();
        QVERIFY(QTest::qWaitForWindowActive(test));
        QTest::keyClick(test, Qt::Key_L, Qt::ControlModifier);
        QTRY_VERIFY(the<LightCheck_dlg>()->isVisible());
        the<LightCheck_dlg>()->close();
        const auto entries = test->findChild<QMenu *>()->actions();
        QCOMPARE(entries.last()->text(), u"L&ight check..."_s);
        entries.last()->trigger();
        QTRY_VERIFY(the<LightCheck_dlg>()->isVisible());
        the<LightCheck_dlg>()->close();
        the<advset_dlg>()->show();
        // Its parent's being active counts for the toolkit.
        QTRY_COMPARE(QApplication::activeWindow(), the<advset_dlg>());
        QTest::keyClick(the<advset_dlg>(), Qt::Key_L, Qt::ControlModifier);
        QTRY_VERIFY(the<LightCheck_dlg>()->isVisible());
    }

    void a_light_check_measures_the_frame_and_survives_an_unplug()
    {
        sim::Profile worn;
        worn.oddLights = {{.axis = X, .number = 17, .level = 0}};
        start(worn);
        QTest::keyClick(window.get(), Qt::Key_L, Qt::ControlModifier);
        QTRY_VERIFY(the<LightCheck_dlg>());
        auto *check = the<LightCheck_dlg>();
        QVERIFY(QTest::qWaitForWindowActive(check));
        press(check, "measureButton");
        auto *progress = in<QProgressBar>(check, "progress");
        QTRY_VERIFY(progress->value() > 3);
        frame->unplug();
        window->CheckUSBDevRem(true);
        QTRY_COMPARE(in<QLabel>(check, "notice")->text(),
                     u"The touch frame is gone. Measuring begins anew when one is there."_s);
        QVERIFY(check->isVisible());
        frame->plug();
        QTRY_COMPARE_WITH_TIMEOUT(in<QLabel>(check, "verdictLab")->text(), u"SERVICE NEEDED"_s,
                                  30000);
        QCOMPARE(check->shown().measurement.unit.identification, u"21-01234-1605"_s);
        QCOMPARE(check->shown().measurement.x.scans.size(), 16u);
        QVERIFY(check->shown().measurement.x.gains.size() == 96);
    }

    // The signal test

    void one_scan_of_an_axis_is_drawn_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<QColor>("drawn");
        QTest::addColumn<QColor>("other");
        const QColor green(Qt::darkGreen);
        const QColor red(Qt::darkRed);
        QTest::newRow("X") << QByteArray("Xbtn") << green << red;
        QTest::newRow("Y") << QByteArray("Ybtn") << red << green;
    }
    void one_scan_of_an_axis_is_drawn()
    {
        QFETCH(const QByteArray, button);
        QFETCH(const QColor, drawn);
        QFETCH(const QColor, other);
        start();
        auto *test = the<test_win>();
        test->show();
        press(test, button.constData());
        QTRY_VERIFY(pixelsOfCurves(test, drawn) > 100);
        QCOMPARE(pixelsOfCurves(test, other), 0);
    }

    void a_continuous_test_draws_both_axes_until_it_is_stopped()
    {
        start();
        auto *test = the<test_win>();
        test->show();
        press(test, "ALL_btn");
        QTRY_VERIFY(pixelsOfCurves(test, Qt::darkGreen) > 100 &&
                    pixelsOfCurves(test, Qt::darkRed) > 100);
        press(test, "ALL_btn");
        QCOMPARE(in(test, "ALL_btn")->text(), u"All Test"_s);
        QVERIFY(in(test, "Xbtn")->isEnabled());
        // What was asked for before may still come; nothing more is.
        const QObject scope;
        int asked = 0;
        connect(test, &test_win::Write03, &scope, [&asked] { ++asked; });
        QTRY_COMPARE(model<quint64>([](const sim::Firmware &firmware) {
                         return quint64(firmware.queuedReplies());
                     }),
                     0u);
        QTest::qWait(700);
        QCOMPARE(asked, 0);
    }

    // A window that has heard nothing for three reports asks anew, and what it asked for is lost: a
    // busy machine may bring it there, but not each time.
    void every_pair_of_requests_of_a_continuous_test_brings_a_scan_of_each_axis()
    {
        bool all = false;
        for (int tries = 0; tries < 3 && !all; ++tries)
            all = everyPairBringsScans();
        QVERIFY(all);
    }

    // The last page of each axis comes only behind all others.
    void the_largest_frame_is_shown_whole_on_both_screens()
    {
        sim::Profile largest;
        largest.lightsX = 500;
        largest.lightsY = 350;
        start(largest);
        // Not at a certain place: a window that hears nothing for long asks anew.
        const auto hasEnd = [](const QList<QByteArray> &pages, int light) {
            return std::any_of(pages.begin(), pages.end(), [light](const QByteArray &page) {
                return UCHAR(page[5]) + 256 * UCHAR(page[6]) == light;
            });
        };
        const QList<QByteArray> *x = reports(0xA5, 0x81);
        const QList<QByteArray> *y = reports(0xA5, 0x82);
        auto *test = the<test_win>();
        test->show();
        press(test, "ALL_btn");
        QTRY_VERIFY(pixelsOfCurves(test, Qt::darkGreen) > 100 &&
                    pixelsOfCurves(test, Qt::darkRed) > 100);
        QVERIFY(hasEnd(*x, 495) && hasEnd(*y, 330));
        press(test, "ALL_btn");
        test->hide();

        auto *lights = the<LightSet_dlg>();
        lights->show();
        const auto whole = [](const QList<QByteArray> &pages, int last) {
            int next = 0;
            for (const QByteArray &page : pages) {
                const int first = UCHAR(page[5]) + 256 * UCHAR(page[6]);
                next = first == 0 ? 27 : first == next ? next + 27 : -1;
                if (first == last && next > 0)
                    return true;
            }
            return false;
        };
        QTRY_VERIFY_WITH_TIMEOUT(whole(*x, 18 * 27) && whole(*y, 12 * 27), 10000);
    }

    void an_interval_of_0_starves_nobody()
    {
        start();
        auto *test = the<test_win>();
        test->show();
        in<QLineEdit>(test, "interal_text")->setText(u"0"_s);
        press(test, "ALL_btn");
        const Paints paints(test);
        int turns = 0;
        QTimer other;
        connect(&other, &QTimer::timeout, this, [&turns] { ++turns; });
        other.start(10);
        QTRY_VERIFY(paints.count >= 5);
        QTRY_VERIFY(turns >= 20);
        QTRY_VERIFY(pixelsOfCurves(test, Qt::darkGreen) > 100 &&
                    pixelsOfCurves(test, Qt::darkRed) > 100);
        press(test, "ALL_btn");
        QCOMPARE(in(test, "ALL_btn")->text(), u"All Test"_s);
    }

    void an_unplug_ends_the_test_and_after_a_plug_a_new_one_runs()
    {
        start();
        auto *test = the<test_win>();
        test->show();
        press(test, "ALL_btn");
        QTRY_VERIFY(pixelsOfCurves(test, Qt::darkRed) > 100);
        frame->unplug();
        window->OnDeviceRemoved();
        QVERIFY(!test->isVisible());
        QCOMPARE(in(test, "ALL_btn")->text(), u"All Test"_s);
        bool asked = false;
        connect(test, &test_win::Write03, this, [&asked] { asked = true; });
        QTest::qWait(400);
        QVERIFY(!asked);

        frame->plug();
        QTRY_COMPARE(window->connectState(), MainWindow::UsbConnected);
        test->show();
        QCOMPARE(pixelsOfCurves(test, Qt::darkRed), 0);
        press(test, "ALL_btn");
        QTRY_VERIFY(pixelsOfCurves(test, Qt::darkGreen) > 100 &&
                    pixelsOfCurves(test, Qt::darkRed) > 100);
    }

    // Ten minutes, as the frame and the window live them: a report every 67 ms, a request every
    // 150 ms, with the event loop in between.
    void ten_minutes_of_a_continuous_test_data()
    {
        QTest::addColumn<bool>("logged");
        QTest::newRow("logged") << true;
        QTest::newRow("not logged") << false;
    }
    void ten_minutes_of_a_continuous_test()
    {
        QFETCH(const bool, logged);
        constexpr auto Length = 10min;
        constexpr auto Report = 67ms;
        constexpr auto Request = 150ms;
        std::chrono::milliseconds now{};
        sim::Firmware firmware({}, [&now] { return now; });
        test_win test;
        test.show();
        QVERIFY(QTest::qWaitForWindowExposed(&test));
        connect(&test, &test_win::Write03, this, [&firmware](UCHAR *buf) {
            Frame sent;
            std::copy_n(buf, FrameSize, sent.begin());
            firmware.command(sent);
        });
        if (logged)
            in<QAction>(&test, "logAction")->setChecked(true);
        press(&test, "ALL_btn");
        auto *timer = test.findChild<QTimer *>();
        QCOMPARE(timer->intervalAsDuration(), Request);
        timer->setInterval(24h); // this loop keeps the time

        int requests = 0;
        int longestQueue = 0;
        size_t memoryEarly = 0;
        for (auto nextReport = now, nextRequest = Request; now < Length; now += 1ms) {
            if (now == nextReport) {
                Frame report = firmware.report();
                test.DoRecv03(report.data());
                nextReport += Report;
                QCoreApplication::processEvents();
            }
            if (now == nextRequest) {
                QVERIFY(QMetaObject::invokeMethod(&test, "ontimer"));
                nextRequest += Request;
                ++requests;
                longestQueue = std::max(longestQueue, firmware.queuedReplies());
                QCoreApplication::processEvents();
            }
            if (now == 1min)
                memoryEarly = mallinfo2().uordblks;
        }
        QVERIFY(longestQueue <= 3);
        const size_t memoryLate = mallinfo2().uordblks;
        press(&test, "ALL_btn");
        QVERIFY(requests >= 3990);
        if (!logged) {
            constexpr size_t AFewEvents = 64 * 1024;
            QVERIFY(FreedStaysInUse || memoryEarly > 0);
            QVERIFY2(FreedStaysInUse || memoryLate < memoryEarly + AFewEvents,
                     qPrintable(u"%1 then %2"_s.arg(memoryEarly).arg(memoryLate)));
            return;
        }
        QFile log(home->filePath(u"TestLog.csv"_s));
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QList<QByteArray> rows = log.readAll().split('\n');
        // A title, a row for each pair of requests, nothing behind the last line feed; the very
        // last request may have had no time for its answer.
        QVERIFY2(qAbs(rows.size() - 2 - requests / 2) <= 1,
                 qPrintable(u"%1 rows for %2 requests"_s.arg(rows.size()).arg(requests)));
        for (qsizetype row = 1; row < rows.size() - 2; ++row) {
            // Date, time, 96 levels, then 54 with an empty field behind each.
            const QList<QByteArray> fields = rows[row].split(',');
            QCOMPARE(fields.size(), 2 + 96 + 2 * 54 + 1);
            for (int i = 0; i < 96; ++i)
                QVERIFY2(!fields[2 + i].isEmpty(), rows[row].constData());
            for (int i = 0; i < 54; ++i)
                QVERIFY2(!fields[2 + 96 + 2 * i].isEmpty(), rows[row].constData());
        }
    }

    // The lights

    void the_light_screen_reads_the_frame()
    {
        start();
        frame->change([](sim::Firmware &firmware) {
            const Frame set = {0x00, 0xA2, 0x04, 0x0C, 0x00, 0x10, 0x0E, 0xA0, 0x0F,
                               0x00, 0x0B, 0x80, 0x0C, 0xE8, 0x03, 0x58, 0x02};
            firmware.command(set);
        });
        the<LightSet_dlg>()->show();
        QTRY_COMPARE(field("MinADC"), u"3600"_s);
        QCOMPARE(field("MaxADC"), u"4000"_s);
        QCOMPARE(field("MinEdgeADC"), u"2816"_s);
        QCOMPARE(field("MaxEdgeADC"), u"3200"_s);
        QCOMPARE(field("ADCThreshold"), u"1000"_s);
        QCOMPARE(field("EdgeADCThreshold"), u"600"_s);
    }

    void settings_that_are_written_are_what_the_frame_then_reports()
    {
        start();
        auto *lights = the<LightSet_dlg>();
        lights->show();
        QTRY_COMPARE(field("MinADC"), u"3800"_s);
        type("MinADC", u"3700"_s);
        type("EdgeADCThreshold", u"555"_s);
        press(lights, "ADCSetBtn");
        QTRY_COMPARE(model<command::AdcLines>(&sim::Firmware::adcSettings),
                     (command::AdcLines{3700, 4000, 3000, 3200, 1000, 555}));
        lights->close();
        lights->show();
        QTRY_COMPARE(field("MinADC"), u"3700"_s);
        QCOMPARE(field("EdgeADCThreshold"), u"555"_s);
    }

    void a_light_is_chosen_by_a_click_adjusted_switched_off_and_on_again()
    {
        start();
        auto *lights = the<LightSet_dlg>();
        lights->show();
        QTRY_COMPARE(lights->size(), QSize(1280, 800));
        QTRY_COMPARE(field("MinADC"), u"3800"_s);
        // The bottom strip: light 640 * 96 / 1281.
        QTest::mouseClick(lights, Qt::LeftButton, {}, QPoint(640, 760));
        QCOMPARE(field("LightDir"), u"X"_s);
        QCOMPARE(field("LightNum"), u"47"_s);
        QTRY_VERIFY(in(lights, "LightAddBtn")->isEnabled());
        QCOMPARE(field("LightAGCSet"), u"0"_s);

        press(lights, "LightAddBtn");
        QTRY_COMPARE(light(X, 47).offset, 1);
        for (int expected : {0, -1}) {
            // Until the light is read again, its last reply may come once more.
            QTRY_COMPARE(field("LightAGCSet"), QString::number(expected + 1));
            QTest::qWait(700);
            QCOMPARE(field("LightAGCSet"), QString::number(expected + 1));
            press(lights, "LightDecBtn");
            QTRY_COMPARE(light(X, 47).offset, expected);
        }

        QTRY_VERIFY(in(lights, "LightChooseBtn_2")->isEnabled());
        QCOMPARE(in(lights, "LightChooseBtn_2")->text(), u"Disable"_s);
        press(lights, "LightChooseBtn_2");
        QTRY_VERIFY(light(X, 47).off);
        QTRY_COMPARE(in(lights, "LightChooseBtn_2")->text(), u"Enable"_s);
        QTRY_COMPARE(field("LightADC"), u"0"_s);
        QTRY_VERIFY(in(lights, "LightChooseBtn_2")->isEnabled());
        press(lights, "LightChooseBtn_2");
        QTRY_VERIFY(!light(X, 47).off);
        QTRY_COMPARE(in(lights, "LightChooseBtn_2")->text(), u"Disable"_s);
        QTRY_VERIFY(field("LightADC").toInt() > 1000);
        QVERIFY(!light(X, 46).off && light(X, 48).offset == 0 && !light(Y, 47).off);
    }

    void a_light_that_is_typed_is_read_and_nonsense_is_not()
    {
        start();
        auto *lights = the<LightSet_dlg>();
        lights->show();
        QTRY_COMPARE(field("MinADC"), u"3800"_s);
        type("LightDir", u"y"_s);
        type("LightNum", u"53"_s);
        QTRY_COMPARE(field("LightDir"), u"Y"_s);
        QTRY_VERIFY(field("LightADC").toInt() > 1000);
        bool asked = false;
        connect(lights, &LightSet_dlg::Write03, this,
                [&asked](const UCHAR *buf) { asked = asked || buf[1] == 0xA2; });
        for (const QString &nonsense : {u"54"_s, u"-1"_s, u"many"_s, u"99999999999"_s}) {
            type("LightNum", nonsense);
            asked = false;
            QTest::qWait(700); // longer than a round of polling
            QVERIFY2(!asked, qPrintable(nonsense));
            QCOMPARE(field("LightNum"), nonsense);
        }
    }

    void an_unplug_closes_the_light_screen_and_after_a_plug_it_works_again()
    {
        start();
        auto *lights = the<LightSet_dlg>();
        lights->show();
        QTRY_COMPARE(field("MinADC"), u"3800"_s);
        frame->unplug();
        window->OnDeviceRemoved();
        QVERIFY(!lights->isVisible());
        frame->plug();
        QTRY_COMPARE(window->connectState(), MainWindow::UsbConnected);
        lights->show();
        const QList<QByteArray> *settings = reports(0xA2, 0x85);
        QTRY_VERIFY(!settings->isEmpty());
    }
};

QTEST_MAIN(TestDiagnostics)
#include "tst_diagnostics.moc"
