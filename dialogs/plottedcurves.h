// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "curves.h"

#include <qcustomplot.h>

#include <optional>

// Curves as QCustomPlot draws them, in the colours of the desktop.
class PlottedCurves final : public QCustomPlot, public Curves
{
    Q_OBJECT
public:
    PlottedCurves(QWidget *parent, CurvesListener theListener);

    QWidget *widget() override { return this; }
    void setCurves(const std::array<AxisCurves, 2> &curves, double limit) override;
    void choose(int axis, int light) override;
    void zoomTo(int axis, int first, int last) override;

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    // One axis of the frame: its levels, and their change below. The plot owns what is in it.
    struct Panel
    {
        QCPAxisRect *levels = nullptr;
        QCPAxisRect *changes = nullptr;
        QCPGraph *level = nullptr;
        QCPGraph *expected = nullptr;
        QCPGraph *baseline = nullptr;
        QCPGraph *bad = nullptr;
        QCPGraph *change = nullptr;
        QCPItemStraightLine *limit = nullptr;
        QCPItemStraightLine *cursor = nullptr;
        int lights = 0;
    };
    struct Place
    {
        int axis = 0;
        int light = 0;
    };

    void build(int axis);
    void fill(Panel &panel, const AxisCurves &curves);
    QCPAxisRect *addRect(int row, int column, double lower, double upper);
    QCPItemStraightLine *addLine(QCPAxisRect *rect);
    void takeColors();
    void showCursor();
    void showWords(std::optional<Place> place);
    std::optional<Place> placeAt(QPointF point) const;
    void setRange(int axis, double from, double to);
    void zoom(double factor);
    void go(int axis, int light);

    CurvesListener listener;
    std::array<Panel, 2> panels;
    QCPItemText *words = nullptr; // the plot's
    Place chosen;
    QPointF pressedAt;
};
