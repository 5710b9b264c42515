// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/portsettings.h"

#include <QString>

// What the settings file keeps, one record for each of its sections. Enabled flags are 1 or 0; an
// edited file may hold any number anywhere.

// The preset of usage and environment.
struct _EASYSETTING_DATA
{
    QString Environment; // "Indoor", "Rain", "Sunshine" or "Shock"
    QString Use;         // "Operate", "Write", "Percussion" or "Multipoint"

    bool operator==(const _EASYSETTING_DATA &) const = default;
};
using EASYSETTING_DATA = _EASYSETTING_DATA;

// How gestures of a finger become mouse actions.
struct _SETTING_DATA
{
    int all_en = 0;      // the finger is an input device
    int rb_en = 0;       // press and hold gives the right button
    int rb_duration = 0; // of the hold, in ms: 500 to 2500
    int rb_ran = 0;      // movement allowed while holding: 1 to 5
    int db_speed = 0;    // of a double click: 300 to 900, larger is faster
    int db_ran = 0;      // distance allowed between its clicks: 20 to 60
    int wheel_en = 0;    // the wheel gesture is on
    int wheel_sen = 0;   // its sensitivity: 1 (high) to 3 (low)

    bool operator==(const _SETTING_DATA &) const = default;
};
using SETTING_DATA = _SETTING_DATA;

// What a form can show of a record, and a frame be told: flags 1 or 0, the rest within its range.
_SETTING_DATA withinRanges(const _SETTING_DATA &data);

// Smoothing of written strokes.
struct _SMOOTHING_DATA
{
    int smo_en = 0;
    int smo_lv = 0; // level: 4 to 6

    bool operator==(const _SMOOTHING_DATA &) const = default;
};
using SMOOTHING_DATA = _SMOOTHING_DATA;

// How the frame is connected.
struct _CONNECT_DATA
{
    int connect = 0;
    int TUIO_en = 0; // TUIO output
    int OS_en = 0;
    QString uartport;
    PortSettings uartsetting{BaudRateType(0), DataBitsType(0), ParityType(0),
                             StopBitsType(0), FlowType(0),     0};

    bool operator==(const _CONNECT_DATA &) const = default;
};
using CONNECT_DATA = _CONNECT_DATA;

// The whole file.
struct _XML_DATA
{
    _EASYSETTING_DATA EasySettingData;
    _SETTING_DATA SettingData;
    _SMOOTHING_DATA SmoothingData;
    _CONNECT_DATA ConnectData;

    bool operator==(const _XML_DATA &) const = default;
};
using XML_DATA = _XML_DATA;
