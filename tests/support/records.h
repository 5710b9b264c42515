// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "capture/reader.h"

#include <QList>

// All that a recording tells, which has to be whole.
inline QList<capture::Record> recordsIn(const QString &path)
{
    QString problem;
    const auto reader = capture::Reader::open(path, &problem);
    if (!reader)
        qFatal("%s", qPrintable(problem));
    QList<capture::Record> records;
    while (const auto record = reader->next())
        records += *record;
    if (!reader->problem().isEmpty() || reader->isCutShort())
        qFatal("a damaged recording");
    return records;
}
