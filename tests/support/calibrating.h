// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "dialogs/calend_dlg.h"
#include "dialogs/calibration_dlg.h"
#include "tests/support/widgets.h"

#include <QTest>

// A user who calibrates.

inline Calibration_Dlg *calibrationScreen()
{
    return topLevel<Calibration_Dlg>();
}

// Answers the question as soon as it is asked; it runs an event loop of its own.
class Answer : public QObject
{
public:
    explicit Answer(bool yes)
        : button(yes ? "pushButton" : "Nobtn")
    {
        startTimer(10);
    }
    int asked = 0;

protected:
    void timerEvent(QTimerEvent *) override
    {
        if (auto *question = qobject_cast<CalEnd_dlg *>(QApplication::activeModalWidget())) {
            ++asked;
            press(question, button);
        }
    }

private:
    const char *button;
};
