// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "app/mainwindow.h"

#include <QTest>

#include <memory>
#include <utility>

// The tool with a frame of the test's, on the screen; nullptr if it does not come up there.
inline std::unique_ptr<MainWindow>
shownWindow(std::shared_ptr<HID_AdpterPacket::HID_Adapter> adapter)
{
    auto window = std::make_unique<MainWindow>(std::move(adapter));
    window->show();
    return QTest::qWaitForWindowExposed(window.get()) ? std::move(window) : nullptr;
}
