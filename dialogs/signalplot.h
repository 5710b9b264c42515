#pragma once

#include <QFont>
#include <QPixmap>
#include <QPoint>

#include <array>
#include <span>
#include <vector>

// Draws the picture of a signal test: curves of numbered points between two dashed limits.
//
// A full picture has 2550 points, and most of the time of drawing them goes into the text of
// their numbers. So each number is drawn once, with the dot below it, and kept: the picture is the
// one that comes of drawing text, dot and line of point after point.
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

    // Draws on white, in the order given, then the limits, which are in signal units. The picture
    // is of Size at any whole device pixel ratio.
    void draw(QPixmap &picture, std::span<const Curve> curves, int upper, int lower);

private:
    // Number and dot of a point, relative to the point.
    struct Mark
    {
        QPixmap pixmap; // null until it is needed
        QPoint corner;
    };

    void drawCurve(QPainter &painter, const Curve &curve);
    Mark makeMark(Axis axis, int number) const;

    std::array<std::vector<Mark>, 2> marks; // per axis, by number - 1
    qreal ratio = 0;                        // device pixels per pixel of the marks
};
