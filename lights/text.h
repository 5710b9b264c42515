#pragma once

#include <QCoreApplication>

namespace lights {

// What verdicts, advice and reports say, translated: Text::tr("...").
struct Text
{
    Q_DECLARE_TR_FUNCTIONS(lights)
};

} // namespace lights
