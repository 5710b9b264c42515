// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lights/findings.h"

#include <QAbstractTableModel>

// All lights of a report, a row each: X first, by number.
class LightModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { Name, Verdict, Level, Expected, Noise, Change, Columns };
    // What rows are sorted by.
    static constexpr int SortRole = Qt::UserRole;

    using QAbstractTableModel::QAbstractTableModel;

    void setReport(const lights::Report &report);
    int rowOf(const lights::LightPlace &place) const;
    lights::LightPlace placeOf(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    struct Row
    {
        lights::LightPlace place;
        lights::Light light;
        std::optional<double> noise;  // levels
        std::optional<double> change; // percent
    };

    static std::optional<double> number(const Row &row, int column);

    std::vector<Row> rows;
};
