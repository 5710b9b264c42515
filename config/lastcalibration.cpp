// SPDX-License-Identifier: GPL-3.0-or-later

#include "lastcalibration.h"

#include "device/plainfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int Version = 1;
constexpr qint64 LargestFile = 4096;

QString sharedFolder()
{
    return qEnvironmentVariable("QUORVEL_STATE_DIRECTORY", u"/var/lib/quorvel"_s);
}

QString sharedName(uid_t user)
{
    return u"calibration-%1.json"_s.arg(user);
}

QByteArray textOf(const LastCalibration &calibration)
{
    return QJsonDocument({{u"version"_s, Version},
                          {u"date"_s, calibration.date.toUTC().toString(Qt::ISODate)},
                          {u"deviation_percent"_s, calibration.deviation}})
        .toJson();
}

std::optional<LastCalibration> fromText(const QByteArray &text)
{
    const QJsonObject kept = QJsonDocument::fromJson(text).object();
    const LastCalibration found{
        QDateTime::fromString(kept.value(u"date"_s).toString(), Qt::ISODate),
        kept.value(u"deviation_percent"_s).toInt(-1)};
    if (kept.value(u"version"_s).toInt() != Version || !found.date.isValid() || found.deviation < 0)
        return {};
    return found;
}

// What stands in the way is neither waited for nor followed.
std::optional<LastCalibration> sharedBy(const QFileInfo &entry)
{
    const FileDescriptor opened(::open(QFile::encodeName(entry.filePath()).constData(),
                                       O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat node = {};
    if (!opened.isValid() || ::fstat(opened.get(), &node) != 0 || !S_ISREG(node.st_mode) ||
        entry.fileName() != sharedName(node.st_uid))
        return {};
    QFile file;
    if (!file.open(opened.get(), QIODevice::ReadOnly))
        return {};
    return fromText(file.read(LargestFile));
}

std::optional<LastCalibration> keptByUser()
{
    const QFileInfo info(LastCalibration::filePath());
    QFile file(info.filePath());
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    return fromText(file.read(LargestFile));
}

// Services of other users read it; without the folder nobody asks for it.
void share(const QByteArray &text)
{
    if (QFileInfo(sharedFolder()).isDir())
        plainfile::replace(sharedFolder() + u'/' + sharedName(::geteuid()), text,
                           plainfile::Readers::Everybody);
}

} // namespace

QString LastCalibration::filePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           u"/quorvel/last-calibration.json"_s;
}

std::optional<LastCalibration> LastCalibration::load()
{
    std::optional<LastCalibration> latest = keptByUser();
    const QFileInfoList shared =
        QDir(sharedFolder()).entryInfoList({u"calibration-*.json"_s}, QDir::Files);
    for (const QFileInfo &entry : shared) {
        const auto found = sharedBy(entry);
        if (found && (!latest || found->date > latest->date))
            latest = found;
    }
    return latest;
}

bool LastCalibration::keep() const
{
    const QByteArray text = textOf(*this);
    share(text);
    return QDir().mkpath(QFileInfo(filePath()).path()) &&
           plainfile::replace(filePath(), text).isEmpty();
}
