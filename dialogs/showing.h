// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QWidget>

#include <utility>

// Tells a window when a showing begins and when it ends, once each.
//
// Minimised, or left with its workspace, a window is still being shown. That such a hiding is the
// window system's is not said by every version of the toolkit, and newer ones tell of one showing
// more than once.
class Showing
{
public:
    explicit Showing(const QWidget *window)
        : shown(window)
    {
    }

    // For each show event.
    bool begins() { return !std::exchange(isOn, true); }
    // For each hide event.
    bool ends() { return shown->isHidden() && std::exchange(isOn, false); }

private:
    const QWidget *shown; // its owner
    bool isOn = false;
};
