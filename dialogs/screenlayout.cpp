// SPDX-License-Identifier: GPL-3.0-or-later

#include "screenlayout.h"

#include "modules/module.h"
#include "waylandoutputs.h"

#include <QGuiApplication>
#include <QHash>
#include <QScreen>

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <cmath>
#include <cstdlib>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

QList<WaylandOutput> waylandOutputs()
{
    QString problem;
    auto *const module = modules::load<WaylandOutputs>(&problem);
    if (!module)
        qWarning("%s", qPrintable(problem));
    return module ? module->outputs() : QList<WaylandOutput>();
}

constexpr int FinestScale = 120; // a compositor's scalings are whole numbers of such parts

struct Monitor
{
    QString name;
    QRect geometry;
    QSizeF millimetres;
};

template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply *reply)
{
    return {reply, &std::free};
}

QRect scaledUp(const QScreen *screen)
{
    // The origin of a screen is in native pixels already; only its size is scaled.
    return {screen->geometry().topLeft(),
            (QSizeF(screen->geometry().size()) * screen->devicePixelRatio()).toSize()};
}

QString atomName(xcb_connection_t *connection, xcb_atom_t atom)
{
    const auto reply =
        owned(xcb_get_atom_name_reply(connection, xcb_get_atom_name(connection, atom), nullptr));
    if (!reply)
        return {};
    return QString::fromUtf8(xcb_get_atom_name_name(reply.get()),
                             xcb_get_atom_name_name_length(reply.get()));
}

QList<Monitor> monitorsOf(xcb_connection_t *connection, xcb_window_t root)
{
    QList<Monitor> monitors;
    const auto reply = owned(xcb_randr_get_monitors_reply(
        connection, xcb_randr_get_monitors(connection, root, 1), nullptr));
    if (!reply)
        return monitors;
    for (auto it = xcb_randr_get_monitors_monitors_iterator(reply.get()); it.rem;
         xcb_randr_monitor_info_next(&it)) {
        monitors.append({atomName(connection, it.data->name),
                         QRect(it.data->x, it.data->y, it.data->width, it.data->height),
                         QSizeF(it.data->width_in_millimeters, it.data->height_in_millimeters)});
    }
    return monitors;
}

// The monitor that a Qt screen stands for: by name, else by origin.
Monitor monitorOf(const QScreen *screen, const QList<Monitor> &monitors)
{
    for (const Monitor &monitor : monitors) {
        if (monitor.name == screen->name())
            return monitor;
    }
    for (const Monitor &monitor : monitors) {
        if (monitor.geometry.topLeft() == screen->geometry().topLeft())
            return monitor;
    }
    return {screen->name(), scaledUp(screen), screen->physicalSize()};
}

bool isOnWayland()
{
    return QGuiApplication::platformName().startsWith("wayland"_L1);
}

// By name, else by order.
QSize nativeSize(const QScreen *screen, const QList<WaylandOutput> &outputs)
{
    for (const WaylandOutput &output : outputs) {
        if (!output.name.isEmpty() && output.name == screen->name())
            return output.size;
    }
    const auto index = QGuiApplication::screens().indexOf(screen);
    if (outputs.size() == QGuiApplication::screens().size() && !outputs[index].size.isEmpty())
        return outputs[index].size;
    return scaledUp(screen).size();
}

// Each screen stands where the compositor has it, in pixels of its own: with screens of several
// scalings these places are no more than an order.
ScreenLayout layoutOnWayland()
{
    ScreenLayout layout;
    layout.isEachForItself = true;
    const QList<WaylandOutput> outputs = waylandOutputs();
    QRect all;
    for (const QScreen *screen : QGuiApplication::screens()) {
        layout.screens.append(QRect(screen->geometry().topLeft(), nativeSize(screen, outputs)));
        all |= layout.screens.last();
    }
    layout.desktop = all.size();
    return layout;
}

} // namespace

qreal ScreenLayout::scaleOf(const QScreen *screen) const
{
    const qsizetype index = QGuiApplication::screens().indexOf(screen);
    // A compositor may scale by a fraction, and tells the toolkit of whole numbers only.
    if (isEachForItself && index >= 0 && index < screens.size())
        return scaleBetween(screens[index].size(), screen->geometry().size());
    return screen->devicePixelRatio();
}

qreal ScreenLayout::scaleBetween(QSize native, QSize counted)
{
    const qreal rough = qreal(native.width()) / counted.width();
    for (int denominator = 1; denominator <= FinestScale; ++denominator) {
        const qreal scale = std::round(rough * denominator) / denominator;
        const auto fits = [scale](int pixels, int points) {
            return std::abs(pixels / scale - points) < 1;
        };
        if (fits(native.width(), counted.width()) && fits(native.height(), counted.height()))
            return scale;
    }
    return rough;
}

ScreenLayout ScreenLayout::current()
{
    if (isOnWayland())
        return layoutOnWayland();
    ScreenLayout layout;
    const QList<QScreen *> screens = QGuiApplication::screens();
    QList<Monitor> monitors;

    // There is an interface without an X server too, but no connection.
    auto *x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    if (xcb_connection_t *connection = x11 ? x11->connection() : nullptr) {
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
        monitors = monitorsOf(connection, root);
        const auto geometry =
            owned(xcb_get_geometry_reply(connection, xcb_get_geometry(connection, root), nullptr));
        if (geometry)
            layout.desktop = QSize(geometry->width, geometry->height);
    }

    QRect all;
    for (const QScreen *screen : screens) {
        const Monitor monitor = monitorOf(screen, monitors);
        layout.screens.append(monitor.geometry);
        layout.millimetres.append(monitor.millimetres);
        all |= layout.screens.last();
    }
    if (layout.desktop.isEmpty())
        layout.desktop = all.size();
    return layout;
}
