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
    Tray();

    void hide() { iTrayIcon.hide(); }

signals:
    void activated(QSystemTrayIcon::ActivationReason reason);
    void showAsked();
    void exitAsked();

private:
    QMenu iTraymenu;
    QAction *ShowAction = nullptr; // of iTraymenu
    QAction *ExitAction = nullptr; // of iTraymenu
    QSystemTrayIcon iTrayIcon;
};
