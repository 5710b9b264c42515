// SPDX-License-Identifier: GPL-3.0-or-later

// What LightCheck_dlg compares a measurement with, shows of it and writes.

#include "curves.h"
#include "device/plainfile.h"
#include "lightcheck_dlg.h"
#include "lightmodel.h"
#include "lights/findings.h"
#include "lights/judge.h"
#include "lights/scanfile.h"
#include "lights/touch.h"
#include "lights/verdictfile.h"
#include "lights/words.h"
#include "paper/pdf.h"
#include "ui_lightcheck_dlg.h"

#include <QAccessible>
#include <QBuffer>
#include <QFileDialog>
#include <QJsonDocument>
#include <QMenu>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using lights::Axis;

namespace {

constexpr int MostDates = 12; // in the menu
const QColor PassColor(0x00, 0x50, 0x7D);
const QColor ServiceColor(0x8A, 0x3C, 0x00);

QString dateOf(const lights::Measurement &measurement)
{
    return QLocale().toString(measurement.date.toLocalTime(), QLocale::ShortFormat);
}

} // namespace

// Comparing

void LightCheck_dlg::recall()
{
    unread.clear();
    keptOf = report.measurement.unit;
    kept = history.recall(*keptOf, &unread);
    if (!unread.isEmpty())
        tell(unread.join(u'\n'));
    if (baseline == Baseline::Chosen) {
        baseline = Baseline::Newest;
        chosenBaseline.reset();
    }
}

void LightCheck_dlg::compare(bool withTrend)
{
    const lights::Measurement &now = report.measurement;
    std::optional<lights::Measurement> with;
    if (baseline == Baseline::Chosen)
        with = chosenBaseline;
    for (const lights::Measurement &one : kept) {
        if (baseline == Baseline::Newest && one.date < now.date)
            with = one;
    }
    if (with != report.baseline || !baselineVerdicts) {
        report.baseline = with;
        baselineVerdicts = judge(with.value_or(lights::Measurement()), report.thresholds);
    }
    report.changes.clear();
    report.trend.reset();
    if (!report.baseline)
        return;
    report.changes = changesSince(*baselineVerdicts, report.verdicts);
    if (!withTrend)
        return;
    std::vector<lights::Measurement> course = kept;
    std::erase_if(course, [&now](const lights::Measurement &one) { return one.date >= now.date; });
    course.push_back(now);
    report.trend = trendOf(course, report.thresholds);
}

void LightCheck_dlg::fillMenu()
{
    menu->clear();
    const auto add = [this](const QString &words, bool isChosen, auto what) {
        QAction *action = menu->addAction(words, this, what);
        action->setCheckable(true);
        action->setChecked(isChosen);
    };
    add(tr("&What was remembered last"), baseline == Baseline::Newest,
        [this] { chooseBaseline(Baseline::Newest, {}); });
    const size_t first = kept.size() > MostDates ? kept.size() - MostDates : 0;
    for (size_t i = kept.size(); i > first; --i) {
        const lights::Measurement one = kept[i - 1];
        add(dateOf(one), baseline == Baseline::Chosen && chosenBaseline == one,
            [this, one] { chooseBaseline(Baseline::Chosen, one); });
    }
    menu->addSeparator();
    menu->addAction(tr("A &file..."), this, [this] {
        QFileDialog dialog(this, tr("Compare with a file"));
        dialog.setFileMode(QFileDialog::ExistingFile);
        dialog.setNameFilter(tr("Measurements (*.json *.csv)"));
        dialog.setWindowModality(Qt::WindowModal); // the tray's menu still works
        if (dialog.exec() == QDialog::Accepted)
            compareWithFile(dialog.selectedFiles().constFirst());
    });
    add(tr("&Nothing"), baseline == Baseline::None, [this] { chooseBaseline(Baseline::None, {}); });
}

void LightCheck_dlg::compareWithFile(const QString &path)
{
    QString problem;
    const auto read = lights::ScanFile::load(path, &problem);
    if (!read || !lights::History::isOf(*read, report.measurement.unit, path, &problem))
        tell(problem);
    else
        chooseBaseline(Baseline::Chosen, read);
}

void LightCheck_dlg::chooseBaseline(Baseline which,
                                    const std::optional<lights::Measurement> &measurement)
{
    baseline = which;
    chosenBaseline = measurement;
    compare(true);
    showReport();
}

void LightCheck_dlg::on_rememberButton_clicked()
{
    QString problem;
    if (!history.remember(report.measurement, &problem)) {
        tell(problem);
        if (report.measurement.unit.identification.isEmpty())
            ui->nameEdit->setFocus();
        return;
    }
    recall();
    tell(tr("Remembered. What is measured from now on can be compared with it."));
}

void LightCheck_dlg::on_nameEdit_editingFinished()
{
    const QString name = ui->nameEdit->text().trimmed();
    if (report.measurement.unit.name == name)
        return;
    report.measurement.unit.name = name;
    recall();
    compare(true);
    showReport();
}

// Writing

void LightCheck_dlg::on_reportButton_clicked()
{
    QFileDialog dialog(this, tr("Write a report"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters({tr("Documents (*.pdf)"), tr("Pages (*.html)"),
                           tr("For programs (*.json)"), tr("Tables (*.csv)")});
    dialog.setDefaultSuffix(u"pdf"_s);
    connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString &filter) {
        dialog.setDefaultSuffix(filter.section(u"*."_s, 1).section(u')', 0, 0));
    });
    dialog.setWindowModality(Qt::WindowModal); // the tray's menu still works
    if (dialog.exec() == QDialog::Accepted)
        saveReport(dialog.selectedFiles().constFirst());
}

void LightCheck_dlg::saveReport(const QString &path)
{
    QByteArray bytes;
    QString problem;
    if (path.endsWith(".html"_L1, Qt::CaseInsensitive)) {
        bytes = toHtml(report);
    } else if (path.endsWith(".json"_L1, Qt::CaseInsensitive)) {
        bytes = QJsonDocument(toJson(report)).toJson();
    } else if (path.endsWith(".csv"_L1, Qt::CaseInsensitive)) {
        bytes = lights::verdictsToCsv(report.verdicts);
    } else if (path.endsWith(".pdf"_L1, Qt::CaseInsensitive)) {
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        paper::printPdf(toHtml(report), buffer, &problem);
    } else {
        problem =
            tr("%1: a report is a file whose name ends with .pdf, .html, .json or .csv").arg(path);
    }
    if (problem.isEmpty()) {
        if (const QString why = plainfile::replace(path, bytes); !why.isEmpty())
            problem = tr("%1 cannot be written: %2").arg(path, why);
    }
    tell(problem.isEmpty() ? tr("Written to %1.").arg(path) : problem);
}

// Showing

bool LightCheck_dlg::hasLights() const
{
    return report.measurement.x.lights + report.measurement.y.lights > 0;
}

void LightCheck_dlg::showReport()
{
    const bool isPass = report.verdicts.isPass();
    const QString verdict = !hasLights() ? tr("Not measured yet")
                            : isPass     ? tr("PASS")
                                         : tr("SERVICE NEEDED");
    QPalette colors = palette();
    if (hasLights()) {
        colors.setColor(QPalette::Window, isPass ? PassColor : ServiceColor);
        colors.setColor(QPalette::WindowText, Qt::white);
    }
    ui->verdictLab->setPalette(colors);
    ui->verdictLab->setAutoFillBackground(hasLights());
    if (ui->verdictLab->text() != verdict) {
        ui->verdictLab->setText(verdict);
        QAccessibleEvent told(ui->verdictLab, QAccessible::Alert);
        QAccessible::updateAccessibility(&told);
    }
    for (QWidget *needsLights :
         std::initializer_list<QWidget *>{ui->rememberButton, ui->compareButton, ui->reportButton})
        needsLights->setEnabled(hasLights());
    showUnit();
    showComparison();
    showFindings();
    model->setReport(report);
    ui->wall->setReport(report);
    showCurves();
}

void LightCheck_dlg::showUnit()
{
    const lights::Unit &unit = report.measurement.unit;
    ui->unitLab->setText(
        !hasLights() ? (measuring.isLinked() ? QString() : tr("No touch frame is linked."))
        : unit.identification.isEmpty()
            ? tr("Measured %1").arg(dateOf(report.measurement))
            : tr("Unit %1, measured %2").arg(unit.identification, dateOf(report.measurement)));
}

void LightCheck_dlg::showComparison()
{
    QStringList sentences;
    const auto worst = std::min_element(
        report.changes.begin(), report.changes.end(),
        [](const lights::Change &a, const lights::Change &b) { return a.alone < b.alone; });
    if (worst != report.changes.end()) {
        sentences +=
            tr("Since %1 light %2 has changed most for the worse, by %3 % beside the "
               "others.")
                .arg(dateOf(*report.baseline), lights::lightName(worst->axis, worst->light),
                     QLocale().toString(100 * worst->alone, 'f', 1));
    }
    if (report.trend)
        sentences += wordsFor(*report.trend);
    ui->comparisonLab->setText(sentences.join(u'\n'));
    ui->comparisonLab->setVisible(!sentences.isEmpty());
}

void LightCheck_dlg::showFindings()
{
    const int row = ui->findingsList->currentRow();
    const auto looked = row < 0 ? std::nullopt : std::optional(findings.at(size_t(row)));
    findings = findingsOf(report);
    for (const lights::TouchFault &fault : touchFaults(report.measurement, report.verdicts)) {
        const lights::AxisMeasurement &measured = report.measurement.axis(fault.axis);
        const int last = int(std::ceil(fault.to)) - 1;
        findings.push_back({fault.axis, int(fault.from), last, wordsFor(fault, measured)});
    }
    QStringList words;
    for (const lights::Finding &finding : findings)
        words += finding.words;
    if (words == findingWords)
        return;
    findingWords = words;
    const QSignalBlocker blocker(ui->findingsList);
    ui->findingsList->clear();
    ui->findingsList->addItems(words);
    if (looked)
        ui->findingsList->setCurrentRow(rowLike(*looked));
}

// Of a finding from before: the one with its words or, since these tell numbers, at its place.
int LightCheck_dlg::rowLike(const lights::Finding &before) const
{
    auto same =
        std::find_if(findings.begin(), findings.end(),
                     [&before](const lights::Finding &one) { return one.words == before.words; });
    if (same == findings.end()) {
        same = std::find_if(findings.begin(), findings.end(), [&before](const auto &one) {
            return one.axis == before.axis && one.first == before.first && one.last == before.last;
        });
    }
    return same == findings.end() ? -1 : int(same - findings.begin());
}

void LightCheck_dlg::showCurves()
{
    if (!curves)
        return;
    std::array<AxisCurves, 2> shown;
    for (const Axis axis : lights::Axes) {
        AxisCurves &one = shown[axis == Axis::X ? 0 : 1];
        const std::vector<lights::Light> &lights = report.verdicts.axis(axis).lights;
        for (size_t i = 0; i < lights.size(); ++i) {
            one.levels += lights[i].level;
            one.expected += lights[i].expected;
            if (lights[i].verdict != lights::LightVerdict::Healthy)
                one.bad += int(i);
        }
        if (report.changes.empty())
            continue;
        for (const std::optional<lights::Change> &change : changesOf(report, axis)) {
            one.baseline += change ? change->then : std::nan("");
            one.change += change ? 100 * change->alone : std::nan("");
        }
    }
    curves->setCurves(shown, report.thresholds.touchLevel);
}
