// SPDX-License-Identifier: GPL-3.0-or-later

#include "drawing.h"

using namespace Qt::StringLiterals;

namespace lights {

namespace {

const QString Ink = u"#222"_s;
const QString Paper = u"#fff"_s;

QString svgNumber(double value)
{
    return QString::number(value, 'f', 1);
}

QString svgColor(const char *name)
{
    const QLatin1StringView color(name);
    return color == "ink"_L1 ? Ink : color == "paper"_L1 ? Paper : QString(color);
}

QString svgShape(const Drawing::Shape &shape)
{
    using Kind = Drawing::Shape::Kind;
    const auto &points = shape.points;
    switch (shape.kind) {
    case Kind::Rectangle: {
        const QRectF area = QRectF(points[0], points[1]);
        return u"<rect class=\"%1\" x=\"%2\" y=\"%3\" width=\"%4\" height=\"%5\"/>\n"_s.arg(
            shape.looks, svgNumber(area.x()), svgNumber(area.y()), svgNumber(area.width()),
            svgNumber(area.height()));
    }
    case Kind::Line:
        return u"<line class=\"%1\" x1=\"%2\" y1=\"%3\" x2=\"%4\" y2=\"%5\"/>\n"_s.arg(
            shape.looks, svgNumber(points[0].x()), svgNumber(points[0].y()),
            svgNumber(points[1].x()), svgNumber(points[1].y()));
    case Kind::Polyline: {
        QString all;
        for (const QPointF &point : points)
            all += svgNumber(point.x()) + u',' + svgNumber(point.y()) + u' ';
        return u"<polyline class=\"%1\" points=\"%2\"/>\n"_s.arg(shape.looks, all.trimmed());
    }
    case Kind::Text:
        return u"<text class=\"%1\" x=\"%2\" y=\"%3\">%4</text>\n"_s.arg(
            shape.looks, svgNumber(points[0].x()), svgNumber(points[0].y()),
            shape.words.toHtmlEscaped());
    }
    Q_UNREACHABLE();
}

} // namespace

void Drawing::rectangle(const QRectF &area, const QString &looks)
{
    shapes.push_back({Shape::Kind::Rectangle, looks, {area.topLeft(), area.bottomRight()}, {}});
}

void Drawing::line(QPointF from, QPointF to, const QString &looks)
{
    shapes.push_back({Shape::Kind::Line, looks, {from, to}, {}});
}

void Drawing::polyline(std::vector<QPointF> points, const QString &looks)
{
    shapes.push_back({Shape::Kind::Polyline, looks, std::move(points), {}});
}

void Drawing::text(QPointF left, const QString &words, const QString &looks)
{
    shapes.push_back({Shape::Kind::Text, looks, {left}, words});
}

const std::vector<Look> &looks()
{
    static const std::vector<Look> all{
        {.name = "letter", .fill = "ink"},
        {.name = "scale", .fill = "ink"},
        {.name = "screen", .fill = "paper", .stroke = "ink"},
        {.name = "healthy", .fill = "#56b4e9"},
        {.name = "weak", .fill = "#e69f00"},
        {.name = "dead", .fill = "ink"},
        {.name = "noisy", .fill = "#cc79a7"},
        {.name = "saturated", .fill = "#f0e442", .stroke = "ink", .width = 0.5},
        {.name = "switched-off", .fill = "paper", .stroke = "ink"},
        {.name = "stretch", .stroke = "ink"},
        {.name = "dirt", .fill = "#e69f00"},
        {.name = "obstacle", .fill = "ink"},
        {.name = "bar-out-of-line", .fill = "#0072b2"},
        {.name = "broken-board", .fill = "#d55e00"},
        {.name = "missed", .fill = "ink", .opacity = 0.55},
        {.name = "jumps", .fill = "#0072b2", .opacity = 0.25},
        {.name = "level", .fill = "none", .stroke = "#0072b2", .width = 1.5},
        {.name = "expected", .fill = "none", .stroke = "#d55e00", .dash = {6, 4}},
        {.name = "limit", .stroke = "ink", .dash = {2, 3}},
        {.name = "grid", .stroke = "#ccc"},
    };
    return all;
}

QString toSvg(const Drawing &drawing)
{
    QString svg =
        u"<svg viewBox=\"0 0 %1 %2\" role=\"img\" aria-label=\"%3\">\n<title>%3</title>\n"_s.arg(
            svgNumber(drawing.size.width()), svgNumber(drawing.size.height()),
            drawing.title.toHtmlEscaped());
    for (const Drawing::Shape &shape : drawing.shapes)
        svg += svgShape(shape);
    return svg + u"</svg>\n"_s;
}

QString svgStyle()
{
    QString style = u"svg { width: 100%; height: auto; }\n"
                    "svg text { font: %1px sans-serif; }\n"
                    "svg .letter { font-weight: bold; text-anchor: middle; }\n"_s.arg(LetterSize);
    for (const Look &look : looks()) {
        style += u"svg ."_s + QLatin1StringView(look.name) + u" {"_s;
        if (*look.fill)
            style += u" fill: %1;"_s.arg(svgColor(look.fill));
        if (*look.stroke)
            style += u" stroke: %1; stroke-width: %2;"_s.arg(svgColor(look.stroke)).arg(look.width);
        if (look.dash[0] > 0)
            style += u" stroke-dasharray: %1 %2;"_s.arg(look.dash[0]).arg(look.dash[1]);
        if (look.opacity < 1)
            style += u" fill-opacity: %1;"_s.arg(look.opacity);
        style += u" }\n"_s;
    }
    return style;
}

} // namespace lights
