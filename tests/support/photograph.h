// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QGuiApplication>
#include <QImage>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

// The screen as the X server has it, in native pixels.
inline QImage photograph(QRect native)
{
    auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t *connection = x11->connection();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply(
        xcb_get_image_reply(connection,
                            xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root,
                                          qint16(native.x()), qint16(native.y()),
                                          quint16(native.width()), quint16(native.height()), ~0u),
                            nullptr),
        &std::free);
    if (!reply)
        return {};
    return QImage(xcb_get_image_data(reply.get()), native.width(), native.height(),
                  QImage::Format_RGB32)
        .copy();
}
