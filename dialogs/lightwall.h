// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lights/report.h"
#include "lights/touch.h"
#include "lights/wall.h"

#include <QWidget>

#include <optional>

// The frame of a report as it stands on the wall, with its lights along the edges. One of them is
// chosen, by a click or with the arrow keys; a click, Enter or the space bar opens it.
class LightWall : public QWidget
{
    Q_OBJECT
public:
    explicit LightWall(QWidget *parent = nullptr);

    // The report lives on, and does not change until it is given again.
    void setReport(const lights::Report &theReport);
    void choose(const lights::LightPlace &place);
    // Shows a place of several lights until another light is chosen.
    void mark(lights::Axis axis, int first, int last);

signals:
    void chosen(const lights::LightPlace &place);
    void opened(const lights::LightPlace &place);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    struct Mark
    {
        lights::Axis axis = lights::Axis::X;
        int first = 0;
        int last = 0;
    };

    lights::Wall wall() const;
    int lightsOn(lights::Axis axis) const;
    void go(lights::Axis axis, int number);
    void speak();

    const lights::Report *report = nullptr; // not owned
    std::vector<lights::TouchFault> faults;
    std::optional<Mark> marked;
};
