// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tests/support/drawntool.h"
#include "tests/support/outside.h"
#include "tests/support/signalcurves.h"

#include <array>

// The real program, as a person finds and uses what is in its windows. Needs the library drawntool.
namespace outside {

// A window of the tool or a part of it, up to another one beside it.
class Place
{
public:
    explicit constexpr Place(const char *name, const char *lastName = nullptr)
        : first(name)
        , last(lastName ? lastName : name)
    {
    }

    QRect rect() const { return drawnAt(first) | drawnAt(last); }
    QSize size() const { return rect().size(); }
    QPoint center() const { return rect().center(); }
    QRect translated(QPoint by) const { return rect().translated(by); }
    operator QPoint() const { return center(); }
    operator QRect() const { return rect(); }

private:
    const char *first;
    const char *last;
};

inline constexpr Place MainWindowSize("MainWindow");
inline constexpr Place CalibrationButton("MainWindow/calbtn");
inline constexpr Place RotationButton("MainWindow/rotationButton");
inline constexpr Place VersionButton("MainWindow/pushButton");
inline constexpr Place ResetButton("MainWindow/pushButton_2");
inline constexpr Place StatusLine("MainWindow/stalab", "MainWindow/nextbtn");
inline constexpr Place QuestionSize("CalEnd_dlg");
inline constexpr Place YesButton("CalEnd_dlg/pushButton");
inline constexpr Place UsageSize("Setting_dlg");
inline constexpr Place AdvanceButton("Setting_dlg/AdvBtn");
inline constexpr Place GesturesSize("useradv_dlg");
inline constexpr Place LongerButton("useradv_dlg/pushButton_8");
inline constexpr Place ApplyButton("useradv_dlg/applybtn");
inline constexpr Place DoubleClickRange("useradv_dlg/dbran");
inline constexpr Place RotationSize("Rotation_dlg");
inline constexpr Place Button270("Rotation_dlg/rotation270btn");
inline constexpr Place RotationShown("Rotation_dlg/Rotationlab");
inline constexpr Place RotationOk("Rotation_dlg/okbtn");
inline constexpr Place VersionSize("Version_Dlg");
inline constexpr Place DiagnosticsSize("advset_dlg");
inline constexpr Place TestButton("advset_dlg/testbtn");
inline constexpr Place LightsButton("advset_dlg/testbtn_2");
inline constexpr Place SignalTestSize("test_win");
inline constexpr Place AllTestButton("test_win/ALL_btn");
inline constexpr Place ConnectSize("connect_dlg");
inline constexpr Place UartChoice("connect_dlg/uartRadio");
inline constexpr Place PortField("connect_dlg/portBox");
inline constexpr Place OpenButton("connect_dlg/openButton");
// On the light screen, which is the whole screen.
inline constexpr Place MinAdcField("LightSet_dlg/MinADC");
inline constexpr Place SetButton("LightSet_dlg/ADCSetBtn");
inline constexpr Place SwitchButton("LightSet_dlg/LightChooseBtn_2");
inline constexpr Place PlusButton("LightSet_dlg/LightAddBtn");
inline constexpr Place MinusButton("LightSet_dlg/LightDecBtn");
inline constexpr Place LightsExit("LightSet_dlg/ExitBtn");

inline constexpr int Targets = 4;

inline std::optional<Window> windowSized(QByteArrayView title, const Place &window)
{
    return windowSized(title, window.size());
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
    if (!clickUntil(mainWindow + CalibrationButton, showsCalibration))
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

// Through the context menu of the main window, which takes the key once it is there; the window
// does nothing with it. A busy machine may lose the menu.
inline std::optional<Window> openFromMenu(QPoint mainWindow, const QString &key,
                                          QByteArrayView title, const Place &size)
{
    std::optional<Window> window;
    const auto isOpen = [&] { return (window = windowSized(title, size)).has_value(); };
    inTime([&] {
        return !click(mainWindow + StatusLine.center(), 3) ||
               within(PatienceMs / 3, [&] { return isOpen() || !press(key); });
    });
    return window;
}

inline QString openGestures(QPoint mainWindow)
{
    const auto usage = openFromMenu(mainWindow, u"s"_s, "MalvoTools", UsageSize);
    if (!usage)
        return u"the usage dialog did not open"_s;
    if (!clickUntil(usage->geometry.topLeft() + AdvanceButton,
                    [] { return windowSized("Advanced Setting", GesturesSize).has_value(); }))
        return u"the gesture dialog did not open"_s;
    return {};
}

// From the gestures, by the key that opens the menu of the diagnostics.
inline QString openDiagnostics(QPoint mainWindow)
{
    if (QString problem = openGestures(mainWindow); !problem.isEmpty())
        return problem;
    const QPoint gestures = windowSized("Advanced Setting", GesturesSize)->geometry.topLeft();
    const auto isOpen = [] { return windowSized("MalvoTools", DiagnosticsSize).has_value(); };
    const bool opened = clickUntil(gestures + DoubleClickRange, [&isOpen] {
        return isOpen() || (press(u"c"_s) && within(SilenceMs, isOpen));
    });
    return opened ? QString() : u"the menu of the diagnostics did not open"_s;
}

// On the light screen a click does nothing until counts and light have been read.
inline bool clickUntilHeard(const VirtualFrame &frame, QPoint place, const QByteArray &words)
{
    return clickUntil(
        place, [&] { return frame.heard(words) > 0; }, SilenceMs);
}

// How many pixels of the signal test's curves have a colour.
inline int plotted(const Window &test, QColor colour)
{
    return pixelsOf(seen(SignalCurves.translated(test.geometry.topLeft())), colour);
}

} // namespace outside
