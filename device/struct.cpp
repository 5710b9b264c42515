// SPDX-License-Identifier: GPL-3.0-or-later

#include "struct.h"

HID_VER hidver;
