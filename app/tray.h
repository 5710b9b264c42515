// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

class QAction;

// The icon in the tray and its menu. It appears with the event loop, which a start that only hands
// over to a running instance never runs.
class Tray : public QObject
{
    Q_OBJECT
public:
    // These entries stand in the menu too. The icon is the program's.
    explicit Tray(const QList<QAction *> &entries);

    void hide() { iTrayIcon.hide(); }
    void setIcon(const QIcon &icon) { iTrayIcon.setIcon(icon); }
    // How the tool is, as a sentence that names it.
    void tell(const QString &state) { iTrayIcon.setToolTip(state); }

    // A window has gone where the tray should be. On a desktop without one this says how to get it
    // back: on standard error, and the first time in a window too.
    void tellIfThereIsNone(QWidget *window);

signals:
    void activated(QSystemTrayIcon::ActivationReason reason);
    void showAsked();
    void exitAsked();

private:
    QMenu iTraymenu;
    QAction *ShowAction = nullptr; // of iTraymenu
    QAction *ExitAction = nullptr; // of iTraymenu
    QSystemTrayIcon iTrayIcon;
    bool toldThatThereIsNone = false;
};
