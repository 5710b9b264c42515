// SPDX-License-Identifier: GPL-3.0-or-later

#include "lightcheck_dlg.h"

#include "curves.h"
#include "device/frame.h"
#include "lightmodel.h"
#include "lights/judge.h"
#include "lightset_dlg.h"
#include "modules/module.h"
#include "notice.h"
#include "present.h"
#include "test_win.h"
#include "ui_lightcheck_dlg.h"
#include "windowplace.h"

#include <QHeaderView>
#include <QMenu>
#include <QScreen>
#include <QScrollBar>

#include <algorithm>

using namespace Qt::StringLiterals;
using lights::Axis;
using lights::LightPlace;

namespace {

constexpr QMargins FrameOfWindow(8, 40, 8, 8); // about what a window manager adds

Axis axisOf(int axis)
{
    return axis == 0 ? Axis::X : Axis::Y;
}

int numberOf(Axis axis)
{
    return axis == Axis::X ? 0 : 1;
}

} // namespace

LightCheck_dlg::LightCheck_dlg(QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::LightCheck_dlg>())
    , model(new LightModel(this))
    , order(new QSortFilterProxyModel(this))
    , menu(new QMenu(this))
{
    ui->setupUi(this);
    keepPlace(this);
    report.version = u"Quorvel "_s + QStringLiteral(QUORVEL_VERSION);
    prepareNotice(ui->notice);
    ui->scrollArea->horizontalScrollBar()->setAccessibleName(tr("Scroll to the side"));
    ui->scrollArea->verticalScrollBar()->setAccessibleName(tr("Scroll up and down"));
    addTable();
    addCurves();
    connect(ui->wall, &LightWall::chosen, this,
            [this](const LightPlace &place) { chooseLight(place, ui->wall); });
    connect(ui->wall, &LightWall::opened, this, &LightCheck_dlg::openLight);
    ui->compareButton->setMenu(menu);
    connect(menu, &QMenu::aboutToShow, this, &LightCheck_dlg::fillMenu);

    connect(&measuring, &lights::Measuring::ask, this,
            [this](Frame question) { emit Write03(question.data()); });
    connect(&measuring, &lights::Measuring::progressed, this, &LightCheck_dlg::onProgress);
    connect(&measuring, &lights::Measuring::scanned, this, &LightCheck_dlg::onScanned);
    connect(&measuring, &lights::Measuring::finished, this, &LightCheck_dlg::onFinished);
    connect(&measuring, &lights::Measuring::failed, this, [this](const QString &why) {
        onMeasuringChanged();
        tell(why);
    });
    onMeasuringChanged();
    showReport();
}

LightCheck_dlg::~LightCheck_dlg() = default;

void LightCheck_dlg::addTable()
{
    order->setSourceModel(model);
    order->setSortRole(LightModel::SortRole);
    ui->table->setModel(order);
    ui->table->sortByColumn(LightModel::Name, Qt::AscendingOrder);
    ui->table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    QHeaderView *rows = ui->table->verticalHeader();
    rows->setDefaultSectionSize(rows->minimumSectionSize());
    connect(ui->table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) {
                if (current.isValid())
                    chooseLight(model->placeOf(order->mapToSource(current).row()), ui->table);
            });
}

void LightCheck_dlg::addCurves()
{
    QString problem;
    auto *maker = modules::load<CurvesMaker>(&problem);
    if (!maker) {
        auto *label = new QLabel(problem, this);
        label->setWordWrap(true);
        ui->curvesLayout->addWidget(label);
        return;
    }
    curves = maker->make(this, {.chosen =
                                    [this](int axis, int light) {
                                        chooseLight({axisOf(axis), light}, curves->widget());
                                    },
                                .opened =
                                    [this](int axis, int light) {
                                        openLight({axisOf(axis), light});
                                    },
                                .wordsFor =
                                    [this](int axis, int light) {
                                        return wordsFor(report, {axisOf(axis), light});
                                    }});
    curves->widget()->setAccessibleName(tr("Curves of the levels"));
    ui->curvesLayout->addWidget(curves->widget());
    setTabOrder(ui->tabs, curves->widget());
}

// Measuring

void LightCheck_dlg::linkBegan(lights::Measuring::Source source)
{
    measuring.linkBegan(source);
    onMeasuringChanged();
    showUnit();
    tell({});
}

void LightCheck_dlg::OnLinkEnded()
{
    measuring.linkEnded();
    onMeasuringChanged();
    showUnit();
    if (measuring.isRunning())
        tell(tr("The touch frame is gone. Measuring begins anew when one is there."));
}

void LightCheck_dlg::DoRecv03(UCHAR *RecvBuf)
{
    measuring.received(command::frameAt(RecvBuf));
}

void LightCheck_dlg::on_measureButton_clicked()
{
    tell({});
    if (measuring.isRunning()) {
        measuring.stop();
        onMeasuringChanged();
        return;
    }
    const lights::Measuring::Wish wish{.goesOn = ui->followBox->isChecked()};
    measuring.start(wish);
    onMeasuringChanged();
}

void LightCheck_dlg::onMeasuringChanged()
{
    const bool isRunning = measuring.isRunning();
    if (auto *test = sibling<test_win>())
        test->standAside(FrameUsers::LightCheck, isRunning);
    if (auto *screen = sibling<LightSet_dlg>())
        screen->standAside(isRunning);
    ui->measureButton->setText(isRunning ? tr("&Stop") : tr("&Measure"));
    ui->measureButton->setEnabled(isRunning || measuring.isLinked());
    ui->followBox->setEnabled(!isRunning);
    ui->progress->setVisible(isRunning && !ui->followBox->isChecked());
}

void LightCheck_dlg::onProgress(int pages, int all)
{
    ui->progress->setMaximum(std::max(all, 1));
    ui->progress->setValue(pages);
}

void LightCheck_dlg::onScanned()
{
    if (!ui->followBox->isChecked())
        return;
    take(measuring.measurement(), false);
    const QString following = tr("Following the touch frame: %Ln scan(s) of each axis so far.",
                                 nullptr, measuring.scans());
    tell((QStringList(following) + unread).join(u'\n'));
}

void LightCheck_dlg::onFinished()
{
    onMeasuringChanged();
    take(measuring.measurement(), true);
}

void LightCheck_dlg::take(lights::Measurement measurement, bool isLast)
{
    if (measurement.unit.name.isEmpty())
        measurement.unit.name = ui->nameEdit->text().trimmed();
    report.measurement = std::move(measurement);
    report.verdicts = judge(report.measurement, report.thresholds);
    if (keptOf != report.measurement.unit)
        recall();
    compare(isLast);
    showReport();
}

// What is done with a light

void LightCheck_dlg::on_findingsList_itemSelectionChanged()
{
    const QModelIndexList chosen = ui->findingsList->selectionModel()->selectedIndexes();
    if (chosen.isEmpty())
        return;
    const lights::Finding &finding = findings.at(size_t(chosen.first().row()));
    chooseLight({finding.axis, finding.first}, ui->findingsList);
    ui->wall->mark(finding.axis, finding.first, finding.last);
    if (curves)
        curves->zoomTo(numberOf(finding.axis), finding.first, finding.last);
}

void LightCheck_dlg::on_table_activated(const QModelIndex &index)
{
    openLight(model->placeOf(order->mapToSource(index).row()));
}

// Shows a light wherever it is not shown already.
void LightCheck_dlg::chooseLight(const LightPlace &place, const QObject *by)
{
    const int row = model->rowOf(place);
    if (row < 0)
        return;
    if (by != ui->wall)
        ui->wall->choose(place);
    if (curves && by != curves->widget())
        curves->choose(numberOf(place.axis), place.number);
    if (curves) {
        curves->widget()->setAccessibleName(
            tr("Curves of the levels. %1").arg(wordsFor(report, place)));
    }
    if (by != ui->table) {
        const QSignalBlocker blocker(ui->table->selectionModel());
        const QModelIndex index = order->mapFromSource(model->index(row, 0));
        ui->table->selectRow(index.row());
        ui->table->scrollTo(index);
        ui->table->viewport()->update();
    }
}

void LightCheck_dlg::openLight(const LightPlace &place)
{
    auto *screen = sibling<LightSet_dlg>();
    if (!screen || !measuring.isLinked())
        return;
    // It needs the frame, and whoever looks at one light looks at no series.
    measuring.stop();
    onMeasuringChanged();
    screen->chooseLight(
        {place.axis == Axis::X ? LightPlot::Axis::X : LightPlot::Axis::Y, place.number});
    present(screen);
}

void LightCheck_dlg::tell(const QString &words)
{
    showNotice(ui->notice, words);
}

void LightCheck_dlg::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    if (showing.begins())
        resize(
            size().boundedTo(screen()->availableGeometry().marginsRemoved(FrameOfWindow).size()));
}

void LightCheck_dlg::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
    if (!showing.ends())
        return;
    measuring.stop();
    onMeasuringChanged();
    tell({});
}
