// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPointF>
#include <QtGlobal>

#include <optional>

// What a pointing device did, as the desktop tells of it. Times are in ms of any clock that all
// events share, places in pixels of the desktop.
struct PointerEvent
{
    enum class Type {
        Press,       // of the left button, or of a first finger
        DoublePress, // of the left button, where the desktop takes it for a double click
        Move,
        Release,
        Cancel, // it was no touch after all
        RightPress,
        RightRelease,
        Wheel,
    };
    Type type = Type::Press;
    qint64 ms = 0;
    QPointF at;
    bool byTouch = false; // not of right buttons and wheels
    QPoint angle{};       // of a wheel: 120 a step, away from the user and to the left positive
};

// A gesture that was recognised. "Moved" is how far it was from where it began, at its farthest.
struct Gesture
{
    enum class Kind {
        Click,          // pressed for time, moved distance
        LateClick,      // came time after the one before and distance from it: no double click
        DoubleClick,    // its presses were time and distance apart
        Hold,           // pressed for time, moved distance; no right click came of it
        HeldRightClick, // came time after what is held was pressed, which moved distance
        RightClick,     // of a right button: pressed for time, moved distance
        Drag,           // moved distance in time
        Wheel,          // turned by angle in time
    };
    Kind kind = Kind::Click;
    int time = 0; // ms
    qreal distance = 0;
    bool byTouch = false;
    QPoint angle{};
    bool replaces = false; // the gesture before has become this one

    bool operator==(const Gesture &) const = default;
};

// Recognises the gestures in what pointing devices do, one event after the other. One pointer
// counts at a time: what another one does while the first is down is left out.
class GestureReader
{
public:
    // What the desktop goes by.
    struct Limits
    {
        int doubleClickMs = 400;
        qreal doubleTapPixels = 20; // for the mouse, the desktop says itself what is a double click
        qreal dragPixels = 10;
        int holdMs = 800;
    };
    explicit GestureReader(const Limits &theLimits)
        : limits(theLimits)
    {
    }

    // The gesture that this event completes, or goes on with.
    std::optional<Gesture> take(const PointerEvent &event);

private:
    struct Contact
    {
        qint64 began = 0;
        QPointF at;
        bool byTouch = false;
        qreal moved = 0;
        qint64 ended = 0;
        bool isToldOf = false; // what has been told of it is all there is

        void follow(const QPointF &place);
        Gesture told(Gesture::Kind kind, qint64 until) const;
    };

    std::optional<Gesture> press(const PointerEvent &event);
    std::optional<Gesture> release(const PointerEvent &event);
    std::optional<Gesture> rightPress(const PointerEvent &event);
    std::optional<Gesture> rightRelease(const PointerEvent &event);
    Gesture turn(const PointerEvent &event);

    Limits limits;
    std::optional<Contact> down;      // the left button, or the finger
    std::optional<Contact> rightDown; // the right button, unless it belongs to what is held
    std::optional<Contact> last;      // what was down before, while it matters
    std::optional<Contact> clicked;   // the click that another one may make a double click
    std::optional<Gesture> turned;    // the wheel's gesture, while it may go on
    qint64 turnedAt = 0;
};
