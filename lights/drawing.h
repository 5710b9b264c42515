// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <array>
#include <vector>

namespace lights {

// A picture of a few simple shapes, which a page says in SVG and which windows and paper paint.
struct Drawing
{
    struct Shape
    {
        enum class Kind { Rectangle, Line, Polyline, Text };

        Kind kind = Kind::Rectangle;
        QString looks;               // names of looks, of which later ones count more
        std::vector<QPointF> points; // two corners, two ends, all of them, the left of the line
        QString words;               // Text
    };

    QSizeF size;
    QString title; // for who does not see it
    std::vector<Shape> shapes;

    void rectangle(const QRectF &area, const QString &looks);
    void line(QPointF from, QPointF to, const QString &looks);
    void polyline(std::vector<QPointF> points, const QString &looks);
    void text(QPointF left, const QString &words, const QString &looks);
};

// How shapes are filled and lined: names of colours as CSS has them, "ink" or "paper"; empty for
// what stays as it is.
struct Look
{
    const char *name;
    const char *fill = "";
    const char *stroke = "";
    double width = 1;
    std::array<double, 2> dash{}; // on and off
    double opacity = 1;           // of the filling
};
// All that there are; "none" is a colour too. Colours can be told apart without red and green.
const std::vector<Look> &looks();
// Sizes of letters, in units of a drawing. Text of the look "letter" is bold and stands in the
// middle of its point.
inline constexpr double LetterSize = 12;

QString toSvg(const Drawing &drawing);
// The style sheet that its classes need.
QString svgStyle();

} // namespace lights
