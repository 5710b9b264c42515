// SPDX-License-Identifier: GPL-3.0-or-later

#include <QApplication>
#include <QWidget>

// What the program is compared with: no Qt program with a window does less.
int main(int argc, char **argv)
{
    const QApplication app(argc, argv);
    QWidget window;
    window.show();
    return QApplication::exec();
}
