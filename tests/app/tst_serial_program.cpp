// SPDX-License-Identifier: GPL-3.0-or-later

// The real program with a simulated frame on a serial line: whatever works over USB works here.

#include "config/lastcalibration.h"
#include "tests/support/deadpipe.h"
#include "tests/support/serialtool.h"

#include <QApplication>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace outside;

namespace {

bool showsLights()
{
    return windowSized("Dialog", wholeScreen().size()).has_value();
}

// From the menu of the diagnostics.
bool openLights()
{
    return clickUntil(windowSized("MalvoTools", DiagnosticsSize)->geometry.topLeft() + LightsButton,
                      showsLights);
}

bool openSignalTest()
{
    return clickUntil(windowSized("MalvoTools", DiagnosticsSize)->geometry.topLeft() + TestButton,
                      [] { return windowSized("MalvoTools", SignalTestSize).has_value(); });
}

} // namespace

class TestSerialProgram : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SerialTool> serial;
    VirtualFrame *frame = nullptr; // of serial
    Program *tool = nullptr;       // of serial
    QPoint window;                 // the main one's corner

    bool startTest(const Window &test) const
    {
        return clickUntil(test.geometry.topLeft() + AllTestButton,
                          [this] { return frame->heard("host > frame  scan: read X") > 0; });
    }

private slots:
    void init()
    {
        QStringList arguments(u"serial"_s);
        if (qstrcmp(QTest::currentTestFunction(), "the_largest_frame_is_drawn_to_its_ends") == 0)
            arguments += {u"--profile"_s, QStringLiteral(QUORVEL_PROFILES "/largest.profile")};
        serial = std::make_unique<SerialTool>();
        if (qstrcmp(QTest::currentTestFunction(),
                    "a_calibration_is_kept_when_nobody_reads_the_output") == 0)
            writeToNobody(serial->tool.process);
        QCOMPARE(serial->begin(arguments), QString());
        frame = &serial->frame;
        tool = &serial->tool;
        window = serial->window;
    }
    void cleanup()
    {
        QCOMPARE(serial->end(), QString());
        serial.reset();
    }

    void a_calibration_is_kept()
    {
        QCOMPARE(touchTargets(*frame, window, Targets), QString());
        QVERIFY(inTime([] { return question().has_value(); }));
        QVERIFY(inTime([] { return !isBlank(seen(question().value_or(Window()).geometry)); }));
        QVERIFY(clickUntil(
            question()->geometry.topLeft() + YesButton,
            [this] { return frame->stateHas("kept=1"); }, SilenceMs));
        QCOMPARE(frame->heard("host > frame  calibration: save"), 1);
        // Programs that watch over frames look it up.
        QVERIFY(inTime([] { return LastCalibration::load().has_value(); }));
        QCOMPARE(LastCalibration::load()->deviation, 0);
        QVERIFY(qAbs(LastCalibration::load()->date.secsTo(QDateTime::currentDateTimeUtc())) < 60);
    }

    void the_frame_is_turned()
    {
        const auto opened = [] { return windowSized("Quorvel", RotationSize); };
        QVERIFY(clickUntil(window + RotationButton, [&] { return opened().has_value(); }));
        QVERIFY(inTime([this] { return frame->heard("host > frame  rotation: read") > 0; }));
        const auto shown = [&] {
            return seen(RotationShown.translated(opened()->geometry.topLeft()));
        };
        QVERIFY(inTime([&] { return !isBlank(shown()); }));
        const QImage before = shown();
        // A press in the dialog's pause is none.
        const QPoint button = opened()->geometry.topLeft() + Button270;
        QVERIFY(clickUntil(
            button, [this] { return frame->stateHas("rotation=3"); }, SilenceMs));
        QVERIFY(inTime([&] { return shown() != before; }));
        QVERIFY(clickUntil(opened()->geometry.topLeft() + RotationOk, [&] { return !opened(); }));
    }

    void gestures_reach_the_frame()
    {
        QCOMPARE(openGestures(window), QString());
        const QPoint dialog = windowSized("Advanced Setting", GesturesSize)->geometry.topLeft();
        QVERIFY(click(dialog + LongerButton));
        QVERIFY(click(dialog + ApplyButton));
        QVERIFY(inTime([this] {
            return frame->heard("host > frame  gestures: all 1, right button 1 after 2000 ms "
                                "within 3, wheel 1") == 1;
        }));
    }

    void both_axes_of_a_signal_test_are_drawn()
    {
        constexpr int Many = 100;
        QCOMPARE(openDiagnostics(window), QString());
        QVERIFY(openSignalTest());
        const Window test = *windowSized("MalvoTools", SignalTestSize);
        QVERIFY(startTest(test));
        QVERIFY(inTime([&] {
            return plotted(test, Qt::darkGreen) > Many && plotted(test, Qt::darkRed) > Many;
        }));
    }

    void a_light_is_adjusted()
    {
        QCOMPARE(openDiagnostics(window), QString());
        QVERIFY(openLights());
        QVERIFY(clickUntilHeard(*frame, drawnLightX(47), "host > frame  light X 47: read"));
        QVERIFY(clickUntilHeard(*frame, PlusButton, "host > frame  light X 47: set offset 1"));
        QVERIFY(
            inTime([this] { return frame->heard("frame > host  light X 47: on, offset 1") > 0; }));
        QVERIFY(clickUntil(LightsExit, [] { return !showsLights(); }));
    }

    void thirty_presses_are_thirty_steps()
    {
        QCOMPARE(openDiagnostics(window), QString());
        QVERIFY(openLights());
        QVERIFY(clickUntilHeard(*frame, drawnLightX(47), "host > frame  light X 47: read"));
        // Before the light is known a press does nothing; one that came late adds to those below.
        const QByteArray set = "host > frame  light X 47: set offset ";
        QVERIFY(clickUntilHeard(*frame, PlusButton, set));
        const auto settled = [&] {
            QByteArray offset;
            const auto isQuiet = [&] {
                const qsizetype before = frame->heard(set);
                return !within(SilenceMs, [&] { return frame->heard(set) > before; });
            };
            if (inTime(isQuiet)) {
                offset = frame->output.mid(frame->output.lastIndexOf(set) + set.size());
                offset.truncate(offset.indexOf(' '));
            }
            return offset;
        };
        // On a busy machine one press in two thousand gets lost between the server and the window
        // manager; those that the window sees are counted by tst_lightset_dlg, too.
        int steps = 0;
        for (int tries = 0; tries < 3 && steps != 30; ++tries) {
            const int before = settled().toInt();
            QVERIFY(mouse(tries % 2 == 0 ? PlusButton : MinusButton,
                          u"click --repeat 30 --delay 30 1"_s));
            const QByteArray offset = settled();
            steps = qAbs(offset.toInt() - before);
            QVERIFY2(steps <= 30, offset.constData());
            QVERIFY(frame->heard("frame > host  light X 47: on, offset " + offset + ',') > 0);
        }
        QCOMPARE(steps, 30);
        QVERIFY(clickUntil(LightsExit, [] { return !showsLights(); }));
    }

    void the_light_screen_and_a_running_signal_test_keep_to_their_own_pages()
    {
        const auto asked = [this] { return frame->heard("host > frame  scan: read X"); };
        const auto counted = [this] {
            return frame->heard("host > frame  scan: read light counts");
        };
        QCOMPARE(openDiagnostics(window), QString());
        const Window menu = *windowSized("MalvoTools", DiagnosticsSize);
        QVERIFY(openSignalTest());
        const Window test = *windowSized("MalvoTools", SignalTestSize);
        QVERIFY(startTest(test));
        QVERIFY(inTime([&] { return plotted(test, Qt::darkGreen) > 0 && asked() > 2; }));

        QVERIFY(bringToFront(menu));
        QVERIFY(openLights());
        // These settings tell both windows how to read a page.
        QVERIFY(inTime([this] { return frame->heard("host > frame  adc: read settings") > 0; }));
        QVERIFY(clickUntilHeard(*frame, drawnLightX(47), "host > frame  light X 47: read"));
        const qsizetype countedBefore = counted();
        QVERIFY(clickUntil(LightsExit, [] { return !showsLights(); }));
        QVERIFY(inTime([&] { return counted() > countedBefore; }));
        const qsizetype askedAgain = frame->output.lastIndexOf("scan: read light counts");
        QVERIFY(inTime(
            [&] { return frame->output.indexOf("host > frame  scan: read X", askedAgain) > 0; }));
        QVERIFY(inTime([&] { return plotted(test, Qt::darkGreen) > 0; }));
    }

    void the_largest_frame_is_drawn_to_its_ends()
    {
        QCOMPARE(openDiagnostics(window), QString());
        QVERIFY(openSignalTest());
        const Window test = *windowSized("MalvoTools", SignalTestSize);
        QVERIFY(startTest(test));
        QVERIFY(inTime([this] {
            return frame->heard("frame > host  scan: X page from light 495") > 1 &&
                   frame->heard("frame > host  scan: Y page from light 330") > 1;
        }));
        QVERIFY(inTime(
            [&] { return plotted(test, Qt::darkGreen) > 0 && plotted(test, Qt::darkRed) > 0; }));
    }

    void a_frame_is_not_reset_by_an_end_of_the_program()
    {
        QVERIFY(clickUntil(window + ResetButton, [] { return windowTitled("Reset").has_value(); }));
        Program second;
        QVERIFY(second.start(QStringLiteral(QUORVEL_PROGRAM), {u"-close"_s}));
        QVERIFY(second.endsWell());
        QVERIFY(tool->endsWell());
        QVERIFY(!within(SilenceMs, [this] { return frame->heard("host > frame  reset") > 0; }));
    }

    void a_frame_is_reset_when_the_box_is_answered()
    {
        QVERIFY(clickUntil(window + ResetButton, [] { return windowTitled("Reset").has_value(); }));
        QVERIFY(press(u"Return"_s));
        QVERIFY(inTime([this] { return frame->heard("host > frame  reset") > 0; }));
    }

    void an_end_of_the_program_ends_the_calibration_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGHUP") << SIGHUP;
    }
    void an_end_of_the_program_ends_the_calibration()
    {
        QFETCH(const int, signal);
        QCOMPARE(touchTargets(*frame, window, 2), QString());
        QCOMPARE(frame->heard("host > frame  calibration: discard"), 0);
        QCOMPARE(::kill(pid_t(tool->process.processId()), signal), 0);
        QVERIFY(tool->endsWell());
        QVERIFY(inTime([this] { return frame->heard("host > frame  calibration: discard") == 1; }));
        QVERIFY(frame->stateHas("calibration=idle"));
        QVERIFY(frame->stateHas("kept=0"));
    }

    void a_calibration_is_kept_when_nobody_reads_the_output()
    {
        QCOMPARE(touchTargets(*frame, window, Targets), QString());
        QVERIFY(inTime([] { return question().has_value(); }));
        QVERIFY(inTime([] { return !isBlank(seen(question().value_or(Window()).geometry)); }));
        QVERIFY(clickUntil(
            question()->geometry.topLeft() + YesButton,
            [this] { return frame->stateHas("kept=1"); }, SilenceMs));
    }
};

QTEST_MAIN(TestSerialProgram)
#include "tst_serial_program.moc"
