// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoreApplication>

namespace ctl {

inline constexpr double MsPerSecond = 1000;

// What the program says, translated: Words::tr("...").
struct Words
{
    Q_DECLARE_TR_FUNCTIONS(ctl)
};

} // namespace ctl
