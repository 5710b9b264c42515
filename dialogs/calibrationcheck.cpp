// SPDX-License-Identifier: GPL-3.0-or-later

#include "calibrationcheck.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// A cross stands so much of the shorter side within the edge, and has room for its arms there.
constexpr int EdgeParts = 16;
constexpr qreal ArmRoom = 4;

// No touch frame is smaller, and screens that do not know their size give that of a postcard or of
// their proportions (16 x 9).
constexpr qreal SmallestDiagonal = 200; // mm
constexpr qreal LargestPixel = 5;       // mm; of a wall of light emitting diodes
constexpr qreal MostOblong = 1.1;       // a pixel

// In halves of what lies between the edges.
constexpr std::array<QPoint, CalibrationCheck::Crosses> Places{
    QPoint(0, 0), QPoint(2, 0), QPoint(2, 2), QPoint(0, 2), QPoint(1, 0),
    QPoint(2, 1), QPoint(1, 2), QPoint(0, 1), QPoint(1, 1)};

qreal length(const QPointF &vector)
{
    return std::hypot(vector.x(), vector.y());
}

} // namespace

CalibrationCheck::CalibrationCheck(const Screen &theScreen)
    : screen(theScreen)
{
}

QPoint CalibrationCheck::cross(int number) const
{
    const int width = screen.pixels.width();
    const int height = screen.pixels.height();
    const int inset =
        std::max(std::min(width, height) / EdgeParts, qRound((CrossArm + ArmRoom) * screen.scale));
    const auto place = [inset](int side, int halves) {
        return halves == 0 ? inset : halves == 1 ? side / 2 : side - 1 - inset;
    };
    const QPoint &at = Places[size_t(number)];
    return {place(width, at.x()), place(height, at.y())};
}

void CalibrationCheck::begin()
{
    touches.clear();
}

bool CalibrationCheck::take(const QPointF &at, qint64 ms)
{
    const bool isBounce = !touches.isEmpty() && ms >= lastAt && ms - lastAt < BounceMs;
    if (isFinished() || isBounce)
        return false;
    touches.append(at);
    lastAt = ms;
    return true;
}

void CalibrationCheck::takeBack()
{
    if (!touches.isEmpty())
        touches.removeLast();
}

QPointF CalibrationCheck::off(int number) const
{
    return touches[number] - cross(number);
}

qreal CalibrationCheck::distance(int number) const
{
    return length(off(number));
}

qreal CalibrationCheck::meanDistance() const
{
    qreal sum = 0;
    for (int number = 0; number < asked(); ++number)
        sum += distance(number);
    return sum / asked();
}

int CalibrationCheck::worst() const
{
    int worst = 0;
    for (int number = 1; number < asked(); ++number)
        if (distance(number) > distance(worst))
            worst = number;
    return worst;
}

std::optional<QSizeF> CalibrationCheck::pixelMillimetres() const
{
    const QSizeF all = screen.millimetres;
    if (all.isEmpty() || std::hypot(all.width(), all.height()) < SmallestDiagonal)
        return {};
    const QSizeF pixel(all.width() / screen.pixels.width(), all.height() / screen.pixels.height());
    const auto [less, more] = std::minmax({pixel.width(), pixel.height()});
    if (more > LargestPixel || more > less * MostOblong)
        return {};
    return pixel;
}

qreal CalibrationCheck::distanceInMillimetres(int number) const
{
    const QSizeF pixel = pixelMillimetres().value_or(QSizeF());
    return length({off(number).x() * pixel.width(), off(number).y() * pixel.height()});
}

qreal CalibrationCheck::meanInMillimetres() const
{
    qreal sum = 0;
    for (int number = 0; number < asked(); ++number)
        sum += distanceInMillimetres(number);
    return sum / asked();
}

qreal CalibrationCheck::largestGoodWorst() const
{
    const qreal pixels = LargestGoodPixels * screen.scale;
    const auto pixel = pixelMillimetres();
    if (!pixel)
        return pixels;
    return std::max(pixels, LargestGoodMillimetres / std::max(pixel->width(), pixel->height()));
}

CalibrationCheck::Verdict CalibrationCheck::verdict() const
{
    const bool isGood =
        distance(worst()) <= largestGoodWorst() && meanDistance() <= largestGoodMean();
    return isGood ? Verdict::Passed : Verdict::CalibrateAgain;
}
