#include "tray.h"

#include <QAction>

using namespace Qt::StringLiterals;

Tray::Tray()
    : iTrayIcon(QIcon(u":/new/ico/image/MalvoTouch Tool Menu.png"_s))
{
    ShowAction = iTraymenu.addAction(tr("Show"));
    iTraymenu.addSeparator();
    ExitAction = iTraymenu.addAction(tr("Exit"));
    iTrayIcon.setToolTip(tr("Quorvel"));
    iTrayIcon.setContextMenu(&iTraymenu);
    connect(&iTrayIcon, &QSystemTrayIcon::activated, this, &Tray::activated);
    connect(ShowAction, &QAction::triggered, this, &Tray::showAsked);
    connect(ExitAction, &QAction::triggered, this, &Tray::exitAsked);
    QMetaObject::invokeMethod(&iTrayIcon, &QSystemTrayIcon::show, Qt::QueuedConnection);
}
