// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDialog>

class QTextBrowser;

// A window that shows the manual, for machines without a browser. It is gone when it is closed.
class HelpWindow : public QDialog
{
    Q_OBJECT
public:
    // The folder with the pages of the manual. Without one, every page says where to get it.
    explicit HelpWindow(QString folder);

    // A page, or a heading of it: page.html#heading.
    void showPlace(const QString &place);

private:
    QString folder;
    QTextBrowser *browser; // child
};
