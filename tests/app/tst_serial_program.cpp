// The real program with a simulated frame on a serial line: whatever works over USB works here.

#include "tests/support/outside.h"

#include <QApplication>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace outside;

namespace {

constexpr QSize ConnectSize(400, 378);
constexpr QPoint UartChoice(64, 73);
constexpr QPoint PortField(174, 105);
constexpr QPoint OpenButton(160, 203);

} // namespace

class tst_serial_program : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> place;
    std::unique_ptr<VirtualFrame> frame;
    std::unique_ptr<Program> tool;
    QPoint window; // the main one's corner

    // What went wrong, or nothing.
    QString openPort()
    {
        if (!click(window + StatusLine.center(), 3))
            return u"the mouse could not be clicked"_s;
        std::optional<Window> dialog;
        const auto opened = [&dialog] {
            return (dialog = windowSized("Connect", ConnectSize)).has_value();
        };
        if (!inTime([&] { return opened() || !press(u"c"_s); }) || !dialog)
            return u"the connection dialog did not open"_s;
        const QPoint corner = dialog->geometry.topLeft();
        if (!click(corner + UartChoice) || !click(corner + PortField) || !press(u"ctrl+a"_s) ||
            QProcess::execute(u"xdotool"_s, {u"type"_s, place->filePath(u"port"_s)}) != 0)
            return u"the port could not be chosen"_s;
        // On a busy machine the frame may look at the line too late, and take noise for a rate.
        bool told = false;
        for (int tries = 0; tries < 3 && !told; ++tries)
            told = click(corner + OpenButton) && within(10000, [this] {
                       return frame->heard("host > frame  serial rate: set code 12") > 0;
                   });
        if (!told)
            return u"the frame was not told its rate"_s;
        if (!press(u"Escape"_s) || !inTime([&] { return !opened(); }))
            return u"the connection dialog did not close"_s;
        return {};
    }

private slots:
    void init()
    {
        QVERIFY(QDir::home().mkpath(u".config"_s));
        place = std::make_unique<QTemporaryDir>();
        frame = std::make_unique<VirtualFrame>();
        QVERIFY(frame->begin({u"serial"_s, u"--link"_s, place->filePath(u"port"_s)}));
        tool = std::make_unique<Program>();
        QVERIFY(tool->start(QStringLiteral(QUORVEL_PROGRAM)));
        std::optional<Window> shown;
        QVERIFY(inTime(
            [&shown] { return (shown = windowSized("Quorvel", MainWindowSize)).has_value(); }));
        window = shown->geometry.topLeft();
        QCOMPARE(openPort(), QString());
    }
    void cleanup()
    {
        Program second;
        QVERIFY(second.start(QStringLiteral(QUORVEL_PROGRAM), {u"-close"_s}));
        QVERIFY(second.endsWell());
        QVERIFY(tool->endsWell());
        tool.reset();
        frame->write("quit");
        QVERIFY(frame->endsWell());
        frame.reset();
        place.reset();
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
