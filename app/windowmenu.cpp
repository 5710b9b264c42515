// SPDX-License-Identifier: GPL-3.0-or-later

#include "windowmenu.h"

#include "dialogs/calibrationcheck_dlg.h"
#include "dialogs/present.h"
#include "dialogs/tryout_dlg.h"

#include <QContextMenuEvent>
#include <QShortcut>

namespace {

template <typename Window>
void presentOnlyOne(QWidget *parent)
{
    auto *window = parent->findChild<Window *>();
    present(window ? window : new Window(parent));
}

} // namespace

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

void WindowMenu::addTrials()
{
    QWidget *window = parentWidget();
    addAction(tr("&Try out gestures"), window, [window] { presentOnlyOne<TryOut_dlg>(window); });
    addAction(tr("Check c&alibration"), window,
              [window] { presentOnlyOne<CalibrationCheck_dlg>(window); });
}

bool WindowMenu::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ContextMenu)
        return QMenu::eventFilter(watched, event);
    popup(static_cast<QContextMenuEvent *>(event)->globalPos());
    return true;
}
