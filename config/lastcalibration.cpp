#include "lastcalibration.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

constexpr int Version = 1;
constexpr qint64 LargestFile = 4096;

} // namespace

QString LastCalibration::filePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           u"/quorvel/last-calibration.json"_s;
}

std::optional<LastCalibration> LastCalibration::load()
{
    const QFileInfo info(filePath());
    QFile file(info.filePath());
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    const QJsonObject kept = QJsonDocument::fromJson(file.read(LargestFile)).object();
    const LastCalibration found{
        QDateTime::fromString(kept.value(u"date"_s).toString(), Qt::ISODate),
        kept.value(u"deviation_percent"_s).toInt(-1)};
    if (kept.value(u"version"_s).toInt() != Version || !found.date.isValid() || found.deviation < 0)
        return {};
    return found;
}

bool LastCalibration::keep() const
{
    QSaveFile file(filePath());
    if (!QDir().mkpath(QFileInfo(file.fileName()).path()) || !file.open(QIODevice::WriteOnly))
        return false;
    file.write(QJsonDocument({{u"version"_s, Version},
                              {u"date"_s, date.toUTC().toString(Qt::ISODate)},
                              {u"deviation_percent"_s, deviation}})
                   .toJson());
    return file.commit();
}
