// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tests/support/calibrating.h"
#include "window.h"

#include <QApplication>

// A finger calibrates, and says yes at the end; again and again.
class CalibrationTried final : public TriedWindow
{
public:
    CalibrationTried(MainWindow &main, TriedFrame &theFrame, Reported &whatCame)
        : TriedWindow(main, theFrame, whatCame)
    {
        QObject::connect(&main, &MainWindow::calibrationSaved, &main, [this] { ++saved; });
    }

    QWidget *widget() const override { return calibrationScreen(); }
    void open() override
    {
        reported.targets.clear();
        press(&window, "calbtn");
    }
    void goOn() override
    {
        if (auto *asked = question()) {
            if (isTimeFor(100))
                press(asked, "pushButton");
        } else if (!calibrationScreen()->isVisible()) {
            if (isTimeFor(300))
                open();
        } else if (const int target = frame.held().target;
                   target >= 0 && target < 4 && calibrationScreen()->currentTarget() == target &&
                   isTimeFor(40)) {
            frame.touch({calibrationScreen()->targetsX()[size_t(target)],
                         calibrationScreen()->targetsY()[size_t(target)]});
        }
    }
    QString untrue() override
    {
        if (question() && !reported.calibrationEnded)
            return QStringLiteral("asks whether to save what no frame has ended");
        const int target = calibrationScreen()->currentTarget();
        return !calibrationScreen()->isVisible() || target == 0 || reported.targets.contains(target)
                   ? QString()
                   : QStringLiteral("target %1").arg(target);
    }
    void again() override
    {
        calibrationScreen()->close(); // Escape; goOn() begins anew
    }
    void beginAnew() override { saved = 0; }
    bool isRight() override { return saved > 0 && frame.held().kept; }

private:
    static CalEnd_dlg *question()
    {
        return qobject_cast<CalEnd_dlg *>(QApplication::activeModalWidget());
    }

    int saved = 0;
};
