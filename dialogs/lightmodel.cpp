// SPDX-License-Identifier: GPL-3.0-or-later

#include "lightmodel.h"

#include "lights/words.h"

#include <QLocale>

using lights::Axis;
using lights::LightPlace;

void LightModel::setReport(const lights::Report &report)
{
    std::vector<Row> coming;
    for (const Axis axis : lights::Axes) {
        const lights::AxisVerdict &verdict = report.verdicts.axis(axis);
        const auto changes = changesOf(report, axis);
        for (size_t i = 0; i < verdict.lights.size(); ++i) {
            Row row{{axis, int(i)}, verdict.lights[i], {}, {}};
            if (verdict.noiseKnown)
                row.noise = row.light.noise;
            if (changes[i])
                row.change = 100 * changes[i]->alone;
            coming.push_back(row);
        }
    }
    // A series of the same frame keeps what is sorted, chosen and in view.
    if (coming.size() != rows.size()) {
        beginResetModel();
        rows = std::move(coming);
        endResetModel();
    } else if (!rows.empty()) {
        rows = std::move(coming);
        emit dataChanged(index(0, 0), index(int(rows.size()) - 1, Columns - 1));
    }
}

int LightModel::rowOf(const LightPlace &place) const
{
    for (int i = 0; i < int(rows.size()); ++i) {
        if (rows[size_t(i)].place == place)
            return i;
    }
    return -1;
}

LightPlace LightModel::placeOf(int row) const
{
    return rows.at(size_t(row)).place;
}

int LightModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(rows.size());
}

int LightModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : Columns;
}

std::optional<double> LightModel::number(const Row &row, int column)
{
    switch (column) {
    case Level:
        return row.light.level;
    case Expected:
        return row.light.expected;
    case Noise:
        return row.noise;
    case Change:
        return row.change;
    default:
        return {};
    }
}

QVariant LightModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const Row &row = rows.at(size_t(index.row()));
    const bool isText = index.column() == Name || index.column() == Verdict;
    const auto value = number(row, index.column());
    switch (role) {
    case Qt::DisplayRole:
        if (index.column() == Name)
            return lights::lightName(row.place.axis, row.place.number);
        if (index.column() == Verdict)
            return lights::word(row.light.verdict);
        return value ? QLocale().toString(*value, 'f', 1) : QString();
    case Qt::AccessibleTextRole:
        return tr("%1 of light %2: %3")
            .arg(headerData(index.column(), Qt::Horizontal).toString(),
                 lights::lightName(row.place.axis, row.place.number),
                 data(index, Qt::DisplayRole).toString());
    case Qt::TextAlignmentRole:
        return int(Qt::AlignVCenter | (isText ? Qt::AlignLeft : Qt::AlignRight));
    case SortRole:
        if (index.column() == Name)
            return index.row();
        if (index.column() == Verdict)
            return int(row.light.verdict);
        return value ? QVariant(*value) : QVariant();
    default:
        return {};
    }
}

QVariant LightModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Name:
        return tr("Light");
    case Verdict:
        return tr("Verdict");
    case Level:
        return tr("Level");
    case Expected:
        return tr("Healthy level");
    case Noise:
        return tr("Noise");
    default:
        return tr("Change, %");
    }
}
