// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// The real program and the simulated frame, seen and handled from outside: windows by title and
// size, the mouse and the keyboard by the X server, the frame by lines. Needs QUORVEL_SIM_PROGRAM.

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QTest>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <xcb/xcb.h>

namespace outside {

using namespace Qt::StringLiterals;

// Emulated, and on a machine that may be busy.
inline constexpr int PatienceMs = 30'000;
// How long something that must not come is waited for.
inline constexpr int SilenceMs = 1500;
// Where things are in the tool's windows.
inline constexpr QSize MainWindowSize(350, 272);
inline constexpr QSize QuestionSize(421, 106);
inline constexpr QPoint CalibrationButton(283, 77);
inline constexpr QPoint RotationButton(296, 170);
inline constexpr QPoint VersionButton(255, 234);
inline constexpr QPoint ResetButton(85, 234);
inline constexpr QPoint YesButton(130, 75);
inline constexpr QRect StatusLine(12, 250, 326, 20);
inline constexpr QSize UsageSize(332, 307);
inline constexpr QPoint AdvanceButton(49, 283);
inline constexpr QSize GesturesSize(332, 447);
inline constexpr QPoint LongerButton(292, 100);
inline constexpr QPoint ApplyButton(287, 420);
inline constexpr QSize RotationSize(332, 166);
inline constexpr QPoint Button270(270, 85);
inline constexpr QRect RotationShown(170, 30, 71, 20);
inline constexpr QPoint RotationOk(252, 143);
inline constexpr QSize VersionSize(190, 180);
inline constexpr QPoint DoubleClickRange(214, 268);
inline constexpr QSize DiagnosticsSize(131, 148);
inline constexpr QPoint TestButton(65, 32);
inline constexpr QPoint LightsButton(65, 72);
inline constexpr QSize SignalTestSize(1000, 650);
inline constexpr QPoint AllTestButton(175, 605);
inline constexpr QRect SignalPlot(70, 50, 880, 490);
// On the light screen, which is the whole screen.
inline constexpr QPoint XLight47(640, 760);
inline constexpr QPoint MinAdcField(450, 110);
inline constexpr QPoint SetButton(475, 261);
inline constexpr QPoint SwitchButton(490, 340);
inline constexpr QPoint PlusButton(435, 469);
inline constexpr QPoint LightsExit(597, 480);
inline constexpr int Targets = 4;

inline bool within(int ms, const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, ms);
}

inline bool inTime(const std::function<bool()> &condition)
{
    return within(PatienceMs, condition);
}

// Windows as the window manager lists them.

struct Window
{
    xcb_window_t id = XCB_WINDOW_NONE;
    QRect geometry; // on the screen, without the frame
};

template <typename Reply>
using Answer = std::unique_ptr<Reply, decltype(&std::free)>;

inline xcb_connection_t *display()
{
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

inline QByteArray property(xcb_window_t window, const char *name)
{
    xcb_connection_t *x = display();
    const Answer<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(x, xcb_intern_atom(x, 0, uint16_t(qstrlen(name)), name), nullptr),
        &std::free);
    if (!atom)
        return {};
    constexpr uint32_t MaxWords = 1024;
    const Answer<xcb_get_property_reply_t> value(
        xcb_get_property_reply(
            x, xcb_get_property(x, 0, window, atom->atom, XCB_ATOM_ANY, 0, MaxWords), nullptr),
        &std::free);
    if (!value)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(value.get())),
            xcb_get_property_value_length(value.get())};
}

// Of any size without one.
inline std::optional<Window> windowSized(QByteArrayView title, std::optional<QSize> size)
{
    xcb_connection_t *x = display();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    const QByteArray list = property(root, "_NET_CLIENT_LIST");
    for (qsizetype i = 0; i + qsizetype(sizeof(xcb_window_t)) <= list.size();
         i += qsizetype(sizeof(xcb_window_t))) {
        xcb_window_t id = XCB_WINDOW_NONE;
        std::copy_n(list.constData() + i, sizeof id, reinterpret_cast<char *>(&id));
        if (property(id, "_NET_WM_NAME") != title)
            continue;
        const Answer<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(x, xcb_get_geometry(x, id), nullptr), &std::free);
        const Answer<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(x, xcb_get_window_attributes(x, id), nullptr),
            &std::free);
        const Answer<xcb_translate_coordinates_reply_t> place(
            xcb_translate_coordinates_reply(x, xcb_translate_coordinates(x, id, root, 0, 0),
                                            nullptr),
            &std::free);
        if (!geometry || !attributes || !place || attributes->map_state != XCB_MAP_STATE_VIEWABLE)
            continue;
        const QSize found(geometry->width, geometry->height);
        if (!size || found == *size)
            return Window{id, QRect(QPoint(place->dst_x, place->dst_y), found)};
    }
    return {};
}

inline std::optional<Window> windowTitled(QByteArrayView title)
{
    return windowSized(title, std::nullopt);
}

inline bool bringToFront(const Window &window)
{
    return QProcess::execute(u"xdotool"_s,
                             {u"windowactivate"_s, u"--sync"_s, QString::number(window.id)}) == 0;
}

inline QImage seen(const QRect &part)
{
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, part.x(), part.y(), part.width(), part.height())
        .toImage()
        .convertToFormat(QImage::Format_RGB32);
}

inline bool isBlank(const QImage &image)
{
    QImage ground(image.size(), image.format());
    ground.fill(image.pixel(0, 0));
    return image == ground;
}

inline QRect wholeScreen()
{
    return QGuiApplication::primaryScreen()->geometry();
}

inline bool showsCalibration()
{
    return windowSized("MalvoTools", wholeScreen().size()).has_value();
}

inline std::optional<Window> question()
{
    return windowSized("MalvoTools", QuestionSize);
}

inline QPoint targetAt(int number)
{
    const int right = wholeScreen().width() / 8 * 7;
    const int bottom = wholeScreen().height() / 8 * 7;
    const int left = wholeScreen().width() / 8;
    const int top = wholeScreen().height() / 8;
    const std::array<QPoint, Targets> places{QPoint(left, top), QPoint(right, top),
                                             QPoint(right, bottom), QPoint(left, bottom)};
    return places.at(size_t(number));
}

// All four arms of a white cross on blue, between rings of 16 to 24 pixels and of 24 to 32.
inline bool showsTarget(QPoint place)
{
    constexpr int Arm = 20;
    constexpr int Beside = 46;
    const QImage image = seen(QRect(place - QPoint(Beside, Beside), QSize(2 * Beside, 2 * Beside)));
    const QPoint centre(Beside, Beside);
    const auto isWhite = [&image](QPoint at) {
        for (int dx = -2; dx <= 2; ++dx) {
            if (qRed(image.pixel(at + QPoint(dx, 0))) > 200)
                return true;
        }
        return false;
    };
    return isWhite(centre + QPoint(Arm, Arm)) && isWhite(centre + QPoint(-Arm, Arm)) &&
           isWhite(centre + QPoint(Arm, -Arm)) && isWhite(centre + QPoint(-Arm, -Arm)) &&
           image.pixelColor(0, Beside) == QColor(Qt::blue);
}

inline bool click(QPoint place, int button = 1)
{
    return QProcess::execute(u"xdotool"_s, {u"mousemove"_s, QString::number(place.x()),
                                            QString::number(place.y()), u"click"_s,
                                            QString::number(button)}) == 0;
}

inline bool press(const QString &key)
{
    return QProcess::execute(u"xdotool"_s, {u"key"_s, key}) == 0;
}

// A program whose words are kept.
class Program
{
public:
    ~Program()
    {
        if (process.state() != QProcess::NotRunning) {
            process.kill();
            process.waitForFinished();
        }
    }

    bool start(const QString &path, const QStringList &arguments = {})
    {
        QObject::connect(&process, &QProcess::readyReadStandardOutput, &process,
                         [this] { output += process.readAllStandardOutput(); });
        QObject::connect(&process, &QProcess::readyReadStandardError, &process,
                         [this] { errors += process.readAllStandardError(); });
        process.start(path, arguments);
        return process.waitForStarted();
    }
    void write(const QByteArray &line) { process.write(line + '\n'); }
    // Ended with exit code 0, by now or in a while.
    bool endsWell()
    {
        return inTime([this] { return process.state() == QProcess::NotRunning; }) &&
               process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }
    QString folder() const { return u"/proc/%1/"_s.arg(process.processId()); }

    QProcess process;
    QByteArray output;
    QByteArray errors;
};

// The virtual frame, steered by lines.
class VirtualFrame : public Program
{
public:
    bool begin(const QStringList &arguments)
    {
        return start(QStringLiteral(QUORVEL_SIM_PROGRAM), arguments) && waitAnswers(1);
    }
    // The answer to a command; empty when none came.
    QByteArray tell(const QByteArray &command)
    {
        const qsizetype before = answers().size();
        write(command);
        return waitAnswers(before + 1) ? answers().last() : QByteArray();
    }
    bool does(const QByteArray &command)
    {
        return tell(command).startsWith("ok " + command.split(' ').first());
    }
    bool stateHas(const QByteArray &word) { return tell("state").split(' ').contains(word); }
    qsizetype heard(const QByteArray &words) const { return output.count(words); }

private:
    QList<QByteArray> answers() const
    {
        QList<QByteArray> found;
        for (const QByteArray *text : {&output, &errors}) {
            for (const QByteArray &line : text->left(text->lastIndexOf('\n') + 1).split('\n')) {
                if (line.startsWith("ok ") || line.startsWith("error:"))
                    found += line;
            }
        }
        return found;
    }
    bool waitAnswers(qsizetype count)
    {
        return inTime([this, count] { return answers().size() >= count; });
    }
};

// Opens the calibration screen and touches the first targets, each when it is shown and the frame
// waits for it. Touches come to the frame, as a finger's do, not to the mouse.
inline QString touchTargets(
    VirtualFrame &frame, QPoint mainWindow, int count,
    const std::function<void(const QString &picture)> &seenTarget = [](const QString &) {})
{
    const auto asked = [&frame](int step) {
        return frame.heard("host > frame  calibration: step " + QByteArray::number(step));
    };
    std::array<qsizetype, Targets> before{};
    for (int target = 0; target < count; ++target)
        before.at(size_t(target)) = asked(target + 1);
    if (!click(mainWindow + CalibrationButton))
        return u"the mouse could not be clicked"_s;
    if (!inTime(showsCalibration))
        return u"the calibration screen did not open"_s;
    for (int target = 0; target < count; ++target) {
        const QPoint place = targetAt(target);
        if (!inTime([place] { return showsTarget(place); }))
            return u"target %1 is not shown"_s.arg(target);
        if (!inTime([&, target] { return asked(target + 1) > before.at(size_t(target)); }))
            return u"the tool did not answer step %1"_s.arg(target + 1);
        seenTarget(u"target-%1"_s.arg(target));
        if (!frame.does("touch " + QByteArray::number(place.x()) + ' ' +
                        QByteArray::number(place.y())))
            return u"target %1 was not touched"_s.arg(target);
    }
    return {};
}

// Through the context menu of the main window and the usage dialog.
inline QString openGestures(QPoint mainWindow)
{
    if (!click(mainWindow + StatusLine.center(), 3))
        return u"the mouse could not be clicked"_s;
    std::optional<Window> usage;
    // The menu takes the key once it is there; the dialog does nothing with it.
    if (!inTime([&usage] {
            return (usage = windowSized("MalvoTools", UsageSize)) || !press(u"s"_s);
        }) ||
        !usage)
        return u"the usage dialog did not open"_s;
    if (!click(usage->geometry.topLeft() + AdvanceButton))
        return u"the mouse could not be clicked"_s;
    if (!inTime([] { return windowSized("Advanced Setting", GesturesSize).has_value(); }))
        return u"the gesture dialog did not open"_s;
    return {};
}

// From the gestures, by the key that opens the menu of the diagnostics.
inline QString openDiagnostics(QPoint mainWindow)
{
    if (QString problem = openGestures(mainWindow); !problem.isEmpty())
        return problem;
    if (!click(windowSized("Advanced Setting", GesturesSize)->geometry.topLeft() +
               DoubleClickRange))
        return u"the mouse could not be clicked"_s;
    if (!press(u"c"_s))
        return u"the key could not be pressed"_s;
    if (!inTime([] { return windowSized("MalvoTools", DiagnosticsSize).has_value(); }))
        return u"the menu of the diagnostics did not open"_s;
    return {};
}

// On the light screen a click does nothing until counts and light have been read.
inline bool clickUntilHeard(const VirtualFrame &frame, QPoint place, const QByteArray &words)
{
    const auto heard = [&] { return frame.heard(words) > 0; };
    return inTime([&] { return !click(place) || within(SilenceMs, heard); }) && heard();
}

// How many pixels of the signal test's plot have a colour.
inline int plotted(const Window &test, QColor colour)
{
    const QImage plot = seen(SignalPlot.translated(test.geometry.topLeft()));
    int count = 0;
    for (int y = 0; y < plot.height(); ++y) {
        for (int x = 0; x < plot.width(); ++x)
            count += plot.pixelColor(x, y) == colour ? 1 : 0;
    }
    return count;
}

} // namespace outside
