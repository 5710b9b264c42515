// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QString>

#include <utility>
#include <vector>

// The picture of all lights in the plain order of drawing, one call after the other.
struct PlainLights
{
    int W;
    int H;
    int XTotal;
    int YTotal;
    std::vector<std::pair<int, int>> x; // ADC and AGC of each light that is drawn
    std::vector<std::pair<int, int>> y;
    QString LightDir = {}; // of the marked light
    int LightNum = -1;
    QString LightADC = {};
    QString LightAGC = {};

    QImage picture() const
    {
        using namespace Qt::StringLiterals;
        QPixmap mainmap(W, H);
        mainmap.fill(Qt::white);
        if (XTotal == 0 || YTotal == 0)
            return mainmap.toImage();
        std::vector<QPoint> XADC_point;
        std::vector<QPoint> XAGC_point;
        for (size_t i = 0; i < x.size(); ++i) {
            XADC_point.emplace_back((W * int(i)) / XTotal, H - x[i].first);
            XAGC_point.emplace_back((W * int(i)) / XTotal, H - 5 * x[i].second);
        }
        std::vector<QPoint> YADC_point;
        std::vector<QPoint> YAGC_point;
        for (size_t i = 0; i < y.size(); ++i) {
            YADC_point.emplace_back(y[i].first, H - (H * int(i)) / YTotal);
            YAGC_point.emplace_back(5 * y[i].second, H - (H * int(i)) / YTotal);
        }
        QPainter painter(&mainmap);
        painter.setFont(QFont(u"Tahoma"_s, 7));
        const auto pen = [&painter](Qt::GlobalColor color, int width) {
            painter.setPen(QPen(QBrush(color), width));
        };
        const auto label = [this](int number) {
            return u"Num:"_s + QString::number(number) + u"  "_s + u"ADC:"_s + LightADC + u"  "_s +
                   u"AGC:"_s + LightAGC;
        };

        painter.setBrush(Qt::darkGreen);
        for (size_t n = 1; n <= x.size(); ++n) {
            const int number = int(n);
            const QPoint P = XADC_point[n - 1];
            if ((LightDir == u"X"_s || LightDir == u"x"_s) && LightNum == number - 1) {
                pen(Qt::darkGreen, 3);
                painter.drawRect(QRect(P.x(), P.y(), W / XTotal, H - P.y()));
                const int left = number >= (2 * XTotal) / 3 ? (W * number) / XTotal - 160
                                                            : (W * number) / XTotal + 10;
                painter.drawText(QPoint(left, H - 100), label(number - 1));
            }
            if (n > 1) {
                pen(Qt::darkGreen, 3);
                painter.drawLine(XADC_point[n - 1], XADC_point[n - 2]);
                pen(Qt::darkGreen, 1);
                painter.drawLine(XAGC_point[n - 1], XAGC_point[n - 2]);
            }
        }
        pen(Qt::darkGreen, 3);
        painter.drawLine(XADC_point.back(), XADC_point.back() + QPoint(100, 0));
        pen(Qt::darkGreen, 1);
        painter.drawLine(XAGC_point.back(), XAGC_point.back() + QPoint(100, 0));

        painter.setBrush(Qt::darkRed);
        for (size_t n = 0; n < y.size(); ++n) {
            const int number = int(n);
            const QPoint P = YADC_point[n];
            if ((LightDir == u"Y"_s || LightDir == u"y"_s) && LightNum == number) {
                pen(Qt::darkRed, 3);
                painter.drawRect(QRect(0, P.y() - H / YTotal, P.x(), H / YTotal));
                painter.drawText(QPoint(60, number >= YTotal / 3 ? P.y() - 7 : P.y() + 20),
                                 label(number));
            }
            if (n > 0) {
                pen(Qt::darkRed, 3);
                painter.drawLine(YADC_point[n], YADC_point[n - 1]);
                pen(Qt::darkRed, 1);
                painter.drawLine(YAGC_point[n], YAGC_point[n - 1]);
            }
        }
        pen(Qt::darkRed, 3);
        painter.drawLine(YADC_point.back(), YADC_point.back() - QPoint(0, 100));
        pen(Qt::darkRed, 1);
        painter.drawLine(YAGC_point.back(), YAGC_point.back() - QPoint(0, 100));
        painter.end();
        return mainmap.toImage();
    }
};
