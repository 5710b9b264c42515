// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/framewords.h"
#include "sim/firmware.h"
#include "tests/support/frames.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using sim::Firmware;
using sim::Profile;

namespace {

constexpr UCHAR X = 1;
constexpr UCHAR Y = 2;
// A 1280 x 800 screen that is the whole desktop.
constexpr auto Check = "01 05 00 00 00 00 00 05 20 03 00 05 20 03";

class TestClock
{
public:
    operator sim::Clock() // NOLINT(google-explicit-constructor)
    {
        return [this] { return now; };
    }
    std::chrono::milliseconds now = 1000ms;
};

QByteArrayList answers(Firmware &firmware)
{
    QByteArrayList all;
    while (firmware.hasReply())
        all += text(firmware.report());
    return all;
}

// What tells scan pages apart: axis, length and first light.
QByteArrayList pageHeads(Firmware &firmware)
{
    QByteArrayList heads;
    while (firmware.hasReply())
        heads += text(firmware.report()).left(20);
    return heads;
}

Profile quiet()
{
    Profile profile;
    profile.noise = 0;
    return profile;
}

Profile finishing()
{
    Profile profile = quiet();
    profile.earlyRequest = sim::EarlyRequest::Finishes;
    return profile;
}

// Runs a calibration up to the point where the device waits for the check.
void calibrate(Firmware &firmware, const std::array<QPoint, 4> &touches)
{
    const std::array<const char *, 4> echoes = {"01 01", "01 02", "01 03", "01 04"};
    firmware.command(hostFrame("01 00"));
    for (size_t i = 0; i < touches.size(); ++i) {
        firmware.command(hostFrame(echoes[i]));
        firmware.touch(touches[i]);
    }
}

constexpr std::array<QPoint, 4> Exact = {QPoint(160, 100), QPoint(1120, 100), QPoint(1120, 700),
                                         QPoint(160, 700)};

} // namespace

class TestFirmware : public QObject
{
    Q_OBJECT

private slots:
    void before_any_reply_the_report_is_the_id_and_zeros();
    void the_last_reply_is_read_again_until_the_next_one();
    void each_command_is_told_and_gets_its_answer_data();
    void each_command_is_told_and_gets_its_answer();
    void an_unknown_or_senseless_command_is_counted_and_changes_nothing_data();
    void an_unknown_or_senseless_command_is_counted_and_changes_nothing();

    void the_firmware_reply_packs_number_and_date_into_one_byte();
    void an_older_device_knows_neither_firmware_query_nor_settings_reset();
    void gestures_are_kept_as_sent();
    void adc_settings_are_told_as_they_were_set();
    void the_serial_rate_is_kept_as_a_code_of_three_bytes();
    void a_reset_drops_what_was_under_way_and_keeps_settings_data();
    void a_reset_drops_what_was_under_way_and_keeps_settings();

    void a_calibration_goes_from_touch_to_touch();
    void touches_count_only_while_the_device_waits_for_one();
    void an_echo_of_another_step_changes_nothing();
    void the_same_echo_twice_waits_for_one_touch();
    void begin_in_the_middle_starts_over_and_forgets_touches();
    void a_check_before_the_last_touch_is_not_answered();
    void deviations_are_the_mean_distance_in_percent_data();
    void deviations_are_the_mean_distance_in_percent();
    void a_second_screen_is_judged_where_it_lies();
    void save_keeps_only_a_finished_calibration();
    void discarding_leaves_what_was_kept_before();

    void light_offsets_are_signed_and_move_the_signal();
    void a_light_that_is_off_reads_zero_until_it_is_on_again();
    void dead_and_weak_lights_read_low();
    void a_noisy_light_reads_otherwise_each_time_and_its_neighbours_do_not();
    void scans_come_in_pages_data();
    void scans_come_in_pages();
    void the_first_scan_after_power_on_has_one_byte_a_light();
    void a_page_of_pairs_carries_level_and_gain();
    void a_new_request_replaces_what_is_queued_of_its_kind();
    void a_frame_that_finishes_says_the_first_scan_and_then_the_second();
    void a_frame_that_finishes_scans_anew_once_however_often_it_is_asked();
    void a_frame_that_finishes_reads_the_lights_when_the_second_scan_begins();
    void a_frame_that_finishes_keeps_the_axes_apart();
    void a_frame_that_finishes_still_replaces_other_replies();
    void a_reset_forgets_the_scan_to_come();
    void the_same_calls_give_the_same_bytes();
    void another_seed_gives_other_noise();
    void noise_stays_within_its_bounds();
    void uptime_counts_from_the_last_reset();

private:
    TestClock clock;
};

void TestFirmware::before_any_reply_the_report_is_the_id_and_zeros()
{
    Firmware firmware(Profile(), clock);
    QCOMPARE(text(firmware.report()), "FC");
    QCOMPARE(text(firmware.report()), "FC");
}

void TestFirmware::the_last_reply_is_read_again_until_the_next_one()
{
    Firmware firmware(Profile(), clock);
    firmware.command(hostFrame("A7 02"));
    QCOMPARE(firmware.queuedReplies(), 2);
    QCOMPARE(text(firmware.report()), "FC A7 81 02");
    QCOMPARE(text(firmware.report()), "FC A7 82 02");
    QCOMPARE(text(firmware.report()), "FC A7 82 02");
    firmware.command(hostFrame("A5 00"));
    QCOMPARE(text(firmware.report()), "FC A5 80 05 00 60 00 36");
}

void TestFirmware::each_command_is_told_and_gets_its_answer_data()
{
    using Lines = QList<std::pair<const char *, const char *>>;
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QStringList>("lines");

    // What the host sends, then what the frame answers, each in bytes and in words.
    const auto row = [](const char *request, const char *words, const Lines &replies) {
        QStringList lines{QString::fromLatin1(words)};
        for (const auto &[bytes, replyWords] : replies)
            lines += u"%1  %2"_s.arg(QString::fromLatin1(bytes), QString::fromLatin1(replyWords));
        QTest::newRow(words) << QByteArray(request) << lines;
    };
    row("01 00", "calibration: begin",
        {{"FC 01", "calibration: begun"}, {"FC 01 01", "calibration: ready for step 1"}});
    row("01 01", "calibration: step 1", {});
    row(Check, "calibration: check, screen 0,0 1280x800 of 1280x800", {});
    row("01 06", "calibration: discard", {});
    row("01 FF", "calibration: save", {});
    row("A2 03", "reset", {});
    row("10 00", "reset (older devices)", {});
    row("A2 00 05 00 01 01 DC 05 03 01 02",
        "gestures: all 1, right button 1 after 1500 ms within 3, wheel 1 at 2", {});
    row("A2 04 0C 00 D8 0E A0 0F B8 0B 80 0C E8 03 58 02",
        "adc: set range 3800 to 4000, edge range 3000 to 3200, threshold 1000, edge threshold 600",
        {});
    row("A2 05 00", "adc: read settings",
        {{"FC A2 85 11 00 D8 0E A0 0F B8 0B 80 0C E8 03 58 02 60 00 36",
          "adc: range 3800 to 4000, edge range 3000 to 3200, threshold 1000, edge threshold 600; "
          "96 X lights, 54 Y lights"}});
    row("A2 06 04 00 01 30 00 05", "light X 48: set offset 5",
        {{"FC A2 87 0B 00 01 30 00 05 30 C0 0D 70 0D",
          "light X 48: on, offset 5, agc 48, adc 3520, org 3440"}});
    row("A2 07 03 00 01 30 00", "light X 48: read",
        {{"FC A2 87 0B 00 01 30 00 00 30 70 0D 70 0D",
          "light X 48: on, offset 0, agc 48, adc 3440, org 3440"}});
    row("A2 08 04 00 02 1A 00 01", "light Y 26: switch off",
        {{"FC A2 87 0B 00 02 1A 00 00 30 00 00 00 00 01",
          "light Y 26: off, offset 0, agc 48, adc 0, org 0"}});
    row("A2 08 04 00 02 1A 00 00", "light Y 26: switch on",
        {{"FC A2 87 0B 00 02 1A 00 00 30 70 0D 70 0D",
          "light Y 26: on, offset 0, agc 48, adc 3440, org 3440"}});
    row("A3 00", "firmware: read",
        {{"FC A3 80 0E 00 12 38 00 DE C0 17 5A 34 12 50 60 01 21",
          "firmware: revision 0x003812, checksum 0x5A17C0DE, date 0x1605, number 0x01234, "
          "family 0x21"}});
    row("A5 00", "scan: read light counts",
        {{"FC A5 80 05 00 60 00 36", "scan: 96 X lights, 54 Y lights"}});
    row("A7 00 02 00 03", "rotation: set 270 degrees", {});
    row("A7 02", "rotation: read",
        {{"FC A7 81 02", "rotation: default is 0 degrees"},
         {"FC A7 82 02", "rotation: now 0 degrees"}});
    row("B1 00 03 00 13", "serial rate: set code 19", {});
}

void TestFirmware::each_command_is_told_and_gets_its_answer()
{
    QFETCH(QByteArray, request);
    QFETCH(QStringList, lines);

    Firmware firmware(quiet(), clock);
    const Frame command = hostFrame(request.constData());
    firmware.command(command);
    QStringList all{framewords::describeCommand(command)};
    while (firmware.hasReply()) {
        const Frame reply = firmware.report();
        all += u"%1  %2"_s.arg(QString::fromLatin1(text(reply)), framewords::describeReport(reply));
    }
    QCOMPARE(all, lines);
    QCOMPARE(firmware.unknownCommands(), 0);
}

void TestFirmware::an_unknown_or_senseless_command_is_counted_and_changes_nothing_data()
{
    QTest::addColumn<QByteArray>("request");

    QTest::newRow("empty frame") << QByteArray("00 00");
    QTest::newRow("class unknown") << QByteArray("77 00");
    QTest::newRow("calibration sub-command unknown") << QByteArray("01 07");
    QTest::newRow("check of a screen without width")
        << QByteArray("01 05 00 00 00 00 00 00 20 03 00 05 20 03");
    QTest::newRow("check of a screen without height")
        << QByteArray("01 05 00 00 00 00 00 05 00 00 00 05 20 03");
    QTest::newRow("settings sub-command unknown") << QByteArray("A2 01");
    QTest::newRow("a reply's sub-command") << QByteArray("A2 85");
    QTest::newRow("gestures of another length") << QByteArray("A2 00 07 00 01 01 DC 05 03 01 02");
    QTest::newRow("adc settings of another length") << QByteArray("A2 04 0B 00 01");
    QTest::newRow("light on axis 0") << QByteArray("A2 07 03 00 00 00 00");
    QTest::newRow("light on axis 3") << QByteArray("A2 07 03 00 03 00 00");
    QTest::newRow("light behind the last X") << QByteArray("A2 07 03 00 01 60 00");
    QTest::newRow("light behind the last Y") << QByteArray("A2 07 03 00 02 36 00");
    QTest::newRow("light number of 16 bits") << QByteArray("A2 06 04 00 01 00 01 05");
    QTest::newRow("light switched to 2") << QByteArray("A2 08 04 00 01 00 00 02");
    QTest::newRow("light read of another length") << QByteArray("A2 07 04 00 01 00 00");
    QTest::newRow("firmware query with a payload") << QByteArray("A3 00 01");
    QTest::newRow("firmware sub-command unknown") << QByteArray("A3 01");
    QTest::newRow("scan of a third axis") << QByteArray("A5 03");
    QTest::newRow("rotation by five quarter turns") << QByteArray("A7 00 02 00 04");
    QTest::newRow("rotation of another length") << QByteArray("A7 00 01 00 01");
    QTest::newRow("rotation sub-command unknown") << QByteArray("A7 01");
    QTest::newRow("serial rate of another length") << QByteArray("B1 00 04 00 13");
    QTest::newRow("serial sub-command unknown") << QByteArray("B1 01 03 00 13");
    QTest::newRow("older reset sub-command unknown") << QByteArray("10 01");
}

void TestFirmware::an_unknown_or_senseless_command_is_counted_and_changes_nothing()
{
    QFETCH(QByteArray, request);

    Firmware firmware(Profile(), clock);
    firmware.command(hostFrame("01 00"));
    firmware.command(hostFrame(request.constData()));
    QCOMPARE(firmware.unknownCommands(), 1);
    QCOMPARE(answers(firmware), QByteArrayList({"FC 01", "FC 01 01"}));
    QCOMPARE(firmware.calibrationStep(), 1);
    QCOMPARE(firmware.rotation(), 0);
    QCOMPARE(firmware.baudCode(), std::nullopt);
    QCOMPARE(firmware.gestures(), std::nullopt);
    QCOMPARE(firmware.adcSettings(), sim::FirstAdcLines);
    QCOMPARE(firmware.light(X, 0), sim::LightState());
}

void TestFirmware::the_firmware_reply_packs_number_and_date_into_one_byte()
{
    Profile profile;
    profile.revision = 0xABCDEF;
    profile.checksum = 0x89ABCDEF;
    profile.number = 0xF1234;
    profile.date = 0xA56E;
    profile.family = 0x7C;
    Firmware firmware(profile, clock);
    firmware.command(hostFrame("A3 00"));
    QCOMPARE(text(firmware.report()), "FC A3 80 0E 00 EF CD AB EF CD AB 89 34 12 EF 56 0A 7C");
}

void TestFirmware::an_older_device_knows_neither_firmware_query_nor_settings_reset()
{
    Profile profile;
    profile.release = 0x2FFF;
    profile.rotation = 2;
    Firmware firmware(profile, clock);
    firmware.command(hostFrame("01 00"));
    firmware.command(hostFrame("A3 00"));
    firmware.command(hostFrame("A2 03"));
    QCOMPARE(firmware.unknownCommands(), 2);
    QCOMPARE(firmware.queuedReplies(), 2);
    firmware.command(hostFrame("10 00"));
    QCOMPARE(firmware.unknownCommands(), 2);
    QCOMPARE(firmware.queuedReplies(), 0);

    profile.release = 0x3000;
    Firmware current(profile, clock);
    current.command(hostFrame("A2 03"));
    current.command(hostFrame("A3 00"));
    QCOMPARE(current.unknownCommands(), 0);
    QCOMPARE(current.queuedReplies(), 1);
}

void TestFirmware::gestures_are_kept_as_sent()
{
    Firmware firmware(Profile(), clock);
    QVERIFY(!firmware.gestures());
    firmware.command(hostFrame("A2 00 05 00 01 00 DC 05 03 01 02"));
    const command::Gestures expected{1, 0, 1500, 3, 1, 2};
    QCOMPARE(firmware.gestures(), std::optional(expected));
}

void TestFirmware::adc_settings_are_told_as_they_were_set()
{
    Firmware firmware(Profile(), clock);
    firmware.command(hostFrame("A2 04 0C 00 01 00 02 01 03 02 04 03 05 04 06 05"));
    firmware.command(hostFrame("A2 05"));
    QCOMPARE(text(firmware.report()),
             "FC A2 85 11 00 01 00 02 01 03 02 04 03 05 04 06 05 60 00 36");
    const command::AdcLines expected{1, 258, 515, 772, 1029, 1286};
    QCOMPARE(firmware.adcSettings(), expected);
}

void TestFirmware::the_serial_rate_is_kept_as_a_code_of_three_bytes()
{
    Firmware firmware(Profile(), clock);
    firmware.command(hostFrame("B1 00 03 00 13 00 00"));
    QCOMPARE(firmware.baudCode(), std::optional(19));
    firmware.command(hostFrame("B1 00 03 00 01 02 03"));
    QCOMPARE(firmware.baudCode(), std::optional(0x030201));
}

void TestFirmware::a_reset_drops_what_was_under_way_and_keeps_settings_data()
{
    QTest::addColumn<QByteArray>("reset");
    QTest::newRow("settings class") << QByteArray("A2 03");
    QTest::newRow("older") << QByteArray("10 00");
}

void TestFirmware::a_reset_drops_what_was_under_way_and_keeps_settings()
{
    QFETCH(QByteArray, reset);

    Firmware firmware(quiet(), clock);
    calibrate(firmware, Exact);
    firmware.command(hostFrame(Check));
    firmware.command(hostFrame("01 FF"));
    firmware.command(hostFrame("A7 00 02 00 01"));
    firmware.command(hostFrame("A2 06 04 00 01 03 00 FB"));
    firmware.command(hostFrame("A2 08 04 00 02 04 00 01"));
    firmware.command(hostFrame("A2 04 0C 00 01 00 02 00 03 00 04 00 05 00 06 00"));
    firmware.command(hostFrame("A2 00 05 00 01 01 DC 05 03 01 02"));
    firmware.command(hostFrame("A2 05"));
    calibrate(firmware, Exact);
    QVERIFY(firmware.queuedReplies() > 0);
    QVERIFY(text(firmware.report()) != "FC");

    firmware.command(hostFrame(reset.constData()));
    QCOMPARE(text(firmware.report()), "FC");
    QCOMPARE(firmware.queuedReplies(), 0);
    QCOMPARE(firmware.calibration(), Firmware::Calibration::Idle);
    QCOMPARE(firmware.gestures(), std::nullopt);
    // A save now has nothing to keep; what was kept before stays.
    firmware.command(hostFrame(Check));
    QVERIFY(!firmware.hasReply());
    QVERIFY(firmware.calibrationKept());
    QCOMPARE(firmware.rotation(), 1);
    QCOMPARE(firmware.light(X, 3).offset, -5);
    QVERIFY(firmware.light(Y, 4).off);
    QCOMPARE(firmware.adcSettings().edgeThreshold, 6);
    // Scan pages carry one byte a light again: 54 lights on one page.
    firmware.command(hostFrame("A5 02"));
    QCOMPARE(firmware.queuedReplies(), 1);
}

void TestFirmware::a_calibration_goes_from_touch_to_touch()
{
    Firmware firmware(Profile(), clock);
    firmware.command(hostFrame("01 00"));
    QCOMPARE(answers(firmware), QByteArrayList({"FC 01", "FC 01 01"}));
    firmware.command(hostFrame("01 01"));
    QVERIFY(!firmware.hasReply());
    QCOMPARE(firmware.calibration(), Firmware::Calibration::Waiting);
    firmware.touch({160, 100});
    QCOMPARE(answers(firmware), QByteArrayList({"FC 01 02"}));
    firmware.command(hostFrame("01 02"));
    firmware.touch({1120, 100});
    QCOMPARE(answers(firmware), QByteArrayList({"FC 01 03"}));
    firmware.command(hostFrame("01 03"));
    firmware.touch({1120, 700});
    QCOMPARE(answers(firmware), QByteArrayList({"FC 01 04"}));
    firmware.command(hostFrame("01 04"));
    firmware.touch({160, 700});
    QCOMPARE(answers(firmware), QByteArrayList({"FC 01 05"}));
    firmware.command(hostFrame(Check));
    QCOMPARE(answers(firmware), QByteArrayList({"FC 01 FF"}));
    QCOMPARE(firmware.calibration(), Firmware::Calibration::Ended);
    QVERIFY(!firmware.calibrationKept());
    firmware.command(hostFrame("01 FF"));
    QVERIFY(firmware.calibrationKept());
    QCOMPARE(firmware.calibration(), Firmware::Calibration::Idle);
    QCOMPARE(firmware.unknownCommands(), 0);
}

void TestFirmware::touches_count_only_while_the_device_waits_for_one()
{
    Firmware firmware(Profile(), clock);
    firmware.touch({1, 1});
    QVERIFY(!firmware.hasReply());
    firmware.command(hostFrame("01 00"));
    firmware.touch({1, 1});
    QCOMPARE(answers(firmware), QByteArrayList({"FC 01", "FC 01 01"}));
    firmware.command(hostFrame("01 01"));
    firmware.touch({160, 100});
    firmware.touch({1, 1});
    firmware.touch({1, 1});
    QCOMPARE(answers(firmware), QByteArrayList({"FC 01 02"}));
    QCOMPARE(firmware.calibrationStep(), 2);
}

void TestFirmware::an_echo_of_another_step_changes_nothing()
{
    Firmware firmware(Profile(), clock);
    firmware.command(hostFrame("01 00"));
    answers(firmware);
    firmware.command(hostFrame("01 02"));
    firmware.touch({1, 1});
    QVERIFY(!firmware.hasReply());
    firmware.command(hostFrame("01 01"));
    firmware.touch({160, 100});
    QCOMPARE(answers(firmware), QByteArrayList({"FC 01 02"}));
    firmware.command(hostFrame("01 01"));
    firmware.touch({1, 1});
    QVERIFY(!firmware.hasReply());
    QCOMPARE(firmware.unknownCommands(), 0);
}

void TestFirmware::the_same_echo_twice_waits_for_one_touch()
{
    Firmware firmware(Profile(), clock);
    firmware.command(hostFrame("01 00"));
    answers(firmware);
    firmware.command(hostFrame("01 01"));
    firmware.command(hostFrame("01 01"));
    firmware.touch({160, 100});
    QCOMPARE(answers(firmware), QByteArrayList({"FC 01 02"}));
    QCOMPARE(firmware.calibration(), Firmware::Calibration::Offered);
}

void TestFirmware::begin_in_the_middle_starts_over_and_forgets_touches()
{
    Firmware firmware(Profile(), clock);
    firmware.command(hostFrame("01 00"));
    firmware.command(hostFrame("01 01"));
    firmware.touch({1279, 799});
    firmware.command(hostFrame("01 02"));
    calibrate(firmware, Exact);
    // The replies of the first attempt are gone with it.
    QCOMPARE(answers(firmware),
             QByteArrayList({"FC 01", "FC 01 01", "FC 01 02", "FC 01 03", "FC 01 04", "FC 01 05"}));
    firmware.command(hostFrame(Check));
    QCOMPARE(answers(firmware), QByteArrayList({"FC 01 FF"}));
}

void TestFirmware::a_check_before_the_last_touch_is_not_answered()
{
    Firmware firmware(Profile(), clock);
    firmware.command(hostFrame("01 00"));
    firmware.command(hostFrame("01 01"));
    answers(firmware);
    firmware.command(hostFrame(Check));
    QVERIFY(!firmware.hasReply());
    firmware.command(hostFrame("01 FF"));
    QVERIFY(!firmware.calibrationKept());
}

void TestFirmware::deviations_are_the_mean_distance_in_percent_data()
{
    QTest::addColumn<QList<QPoint>>("touches");
    QTest::addColumn<QByteArray>("end");

    QTest::newRow("exact") << QList<QPoint>(Exact.begin(), Exact.end()) << QByteArray("FC 01 FF");
    // 26 of 1280 are 2.03 %, 25 of 800 are 3.1 %.
    QTest::newRow("two and three percent")
        << QList<QPoint>{{186, 125}, {1094, 125}, {1146, 675}, {134, 725}}
        << QByteArray("FC 01 FF 00 02 03");
    // (64 + 0 + 0 + 0) / 4 = 16 of 1280: 1.25 %; (4 + 4 + 4 + 4) / 4 = 4 of 800: 0.5 %.
    QTest::newRow("half a percent rounds up")
        << QList<QPoint>{{224, 104}, {1120, 96}, {1120, 704}, {160, 696}}
        << QByteArray("FC 01 FF 00 01 01");
    QTest::newRow("beyond what a signed byte holds")
        << QList<QPoint>{{9999, 100}, {-9999, 100}, {9999, 700}, {-9999, 700}}
        << QByteArray("FC 01 FF 00 7F");
    QTest::newRow("right and left exchanged")
        << QList<QPoint>{{1120, 100}, {160, 100}, {160, 700}, {1120, 700}}
        << QByteArray("FC 01 FF 00 4B");
}

void TestFirmware::deviations_are_the_mean_distance_in_percent()
{
    QFETCH(QList<QPoint>, touches);
    QFETCH(QByteArray, end);

    Firmware firmware(Profile(), clock);
    calibrate(firmware, {touches[0], touches[1], touches[2], touches[3]});
    answers(firmware);
    firmware.command(hostFrame(Check));
    QCOMPARE(answers(firmware), QByteArrayList({end}));
}

void TestFirmware::a_second_screen_is_judged_where_it_lies()
{
    Firmware firmware(Profile(), clock);
    // 1366 x 768 at 1920,312: an eighth is 170 and 96, seven eighths are 1190 and 672.
    calibrate(firmware, {QPoint(2090, 408), QPoint(3110, 408), QPoint(3110, 984), {2090, 984}});
    answers(firmware);
    firmware.command(hostFrame("01 05 80 07 38 01 56 05 00 03 D6 0C 38 04"));
    QCOMPARE(answers(firmware), QByteArrayList({"FC 01 FF"}));
    firmware.command(hostFrame("01 FF"));
    const sim::KeptCalibration expected{{1920, 312, 1366, 768, 3286, 1080}, 0, 0};
    QCOMPARE(firmware.keptCalibration(), std::optional(expected));
}

void TestFirmware::save_keeps_only_a_finished_calibration()
{
    Firmware firmware(Profile(), clock);
    firmware.command(hostFrame("01 FF"));
    QVERIFY(!firmware.calibrationKept());
    calibrate(firmware, Exact);
    firmware.command(hostFrame("01 FF"));
    QVERIFY(!firmware.calibrationKept());
    // It was over with that.
    firmware.command(hostFrame(Check));
    firmware.command(hostFrame("01 FF"));
    QVERIFY(!firmware.calibrationKept());
}

void TestFirmware::discarding_leaves_what_was_kept_before()
{
    Firmware firmware(Profile(), clock);
    calibrate(firmware, Exact);
    firmware.command(hostFrame(Check));
    firmware.command(hostFrame("01 06"));
    QVERIFY(!firmware.calibrationKept());
    QVERIFY(!firmware.hasReply());
    firmware.command(hostFrame("01 FF"));
    QVERIFY(!firmware.calibrationKept());

    calibrate(firmware, Exact);
    firmware.command(hostFrame(Check));
    firmware.command(hostFrame("01 FF"));
    calibrate(firmware, {QPoint(0, 0), QPoint(0, 0), QPoint(0, 0), QPoint(0, 0)});
    firmware.command(hostFrame(Check));
    firmware.command(hostFrame("01 06"));
    const sim::KeptCalibration expected{{0, 0, 1280, 800, 1280, 800}, 0, 0};
    QCOMPARE(firmware.keptCalibration(), std::optional(expected));
}

void TestFirmware::light_offsets_are_signed_and_move_the_signal()
{
    Firmware firmware(quiet(), clock);
    // 0xFB is -5; the gain of 0x30 and the reading without offset stay.
    firmware.command(hostFrame("A2 06 04 00 01 30 00 FB"));
    QCOMPARE(text(firmware.report()), "FC A2 87 0B 00 01 30 00 FB 30 20 0D 70 0D");
    QCOMPARE(firmware.light(X, 48).offset, -5);
    QCOMPARE(firmware.light(X, 47).offset, 0);
    QCOMPARE(firmware.light(Y, 48).offset, 0);
    firmware.command(hostFrame("A2 07 03 00 02 30 00"));
    // Y 48 of 54 lies 13 below the middle's 215, and its gain as much above 48.
    QCOMPARE(text(firmware.report()), "FC A2 87 0B 00 02 30 00 00 3D A0 0C A0 0C");
}

void TestFirmware::a_light_that_is_off_reads_zero_until_it_is_on_again()
{
    Firmware firmware(quiet(), clock);
    firmware.command(hostFrame("A2 08 04 00 02 01 00 01"));
    QVERIFY(firmware.light(Y, 1).off);
    QVERIFY(!firmware.light(X, 1).off);
    firmware.command(hostFrame("A5 02"));
    firmware.report();
    // First index, then levels: Y 0 is 195, Y 1 is off, Y 2 is 198.
    QCOMPARE(text(firmware.report()).left(35), "FC A5 82 39 00 00 00 C3 00 C6 C7 C9");
    firmware.command(hostFrame("A2 08 04 00 02 01 00 00"));
    firmware.command(hostFrame("A5 02"));
    firmware.report();
    QCOMPARE(text(firmware.report()).left(35), "FC A5 82 39 00 00 00 C3 C4 C6 C7 C9");
}

void TestFirmware::dead_and_weak_lights_read_low()
{
    Profile profile;
    profile.noise = 3;
    profile.oddLights = {{X, 5, 0}, {X, 6, 60}};
    Firmware firmware(profile, clock);
    firmware.command(hostFrame("A5 01"));
    const Frame page = firmware.report();
    QVERIFY(page[7 + 5] <= 2);
    QVERIFY(page[7 + 6] >= 57 && page[7 + 6] <= 63);
    QVERIFY(page[7 + 4] > 150);
    QVERIFY(page[7 + 7] > 150);
}

void TestFirmware::a_noisy_light_reads_otherwise_each_time_and_its_neighbours_do_not()
{
    Profile profile;
    profile.noise = 1;
    profile.oddLights = {{.axis = X, .number = 5, .noise = 40}};
    Firmware firmware(profile, clock);
    int lowest[3] = {255, 255, 255};
    int highest[3] = {};
    for (int scan = 0; scan < 50; ++scan) {
        firmware.command(hostFrame("A5 01"));
        const Frame page = firmware.report();
        for (int i = 0; i < 3; ++i) {
            lowest[i] = std::min<int>(lowest[i], page.at(7U + 4U + unsigned(i)));
            highest[i] = std::max<int>(highest[i], page.at(7U + 4U + unsigned(i)));
        }
    }
    QVERIFY(highest[0] - lowest[0] <= 2);
    QVERIFY(highest[1] - lowest[1] > 40 && highest[1] - lowest[1] <= 80);
    QVERIFY(highest[2] - lowest[2] <= 2);
}

void TestFirmware::scans_come_in_pages_data()
{
    QTest::addColumn<int>("lightsX");
    QTest::addColumn<int>("lightsY");
    QTest::addColumn<bool>("pairs");
    QTest::addColumn<QByteArray>("request");
    // First seven bytes of each page: id, class, sub-command, length, 0, index of first light.
    QTest::addColumn<QByteArrayList>("heads");

    QTest::newRow("96 levels") << 96 << 54 << false << QByteArray("A5 01")
                               << QByteArrayList{"FC A5 81 3A 00 00 00", "FC A5 81 2C 00 37 00"};
    QTest::newRow("54 levels") << 96 << 54 << false << QByteArray("A5 02")
                               << QByteArrayList{"FC A5 82 39 00 00 00"};
    QTest::newRow("96 pairs") << 96 << 54 << true << QByteArray("A5 01")
                              << QByteArrayList{"FC A5 81 39 00 00 00", "FC A5 81 39 00 1B 00",
                                                "FC A5 81 39 00 36 00", "FC A5 81 21 00 51 00"};
    QTest::newRow("54 pairs") << 96 << 54 << true << QByteArray("A5 02")
                              << QByteArrayList{"FC A5 82 39 00 00 00", "FC A5 82 39 00 1B 00"};
    QTest::newRow("55 levels fill one page")
        << 55 << 1 << false << QByteArray("A5 01") << QByteArrayList{"FC A5 81 3A 00 00 00"};
    QTest::newRow("56 levels need two")
        << 56 << 1 << false << QByteArray("A5 01")
        << QByteArrayList{"FC A5 81 3A 00 00 00", "FC A5 81 04 00 37 00"};
    QTest::newRow("one level") << 1 << 1 << false << QByteArray("A5 02")
                               << QByteArrayList{"FC A5 82 04 00 00 00"};
    QTest::newRow("one pair") << 1 << 1 << true << QByteArray("A5 01")
                              << QByteArrayList{"FC A5 81 05 00 00 00"};
    QTest::newRow("500 levels") << 500 << 350 << false << QByteArray("A5 01")
                                << QByteArrayList{"FC A5 81 3A 00 00 00", "FC A5 81 3A 00 37 00",
                                                  "FC A5 81 3A 00 6E 00", "FC A5 81 3A 00 A5 00",
                                                  "FC A5 81 3A 00 DC 00", "FC A5 81 3A 00 13 01",
                                                  "FC A5 81 3A 00 4A 01", "FC A5 81 3A 00 81 01",
                                                  "FC A5 81 3A 00 B8 01", "FC A5 81 08 00 EF 01"};
    QTest::newRow("350 levels") << 500 << 350 << false << QByteArray("A5 02")
                                << QByteArrayList{"FC A5 82 3A 00 00 00", "FC A5 82 3A 00 37 00",
                                                  "FC A5 82 3A 00 6E 00", "FC A5 82 3A 00 A5 00",
                                                  "FC A5 82 3A 00 DC 00", "FC A5 82 3A 00 13 01",
                                                  "FC A5 82 17 00 4A 01"};
    QTest::newRow("350 pairs") << 500 << 350 << true << QByteArray("A5 02")
                               << QByteArrayList{"FC A5 82 39 00 00 00", "FC A5 82 39 00 1B 00",
                                                 "FC A5 82 39 00 36 00", "FC A5 82 39 00 51 00",
                                                 "FC A5 82 39 00 6C 00", "FC A5 82 39 00 87 00",
                                                 "FC A5 82 39 00 A2 00", "FC A5 82 39 00 BD 00",
                                                 "FC A5 82 39 00 D8 00", "FC A5 82 39 00 F3 00",
                                                 "FC A5 82 39 00 0E 01", "FC A5 82 39 00 29 01",
                                                 "FC A5 82 37 00 44 01"};
}

void TestFirmware::scans_come_in_pages()
{
    QFETCH(int, lightsX);
    QFETCH(int, lightsY);
    QFETCH(bool, pairs);
    QFETCH(QByteArray, request);
    QFETCH(QByteArrayList, heads);

    Profile profile = quiet();
    profile.lightsX = lightsX;
    profile.lightsY = lightsY;
    Firmware firmware(profile, clock);
    firmware.command(hostFrame(pairs ? "A2 05" : "A5 00"));
    firmware.report();
    firmware.command(hostFrame(request.constData()));
    QByteArrayList seen;
    while (firmware.hasReply()) {
        const Frame page = firmware.report();
        const int end = 4 + page[3];
        // Every light has a level, and nothing follows the last one.
        for (int i = 7; i < FrameSize; ++i)
            QCOMPARE(page[size_t(i)] != 0, i < end);
        QByteArray head(reinterpret_cast<const char *>(page.data()), 7);
        seen += head.toHex(' ').toUpper();
    }
    QCOMPARE(seen, heads);
}

void TestFirmware::the_first_scan_after_power_on_has_one_byte_a_light()
{
    Firmware firmware(Profile(), clock);
    firmware.command(hostFrame("A5 01"));
    QCOMPARE(firmware.queuedReplies(), 2);
}

void TestFirmware::a_page_of_pairs_carries_level_and_gain()
{
    Profile profile = quiet();
    profile.lightsY = 3;
    profile.level = 200;
    profile.curve = 10;
    Firmware firmware(profile, clock);
    firmware.command(hostFrame("A2 05"));
    firmware.report();
    firmware.command(hostFrame("A5 02"));
    // The ends are 10 lower and need 10 more gain than the middle's 48.
    QCOMPARE(text(firmware.report()), "FC A5 82 09 00 00 00 BE 3A C8 30 BE 3A");
}

void TestFirmware::a_new_request_replaces_what_is_queued_of_its_kind()
{
    Firmware firmware(quiet(), clock);
    firmware.command(hostFrame("A5 01"));
    firmware.command(hostFrame("A5 02"));
    QCOMPARE(firmware.queuedReplies(), 3);
    firmware.report();
    firmware.command(hostFrame("A5 01"));
    QCOMPARE(firmware.queuedReplies(), 3);
    // The Y page has moved to the front; the X scan is whole again.
    QCOMPARE(text(firmware.report()).left(20), "FC A5 82 39 00 00 00");
    QCOMPARE(text(firmware.report()).left(20), "FC A5 81 3A 00 00 00");
    QCOMPARE(text(firmware.report()).left(20), "FC A5 81 2C 00 37 00");
    QVERIFY(!firmware.hasReply());

    firmware.command(hostFrame("A2 07 03 00 01 00 00"));
    firmware.command(hostFrame("A5 00"));
    firmware.command(hostFrame("A2 07 03 00 01 01 00"));
    QCOMPARE(text(firmware.report()), "FC A5 80 05 00 60 00 36");
    QCOMPARE(text(firmware.report()).left(23), "FC A2 87 0B 00 01 01 00");
    QVERIFY(!firmware.hasReply());
}

void TestFirmware::a_frame_that_finishes_says_the_first_scan_and_then_the_second()
{
    Firmware firmware(finishing(), clock);
    firmware.command(hostFrame("A5 01"));
    QCOMPARE(text(firmware.report()).left(20), "FC A5 81 3A 00 00 00");
    firmware.command(hostFrame("A5 01"));
    QCOMPARE(firmware.queuedReplies(), 1);
    QCOMPARE(pageHeads(firmware), QByteArrayList({"FC A5 81 2C 00 37 00", "FC A5 81 3A 00 00 00",
                                                  "FC A5 81 2C 00 37 00"}));
    // With nothing left to say a request is not early.
    firmware.command(hostFrame("A5 01"));
    QCOMPARE(pageHeads(firmware), QByteArrayList({"FC A5 81 3A 00 00 00", "FC A5 81 2C 00 37 00"}));
    QCOMPARE(firmware.unknownCommands(), 0);
}

void TestFirmware::a_frame_that_finishes_scans_anew_once_however_often_it_is_asked()
{
    Firmware firmware(finishing(), clock);
    for (int i = 0; i < 1000; ++i)
        firmware.command(hostFrame("A5 01"));
    QCOMPARE(firmware.queuedReplies(), 2);
    QCOMPARE(pageHeads(firmware), QByteArrayList({"FC A5 81 3A 00 00 00", "FC A5 81 2C 00 37 00",
                                                  "FC A5 81 3A 00 00 00", "FC A5 81 2C 00 37 00"}));
    // A host that asks before every read hears whole scans one after another.
    firmware.command(hostFrame("A5 01"));
    for (int i = 0; i < 10; ++i) {
        firmware.command(hostFrame("A5 01"));
        QCOMPARE(text(firmware.report()).left(20), "FC A5 81 3A 00 00 00");
        firmware.command(hostFrame("A5 01"));
        QCOMPARE(text(firmware.report()).left(20), "FC A5 81 2C 00 37 00");
        QCOMPARE(firmware.queuedReplies(), 2);
    }
}

void TestFirmware::a_frame_that_finishes_reads_the_lights_when_the_second_scan_begins()
{
    Firmware firmware(finishing(), clock);
    firmware.command(hostFrame("A5 02"));
    firmware.command(hostFrame("A5 02"));
    // From now on a light has two bytes, and the first Y light reads nothing.
    firmware.command(hostFrame("A2 05"));
    firmware.command(hostFrame("A2 08 04 00 02 00 00 01"));
    QCOMPARE(text(firmware.report()).left(23), "FC A5 82 39 00 00 00 C3");
    QCOMPARE(text(firmware.report()).left(11), "FC A2 85 11");
    QCOMPARE(text(firmware.report()).left(11), "FC A2 87 0B");
    QCOMPARE(text(firmware.report()).left(26), "FC A5 82 39 00 00 00 00 44");
    QCOMPARE(text(firmware.report()).left(20), "FC A5 82 39 00 1B 00");
    QVERIFY(!firmware.hasReply());
}

void TestFirmware::a_frame_that_finishes_keeps_the_axes_apart()
{
    Firmware firmware(finishing(), clock);
    firmware.command(hostFrame("A5 01"));
    firmware.command(hostFrame("A5 02"));
    firmware.command(hostFrame("A5 02"));
    firmware.command(hostFrame("A5 01"));
    QCOMPARE(pageHeads(firmware), QByteArrayList({"FC A5 81 3A 00 00 00", "FC A5 81 2C 00 37 00",
                                                  "FC A5 82 39 00 00 00", "FC A5 81 3A 00 00 00",
                                                  "FC A5 81 2C 00 37 00", "FC A5 82 39 00 00 00"}));
}

void TestFirmware::a_frame_that_finishes_still_replaces_other_replies()
{
    Firmware firmware(finishing(), clock);
    firmware.command(hostFrame("A5 00"));
    firmware.command(hostFrame("A7 02"));
    firmware.command(hostFrame("A5 00"));
    QCOMPARE(answers(firmware),
             QByteArrayList({"FC A7 81 02", "FC A7 82 02", "FC A5 80 05 00 60 00 36"}));
}

void TestFirmware::a_reset_forgets_the_scan_to_come()
{
    Firmware firmware(finishing(), clock);
    firmware.command(hostFrame("A5 02"));
    firmware.command(hostFrame("A5 02"));
    firmware.command(hostFrame("A2 03"));
    firmware.command(hostFrame("A5 00"));
    QCOMPARE(answers(firmware), QByteArrayList({"FC A5 80 05 00 60 00 36"}));
}

void TestFirmware::the_same_calls_give_the_same_bytes()
{
    Profile profile;
    profile.noise = 10;
    Firmware one(profile, clock);
    Firmware other(profile, clock);
    QByteArrayList first;
    QByteArrayList second;
    for (int i = 0; i < 3; ++i) {
        for (const char *request : {"A5 01", "A5 02", "A2 07 03 00 01 02 00"}) {
            one.command(hostFrame(request));
            other.command(hostFrame(request));
            first += answers(one);
            second += answers(other);
        }
    }
    QCOMPARE(first, second);
    QCOMPARE(first.size(), 12);
    // Yet no two scans are alike.
    QVERIFY(first[0] != first[4]);
}

void TestFirmware::another_seed_gives_other_noise()
{
    Profile profile;
    Firmware one(profile, clock);
    profile.seed = 2;
    Firmware other(profile, clock);
    one.command(hostFrame("A5 01"));
    other.command(hostFrame("A5 01"));
    QVERIFY(answers(one) != answers(other));
}

void TestFirmware::noise_stays_within_its_bounds()
{
    Profile profile;
    profile.level = 100;
    profile.curve = 0;
    profile.noise = 5;
    Firmware firmware(profile, clock);
    int lowest = 255;
    int highest = 0;
    for (int i = 0; i < 20; ++i) {
        firmware.command(hostFrame("A5 01"));
        const Frame page = firmware.report();
        for (auto level = page.begin() + 7; level != page.begin() + 62; ++level) {
            lowest = std::min(lowest, int(*level));
            highest = std::max(highest, int(*level));
        }
    }
    QVERIFY2(lowest >= 95 && lowest <= 96, qPrintable(QString::number(lowest)));
    QVERIFY2(highest >= 104 && highest <= 105, qPrintable(QString::number(highest)));
}

void TestFirmware::uptime_counts_from_the_last_reset()
{
    Firmware firmware(Profile(), clock);
    clock.now += 5s;
    QCOMPARE(firmware.uptime(), 5s);
    firmware.command(hostFrame("10 00"));
    clock.now += 20ms;
    QCOMPARE(firmware.uptime(), 20ms);
}

QTEST_GUILESS_MAIN(TestFirmware)
#include "tst_firmware.moc"
