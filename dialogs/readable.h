// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

class QColor;
class QWidget;

// Texts that have a colour of their own, on any desktop.
namespace readable {

// At which small text reads well.
inline constexpr qreal LeastContrast = 4.5;

// Between 1 (the same) and 21 (black and white).
qreal contrast(const QColor &one, const QColor &other);

// For a label or button within a window whose style sheet gives its text a colour: where the
// desktop's background is too close to that colour, white or black is put behind it, now and
// whenever the desktop's colours change.
void keep(QWidget *widget);

} // namespace readable
