// SPDX-License-Identifier: GPL-3.0-or-later

// What each command of the command line program does to a frame, and what it says of it.

#include "answeringline.h"
#include "config/xml_class.h"
#include "finger.h"
#include "lossyframe.h"
#include "noisyframe.h"
#include "run.h"
#include "tests/support/frames.h"
#include "tests/support/settingshome.h"
#include "tests/support/targets.h"

#include <QFile>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <csignal>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

sim::FaultPlan plan(const QString &text)
{
    QString problem;
    const auto parsed = sim::FaultPlan::parse(text, u"plan"_s, &problem);
    if (!parsed)
        qFatal("%s", qPrintable(problem));
    return *parsed;
}

int rotationOf(const sim::SimAdapter &frame)
{
    int code = -1;
    frame.inspect([&code](const sim::Firmware &model) { code = model.rotation(); });
    return code;
}

command::AdcLines adcOf(const sim::SimAdapter &frame)
{
    command::AdcLines lines;
    frame.inspect([&lines](const sim::Firmware &model) { lines = model.adcSettings(); });
    return lines;
}

sim::LightState lightOf(const sim::SimAdapter &frame, UCHAR axis, int number)
{
    sim::LightState state;
    frame.inspect([&](const sim::Firmware &model) { state = model.light(axis, number); });
    return state;
}

std::optional<command::Gestures> gesturesOf(const sim::SimAdapter &frame)
{
    std::optional<command::Gestures> gestures;
    frame.inspect([&](const sim::Firmware &model) { gestures = model.gestures(); });
    return gestures;
}

// A simulated frame that takes a command for another one: both as they begin.
class ObstinateFrame final : public WrappedFrame
{
public:
    ObstinateFrame(std::shared_ptr<sim::SimAdapter> theFrame, QByteArray theSaid,
                   QByteArray theUnderstood)
        : WrappedFrame(std::move(theFrame))
        , said(std::move(theSaid))
        , understood(std::move(theUnderstood))
    {
    }

    bool SendReport(UCHAR reportId, UCHAR *buf) override
    {
        if (std::equal(said.begin(), said.end(), reinterpret_cast<const char *>(buf + 1)))
            std::copy(understood.begin(), understood.end(), reinterpret_cast<char *>(buf + 1));
        return frame->SendReport(reportId, buf);
    }

private:
    const QByteArray said;
    const QByteArray understood;
};

// A simulated frame of which all but the first page of a scan gets lost, from the second scan on or
// from the first.
class ForgetfulFrame final : public WrappedFrame
{
public:
    ForgetfulFrame(std::shared_ptr<sim::SimAdapter> theFrame, int theGoodScans)
        : WrappedFrame(std::move(theFrame))
        , goodScans(theGoodScans)
    {
    }

    bool SendReport(UCHAR reportId, UCHAR *buf) override
    {
        const bool isScan = buf[1] == 0xA5 && buf[2] != 0;
        scans += isScan ? 1 : 0;
        return frame->SendReport(reportId, buf);
    }
    int ReadReport(UCHAR reportId, UCHAR *buf) override
    {
        const int result = frame->ReadReport(reportId, buf);
        const bool isLaterPage = buf[1] == 0xA5 && buf[2] != 0x80 && (buf[5] != 0 || buf[6] != 0);
        if (isLaterPage && scans > goodScans) {
            std::fill(buf, buf + FrameSize, UCHAR(0));
            buf[0] = 0xFC;
        }
        return result;
    }

private:
    const int goodScans;
    std::atomic_int scans = 0;
};

// The settings of the ADC as a frame on a line says them, with this largest value.
QByteArray adcWith(int max)
{
    return "FC A2 85 11 00 D8 0E " + QByteArray::number(max % 256, 16).rightJustified(2, '0') +
           ' ' + QByteArray::number(max / 256, 16).rightJustified(2, '0') +
           " B8 0B 80 0C E8 03 58 02 60 00 36 00";
}

bool isCalibrating(const sim::SimAdapter &frame)
{
    bool isIdle = false;
    frame.inspect([&](const sim::Firmware &model) {
        isIdle = model.calibration() == sim::Firmware::Calibration::Idle;
    });
    return !isIdle;
}

QList<int> numbers(const QJsonValue &array)
{
    QList<int> all;
    for (const QJsonValue value : array.toArray())
        all += value.toInt(-1);
    return all;
}

} // namespace

class TestCommands : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        hidver = {};
        home.emplace();
    }

    // rotation

    void rotation_is_shown_with_its_default()
    {
        sim::Profile profile;
        profile.rotation = 1;
        profile.defaultRotation = 2;
        const auto frame = quickFrame(profile);
        const Outcome outcome = runCtl(u"rotation show"_s, frame);
        QCOMPARE(outcome.code, 0);
        QCOMPARE(outcome.out, "Rotation: 90 degrees\nDefault: 180 degrees\n");
        const QJsonObject json = runCtl(u"rotation show --json"_s, frame).json();
        QCOMPARE(json[u"degrees"_s], QJsonValue(90));
        QCOMPARE(json[u"default_degrees"_s], QJsonValue(180));
    }

    void light_counts_that_no_frame_has_are_asked_for_again_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QByteArray>("noise");
        QTest::newRow("counts") << u"lights scan --json"_s << QByteArray("A5 80 05 00 0C E8 36 00");
        QTest::newRow("with the ADC settings")
            << u"adc show --json"_s
            << QByteArray("A2 85 11 00 D8 0E A0 0F B8 0B 80 0C E8 03 58 02 60 00 0C E8");
    }
    void light_counts_that_no_frame_has_are_asked_for_again()
    {
        QFETCH(const QString, command);
        QFETCH(const QByteArray, noise);
        const Outcome outcome = runCtl(
            command, std::make_shared<NoisyFrame>(quickFrame(), deviceFrame(noise.constData())));
        QVERIFY2(outcome.code == 0, outcome.err);
        QVERIFY2(!outcome.out.contains("59404"), outcome.out);
    }

    void a_rotation_that_is_none_is_shown_as_unknown()
    {
        const auto frame = quickFrame({}, plan(u"at 1 silent 1"_s));
        frame->change([](sim::Firmware &model) {
            model.say(deviceFrame("A7 81 02 00 00"));
            model.say(deviceFrame("A7 82 02 00 09"));
        });
        const QJsonObject json = runCtl(u"rotation show --json"_s, frame).json();
        QVERIFY(json[u"degrees"_s].isNull());
    }

    void a_rotation_is_set_and_read_back()
    {
        const auto frame = quickFrame();
        const Outcome outcome = runCtl(u"rotation set 270"_s, frame);
        QCOMPARE(outcome.code, 0);
        QCOMPARE(outcome.out, "Rotation: 270 degrees\n");
        QCOMPARE(rotationOf(*frame), 3);
    }

    void a_rotation_that_the_frame_did_not_take_is_a_failure()
    {
        // The command is lost, the questions behind it are not.
        const auto frame = quickFrame();
        const Outcome outcome =
            runCtl(u"rotation set 90"_s,
                   std::make_shared<LossyFrame>(frame, QByteArray::fromHex("A7 00")));
        QCOMPARE(outcome.code, 1);
        QCOMPARE(outcome.out, "");
        QCOMPARE(outcome.err, "quorvelctl: The touch frame was told to turn by 90 degrees, and "
                              "says: 0 degrees.\n");
    }

    void what_was_sent_and_not_confirmed_is_told()
    {
        const auto frame = quickFrame();
        const Outcome outcome =
            runCtl(u"rotation set 90 --json --timeout 0.5"_s, frame, [&](ctl::Session &session) {
                unplugWhen(session, frame, [frame] { return rotationOf(*frame) == 1; });
            });
        QCOMPARE(outcome.code, 3);
        QCOMPARE(outcome.json()[u"error"_s][u"unconfirmed"_s],
                 QJsonValue(u"a rotation of 90 degrees"_s));
        QVERIFY(outcome.err.contains("a rotation of 90 degrees"));
        QCOMPARE(outcome.err.count('\n'), 1);
    }

    void wrong_values_are_wrong_usage_and_nothing_is_sent_data()
    {
        QTest::addColumn<QString>("arguments");
        for (const char *arguments : {"rotation",
                                      "rotation set",
                                      "rotation set 45",
                                      "rotation set 360",
                                      "rotation turn",
                                      "lights",
                                      "lights scan --axis z",
                                      "lights show",
                                      "lights show z 1",
                                      "lights show x",
                                      "lights show x -1",
                                      "lights show x one",
                                      "lights set x 1",
                                      "lights set x 1 51",
                                      "lights set x 1 -51",
                                      "adc",
                                      "adc set",
                                      "adc set --min 65536",
                                      "adc set --min -1",
                                      "adc set --min 4001",
                                      "adc set --edge-max 2999",
                                      "gestures",
                                      "gestures set --wheel yes",
                                      "gestures set --hold-time 499",
                                      "gestures set --hold-range 6",
                                      "gestures set --wheel-sensitivity 0",
                                      "calibrate",
                                      "calibrate --screen 1280x800",
                                      "calibrate --screen 1280 --save",
                                      "calibrate --screen 0x800 --save",
                                      "calibrate --screen 1280x99999 --save",
                                      "calibrate --screen 1280x800+1 --save",
                                      "calibrate --screen 1280x800 --save --discard",
                                      "watch --count 0",
                                      "watch --for ever"})
            QTest::newRow(arguments) << QString::fromLatin1(arguments);
    }
    void wrong_values_are_wrong_usage_and_nothing_is_sent()
    {
        QFETCH(QString, arguments);
        const auto frame = quickFrame();
        const Outcome outcome = runCtl(arguments, frame);
        QCOMPARE(outcome.code, 2);
        QCOMPARE(outcome.err.count('\n'), 1);
        QCOMPARE(outcome.out, "");
        QCOMPARE(rotationOf(*frame), 0);
        QCOMPARE(adcOf(*frame), sim::FirstAdcLines);
        QCOMPARE(gesturesOf(*frame), std::nullopt);
        QVERIFY(!isCalibrating(*frame));
    }

    // reset

    void a_reset_reaches_the_frame_and_its_answer_is_waited_for()
    {
        const auto frame = quickFrame();
        QCOMPARE(runCtl(u"gestures defaults"_s, frame).code, 0);
        QVERIFY(gesturesOf(*frame));
        QStringList log;
        frame->setLog([&log](const QString &line) { log += line; });
        const Outcome outcome = runCtl(u"reset"_s, frame);
        QCOMPARE(outcome.code, 0);
        QVERIFY(!gesturesOf(*frame));
        QCOMPARE(sentIn(log), QStringList({u"A2 03 00"_s, u"10 00 00"_s, u"A7 02 00"_s}));
    }

    void an_older_frame_gets_the_old_reset_only()
    {
        sim::Profile profile;
        profile.release = 0x2FFF;
        const auto frame = quickFrame(profile);
        QStringList log;
        frame->setLog([&log](const QString &line) { log += line; });
        QCOMPARE(runCtl(u"reset"_s, frame).code, 0);
        QCOMPARE(sentIn(log), QStringList({u"10 00 00"_s, u"A7 02 00"_s}));
    }

    void a_frame_that_leaves_the_bus_for_its_reset_is_waited_for()
    {
        const auto frame = quickFrame();
        const Outcome outcome = runCtl(u"reset"_s, frame, [&](ctl::Session &session) {
            QTimer::singleShot(80ms, &session, [&] { frame->unplug(); });
            QTimer::singleShot(800ms, &session, [&] { frame->plug(); });
        });
        QCOMPARE(outcome.code, 0);
    }

    // adc

    void adc_settings_are_shown_with_the_counts_of_lights()
    {
        const Outcome outcome = runCtl(u"adc show"_s, quickFrame());
        QCOMPARE(outcome.code, 0);
        QCOMPARE(outcome.out, "ADC: 3800 to 4000, threshold 1000\n"
                              "At the edges: 3000 to 3200, threshold 600\n"
                              "Lights: 96 on X, 54 on Y\n");
    }

    void one_adc_setting_is_changed_and_the_others_stay()
    {
        const auto frame = quickFrame();
        const QJsonObject json = runCtl(u"adc set --threshold 1234 --json"_s, frame).json();
        QCOMPARE(json[u"adc"_s].toObject(), QJsonObject({{u"min"_s, 3800},
                                                         {u"max"_s, 4000},
                                                         {u"edge_min"_s, 3000},
                                                         {u"edge_max"_s, 3200},
                                                         {u"threshold"_s, 1234},
                                                         {u"edge_threshold"_s, 600}}));
        QCOMPARE(adcOf(*frame), (command::AdcLines{3800, 4000, 3000, 3200, 1234, 600}));
    }

    void adc_settings_that_the_frame_did_not_take_are_a_failure()
    {
        const Outcome outcome =
            runCtl(u"adc set --min 3000"_s,
                   std::make_shared<LossyFrame>(quickFrame(), QByteArray::fromHex("A2 04")));
        QCOMPARE(outcome.code, 1);
        QCOMPARE(outcome.err, "quorvelctl: The touch frame was told --min 3000, and says 3800.\n");
    }

    void an_answer_from_before_the_write_does_not_stand_for_it()
    {
        const auto frame = quickFrame();
        QCOMPARE(runCtl(u"adc show"_s, frame).code, 0);
        // Its last report is an answer to just that question now.
        QCOMPARE(runCtl(u"adc set --min 3000"_s, frame).code, 0);
        QCOMPARE(adcOf(*frame).min, 3000);
    }

    // A line may change bytes on the way, and what is read is written back.
    void adc_settings_are_believed_when_they_are_said_twice_on_a_serial_line()
    {
        std::atomic_int asked = 0;
        AnsweringLine line({{"00 A2 05", [&] {
                                 constexpr int Said[] = {4000, 4001, 4000, 4000, 4000};
                                 return QByteArrayList{adcWith(Said[std::min(asked++, 4)])};
                             }}});
        runCtl(u"adc set --threshold 1000 --timeout 1 --port "_s + line.path());
        const QByteArrayList sent = line.heard("00 A2 04");
        QCOMPARE(sent.size(), 1);
        QVERIFY2(sent.first().startsWith("00 A2 04 0C 00 D8 0E A0 0F "), sent.first());
        QVERIFY(asked >= 4);
    }

    void adc_settings_that_are_never_said_twice_are_not_written_back()
    {
        std::atomic_int max = 4000;
        AnsweringLine line({{"00 A2 05", [&] { return QByteArrayList{adcWith(max++)}; }}});
        const Outcome outcome =
            runCtl(u"adc set --threshold 1000 --timeout 1 --port "_s + line.path());
        QCOMPARE(outcome.code, 1);
        QCOMPARE(outcome.err,
                 "quorvelctl: The touch frame says other ADC settings each time that it "
                 "is asked: nothing was sent.\n");
        QCOMPARE(line.heard("00 A2 04"), QByteArrayList());
        QCOMPARE(max.load(), 4005); // once, and four times more
    }

    // versions

    void a_frame_on_a_line_that_tells_no_firmware_is_of_the_older_generation()
    {
        AnsweringLine line({{"00 A7 02", [] {
                                 return QByteArrayList{"FC A7 81 02 00 00", "FC A7 82 02 00 00"};
                             }}});
        const Outcome outcome = runCtl(u"versions --timeout 0.4 --port "_s + line.path());
        QCOMPARE(outcome.code, 0);
        QCOMPARE(outcome.out, "Firmware: a frame of the older generation does not tell.\n");
        QVERIFY(!line.heard("00 A3 00").isEmpty());
        const QJsonObject json =
            runCtl(u"versions --json --timeout 0.4 --port "_s + line.path()).json();
        QCOMPARE(json[u"generation"_s], QJsonValue(u"older"_s));
        QVERIFY(json[u"firmware"_s].isNull());
    }

    void a_line_that_hangs_up_instead_of_telling_the_firmware_is_no_older_frame()
    {
        Pty line;
        const Outcome outcome =
            runCtl(u"versions --port "_s + line.path(), {}, [&](ctl::Session &session) {
                QTimer::singleShot(300ms, &session, [&] { line.hangUp(); });
            });
        QCOMPARE(outcome.code, 3);
        QCOMPARE(outcome.out, "");
    }

    void a_line_without_a_frame_is_no_older_frame()
    {
        AnsweringLine line({});
        const Outcome outcome = runCtl(u"versions --timeout 0.3 --port "_s + line.path());
        QCOMPARE(outcome.code, 6);
        QCOMPARE(outcome.out, "");
        QVERIFY(!line.heard("00 A7 02").isEmpty());
    }

    // lights

    void a_scan_that_stays_incomplete_is_a_failure_that_says_how_far_it_came()
    {
        const Outcome outcome = runCtl(u"lights scan --axis x --timeout 0.4"_s,
                                       std::make_shared<ForgetfulFrame>(quickFrame(), 0));
        QCOMPARE(outcome.code, 6);
        QCOMPARE(outcome.err,
                 "quorvelctl: The scan of X stays incomplete: 55 of 96 lights came.\n");
        QCOMPARE(outcome.out, "");
    }

    void half_a_page_of_dead_lights_is_told_if_no_other_scan_comes_through()
    {
        sim::Profile profile;
        profile.noise = 0;
        for (int light = 20; light < 55; ++light)
            profile.oddLights.push_back({command::settings::AxisX, light, 0, {}});
        const Outcome outcome = runCtl(u"lights scan --axis x --json --timeout 0.4"_s,
                                       std::make_shared<ForgetfulFrame>(quickFrame(profile), 1));
        QVERIFY2(outcome.code == 0, outcome.err + outcome.out);
        QCOMPARE(numbers(outcome.json()[u"x"_s][u"levels"_s]).size(), 96);
        QCOMPARE(numbers(outcome.json()[u"x"_s][u"levels"_s]).count(0), 35);
    }

    void a_scan_has_every_light_of_both_axes_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("y");
        QTest::newRow("usual") << 96 << 54;
        QTest::newRow("one page each") << 55 << 27;
        QTest::newRow("the smallest") << 1 << 1;
        QTest::newRow("the largest") << 500 << 350;
    }
    void a_scan_has_every_light_of_both_axes()
    {
        QFETCH(int, x);
        QFETCH(int, y);
        sim::Profile profile;
        profile.lightsX = x;
        profile.lightsY = y;
        profile.noise = 0;
        profile.curve = 0;
        profile.level = 200;
        for (const auto &[options, hasGains] :
             {std::pair(u""_s, false), std::pair(u" --gains"_s, true)}) {
            const QJsonObject json =
                runCtl(u"lights scan --json"_s + options, quickFrame(profile)).json();
            QCOMPARE(json[u"ok"_s], QJsonValue(true));
            QCOMPARE(numbers(json[u"x"_s][u"levels"_s]), QList<int>(x, 200));
            QCOMPARE(numbers(json[u"y"_s][u"levels"_s]), QList<int>(y, 200));
            QCOMPARE(numbers(json[u"y"_s][u"gains"_s]).size(), hasGains ? y : 0);
        }
    }

    void lights_stand_at_their_numbers()
    {
        sim::Profile profile;
        profile.noise = 0;
        profile.oddLights = {{command::settings::AxisX, 60, 7, {}},
                             {command::settings::AxisY, 30, 0, {}}};
        const QJsonObject json = runCtl(u"lights scan --json"_s, quickFrame(profile)).json();
        QCOMPARE(numbers(json[u"x"_s][u"levels"_s]).value(60), 7);
        QCOMPARE(numbers(json[u"y"_s][u"levels"_s]).value(30), 0);
    }

    void one_axis_is_scanned_alone()
    {
        const QJsonObject json = runCtl(u"lights scan --axis y --json"_s, quickFrame()).json();
        QVERIFY(!json.contains(u"x"_s));
        QCOMPARE(numbers(json[u"y"_s][u"levels"_s]).size(), 54);
    }

    void a_scan_is_a_table_for_people()
    {
        const Outcome outcome = runCtl(u"lights scan --axis x"_s, quickFrame());
        QCOMPARE(outcome.lines().size(), 1 + 6);
        QCOMPARE(outcome.lines().first(), "X: levels of 96 lights");
        QVERIFY(outcome.lines().at(2).startsWith("    16: "));
    }

    void progress_is_shown_on_a_terminal_only()
    {
        sim::Profile profile;
        profile.lightsX = 500;
        QCOMPARE(runCtl(u"lights scan"_s, quickFrame(profile)).err, "");
        ctl::Surroundings around;
        around.errIsTerminal = true;
        const Outcome outcome = runCtl(u"lights scan"_s, quickFrame(profile), {}, around);
        QVERIFY(outcome.err.contains("Scanning X: 55 of 500 lights"));
        QVERIFY(outcome.err.endsWith("\r\x1b[K"));
    }

    void a_torn_page_is_not_taken_for_dead_lights()
    {
        // Whichever transfer brings the first page, one of these is torn.
        for (int transfer = 1; transfer < 60; transfer += 1) {
            sim::Profile profile;
            profile.lightsX = 55;
            profile.lightsY = 1;
            const auto frame = quickFrame(profile, plan(u"at %1 torn"_s.arg(transfer)));
            const QJsonObject json = runCtl(u"lights scan --axis x --json"_s, frame).json();
            QVERIFY2(!numbers(json[u"x"_s][u"levels"_s]).contains(0),
                     qPrintable(QString::number(transfer)));
        }
    }

    void half_a_page_of_dead_lights_is_told()
    {
        sim::Profile profile;
        profile.lightsX = 55;
        profile.noise = 0;
        for (int light = 20; light < 55; ++light)
            profile.oddLights.push_back({command::settings::AxisX, light, 0, {}});
        const QJsonObject json =
            runCtl(u"lights scan --axis x --json"_s, quickFrame(profile)).json();
        QCOMPARE(numbers(json[u"x"_s][u"levels"_s]).count(0), 35);
    }

    void one_light_is_shown()
    {
        sim::Profile profile;
        profile.noise = 0;
        profile.curve = 0;
        profile.level = 200;
        const QJsonObject json = runCtl(u"lights show x 48 --json"_s, quickFrame(profile)).json();
        QCOMPARE(json[u"axis"_s], QJsonValue(u"x"_s));
        QCOMPARE(json[u"number"_s], QJsonValue(48));
        QCOMPARE(json[u"off"_s], QJsonValue(false));
        QCOMPARE(json[u"offset"_s], QJsonValue(0));
        QCOMPARE(json[u"gain"_s], QJsonValue(48));
        QCOMPARE(json[u"adc"_s], QJsonValue(3200));
        QCOMPARE(json[u"org"_s], QJsonValue(3200));
    }

    void a_light_that_is_not_there_is_a_failure_that_says_how_many_there_are()
    {
        const Outcome outcome = runCtl(u"lights show y 54 --timeout 0.4"_s, quickFrame());
        QCOMPARE(outcome.code, 1);
        QCOMPARE(outcome.err,
                 "quorvelctl: The touch frame has no light Y 54: the last one is 53.\n");
    }

    void an_offset_is_set_and_read_back()
    {
        const auto frame = quickFrame();
        const Outcome outcome = runCtl(u"lights set y 26 -5"_s, frame);
        QCOMPARE(outcome.code, 0);
        QVERIFY(outcome.out.contains("with an offset of -5"));
        QCOMPARE(lightOf(*frame, command::settings::AxisY, 26).offset, -5);
    }

    void a_light_is_switched_off_and_on()
    {
        const auto frame = quickFrame();
        QVERIFY(runCtl(u"lights off x 0"_s, frame).out.startsWith("X 0: off\n"));
        QVERIFY(lightOf(*frame, command::settings::AxisX, 0).off);
        QVERIFY(runCtl(u"lights on x 0"_s, frame).out.startsWith("X 0: on\n"));
        QVERIFY(!lightOf(*frame, command::settings::AxisX, 0).off);
    }

    void an_answer_about_the_light_from_before_does_not_stand_for_the_write()
    {
        const auto frame = quickFrame();
        QCOMPARE(runCtl(u"lights show x 3"_s, frame).code, 0);
        QCOMPARE(runCtl(u"lights set x 3 7"_s, frame).code, 0);
        const QJsonObject json = runCtl(u"lights show x 3 --json"_s, frame).json();
        QCOMPARE(json[u"offset"_s], QJsonValue(7));
    }

    void a_light_of_which_nothing_is_said_is_a_failure()
    {
        const Outcome outcome =
            runCtl(u"lights show x 95 --timeout 0.4"_s,
                   std::make_shared<LossyFrame>(quickFrame(), QByteArray::fromHex("A2 07")));
        QCOMPARE(outcome.code, 6);
        QCOMPARE(outcome.err, "quorvelctl: The touch frame says nothing about the light X 95.\n");
    }

    void an_offset_that_the_frame_did_not_take_is_a_failure()
    {
        const auto frame = quickFrame();
        const Outcome outcome =
            runCtl(u"lights set x 3 7"_s,
                   std::make_shared<ObstinateFrame>(frame, QByteArray::fromHex("A2 06 04"),
                                                    QByteArray::fromHex("A2 07 03")));
        QCOMPARE(outcome.code, 1);
        QCOMPARE(outcome.out, "");
        QCOMPARE(outcome.err, "quorvelctl: The touch frame was told an offset of 7, and says 0.\n");
        QCOMPARE(lightOf(*frame, command::settings::AxisX, 3).offset, 0);
    }

    void a_light_that_the_frame_did_not_switch_is_a_failure_that_says_how_it_is()
    {
        const auto frame = quickFrame();
        const auto obstinate = std::make_shared<ObstinateFrame>(
            frame, QByteArray::fromHex("A2 08 04"), QByteArray::fromHex("A2 07 03"));
        Outcome outcome = runCtl(u"lights off x 3"_s, obstinate);
        QCOMPARE(outcome.code, 1);
        QCOMPARE(outcome.err, "quorvelctl: The touch frame says that the light is on.\n");
        QCOMPARE(runCtl(u"lights off x 3"_s, frame).code, 0);
        outcome = runCtl(u"lights on x 3"_s, obstinate);
        QCOMPARE(outcome.code, 1);
        QCOMPARE(outcome.err, "quorvelctl: The touch frame says that the light is off.\n");
        QVERIFY(lightOf(*frame, command::settings::AxisX, 3).off);
    }

    // gestures

    void gestures_are_sent_and_kept()
    {
        const auto frame = quickFrame();
        const Outcome outcome = runCtl(
            u"gestures set --right-button off --hold-time 2000 --wheel-sensitivity 3 --json"_s,
            frame);
        QCOMPARE(outcome.code, 0);
        QCOMPARE(gesturesOf(*frame), (command::Gestures{1, 0, 2000, 3, 1, 3}));
        const QJsonObject kept = runCtl(u"gestures show --json"_s).json()[u"kept"_s].toObject();
        QCOMPARE(kept, QJsonObject({{u"finger"_s, true},
                                    {u"right_button"_s, false},
                                    {u"hold_ms"_s, 2000},
                                    {u"hold_range"_s, 3},
                                    {u"wheel"_s, true},
                                    {u"wheel_sensitivity"_s, 3}}));
        QCOMPARE(outcome.json()[u"sent"_s].toObject(), kept);
    }

    void gestures_that_are_not_named_stay()
    {
        const auto frame = quickFrame();
        QCOMPARE(runCtl(u"gestures set --hold-range 5"_s, frame).code, 0);
        QCOMPARE(runCtl(u"gestures set --wheel off"_s, frame).code, 0);
        QCOMPARE(gesturesOf(*frame), (command::Gestures{1, 1, 1500, 5, 0, 2}));
    }

    void the_defaults_are_those_of_the_window()
    {
        const auto frame = quickFrame();
        QCOMPARE(runCtl(u"gestures set --hold-range 5 --finger off"_s, frame).code, 0);
        QCOMPARE(runCtl(u"gestures defaults"_s, frame).code, 0);
        QCOMPARE(gesturesOf(*frame), (command::Gestures{1, 1, 1500, 3, 1, 2}));
    }

    void gestures_that_nothing_keeps_are_not_made_up()
    {
        const Outcome outcome = runCtl(u"gestures show"_s);
        QCOMPARE(outcome.code, 0);
        QVERIFY(outcome.out.contains("keeps no gestures"));
        QVERIFY(!QFile::exists(XML_CLASS::filePath()));
        QVERIFY(runCtl(u"gestures show --json"_s).json()[u"kept"_s].isNull());
    }

    void gestures_are_said_to_be_sent_and_not_set()
    {
        const Outcome outcome = runCtl(u"gestures defaults"_s, quickFrame());
        QVERIFY(outcome.out.contains("Sent to the touch frame, which does not tell them"));
    }

    void gestures_that_cannot_be_kept_are_a_failure_that_says_that_they_were_sent()
    {
        XML_CLASS::useHome(u"/nowhere"_s);
        const auto frame = quickFrame();
        const Outcome outcome = runCtl(u"gestures defaults"_s, frame);
        QCOMPARE(outcome.code, 1);
        QCOMPARE(outcome.err, "quorvelctl: The gestures were sent, but /nowhere/.config/ForQuorvel "
                              "cannot be written: they are not kept.\n");
        QVERIFY(gesturesOf(*frame));
    }

    void gestures_that_could_not_be_sent_are_not_kept()
    {
        const auto frame = quickFrame({}, plan(u"at 1 unplug"_s));
        QCOMPARE(runCtl(u"gestures defaults"_s, frame).code, 3);
        QVERIFY(!QFile::exists(XML_CLASS::filePath()));
    }

    // calibrate

    void a_calibration_tells_each_target_and_is_saved()
    {
        const auto frame = quickFrame();
        const Outcome outcome = runCtl(u"calibrate --screen 1280x800 --save"_s, frame,
                                       [&](ctl::Session &s) { new Finger(&s, frame, Targets); });
        QCOMPARE(outcome.code, 0);
        QCOMPARE(outcome.out, "Touch 160,100 (target 1 of 4)\n"
                              "Touch 1120,100 (target 2 of 4)\n"
                              "Touch 1120,700 (target 3 of 4)\n"
                              "Touch 160,700 (target 4 of 4)\n"
                              "Calibration accuracy: 100%\n"
                              "The touch frame was told to save it.\n");
        frame->inspect([](const sim::Firmware &model) {
            QCOMPARE(model.keptCalibration(),
                     (sim::KeptCalibration{{0, 0, 1280, 800, 1280, 800}, 0, 0}));
        });
    }

    void the_targets_of_a_screen_lie_where_it_lies_in_the_desktop()
    {
        const auto frame = quickFrame();
        const QList<QPoint> targets = {{1380, 150}, {1980, 150}, {1980, 1050}, {1380, 1050}};
        const Outcome outcome =
            runCtl(u"calibrate --screen 800x1200+1280+0 --desktop 2080x1200 --save --json"_s, frame,
                   [&](ctl::Session &s) { new Finger(&s, frame, targets); });
        QCOMPARE(outcome.code, 0);
        const QByteArrayList lines = outcome.lines();
        QCOMPARE(lines.size(), 5);
        for (int i = 0; i < 4; ++i)
            QCOMPARE(QJsonDocument::fromJson(lines[i]).object(),
                     QJsonObject({{u"command"_s, u"calibrate"_s},
                                  {u"event"_s, u"target"_s},
                                  {u"target"_s, i + 1},
                                  {u"x"_s, targets[i].x()},
                                  {u"y"_s, targets[i].y()}}));
        const QJsonObject end = QJsonDocument::fromJson(lines.last()).object();
        QCOMPARE(end[u"sent"_s], QJsonValue(u"save"_s));
        QCOMPARE(end[u"deviation_percent"_s], QJsonValue(0));
        frame->inspect([](const sim::Firmware &model) {
            QCOMPARE(model.keptCalibration(),
                     (sim::KeptCalibration{{1280, 0, 800, 1200, 2080, 1200}, 0, 0}));
        });
    }

    void a_calibration_is_discarded_when_that_is_asked_for()
    {
        const auto frame = quickFrame();
        const Outcome outcome = runCtl(u"calibrate --screen 1280x800 --discard"_s, frame,
                                       [&](ctl::Session &s) { new Finger(&s, frame, Targets); });
        QCOMPARE(outcome.code, 0);
        QVERIFY(!frame->calibrationKept());
        QVERIFY(!isCalibrating(*frame));
    }

    void on_a_terminal_it_is_asked_whether_to_save_data()
    {
        QTest::addColumn<QByteArray>("said");
        QTest::addColumn<bool>("saved");
        QTest::newRow("yes") << QByteArray("y\n") << true;
        QTest::newRow("yes in full") << QByteArray("Yes\n") << true;
        QTest::newRow("no") << QByteArray("n\n") << false;
        QTest::newRow("nothing") << QByteArray("\n") << false;
        QTest::newRow("the end of input") << QByteArray() << false;
    }
    void on_a_terminal_it_is_asked_whether_to_save()
    {
        QFETCH(QByteArray, said);
        QFETCH(bool, saved);
        std::array<int, 2> ends{};
        QCOMPARE(::pipe(ends.data()), 0);
        QCOMPARE(::write(ends[1], said.constData(), size_t(said.size())), said.size());
        ::close(ends[1]);
        ctl::Surroundings around;
        around.input = ends[0];
        around.inputIsTerminal = true;
        const auto frame = quickFrame();
        const Outcome outcome = runCtl(
            u"calibrate --screen 1280x800"_s, frame,
            [&](ctl::Session &s) { new Finger(&s, frame, Targets); }, around);
        ::close(ends[0]);
        QCOMPARE(outcome.code, 0);
        QVERIFY(outcome.out.contains("Calibration accuracy: 100% Save it? [y/N]"));
        QCOMPARE(frame->calibrationKept(), saved);
        QVERIFY(!isCalibrating(*frame));
    }

    void touches_that_are_off_are_told()
    {
        const auto frame = quickFrame();
        const QList<QPoint> off = {{320, 100}, {1280, 100}, {1280, 700}, {320, 700}};
        const Outcome outcome = runCtl(u"calibrate --screen 1280x800 --discard"_s, frame,
                                       [&](ctl::Session &s) { new Finger(&s, frame, off); });
        QVERIFY(outcome.out.contains("The touches were 6% off: better calibrate again."));
    }

    void a_target_that_nobody_touches_ends_the_calibration_and_the_frame_is_as_it_was()
    {
        const auto frame = quickFrame();
        const Outcome outcome =
            runCtl(u"calibrate --screen 1280x800 --save --touch-time 0.3"_s, frame);
        QCOMPARE(outcome.code, 6);
        QCOMPARE(outcome.err, "quorvelctl: Nobody touched the target within 0.3 s. The calibration "
                              "was discarded.\n");
        QVERIFY(!isCalibrating(*frame));
    }

    void a_signal_leaves_the_frame_as_it_was_data()
    {
        QTest::addColumn<int>("signal");
        QTest::addColumn<int>("touches");
        for (int touches = 0; touches < 4; ++touches)
            QTest::addRow("SIGINT after %d", touches) << SIGINT << touches;
        QTest::newRow("SIGTERM") << SIGTERM << 1;
        QTest::newRow("SIGHUP") << SIGHUP << 2;
    }
    void a_signal_leaves_the_frame_as_it_was()
    {
        QFETCH(int, signal);
        QFETCH(int, touches);
        const auto frame = quickFrame();
        const Outcome outcome =
            runCtl(u"calibrate --screen 1280x800 --save"_s, frame, [&](ctl::Session &s) {
                new Finger(&s, frame, Targets.first(touches));
                when(
                    s, [frame, touches] { return stepOf(*frame) == touches + 1; },
                    [&s, signal] { s.interrupt(signal); });
            });
        QCOMPARE(outcome.code, 128 + signal);
        QCOMPARE(outcome.err,
                 "quorvelctl: Ended before it was done. The calibration was discarded.\n");
        QVERIFY(!isCalibrating(*frame));
        QVERIFY(!frame->calibrationKept());
    }

    void an_output_that_nobody_reads_leaves_the_frame_as_it_was()
    {
        QFile full(u"/dev/full"_s);
        QVERIFY(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        ctl::Surroundings around;
        around.out = &full;
        const auto frame = quickFrame();
        const Outcome outcome = runCtl(u"calibrate --screen 1280x800 --save"_s, frame, {}, around);
        QCOMPARE(outcome.code, 7);
        QCOMPARE(outcome.err.count('\n'), 1);
        QVERIFY(!isCalibrating(*frame));
    }

    void an_unplug_ends_a_calibration()
    {
        const auto frame = quickFrame();
        const Outcome outcome =
            runCtl(u"calibrate --screen 1280x800 --save"_s, frame, [&](ctl::Session &s) {
                new Finger(&s, frame, Targets.first(2));
                when(
                    s, [frame] { return stepOf(*frame) == 3; }, [frame] { frame->unplug(); });
            });
        QCOMPARE(outcome.code, 3);
        QCOMPARE(outcome.err, "quorvelctl: The touch frame was unplugged.\n");
    }

    // watch

    void watch_tells_reports_in_words_and_repeats_none()
    {
        const auto frame = quickFrame();
        const Outcome outcome = runCtl(u"watch --for 0.6 --json"_s, frame, [&](ctl::Session &s) {
            QTimer::singleShot(200ms, &s, [frame] {
                frame->change([](sim::Firmware &model) {
                    model.say(deviceFrame("A7 82 02 00 01"));
                    model.say(deviceFrame("A5 80 05 00 60 00 36"));
                });
            });
        });
        QCOMPARE(outcome.code, 0);
        QStringList words;
        for (const QByteArray &line : outcome.lines())
            words += QJsonDocument::fromJson(line)[u"words"_s].toString();
        QCOMPARE(words.count(u"rotation: now 90 degrees"_s), 1);
        QCOMPARE(words.count(u"scan: 96 X lights, 54 Y lights"_s), 1);
    }

    void watch_goes_on_through_an_unplug()
    {
        const auto frame = quickFrame();
        const Outcome outcome = runCtl(u"watch --for 1.5"_s, frame, [&](ctl::Session &s) {
            QTimer::singleShot(200ms, &s, [&] { frame->unplug(); });
            QTimer::singleShot(700ms, &s, [&] { frame->plug(); });
        });
        QCOMPARE(outcome.code, 0);
        QCOMPARE(outcome.out.count("A touch frame is linked."), 2);
        QCOMPARE(outcome.out.count("The touch frame is gone."), 1);
    }

    void watch_ends_after_so_many_reports()
    {
        const Outcome outcome = runCtl(u"watch --count 1"_s, quickFrame());
        QCOMPARE(outcome.code, 0);
    }

    void a_signal_is_the_usual_end_of_watch()
    {
        const Outcome outcome = runCtl(u"watch"_s, quickFrame(), [](ctl::Session &s) {
            QTimer::singleShot(150ms, &s, [&s] { s.interrupt(SIGINT); });
        });
        QCOMPARE(outcome.code, 0);
        QCOMPARE(outcome.err, "");
    }

    void watch_ends_when_nobody_reads_it()
    {
        QFile full(u"/dev/full"_s);
        QVERIFY(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        ctl::Surroundings around;
        around.out = &full;
        QCOMPARE(runCtl(u"watch"_s, quickFrame(), {}, around).code, 7);
    }

private:
    // Does something as soon as a condition holds.
    static void when(QObject &context, const std::function<bool()> &holds,
                     const std::function<void()> &act)
    {
        auto *timer = new QTimer(&context);
        QObject::connect(timer, &QTimer::timeout, timer, [timer, holds, act] {
            if (!holds())
                return;
            timer->stop();
            act();
        });
        timer->start(2);
    }
    static void unplugWhen(QObject &context, const std::shared_ptr<sim::SimAdapter> &frame,
                           const std::function<bool()> &holds)
    {
        when(context, holds, [frame] { frame->unplug(); });
    }
    // The target that the frame waits at.
    static int stepOf(const sim::SimAdapter &frame)
    {
        int step = 0;
        frame.inspect([&step](const sim::Firmware &model) {
            if (model.calibration() == sim::Firmware::Calibration::Waiting)
                step = model.calibrationStep();
        });
        return step;
    }
    // The commands of a log, as their used bytes.
    static QStringList sentIn(const QStringList &log)
    {
        QStringList sent;
        for (const QString &line : log) {
            if (line.contains(u"host > frame"_s))
                sent += line.section(u'[', -1).chopped(1);
        }
        return sent;
    }

    std::optional<SettingsHome> home;
};

QTEST_GUILESS_MAIN(TestCommands)
#include "tst_commands.moc"
