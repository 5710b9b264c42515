// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QEvent>
#include <QWidget>

// Counts how often a widget was hidden by the window system, such as by being minimised.
class Hides : public QObject
{
public:
    explicit Hides(QWidget *watched)
        : QObject(watched)
    {
        watched->installEventFilter(this);
    }
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Hide && event->spontaneous())
            ++bySystem;
        return false;
    }

    int bySystem = 0;
};
