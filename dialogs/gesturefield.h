// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "gesturereader.h"

#include <QFrame>
#include <QPolygonF>

class QTouchEvent;

// A field in which a pointing device, be it a finger, is tried out. It draws where the pointer went
// while it was down, and recognises what that was; for the desktop's settings, see limits().
class GestureField : public QFrame
{
    Q_OBJECT
public:
    explicit GestureField(QWidget *parent = nullptr);

    // What the desktop takes for a double click and so on.
    static GestureReader::Limits limits();

    // Takes away what is drawn.
    void clear();

signals:
    void recognised(const Gesture &gesture);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void takeButton(const QMouseEvent &event, bool isPress, bool isDouble);
    void takeTouch(const QTouchEvent &event);
    void take(const PointerEvent &event);

    GestureReader reader;
    int finger = -1; // the id of the touch that counts
    bool isDown = false;
    QPolygonF way; // of the last pointer that was down, this widget's pixels
};
