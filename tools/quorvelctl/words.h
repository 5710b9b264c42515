#pragma once

#include <QCoreApplication>

namespace ctl {

// What the program says, translated: Words::tr("...").
struct Words
{
    Q_DECLARE_TR_FUNCTIONS(ctl)
};

} // namespace ctl
