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

constexpr auto Format = "quorvel-light-thresholds"_L1;
constexpr int Version = 1;
constexpr qint64 LargestFile = 64 * 1024;

struct Name
{
    QLatin1StringView text;
    std::variant<double Thresholds::*, int Thresholds::*> member;
    double min;
    double max;
};

constexpr std::array Names{
    Name{"deadLevel"_L1, &Thresholds::deadLevel, 0, 255},
    Name{"deadShare"_L1, &Thresholds::deadShare, 0, 1},
    Name{"weakShare"_L1, &Thresholds::weakShare, 0, 1},
    Name{"weakSpreads"_L1, &Thresholds::weakSpreads, 0, 100},
    Name{"touchLevel"_L1, &Thresholds::touchLevel, 0, 255},
    Name{"noisyRatio"_L1, &Thresholds::noisyRatio, 1, 100},
    Name{"noisyLevel"_L1, &Thresholds::noisyLevel, 0, 255},
    Name{"noisyChance"_L1, &Thresholds::noisyChance, 1e-12, 0.5},
    Name{"saturatedLevel"_L1, &Thresholds::saturatedLevel, 1, 255},
    Name{"saturatedShare"_L1, &Thresholds::saturatedShare, 0.01, 1},
    Name{"nearlySaturated"_L1, &Thresholds::nearlySaturated, 1, 255},
    Name{"compensatedGain"_L1, &Thresholds::compensatedGain, 1, 100},
    Name{"stretchDepth"_L1, &Thresholds::stretchDepth, 0.01, 1},
    Name{"stretchEdge"_L1, &Thresholds::stretchEdge, 0, 1},
    Name{"stretchLights"_L1, &Thresholds::stretchLights, 2, 500},
    Name{"darkLights"_L1, &Thresholds::darkLights, 2, 500},
    Name{"stepRise"_L1, &Thresholds::stepRise, 0, 100},
    Name{"stepRiseShare"_L1, &Thresholds::stepRiseShare, 0, 0.4},
    Name{"barSlope"_L1, &Thresholds::barSlope, 0.01, 1},
    Name{"barLights"_L1, &Thresholds::barLights, 3, 500},
    Name{"boardLights"_L1, &Thresholds::boardLights, 2, 500},
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
    if (object["format"_L1].toString() != Format)
        return refuse(tr("no file of thresholds: \"format\" has to be \"%1\"").arg(Format));
    if (object["version"_L1].toInt() != Version)
        return refuse(tr("\"version\" has to be %1").arg(Version));
    Thresholds thresholds;
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        if (entry.key() == "format"_L1 || entry.key() == "version"_L1)
            continue;
        const auto name = std::find_if(Names.begin(), Names.end(), [&entry](const Name &known) {
            return known.text == entry.key();
        });
        if (name == Names.end())
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
    QJsonObject object{{u"format"_s, Format}, {u"version"_s, Version}};
    for (const Name &name : Names) {
        object[name.text] =
            std::visit([this](auto member) { return QJsonValue(this->*member); }, name.member);
    }
    return QJsonDocument(object).toJson();
}

} // namespace lights
