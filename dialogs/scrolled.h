// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QPoint>
#include <QSize>

#include <array>

class QScrollBar;
class QWidget;

// Lets a widget whose children stand at fixed places be smaller than they need: scroll bars, the
// wheel and the keyboard bring into view what lies outside. To each other, children keep their
// places.
class Scrolled : public QObject
{
    Q_OBJECT
public:
    // What is scrolled, and what it needs to show everything, from its corner on.
    Scrolled(QWidget *content, QSize whole);

    // By how much is scrolled: not at all when there is room.
    QPoint offset() const { return shown; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void layOut();
    void scroll();
    void follow(const QWidget *focus);
    QSize view() const;

    QWidget *content; // parent
    QSize whole;
    QPoint shown;
    std::array<QScrollBar *, 2> bars{}; // of content; horizontal, vertical; none until needed
};

// Makes a window that is larger than the screen as large as fits, whenever it is shown, and lets it
// be scrolled then; and keeps its place (see keepPlace()). Its size by now is what it needs. The
// result belongs to the window.
Scrolled *keepOnScreen(QWidget *window);

// The same for a window whose layout lets it be smaller: it is not scrolled.
void keepWithinScreen(QWidget *window);
