// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "frame.h"
#include "reported.h"
#include "tests/support/widgets.h"

#include <QElapsedTimer>
#include <QPushButton>

// A window and a user who works in it.
class TriedWindow
{
public:
    TriedWindow(MainWindow &main, TriedFrame &theFrame, Reported &whatCame)
        : window(main)
        , frame(theFrame)
        , reported(whatCame)
    {
        sinceDeed.start();
    }
    TriedWindow(const TriedWindow &) = delete;
    TriedWindow &operator=(const TriedWindow &) = delete;
    virtual ~TriedWindow() = default;

    virtual QWidget *widget() const = 0;
    virtual void open() { widget()->show(); }
    bool isOpen() const { return widget() && widget()->isVisible(); }
    // Often, while it is open and a frame is linked.
    virtual void goOn() {}
    // What a user does when nothing comes.
    virtual void again()
    {
        widget()->close();
        open();
    }
    virtual void openPort() { window.OpenUart(frame.port(), {}); }
    // What is shown and no frame has said; empty for nothing.
    virtual QString untrue() { return {}; }
    // It shows nothing of any frame.
    virtual bool isUnknown() { return false; }
    // It shows, or has done, what the frame that is there now is like.
    virtual bool isRight() = 0;
    // Whatever is to be right has to come from now on.
    virtual void beginAnew() {}

protected:
    template <typename Widget>
    Widget *the() const
    {
        return window.findChild<Widget *>();
    }
    void press(const QWidget *parent, const char *button) const { in(parent, button)->click(); }
    // True at most once in so many ms.
    bool isTimeFor(int ms)
    {
        if (!sinceDeed.hasExpired(ms))
            return false;
        sinceDeed.start();
        return true;
    }

    MainWindow &window;
    TriedFrame &frame;
    Reported &reported;
    QElapsedTimer sinceDeed;
};
