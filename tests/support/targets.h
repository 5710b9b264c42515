// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QPoint>

// Of the calibration of a screen of 1280 x 800 at 0,0, in the order in which they are touched.
inline const QList<QPoint> Targets = {{160, 100}, {1120, 100}, {1120, 700}, {160, 700}};
