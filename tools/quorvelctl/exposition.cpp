// SPDX-License-Identifier: GPL-3.0-or-later

#include "exposition.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace ctl {

namespace {

constexpr int Digits = 12;

QString quoted(QString value)
{
    value.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s).replace(u'\n', u"\\n"_s);
    return u'"' + value + u'"';
}

} // namespace

Exposition::Exposition(QList<Label> ofAll)
    : common(std::move(ofAll))
{
}

void Exposition::gauge(const QString &itsName, const QString &help)
{
    name = itsName;
    lines += u"# HELP %1 %2\n# TYPE %1 gauge\n"_s.arg(name, help);
}

void Exposition::sample(double value, const QList<Label> &labels)
{
    QStringList pairs;
    for (const Label &label : common + labels)
        pairs += label.first + u'=' + quoted(label.second);
    lines += name + u'{' + pairs.join(u',') + u"} "_s + QString::number(value, 'g', Digits) + u'\n';
}

QByteArray Exposition::text() const
{
    return lines.toUtf8() + "# EOF\n";
}

} // namespace ctl
