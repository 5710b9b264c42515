// SPDX-License-Identifier: GPL-3.0-or-later

#include "drawntool.h"

#include "app/mainwindow.h"
#include "dialogs/calend_dlg.h"
#include "dialogs/lightplot.h"
#include "sim/profile.h"
#include "tests/support/fakeadapter.h"
#include "tests/support/settingshome.h"
#include "tests/support/widgets.h"

#include <QGuiApplication>
#include <QHash>
#include <QRadioButton>
#include <QScreen>

#include <memory>

namespace outside {

namespace {

QHash<QString, QRect> everyPlace()
{
    const SettingsHome home;
    const auto frame = std::make_shared<FakeAdapter>();
    frame->present = false;
    const MainWindow main(frame);
    const CalEnd_dlg question;
    QHash<QString, QRect> places;
    for (const QWidget *window : windowsOfTool()) {
        places[window->objectName()] = QRect(QPoint(), window->size());
        for (const QWidget *widget : window->findChildren<QWidget *>()) {
            if (widget->window() != window)
                continue;
            // Such a button takes clicks on its words only.
            const bool isNarrower = qobject_cast<const QRadioButton *>(widget) != nullptr;
            const QSize size =
                isNarrower ? widget->size().boundedTo(widget->sizeHint()) : widget->size();
            places[window->objectName() + u'/' + widget->objectName()] =
                QRect(widget->mapTo(window, QPoint()), size);
        }
    }
    return places;
}

} // namespace

QRect drawnAt(const char *name)
{
    static const QHash<QString, QRect> places = everyPlace();
    const auto found = places.constFind(QString::fromLatin1(name));
    if (found == places.cend())
        qFatal("the tool has no %s", name);
    return *found;
}

QPoint drawnLightX(int number)
{
    const QSize screen = QGuiApplication::primaryScreen()->size();
    const sim::Profile frame;
    LightPlot lights;
    lights.setScreen(screen, 1);
    lights.setCounts(frame.lightsX, frame.lightsY);
    const LightPlot::Light wanted{LightPlot::Axis::X, number};
    const int bottom = screen.height() - 1;
    int first = 0;
    while (first < screen.width() && lights.lightAt({first, bottom}) != wanted)
        ++first;
    int end = first;
    while (end < screen.width() && lights.lightAt({end, bottom}) == wanted)
        ++end;
    if (first == end)
        qFatal("no place of the light screen is that of light %d", number);
    return {(first + end) / 2, bottom};
}

} // namespace outside
