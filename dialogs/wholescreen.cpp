// SPDX-License-Identifier: GPL-3.0-or-later

#include "wholescreen.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimerEvent>

#include <algorithm>

namespace {

constexpr int LookMs = 300;
constexpr int Looks = 10;

} // namespace

void WholeScreen::cover(const QRect &screen)
{
    if (screen.isValid())
        setGeometry(screen);
    // Not showFullScreen(), which shows a window that is being shown already: newer toolkits take
    // that for another showing.
    setWindowState((windowState() & ~Qt::WindowMinimized) | Qt::WindowFullScreen);
    // Without a window manager nobody else gives it the keyboard.
    activateWindow();
    covered = screen;
    looksLeft = Looks;
    look.start(LookMs, this);
}

// A window manager that is slow to notice that a window was hidden forgets what was asked of its
// next showing, and may have moved it aside with a monitor that went.
void WholeScreen::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != look.timerId()) {
        QDialog::timerEvent(event);
        return;
    }
    if (--looksLeft == 0)
        look.stop();
    if (isElsewhere()) {
        setWindowState(windowState() & ~Qt::WindowFullScreen);
        setGeometry(covered);
        setWindowState(windowState() | Qt::WindowFullScreen);
    }
}

// While its screen is there. Compositors neither tell places nor forget.
bool WholeScreen::isElsewhere() const
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    return isVisible() && QGuiApplication::platformName() == u"xcb" && geometry() != covered &&
           std::any_of(screens.begin(), screens.end(),
                       [this](const QScreen *screen) { return screen->geometry() == covered; });
}
