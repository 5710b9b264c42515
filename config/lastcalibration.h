#pragma once

#include <QDateTime>

#include <optional>

// What is remembered of the last calibration that a touch frame was told to save from here: when,
// and by how much the touches were off. A frame does not tell it again.
struct LastCalibration
{
    QDateTime date;    // UTC
    int deviation = 0; // per cent, as the frame reported it

    bool operator==(const LastCalibration &) const = default;

    // In the user's data folder.
    static QString filePath();
    // Nothing when none was kept, or the file cannot be read or is damaged.
    static std::optional<LastCalibration> load();
    // False when it cannot be written; the file is as it was then.
    bool keep() const;
};
