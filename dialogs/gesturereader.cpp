// SPDX-License-Identifier: GPL-3.0-or-later

#include "gesturereader.h"

#include <QLineF>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

// A frame lets the left button go before it presses the right one.
constexpr qint64 ButtonChangeMs = 100;
// Clicks that are farther apart were not meant to be one.
constexpr qint64 LateClickMs = 1500;
// A wheel that rests so long has been let go.
constexpr qint64 WheelRestMs = 500;

int milliseconds(qint64 from, qint64 until)
{
    return int(std::clamp<qint64>(until - from, 0, std::numeric_limits<int>::max()));
}

qreal between(const QPointF &one, const QPointF &other)
{
    return QLineF(one, other).length();
}

bool isSameWay(const QPoint &one, const QPoint &other)
{
    return qint64(one.x()) * other.x() + qint64(one.y()) * other.y() > 0;
}

} // namespace

void GestureReader::Contact::follow(const QPointF &place)
{
    moved = std::max(moved, between(at, place));
}

Gesture GestureReader::Contact::told(Gesture::Kind kind, qint64 until) const
{
    return {
        .kind = kind, .time = milliseconds(began, until), .distance = moved, .byTouch = byTouch};
}

std::optional<Gesture> GestureReader::take(const PointerEvent &event)
{
    using Type = PointerEvent::Type;
    if (event.type == Type::Wheel)
        return turn(event);
    if (event.type != Type::Move)
        turned.reset();
    const bool isOthers = down && down->byTouch != event.byTouch;
    switch (event.type) {
    case Type::Press:
    case Type::DoublePress:
        return isOthers ? std::nullopt : press(event);
    case Type::Move:
        if (down && !isOthers)
            down->follow(event.at);
        if (rightDown && !event.byTouch)
            rightDown->follow(event.at);
        return {};
    case Type::Release:
        return isOthers ? std::nullopt : release(event);
    case Type::Cancel:
        if (!isOthers)
            down.reset();
        return {};
    case Type::RightPress:
        return rightPress(event);
    case Type::RightRelease:
        return rightRelease(event);
    case Type::Wheel:
        break;
    }
    return {};
}

std::optional<Gesture> GestureReader::press(const PointerEvent &event)
{
    down = Contact{.began = event.ms, .at = event.at, .byTouch = event.byTouch};
    last.reset();
    if (!clicked || clicked->byTouch != event.byTouch)
        return {};
    const qreal apart = between(clicked->at, event.at);
    const int since = milliseconds(clicked->began, event.ms);
    const bool isDouble = event.byTouch
                              ? since <= limits.doubleClickMs && apart <= limits.doubleTapPixels
                              : event.type == PointerEvent::Type::DoublePress;
    if (!isDouble)
        return {};
    clicked.reset();
    down->isToldOf = true;
    return Gesture{.kind = Gesture::Kind::DoubleClick,
                   .time = since,
                   .distance = apart,
                   .byTouch = event.byTouch,
                   .replaces = true};
}

std::optional<Gesture> GestureReader::release(const PointerEvent &event)
{
    if (!down)
        return {};
    down->follow(event.at);
    Contact contact = *std::exchange(down, {});
    contact.ended = event.ms;
    const std::optional<Contact> before = std::exchange(clicked, {});
    if (contact.moved >= limits.dragPixels)
        return contact.told(Gesture::Kind::Drag, event.ms);
    if (contact.isToldOf)
        return {};
    last = contact;
    if (milliseconds(contact.began, event.ms) >= limits.holdMs)
        return contact.told(Gesture::Kind::Hold, event.ms);
    clicked = contact;
    if (!before || before->byTouch != contact.byTouch ||
        contact.began - before->began > LateClickMs)
        return contact.told(Gesture::Kind::Click, event.ms);
    return Gesture{.kind = Gesture::Kind::LateClick,
                   .time = milliseconds(before->began, contact.began),
                   .distance = between(before->at, contact.at),
                   .byTouch = contact.byTouch};
}

std::optional<Gesture> GestureReader::rightPress(const PointerEvent &event)
{
    clicked.reset();
    if (down && !down->isToldOf) {
        down->isToldOf = true;
        return down->told(Gesture::Kind::HeldRightClick, event.ms);
    }
    if (last && event.ms - last->ended <= ButtonChangeMs) {
        Gesture gesture = last->told(Gesture::Kind::HeldRightClick, event.ms);
        gesture.replaces = true;
        last.reset();
        return gesture;
    }
    if (!down)
        rightDown = Contact{.began = event.ms, .at = event.at};
    return {};
}

std::optional<Gesture> GestureReader::rightRelease(const PointerEvent &event)
{
    if (!rightDown)
        return {};
    rightDown->follow(event.at);
    return std::exchange(rightDown, {})->told(Gesture::Kind::RightClick, event.ms);
}

Gesture GestureReader::turn(const PointerEvent &event)
{
    clicked.reset();
    last.reset();
    if (turned && event.ms - turnedAt <= WheelRestMs && isSameWay(turned->angle, event.angle)) {
        turned->angle += event.angle;
        turned->time += milliseconds(turnedAt, event.ms);
        turned->replaces = true;
    } else {
        turned = Gesture{.kind = Gesture::Kind::Wheel, .angle = event.angle};
    }
    turnedAt = event.ms;
    return *turned;
}
