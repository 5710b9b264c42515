// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "dialogs/signalplot.h"
#include "tests/support/widgets.h"

// Where the curves are in the window of a signal test.
inline const QRect SignalCurves(QPoint(70, 50), SignalPlot::Size);

// How many pixels of them have a colour.
inline int pixelsOfCurves(QWidget *test, QColor colour)
{
    return pixelsOf(test->grab(SignalCurves).toImage(), colour);
}
