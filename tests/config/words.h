// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "config/settings_data.h"

#include <QStringList>

// Records in words, so that a test can name a whole one: the sections with their fields in the
// order of the records, texts in quotes.

inline const QString EmptyWords =
    QStringLiteral("'' '' / 0 0 0 0 0 0 0 0 / 0 0 / 0 0 0 '' 0 0 0 0 0 0");
inline const QString DefaultWords =
    QStringLiteral("'Indoor' 'Write' / 1 1 1500 3 600 30 1 2 / 1 5 / 1 0 1 'COM1' 12 3 0 0 0 500");

inline QString words(const _EASYSETTING_DATA &r)
{
    return QStringLiteral("'%1' '%2'").arg(r.Environment, r.Use);
}

inline QString words(const _SETTING_DATA &r)
{
    return QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8")
        .arg(r.all_en)
        .arg(r.rb_en)
        .arg(r.rb_duration)
        .arg(r.rb_ran)
        .arg(r.db_speed)
        .arg(r.db_ran)
        .arg(r.wheel_en)
        .arg(r.wheel_sen);
}

inline QString words(const _SMOOTHING_DATA &r)
{
    return QStringLiteral("%1 %2").arg(r.smo_en).arg(r.smo_lv);
}

inline QString words(const _CONNECT_DATA &r)
{
    const PortSettings &p = r.uartsetting;
    return QStringLiteral("%1 %2 %3 ").arg(r.connect).arg(r.TUIO_en).arg(r.OS_en) +
           QStringLiteral("'%1' ").arg(r.uartport) +
           QStringLiteral("%1 %2 %3 %4 %5 %6")
               .arg(int(p.BaudRate))
               .arg(int(p.DataBits))
               .arg(int(p.Parity))
               .arg(int(p.StopBits))
               .arg(int(p.FlowControl))
               .arg(p.Timeout_Millisec);
}

inline QString words(const _XML_DATA &r)
{
    return QStringList{words(r.EasySettingData), words(r.SettingData), words(r.SmoothingData),
                       words(r.ConnectData)}
        .join(QStringLiteral(" / "));
}
