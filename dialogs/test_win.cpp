#include "test_win.h"

#include "message.h"
#include "ui_test_win.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QIntValidator>
#include <QMenu>
#include <QPainter>
#include <QShortcut>
#include <QTimer>

#include <algorithm>
#include <cstdlib>

using namespace Qt::StringLiterals;
namespace scan = command::scan;

namespace {

constexpr QPoint PlotCorner(25, 25);
constexpr int CurveWidth = 870;
constexpr int UnitsPerLevel = 4; // of the one-byte levels

// Thresholds of the progress counters.
constexpr int UnderTest = 1;
constexpr int ForRipple = 3;
constexpr int Saturated = 5;

constexpr int LargestLimit = SignalPlot::FullScale;
constexpr int LargestInterval = 9999;
constexpr int LargestAgc = 255;

const QString DefaultUpper = u"1000"_s;
const QString DefaultLower = u"650"_s;
const QString DefaultInterval = u"1"_s;
const QString DefaultAgc = u"255"_s;

int pagesOf(int lights)
{
    return std::max(1, (lights + scan::LevelsPerPage - 1) / scan::LevelsPerPage);
}

} // namespace

test_win::test_win(QWidget *parent)
    : QMainWindow(parent)
    , ui(std::make_unique<Ui::test_win>())
    , timer(new QTimer(this))
    , logAction(new QAction(tr("&Log to TestLog.csv"), this))
    , menu(new QMenu(this))
    , log(this)
{
    ui->setupUi(this);
    for (QLineEdit *limit : {ui->Upper_text, ui->Lower_text})
        limit->setValidator(new QIntValidator(0, LargestLimit, limit));
    ui->interal_text->setValidator(new QIntValidator(0, LargestInterval, ui->interal_text));
    ui->AGC_text->setValidator(new QIntValidator(0, LargestAgc, ui->AGC_text));
    connect(timer, &QTimer::timeout, this, &test_win::ontimer);

    logAction->setObjectName(u"logAction"_s);
    logAction->setCheckable(true);
    connect(logAction, &QAction::toggled, this, &test_win::onLogToggled);
    menu->addAction(logAction);
    // The key Menu comes as a context menu event; this one does not on every desktop.
    connect(new QShortcut(Qt::SHIFT | Qt::Key_F10, this), &QShortcut::activated, this,
            [this] { openMenu(mapToGlobal(PlotCorner)); });
}

test_win::~test_win() = default;

void test_win::on_exitbtn_clicked()
{
    close();
}

void test_win::on_def_btn_clicked()
{
    ui->ADCche->setChecked(true);
    ui->AGCche->setChecked(false);
    ui->Ripche->setChecked(true);
    ui->AGC_text->setText(DefaultAgc);
    ui->interal_text->setText(DefaultInterval);
    ui->Upper_text->setText(DefaultUpper);
    ui->Lower_text->setText(DefaultLower);
}

void test_win::on_Xbtn_clicked()
{
    startSingle(scan::AxisX);
}

void test_win::on_Ybtn_clicked()
{
    startSingle(scan::AxisY);
}

void test_win::on_ALL_btn_clicked()
{
    if (isContinuous())
        stopContinuous();
    else
        startContinuous();
}

void test_win::ontimer()
{
    const UCHAR axis = X_finish ? scan::AxisY : scan::AxisX;
    if (testdata.interal == 0)
        timer->setInterval(ReportMs * pagesOf(X_finish ? dataY().lights() : dataX().lights()));
    X_finish = !X_finish;
    send(axis);
}

void test_win::DoRecv03(UCHAR *RecvBuf)
{
    const Frame report = command::frameAt(RecvBuf);
    const bool repeated = news.take(report) == ReportNews::News::Repeated;
    if (const auto counts = command::LightCounts::decode(report))
        takeCounts(*counts);
    else if (const auto page = command::ScanPage::decode(report); page && !repeated)
        takePage(page->axis == scan::AxisX ? dataX() : dataY(), *page);
}

void test_win::OnLinkEnded()
{
    if (isContinuous())
        stopContinuous();
    testing = false;
    log.end();
    news.forget();
    testdata.X_total = 0;
    testdata.Y_total = 0;
    for (const AxisData &axis : {dataX(), dataY()}) {
        for (const std::span<QPoint> curve : {axis.adc, axis.agc, axis.ripple})
            std::fill(curve.begin(), curve.end(), QPoint());
    }
    showPlot();
}

void test_win::paintEvent(QPaintEvent *event)
{
    const QRect background(PlotCorner, SignalPlot::BackgroundSize);
    if (!event->region().intersects(background))
        return;
    // In between whole ratios what is kept would not fit the pixels: it is drawn larger then and
    // made smaller.
    const qreal shown = devicePixelRatioF();
    const int ratio = qCeil(shown);
    // Not before they are seen: most users never open this window.
    if (BGmap.isNull() || BGmap.devicePixelRatio() != ratio)
        makeMaps(ratio);
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, shown != ratio);
    painter.drawPixmap(PlotCorner, BGmap);
    if (X_enable == 0 && Y_enable == 0)
        return;
    if (outdated)
        drawPicture();
    painter.drawImage(PlotCorner + SignalPlot::PictureInBackground, mainmap);
}

void test_win::hideEvent(QHideEvent *event)
{
    QMainWindow::hideEvent(event);
    if (event->spontaneous())
        return; // minimised, or on another workspace
    if (isContinuous())
        stopContinuous();
    else if (!testing && log.isUnsaved())
        log.writeLog();
}

void test_win::contextMenuEvent(QContextMenuEvent *event)
{
    openMenu(event->globalPos());
}

int test_win::AxisData::lights() const
{
    return std::min(total, int(adc.size()));
}

test_win::AxisData test_win::dataX()
{
    return {Row::X, XADC_point, XAGC_point, XRIP_point, testdata.X_total, X_enable};
}

test_win::AxisData test_win::dataY()
{
    return {Row::Y, YADC_point, YAGC_point, YRIP_point, testdata.Y_total, Y_enable};
}

// False when the limits make no sense; no test starts then.
bool test_win::takeSettings()
{
    const int upper = ui->Upper_text->text().toInt();
    const int lower = ui->Lower_text->text().toInt();
    if (upper <= lower) {
        MALVOUTIL::Message::ShowMsg(this, tr("Upper limit value less than lower limit value."));
        ui->Upper_text->setText(DefaultUpper);
        ui->Lower_text->setText(DefaultLower);
        return false;
    }
    log.beginTest();
    testdata.AGC = ui->AGC_text->text().toInt();
    testdata.interal = ui->interal_text->text().toInt();
    testdata.upper = upper;
    testdata.lower = lower;
    testdata.showADC = ui->ADCche->isChecked();
    testdata.showAGC = ui->AGCche->isChecked();
    testdata.showRip = ui->Ripche->isChecked();
    testdata.X_total = 0;
    testdata.Y_total = 0;
    testing = true;
    return true;
}

void test_win::startSingle(UCHAR axis)
{
    if (!takeSettings())
        return;
    X_enable = axis == scan::AxisX ? UnderTest : 0;
    Y_enable = axis == scan::AxisY ? UnderTest : 0;
    showPlot();
    send(scan::Counts);
    send(axis);
}

void test_win::startContinuous()
{
    if (!takeSettings())
        return;
    enableInputs(false);
    X_enable = UnderTest;
    Y_enable = UnderTest;
    showPlot();
    send(scan::Counts);
    timer->start(testdata.interal * IntervalUnitMs);
    ui->ALL_btn->setText(tr("Stop"));
}

void test_win::stopContinuous()
{
    enableInputs(true);
    timer->stop();
    X_enable = 0;
    Y_enable = 0;
    ui->ALL_btn->setText(tr("All Test"));
    showPlot();
    testing = false;
    log.end();
}

bool test_win::isContinuous() const
{
    return timer->isActive();
}

void test_win::enableInputs(bool enabled)
{
    for (QWidget *input : std::initializer_list<QWidget *>{
             ui->def_btn, ui->Xbtn, ui->Ybtn, ui->ADCche, ui->AGCche, ui->Ripche, ui->AGC_text,
             ui->interal_text, ui->Upper_text, ui->Lower_text})
        input->setEnabled(enabled);
}

void test_win::showPlot()
{
    outdated = true;
    update(QRect(PlotCorner, SignalPlot::BackgroundSize));
}

void test_win::send(UCHAR sub)
{
    if (sub != scan::Counts) // a scan is news from its first page on
        news.ask({command::Scan, command::replyTo(sub), {0, 0}, 2});
    Frame frame = command::request(command::Scan, sub);
    emit Write03(frame.data());
}

void test_win::takeCounts(const command::LightCounts &counts)
{
    testdata.X_total = counts.x;
    testdata.Y_total = counts.y;
    outdated = true;
    if (testing && !log.isRunning() && logAction->isChecked())
        log.begin(dataX().lights(), dataY().lights());
}

void test_win::takePage(const AxisData &axis, const command::ScanPage &page)
{
    const int lights = axis.lights();
    // Both axes are drawn on the scale of X.
    if (testdata.X_total == 0 || page.first >= lights)
        return;
    outdated = true;
    const int end = std::min(page.first + scan::LevelsPerPage, lights);
    for (int i = page.first; i < end; ++i) {
        const int level = UnitsPerLevel * page.level(i - page.first);
        const QPoint point((i + 1) * CurveWidth / testdata.X_total, SignalPlot::row(level));
        const auto light = size_t(i);
        const int change = std::abs(point.y() - axis.adc[light].y());
        axis.ripple[light] = {point.x(), SignalPlot::Size.height() - change};
        axis.adc[light] = point;
        axis.agc[light] = {point.x(), 0};
        if (axis.enable != 0)
            log.level(axis.axis, i, level);
    }
    if (end == lights)
        completeScan(axis);
}

void test_win::completeScan(const AxisData &axis)
{
    const bool underTest = axis.enable != 0;
    if (underTest && axis.enable < Saturated)
        ++axis.enable;
    // While both axes are under test the picture waits for Y.
    if (axis.axis == Row::X && Y_enable != 0)
        return;
    showPlot();
    if (!underTest)
        return;
    log.endRow();
    if (!isContinuous()) {
        testing = false;
        log.end();
    }
}

void test_win::makeMaps(int ratio)
{
    BGmap = QPixmap(SignalPlot::BackgroundSize * ratio);
    BGmap.setDevicePixelRatio(ratio);
    BGmap.fill(Qt::white);
    SignalPlot::drawScale(BGmap, font());
    mainmap = SignalPlot::makePicture(ratio);
    outdated = true;
}

void test_win::drawPicture()
{
    std::vector<SignalPlot::Curve> curves;
    const auto add = [&](SignalPlot::Axis axis, const AxisData &shown) {
        const auto lights = size_t(shown.lights());
        if (testdata.showADC && shown.enable > UnderTest)
            curves.push_back({axis, shown.adc.first(lights)});
        if (testdata.showAGC && shown.enable > UnderTest)
            curves.push_back({axis, shown.agc.first(lights)});
        if (testdata.showRip && shown.enable > ForRipple)
            curves.push_back({axis, shown.ripple.first(lights)});
    };
    add(SignalPlot::Axis::X, dataX());
    add(SignalPlot::Axis::Y, dataY());
    plot.draw(mainmap, curves, testdata.upper, testdata.lower);
    outdated = false;
}

void test_win::openMenu(const QPoint &globalPos)
{
    menu->popup(globalPos);
}

void test_win::onLogToggled(bool on)
{
    if (!on)
        log.end();
    else if (testing && testdata.X_total != 0)
        log.begin(dataX().lights(), dataY().lights());
}
