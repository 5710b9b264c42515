// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "dialogs/version_dlg.h"
#include "window.h"

#include <QLabel>

// Looks, and looks again. Over a serial line nothing is known of versions.
class VersionsTried final : public TriedWindow
{
public:
    using TriedWindow::TriedWindow;

    QWidget *widget() const override { return the<Version_Dlg>(); }
    void open() override { press(&window, "pushButton"); }
    QString untrue() override
    {
        for (qsizetype i = 0; i < Names.size(); ++i) {
            const QString text = line(i);
            if (text != Nothing[i] && (text != Known[i] || (i > 1 && !reported.firmware)))
                return text;
        }
        return {};
    }
    bool isUnknown() override { return says(Nothing); }
    bool isRight() override { return says(frame.port().isEmpty() ? Known : Nothing); }

private:
    QString line(qsizetype which) const { return in<QLabel>(widget(), Names[which])->text(); }
    bool says(const QStringList &expected) const
    {
        for (qsizetype i = 0; i < Names.size(); ++i) {
            if (line(i) != expected[i])
                return false;
        }
        return true;
    }

    const QList<const char *> Names{"label_3", "label_4", "label_5", "label_6"};
    const QStringList Nothing{
        QStringLiteral("Device version: 0.0.0.0"), QStringLiteral("Hardware: 0000 - 0000"),
        QStringLiteral("SID: 00000000 - 000000"), QStringLiteral("PID: UNDEF - 000000000")};
    const QStringList Known{
        QStringLiteral("Device version: 3.0.1.0"), QStringLiteral("Hardware: 5156 - 0001"),
        QStringLiteral("SID: 5A17C0DE - 003812"), QStringLiteral("PID: UNDEF - 160501234")};
};
