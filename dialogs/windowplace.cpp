// SPDX-License-Identifier: GPL-3.0-or-later

#include "windowplace.h"

#include "config/windowplaces.h"
#include "showing.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// With a title bar.
constexpr QMargins UsualFrame(2, 28, 2, 4);

class PlaceKeeper : public QObject
{
public:
    explicit PlaceKeeper(QWidget *kept)
        : QObject(kept)
        , window(kept)
    {
        window->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show && showing.begins())
            returnTo();
        else if (event->type() == QEvent::Hide && showing.ends())
            take();
        return QObject::eventFilter(watched, event);
    }

private:
    void returnTo()
    {
        const bool isFirst = std::exchange(isNew, false);
        if (isFirst) {
            isGiven = window->testAttribute(Qt::WA_Moved);
            if (!isGiven)
                corner = windowplaces::of(window->objectName());
        }
        if (!corner)
            return;
        const QRect bounds =
            isFirst ? window->geometry().marginsAdded(windowFrame()) : window->frameGeometry();
        const QRect left(*corner, bounds.size());
        const QScreen *screen = QGuiApplication::screenAt(left.center());
        if (!screen)
            return;
        const QRect room = screen->availableGeometry();
        const QPoint place(
            std::clamp(left.x(), room.left(), std::max(room.left(), room.right() - left.width())),
            std::clamp(left.y(), room.top(), std::max(room.top(), room.bottom() - left.height())));
        window->move(place);
        // The window manager else finds a place for a window that only the user has moved.
        if (QWindow *handle = window->windowHandle())
            handle->setFramePosition(place);
    }

    void take()
    {
        if (isGiven || (window->windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen)))
            return;
        corner = window->frameGeometry().topLeft();
        windowplaces::keep(window->objectName(), *corner);
    }

    QWidget *window; // parent
    Showing showing{window};
    bool isNew = true;
    bool isGiven = false;         // its place, by the program
    std::optional<QPoint> corner; // of its frame, when it was hidden
};

} // namespace

QMargins windowFrame()
{
    QMargins most = UsualFrame;
    for (const QWindow *window : QGuiApplication::topLevelWindows())
        most = most | window->frameMargins();
    return most;
}

void keepPlace(QWidget *window)
{
    if (!QGuiApplication::platformName().startsWith("wayland"_L1))
        new PlaceKeeper(window);
}
