// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

// Files of a test's, read and written at once.

inline QByteArray contentOf(const QString &path, const QByteArray &otherwise = "(cannot be read)")
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : otherwise;
}

inline void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}
