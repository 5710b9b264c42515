// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAnyStringView>
#include <QApplication>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QPushButton>
#include <QString>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

// What a test looks for among the windows of the tool.

// The first window of a class; nullptr without one.
template <typename Window>
Window *topLevel()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *found = qobject_cast<Window *>(widget))
            return found;
    }
    return nullptr;
}

// All that a user knows as windows, shown or not.
inline QWidgetList windowsOfTool()
{
    QWidgetList all;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->inherits("QDialog") || window->inherits("QMainWindow"))
            all.append(window);
    }
    return all;
}

// Of a window, however it is held, what has this name.
template <typename Widget = QPushButton>
Widget *in(const auto &window, QAnyStringView name)
{
    return std::to_address(window)->template findChild<Widget *>(name.toString());
}

// A button, as a mouse does.
void press(const auto &window, QAnyStringView name)
{
    QTest::mouseClick(in(window, name), Qt::LeftButton);
}

// Waits for a dialog of this kind while the one who opened it waits for its end.
template <typename Dialog>
void whenOpen(const std::function<void(Dialog *)> &action)
{
    auto *timer = new QTimer(qApp);
    timer->setInterval(20);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, action] {
        if (auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget())) {
            timer->deleteLater();
            timer->stop();
            action(dialog);
        }
    });
    timer->start();
}

// Needs dialogs of the toolkit's own (Qt::AA_DontUseNativeDialogs).
inline void chooseFile(QFileDialog *dialog, const QString &path)
{
    dialog->findChild<QLineEdit *>()->setText(path);
    QTest::keyClick(dialog, Qt::Key_Return);
}

inline int pixelsOf(const QImage &image, QColor colour)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) == colour ? 1 : 0;
    }
    return count;
}
