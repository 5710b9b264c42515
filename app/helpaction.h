// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAction>
#include <QPointer>

class HelpWindow;

// The menu entry for the manual, and F1 in every window of the program: each opens the manual where
// it tells of that window. Nothing of it is there before it is first asked for.
class HelpAction : public QAction
{
    Q_OBJECT
public:
    // The window that the menu entry is about.
    explicit HelpAction(QWidget *window);
    ~HelpAction() override;

    // Where the manual tells of the window of that widget, as page.html#heading.
    static QString placeOf(const QWidget *widget);
    // Where the manual of a program in this folder was installed, or built; empty if there is none.
    static QString installed(const QString &programFolder);

    // Shows the manual of another folder from now on.
    void setFolder(const QString &newFolder) { folder = newFolder; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void open(const QWidget *about);

    QString folder;              // that of this program, when none was set
    QPointer<HelpWindow> manual; // from its first showing until it is closed
};
