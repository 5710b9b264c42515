// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QString>

#include <utility>

namespace ctl {

// A text in the OpenMetrics format that older readers of the Prometheus format take as well: gauges
// only, of which each has one sample for each set of labels.
class Exposition
{
public:
    using Label = std::pair<QString, QString>;

    // Labels that every sample has.
    explicit Exposition(QList<Label> common);

    // What samples follow; name and help are ASCII.
    void gauge(const QString &name, const QString &help);
    // Of the gauge that was named last.
    void sample(double value, const QList<Label> &labels = {});

    QByteArray text() const;

private:
    const QList<Label> common;
    QString name;
    QString lines;
};

} // namespace ctl
