#pragma once

#include <QList>
#include <QRect>
#include <QSize>

// The screens in native pixels, whatever the display scaling: what a touch frame is told must be
// exact, and Qt's own geometry is rounded to its scaled pixels.
struct ScreenLayout
{
    QList<QRect> screens; // in the order of QGuiApplication::screens()
    QSize desktop;        // all screens together
    // How large each says it is, in mm; empty where it says nothing.
    QList<QSizeF> millimetres{};

    // As it is now, from the X server where there is one.
    static ScreenLayout current();
};
