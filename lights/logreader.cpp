// SPDX-License-Identifier: GPL-3.0-or-later

#include "logreader.h"

#include "words.h"

#include "device/commands.h"

#include <QIODevice>
#include <QList>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace lights {

namespace {

// A row of the largest frame has some 4,000 bytes.
constexpr qint64 LongestLine = 64 * 1024;

QList<QByteArrayView> fieldsOf(QByteArrayView line)
{
    QList<QByteArrayView> fields;
    while (true) {
        const qsizetype comma = line.indexOf(',');
        fields.append((comma < 0 ? line : line.first(comma)).trimmed());
        if (comma < 0)
            return fields;
        line = line.sliced(comma + 1);
    }
}

void keepNewest(std::vector<Scan> &scans)
{
    // Erased rarely, as all that stay move.
    if (scans.size() >= 2 * size_t(MaxScans))
        scans.erase(scans.begin(), scans.end() - MaxScans);
}

} // namespace

bool LogReader::read(QIODevice &device)
{
    while (!device.atEnd()) {
        const QByteArray text = device.readLine(LongestLine);
        ++line;
        if (text.size() >= LongestLine - 1)
            return refuse(tr("too long for a line of a signal test's log"));
        const QByteArrayView content = QByteArrayView(text).trimmed();
        if (line == 1) {
            if (!readTitle(content))
                return false;
        } else if (!content.isEmpty() && !readRow(content)) {
            return false;
        }
    }
    if (line == 0) {
        reason = tr("it is empty");
        return false;
    }
    for (const Axis axis : Axes) {
        std::vector<Scan> &scans = result.axis(axis).scans;
        if (scans.size() > size_t(MaxScans))
            scans.erase(scans.begin(), scans.end() - MaxScans);
    }
    return true;
}

bool LogReader::refuse(const QString &why)
{
    reason = tr("line %1: %2").arg(line).arg(why);
    return false;
}

// Date,Time,X000,...,Y000,...,NG/PASS
bool LogReader::readTitle(QByteArrayView content)
{
    const QList<QByteArrayView> fields = fieldsOf(content);
    const QString noTitle = tr("not the title of a signal test's log: Date,Time,X000,...");
    if (fields.size() < 3 || fields[0] != "Date" || fields[1] != "Time")
        return refuse(noTitle);
    qsizetype at = 2;
    for (const auto &[axis, letter, most] : {std::tuple(Axis::X, 'X', command::MaxLightsX),
                                             std::tuple(Axis::Y, 'Y', command::MaxLightsY)}) {
        int &lights = result.axis(axis).lights;
        for (; at < fields.size() && fields[at].startsWith(letter); ++at, ++lights) {
            bool isNumber = false;
            if (fields[at].sliced(1).toByteArray().toInt(&isNumber) != lights || !isNumber)
                return refuse(noTitle);
        }
        if (lights > most)
            return refuse(tr("no frame has more than %1 lights on %2").arg(most).arg(letter));
    }
    if (at == 2 || (at < fields.size() && fields[at] != "NG/PASS"))
        return refuse(noTitle);
    return true;
}

bool LogReader::readRow(QByteArrayView content)
{
    const QList<QByteArrayView> fields = fieldsOf(content);
    const int lightsX = result.x.lights;
    const int lightsY = result.y.lights;
    qsizetype at = 0;
    if (fields.size() > 1 && fields[1].contains(':')) {
        const QDateTime date = QDateTime::fromString(
            u"20%1 %2"_s.arg(QString::fromLatin1(fields[0]), QString::fromLatin1(fields[1])),
            u"yyyyMMdd hh:mm:ss:zzz"_s);
        if (date.isValid())
            result.date = date.toUTC();
        at = 2;
        // A scan that has ended early leaves nothing behind it.
        if (lightsX > 0 && fields.size() > at + 1) {
            if (!readLevels(Axis::X, fields, at, 1))
                return false;
            at += lightsX;
        }
    }
    const qsizetype left = fields.size() - at;
    if (lightsY == 0 || left <= 2)
        return true;
    bool hasTwoCommas = left >= 2 * qsizetype(lightsY) - 1;
    for (qsizetype i = at + 1; hasTwoCommas && i < at + 2 * qsizetype(lightsY) - 1; i += 2)
        hasTwoCommas = fields[i].isEmpty();
    return readLevels(Axis::Y, fields, at, hasTwoCommas ? 2 : 1);
}

// Lights of a page that got lost have empty fields.
bool LogReader::readLevels(Axis axis, const QList<QByteArrayView> &fields, qsizetype first,
                           int step)
{
    AxisMeasurement &measured = result.axis(axis);
    Scan scan(size_t(measured.lights), std::nanf(""));
    bool isRead = false;
    for (int i = 0; i < measured.lights; ++i) {
        const qsizetype at = first + qsizetype(i) * step;
        if (at >= fields.size() || fields[at].isEmpty())
            continue;
        bool isNumber = false;
        const double value = fields[at].toByteArray().toDouble(&isNumber);
        if (!isNumber || !(value >= 0 && value <= LargestLevel * LogUnitPerLevel)) {
            return refuse(tr("the level of light %1 is no number from 0 to %2")
                              .arg(lightName(axis, i))
                              .arg(LargestLevel * LogUnitPerLevel));
        }
        scan[size_t(i)] = float(value / LogUnitPerLevel);
        isRead = true;
    }
    if (isRead)
        measured.scans.push_back(std::move(scan));
    keepNewest(measured.scans);
    return true;
}

} // namespace lights
