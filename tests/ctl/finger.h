// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "sim/sim_adapter.h"

#include <QList>
#include <QTimer>

// Touches a simulated frame, one point each time that it waits for a touch.
class Finger : public QObject
{
public:
    Finger(QObject *parent, std::shared_ptr<sim::SimAdapter> theFrame, QList<QPoint> thePoints)
        : QObject(parent)
        , frame(std::move(theFrame))
        , points(std::move(thePoints))
    {
        connect(&timer, &QTimer::timeout, this, &Finger::look);
        timer.start(5);
    }

private:
    void look()
    {
        bool waits = false;
        frame->inspect([&waits](const sim::Firmware &model) {
            waits = model.calibration() == sim::Firmware::Calibration::Waiting;
        });
        if (waits && !points.isEmpty())
            frame->touch(points.takeFirst());
    }

    std::shared_ptr<sim::SimAdapter> frame;
    QList<QPoint> points;
    QTimer timer;
};
