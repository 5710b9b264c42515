// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "dialogs/connect_dlg.h"
#include "window.h"

#include <QComboBox>
#include <QPlainTextEdit>
#include <QRadioButton>

// Opens what there is, and waits for what it says of it.
class ConnectionTried final : public TriedWindow
{
public:
    using TriedWindow::TriedWindow;

    QWidget *widget() const override { return the<connect_dlg>(); }
    void openPort() override
    {
        widget()->show();
        in<QRadioButton>(widget(), "uartRadio")->setChecked(true);
        in<QComboBox>(widget(), "portBox")->setEditText(frame.port());
        press(widget(), "openButton");
    }
    void again() override
    {
        if (!frame.port().isEmpty()) {
            press(widget(), "closeButton");
            openPort();
        }
    }
    QString untrue() override
    {
        const QString text = shown();
        const bool saysUsb = text.contains(QStringLiteral("is connected by USB"));
        const bool saysOpen =
            text.contains(QStringLiteral("The serial port %1 is open.").arg(frame.port()));
        const bool saysAnswer = text.contains(QStringLiteral("A touch frame answers there."));
        if (saysUsb != (window.connectState() == MainWindow::UsbConnected) ||
            saysOpen != (window.connectState() == MainWindow::SerialOpen) ||
            (saysAnswer && reported.frames == 0))
            return text;
        return {};
    }
    bool isUnknown() override
    {
        return shown().contains(QStringLiteral("No touch frame is connected"));
    }
    bool isRight() override
    {
        return shown().contains(frame.port().isEmpty()
                                    ? QStringLiteral("A touch frame is connected by USB.")
                                    : QStringLiteral("A touch frame answers there."));
    }

private:
    QString shown() const { return in<QPlainTextEdit>(widget(), "stateText")->toPlainText(); }
};
