// SPDX-License-Identifier: GPL-3.0-or-later

#include "tray.h"

#include <QAction>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>

#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;

Tray::Tray(const QList<QAction *> &entries)
    : iTrayIcon(QGuiApplication::windowIcon())
{
    ShowAction = iTraymenu.addAction(tr("Show"));
    iTraymenu.addSeparator();
    iTraymenu.addActions(entries);
    iTraymenu.addSeparator();
    ExitAction = iTraymenu.addAction(tr("Exit"));
    iTrayIcon.setContextMenu(&iTraymenu);
    connect(&iTrayIcon, &QSystemTrayIcon::activated, this, &Tray::activated);
    connect(ShowAction, &QAction::triggered, this, &Tray::showAsked);
    connect(ExitAction, &QAction::triggered, this, &Tray::exitAsked);
    QMetaObject::invokeMethod(&iTrayIcon, &QSystemTrayIcon::show, Qt::QueuedConnection);
}

void Tray::tellIfThereIsNone(QWidget *window)
{
    if (QSystemTrayIcon::isSystemTrayAvailable())
        return;
    const QString words = tr("This desktop has no tray to hide in. Start quorvel again to show its "
                             "window, or quorvel -close to end it.");
    std::fprintf(stderr, "%s\n", qPrintable(words));
    if (std::exchange(toldThatThereIsNone, true))
        return;
    auto *box = new QMessageBox(QMessageBox::Information, tr("Quorvel goes on"), words,
                                QMessageBox::Close, window);
    connect(box->addButton(tr("Show the window"), QMessageBox::AcceptRole), &QPushButton::clicked,
            this, &Tray::showAsked);
    connect(box->addButton(tr("End Quorvel"), QMessageBox::DestructiveRole), &QPushButton::clicked,
            this, &Tray::exitAsked);
    box->setObjectName(u"noTray"_s);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    box->show();
}
