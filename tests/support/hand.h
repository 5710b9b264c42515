// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPoint>
#include <QProcess>

// A person's mouse and keyboard: what they do comes from the X server. False: it was not done.
namespace hand {

inline bool does(const QStringList &words)
{
    return QProcess::execute(QStringLiteral("xdotool"), words) == 0;
}

// At a place of the screen, and what the mouse does there; words are separated by single spaces.
inline bool mouse(QPoint place, const QString &deeds = {})
{
    return does(QStringList{QStringLiteral("mousemove"), QString::number(place.x()),
                            QString::number(place.y())} +
                deeds.split(u' ', Qt::SkipEmptyParts));
}

inline bool click(QPoint place, int button = 1)
{
    return mouse(place, QStringLiteral("click %1").arg(button));
}

inline bool press(const QString &key)
{
    return does({QStringLiteral("key"), key});
}

// A window by its number, within its frame.
inline bool move(quintptr window, QPoint to)
{
    return does({QStringLiteral("windowmove"), QString::number(window), QString::number(to.x()),
                 QString::number(to.y())});
}

} // namespace hand
