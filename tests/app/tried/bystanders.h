// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "dialogs/advset_dlg.h"
#include "dialogs/setting_dlg.h"
#include "dialogs/smoothing_dlg.h"
#include "dialogs/tryout_dlg.h"
#include "window.h"

#include <QLabel>
#include <QSlider>

// The main window, and those that neither ask a frame nor show what it says.
class BystandersTried final : public TriedWindow
{
public:
    using TriedWindow::TriedWindow;

    QWidget *widget() const override { return the<Setting_dlg>(); }
    void open() override
    {
        if (!the<TryOut_dlg>())
            new TryOut_dlg(&window);
        the<TryOut_dlg>()->show();
        for (QWidget *each : closing())
            each->show();
    }
    QString untrue() override
    {
        const QString state = in<QLabel>(&window, "stalab")->text();
        if (!in<QPushButton>(&window, "calbtn")->isEnabled() && isLinked())
            return QStringLiteral("no calibration is offered");
        if (in<QLabel>(the<Setting_dlg>(), "UseLab")->text() != QStringLiteral("Write") ||
            in<QSlider>(the<smoothing_dlg>(), "smo_lv")->value() != 5)
            return QStringLiteral("not what is kept");
        if (the<TryOut_dlg>() && !the<TryOut_dlg>()->isVisible())
            return QStringLiteral("the field for gestures is gone");
        return state.startsWith(QStringLiteral("Already")) == isLinked() ? QString() : state;
    }
    bool isUnknown() override { return false; }
    bool isRight() override
    {
        for (const QWidget *each : closing()) {
            if (!each->isVisible())
                return false;
        }
        return isLinked();
    }

private:
    bool isLinked() const
    {
        return window.connectState() == MainWindow::UsbConnected ||
               window.connectState() == MainWindow::SerialOpen;
    }
    QList<QWidget *> closing() const
    {
        return {the<Setting_dlg>(), the<smoothing_dlg>(), the<advset_dlg>()};
    }
};
