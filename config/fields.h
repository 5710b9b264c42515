// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "settings_data.h"

#include <QLatin1StringView>

#include <concepts>
#include <type_traits>

// The settings file's elements: which names its sections and fields have there, in the order in
// which they are written.
namespace element {

inline constexpr QLatin1StringView Data("data");
inline constexpr QLatin1StringView EasySetting("easysetting");
inline constexpr QLatin1StringView Setting("setting");
inline constexpr QLatin1StringView Smoothing("smoothing");
inline constexpr QLatin1StringView Connect("connect");

template <typename T, typename Record>
concept MaybeConst = std::same_as<std::remove_const_t<T>, Record>;

// Each calls visit(name, field) for every field of its record.
void visitFields(MaybeConst<_EASYSETTING_DATA> auto &record, auto visit)
{
    visit(QLatin1StringView("ENVIRONMENT"), record.Environment);
    visit(QLatin1StringView("USE"), record.Use);
}

void visitFields(MaybeConst<_SETTING_DATA> auto &record, auto visit)
{
    visit(QLatin1StringView("ALL_EN"), record.all_en);
    visit(QLatin1StringView("RB_EN"), record.rb_en);
    visit(QLatin1StringView("RB_DURATION"), record.rb_duration);
    visit(QLatin1StringView("RB_RAN"), record.rb_ran);
    visit(QLatin1StringView("DB_SPEED"), record.db_speed);
    visit(QLatin1StringView("DB_RAN"), record.db_ran);
    visit(QLatin1StringView("WHEEL_EN"), record.wheel_en);
    visit(QLatin1StringView("WHEEL_SEN"), record.wheel_sen);
}

void visitFields(MaybeConst<_SMOOTHING_DATA> auto &record, auto visit)
{
    visit(QLatin1StringView("SMO_EN"), record.smo_en);
    visit(QLatin1StringView("SMO_LV"), record.smo_lv);
}

// The flow control comes before parity and stop bits in the file, though not in the record.
void visitFields(MaybeConst<_CONNECT_DATA> auto &record, auto visit)
{
    visit(QLatin1StringView("CONNECT"), record.connect);
    visit(QLatin1StringView("TUIO_EN"), record.TUIO_en);
    visit(QLatin1StringView("OS_EN"), record.OS_en);
    visit(QLatin1StringView("UARTPORT"), record.uartport);
    visit(QLatin1StringView("BAUDRATE"), record.uartsetting.BaudRate);
    visit(QLatin1StringView("DATABITS"), record.uartsetting.DataBits);
    visit(QLatin1StringView("FLOWCONTROL"), record.uartsetting.FlowControl);
    visit(QLatin1StringView("PARITY"), record.uartsetting.Parity);
    visit(QLatin1StringView("STOPBITS"), record.uartsetting.StopBits);
    visit(QLatin1StringView("TIMEOUT"), record.uartsetting.Timeout_Millisec);
}

} // namespace element
