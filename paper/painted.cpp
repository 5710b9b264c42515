// SPDX-License-Identifier: GPL-3.0-or-later

#include "painted.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPolygonF>

using namespace Qt::StringLiterals;

namespace paper {

namespace {

using lights::Drawing;
using lights::Look;

QColor colorOf(const char *name, const Inks &inks)
{
    const QLatin1StringView color(name);
    return color == "ink"_L1 ? inks.ink : color == "paper"_L1 ? inks.paper : QColor(color);
}

void set(QPainter &painter, const Look &look, const Inks &inks)
{
    const QLatin1StringView fill(look.fill);
    if (fill == "none"_L1) {
        painter.setBrush(Qt::NoBrush);
    } else if (!fill.isEmpty()) {
        QColor color = colorOf(look.fill, inks);
        color.setAlphaF(float(look.opacity));
        painter.setBrush(color);
    }
    if (!*look.stroke)
        return;
    QPen pen(colorOf(look.stroke, inks), look.width);
    if (look.dash[0] > 0)
        pen.setDashPattern({look.dash[0] / look.width, look.dash[1] / look.width});
    painter.setPen(pen);
}

void paintText(QPainter &painter, const Drawing::Shape &shape)
{
    QFont font = painter.font();
    font.setPixelSize(int(lights::LetterSize));
    const bool isLetter = shape.looks == "letter"_L1;
    font.setBold(isLetter);
    painter.setFont(font);
    painter.setPen(painter.brush().color());
    QPointF at = shape.points[0];
    if (isLetter)
        at.rx() -= QFontMetricsF(font).horizontalAdvance(shape.words) / 2;
    painter.drawText(at, shape.words);
}

} // namespace

void paint(QPainter &painter, const Drawing &drawing, const Inks &inks)
{
    using Kind = Drawing::Shape::Kind;
    painter.save();
    QString styled;
    for (const Drawing::Shape &shape : drawing.shapes) {
        // Most shapes look like the one before.
        if (shape.looks != styled || shape.kind == Kind::Text) {
            styled = shape.looks;
            painter.setPen(Qt::NoPen);
            painter.setBrush(Qt::NoBrush);
            const QStringList names = shape.looks.split(u' ');
            for (const Look &look : lights::looks()) {
                if (names.contains(QLatin1StringView(look.name)))
                    set(painter, look, inks);
            }
        }
        switch (shape.kind) {
        case Kind::Rectangle:
            painter.drawRect(QRectF(shape.points[0], shape.points[1]));
            break;
        case Kind::Line:
            painter.drawLine(shape.points[0], shape.points[1]);
            break;
        case Kind::Polyline:
            painter.drawPolyline(shape.points.data(), int(shape.points.size()));
            break;
        case Kind::Text:
            paintText(painter, shape);
            break;
        }
    }
    painter.restore();
}

} // namespace paper
