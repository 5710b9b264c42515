// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "reportnews.h"

#include <QPoint>
#include <QRect>
#include <QSize>

#include <array>

// The screen that is calibrated, and where it lies, in native pixels.
struct CalibrationScreen
{
    QRect screen; // within the desktop
    QSize desktop;

    // Centres of the targets in pixels of the screen: top left, top right, bottom right, bottom
    // left.
    std::array<QPoint, command::calibration::Targets> targets() const;

    bool operator==(const CalibrationScreen &) const = default;
};

// The host's side of a calibration: which reply of the device counts next, and what is said to it.
//
// The device leads: it says which step it is ready for, and the host echoes that when its target
// can be touched. The link delivers a reply many times over: each counts once, and in order.
class CalibrationSteps
{
public:
    static constexpr int LargestGoodDeviation = 5; // per cent

    enum class Event {
        Nothing,
        Target,   // target() can be touched as soon as the device has the echo
        Checking, // all targets have been touched, and the device wants to know the screen
        Ended,    // deviation() is known, and the device waits to be told to save or to reset
    };

    CalibrationSteps() { begin(); }

    // The device is told to begin: its first step counts next.
    void begin();
    // Nothing counts any more.
    void forget();

    Event take(const Frame &report);
    int target() const { return shown; }       // 0 to 3
    int deviation() const { return deviates; } // per cent, as the device reported it

    // What the host says. Echoes: of the step that was taken last.
    static Frame beginFrame();
    static Frame saveFrame();
    static Frame resetFrame();
    static Frame echoFrame(int step, const CalibrationScreen &screen);
    Frame echo(const CalibrationScreen &screen) const { return echoFrame(taken, screen); }

private:
    void await(UCHAR step);

    ReportNews news; // awaits the one reply that counts next
    UCHAR taken = command::calibration::Begin;
    int shown = 0;
    int deviates = 0;
};
