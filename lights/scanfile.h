// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "measurement.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QJsonObject>
#include <QString>

#include <optional>

class QIODevice;

namespace lights {

// What is larger is refused before it is read. A log is read line by line; JSON takes several times
// its size of memory.
inline constexpr qint64 LargestLog = 64 * 1024 * 1024;
inline constexpr qint64 LargestJson = 16 * 1024 * 1024;

// A measurement in a file: this tool's own JSON, or the log that a signal test writes
// (TestLog.csv). Each of these returns nothing for what is neither, is damaged, or has an axis of
// which a light was never read, and tells the file and the reason in problem.
class ScanFile
{
    Q_DECLARE_TR_FUNCTIONS(lights::ScanFile)

public:
    // Takes either, as its first bytes say. Only regular files are opened: others can block.
    static std::optional<Measurement> load(const QString &path, QString *problem);
    static std::optional<Measurement> fromJson(const QByteArray &text, const QString &file,
                                               QString *problem);
    // Read line by line; of long logs the newest scans are kept.
    static std::optional<Measurement> fromLog(QIODevice &device, const QString &file,
                                              QString *problem);

    // The object that fromJson() reads; further members may be added.
    static QJsonObject toJson(const Measurement &measurement);
};

} // namespace lights
