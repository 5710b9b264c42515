// SPDX-License-Identifier: GPL-3.0-or-later

#include "lightwall.h"

#include "lights/findings.h"
#include "lights/reportpicture.h"
#include "paper/painted.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

using lights::Axis;
using lights::LightPlace;

namespace {

constexpr QSize LeastSize(240, 150);
constexpr double MarkFrom = -3; // around the lights, away from the screen
constexpr double MarkTo = lights::Wall::LightLength + 3;
constexpr double LeastMark = 8; // pixels, however thin lights are
constexpr double MarkWidth = 2.5;

} // namespace

LightWall::LightWall(QWidget *parent)
    : QWidget(parent)
{
    setMinimumSize(LeastSize);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    speak();
}

void LightWall::setReport(const lights::Report &theReport)
{
    report = &theReport;
    faults = touchFaults(report->measurement, report->verdicts);
    if (marked && marked->last >= lightsOn(marked->axis))
        marked.reset();
    speak();
    update();
}

void LightWall::choose(const LightPlace &place)
{
    mark(place.axis, place.number, place.number);
}

void LightWall::mark(Axis axis, int first, int last)
{
    if (last >= lightsOn(axis))
        return;
    marked = Mark{axis, first, last};
    speak();
    update();
}

lights::Wall LightWall::wall() const
{
    return {report ? report->measurement : lights::Measurement(), QSizeF(size())};
}

int LightWall::lightsOn(Axis axis) const
{
    return report ? int(report->verdicts.axis(axis).lights.size()) : 0;
}

// The name of what has the keyboard is what a screen reader says when it changes.
void LightWall::speak()
{
    const QString name = marked ? tr("The frame and its lights. %1")
                                      .arg(wordsFor(*report, {marked->axis, marked->first}))
                                : tr("The frame and its lights");
    if (name == accessibleName())
        return;
    setAccessibleName(name);
}

void LightWall::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const paper::Inks inks{palette().color(QPalette::Text), palette().color(QPalette::Base)};
    painter.fillRect(rect(), inks.paper);
    const lights::Wall shown = wall();
    if (report)
        paper::paint(painter, wallPicture(*report, faults, shown), inks);
    if (marked) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), MarkWidth));
        const int count = marked->last - marked->first + 1;
        for (QRectF area : shown.along(marked->axis, marked->first, count, MarkFrom, MarkTo)) {
            const QPointF middle = area.center();
            area.setWidth(std::max(area.width(), LeastMark));
            area.setHeight(std::max(area.height(), LeastMark));
            area.moveCenter(middle);
            painter.drawRect(area);
        }
    }
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1, Qt::DotLine));
        painter.drawRect(rect().adjusted(1, 1, -2, -2));
    }
}

void LightWall::mousePressEvent(QMouseEvent *event)
{
    const auto place = wall().lightAt(event->position());
    if (event->button() != Qt::LeftButton || !place)
        return;
    go(place->axis, place->number);
    emit opened(*place);
}

void LightWall::mouseMoveEvent(QMouseEvent *event)
{
    const auto place = wall().lightAt(event->position());
    setToolTip(place ? wordsFor(*report, *place) : QString());
}

void LightWall::keyPressEvent(QKeyEvent *event)
{
    const LightPlace at = marked ? LightPlace{marked->axis, marked->first} : LightPlace{};
    const auto goAlong = [this, &at](Axis axis, int by) {
        go(axis, at.axis == axis ? at.number + by : 0);
    };
    switch (event->key()) {
    case Qt::Key_Left:
        return goAlong(Axis::X, -1);
    case Qt::Key_Right:
        return goAlong(Axis::X, 1);
    case Qt::Key_Up:
        return goAlong(Axis::Y, -1);
    case Qt::Key_Down:
        return goAlong(Axis::Y, 1);
    case Qt::Key_Home:
        return go(at.axis, 0);
    case Qt::Key_End:
        return go(at.axis, lightsOn(at.axis) - 1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (marked)
            emit opened(at);
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void LightWall::go(Axis axis, int number)
{
    if (lightsOn(axis) == 0)
        return;
    const LightPlace place{axis, std::clamp(number, 0, lightsOn(axis) - 1)};
    choose(place);
    emit chosen(place);
}
