// SPDX-License-Identifier: GPL-3.0-or-later

#include "datafile.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace sim {

std::optional<QString> DataFile::read(const QString &path, QString *problem)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *problem = tr("%1: cannot be read: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    const QByteArray bytes = file.read(MaxSize + 1);
    if (file.error() != QFileDevice::NoError) {
        *problem = tr("%1: cannot be read: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    if (bytes.size() > MaxSize) {
        *problem = tr("%1: is larger than 1 MiB, which no such file needs").arg(path);
        return std::nullopt;
    }
    return QString::fromUtf8(bytes);
}

std::vector<DataFile::Line> DataFile::lines(const QString &text)
{
    std::vector<Line> found;
    int number = 0;
    for (const QString &line : text.split(u'\n')) {
        ++number;
        const QString words = line.section(u'#', 0, 0).simplified();
        if (!words.isEmpty())
            found.push_back({number, words.split(u' ')});
    }
    return found;
}

QString DataFile::refusal(const QString &file, int line, const QString &reason)
{
    return u"%1:%2: %3"_s.arg(file, QString::number(line), reason);
}

std::optional<qint64> DataFile::number(const QString &word)
{
    bool isNumber = false;
    const qint64 value = word.startsWith("0x"_L1, Qt::CaseInsensitive)
                             ? word.mid(2).toLongLong(&isNumber, 16)
                             : word.toLongLong(&isNumber, 10);
    return isNumber ? std::optional(value) : std::nullopt;
}

} // namespace sim
