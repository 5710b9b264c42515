// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/link.h"

#include <QAction>

class LightCheck_dlg;

// The menu entry that opens the light check, whose window is made when it is first asked for.
class LightCheckAction : public QAction
{
    Q_OBJECT
public:
    // The link outlives this. The window is the parent of the other.
    LightCheckAction(Link &link, QWidget *window);

private:
    void onTriggered();
    void makeDialog();
    void tellOfLink();

    Link &link;
    QWidget *window;                  // not owned
    LightCheck_dlg *dialog = nullptr; // child of window
};
