// The real program with a simulated frame on a serial line: whatever works over USB works here.

#include "tests/support/serialtool.h"

#include <QApplication>

using namespace Qt::StringLiterals;
using namespace outside;

class tst_serial_program : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SerialTool> serial;
    VirtualFrame *frame = nullptr; // of serial
    QPoint window;                 // the main one's corner

private slots:
    void init()
    {
        serial = std::make_unique<SerialTool>();
        QCOMPARE(serial->begin({u"serial"_s}), QString());
        frame = &serial->frame;
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
        QVERIFY(click(question()->geometry.topLeft() + YesButton));
        QVERIFY(inTime([this] { return frame->heard("host > frame  calibration: save") == 1; }));
        QVERIFY(inTime([this] { return frame->stateHas("kept=1"); }));
    }

    void the_frame_is_turned()
    {
        const auto opened = [] { return windowSized("Quorvel", RotationSize); };
        QVERIFY(click(window + RotationButton));
        QVERIFY(inTime([&] { return opened().has_value(); }));
        QVERIFY(inTime([this] { return frame->heard("host > frame  rotation: read") > 0; }));
        const auto shown = [&] {
            return seen(RotationShown.translated(opened()->geometry.topLeft()));
        };
        QVERIFY(inTime([&] { return !isBlank(shown()); }));
        const QImage before = shown();
        QVERIFY(click(opened()->geometry.topLeft() + Button270));
        QVERIFY(inTime([this] { return frame->stateHas("rotation=3"); }));
        QVERIFY(inTime([&] { return shown() != before; }));
        QVERIFY(click(opened()->geometry.topLeft() + RotationOk));
        QVERIFY(inTime([&] { return !opened(); }));
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
        const auto opened = [] { return windowSized("MalvoTools", SignalTestSize); };
        QCOMPARE(openDiagnostics(window), QString());
        QVERIFY(click(windowSized("MalvoTools", DiagnosticsSize)->geometry.topLeft() + TestButton));
        QVERIFY(inTime([&] { return opened().has_value(); }));
        QVERIFY(click(opened()->geometry.topLeft() + AllTestButton));
        QVERIFY(inTime([&] {
            return plotted(*opened(), Qt::darkGreen) > Many &&
                   plotted(*opened(), Qt::darkRed) > Many;
        }));
    }

    void a_light_is_adjusted()
    {
        QCOMPARE(openDiagnostics(window), QString());
        QVERIFY(
            click(windowSized("MalvoTools", DiagnosticsSize)->geometry.topLeft() + LightsButton));
        QVERIFY(inTime([] { return windowSized("Dialog", wholeScreen().size()).has_value(); }));
        QVERIFY(clickUntilHeard(*frame, XLight47, "host > frame  light X 47: read"));
        QVERIFY(clickUntilHeard(*frame, PlusButton, "host > frame  light X 47: set offset 1"));
        QVERIFY(
            inTime([this] { return frame->heard("frame > host  light X 47: on, offset 1") > 0; }));
        QVERIFY(click(LightsExit));
        QVERIFY(inTime([] { return !windowSized("Dialog", wholeScreen().size()); }));
    }
};

QTEST_MAIN(tst_serial_program)
#include "tst_serial_program.moc"
