// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "app/mainwindow.h"
#include "tests/support/farend.h"

#include <memory>

// A line to which the window is connected, without what that sent.
inline std::unique_ptr<FarEnd> openLine(MainWindow &window, const PortSettings &settings = {})
{
    auto line = std::make_unique<FarEnd>();
    if (!window.OpenUart(line->node, settings))
        qFatal("%s", qPrintable(window.uartProblem()));
    if (line->take(33).size() != 33)
        qFatal("not three baud commands");
    return line;
}
