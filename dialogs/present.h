// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QWidget>

// Shows a window above the others and gives it the keyboard; one that was minimised comes back.
inline void present(QWidget *window)
{
    // Before it is shown: a window manager without a task bar leaves a minimised window as it is.
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
}
