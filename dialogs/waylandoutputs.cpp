// SPDX-License-Identifier: GPL-3.0-or-later

#include "waylandoutputs.h"

#include "modules/module.h"

#include <QDeadlineTimer>

#include <wayland-client.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <memory>
#include <poll.h>

namespace {

constexpr int PatienceMs = 1000;
constexpr quint32 NewestVersion = WL_OUTPUT_NAME_SINCE_VERSION;

struct Disconnect
{
    void operator()(wl_display *display) const { wl_display_disconnect(display); }
};

struct Destroy
{
    void operator()(wl_callback *callback) const { wl_callback_destroy(callback); }
    void operator()(wl_output *output) const { wl_output_destroy(output); }
    void operator()(wl_registry *registry) const { wl_registry_destroy(registry); }
};

struct Heard
{
    std::unique_ptr<wl_output, Destroy> source;
    WaylandOutput output;
    bool isTurned = false; // by a quarter
};
using AllHeard = std::deque<Heard>; // each stays at its address, by which its listener knows it

const wl_output_listener OutputListener{
    .geometry =
        [](void *heard, wl_output *, int32_t, int32_t, int32_t, int32_t, int32_t, const char *,
           const char *,
           int32_t transform) { static_cast<Heard *>(heard)->isTurned = transform % 2 != 0; },
    .mode =
        [](void *heard, wl_output *, uint32_t flags, int32_t width, int32_t height, int32_t) {
            if (flags & WL_OUTPUT_MODE_CURRENT)
                static_cast<Heard *>(heard)->output.size = QSize(width, height);
        },
    .done = [](void *, wl_output *) {},
    .scale = [](void *, wl_output *, int32_t) {},
    .name =
        [](void *heard, wl_output *, const char *name) {
            static_cast<Heard *>(heard)->output.name = QString::fromUtf8(name);
        },
    .description = [](void *, wl_output *, const char *) {},
};

const wl_registry_listener RegistryListener{
    .global =
        [](void *all, wl_registry *registry, uint32_t id, const char *interface, uint32_t version) {
            if (std::strcmp(interface, wl_output_interface.name) != 0)
                return;
            auto *output = static_cast<wl_output *>(wl_registry_bind(
                registry, id, &wl_output_interface, std::min(version, NewestVersion)));
            Heard &heard = static_cast<AllHeard *>(all)->emplace_back();
            heard.source.reset(output);
            wl_output_add_listener(output, &OutputListener, &heard);
        },
    .global_remove = [](void *, wl_registry *, uint32_t) {},
};

const wl_callback_listener DoneListener{
    .done = [](void *isDone, wl_callback *, uint32_t) { *static_cast<bool *>(isDone) = true; },
};

// Until the compositor has answered all that was asked before; false if it takes too long.
bool roundTrip(wl_display *display, const QDeadlineTimer &deadline)
{
    bool isDone = false;
    const std::unique_ptr<wl_callback, Destroy> callback(wl_display_sync(display));
    wl_callback_add_listener(callback.get(), &DoneListener, &isDone);
    while (!isDone) {
        while (wl_display_prepare_read(display) != 0)
            wl_display_dispatch_pending(display);
        wl_display_flush(display);
        pollfd readable{wl_display_get_fd(display), POLLIN, 0};
        const auto left = int(deadline.remainingTime());
        if (left == 0 || poll(&readable, 1, left) <= 0) {
            wl_display_cancel_read(display);
            return false;
        }
        if (wl_display_read_events(display) != 0 || wl_display_dispatch_pending(display) < 0)
            return false;
    }
    return true;
}

class AskedOutputs final : public WaylandOutputs
{
public:
    QList<WaylandOutput> outputs() override;
};

QList<WaylandOutput> AskedOutputs::outputs()
{
    const std::unique_ptr<wl_display, Disconnect> display(wl_display_connect(nullptr));
    if (!display)
        return {};
    AllHeard all;
    const std::unique_ptr<wl_registry, Destroy> registry(wl_display_get_registry(display.get()));
    wl_registry_add_listener(registry.get(), &RegistryListener, &all);
    const QDeadlineTimer deadline(PatienceMs);
    // The first time it tells of its outputs, the second time how they are.
    if (!roundTrip(display.get(), deadline) || !roundTrip(display.get(), deadline))
        return {};
    QList<WaylandOutput> outputs;
    for (const Heard &heard : all) {
        outputs.append(heard.output);
        if (heard.isTurned)
            outputs.last().size.transpose();
    }
    return outputs;
}

AskedOutputs asked;

} // namespace

QUORVEL_MODULE(WaylandOutputs, wayland, &asked)
