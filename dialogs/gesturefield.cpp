// SPDX-License-Identifier: GPL-3.0-or-later

#include "gesturefield.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleHints>
#include <QTouchEvent>
#include <QWheelEvent>

#include <algorithm>

namespace {

constexpr int WayWidth = 2;
constexpr qreal StartRing = 8;
constexpr qreal EndRing = 3;
// Old places go: a drawing without an end would take more memory for ever.
constexpr qsizetype MostPlaces = 5000;

} // namespace

GestureField::GestureField(QWidget *parent)
    : QFrame(parent)
    , reader(limits())
{
    setAttribute(Qt::WA_AcceptTouchEvents);
    setBackgroundRole(QPalette::Base);
    // Right clicks are tried out too.
    setContextMenuPolicy(Qt::PreventContextMenu);
}

GestureReader::Limits GestureField::limits()
{
    const QStyleHints *hints = QGuiApplication::styleHints();
    return {.doubleClickMs = hints->mouseDoubleClickInterval(),
            .doubleTapPixels = qreal(hints->touchDoubleTapDistance()),
            .dragPixels = qreal(hints->startDragDistance()),
            .holdMs = hints->mousePressAndHoldInterval()};
}

bool GestureField::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        takeButton(*static_cast<QMouseEvent *>(event), true, false);
        return true;
    case QEvent::MouseButtonDblClick:
        takeButton(*static_cast<QMouseEvent *>(event), true, true);
        return true;
    case QEvent::MouseButtonRelease:
        takeButton(*static_cast<QMouseEvent *>(event), false, false);
        return true;
    case QEvent::MouseMove: {
        const auto *moved = static_cast<QMouseEvent *>(event);
        take({.type = PointerEvent::Type::Move,
              .ms = qint64(moved->timestamp()),
              .at = moved->position()});
        return true;
    }
    case QEvent::Wheel: {
        const auto *turned = static_cast<QWheelEvent *>(event);
        if (!turned->angleDelta().isNull())
            take({.type = PointerEvent::Type::Wheel,
                  .ms = qint64(turned->timestamp()),
                  .at = turned->position(),
                  .angle = turned->angleDelta()});
        event->accept();
        return true;
    }
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        takeTouch(*static_cast<QTouchEvent *>(event));
        event->accept();
        return true;
    default:
        return QFrame::event(event);
    }
}

void GestureField::takeButton(const QMouseEvent &event, bool isPress, bool isDouble)
{
    using Type = PointerEvent::Type;
    PointerEvent told{.ms = qint64(event.timestamp()), .at = event.position()};
    if (event.button() == Qt::RightButton)
        told.type = isPress ? Type::RightPress : Type::RightRelease;
    else if (event.button() == Qt::LeftButton)
        told.type = isDouble ? Type::DoublePress : isPress ? Type::Press : Type::Release;
    else
        return;
    take(told);
}

void GestureField::takeTouch(const QTouchEvent &event)
{
    using Type = PointerEvent::Type;
    const auto told = [&event](Type type, const QPointF &at) {
        return PointerEvent{
            .type = type, .ms = qint64(event.timestamp()), .at = at, .byTouch = true};
    };
    if (event.type() == QEvent::TouchCancel) {
        finger = -1;
        take(told(Type::Cancel, {}));
        return;
    }
    for (const QEventPoint &point : event.points()) {
        if (point.state() == QEventPoint::Pressed && finger < 0) {
            finger = point.id();
            take(told(Type::Press, point.position()));
        } else if (point.id() == finger && point.state() == QEventPoint::Updated) {
            take(told(Type::Move, point.position()));
        } else if (point.id() == finger && point.state() == QEventPoint::Released) {
            finger = -1;
            take(told(Type::Release, point.position()));
        }
    }
}

void GestureField::take(const PointerEvent &event)
{
    using Type = PointerEvent::Type;
    switch (event.type) {
    case Type::Press:
    case Type::DoublePress:
    case Type::RightPress:
        if (!isDown)
            way = {event.at};
        isDown = true;
        break;
    case Type::Move:
        if (isDown)
            way.append(event.at);
        break;
    case Type::Release:
    case Type::RightRelease:
        way.append(event.at);
        isDown = false;
        break;
    case Type::Cancel:
        isDown = false;
        break;
    case Type::Wheel:
        break;
    }
    if (way.size() > MostPlaces)
        way.remove(0, way.size() - MostPlaces);
    update();
    if (const auto gesture = reader.take(event))
        emit recognised(*gesture);
}

void GestureField::clear()
{
    way.clear();
    update();
}

void GestureField::paintEvent(QPaintEvent *event)
{
    QFrame::paintEvent(event);
    if (way.isEmpty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(foregroundRole()), WayWidth));
    painter.drawPolyline(way);
    painter.drawEllipse(way.first(), StartRing, StartRing);
    painter.setBrush(painter.pen().color());
    painter.drawEllipse(way.last(), EndRing, EndRing);
}
