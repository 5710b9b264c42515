// SPDX-License-Identifier: GPL-3.0-or-later

#include "faultplan.h"

#include "datafile.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using std::chrono::milliseconds;

namespace sim {

namespace {

constexpr qint64 MaxDurationMs = 10LL * 60 * 1000;
constexpr qint64 MaxTransfer = 1'000'000'000;
constexpr qint64 MsPerSecond = 1000;

std::optional<milliseconds> durationOf(const QString &word)
{
    const bool inMs = word.endsWith("ms"_L1);
    if (!inMs && !word.endsWith(u's'))
        return std::nullopt;
    bool isNumber = false;
    const qint64 value = word.chopped(inMs ? 2 : 1).toLongLong(&isNumber, 10);
    const qint64 unit = inMs ? 1 : MsPerSecond;
    if (!isNumber || value < 0 || value > MaxDurationMs / unit)
        return std::nullopt;
    return milliseconds(value * unit);
}

// Reads one line of a plan.
class FaultReader
{
    Q_DECLARE_TR_FUNCTIONS(sim::FaultPlan)

public:
    explicit FaultReader(FaultPlan::Link theLink)
        : link(theLink)
    {
    }

    // Returns an empty text, or why the line is refused.
    QString take(const QStringList &words);

    Fault fault;

private:
    QString takeValues(const QString &name, const QStringList &values);
    QString takeDuration(const QString &name, const QStringList &values, milliseconds *duration);
    QString takeCount(const QString &name, const QString &of, const QStringList &values,
                      qint64 most, qint64 *count);

    FaultPlan::Link link;
};

QString FaultReader::take(const QStringList &words)
{
    if (words.first() != "at"_L1)
        return tr("%1 is not how a fault begins: write at N and a fault").arg(words.first());
    if (words.size() < 3)
        return tr("write at N and a fault, such as: at 12 torn");
    const std::optional<qint64> transfer = DataFile::number(words[1]);
    if (!transfer)
        return tr("%1 is not a number").arg(words[1]);
    if (*transfer < 1 || *transfer > MaxTransfer) {
        return tr("the transfer is %1: it lies between 1 and %2")
            .arg(words[1], QString::number(MaxTransfer));
    }
    fault.first = quint64(*transfer);
    return takeValues(words[2], words.mid(3));
}

QString FaultReader::takeValues(const QString &name, const QStringList &values)
{
    if (name == "stall"_L1 || name == "late"_L1) {
        fault.kind = name == "stall"_L1 ? Fault::Kind::Stall : Fault::Kind::Late;
        return takeDuration(name, values, &fault.duration);
    }
    if (name == "torn"_L1 || name == "repeat"_L1) {
        fault.kind = name == "torn"_L1 ? Fault::Kind::Torn : Fault::Kind::Repeat;
        return values.isEmpty() ? QString() : tr("%1 takes no value").arg(name);
    }
    if (name == "silent"_L1) {
        fault.kind = Fault::Kind::Silent;
        qint64 count = 0;
        QString problem = takeCount(name, tr("transfers"), values, MaxTransfer, &count);
        fault.count = quint64(count);
        return problem;
    }
    if (name == "noise"_L1 || name == "lose"_L1) {
        if (link != FaultPlan::Link::Serial)
            return tr("%1 happens on a serial line only").arg(name);
        fault.kind = name == "noise"_L1 ? Fault::Kind::Noise : Fault::Kind::Lose;
        qint64 count = 0;
        QString problem = takeCount(name, tr("bytes"), values, FaultPlan::MaxBytes, &count);
        fault.bytes = int(count);
        return problem;
    }
    if (name == "unplug"_L1 || name == "hangup"_L1) {
        fault.kind = Fault::Kind::Unplug;
        if (values.isEmpty())
            return {};
        if (values.first() != "back"_L1)
            return tr("%1 does not follow %2: write back and a duration").arg(values.first(), name);
        fault.back = milliseconds(0);
        return takeDuration(u"back"_s, values.mid(1), &*fault.back);
    }
    return tr("%1 is not a fault: there are stall, late, torn, repeat, silent, unplug, hangup, "
              "noise and lose")
        .arg(name);
}

QString FaultReader::takeDuration(const QString &name, const QStringList &values,
                                  milliseconds *duration)
{
    if (values.isEmpty())
        return tr("%1 has no duration, such as 250ms or 2s").arg(name);
    if (values.size() > 1)
        return tr("%1 takes one value, not %2").arg(name).arg(values.size());
    const std::optional<milliseconds> value = durationOf(values.first());
    if (!value) {
        return tr("%1 is not a duration such as 250ms or 2s, at most 600s").arg(values.first());
    }
    *duration = *value;
    return {};
}

QString FaultReader::takeCount(const QString &name, const QString &of, const QStringList &values,
                               qint64 most, qint64 *count)
{
    if (values.isEmpty())
        return tr("%1 has no count of %2, such as: at 12 %1 5").arg(name, of);
    const std::optional<qint64> value = DataFile::number(values.first());
    if (values.size() > 1)
        return tr("%1 takes one value, not %2").arg(name).arg(values.size());
    if (!value)
        return tr("%1 is not a number").arg(values.first());
    if (*value < 1 || *value > most) {
        return tr("the count is %1: it lies between 1 and %2")
            .arg(values.first(), QString::number(most));
    }
    *count = *value;
    return {};
}

bool overlap(const Fault &a, const Fault &b)
{
    return a.first < b.first + b.count && b.first < a.first + a.count;
}

QString words(const Fault &fault)
{
    const QString ms = QString::number(fault.duration.count());
    switch (fault.kind) {
    case Fault::Kind::None:
        return u"goes well"_s;
    case Fault::Kind::Stall:
        return u"stalls for %1 ms"_s.arg(ms);
    case Fault::Kind::Late:
        return u"is %1 ms late"_s.arg(ms);
    case Fault::Kind::Torn:
        return u"is torn"_s;
    case Fault::Kind::Repeat:
        return u"happens twice"_s;
    case Fault::Kind::Silent:
        return u"meets silence"_s;
    case Fault::Kind::Unplug:
        return fault.back ? u"ends in an unplug for %1 ms"_s.arg(fault.back->count())
                          : u"ends in an unplug"_s;
    case Fault::Kind::Noise:
        return u"meets %1 bytes of noise"_s.arg(fault.bytes);
    case Fault::Kind::Lose:
        return u"loses its last %1 bytes"_s.arg(fault.bytes);
    }
    return {};
}

} // namespace

QString words(const Fault &fault, quint64 transfer)
{
    return u"fault  transfer %1 %2"_s.arg(transfer).arg(words(fault));
}

std::optional<FaultPlan> FaultPlan::parse(const QString &text, const QString &file,
                                          QString *problem, Link link)
{
    FaultPlan plan;
    std::vector<int> lineOf;
    for (const DataFile::Line &line : DataFile::lines(text)) {
        FaultReader reader(link);
        QString reason = reader.take(line.words);
        for (size_t i = 0; reason.isEmpty() && i < plan.list.size(); ++i) {
            if (overlap(plan.list[i], reader.fault))
                reason = tr("line %1 has a fault for this transfer already").arg(lineOf[i]);
        }
        if (!reason.isEmpty()) {
            *problem = DataFile::refusal(file, line.number, reason);
            return std::nullopt;
        }
        plan.list.push_back(reader.fault);
        lineOf.push_back(line.number);
    }
    std::sort(plan.list.begin(), plan.list.end(),
              [](const Fault &a, const Fault &b) { return a.first < b.first; });
    return plan;
}

std::optional<FaultPlan> FaultPlan::load(const QString &path, QString *problem, Link link)
{
    const std::optional<QString> text = DataFile::read(path, problem);
    return text ? parse(*text, path, problem, link) : std::nullopt;
}

Fault FaultPlan::at(quint64 transfer) const
{
    const auto after =
        std::upper_bound(list.begin(), list.end(), transfer,
                         [](quint64 number, const Fault &fault) { return number < fault.first; });
    if (after == list.begin())
        return {};
    const Fault &fault = *std::prev(after);
    return transfer < fault.first + fault.count ? fault : Fault();
}

} // namespace sim
