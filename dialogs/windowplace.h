// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMargins>

class QWidget;

// What the window manager puts around a window, or about that: what it really is, is known when the
// window is shown.
QMargins windowFrame();

// Brings a window, whenever it is shown, back to where it was when it was hidden, in this run or in
// one before; on a screen in any case. It goes by the window's object name. A window that was given
// a place before it is first shown stays with that, and on Wayland, where no program learns or
// chooses places, all windows are left to the compositor.
void keepPlace(QWidget *window);
