// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "bundle/ziparchive.h"
#include "capture/history.h"

#include <QAction>

class SupportFile_dlg;

// The menu entry that gathers a support file and shows it. What travels on the link is remembered
// for that from the start.
class SupportFileAction : public QAction
{
    Q_OBJECT
public:
    // The link outlives this. The window is where the files are shown.
    SupportFileAction(Link &link, QWidget *window);

private:
    void onTriggered();
    QList<bundle::Entry> gather();

    Link &link;
    QWidget *window;                   // not owned
    SupportFile_dlg *dialog = nullptr; // child of window; there from its first use on
    capture::History history;
    bool gathering = false;
};
