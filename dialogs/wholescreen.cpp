// SPDX-License-Identifier: GPL-3.0-or-later

#include "wholescreen.h"

#include <QRect>

void WholeScreen::cover(const QRect &screen)
{
    if (screen.isValid())
        setGeometry(screen);
    // Not showFullScreen(), which shows a window that is being shown already: newer toolkits take
    // that for another showing.
    setWindowState((windowState() & ~Qt::WindowMinimized) | Qt::WindowFullScreen);
    // Without a window manager nobody else gives it the keyboard.
    activateWindow();
}
