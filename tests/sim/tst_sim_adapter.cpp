// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/sim_adapter.h"
#include "tests/support/frames.h"

#include <QElapsedTimer>
#include <QTest>

#include <atomic>
#include <future>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using HID_AdpterPacket::NodeProblem;
using sim::FaultPlan;
using sim::Profile;
using sim::SimAdapter;

namespace {

constexpr UCHAR Id = 0xFC;
constexpr bool Sent = false; // SendReport's and GetVersion's own sense
constexpr bool Unsent = true;

sim::SimOptions unpaced()
{
    sim::SimOptions options;
    options.paced = false;
    return options;
}

FaultPlan plan(const QString &text)
{
    QString problem;
    const auto parsed = FaultPlan::parse(text, u"test"_s, &problem);
    if (!parsed)
        qFatal("%s", qPrintable(problem));
    return *parsed;
}

bool send(SimAdapter &adapter, const char *bytes)
{
    Frame frame = hostFrame(bytes);
    return adapter.SendReport(Id, frame.data());
}

// Negative results as their number, others as bytes.
QByteArray read(SimAdapter &adapter)
{
    Frame frame;
    frame.fill(0xEE);
    const int result = adapter.ReadReport(Id, frame.data());
    return result < 0 ? QByteArray::number(result) + ": " + text(frame) : text(frame);
}

} // namespace

class TestSimAdapter : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void a_device_is_found_only_while_it_is_plugged();
    void finding_without_opening_leaves_the_device_closed();
    void a_command_is_answered_in_the_input_report();
    void byte_0_of_a_command_does_not_reach_the_device();
    void another_report_id_is_refused();
    void a_closed_device_takes_and_gives_nothing();
    void the_version_is_that_of_the_profile_data();
    void the_version_is_that_of_the_profile();
    void a_node_with_a_problem_is_not_found_and_says_why();
    void a_read_takes_64_ms_and_a_send_one();
    void what_was_open_before_an_unplug_stays_dead();
    void an_unplug_during_a_read_leaves_zeros();
    void an_unplugged_frame_feels_no_touch();
    void settings_survive_an_unplug_and_a_calibration_under_way_does_not();
    void plug_changes_are_told_once_and_without_a_lock();
    void frames_and_faults_are_logged_in_words();

    void a_stalled_transfer_fails_after_its_time();
    void a_stalled_transfer_keeps_nobody_else_waiting();
    void an_unplug_ends_a_stalled_transfer();
    void a_late_transfer_succeeds();
    void a_late_transfer_fails_when_the_device_was_replugged_meanwhile();
    void a_torn_command_loses_its_second_half();
    void a_torn_report_loses_its_second_half_once();
    void a_repeated_command_arrives_twice();
    void a_repeated_report_delays_the_next_one();
    void a_silent_device_takes_commands_and_loses_them();
    void an_unplug_by_plan_comes_back_at_the_next_look_after_its_time();
    void an_unplug_by_plan_without_return_lasts();
    void the_count_of_transfers_goes_on_over_unplugs();
    void a_manual_unplug_cancels_the_promised_return();

    void reader_writer_and_owner_may_work_at_once();
};

void TestSimAdapter::init()
{
    hidver = {};
}

void TestSimAdapter::a_device_is_found_only_while_it_is_plugged()
{
    sim::SimOptions options = unpaced();
    options.plugged = false;
    SimAdapter adapter(Profile(), {}, options);
    QVERIFY(!adapter.plugged());
    QVERIFY(!adapter.DoFindDev(u"col03"_s, true));
    QVERIFY(!adapter.IsDevOpened());
    adapter.plug();
    QVERIFY(adapter.DoFindDev(u"col03"_s, true));
    QVERIFY(adapter.IsDevOpened());
    adapter.unplug();
    QVERIFY(!adapter.DoFindDev(u"col03"_s, true));
    QVERIFY(!adapter.IsDevOpened());
}

void TestSimAdapter::finding_without_opening_leaves_the_device_closed()
{
    SimAdapter adapter(Profile(), {}, unpaced());
    QVERIFY(adapter.DoFindDev(u"col03"_s, false));
    QVERIFY(!adapter.IsDevOpened());
    QVERIFY(adapter.DoFindDev(u"col03"_s, true));
    QVERIFY(adapter.DoFindDev(u"col03"_s, false));
    QVERIFY(adapter.IsDevOpened());
}

void TestSimAdapter::a_command_is_answered_in_the_input_report()
{
    SimAdapter adapter(Profile(), {}, unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    QCOMPARE(read(adapter), "FC");
    QCOMPARE(send(adapter, "A7 00 02 00 02"), Sent);
    QCOMPARE(send(adapter, "A7 02"), Sent);
    QCOMPARE(read(adapter), "FC A7 81 02");
    QCOMPARE(read(adapter), "FC A7 82 02 00 02");
    QCOMPARE(read(adapter), "FC A7 82 02 00 02");
    QCOMPARE(adapter.transfers(), 6U);
}

void TestSimAdapter::byte_0_of_a_command_does_not_reach_the_device()
{
    SimAdapter adapter(Profile(), {}, unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    Frame frame = hostFrame("A5 00");
    frame[0] = 0x77;
    QCOMPARE(adapter.SendReport(Id, frame.data()), Sent);
    QCOMPARE(read(adapter), "FC A5 80 05 00 60 00 36");
}

void TestSimAdapter::another_report_id_is_refused()
{
    SimAdapter adapter(Profile(), {}, unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    Frame frame = hostFrame("A5 00");
    QCOMPARE(adapter.SendReport(0x03, frame.data()), Unsent);
    QVERIFY(adapter.ReadReport(0x03, frame.data()) < 0);
    QCOMPARE(text(frame), "03");
}

void TestSimAdapter::a_closed_device_takes_and_gives_nothing()
{
    SimAdapter adapter(Profile(), {}, unpaced());
    QCOMPARE(send(adapter, "A5 00"), Unsent);
    QCOMPARE(read(adapter), "-1: FC");
    adapter.DoFindDev(u"col03"_s, true);
    adapter.CloseDevice();
    QVERIFY(!adapter.IsDevOpened());
    QCOMPARE(send(adapter, "A5 00"), Unsent);
    QCOMPARE(read(adapter), "-1: FC");
    QCOMPARE(adapter.transfers(), 0U);
}

void TestSimAdapter::the_version_is_that_of_the_profile_data()
{
    QTest::addColumn<int>("release");
    QTest::newRow("current") << 0x3010;
    QTest::newRow("edge") << 0x3000;
    QTest::newRow("old") << 0x2FFF;
}

void TestSimAdapter::the_version_is_that_of_the_profile()
{
    QFETCH(int, release);

    Profile profile;
    profile.release = quint16(release);
    profile.product = 0x0042;
    SimAdapter adapter(profile, {}, unpaced());
    hidver.VendorID = hidver.ProductID = hidver.VersionNumber = 7;
    QCOMPARE(adapter.GetVersion(), Unsent);
    QCOMPARE(hidver.VersionNumber, 0U);
    adapter.DoFindDev(u"col03"_s, true);
    hidver.SVNNUM = 5;
    QCOMPARE(adapter.GetVersion(), Sent);
    QCOMPARE(hidver.VendorID, 0x5156U);
    QCOMPARE(hidver.ProductID, 0x0042U);
    QCOMPARE(hidver.VersionNumber, quint32(release));
    QCOMPARE(hidver.SVNNUM, 5U);
}

void TestSimAdapter::a_node_with_a_problem_is_not_found_and_says_why()
{
    SimAdapter adapter(Profile(), {}, unpaced());
    const NodeProblem problem{u"/dev/usb/hiddev0"_s, EACCES};
    QCOMPARE(adapter.LastProblem(), NodeProblem());
    adapter.setProblem(problem);
    QVERIFY(!adapter.DoFindDev(u"col03"_s, true));
    QVERIFY(!adapter.IsDevOpened());
    QCOMPARE(adapter.LastProblem(), problem);
    adapter.unplug();
    QVERIFY(!adapter.DoFindDev(u"col03"_s, true));
    QCOMPARE(adapter.LastProblem(), NodeProblem());
    adapter.plug();
    adapter.setProblem({});
    QVERIFY(adapter.DoFindDev(u"col03"_s, true));
    QCOMPARE(adapter.LastProblem(), NodeProblem());
}

void TestSimAdapter::a_read_takes_64_ms_and_a_send_one()
{
    SimAdapter adapter(Profile(), {});
    adapter.DoFindDev(u"col03"_s, true);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(read(adapter), "FC");
    QVERIFY2(timer.elapsed() >= 63, qPrintable(QString::number(timer.elapsed())));
    timer.start();
    for (int i = 0; i < 10; ++i)
        QCOMPARE(send(adapter, "A5 00"), Sent);
    QVERIFY2(timer.elapsed() >= 10, qPrintable(QString::number(timer.elapsed())));
    // A read that fails takes its time as well: readers do not spin on it.
    adapter.unplug();
    timer.start();
    QCOMPARE(read(adapter), "-1: FC");
    QVERIFY2(timer.elapsed() >= 63, qPrintable(QString::number(timer.elapsed())));
}

void TestSimAdapter::what_was_open_before_an_unplug_stays_dead()
{
    SimAdapter adapter(Profile(), {}, unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    adapter.unplug();
    adapter.plug();
    QVERIFY(adapter.IsDevOpened());
    QCOMPARE(send(adapter, "A5 00"), Unsent);
    QCOMPARE(read(adapter), "-1: FC");
    QCOMPARE(adapter.GetVersion(), Unsent);
    QVERIFY(adapter.DoFindDev(u"col03"_s, true));
    QCOMPARE(send(adapter, "A5 00"), Sent);
    QCOMPARE(read(adapter), "FC A5 80 05 00 60 00 36");
}

void TestSimAdapter::an_unplug_during_a_read_leaves_zeros()
{
    SimAdapter adapter(Profile(), {});
    adapter.DoFindDev(u"col03"_s, true);
    send(adapter, "A5 00");
    auto reading = std::async(std::launch::async, [&adapter] { return read(adapter); });
    while (adapter.transfers() < 2)
        std::this_thread::yield();
    adapter.unplug();
    adapter.plug();
    QCOMPARE(reading.get(), "-1: FC");
}

void TestSimAdapter::an_unplugged_frame_feels_no_touch()
{
    SimAdapter adapter(Profile(), {}, unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    send(adapter, "01 00");
    send(adapter, "01 01");
    QCOMPARE(read(adapter), "FC 01");
    QCOMPARE(read(adapter), "FC 01 01");
    adapter.touch({160, 100});
    QCOMPARE(read(adapter), "FC 01 02");
    send(adapter, "01 02");
    adapter.unplug();
    adapter.touch({1120, 100});
    adapter.plug();
    adapter.DoFindDev(u"col03"_s, true);
    QCOMPARE(read(adapter), "FC");
}

void TestSimAdapter::settings_survive_an_unplug_and_a_calibration_under_way_does_not()
{
    SimAdapter adapter(Profile(), {}, unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    send(adapter, "A7 00 02 00 03");
    send(adapter, "01 00");
    adapter.unplug();
    adapter.plug();
    adapter.inspect([](const sim::Firmware &firmware) {
        QCOMPARE(firmware.rotation(), 3);
        QCOMPARE(firmware.calibration(), sim::Firmware::Calibration::Idle);
    });
    QVERIFY(!adapter.calibrationKept());
}

void TestSimAdapter::plug_changes_are_told_once_and_without_a_lock()
{
    SimAdapter adapter(Profile(), {}, unpaced());
    QList<bool> told;
    // Calling back is what a window does at once.
    adapter.onPlugChange = [&](bool plugged) {
        told += plugged;
        QCOMPARE(adapter.DoFindDev(u"col03"_s, true), plugged);
    };
    adapter.plug();
    QVERIFY(told.isEmpty());
    adapter.unplug();
    adapter.unplug();
    adapter.plug();
    adapter.plug();
    QCOMPARE(told, QList<bool>({false, true}));
}

void TestSimAdapter::frames_and_faults_are_logged_in_words()
{
    sim::SimOptions options = unpaced();
    options.clock = [] { return 1500ms; };
    SimAdapter adapter(Profile(), plan(u"at 2 torn"_s), options);
    QStringList lines;
    adapter.setLog([&lines](const QString &line) { lines += line; });
    adapter.DoFindDev(u"col03"_s, true);
    send(adapter, "A7 02");
    read(adapter);
    read(adapter);
    read(adapter);
    read(adapter);
    adapter.touch({3, 4});
    send(adapter, "A5 00");
    read(adapter);
    adapter.unplug();
    QCOMPARE(lines,
             QStringList(
                 {u"     1.500  host > frame  rotation: read  [A7 02 00]"_s,
                  u"     1.500  fault  transfer 2 is torn"_s,
                  u"     1.500  frame > host  rotation: default is 0 degrees  [A7 81 02 00 00]"_s,
                  u"     1.500  frame > host  rotation: now 0 degrees  [A7 82 02 00 00]"_s,
                  u"     1.500  touch at 3,4"_s,
                  u"     1.500  host > frame  scan: read light counts  [A5 00 00]"_s,
                  u"     1.500  frame > host  the same again, 2 x"_s,
                  u"     1.500  frame > host  scan: 96 X lights, 54 Y lights  "
                  "[A5 80 05 00 60 00 36 00]"_s,
                  u"     1.500  unplugged"_s}));
}

void TestSimAdapter::a_stalled_transfer_fails_after_its_time()
{
    SimAdapter adapter(Profile(), plan(u"at 1 stall 80ms\nat 3 stall 80ms"_s), unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(send(adapter, "A5 00"), Unsent);
    QVERIFY(timer.elapsed() >= 80);
    // The device never saw it.
    QCOMPARE(read(adapter), "FC");
    timer.start();
    QCOMPARE(read(adapter), "-1: FC");
    QVERIFY(timer.elapsed() >= 80);
    QCOMPARE(send(adapter, "A5 00"), Sent);
    QCOMPARE(read(adapter), "FC A5 80 05 00 60 00 36");
}

void TestSimAdapter::a_stalled_transfer_keeps_nobody_else_waiting()
{
    SimAdapter adapter(Profile(), plan(u"at 1 stall 2s"_s), unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    auto stalled = std::async(std::launch::async, [&adapter] { return send(adapter, "A5 00"); });
    while (adapter.transfers() < 1)
        std::this_thread::yield();
    QElapsedTimer timer;
    timer.start();
    adapter.touch({1, 1});
    QVERIFY(adapter.plugged());
    QVERIFY(adapter.IsDevOpened());
    QCOMPARE(read(adapter), "FC");
    QCOMPARE(send(adapter, "A7 02"), Sent);
    QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(stalled.wait_for(0ms), std::future_status::timeout);
    QCOMPARE(stalled.get(), Unsent);
}

void TestSimAdapter::an_unplug_ends_a_stalled_transfer()
{
    SimAdapter adapter(Profile(), plan(u"at 1 stall 60s"_s), unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    auto stalled = std::async(std::launch::async, [&adapter] { return read(adapter); });
    while (adapter.transfers() < 1)
        std::this_thread::yield();
    QElapsedTimer timer;
    timer.start();
    adapter.unplug();
    QCOMPARE(stalled.get(), "-1: FC");
    QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
}

void TestSimAdapter::a_late_transfer_succeeds()
{
    SimAdapter adapter(Profile(), plan(u"at 1 late 60ms\nat 2 late 60ms"_s), unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(send(adapter, "A5 00"), Sent);
    QVERIFY(timer.elapsed() >= 60);
    QCOMPARE(read(adapter), "FC A5 80 05 00 60 00 36");
    QVERIFY(timer.elapsed() >= 120);
}

void TestSimAdapter::a_late_transfer_fails_when_the_device_was_replugged_meanwhile()
{
    SimAdapter adapter(Profile(), plan(u"at 1 late 60s"_s), unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    auto late = std::async(std::launch::async, [&adapter] { return send(adapter, "A5 00"); });
    while (adapter.transfers() < 1)
        std::this_thread::yield();
    adapter.unplug();
    adapter.plug();
    QCOMPARE(late.get(), Unsent);
    adapter.inspect([](const sim::Firmware &firmware) { QVERIFY(!firmware.hasReply()); });
}

void TestSimAdapter::a_torn_command_loses_its_second_half()
{
    // Bytes 1 to 31 arrive: a gesture command fits, byte 40 does not.
    SimAdapter adapter(Profile(), plan(u"at 1 torn"_s), unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    QStringList lines;
    adapter.setLog([&lines](const QString &line) { lines += line; });
    Frame frame = hostFrame("A7 00 02 00 01");
    frame[31] = 0x31;
    frame[32] = 0x32;
    frame[63] = 0x63;
    QCOMPARE(adapter.SendReport(Id, frame.data()), Sent);
    adapter.inspect([](const sim::Firmware &firmware) { QCOMPARE(firmware.rotation(), 1); });
    QCOMPARE(lines.size(), 2);
    QVERIFY2(lines[1].endsWith(u"00 00 31]"_s), qPrintable(lines[1]));
}

void TestSimAdapter::a_torn_report_loses_its_second_half_once()
{
    Profile profile;
    profile.noise = 0;
    SimAdapter adapter(profile, plan(u"at 2 torn"_s), unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    send(adapter, "A5 01");
    const QByteArray torn = read(adapter);
    QCOMPARE(torn.size(), 32 * 3 - 1);
    QVERIFY(torn.startsWith("FC A5 81 3A 00 00 00 C3 C4"));
    // The next page is whole.
    QVERIFY(read(adapter).startsWith("FC A5 81 2C 00 37 00"));
}

void TestSimAdapter::a_repeated_command_arrives_twice()
{
    SimAdapter adapter(Profile(), plan(u"at 1 repeat"_s), unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    send(adapter, "77 00");
    adapter.inspect([](const sim::Firmware &firmware) { QCOMPARE(firmware.unknownCommands(), 2); });
}

void TestSimAdapter::a_repeated_report_delays_the_next_one()
{
    SimAdapter adapter(Profile(), plan(u"at 3 repeat"_s), unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    send(adapter, "A7 02");
    QCOMPARE(read(adapter), "FC A7 81 02");
    QCOMPARE(read(adapter), "FC A7 81 02");
    QCOMPARE(read(adapter), "FC A7 82 02");
}

void TestSimAdapter::a_silent_device_takes_commands_and_loses_them()
{
    SimAdapter adapter(Profile(), plan(u"at 2 silent 3"_s), unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    QCOMPARE(send(adapter, "A7 02"), Sent);
    QCOMPARE(send(adapter, "A7 00 02 00 03"), Sent);
    QCOMPARE(read(adapter), "FC");
    QCOMPARE(read(adapter), "FC");
    QCOMPARE(read(adapter), "FC A7 81 02");
    QCOMPARE(read(adapter), "FC A7 82 02");
}

void TestSimAdapter::an_unplug_by_plan_comes_back_at_the_next_look_after_its_time()
{
    auto now = std::make_shared<std::atomic<int>>(0);
    sim::SimOptions options = unpaced();
    options.clock = [now] { return std::chrono::milliseconds(now->load()); };
    SimAdapter adapter(Profile(), plan(u"at 2 unplug back 3s"_s), options);
    QList<bool> told;
    adapter.onPlugChange = [&told](bool plugged) { told += plugged; };
    adapter.DoFindDev(u"col03"_s, true);
    QCOMPARE(send(adapter, "A7 02"), Sent);
    *now = 1000;
    QCOMPARE(read(adapter), "-1: FC");
    QCOMPARE(told, QList<bool>({false}));
    *now = 3999;
    QVERIFY(!adapter.DoFindDev(u"col03"_s, true));
    QCOMPARE(told, QList<bool>({false}));
    *now = 4000;
    QCOMPARE(send(adapter, "A7 02"), Unsent);
    QCOMPARE(told, QList<bool>({false, true}));
    QVERIFY(adapter.DoFindDev(u"col03"_s, true));
    QCOMPARE(read(adapter), "FC");
    QCOMPARE(told, QList<bool>({false, true}));
}

void TestSimAdapter::an_unplug_by_plan_without_return_lasts()
{
    SimAdapter adapter(Profile(), plan(u"at 1 unplug"_s), unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    QCOMPARE(send(adapter, "A7 02"), Unsent);
    QVERIFY(!adapter.plugged());
    adapter.plug();
    QVERIFY(adapter.DoFindDev(u"col03"_s, true));
    QCOMPARE(send(adapter, "A7 02"), Sent);
}

void TestSimAdapter::the_count_of_transfers_goes_on_over_unplugs()
{
    SimAdapter adapter(Profile(), plan(u"at 2 repeat"_s), unpaced());
    adapter.DoFindDev(u"col03"_s, true);
    send(adapter, "77 00");
    adapter.unplug();
    // Calls that reach no device are no transfers.
    send(adapter, "77 00");
    adapter.plug();
    adapter.DoFindDev(u"col03"_s, true);
    send(adapter, "77 00");
    QCOMPARE(adapter.transfers(), 2U);
    adapter.inspect([](const sim::Firmware &firmware) { QCOMPARE(firmware.unknownCommands(), 3); });
}

void TestSimAdapter::a_manual_unplug_cancels_the_promised_return()
{
    auto now = std::make_shared<std::atomic<int>>(0);
    sim::SimOptions options = unpaced();
    options.clock = [now] { return std::chrono::milliseconds(now->load()); };
    SimAdapter adapter(Profile(), plan(u"at 1 unplug back 1s"_s), options);
    adapter.DoFindDev(u"col03"_s, true);
    send(adapter, "A7 02");
    adapter.unplug();
    *now = 5000;
    QVERIFY(!adapter.plugged());
}

void TestSimAdapter::reader_writer_and_owner_may_work_at_once()
{
    SimAdapter adapter(Profile(),
                       plan(u"at 40 stall 20ms\nat 60 late 20ms\nat 90 unplug back 5ms\n"
                            "at 200 torn\nat 201 silent 20"_s),
                       unpaced());
    std::atomic<int> lines = 0;
    std::atomic<int> changes = 0;
    adapter.setLog([&lines](const QString &) { ++lines; });
    adapter.onPlugChange = [&changes](bool) { ++changes; };
    adapter.DoFindDev(u"col03"_s, true);

    std::atomic<bool> stop = false;
    std::atomic<int> reads = 0;
    std::atomic<int> sends = 0;
    std::atomic<int> wrong = 0;
    std::thread reader([&] {
        while (!stop) {
            Frame frame;
            if (adapter.ReadReport(Id, frame.data()) >= 0)
                ++reads;
            else if (text(frame) != "FC")
                ++wrong;
            if (frame[0] != Id)
                ++wrong;
        }
    });
    std::thread writer([&] {
        while (!stop) {
            if (send(adapter, "A5 01") == Sent)
                ++sends;
        }
    });
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; (reads < 500 || sends < 500 || i < 50) && timer.elapsed() < 20'000; ++i) {
        adapter.unplug();
        adapter.touch({1, 1});
        adapter.plug();
        adapter.DoFindDev(u"col03"_s, true);
        adapter.GetVersion();
        adapter.touch({2, 2});
        std::this_thread::sleep_for(1ms);
    }
    stop = true;
    reader.join();
    writer.join();
    QCOMPARE(wrong, 0);
    QVERIFY(reads >= 500);
    QVERIFY(sends >= 500);
    QVERIFY(lines > 0);
    QVERIFY(changes >= 100);
    QCOMPARE(changes % 2, adapter.plugged() ? 0 : 1);
}

QTEST_GUILESS_MAIN(TestSimAdapter)
#include "tst_sim_adapter.moc"
