// SPDX-License-Identifier: GPL-3.0-or-later

#include "history.h"

#include "device/plainfile.h"
#include "scanfile.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace lights {

namespace {

// Of a unit; more are neither listed nor read.
constexpr int MostFiles = 1000;
const QString DateFormat = u"yyyyMMdd'T'hhmmss'Z'"_s;

const QString &keyOf(const Unit &unit)
{
    return unit.identification.isEmpty() ? unit.name : unit.identification;
}

} // namespace

QString History::usualFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           u"/quorvel/lights"_s;
}

History::History(QString theFolder)
    : folder(std::move(theFolder))
{
}

// Any text makes a name that stands for one folder below ours.
QString History::folderOf(const Unit &unit) const
{
    const QByteArray name = QUrl::toPercentEncoding(keyOf(unit), {}, "._~");
    return folder + u'/' + QString::fromLatin1(name);
}

bool History::remember(const Measurement &measurement, QString *problem) const
{
    if (keyOf(measurement.unit).isEmpty()) {
        *problem = tr("The unit says nothing of itself: give it a name to remember it by.");
        return false;
    }
    if (!measurement.date.isValid()) {
        *problem = tr("The measurement has no date.");
        return false;
    }
    const QString place = folderOf(measurement.unit);
    if (!QDir().mkpath(place)) {
        *problem = tr("The folder %1 cannot be made.").arg(place);
        return false;
    }
    const QString path = place + u'/' + measurement.date.toUTC().toString(DateFormat) + u".json"_s;
    const QString reason =
        plainfile::replace(path, QJsonDocument(ScanFile::toJson(measurement)).toJson());
    if (!reason.isEmpty())
        *problem = tr("%1 cannot be written: %2.").arg(path, reason);
    return reason.isEmpty();
}

std::vector<Measurement> History::recall(const Unit &unit, QStringList *problems) const
{
    std::vector<Measurement> kept;
    if (keyOf(unit).isEmpty())
        return kept;
    const QDir place(folderOf(unit));
    QStringList names = place.entryList({u"*.json"_s}, QDir::Files, QDir::Name | QDir::Reversed);
    names = names.mid(0, MostFiles);
    for (const QString &name : names) {
        QString problem;
        auto measurement = ScanFile::load(place.filePath(name), &problem);
        if (measurement && !measurement->date.isValid()) {
            problem = tr("%1: it has no date").arg(place.filePath(name));
            measurement.reset();
        }
        if (measurement && isOf(*measurement, unit, place.filePath(name), &problem))
            kept.push_back(std::move(*measurement));
        else
            *problems += problem;
    }
    std::sort(kept.begin(), kept.end(),
              [](const Measurement &a, const Measurement &b) { return a.date < b.date; });
    return kept;
}

bool History::isOf(const Measurement &measurement, const Unit &unit, const QString &file,
                   QString *problem)
{
    if (keyOf(measurement.unit) == keyOf(unit))
        return true;
    *problem = tr("%1: it is of another unit, %2 and not %3")
                   .arg(file, keyOf(measurement.unit), keyOf(unit));
    return false;
}

} // namespace lights
