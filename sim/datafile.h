// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace sim {

// Profiles and fault plans are text: words on lines, '#' starts a comment, empty lines mean
// nothing. A file that is wrong is refused with its name, the line and the reason.
class DataFile
{
    Q_DECLARE_TR_FUNCTIONS(sim::DataFile)

public:
    static constexpr qint64 MaxSize = 1 << 20; // bytes

    struct Line
    {
        int number; // from 1
        QStringList words;
    };

    // Nothing for a file that cannot be read; problem then says why.
    static std::optional<QString> read(const QString &path, QString *problem);
    static std::vector<Line> lines(const QString &text);
    static QString refusal(const QString &file, int line, const QString &reason);
    // A decimal number, or a hexadecimal one that begins with 0x.
    static std::optional<qint64> number(const QString &word);
};

} // namespace sim
