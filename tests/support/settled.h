// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTimer>

#include <algorithm>

// Whether a dialog that drops what was pressed during a pause takes presses again.
inline bool isSettled(const QObject *dialog)
{
    const QList<QTimer *> timers = dialog->findChildren<QTimer *>();
    return std::none_of(timers.begin(), timers.end(), [](const QTimer *timer) {
        return timer->isActive() && timer->interval() == 0;
    });
}
