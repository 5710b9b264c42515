// SPDX-License-Identifier: GPL-3.0-or-later

#include "windowwatch.h"

#include "program.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <string_view>

namespace {

struct Free
{
    void operator()(void *p) const { std::free(p); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

constexpr std::string_view ProcessIdProperty = "_NET_WM_PID";

} // namespace

WindowWatch::WindowWatch()
    : connection(xcb_connect(nullptr, nullptr))
{
    xcb_connection_t *c = connection.get();
    if (xcb_connection_has_error(c))
        giveUp("no X server; set DISPLAY, or use bench/run, which starts one");
    root = xcb_setup_roots_iterator(xcb_get_setup(c)).data->root;
    const Reply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        c, xcb_intern_atom(c, 0, ProcessIdProperty.size(), ProcessIdProperty.data()), nullptr));
    processId = atom->atom;
    const uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(c, root, XCB_CW_EVENT_MASK, &events);
    xcb_flush(c);
}

void WindowWatch::forgetPast()
{
    xcb_connection_t *c = connection.get();
    // Whatever was under way to here is here after a round trip.
    const Reply<xcb_get_input_focus_reply_t> roundTrip(
        xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr));
    while (Reply<xcb_generic_event_t>(xcb_poll_for_event(c))) {
    }
    created.clear();
}

std::optional<WindowWatch::Clock::time_point>
WindowWatch::firstWindowOf(pid_t pid, std::chrono::milliseconds limit)
{
    xcb_connection_t *c = connection.get();
    const auto deadline = Clock::now() + limit;
    while (xcb_connection_has_error(c) == 0) {
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(c)}) {
            noteCreated(*event);
            if (std::any_of(created.begin(), created.end(),
                            [this, pid](xcb_window_t window) { return isOnScreen(window, pid); }))
                return Clock::now();
        }
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0)
            break;
        pollfd waited{xcb_get_file_descriptor(c), POLLIN, 0};
        ::poll(&waited, 1, int(left.count()));
    }
    return std::nullopt;
}

void WindowWatch::noteCreated(const xcb_generic_event_t &event)
{
    if ((event.response_type & 0x7F) != XCB_CREATE_NOTIFY)
        return;
    xcb_create_notify_event_t creation{};
    std::memcpy(&creation, &event, sizeof creation);
    if (creation.override_redirect != 0)
        return;
    created.push_back(creation.window);
    // Its own map event: its parent will be a frame of the window manager by then.
    const uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection.get(), creation.window, XCB_CW_EVENT_MASK, &events);
    xcb_flush(connection.get());
}

bool WindowWatch::isOnScreen(xcb_window_t window, pid_t pid) const
{
    xcb_connection_t *c = connection.get();
    const auto attributesAsked = xcb_get_window_attributes(c, window);
    const auto ownerAsked = xcb_get_property(c, 0, window, processId, XCB_ATOM_CARDINAL, 0, 1);
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(c, attributesAsked, nullptr));
    const Reply<xcb_get_property_reply_t> owner(xcb_get_property_reply(c, ownerAsked, nullptr));
    // Neither comes for a window that is gone by now.
    if (!attributes || !owner || attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
        attributes->override_redirect != 0 ||
        xcb_get_property_value_length(owner.get()) != int(sizeof(uint32_t)))
        return false;
    uint32_t ownerPid = 0;
    std::memcpy(&ownerPid, xcb_get_property_value(owner.get()), sizeof ownerPid);
    return ownerPid == uint32_t(pid);
}
