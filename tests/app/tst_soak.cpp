// SPDX-License-Identifier: GPL-3.0-or-later

// The tool left alone with a frame for a working day, and with scans for an hour, by a clock that
// runs faster than the real one (see tests/support/fastclock.h).

#include "app/mainwindow.h"
#include "device/records.h"
#include "dialogs/lightcheck_dlg.h"
#include "dialogs/test_win.h"
#include "resources/resources.h"
#include "sim/sim_adapter.h"
#include "tests/support/fastclock.h"
#include "tests/support/settingshome.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int Speed = 120;
// Of scans, for whose pages the tool has patience for a second or two: what keeps a busy machine
// from going on for a moment must not look like that.
constexpr int ScanSpeed = 60;
// From the end of one report to the end of the next, in ms: what a real frame takes.
constexpr double ReportMs = 67;
constexpr auto ReadTime = 64ms;
constexpr auto SendTime = 1ms;
// What is made once is there after a sixteenfold scan of the largest frame.
constexpr std::chrono::seconds WarmUp = 90s;
// By how much longer a busy machine may take.
constexpr int Patience = 5;
constexpr int Parts = 4;
// Two bytes for each report of an hour would be more. What is resident has the allocator's gaps and
// pages of libraries in it, and goes up by steps.
constexpr qint64 HeapSlack = 96 * 1024;
constexpr qint64 ResidentSlack = 4 * 1024 * 1024;

// The simulated frame with the times of a real one's transfers in one sleep each: 64 short ones
// would take longer than they should at this speed.
class FewSleepsFrame final : public HID_AdpterPacket::HID_Adapter
{
public:
    explicit FewSleepsFrame(sim::Profile profile)
        : frame(std::move(profile), {}, {.plugged = true, .paced = false, .clock = {}})
    {
    }

    bool DeviceNotification(void *window) override { return frame.DeviceNotification(window); }
    bool IsDevOpened() override { return frame.IsDevOpened(); }
    bool SendReport(UCHAR reportId, UCHAR *buf) override
    {
        std::this_thread::sleep_for(SendTime);
        return frame.SendReport(reportId, buf);
    }
    int ReadReport(UCHAR reportId, UCHAR *buf) override
    {
        const int result = frame.ReadReport(reportId, buf);
        std::this_thread::sleep_for(ReadTime);
        return result;
    }
    void CloseDevice() override { frame.CloseDevice(); }
    bool DoFindDev(QString collection, bool open) override
    {
        return frame.DoFindDev(collection, open);
    }
    bool IsDevDead() override { return frame.IsDevDead(); }
    bool GetVersion() override { return frame.GetVersion(); }
    HID_AdpterPacket::NodeProblem LastProblem() const override { return frame.LastProblem(); }

private:
    sim::SimAdapter frame;
};

int entriesOf(const char *folder)
{
    return int(std::distance(std::filesystem::directory_iterator(folder),
                             std::filesystem::directory_iterator()));
}

qint64 heapInUse()
{
    const struct mallinfo2 heap = mallinfo2();
    return qint64(heap.uordblks + heap.hblkhd);
}

qint64 residentMemory()
{
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

// What the program has, at the least of several moments: threads and buffers come and go.
struct Holdings
{
    static Holdings now()
    {
        constexpr int Moments = 200;
        Holdings least;
        for (int i = 0; i < Moments; ++i) {
            QTest::qWait(130);
            least.descriptors = std::min(least.descriptors, entriesOf("/proc/self/fd"));
            least.threads = std::min(least.threads, entriesOf("/proc/self/task"));
            least.heap = std::min(least.heap, heapInUse());
            least.resident = std::min(least.resident, residentMemory());
        }
        return least;
    }

    int descriptors = std::numeric_limits<int>::max();
    int threads = std::numeric_limits<int>::max();
    qint64 heap = std::numeric_limits<qint64>::max();
    qint64 resident = std::numeric_limits<qint64>::max();
};

sim::Profile largestFrame()
{
    sim::Profile profile;
    profile.lightsX = command::MaxLightsX;
    profile.lightsY = command::MaxLightsY;
    return profile;
}

} // namespace

class TestSoak : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;
    std::unique_ptr<MainWindow> window;
    qint64 reports = 0;
    qint64 pages = 0; // of scans, each counted once

    void start(const sim::Profile &profile)
    {
        window = std::make_unique<MainWindow>(std::make_shared<FewSleepsFrame>(profile));
        window->show();
        QTRY_COMPARE(window->connectState(), MainWindow::UsbConnected);
        reports = pages = 0;
        connect(window.get(), &MainWindow::Recv03, this,
                [this, last = Frame()](const UCHAR *report) mutable {
                    const Frame frame = command::frameAt(report);
                    ++reports;
                    if (frame != last && command::ScanPage::decode(frame))
                        ++pages;
                    last = frame;
                });
    }
    // Lets that time go by, and as many reports come as do in it.
    // Whatever a busy machine makes the tool give up is begun anew.
    void letPass(std::chrono::seconds time, const std::function<void()> &goOn)
    {
        const auto end = Clock::now() + time;
        const auto latest = Clock::now() + Patience * time;
        const qint64 enough =
            reports + qint64(double(std::chrono::milliseconds(time).count()) / ReportMs);
        while (Clock::now() < end || reports < enough) {
            QVERIFY2(Clock::now() < latest, qPrintable(QString::number(enough - reports)));
            QTest::qWait(500);
            goOn();
        }
    }
    void staysFlatFor(
        std::chrono::seconds time, const std::function<void()> &goOn = [] {})
    {
        const double realBegin = fastclock::realSeconds();
        letPass(WarmUp, goOn);
        if (QTest::currentTestFailed())
            return;
        const Holdings before = Holdings::now();
        // How it grew on the way tells what happens once from what happens again and again.
        Holdings after;
        QStringList growth;
        for (int part = 0; part < Parts; ++part) {
            letPass((time - WarmUp) / Parts, goOn);
            if (QTest::currentTestFailed())
                return;
            after = Holdings::now();
            growth += QString::number(after.heap - before.heap);
        }
        qInfo("%lld reports and %lld pages in %lld s, which took %.0f s; descriptors %d and %d, "
              "threads %d and %d, resident %lld and %lld KiB, heap %lld bytes and by parts %s",
              static_cast<long long>(reports), static_cast<long long>(pages),
              static_cast<long long>(time.count()), fastclock::realSeconds() - realBegin,
              before.descriptors, after.descriptors, before.threads, after.threads,
              static_cast<long long>(before.resident / 1024),
              static_cast<long long>(after.resident / 1024), static_cast<long long>(before.heap),
              qPrintable(growth.join(u' ')));
        QVERIFY(before.descriptors > 0 && before.threads > 0 && before.heap > 0 &&
                before.resident > 0);
        QVERIFY(after.descriptors <= before.descriptors);
        QVERIFY(after.threads <= before.threads);
        QVERIFY(after.heap - before.heap <= HeapSlack);
        QVERIFY(after.resident - before.resident <= ResidentSlack);
        QCOMPARE(window->connectState(), MainWindow::UsbConnected);
    }
    void idle(std::chrono::seconds time)
    {
        start({});
        staysFlatFor(time);
    }
    void test(std::chrono::seconds time)
    {
        fastclock::setSpeed(ScanSpeed);
        start(largestFrame());
        auto *test = window->findChild<test_win *>();
        test->show();
        test->findChild<QLineEdit *>(u"interal_text"_s)->setText(u"0"_s);
        test->findChild<QPushButton *>(u"ALL_btn"_s)->click();
        staysFlatFor(time);
        // Nearly each report is one.
        QVERIFY2(pages > reports / 2, qPrintable(QString::number(pages)));
    }
    void follow(std::chrono::seconds time)
    {
        fastclock::setSpeed(ScanSpeed);
        start(largestFrame());
        for (QAction *action : window->actions()) {
            if (action->shortcut() == QKeySequence(Qt::CTRL | Qt::Key_L))
                action->trigger();
        }
        auto *check = window->findChild<LightCheck_dlg *>();
        QVERIFY(check);
        check->findChild<QCheckBox *>(u"followBox"_s)->setChecked(true);
        auto *measure = check->findChild<QPushButton *>(u"measureButton"_s);
        const QString stopped = measure->text();
        int begun = 0;
        staysFlatFor(time, [&] {
            if (measure->text() == stopped) {
                measure->click();
                ++begun;
            }
        });
        QVERIFY2(pages > reports / 3, qPrintable(QString::number(pages)));
        qInfo("begun %d times", begun);
    }

private slots:
    void initTestCase()
    {
        initResources();
        QGuiApplication::setQuitOnLastWindowClosed(false);
    }
    void init()
    {
        hidver = {};
        fastclock::setSpeed(Speed);
        home = std::make_unique<SettingsHome>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(home->folder()));
    }
    void cleanup()
    {
        window.reset();
        home.reset();
    }

    void minutes_connected_and_idle_leave_nothing_behind() { idle(5min); }
    void minutes_of_a_continuous_test_leave_nothing_behind() { test(3min); }

    void eight_hours_connected_and_idle_leave_nothing_behind() { idle(8h); }
    void an_hour_of_a_continuous_test_leaves_nothing_behind() { test(1h); }
    void an_hour_of_following_the_lights_leaves_nothing_behind() { follow(1h); }
};

int main(int argc, char **argv)
{
    // By this clock, hours.
    qputenv("QTEST_FUNCTION_TIMEOUT", "2000000000");
    QApplication app(argc, argv);
    TestSoak tests;
    return QTest::qExec(&tests, argc, argv);
}

#include "tst_soak.moc"
