// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings_data.h"

#include <algorithm>

_SETTING_DATA withinRanges(const _SETTING_DATA &data)
{
    return {.all_en = data.all_en != 0,
            .rb_en = data.rb_en != 0,
            .rb_duration = std::clamp(data.rb_duration, 500, 2500),
            .rb_ran = std::clamp(data.rb_ran, 1, 5),
            .db_speed = std::clamp(data.db_speed, 300, 900),
            .db_ran = std::clamp(data.db_ran, 20, 60),
            .wheel_en = data.wheel_en != 0,
            .wheel_sen = std::clamp(data.wheel_sen, 1, 3)};
}
