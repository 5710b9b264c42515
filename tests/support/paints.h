// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPaintEvent>
#include <QTest>
#include <QWidget>

#include <functional>

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

// Whether what happens is seen at once: the widget is painted for it, and not for anything before.
inline bool isPaintedFor(QWidget *widget, const std::function<void()> &happens)
{
    QTest::qWait(20); // for what is painted anyway
    const Paints paints(widget);
    happens();
    return QTest::qWaitFor([&paints] { return !paints.region.isEmpty(); }, 2000);
}
