// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QPointF>
#include <QSize>
#include <QSizeF>

#include <optional>

// How far touches are from the crosses that are asked for one after the other, and what that says
// of the calibration. Places are native pixels of the screen. Crosses have the numbers 0 to 8: the
// corners, the edges, each clockwise from the top left, and the middle.
//
// A touch belongs to the cross that was asked for, wherever it is: a frame that is turned or
// mirrored may put it beside another one.
class CalibrationCheck
{
public:
    static constexpr int Crosses = 9;
    static constexpr qreal CrossArm = 20; // from its middle, in pixels of an unscaled display

    // The worst touch that is good, the greater of the two: half of the smallest thing that a
    // finger is asked to hit, in pixels of an unscaled display; and half of the finger. A mean is
    // good up to half of that. docs/decisions.md derives them.
    static constexpr qreal LargestGoodPixels = 12;
    static constexpr qreal LargestGoodMillimetres = 4;
    // A finger that bounces off touches once.
    static constexpr qint64 BounceMs = 300;

    enum class Verdict { Passed, CalibrateAgain };

    struct Screen
    {
        QSize pixels;
        QSizeF millimetres; // what it says of itself; empty if nothing
        qreal scale = 1;
    };

    explicit CalibrationCheck(const Screen &theScreen);

    const QSize &size() const { return screen.pixels; }
    qreal scale() const { return screen.scale; }
    QPoint cross(int number) const;
    // The number of the cross that is to be touched, Crosses when all have been.
    int asked() const { return int(touches.size()); }
    bool isFinished() const { return asked() == Crosses; }

    void begin();
    // A touch, at so many ms of any clock. It does not count where all crosses have been touched,
    // and where it is the one before bouncing.
    bool take(const QPointF &at, qint64 ms);
    // The touch before is to be done once more.
    void takeBack();

    // Of crosses that have been touched; what has a mean and a worst one needs a touch.
    QPointF touch(int number) const { return touches[number]; }
    qreal distance(int number) const; // pixels
    qreal meanDistance() const;
    int worst() const; // its number

    // Of a pixel, each way. Nothing if the screen does not say how large it is, or cannot be so.
    std::optional<QSizeF> pixelMillimetres() const;
    // The same in mm; only where pixelMillimetres() knows them.
    qreal distanceInMillimetres(int number) const;
    qreal meanInMillimetres() const;

    // What the verdict goes by, in pixels.
    qreal largestGoodWorst() const;
    qreal largestGoodMean() const { return largestGoodWorst() / 2; }
    // When it is finished.
    Verdict verdict() const;

private:
    QPointF off(int number) const;

    Screen screen;
    QList<QPointF> touches;
    qint64 lastAt = 0; // ms, of the touch before
};
