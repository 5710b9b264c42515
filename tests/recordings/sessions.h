// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// What a person does with the real program in the recordings of this folder: once to make them, and
// again whenever they are replayed.

#include "tests/support/serialtool.h"

namespace sessions {

using namespace outside;

// A touch where the frame is no recording, in which touches happen by themselves.
using Touch = std::function<bool(QPoint place)>;

inline QString calibrate(SerialTool &serial, const Touch &touch)
{
    if (!clickUntil(serial.window + CalibrationButton, showsCalibration))
        return u"the calibration screen did not open"_s;
    for (int target = 0; target < Targets; ++target) {
        const QPoint place = targetAt(target);
        if (!inTime([place] { return showsTarget(place); }))
            return u"target %1 is not shown"_s.arg(target);
        if (!touch(place))
            return u"target %1 was not touched"_s.arg(target);
    }
    if (!inTime([] { return question().has_value(); }))
        return u"nobody asks whether to keep the calibration"_s;
    if (!inTime([] { return !isBlank(seen(question().value_or(Window()).geometry)); }))
        return u"the question stays empty"_s;
    const auto saved = [&serial] { return serial.frame.heard("host > frame  calibration: save"); };
    if (!clickUntil(
            question()->geometry.topLeft() + YesButton, [&saved] { return saved() > 0; },
            SilenceMs) ||
        saved() != 1)
        return u"the calibration was not saved"_s;
    return {};
}

inline QString adjustLight(SerialTool &serial)
{
    if (QString problem = openDiagnostics(serial.window); !problem.isEmpty())
        return problem;
    const auto screen = [] { return windowSized("Dialog", wholeScreen().size()).has_value(); };
    if (!clickUntil(windowSized("MalvoTools", DiagnosticsSize)->geometry.topLeft() + LightsButton,
                    screen))
        return u"the light screen did not open"_s;
    if (!clickUntilHeard(serial.frame, drawnLightX(47), "host > frame  light X 47: read"))
        return u"the light was not read"_s;
    if (!clickUntilHeard(serial.frame, PlusButton, "host > frame  light X 47: set offset 1"))
        return u"the light was not set"_s;
    if (!inTime(
            [&serial] { return serial.frame.heard("frame > host  light X 47: on, offset 1") > 0; }))
        return u"the light did not answer"_s;
    if (!clickUntil(LightsExit, [&screen] { return !screen(); }))
        return u"the light screen did not close"_s;
    return {};
}

// Presses until the frame says so: on a bad cable the first press may be lost. One that is only
// late on a busy machine is not pressed again, since a recording has no answer to that.
inline QString turn(SerialTool &serial)
{
    const QByteArray heard = "frame > host  rotation: now 270 degrees";
    const auto opened = [] { return windowSized("Quorvel", RotationSize); };
    if (!clickUntil(serial.window + RotationButton, [&] { return opened().has_value(); }))
        return u"the rotation dialog did not open"_s;
    const auto shown = [&] { return seen(RotationShown.translated(opened()->geometry.topLeft())); };
    const qsizetype before = serial.frame.heard(heard);
    const auto turned = [&] { return serial.frame.heard(heard) > before; };
    const QPoint button = opened()->geometry.topLeft() + Button270;
    if (!clickUntil(button, turned, 3 * SilenceMs))
        return u"the frame does not turn"_s;
    if (!inTime([&] { return !isBlank(shown()); }))
        return u"no rotation is shown"_s;
    if (!clickUntil(opened()->geometry.topLeft() + RotationOk, [&] { return !opened(); }))
        return u"the rotation dialog did not close"_s;
    return {};
}

// The plug falls out between two turns of the frame, and the port has to be opened again.
inline QString turnOnBadCable(SerialTool &serial, const std::function<bool()> &fallOut)
{
    if (QString problem = turn(serial); !problem.isEmpty())
        return problem;
    if (!fallOut())
        return u"the plug did not fall out"_s;
    if (!inTime([&serial] { return serial.tool.errors.contains("is gone. Plug it in"); }))
        return u"the tool does not say that its port is gone"_s;
    if (!inTime([&serial] { return serial.frame.heard("plugged into /dev/pts/") == 2; }))
        return u"the plug is not in again"_s;
    if (QString problem = serial.openPort(); !problem.isEmpty())
        return problem;
    return turn(serial);
}

} // namespace sessions
