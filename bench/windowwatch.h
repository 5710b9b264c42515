// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

#include <sys/types.h>

// Sees windows come up on the X server that DISPLAY names, as its window manager sees them.
class WindowWatch
{
public:
    using Clock = std::chrono::steady_clock;

    WindowWatch();

    // When the first ordinary window of a process was on the screen: mapped, and so is the frame
    // that the window manager put it into. Windows that manage themselves (menus, tray icons) do
    // not count. Nothing after limit. Windows that came up before the last call are not looked at,
    // so a call comes right after the start of the process, and one reads forgetPast() before it.
    std::optional<Clock::time_point> firstWindowOf(pid_t pid, std::chrono::milliseconds limit);
    // Drops what happened so far.
    void forgetPast();

private:
    bool isOnScreen(xcb_window_t window, pid_t pid) const;
    void noteCreated(const xcb_generic_event_t &event);

    struct Disconnect
    {
        void operator()(xcb_connection_t *c) const { xcb_disconnect(c); }
    };
    std::unique_ptr<xcb_connection_t, Disconnect> connection;
    xcb_window_t root = XCB_NONE;
    xcb_atom_t processId = XCB_NONE;
    std::vector<xcb_window_t> created; // below the root, since forgetPast()
};
