#include "windowmenu.h"

#include <QContextMenuEvent>
#include <QShortcut>

WindowMenu::WindowMenu(QWidget *window)
    : QMenu(window)
{
    openOn(window);
    // Qt knows the Menu key only.
    const auto *shiftF10 = new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F10), window);
    connect(shiftF10, &QShortcut::activated, this, [this, window] {
        const QWidget *at = window->focusWidget() ? window->focusWidget() : window;
        popup(at->mapToGlobal(at->rect().center()));
    });
}

bool WindowMenu::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ContextMenu)
        return QMenu::eventFilter(watched, event);
    popup(static_cast<QContextMenuEvent *>(event)->globalPos());
    return true;
}
