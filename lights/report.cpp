// SPDX-License-Identifier: GPL-3.0-or-later

#include "report.h"

#include "findings.h"
#include "reportpicture.h"
#include "scanfile.h"
#include "text.h"
#include "touch.h"
#include "verdictfile.h"
#include "words.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace lights {

namespace {

constexpr double WallWidth = 1000;

QString htmlElement(const QString &name, const QString &words)
{
    return u"<%1>%2</%1>\n"_s.arg(name, words.toHtmlEscaped());
}

QString htmlRow(const QString &head, const QString &value)
{
    return u"<tr><th scope=\"row\">%1</th><td>%2</td></tr>\n"_s.arg(head.toHtmlEscaped(),
                                                                    value.toHtmlEscaped());
}

QString htmlList(const QStringList &entries)
{
    QString html(u"<ul>\n"_s);
    for (const QString &entry : entries)
        html += htmlElement(u"li"_s, entry);
    return html + u"</ul>\n"_s;
}

QString pageStyle()
{
    return uR"(body { font: 11pt sans-serif; color: #222; background: #fff; margin: 2em auto;
  max-width: 60em; padding: 0 1em; }
table { border-collapse: collapse; }
caption { text-align: left; font-weight: bold; padding: 0.5em 0; }
th, td { text-align: left; padding: 0.15em 0.8em; border-bottom: 1px solid #ccc; }
td.number { text-align: right; }
.verdict { font-size: 22pt; font-weight: bold; border: 4px solid; padding: 0.3em 0.6em;
  display: inline-block; }
.pass { color: #00507d; }
.service { color: #8a3c00; }
@media print { tr, svg, li { break-inside: avoid; } }
)"_s;
}

// Parts of the page, in their order.
class Page
{
public:
    explicit Page(const Report &theReport)
        : report(theReport)
        , faults(touchFaults(theReport.measurement, theReport.verdicts))
    {
    }

    QString html() const
    {
        const QString title = Text::tr("Lights of a touch frame");
        // The code of the language that this is translated into.
        return u"<!DOCTYPE html>\n<html lang=\"%1\">\n<head>\n<meta charset=\"utf-8\">\n"
               "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"_s.arg(
                   Text::tr("en")) +
               htmlElement(u"title"_s, title) + u"<style>\n"_s + pageStyle() + svgStyle() +
               u"</style>\n</head>\n<body>\n<main>\n"_s + htmlElement(u"h1"_s, title) + head() +
               pictures() + findings() + comparison() + table() + u"</main>\n</body>\n</html>\n"_s;
    }

private:
    QString head() const;
    QString pictures() const;
    QString findings() const;
    QString comparison() const;
    QString table() const;

    const Report &report;
    const std::vector<TouchFault> faults;
};

QString Page::head() const
{
    const Measurement &measurement = report.measurement;
    const bool isPass = report.verdicts.isPass();
    QString html = u"<p class=\"verdict %1\">%2</p>\n<table>\n<caption>%3</caption>\n"_s.arg(
        isPass ? u"pass"_s : u"service"_s,
        (isPass ? Text::tr("PASS") : Text::tr("SERVICE NEEDED")).toHtmlEscaped(),
        Text::tr("The measurement").toHtmlEscaped());
    if (!measurement.unit.name.isEmpty())
        html += htmlRow(Text::tr("Unit"), measurement.unit.name);
    if (!measurement.unit.identification.isEmpty())
        html += htmlRow(Text::tr("Identification"), measurement.unit.identification);
    if (measurement.date.isValid())
        html += htmlRow(Text::tr("Measured"),
                        measurement.date.toUTC().toString(u"yyyy-MM-dd hh:mm 'UTC'"_s));
    html +=
        htmlRow(Text::tr("Lights"),
                Text::tr("%1 on X, %2 on Y").arg(measurement.x.lights).arg(measurement.y.lights));
    html +=
        htmlRow(Text::tr("Scans"),
                QString::number(std::max(measurement.x.scans.size(), measurement.y.scans.size())));
    if (!report.version.isEmpty())
        html += htmlRow(Text::tr("Program"), report.version);
    return html + u"</table>\n"_s;
}

QString Page::pictures() const
{
    const Wall wall(report.measurement, {WallWidth, 0});
    QString html =
        htmlElement(u"h2"_s, Text::tr("The frame")) + toSvg(wallPicture(report, faults, wall));
    html += htmlElement(
        u"p"_s, Text::tr("Letters: w weak, d dead, n noisy, s saturated, o switched off. Dark "
                         "strips: touches are missed; light ones: they jump. Bars outside: "
                         "stretches with one thing wrong."));
    for (const Axis axis : Axes) {
        if (!report.verdicts.axis(axis).lights.empty())
            html += toSvg(curvePicture(report, axis));
    }
    return html +
           htmlElement(u"p"_s, Text::tr("Solid: the level of each light. Dashed: that of a healthy "
                                        "one. Dotted: the lowest that works."));
}

QString Page::findings() const
{
    QStringList all;
    for (const Finding &finding : findingsOf(report))
        all += finding.words;
    QString html = htmlElement(u"h2"_s, Text::tr("Findings"));
    html += all.isEmpty() ? htmlElement(u"p"_s, Text::tr("Nothing was found.")) : htmlList(all);
    if (faults.empty())
        return html;
    QStringList touches;
    for (const TouchFault &fault : faults)
        touches += wordsFor(fault, report.measurement.axis(fault.axis));
    return html + htmlElement(u"h2"_s, Text::tr("Touches")) + htmlList(touches);
}

QString Page::comparison() const
{
    if (!report.baseline && !report.trend)
        return {};
    QString html = htmlElement(u"h2"_s, Text::tr("Since it was in good order"));
    if (report.baseline) {
        html += htmlElement(
            u"p"_s, Text::tr("Compared with the measurement of %1.")
                        .arg(report.baseline->date.toUTC().toString(u"yyyy-MM-dd hh:mm 'UTC'"_s)));
    }
    if (report.trend)
        html += htmlElement(u"p"_s, wordsFor(*report.trend));
    return html;
}

QString Page::table() const
{
    const bool compares = !report.changes.empty();
    QString html = u"<table>\n<caption>%1</caption>\n<thead><tr>"_s.arg(
        Text::tr("All lights").toHtmlEscaped());
    QStringList heads{Text::tr("Light"), Text::tr("Verdict"), Text::tr("Level"),
                      Text::tr("Healthy level"), Text::tr("Noise")};
    if (compares)
        heads += Text::tr("Change, %");
    for (const QString &one : std::as_const(heads))
        html += u"<th scope=\"col\">%1</th>"_s.arg(one.toHtmlEscaped());
    html += u"</tr></thead>\n<tbody>\n"_s;
    const auto cell = [](const QString &value) {
        return u"<td class=\"number\">%1</td>"_s.arg(value);
    };
    auto change = report.changes.begin();
    for (const Axis axis : Axes) {
        const AxisVerdict &verdict = report.verdicts.axis(axis);
        for (int i = 0; i < int(verdict.lights.size()); ++i) {
            const Light &light = verdict.lights[size_t(i)];
            html += u"<tr><th scope=\"row\">%1</th><td>%2</td>"_s.arg(
                lightName(axis, i), word(light.verdict).toHtmlEscaped());
            html += cell(oneDecimal(light.level));
            html += cell(oneDecimal(light.expected));
            html += cell(verdict.noiseKnown ? oneDecimal(light.noise) : QString());
            if (compares) {
                // Both are in the same order; lights that gave no signal then have no change.
                const bool isOne =
                    change != report.changes.end() && change->axis == axis && change->light == i;
                html += cell(isOne ? oneDecimal(100 * change->alone) : QString());
                change += isOne;
            }
            html += u"</tr>\n"_s;
        }
    }
    return html + u"</tbody>\n</table>\n"_s;
}

} // namespace

QByteArray toHtml(const Report &report)
{
    return Page(report).html().toUtf8();
}

QJsonObject toJson(const Report &report)
{
    QJsonObject members = ScanFile::toJson(report.measurement);
    const auto add = [&members](const QJsonObject &more) {
        for (auto member = more.begin(); member != more.end(); ++member)
            members[member.key()] = member.value();
    };
    add(verdictsToJson(report.measurement, report.verdicts));
    if (report.baseline)
        add(comparisonToJson(*report.baseline, report.changes, report.trend));
    return members;
}

} // namespace lights
