// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "measurement.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace lights {

// The measurements that somebody has kept of each unit: a folder for each, a file for each date.
//
// A unit goes by its identification, and by its name where it gives none. Files are this tool's own
// JSON; each is written whole or not at all.
class History
{
    Q_DECLARE_TR_FUNCTIONS(lights::History)

public:
    // The user's data folder, the same for all programs of this project.
    static QString usualFolder();

    explicit History(QString theFolder = usualFolder());

    // False, and the reason in problem, if it cannot be kept: a unit without identification and
    // name, a measurement without a date, a folder that takes nothing.
    bool remember(const Measurement &measurement, QString *problem) const;

    // What was kept of a unit, oldest first. Files that are damaged or of another unit are left
    // out; each has a sentence in problems.
    std::vector<Measurement> recall(const Unit &unit, QStringList *problems) const;

    // Whether a measurement is of that unit; problem then says how they differ.
    static bool isOf(const Measurement &measurement, const Unit &unit, const QString &file,
                     QString *problem);

private:
    QString folderOf(const Unit &unit) const;

    const QString folder;
};

} // namespace lights
