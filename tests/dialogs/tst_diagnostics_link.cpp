// SPDX-License-Identifier: GPL-3.0-or-later

// Both diagnostic screens side by side at a simulated frame, over a link that takes its time.

#include "dialogs/lightset_dlg.h"
#include "dialogs/test_win.h"
#include "sim/firmware.h"
#include "tests/support/widgets.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <deque>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using std::chrono::milliseconds;

namespace {

constexpr auto ReadPeriod = 67ms;
constexpr auto WritePeriod = 50ms;
constexpr UCHAR X = 1;
constexpr UCHAR Y = 2;

sim::Profile sized(int x, int y)
{
    sim::Profile profile;
    profile.lightsX = x;
    profile.lightsY = y;
    return profile;
}

// A frame on USB: a command every 50 ms, a report every 67 ms and the last one again if there is no
// other. Reports are handed out later by a delay.
class Link : public QObject
{
public:
    sim::Firmware firmware;
    milliseconds delay{};
    bool finishes = false;      // a scan before it begins the next of that axis
    bool silent = false;        // nothing arrives
    int lastPage = 1000;        // of a scan, the others get lost
    QList<QByteArray> sent;     // bytes 1 to 8 of what came out of the windows
    std::array<int, 3> whole{}; // scans of each axis that came page by page to their end

    explicit Link(const sim::Profile &profile)
        : firmware(profile, [this] { return milliseconds(clock.isValid() ? clock.elapsed() : 0); })
    {
        clock.start();
        for (QTimer *timer : {&reader, &writer})
            timer->setTimerType(Qt::PreciseTimer);
        connect(&reader, &QTimer::timeout, this, &Link::read);
        connect(&writer, &QTimer::timeout, this, &Link::write);
        reader.start(ReadPeriod);
    }

    template <typename Window>
    void attach(Window *window)
    {
        connect(window, &Window::Write03, this, [this](const UCHAR *bytes) {
            Frame frame;
            std::copy_n(bytes, FrameSize, frame.begin());
            sent.append(QByteArray(reinterpret_cast<const char *>(bytes) + 1, 8));
            outbox.push_back(frame);
            if (!writer.isActive())
                writer.start(WritePeriod);
        });
        receivers.push_back([window](UCHAR *bytes) { window->DoRecv03(bytes); });
    }

private:
    void write()
    {
        const Frame frame = outbox.front();
        outbox.pop_front();
        if (outbox.empty())
            writer.stop();
        const bool isScan = frame[1] == 0xA5 && frame[2] != 0x00;
        if (isScan && finishes && waiting[frame[2]] > 0)
            later.push_back(frame);
        else
            tell(frame);
    }
    void tell(const Frame &frame)
    {
        const int before = firmware.queuedReplies();
        firmware.command(frame);
        if (frame[1] == 0xA5 && frame[2] != 0x00)
            waiting[frame[2]] = finishes ? firmware.queuedReplies() - before : 0;
    }
    void read()
    {
        Frame report = firmware.report();
        const bool isPage = report[1] == 0xA5 && (report[2] == 0x81 || report[2] == 0x82);
        if (isPage && report != last) {
            UCHAR axis = report[2] & 0x0F;
            waiting[axis] = std::max(0, waiting[axis] - 1);
            if (waiting[axis] == 0) {
                const auto due = std::find_if(later.begin(), later.end(),
                                              [axis](const Frame &one) { return one[2] == axis; });
                if (due != later.end()) {
                    const Frame frame = *due;
                    std::erase_if(later, [axis](const Frame &one) { return one[2] == axis; });
                    tell(frame);
                }
            }
        }
        last = report;
        if (silent)
            return;
        QTimer::singleShot(delay, Qt::PreciseTimer, this, [this, report] { hand(report); });
    }
    void hand(Frame report)
    {
        const bool isPage = report[1] == 0xA5 && (report[2] == 0x81 || report[2] == 0x82);
        if (isPage && report != handed) {
            const int first = report[5] + 256 * report[6];
            const int bytes = report[3] - 3;
            // Two bytes a light after the last settings reply was one of the ADC.
            const int lights = pairs ? bytes / 2 : bytes;
            const UCHAR axis = report[2] & 0x0F;
            if (first / (pairs ? 27 : 55) >= lastPage)
                return;
            next[axis] = first == 0 || first == next[axis] ? first + lights : -1;
            const int all = axis == X ? firmware.profile().lightsX : firmware.profile().lightsY;
            whole[axis] += next[axis] == all ? 1 : 0;
        }
        if (report[1] == 0xA2 && report[2] == 0x85)
            pairs = true;
        if (report[1] == 0xA5 && report[2] == 0x80)
            pairs = false;
        handed = report;
        for (const auto &receiver : receivers) {
            Frame copy = report;
            receiver(copy.data());
        }
    }

    QElapsedTimer clock;
    QTimer reader;
    QTimer writer;
    std::deque<Frame> outbox;
    std::vector<Frame> later;
    std::array<int, 3> waiting{};
    std::array<int, 3> next{};
    Frame last{};
    Frame handed{};
    bool pairs = false;
    std::vector<std::function<void(UCHAR *)>> receivers;
};

} // namespace

class TestDiagnosticsLink : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> place;
    std::unique_ptr<QWidget> parent;
    std::unique_ptr<Link> link;
    test_win *test = nullptr;
    LightSet_dlg *lights = nullptr;

    void start(const sim::Profile &profile)
    {
        link = std::make_unique<Link>(profile);
        parent = std::make_unique<QWidget>();
        test = new test_win(parent.get());
        lights = new LightSet_dlg(parent.get());
        link->attach(test);
        link->attach(lights);
    }
    QString field(const char *name) const { return in<QLineEdit>(lights, name)->text(); }
    static QString notice(const QWidget *window)
    {
        const auto *label = in<QLabel>(window, "notice");
        return label && label->isVisible() ? label->text() : QString();
    }
    void startContinuous(const char *interval)
    {
        test->show();
        QVERIFY(QTest::qWaitForWindowExposed(test));
        in<QLineEdit>(test, "interal_text")->setText(QString::fromLatin1(interval));
        press(test, "ALL_btn");
    }
    void showLights()
    {
        lights->show();
        QVERIFY(QTest::qWaitForWindowExposed(lights));
        QTRY_COMPARE(lights->size(), lights->screen()->size());
        QTRY_VERIFY_WITH_TIMEOUT(!field("MinADC").isEmpty(), 10000);
    }
    // Types a light as its user does.
    void choose(const char *axis, const char *number)
    {
        for (const auto &[name, text] :
             {std::pair("LightDir", axis), std::pair("LightNum", number)}) {
            auto *line = in<QLineEdit>(lights, name);
            line->setFocus();
            line->selectAll();
            QTest::keyClicks(line, QString::fromLatin1(text));
        }
    }
    static QList<QList<QByteArray>> logRows()
    {
        QFile file(u"TestLog.csv"_s);
        if (!file.open(QIODevice::ReadOnly))
            return {};
        QList<QList<QByteArray>> rows;
        for (const QByteArray &line : file.readAll().split('\n').mid(1)) {
            if (!line.isEmpty())
                rows.append(line.split(',').mid(2));
        }
        return rows;
    }

private slots:
    void init()
    {
        QGuiApplication::setQuitOnLastWindowClosed(false);
        place = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir::setCurrent(place->path()));
    }
    void cleanup()
    {
        link.reset();
        parent.reset();
        QDir::setCurrent(QDir::rootPath());
    }

    // Two layouts

    void the_light_screen_spoils_no_signal_test()
    {
        start(sized(96, 54));
        in<QAction>(test, "logAction")->trigger();
        startContinuous("1");
        QTRY_VERIFY(link->whole[Y] >= 2);
        showLights();
        QTRY_COMPARE(field("LightADC"), QString());
        QTest::qWait(1200);
        const auto countsAsked = [this] {
            return link->sent.count(QByteArray("\xA5\0\0\0\0\0\0\0", 8));
        };
        QCOMPARE(countsAsked(), 1);
        link->sent.clear();
        lights->hide();
        QCOMPARE(link->sent.value(0), QByteArray("\xA2\x05\0\0\0\0\0\0", 8));
        QCOMPARE(link->sent.value(1), QByteArray("\xA5\x00\0\0\0\0\0\0", 8));
        const int before = link->whole[Y];
        QTRY_VERIFY(link->whole[Y] >= before + 5);
        press(test, "ALL_btn");
        const auto rows = logRows();
        QVERIFY2(rows.size() >= 5, QByteArray::number(rows.size()));
        for (const auto &row : rows) {
            for (const QByteArray &level : row) {
                // The profile's levels are 193 to 217, of four units each.
                QVERIFY2(level.isEmpty() || (level.toInt() >= 772 && level.toInt() <= 868), level);
            }
        }
    }

    void while_the_light_screen_is_shown_the_signal_test_asks_for_nothing()
    {
        start(sized(96, 54));
        showLights();
        QTRY_VERIFY(link->whole[X] >= 1);
        int asked = 0;
        connect(test, &test_win::Write03, this, [&asked] { ++asked; });
        startContinuous("0");
        QTest::qWait(500);
        QCOMPARE(asked, 0);
        QCOMPARE(notice(test), u"The test waits until the light setting is closed"_s);
        press(test, "ALL_btn");
        QCOMPARE(notice(test), QString());
        press(test, "Xbtn");
        QCOMPARE(asked, 0);
        link->whole = {};
        lights->hide();
        QCOMPARE(asked, 2);
        QCOMPARE(notice(test), QString());
        QTRY_COMPARE(link->whole[X], 1);
    }

    // Large frames

    void every_size_completes_at_every_interval_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("y");
        QTest::addColumn<QByteArray>("interval");
        QTest::addColumn<bool>("finishes");
        for (const auto &[x, y] : {std::pair(96, 54), std::pair(110, 55), std::pair(500, 350)}) {
            for (const char *interval : {"0", "1", "5"}) {
                for (const bool finishes : {false, true}) {
                    const QByteArray name = QByteArray::number(x) + 'x' + QByteArray::number(y) +
                                            " at " + interval + (finishes ? ", finished" : "");
                    QTest::newRow(name) << x << y << QByteArray(interval) << finishes;
                }
            }
        }
    }
    void every_size_completes_at_every_interval()
    {
        QFETCH(const int, x);
        QFETCH(const int, y);
        QFETCH(const QByteArray, interval);
        QFETCH(const bool, finishes);
        start(sized(x, y));
        link->finishes = finishes;
        in<QAction>(test, "logAction")->trigger();
        startContinuous(interval);
        QTRY_VERIFY_WITH_TIMEOUT(link->whole[X] >= 2 && link->whole[Y] >= 2, 15000);
        press(test, "ALL_btn");
        int whole = 0;
        for (const auto &row : logRows()) {
            bool isWhole = row.size() == x + 2 * y + 1;
            for (int i = 0; isWhole && i < x + y; ++i)
                isWhole = !row[i < x ? i : x + 2 * (i - x)].isEmpty();
            whole += isWhole ? 1 : 0;
        }
        QVERIFY(whole >= 1);
    }

    void the_light_screen_gets_every_light_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("y");
        QTest::addColumn<bool>("finishes");
        QTest::newRow("usual") << 96 << 54 << false;
        QTest::newRow("usual, finished") << 96 << 54 << true;
        QTest::newRow("largest") << 500 << 350 << false;
        QTest::newRow("largest, finished") << 500 << 350 << true;
    }
    void the_light_screen_gets_every_light()
    {
        QFETCH(const int, x);
        QFETCH(const int, y);
        QFETCH(const bool, finishes);
        start(sized(x, y));
        link->finishes = finishes;
        showLights();
        choose("X", "30");
        QTRY_VERIFY_WITH_TIMEOUT(link->whole[X] >= 2 && link->whole[Y] >= 2, 15000);
        QVERIFY(!field("LightADC").isEmpty());
    }

    // One light

    void thirty_presses_are_thirty_steps_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("y");
        QTest::addColumn<int>("delay");
        for (const int delay : {0, 1000, 3000}) {
            QTest::addRow("96x54, %d ms late", delay) << 96 << 54 << delay;
            QTest::addRow("500x350, %d ms late", delay) << 500 << 350 << delay;
        }
    }
    void thirty_presses_are_thirty_steps()
    {
        QFETCH(const int, x);
        QFETCH(const int, y);
        QFETCH(const int, delay);
        start(sized(x, y));
        link->delay = milliseconds(delay);
        showLights();
        choose("X", "40");
        QTRY_VERIFY_WITH_TIMEOUT(in(lights, "LightAddBtn")->isEnabled(), 20000);
        for (int i = 0; i < 30; ++i) {
            press(lights, "LightAddBtn");
            QTest::qWait(30);
        }
        QCOMPARE(field("LightAGCSet"), u"30"_s);
        QTRY_COMPARE_WITH_TIMEOUT(link->firmware.light(X, 40).offset, 30, 20000);
        QTRY_VERIFY_WITH_TIMEOUT(in(lights, "LightAddBtn")->isEnabled(), 20000);
        QCOMPARE(field("LightAGCSet"), u"30"_s);
        QCOMPARE(field("LightNum"), u"40"_s);
        // Old answers are still on their way; they take nothing back.
        QTest::qWait(delay);
        QCOMPARE(field("LightAGCSet"), u"30"_s);
        QCOMPARE(link->firmware.light(X, 40).offset, 30);
    }

    void plus_then_minus_leads_back_to_0()
    {
        start(sized(96, 54));
        link->delay = 400ms;
        showLights();
        choose("Y", "5");
        QTRY_VERIFY_WITH_TIMEOUT(in(lights, "LightAddBtn")->isEnabled(), 10000);
        press(lights, "LightAddBtn");
        QTest::qWait(500);
        press(lights, "LightDecBtn");
        QTRY_VERIFY_WITH_TIMEOUT(in(lights, "LightAddBtn")->isEnabled(), 10000);
        QTRY_COMPARE(field("LightAGCSet"), u"0"_s);
        QTRY_COMPARE(link->firmware.light(Y, 5).offset, 0);
        for (const QByteArray &frame : link->sent) {
            if (frame.startsWith("\xA2\x06"))
                QVERIFY2(frame[7] == 1 || frame[7] == 0, frame.toHex(' '));
        }
    }

    void plus_steps_only_the_light_that_is_shown()
    {
        start(sized(96, 54));
        link->delay = 600ms;
        link->firmware.command({0x00, 0xA2, 0x06, 0x04, 0x00, X, 10, 0, 8});
        showLights();
        choose("X", "10");
        QTRY_COMPARE_WITH_TIMEOUT(field("LightAGCSet"), u"8"_s, 10000);
        choose("X", "60");
        press(lights, "LightAddBtn");
        press(lights, "LightAddBtn");
        QTRY_COMPARE_WITH_TIMEOUT(field("LightAGCSet"), u"0"_s, 10000);
        QVERIFY(in(lights, "LightAddBtn")->isEnabled());
        press(lights, "LightAddBtn");
        QTRY_COMPARE(link->firmware.light(X, 60).offset, 1);
        QCOMPARE(link->firmware.light(X, 10).offset, 8);
    }

    void steps_that_wait_are_not_lost_with_another_choice()
    {
        start(sized(96, 54));
        link->delay = 600ms;
        showLights();
        choose("X", "10");
        QTRY_VERIFY_WITH_TIMEOUT(in(lights, "LightAddBtn")->isEnabled(), 10000);
        for (int i = 0; i < 5; ++i)
            press(lights, "LightAddBtn");
        choose("X", "60");
        QTRY_COMPARE(link->firmware.light(X, 10).offset, 5);
        QTRY_VERIFY_WITH_TIMEOUT(in(lights, "LightAddBtn")->isEnabled(), 10000);
        QCOMPARE(field("LightNum"), u"60"_s);
        for (int i = 0; i < 3; ++i)
            press(lights, "LightDecBtn");
        lights->hide();
        QTRY_COMPARE(link->firmware.light(X, 60).offset, -3);
    }

    void a_choice_holds_however_late_the_answers_are_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("y");
        QTest::newRow("usual") << 96 << 54;
        QTest::newRow("largest") << 500 << 350;
    }
    void a_choice_holds_however_late_the_answers_are()
    {
        QFETCH(const int, x);
        QFETCH(const int, y);
        start(sized(x, y));
        link->delay = 1500ms;
        showLights();
        choose("X", "7");
        QTest::qWait(1000);
        choose("Y", "20");
        link->sent.clear();
        QElapsedTimer time;
        for (time.start(); time.elapsed() < 6000; QTest::qWait(20)) {
            QCOMPARE(field("LightDir"), u"Y"_s);
            QCOMPARE(field("LightNum"), u"20"_s);
        }
        int reads = 0;
        for (const QByteArray &frame : link->sent) {
            if (frame.startsWith("\xA2\x07")) {
                QCOMPARE(frame, QByteArray("\xA2\x07\x03\x00\x02\x14\x00\x00", 8));
                ++reads;
            }
        }
        QVERIFY(reads >= 1);
        QTRY_VERIFY_WITH_TIMEOUT(in(lights, "LightAddBtn")->isEnabled(), 10000);
    }

    // Words

    void a_frame_that_says_nothing_is_told_of_in_the_picture()
    {
        start(sized(96, 54));
        link->silent = true;
        startContinuous("1");
        QElapsedTimer time;
        time.start();
        QTRY_COMPARE(notice(test), u"No answer from the touch frame"_s);
        QVERIFY(time.elapsed() >= 1500);
        link->silent = false;
        QTRY_COMPARE(notice(test), QString());
        QVERIFY(QTest::qWaitFor([&] { return link->whole[X] > 0; }));
        link->silent = true;
        lights->show();
        QVERIFY(QTest::qWaitForWindowExposed(lights));
        time.start();
        QTRY_COMPARE(notice(lights), u"No answer from the touch frame"_s);
        QVERIFY(time.elapsed() >= 1500);
        // The next frame has time to answer.
        lights->OnLinkEnded();
        QCOMPARE(notice(lights), QString());
        link->silent = false;
        QTRY_COMPARE(notice(lights), QString());
        QTRY_VERIFY(link->whole[X] > 1);
        QCOMPARE(notice(lights), QString());
    }

    void a_scan_without_its_end_is_told_of_in_the_picture()
    {
        start(sized(500, 350));
        link->lastPage = 4;
        test->show();
        press(test, "Xbtn");
        QTRY_COMPARE(notice(test), u"Scan incomplete: page 4 of 10"_s);
        press(test, "ALL_btn");
        QCOMPARE(notice(test), QString());
        QTRY_COMPARE(notice(test), u"Scan incomplete: page 4 of 10"_s);
        press(test, "ALL_btn");
        showLights();
        QTRY_VERIFY_WITH_TIMEOUT(notice(lights).startsWith(u"Scan incomplete: page 4 of 1"_s),
                                 15000);
        link->lastPage = 1000;
        QTRY_COMPARE_WITH_TIMEOUT(notice(lights), QString(), 15000);
    }

    void when_all_is_well_nothing_is_said_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("y");
        QTest::newRow("usual") << 96 << 54;
        QTest::newRow("largest") << 500 << 350;
    }
    void when_all_is_well_nothing_is_said()
    {
        QFETCH(const int, x);
        QFETCH(const int, y);
        start(sized(x, y));
        startContinuous("1");
        QElapsedTimer time;
        for (time.start(); time.elapsed() < 3500; QTest::qWait(50))
            QCOMPARE(notice(test), QString());
        press(test, "ALL_btn");
        lights->show();
        for (time.start(); time.elapsed() < 6000; QTest::qWait(50)) {
            QCOMPARE(notice(lights), QString());
            if (time.elapsed() > 2000 && field("LightNum").isEmpty())
                choose("X", "12");
        }
    }
};

QTEST_MAIN(TestDiagnosticsLink)
#include "tst_diagnostics_link.moc"
