// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QVector>

#include <array>
#include <functional>

class QWidget;

// Curves of an axis, one value for each light; an empty one is not shown.
struct AxisCurves
{
    QVector<double> levels;   // 0 to 255
    QVector<double> expected; // of healthy lights
    QVector<double> baseline; // levels then, NaN where there was none
    QVector<double> change;   // since then, in percent, NaN likewise
    QVector<int> bad;         // numbers of lights that are not healthy
};

// What a picture of curves tells and asks; axis is 0 for X and 1 for Y.
struct CurvesListener
{
    std::function<void(int axis, int light)> chosen;
    std::function<void(int axis, int light)> opened;
    std::function<QString(int axis, int light)> wordsFor;
};

// The curves of both axes with the limit below which no touch is seen, and what has changed below
// them, to be zoomed into: with the wheel, by dragging, with + and - and 0. The light under the
// pointer is told in words; the arrow keys choose one.
class Curves
{
public:
    virtual QWidget *widget() = 0;
    virtual void setCurves(const std::array<AxisCurves, 2> &curves, double limit) = 0;
    virtual void choose(int axis, int light) = 0;
    // Zooms so that these can be seen among their neighbours.
    virtual void zoomTo(int axis, int first, int last) = 0;

protected:
    ~Curves() = default;
};

// Makes them. Its implementation is a module, since nothing else needs the library that draws them.
class CurvesMaker
{
public:
    static constexpr const char *Name = "curves";

    // They belong to their widget, which belongs to its parent.
    virtual Curves *make(QWidget *parent, CurvesListener listener) = 0;

protected:
    ~CurvesMaker() = default;
};
