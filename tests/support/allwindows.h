// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "app/mainwindow.h"
#include "dialogs/advconnect_dlg.h"
#include "dialogs/calend_dlg.h"
#include "dialogs/calibrationcheck_dlg.h"
#include "dialogs/lightcheck_dlg.h"
#include "dialogs/supportfile_dlg.h"
#include "dialogs/tryout_dlg.h"
#include "tests/support/fakeadapter.h"

#include <memory>

// Every window of the tool, with a frame: the main one, those that it has from its beginning, and
// those that it makes when they are asked for.
struct AllWindows
{
    MainWindow main{std::make_shared<FakeAdapter>()};
    CalEnd_dlg question;
    advconnect_dlg tuio;
    SupportFile_dlg supportFile;
    LightCheck_dlg lightCheck;
    TryOut_dlg tryOut;
    CalibrationCheck_dlg calibrationCheck;
};
