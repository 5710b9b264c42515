// SPDX-License-Identifier: GPL-3.0-or-later

#include "windowplaces.h"

#include "device/filedescriptor.h"
#include "device/plainfile.h"
#include "xml_class.h"

#include <QByteArrayList>
#include <QFile>

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype MostBytes = 4096;
constexpr int Farthest = 32767; // what display servers count to

bool isPlace(QPoint corner)
{
    return std::abs(corner.x()) <= Farthest && std::abs(corner.y()) <= Farthest;
}

// Plainly, since a start waits for it: mostly there is nothing to read.
QByteArrayList readLines()
{
    // A pipe would be waited for.
    const FileDescriptor file(::open(QFile::encodeName(windowplaces::filePath()).constData(),
                                     O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status = {};
    if (!file.isValid() || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    QByteArray text(MostBytes, '\0');
    text.resize(std::max<ssize_t>(0, ::read(file.get(), text.data(), size_t(text.size()))));
    return text.split('\n');
}

std::optional<QPoint> cornerIn(const QByteArray &line)
{
    const QByteArrayList words = line.split(' ');
    bool isX = false;
    bool isY = false;
    if (words.size() != 3)
        return {};
    const QPoint corner(words[1].toInt(&isX), words[2].toInt(&isY));
    return isX && isY && isPlace(corner) ? std::optional(corner) : std::nullopt;
}

} // namespace

QString windowplaces::filePath()
{
    return XML_CLASS::filePath() + "-windows"_L1;
}

std::optional<QPoint> windowplaces::of(const QString &window)
{
    const QByteArray begin = window.toUtf8() + ' ';
    for (const QByteArray &line : readLines()) {
        if (line.startsWith(begin))
            return cornerIn(line);
    }
    return {};
}

void windowplaces::keep(const QString &window, QPoint corner)
{
    const QByteArray begin = window.toUtf8() + ' ';
    if (begin.size() == 1 || begin.count(' ') > 1 || begin.contains('\n') || !isPlace(corner))
        return;
    QByteArray text;
    for (const QByteArray &line : readLines()) {
        const std::optional<QPoint> known = cornerIn(line);
        if (!line.startsWith(begin) && known)
            text += line + '\n';
        else if (known == corner)
            return;
    }
    text += begin + QByteArray::number(corner.x()) + ' ' + QByteArray::number(corner.y()) + '\n';
    plainfile::replace(filePath(), text);
}
