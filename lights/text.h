// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoreApplication>
#include <QLocale>

namespace lights {

// What verdicts, advice and reports say, translated: Text::tr("...").
struct Text
{
    Q_DECLARE_TR_FUNCTIONS(lights)
};

// For people to read, in their locale.
inline QString oneDecimal(double value)
{
    return QLocale().toString(value, 'f', 1);
}

} // namespace lights
