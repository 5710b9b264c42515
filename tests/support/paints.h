// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPaintEvent>
#include <QWidget>

// How often a widget was painted, and which part of it.
class Paints : public QObject
{
public:
    explicit Paints(QWidget *watched) { watched->installEventFilter(this); }
    int count = 0;
    QRegion region;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            ++count;
            region |= static_cast<QPaintEvent *>(event)->region();
        }
        return false;
    }
};
