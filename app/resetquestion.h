// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/link.h"

class QWidget;

// Announces the reset of the touch frame and waits until that is dismissed. False when the box went
// otherwise: with its frame, or because the program ends.
bool resetIsConfirmed(QWidget *parent, const Link &link);
