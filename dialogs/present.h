#pragma once

#include <QWidget>

// Shows a window above the others and gives it the keyboard.
inline void present(QWidget *window)
{
    window->show();
    window->raise();
    window->activateWindow();
}
