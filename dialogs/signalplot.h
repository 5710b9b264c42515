// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFont>
#include <QImage>
#include <QPixmap>
#include <QPoint>
#include <QRect>

#include <array>
#include <functional>
#include <span>
#include <vector>

class QPainter;

// Draws the picture of a signal test: curves of numbered points between two dashed limits.
//
// A full picture has 2550 points; drawing text, dot and line of each takes long on a small
// computer. So each number with its dot, and each short line, is drawn once and kept as the pixels
// that it covers. They are laid down in the same order: the picture is the same.
class SignalPlot
{
public:
    static constexpr QSize Size{880, 490}; // of the picture
    static constexpr int FullScale = 1100; // signal units over the height of the picture
    static constexpr QSize BackgroundSize{950, 535};
    static constexpr QPoint PictureInBackground{45, 25};

    enum class Axis { X, Y };
    struct Curve
    {
        Axis axis;
        std::span<const QPoint> points; // point 0 is numbered 1; at most command::MaxLightsX
    };

    // The row of a level in signal units, counted from the top.
    static constexpr int row(int level)
    {
        return Size.height() - level * Size.height() / FullScale;
    }
    // Without subpixels, whose colours could not be kept apart from what is below them.
    static QFont numberFont();
    // The scale, in pixels of the background.
    static void drawScale(QPixmap &background, const QFont &font);

    // An image for a picture: Size at a whole device pixel ratio.
    static QImage makePicture(int ratio);
    // Draws on white, in the order given, then the limits, which are in signal units. The picture
    // is one of makePicture().
    void draw(QImage &picture, std::span<const Curve> curves, int upper, int lower);

private:
    struct Pixel
    {
        qint16 x; // device pixels from the point
        qint16 y;
        QRgb colour; // premultiplied
    };
    struct Stamp
    {
        QRect bounds;
        std::vector<Pixel> pixels; // none until it is needed
    };
    // What a curve is drawn on.
    struct Canvas;

    void drawCurve(Canvas &canvas, const Curve &curve);
    void drawLine(Canvas &canvas, Axis axis, QPoint from, QPoint to);
    Stamp makeMark(Axis axis, int number) const;
    Stamp makeLine(Axis axis, QPoint to) const;
    Stamp makeStamp(int reach, const std::function<void(QPainter &)> &drawing) const;

    int ratio = 0;                           // device pixels per pixel of what is kept
    std::array<std::vector<Stamp>, 2> marks; // per axis, by number - 1
    std::array<std::vector<Stamp>, 2> lines; // per axis, by direction; none until one is needed
};
