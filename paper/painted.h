// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lights/drawing.h"

#include <QColor>

class QPainter;

namespace paper {

// What "ink" and "paper" of a look are.
struct Inks
{
    QColor ink = QColor(0x22, 0x22, 0x22);
    QColor paper = Qt::white;
};

// Paints a drawing in its own units.
void paint(QPainter &painter, const lights::Drawing &drawing, const Inks &inks = {});

} // namespace paper
