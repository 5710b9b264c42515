// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "dialogs/signalplot.h"

#include <QPainter>

// The picture of a signal test drawn the long way: text, dot and line of point after point.
inline void drawPlainly(QPixmap &picture, std::span<const SignalPlot::Curve> curves, int upper,
                        int lower)
{
    picture.fill(Qt::white);
    QPainter painter(&picture);
    QFont font;
    font.setPointSize(6);
    painter.setFont(font);
    for (const SignalPlot::Curve &curve : curves) {
        const bool x = curve.axis == SignalPlot::Axis::X;
        painter.setPen(x ? Qt::darkGreen : Qt::darkRed);
        painter.setBrush(QBrush(x ? Qt::green : Qt::red, Qt::SolidPattern));
        for (size_t i = 0; i < curve.points.size(); ++i) {
            const QPoint point = curve.points[i];
            painter.drawText(point.x() - 3, point.y() - 7, QString::number(i + 1));
            painter.drawEllipse(point, 2, 2);
            if (i > 0)
                painter.drawLine(point, curve.points[i - 1]);
        }
    }
    painter.setPen(QPen(Qt::black, 0, Qt::DashLine));
    const int upperRow = 490 - upper * 490 / 1100;
    const int lowerRow = 490 - lower * 490 / 1100;
    painter.drawLine(0, upperRow, 880, upperRow);
    painter.drawLine(0, lowerRow, 880, lowerRow);
}
