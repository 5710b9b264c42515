// SPDX-License-Identifier: GPL-3.0-or-later

// What LightSet_dlg reads from the device and from its fields, and what it shows of both.

#include "lightset_dlg.h"

#include "notice.h"
#include "ui_lightset_dlg.h"
#include "wholenumber.h"

#include <QApplication>
#include <QTimer>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
namespace settings = command::settings;
namespace scan = command::scan;
using PlotAxis = LightPlot::Axis;
using Light = LightPlot::Light;

namespace {

constexpr int LargestValue = 0xFFFF;

// Text that is the same already keeps its selection and cursor.
void put(QLineEdit *field, const QString &text)
{
    if (field->text() != text)
        field->setText(text);
}

} // namespace

command::LightName LightSet_dlg::nameOf(const Light &light)
{
    return {light.axis == PlotAxis::X ? settings::AxisX : settings::AxisY, light.number};
}

void LightSet_dlg::takeSettings(const command::AdcReport &report)
{
    believing = true;
    watch.answered(scan::Counts);
    plot.setCounts(report.counts.x, report.counts.y);
    if (readBack.isActive())
        return; // read before the write
    const command::AdcLines &lines = report.lines;
    isOther = written && *written != lines;
    if (!isOther)
        written.reset();
    // What is being typed is left alone.
    for (const auto &[field, value] :
         {std::pair(ui->MinADC, lines.min), std::pair(ui->MaxADC, lines.max),
          std::pair(ui->MinEdgeADC, lines.minEdge), std::pair(ui->MaxEdgeADC, lines.maxEdge),
          std::pair(ui->ADCThreshold, lines.threshold),
          std::pair(ui->EdgeADCThreshold, lines.edgeThreshold)}) {
        if (!field->isModified())
            put(field, QString::number(value));
    }
}

void LightSet_dlg::takeLight(command::LightReport report)
{
    const UCHAR axis = report.light.axis;
    const bool isAxis = axis == settings::AxisX || axis == settings::AxisY;
    const Light light{axis == settings::AxisY ? PlotAxis::Y : PlotAxis::X, report.light.number};
    if (!userChose && isAxis) {
        setChosen(light);
        if (const auto unsent = control.choose(nameOf(light)))
            askAbout(*unsent);
    } else if (!userChose) {
        const auto shown = namedLight();
        report.light = shown ? nameOf(*shown) : command::LightName();
        control.choose(report.light);
    }
    const bool counts = control.take(report);
    if (counts) {
        lightDue = QDeadlineTimer(QDeadlineTimer::Forever);
        if (userChose && !ui->LightDir->hasFocus())
            put(ui->LightDir, ui->LightDir->text().toUpper());
        put(ui->LightAGC, QString::number(report.agc));
        put(ui->LightADC, QString::number(report.adc));
        put(ui->LightORG, QString::number(report.org));
        ui->LightChooseBtn_2->setText(report.off ? tr("Enable") : tr("Disable"));
    }
    SendSetLightData();
    updateLight();
}

void LightSet_dlg::doubtLayout()
{
    believing = false;
    layoutDue = {};
}

void LightSet_dlg::takePage(const command::ScanPage &page)
{
    const PlotAxis axis = page.axis == scan::AxisX ? PlotAxis::X : PlotAxis::Y;
    // A frame that was reset meanwhile has gone back to one byte a light.
    const int lights = plot.lights(axis) - page.first;
    if (lights > 0 && page.size == std::min(lights, scan::LevelsPerPage) &&
        page.size != 2 * std::min(lights, scan::PairsPerPage)) {
        doubtLayout();
        return;
    }
    if (axis == PlotAxis::Y)
        plot.storeY(page);
    else if (plot.storeX(page))
        update();
    if (page.first >= plot.lights(axis))
        return;
    const bool isLast = page.first + scan::PairsPerPage >= plot.lights(axis);
    watch.pageCame(page.axis, isLast ? pages(page.axis) : page.first / scan::PairsPerPage + 1,
                   pages(page.axis));
    // What has waited for the end of this scan is due.
    if (postponed && !watch.isArriving() && TimerStop == 0 && timer->isActive())
        late.start(0, this);
}

int LightSet_dlg::pages(UCHAR axis) const
{
    return ScanWatch::pagesOf(plot.lights(axis == scan::AxisX ? PlotAxis::X : PlotAxis::Y),
                              scan::PairsPerPage);
}

std::optional<command::AdcLines> LightSet_dlg::typedLines()
{
    refusal.clear();
    command::AdcLines lines;
    for (const auto &[field, value] :
         {std::pair(ui->MinADC, &lines.min), std::pair(ui->MaxADC, &lines.max),
          std::pair(ui->MinEdgeADC, &lines.minEdge), std::pair(ui->MaxEdgeADC, &lines.maxEdge),
          std::pair(ui->ADCThreshold, &lines.threshold),
          std::pair(ui->EdgeADCThreshold, &lines.edgeThreshold)}) {
        const auto number = wholeNumber(field->text(), 0, LargestValue);
        if (!number) {
            refuse(field, tr("%1: enter a whole number from 0 to %2")
                              .arg(field->accessibleName())
                              .arg(LargestValue));
            return {};
        }
        *value = *number;
    }
    if (lines.min > lines.max) {
        refuse(ui->MinADC, tr("The smallest ADC value is above the largest"));
        return {};
    }
    if (lines.minEdge > lines.maxEdge) {
        refuse(ui->MinEdgeADC, tr("The smallest ADC value at the edges is above the largest"));
        return {};
    }
    for (QLineEdit *field : {ui->MinADC, ui->MaxADC, ui->MinEdgeADC, ui->MaxEdgeADC,
                             ui->ADCThreshold, ui->EdgeADCThreshold})
        field->setModified(false);
    return lines;
}

void LightSet_dlg::refuse(QLineEdit *field, const QString &words)
{
    refusal = words;
    field->setFocus();
    field->selectAll();
}

void LightSet_dlg::setChosen(const Light &light)
{
    put(ui->LightDir, light.axis == PlotAxis::X ? u"X"_s : u"Y"_s);
    put(ui->LightNum, QString::number(light.number));
}

// The user's choice; buttons wait until the device has told of the light.
void LightSet_dlg::onChosen()
{
    userChose = true;
    const auto light = namedLight();
    const auto name = light ? std::optional(nameOf(*light)) : std::nullopt;
    if (name == control.light())
        return;
    if (const auto unsent = control.choose(name))
        askAbout(*unsent);
    unasked = true;
    lightDue = QDeadlineTimer(QDeadlineTimer::Forever);
    updateLight();
    updateNotice();
}

std::optional<Light> LightSet_dlg::namedLight() const
{
    const auto number = wholeNumber(ui->LightNum->text(), 0, LargestValue);
    const QString direction = ui->LightDir->text();
    if (number && direction.compare("X"_L1, Qt::CaseInsensitive) == 0)
        return Light{PlotAxis::X, *number};
    if (number && direction.compare("Y"_L1, Qt::CaseInsensitive) == 0)
        return Light{PlotAxis::Y, *number};
    return {};
}

std::optional<Light> LightSet_dlg::chosenLight() const
{
    const auto light = namedLight();
    if (!light || light->number >= plot.lights(light->axis))
        return {};
    return light;
}

void LightSet_dlg::step(int by)
{
    const auto light = namedLight();
    if (!light || isAside || control.light() != nameOf(*light))
        return;
    control.step(by);
    SendSetLightData();
    updateLight();
}

void LightSet_dlg::chooseLight(const Light &light)
{
    setChosen(light);
    onChosen();
}

void LightSet_dlg::standAside(bool aside)
{
    if (isAside == aside)
        return;
    isAside = aside;
    watch.forget();
    timer->stop();
    late.stop();
    readBack.stop();
    lightDue = QDeadlineTimer(QDeadlineTimer::Forever);
    if (!isAside && !isHidden()) {
        believing = false;
        beginAsking();
    }
    updateNotice();
}

void LightSet_dlg::updateLight()
{
    if (control.isKnown())
        put(ui->LightAGCSet, QString::number(control.offset()));
    const bool canStep = control.isKnown() && !control.isStepping();
    for (QPushButton *button : {ui->LightAddBtn, ui->LightDecBtn}) {
        if (control.isStepping() && focusWidget() == button) {
            // Else the next press of a key would reach whatever comes next.
            parked = button;
            setFocus();
        }
        button->setEnabled(canStep);
    }
    if (canStep && parked) {
        if (focusWidget() == this)
            parked->setFocus();
        parked.clear();
    }
    ui->LightChooseBtn_2->setEnabled(control.isKnown() && !control.isSwitching());
}

void LightSet_dlg::updateNotice()
{
    if (!isVisible()) {
        showNotice(ui->notice, {});
        return;
    }
    const QString overdue =
        isAside ? tr("This waits until the light check has ended") : watch.overdue();
    showNotice(ui->notice, !refusal.isEmpty()   ? refusal
                           : !overdue.isEmpty() ? overdue
                                                : lightNotice());
}

QString LightSet_dlg::lightNotice() const
{
    const auto light = namedLight();
    if (userChose && light && plot.lights(light->axis) > 0 && !chosenLight())
        return tr("The touch frame has no such light");
    if (light && lightDue.hasExpired())
        return tr("No answer about light %1 %2")
            .arg(light->axis == PlotAxis::X ? u"X"_s : u"Y"_s)
            .arg(light->number);
    if (isOther)
        return tr("The touch frame has set other values");
    return {};
}

// These fields are disabled and there to be read all the same.
void LightSet_dlg::showValuesPlainly()
{
    for (QLineEdit *field : {ui->LightADC, ui->LightORG, ui->LightAGC, ui->LightAGCSet}) {
        QPalette colors = field->palette();
        // Its own follow those of the desktop a moment later.
        colors.setColor(QPalette::Disabled, QPalette::Text,
                        QApplication::palette(field).color(QPalette::Active, QPalette::Text));
        field->setPalette(colors);
    }
}
