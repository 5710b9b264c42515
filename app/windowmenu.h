// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMenu>

// The menu of the main window. It opens by a right click anywhere on the window, by the Menu key
// and by Shift+F10.
class WindowMenu : public QMenu
{
    Q_OBJECT
public:
    explicit WindowMenu(QWidget *window);

    // A widget of the window that takes the right click, or swallows it, as disabled buttons do.
    void openOn(QWidget *widget) { widget->installEventFilter(this); }

    // Entries for what shows how a touch arrives. They make their windows, which belong to the
    // menu's, when they are first chosen.
    void addTrials();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
