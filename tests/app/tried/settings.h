// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "dialogs/rotation_dlg.h"
#include "dialogs/useradv_dlg.h"
#include "window.h"

#include <QLabel>
#include <QSlider>

#include <array>

// Applies one duration after the other.
class GesturesTried final : public TriedWindow
{
public:
    using TriedWindow::TriedWindow;

    QWidget *widget() const override { return the<useradv_dlg>(); }
    void goOn() override
    {
        if (over || !isTimeFor(400))
            return;
        turn = (turn + 1) % 5;
        duration()->setValue(500 * (turn + 1));
        press(widget(), "applybtn");
    }
    void again() override { press(widget(), "applybtn"); }
    void beginAnew() override { over = true; }
    bool isRight() override { return frame.held().holdMs == duration()->value(); }

private:
    QSlider *duration() const { return in<QSlider>(widget(), "rbspeed"); }

    int turn = 0;
    bool over = false;
};

// Turns the frame by a quarter, and by another.
class RotationTried final : public TriedWindow
{
public:
    using TriedWindow::TriedWindow;

    QWidget *widget() const override { return the<Rotation_dlg>(); }
    void goOn() override
    {
        if (!over && !isUnknown() && isTimeFor(300))
            turnBy((turn + 1) % 4);
    }
    void again() override { turnBy((turn + 1) % 4); }
    QString untrue() override
    {
        return isUnknown() || reported.rotations.contains(shown().toInt() / 90) ? QString()
                                                                                : shown();
    }
    bool isUnknown() override { return shown() == QStringLiteral("-1"); }
    void beginAnew() override { over = true; }
    bool isRight() override
    {
        return shown() == QString::number(frame.held().rotation * 90) &&
               label()->toolTip().isEmpty();
    }

private:
    QLabel *label() const { return in<QLabel>(widget(), "Rotationlab"); }
    QString shown() const { return label()->text(); }
    void turnBy(int quarters)
    {
        turn = quarters;
        constexpr std::array Buttons{"rotation0btn", "rotation90btn", "rotation180btn",
                                     "rotation270btn"};
        press(widget(), Buttons[size_t(quarters)]);
        sinceDeed.start();
    }

    int turn = 1;
    bool over = false;
};
