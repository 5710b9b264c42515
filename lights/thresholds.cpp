// SPDX-License-Identifier: GPL-3.0-or-later

#include "thresholds.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <cmath>
#include <variant>

using namespace Qt::StringLiterals;

namespace lights {

namespace {

constexpr auto ThresholdsFormat = "quorvel-light-thresholds"_L1;
constexpr int ThresholdsVersion = 1;
constexpr qint64 LargestFile = 64 * 1024;

struct NamedThreshold
{
    QLatin1StringView text;
    std::variant<double Thresholds::*, int Thresholds::*> member;
    double min;
    double max;
};

constexpr std::array AllThresholds{
    NamedThreshold{"deadLevel"_L1, &Thresholds::deadLevel, 0, 255},
    NamedThreshold{"deadShare"_L1, &Thresholds::deadShare, 0, 1},
    NamedThreshold{"weakShare"_L1, &Thresholds::weakShare, 0, 1},
    NamedThreshold{"weakSpreads"_L1, &Thresholds::weakSpreads, 0, 100},
    NamedThreshold{"touchLevel"_L1, &Thresholds::touchLevel, 0, 255},
    NamedThreshold{"noisyRatio"_L1, &Thresholds::noisyRatio, 1, 100},
    NamedThreshold{"noisyLevel"_L1, &Thresholds::noisyLevel, 0, 255},
    NamedThreshold{"noisyChance"_L1, &Thresholds::noisyChance, 1e-12, 0.5},
    NamedThreshold{"saturatedLevel"_L1, &Thresholds::saturatedLevel, 1, 255},
    NamedThreshold{"saturatedShare"_L1, &Thresholds::saturatedShare, 0.01, 1},
    NamedThreshold{"nearlySaturated"_L1, &Thresholds::nearlySaturated, 1, 255},
    NamedThreshold{"compensatedGain"_L1, &Thresholds::compensatedGain, 1, 100},
    NamedThreshold{"stretchDepth"_L1, &Thresholds::stretchDepth, 0.01, 1},
    NamedThreshold{"stretchEdge"_L1, &Thresholds::stretchEdge, 0, 1},
    NamedThreshold{"stretchLights"_L1, &Thresholds::stretchLights, 2, 500},
    NamedThreshold{"darkLights"_L1, &Thresholds::darkLights, 2, 500},
    NamedThreshold{"stepRise"_L1, &Thresholds::stepRise, 0, 100},
    NamedThreshold{"stepRiseShare"_L1, &Thresholds::stepRiseShare, 0, 0.4},
    NamedThreshold{"wideStepRise"_L1, &Thresholds::wideStepRise, 0, 10},
    NamedThreshold{"wideStepShare"_L1, &Thresholds::wideStepShare, 0, 0.4},
    NamedThreshold{"barSlope"_L1, &Thresholds::barSlope, 0.01, 1},
    NamedThreshold{"barLights"_L1, &Thresholds::barLights, 3, 500},
    NamedThreshold{"boardLights"_L1, &Thresholds::boardLights, 2, 500},
};

} // namespace

std::optional<Thresholds> Thresholds::parse(const QByteArray &text, const QString &file,
                                            QString *problem)
{
    const auto refuse = [&](const QString &reason) -> std::optional<Thresholds> {
        *problem = tr("%1: %2").arg(file, reason);
        return std::nullopt;
    };
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (document.isNull())
        return refuse(tr("no JSON, at byte %1: %2").arg(error.offset).arg(error.errorString()));
    const QJsonObject object = document.object();
    if (object["format"_L1].toString() != ThresholdsFormat)
        return refuse(
            tr(R"(no file of thresholds: "format" has to be "%1")").arg(ThresholdsFormat));
    if (object["version"_L1].toInt() != ThresholdsVersion)
        return refuse(tr("\"version\" has to be %1").arg(ThresholdsVersion));
    Thresholds thresholds;
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        if (entry.key() == "format"_L1 || entry.key() == "version"_L1)
            continue;
        const auto name = std::find_if(
            AllThresholds.begin(), AllThresholds.end(),
            [&entry](const NamedThreshold &known) { return known.text == entry.key(); });
        if (name == AllThresholds.end())
            return refuse(tr("there is no threshold \"%1\"").arg(entry.key()));
        const double value = entry.value().toDouble(std::nan(""));
        const bool whole = std::holds_alternative<int Thresholds::*>(name->member);
        if (!(value >= name->min && value <= name->max) || (whole && value != std::floor(value))) {
            return refuse((whole ? tr("\"%1\" has to be a whole number from %2 to %3")
                                 : tr("\"%1\" has to be a number from %2 to %3"))
                              .arg(entry.key())
                              .arg(name->min)
                              .arg(name->max));
        }
        if (const auto *number = std::get_if<double Thresholds::*>(&name->member))
            thresholds.**number = value;
        else
            thresholds.*std::get<int Thresholds::*>(name->member) = int(value);
    }
    return thresholds;
}

std::optional<Thresholds> Thresholds::load(const QString &path, QString *problem)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *problem = tr("%1 cannot be read: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    const QByteArray text = file.read(LargestFile + 1);
    if (text.size() > LargestFile) {
        *problem = tr("%1 is too large for a file of thresholds").arg(path);
        return std::nullopt;
    }
    return parse(text, path, problem);
}

QByteArray Thresholds::toJson() const
{
    QJsonObject object{{u"format"_s, ThresholdsFormat}, {u"version"_s, ThresholdsVersion}};
    for (const NamedThreshold &name : AllThresholds) {
        object[name.text] =
            std::visit([this](auto member) { return QJsonValue(this->*member); }, name.member);
    }
    return QJsonDocument(object).toJson();
}

} // namespace lights
