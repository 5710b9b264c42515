// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QRect>
#include <QSize>

class QScreen;

// The screens in native pixels, whatever the display scaling: what a touch frame is told must be
// exact, and Qt's own geometry is rounded to its scaled pixels.
struct ScreenLayout
{
    QList<QRect> screens; // in the order of QGuiApplication::screens()
    QSize desktop;        // all screens together
    // How large each says it is, in mm; empty where it says nothing.
    QList<QSizeF> millimetres{};
    // The desktop hands what a frame says to the screen that the frame is on, so that the other
    // screens do not count; X servers spread it over all of them.
    bool isEachForItself = false;

    // As it is now, from the X server or the Wayland compositor where there is one.
    static ScreenLayout current();
    // Native pixels for each one that the toolkit counts on that screen.
    qreal scaleOf(const QScreen *screen) const;
    // The same from a screen's two sizes, the toolkit's being rounded: of all that fit, what has
    // the smallest denominator.
    static qreal scaleBetween(QSize native, QSize counted);
};
