// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/records.h"

#include <QPixmap>
#include <QPoint>
#include <QSize>
#include <QString>

#include <array>
#include <optional>

class QPainter;

// The levels of every light, and the picture of them: those of the X axis along the bottom edge of
// the screen, those of the Y axis along its left edge.
//
// Everything is in native pixels of the screen, so that a step of a level is a pixel at any
// display scaling; only text and the distances it keeps grow with the scaling. Levels are kept,
// not points: after a change of the screen or of the counts each light stands where it belongs.
class LightPlot
{
public:
    enum class Axis { X, Y };
    struct Light
    {
        Axis axis;
        int number; // 0-based
        bool operator==(const Light &) const = default;
    };

    // The screen to draw for: its size in native pixels, and the display scaling.
    void setScreen(QSize size, qreal scale);

    // How many lights the device has, 0 to 65535; only the first command::MaxLightsX and
    // MaxLightsY are kept and drawn.
    void setCounts(int x, int y);
    int lights(Axis axis) const { return axis == Axis::X ? XTotal : YTotal; }

    // Takes in one page of a scan; one that comes while its axis has no lights is ignored.
    // X: true if the page reaches the last light, what it holds behind that is not looked at.
    bool storeX(const command::ScanPage &page);
    void storeY(const command::ScanPage &page);

    // No lights and no levels: the device is another one.
    void forget();

    // The light to mark, if any, and its values as the label gives them.
    void choose(std::optional<Light> light, const QString &adc, const QString &agc);

    // The light whose curve is near this point of the picture, if one is.
    std::optional<Light> lightAt(QPoint point) const;

    // Drawn anew only if something has changed. Native size of the screen, at ratio 1.
    const QPixmap &picture();
    // Until somebody wants to see it again.
    void dropPicture();

private:
    struct Level
    {
        UCHAR adc = 0;
        UCHAR agc = 0;
        bool operator==(const Level &) const = default;
    };

    // Where the curves pass a light, 0 to its axis's count - 1.
    QPoint XADC_point(int i) const;
    QPoint XAGC_point(int i) const;
    QPoint YADC_point(int i) const;
    QPoint YAGC_point(int i) const;

    void draw();
    void drawX(QPainter &painter) const;
    void drawY(QPainter &painter) const;
    void drawLabel(QPainter &painter, QPoint anchor, QPoint offset) const;
    template <typename T>
    void change(T &value, const T &to);

    QSize screen;
    qreal scale = 1;
    int XTotal = 0;
    int YTotal = 0;
    std::array<Level, command::MaxLightsX> XLevels; // 0 where no scan has come yet
    std::array<Level, command::MaxLightsY> YLevels;
    std::optional<Light> chosen;
    QString chosenAdc;
    QString chosenAgc;
    QPixmap mainmap;
    bool stale = true; // mainmap shows something older than the members above
};
