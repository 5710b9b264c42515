// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

// What is remembered of the last calibration that a touch frame was told to save from here: when,
// and by how much the touches were off. A frame does not tell it again.
//
// It is kept in the user's data folder and, where there is one, in a folder that users share, for
// the service that measures the frame and has no home: QUORVEL_STATE_DIRECTORY in the environment,
// or else /var/lib/quorvel. Whoever may write there has a file of his own in it, named by his
// number. One that belongs to somebody else than its name says does not count, and no link is
// followed there.
struct LastCalibration
{
    QDateTime date;    // UTC
    int deviation = 0; // per cent, as the frame reported it

    bool operator==(const LastCalibration &) const = default;

    // In the user's data folder.
    static QString filePath();
    // The latest of the user's own and the shared ones. Nothing when none was kept, or the files
    // cannot be read or are damaged.
    static std::optional<LastCalibration> load();
    // False when the user's own cannot be written; the file is as it was then. Whether others are
    // told is left to the folder that they share.
    bool keep() const;
};
