// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/commands.h"
#include "sim/profile.h"

// As many lights as there can be, one of them weak and one dead.
inline sim::Profile largestFrame()
{
    sim::Profile profile;
    profile.lightsX = command::MaxLightsX;
    profile.lightsY = command::MaxLightsY;
    profile.oddLights = {{.axis = command::settings::AxisX, .number = 17, .level = 60},
                         {.axis = command::settings::AxisY, .number = 30, .level = 0}};
    return profile;
}
