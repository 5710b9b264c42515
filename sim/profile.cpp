// SPDX-License-Identifier: GPL-3.0-or-later

#include "profile.h"

#include "datafile.h"
#include "device/commands.h"

#include <QHash>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;
using namespace command;

namespace sim {

namespace {

constexpr qint64 MaxByte = 0xFF;
constexpr qint64 Max16 = 0xFFFF;
constexpr qint64 Max20 = 0xFFFFF;
constexpr qint64 Max24 = 0xFFFFFF;
constexpr qint64 Max32 = 0xFFFFFFFF;
constexpr qint64 MaxQuarterTurns = 3;

// A key with one number.
struct Key
{
    qint64 min;
    qint64 max;
    std::function<void(Profile &, qint64)> store;
};

// The words of the one key that has no number.
constexpr auto EarlyRequestKey = "early-request"_L1;
constexpr auto Drops = "drops"_L1;
constexpr auto Finishes = "finishes"_L1;

const QHash<QString, Key> &keys()
{
    static const QHash<QString, Key> all = {
        {u"release"_s, {0, Max16, [](Profile &p, qint64 v) { p.release = quint16(v); }}},
        {u"product"_s, {0, Max16, [](Profile &p, qint64 v) { p.product = quint16(v); }}},
        {u"lights-x"_s, {1, MaxLightsX, [](Profile &p, qint64 v) { p.lightsX = int(v); }}},
        {u"lights-y"_s, {1, MaxLightsY, [](Profile &p, qint64 v) { p.lightsY = int(v); }}},
        {u"level"_s, {0, MaxByte, [](Profile &p, qint64 v) { p.level = int(v); }}},
        {u"curve"_s, {0, MaxByte, [](Profile &p, qint64 v) { p.curve = int(v); }}},
        {u"noise"_s, {0, MaxByte, [](Profile &p, qint64 v) { p.noise = int(v); }}},
        {u"seed"_s, {0, Max32, [](Profile &p, qint64 v) { p.seed = quint32(v); }}},
        {u"revision"_s, {0, Max24, [](Profile &p, qint64 v) { p.revision = quint32(v); }}},
        {u"checksum"_s, {0, Max32, [](Profile &p, qint64 v) { p.checksum = quint32(v); }}},
        {u"date"_s, {0, Max16, [](Profile &p, qint64 v) { p.date = quint32(v); }}},
        {u"number"_s, {0, Max20, [](Profile &p, qint64 v) { p.number = quint32(v); }}},
        {u"family"_s, {0, MaxByte, [](Profile &p, qint64 v) { p.family = UCHAR(v); }}},
        {u"rotation"_s, {0, MaxQuarterTurns, [](Profile &p, qint64 v) { p.rotation = UCHAR(v); }}},
        {u"default-rotation"_s,
         {0, MaxQuarterTurns, [](Profile &p, qint64 v) { p.defaultRotation = UCHAR(v); }}},
    };
    return all;
}

// Reads the lines of one profile.
class ProfileReader
{
    Q_DECLARE_TR_FUNCTIONS(sim::Profile)

public:
    // Each returns an empty text, or why the line or the whole is refused.
    QString take(const DataFile::Line &line);
    QString finish(int *line) const;

    Profile profile;

private:
    QString takeNumber(const QString &name, const Key &key, const QString &word);
    QString takeEarlyRequest(const QString &word);
    QString takeLight(const QString &name, const QStringList &values, int line);

    QHash<QString, int> seen; // key and the line that it stood on
    std::vector<int> oddLines;
};

QString ProfileReader::take(const DataFile::Line &line)
{
    const QString &name = line.words.first();
    const QStringList values = line.words.mid(1);
    if (name == "dead"_L1 || name == "weak"_L1 || name == "noisy"_L1)
        return takeLight(name, values, line.number);
    const auto key = keys().constFind(name);
    if (key == keys().constEnd() && name != EarlyRequestKey)
        return tr("%1 is not a key of a profile").arg(name);
    if (const auto before = seen.constFind(name); before != seen.constEnd())
        return tr("%1 stands on line %2 already").arg(name).arg(*before);
    seen.insert(name, line.number);
    if (values.isEmpty())
        return tr("%1 has no value").arg(name);
    if (values.size() > 1)
        return tr("%1 takes one value, not %2").arg(name).arg(values.size());
    return name == EarlyRequestKey ? takeEarlyRequest(values.first())
                                   : takeNumber(name, *key, values.first());
}

QString ProfileReader::takeEarlyRequest(const QString &word)
{
    if (word != Drops && word != Finishes)
        return tr("%1 is %2: write drops or finishes").arg(EarlyRequestKey, word);
    profile.earlyRequest = word == Drops ? EarlyRequest::Drops : EarlyRequest::Finishes;
    return {};
}

QString ProfileReader::takeNumber(const QString &name, const Key &key, const QString &word)
{
    const std::optional<qint64> value = DataFile::number(word);
    // 3010 would be another number than the release 3.010 that is meant.
    const bool hexOnly = name == "release"_L1 || name == "product"_L1;
    if (!value || (hexOnly && !word.startsWith("0x"_L1, Qt::CaseInsensitive))) {
        return hexOnly ? tr("%1 is %2: write a hexadecimal number such as 0x3010").arg(name, word)
                       : tr("%1 is %2, which is not a number").arg(name, word);
    }
    if (name.startsWith("lights-"_L1) && *value > key.max)
        return tr("%1 is %2: the largest frame has %3").arg(name, word).arg(key.max);
    if (*value < key.min || *value > key.max) {
        return tr("%1 is %2: it lies between %3 and %4")
            .arg(name, word, QString::number(key.min), QString::number(key.max));
    }
    key.store(profile, *value);
    return {};
}

QString ProfileReader::takeLight(const QString &name, const QStringList &values, int line)
{
    const bool dead = name == "dead"_L1;
    if (values.size() != (dead ? 2 : 3)) {
        return dead ? tr("dead takes an axis and a light, such as: dead x 12")
               : name == "weak"_L1
                   ? tr("weak takes an axis, a light and a level, such as: weak x 12 60")
                   : tr("noisy takes an axis, a light and its noise, such as: noisy x 12 40");
    }
    if (values[0] != "x"_L1 && values[0] != "y"_L1)
        return tr("%1 is not an axis: write x or y").arg(values[0]);
    for (const QString &word : values.mid(1)) {
        if (!DataFile::number(word))
            return tr("%1 is not a number").arg(word);
    }
    const qint64 amount = dead ? 0 : *DataFile::number(values[2]);
    if (amount < 0 || amount > MaxByte) {
        return (name == "noisy"_L1 ? tr("the noise is %1: it lies between 0 and 255")
                                   : tr("the level is %1: it lies between 0 and 255"))
            .arg(values[2]);
    }
    const UCHAR axis = values[0] == "x"_L1 ? settings::AxisX : settings::AxisY;
    const qint64 number = *DataFile::number(values[1]);
    if (number < 0 || number > Max16)
        return tr("there is no light %1").arg(values[1]);
    for (size_t i = 0; i < profile.oddLights.size(); ++i) {
        const OddLight &other = profile.oddLights[i];
        if (other.axis == axis && other.number == number) {
            return tr("light %1 %2 stands on line %3 already")
                .arg(values[0], values[1], QString::number(oddLines[i]));
        }
    }
    OddLight light{.axis = axis, .number = int(number)};
    (name == "noisy"_L1 ? light.noise : light.level) = int(amount);
    profile.oddLights.push_back(light);
    oddLines.push_back(line);
    return {};
}

// What can only be judged once all lines are known: the axes may come after their lights.
QString ProfileReader::finish(int *line) const
{
    for (size_t i = 0; i < profile.oddLights.size(); ++i) {
        const OddLight &light = profile.oddLights[i];
        const bool isX = light.axis == settings::AxisX;
        const int count = isX ? profile.lightsX : profile.lightsY;
        if (light.number >= count) {
            *line = oddLines[i];
            return tr("there is no light %1 %2: the axis has 0 to %3")
                .arg(isX ? u"x"_s : u"y"_s, QString::number(light.number),
                     QString::number(count - 1));
        }
    }
    return {};
}

} // namespace

std::optional<Profile> Profile::parse(const QString &text, const QString &file, QString *problem)
{
    ProfileReader reader;
    for (const DataFile::Line &line : DataFile::lines(text)) {
        if (const QString reason = reader.take(line); !reason.isEmpty()) {
            *problem = DataFile::refusal(file, line.number, reason);
            return std::nullopt;
        }
    }
    int line = 0;
    if (const QString reason = reader.finish(&line); !reason.isEmpty()) {
        *problem = DataFile::refusal(file, line, reason);
        return std::nullopt;
    }
    return reader.profile;
}

std::optional<Profile> Profile::load(const QString &path, QString *problem)
{
    const std::optional<QString> text = DataFile::read(path, problem);
    return text ? parse(*text, path, problem) : std::nullopt;
}

} // namespace sim
