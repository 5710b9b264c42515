// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace bundle {

// A file of a support file.
struct Entry
{
    QString name;
    QString about;      // in a few words, what it is
    QByteArray content; // what is written
    QString shown;      // the same for a person to read
};

// Writes a zip archive with the entries, in their order, whole or not at all: it takes the place of
// an archive that is there, and of nothing else. An empty text, or why it failed and what helps.
QString writeArchive(const QString &path, const QList<Entry> &entries);

} // namespace bundle
