// SPDX-License-Identifier: GPL-3.0-or-later

#include "scanfile.h"

#include "logreader.h"
#include "words.h"

#include "device/commands.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <cmath>

using namespace Qt::StringLiterals;

namespace lights {

namespace {

constexpr auto ScanFormat = "quorvel-lights"_L1;
constexpr int ScanVersion = 1;
constexpr double LargestPitch = 1000; // mm

int mostLights(Axis axis)
{
    return axis == Axis::X ? command::MaxLightsX : command::MaxLightsY;
}

// Reads the members of one measurement; the first thing that is wrong ends it.
class JsonReader
{
    Q_DECLARE_TR_FUNCTIONS(lights::ScanFile)

public:
    bool read(const QJsonObject &object)
    {
        if (object["format"_L1].toString() != ScanFormat)
            return refuse(
                tr(R"(no measurement of lights: "format" has to be "%1")").arg(ScanFormat));
        if (object["version"_L1].toInt() != ScanVersion)
            return refuse(tr("\"version\" has to be %1").arg(ScanVersion));
        const QJsonObject unit = object["unit"_L1].toObject();
        result.unit = {unit["identification"_L1].toString(), unit["name"_L1].toString()};
        if (const QJsonValue date = object["date"_L1]; !date.isUndefined()) {
            result.date = QDateTime::fromString(date.toString(), Qt::ISODate).toUTC();
            if (!result.date.isValid())
                return refuse(tr("\"date\" is no date such as 2026-01-31T12:00:00Z"));
        }
        const QJsonObject axes = object["axes"_L1].toObject();
        for (const Axis axis : Axes) {
            const QJsonValue value = axes[key(axis)];
            if (!value.isUndefined() && !readAxis(axis, value.toObject()))
                return false;
        }
        if (result.x.lights == 0 && result.y.lights == 0)
            return refuse(tr("it has neither axis"));
        return true;
    }

    Measurement result;
    QString reason;

private:
    bool refuse(const QString &why)
    {
        reason = why;
        return false;
    }
    bool readAxis(Axis axis, const QJsonObject &object);
    bool readNumbers(Axis axis, const QJsonValue &value, QLatin1StringView name, double min,
                     double max, std::vector<float> &into);

    int lights = 0;
};

bool JsonReader::readAxis(Axis axis, const QJsonObject &object)
{
    AxisMeasurement &measured = result.axis(axis);
    lights = object["lights"_L1].toInt();
    if (lights < 1 || lights > mostLights(axis)) {
        return refuse(tr("\"lights\" of %1 has to be a whole number from 1 to %2")
                          .arg(key(axis))
                          .arg(mostLights(axis)));
    }
    measured.lights = lights;
    const QJsonArray scans = object["scans"_L1].toArray();
    if (scans.isEmpty())
        return refuse(tr("%1 has no scans").arg(key(axis)));
    for (qsizetype s = std::max<qsizetype>(0, scans.size() - MaxScans); s < scans.size(); ++s) {
        if (!readNumbers(axis, scans[s], "scans"_L1, 0, LargestLevel,
                         measured.scans.emplace_back()))
            return false;
    }
    if (const QJsonValue gains = object["gains"_L1]; !gains.isUndefined()) {
        if (!readNumbers(axis, gains, "gains"_L1, 0, 255, measured.gains))
            return false;
    }
    if (const QJsonValue offsets = object["offsets"_L1]; !offsets.isUndefined()) {
        std::vector<float> numbers;
        if (!readNumbers(axis, offsets, "offsets"_L1, -128, 127, numbers))
            return false;
        for (const float number : numbers)
            measured.offsets.push_back(std::isnan(number) ? 0 : int(number));
    }
    if (const QJsonValue off = object["off"_L1]; !off.isUndefined()) {
        measured.off.assign(size_t(lights), false);
        for (const auto number : off.toArray()) {
            const int light = number.toInt(-1);
            if (light < 0 || light >= lights)
                return refuse(tr("\"off\" of %1 names a light that is not there").arg(key(axis)));
            measured.off[size_t(light)] = true;
        }
    }
    if (const QJsonValue pitch = object["pitch"_L1]; !pitch.isUndefined()) {
        measured.pitch = pitch.toDouble();
        if (!(*measured.pitch > 0 && *measured.pitch <= LargestPitch))
            return refuse(tr("\"pitch\" of %1 has to be millimetres above 0").arg(key(axis)));
    }
    return true;
}

// Null is no number and stands for what is not known.
bool JsonReader::readNumbers(Axis axis, const QJsonValue &value, QLatin1StringView name, double min,
                             double max, std::vector<float> &into)
{
    const QJsonArray array = value.toArray();
    if (array.size() != lights) {
        return refuse(tr("\"%1\" of %2 has %3 numbers where there are %4 lights")
                          .arg(name, key(axis))
                          .arg(array.size())
                          .arg(lights));
    }
    for (const auto entry : array) {
        const double number = entry.isNull() ? std::nan("") : entry.toDouble(max + 1);
        if (number < min || number > max) {
            return refuse(tr("\"%1\" of %2 has to be numbers from %3 to %4")
                              .arg(name, key(axis))
                              .arg(min)
                              .arg(max));
        }
        into.push_back(float(number));
    }
    return true;
}

QJsonArray numbersOf(const std::vector<float> &values)
{
    QJsonArray array;
    for (const float value : values) {
        // Levels of a log are quarters; what is finer was computed.
        if (std::isnan(value))
            array.append(QJsonValue());
        else
            array.append(std::round(double(value) * 1000) / 1000);
    }
    return array;
}

QJsonObject axisToJson(const AxisMeasurement &measured)
{
    QJsonArray scans;
    for (const Scan &scan : measured.scans)
        scans.append(numbersOf(scan));
    QJsonObject object{{u"lights"_s, measured.lights}, {u"scans"_s, scans}};
    if (!measured.gains.empty())
        object[u"gains"_s] = numbersOf(measured.gains);
    if (!measured.offsets.empty()) {
        QJsonArray offsets;
        for (const int offset : measured.offsets)
            offsets.append(offset);
        object[u"offsets"_s] = offsets;
    }
    if (!measured.off.empty()) {
        QJsonArray off;
        for (int i = 0; i < measured.lights; ++i) {
            if (measured.off[size_t(i)])
                off.append(i);
        }
        object[u"off"_s] = off;
    }
    if (measured.pitch)
        object[u"pitch"_s] = *measured.pitch;
    return object;
}

// The first light of which no scan says anything; nothing if there is none.
std::optional<int> neverRead(const AxisMeasurement &measured)
{
    for (int i = 0; i < measured.lights; ++i) {
        const bool isRead =
            std::any_of(measured.scans.begin(), measured.scans.end(),
                        [i](const Scan &scan) { return !std::isnan(scan[size_t(i)]); });
        if (!isRead)
            return i;
    }
    return {};
}

} // namespace

std::optional<Measurement> ScanFile::load(const QString &path, QString *problem)
{
    const auto refuse = [&](const QString &sentence) -> std::optional<Measurement> {
        *problem = sentence;
        return std::nullopt;
    };
    if (!QFileInfo(path).isFile()) {
        return refuse(QFileInfo::exists(path) ? tr("%1 is no file").arg(path)
                                              : tr("%1 does not exist").arg(path));
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return refuse(tr("%1 cannot be read: %2").arg(path, file.errorString()));
    const bool isJson = file.peek(64).trimmed().startsWith('{');
    const qint64 largest = isJson ? LargestJson : LargestLog;
    if (file.size() > largest)
        return refuse(tr("%1 is larger than %2 MiB").arg(path).arg(largest >> 20));
    if (isJson)
        return fromJson(file.read(largest), path, problem);
    return fromLog(file, path, problem);
}

std::optional<Measurement> ScanFile::fromJson(const QByteArray &text, const QString &file,
                                              QString *problem)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    JsonReader reader;
    if (document.isNull()) {
        reader.reason = tr("damaged, at byte %1: %2").arg(error.offset).arg(error.errorString());
    } else if (reader.read(document.object())) {
        for (const Axis axis : Axes) {
            if (const auto light = neverRead(reader.result.axis(axis)))
                reader.reason = tr("light %1 was never read").arg(lightName(axis, *light));
        }
    }
    if (reader.reason.isEmpty())
        return reader.result;
    *problem = tr("%1: %2").arg(file, reader.reason);
    return std::nullopt;
}

std::optional<Measurement> ScanFile::fromLog(QIODevice &device, const QString &file,
                                             QString *problem)
{
    LogReader reader;
    if (reader.read(device)) {
        for (const Axis axis : Axes) {
            // A test of one axis logs the title of both.
            if (reader.result.axis(axis).scans.empty())
                reader.result.axis(axis) = {};
            else if (const auto light = neverRead(reader.result.axis(axis)))
                reader.reason = tr("light %1 was never read").arg(lightName(axis, *light));
        }
        if (reader.result.x.lights == 0 && reader.result.y.lights == 0)
            reader.reason = tr("it has no scan");
    }
    if (reader.reason.isEmpty())
        return reader.result;
    *problem = tr("%1: %2").arg(file, reader.reason);
    return std::nullopt;
}

QJsonObject ScanFile::toJson(const Measurement &measurement)
{
    QJsonObject object{{u"format"_s, ScanFormat}, {u"version"_s, ScanVersion}};
    if (measurement.date.isValid()) {
        // Read again it is no older than it was.
        const QDateTime date = measurement.date.toUTC();
        object[u"date"_s] = date.toString(date.time().msec() > 0 ? Qt::ISODateWithMs : Qt::ISODate);
    }
    QJsonObject unit;
    if (!measurement.unit.identification.isEmpty())
        unit[u"identification"_s] = measurement.unit.identification;
    if (!measurement.unit.name.isEmpty())
        unit[u"name"_s] = measurement.unit.name;
    if (!unit.isEmpty())
        object[u"unit"_s] = unit;
    QJsonObject axes;
    for (const Axis axis : Axes) {
        if (measurement.axis(axis).lights > 0)
            axes[key(axis)] = axisToJson(measurement.axis(axis));
    }
    object[u"axes"_s] = axes;
    return object;
}

} // namespace lights
