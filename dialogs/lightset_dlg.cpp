#include "lightset_dlg.h"

#include "device/records.h"
#include "screenlayout.h"
#include "ui_lightset_dlg.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QTimer>

#include <initializer_list>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
namespace settings = command::settings;
namespace scan = command::scan;
using Axis = LightPlot::Axis;
using Light = LightPlot::Light;

namespace {

constexpr auto PollPeriod = 180ms;
constexpr int TicksAfterRead = 5;
constexpr int TicksAfterWrite = 10;
constexpr int LargestOffset = 50; // of a light's AGC, either way

// A typed number: what is none counts as 0, and the high byte is a quotient, cut towards 0.
int typed(const QLineEdit *field)
{
    const int value = field->text().toInt();
    return (value & 0xFF) | (value / 256 & 0xFF) << 8;
}

UCHAR axisCode(Axis axis)
{
    return axis == Axis::X ? settings::AxisX : settings::AxisY;
}

} // namespace

LightSet_dlg::LightSet_dlg(QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::LightSet_dlg>())
    , timer(new QTimer(this))
{
    ui->setupUi(this);
    ui->LightChooseBtn->hide();
    // A click on the panel, or on a button of it that waits for a reply, chooses no light below.
    ui->groupBox_3->setAttribute(Qt::WA_NoMousePropagation);
    // These fields are there to be read.
    for (QLineEdit *field : {ui->LightADC, ui->LightORG, ui->LightAGC, ui->LightAGCSet}) {
        QPalette colors = field->palette();
        colors.setColor(QPalette::Disabled, QPalette::Text,
                        colors.color(QPalette::Active, QPalette::Text));
        field->setPalette(colors);
    }
    connect(timer, &QTimer::timeout, this, &LightSet_dlg::ontimer);
    for (const QLineEdit *field : {ui->LightDir, ui->LightNum})
        connect(field, &QLineEdit::textEdited, this, [this] { unasked = true; });
}

LightSet_dlg::~LightSet_dlg() = default;

void LightSet_dlg::on_LightChooseBtn_2_clicked()
{
    ui->LightChooseBtn_2->setEnabled(false);
    const auto light = chosenLight();
    if (!light)
        return;
    command::LightRequest request{settings::SwitchLight, {axisCode(light->axis), light->number}};
    request.off = ui->LightChooseBtn_2->text() == tr("Disable");
    askAbout(request);
}

void LightSet_dlg::on_LightChooseBtn_clicked()
{
    const auto light = chosenLight();
    if (!light)
        return;
    unasked = false;
    askAbout({settings::GetLight, {axisCode(light->axis), light->number}});
}

void LightSet_dlg::on_LightDecBtn_clicked()
{
    const int offset = ui->LightAGCSet->text().toInt();
    if (offset <= -LargestOffset || -offset >= ui->LightAGC->text().toInt())
        return;
    ui->LightAGCSet->setText(QString::number(offset - 1));
    SendSetLightData();
}

void LightSet_dlg::on_LightAddBtn_clicked()
{
    const int offset = ui->LightAGCSet->text().toInt();
    if (offset >= LargestOffset)
        return;
    ui->LightAGCSet->setText(QString::number(offset + 1));
    SendSetLightData();
}

void LightSet_dlg::on_ADCSetBtn_clicked()
{
    SendADCData();
}

void LightSet_dlg::on_ADCDefBtn_clicked()
{
    ui->MinADC->setText(u"3800"_s);
    ui->MaxADC->setText(u"4000"_s);
    ui->MinEdgeADC->setText(u"3000"_s);
    ui->MaxEdgeADC->setText(u"3200"_s);
    ui->ADCThreshold->setText(u"1000"_s);
    ui->EdgeADCThreshold->setText(u"600"_s);
}

void LightSet_dlg::on_ExitBtn_clicked()
{
    close();
}

void LightSet_dlg::ontimer()
{
    if (TimerStop >= 1) {
        --TimerStop;
        return;
    }
    switch (TimerStep) {
    case 0:
        on_LightChooseBtn_clicked();
        Ready = true;
        TimerStep = 1;
        break;
    case 1:
        requestScan(scan::AxisY);
        TimerStep = 2;
        break;
    default:
        requestScan(scan::AxisX);
        TimerStep = 0;
        break;
    }
}

void LightSet_dlg::DoRecv03(UCHAR *RecvBuf)
{
    const Frame report = command::frameAt(RecvBuf);
    if (news.take(report) == ReportNews::News::Repeated)
        return;
    if (const auto settingsReport = command::AdcReport::decode(report)) {
        takeSettings(*settingsReport);
    } else if (const auto light = command::LightReport::decode(report)) {
        showLight(*light);
        update();
    } else if (const auto counts = command::LightCounts::decode(report)) {
        plot.setCounts(counts->x, counts->y);
    } else if (const auto page = command::ScanPage::decode(report)) {
        if (page->axis == scan::AxisY)
            plot.storeY(*page);
        else if (plot.storeX(*page))
            update();
    }
}

void LightSet_dlg::OnLinkEnded()
{
    Ready = false;
    unasked = false;
    news.forget();
    plot.forget();
    for (QLineEdit *field : {ui->MinADC, ui->MaxADC, ui->MinEdgeADC, ui->MaxEdgeADC,
                             ui->ADCThreshold, ui->EdgeADCThreshold, ui->LightDir, ui->LightNum,
                             ui->LightADC, ui->LightORG, ui->LightAGC, ui->LightAGCSet})
        field->clear();
    for (QPushButton *button : {ui->LightChooseBtn_2, ui->LightAddBtn, ui->LightDecBtn})
        button->setEnabled(false);
    ui->LightChooseBtn_2->setText(tr("Disable"));
    update();
}

void LightSet_dlg::takeSettings(const command::AdcReport &report)
{
    const command::AdcLines &lines = report.lines;
    ui->MinADC->setText(QString::number(lines.min));
    ui->MaxADC->setText(QString::number(lines.max));
    ui->MinEdgeADC->setText(QString::number(lines.minEdge));
    ui->MaxEdgeADC->setText(QString::number(lines.maxEdge));
    ui->ADCThreshold->setText(QString::number(lines.threshold));
    ui->EdgeADCThreshold->setText(QString::number(lines.edgeThreshold));
    plot.setCounts(report.counts.x, report.counts.y);
}

void LightSet_dlg::showLight(const command::LightReport &report)
{
    const UCHAR axis = report.light.axis;
    if (axis == settings::AxisX || axis == settings::AxisY) {
        const Light light{axis == settings::AxisX ? Axis::X : Axis::Y, report.light.number};
        // The answer to an earlier question does not take back what the user has chosen since.
        if (unasked && light != chosenLight())
            return;
        setChosen(light);
    }
    ui->LightAGCSet->setText(QString::number(report.offset));
    ui->LightAGC->setText(QString::number(report.agc));
    ui->LightADC->setText(QString::number(report.adc));
    ui->LightORG->setText(QString::number(report.org));
    ui->LightChooseBtn_2->setText(report.off ? tr("Enable") : tr("Disable"));
    ui->LightChooseBtn_2->setEnabled(true);
    ui->LightAddBtn->setEnabled(true);
    ui->LightDecBtn->setEnabled(true);
}

void LightSet_dlg::showEvent(QShowEvent *event)
{
    // A restored window was being shown all the time.
    if (event->spontaneous())
        return;
    Ready = false;
    unasked = false;
    plot.setCounts(0, 0);
    // Not showFullScreen(), which shows a window that is being shown already: newer toolkits take
    // that for another showing.
    const QWidget *operatedOn = parentWidget() ? parentWidget() : this;
    setGeometry(operatedOn->screen()->geometry());
    setWindowState(windowState() | Qt::WindowFullScreen);
    GetADCData();
    TimerStep = 0;
    timer->start(PollPeriod);
}

void LightSet_dlg::hideEvent(QHideEvent *event)
{
    if (event->spontaneous())
        return;
    Ready = false;
    GetADCData();
    timer->stop();
}

void LightSet_dlg::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    // A window manager may clean up after the last showing when the next has begun already.
    if (event->type() == QEvent::WindowStateChange && isVisible() &&
        !(windowState() & (Qt::WindowFullScreen | Qt::WindowMinimized)))
        setWindowState(windowState() | Qt::WindowFullScreen);
}

void LightSet_dlg::paintEvent(QPaintEvent *)
{
    if (!Ready)
        return;
    followScreen();
    plot.choose(chosenLight(), ui->LightADC->text(), ui->LightAGC->text());
    QPainter painter(this);
    painter.scale(1 / drawnScale, 1 / drawnScale);
    painter.drawPixmap(0, 0, plot.picture());
}

void LightSet_dlg::mouseReleaseEvent(QMouseEvent *event)
{
    followScreen();
    const QPointF native = event->position() * drawnScale;
    const auto light = plot.lightAt({int(native.x()), int(native.y())});
    if (!light)
        return;
    setChosen(*light);
    unasked = true;
}

void LightSet_dlg::setChosen(const Light &light)
{
    ui->LightDir->setText(light.axis == Axis::X ? u"X"_s : u"Y"_s);
    ui->LightNum->setText(QString::number(light.number));
}

void LightSet_dlg::GetADCData()
{
    news.ask({command::Settings, command::replyTo(settings::GetAdc), {}, 0});
    send(command::request(command::Settings, settings::GetAdc));
    TimerStop = TicksAfterRead;
}

void LightSet_dlg::SendADCData()
{
    send(command::AdcLines{typed(ui->MinADC), typed(ui->MaxADC), typed(ui->MinEdgeADC),
                           typed(ui->MaxEdgeADC), typed(ui->ADCThreshold),
                           typed(ui->EdgeADCThreshold)}
             .encode());
    TimerStop = TicksAfterWrite;
}

void LightSet_dlg::SendSetLightData()
{
    const UCHAR axis = ui->LightDir->text() == "X"_L1 ? settings::AxisX : settings::AxisY;
    command::LightRequest request{settings::SetLight, {axis, typed(ui->LightNum)}};
    request.offset = ui->LightAGCSet->text().toInt();
    ui->LightAddBtn->setEnabled(false);
    ui->LightDecBtn->setEnabled(false);
    askAbout(request);
}

void LightSet_dlg::requestScan(UCHAR axis)
{
    news.ask({command::Scan, command::replyTo(axis), {0, 0}, 2});
    send(command::request(command::Scan, axis));
}

// Each request about a light is answered by how the light is.
void LightSet_dlg::askAbout(const command::LightRequest &request)
{
    const command::LightName &light = request.light;
    news.ask({command::Settings,
              command::replyTo(settings::GetLight),
              {light.axis, UCHAR(light.number & 0xFF), UCHAR(light.number >> 8 & 0xFF)},
              3});
    send(request.encode());
}

void LightSet_dlg::send(Frame frame)
{
    emit Write03(frame.data());
}

std::optional<Light> LightSet_dlg::chosenLight() const
{
    bool isNumber = false;
    const int number = ui->LightNum->text().toInt(&isNumber);
    const QString direction = ui->LightDir->text();
    if (!isNumber || number < 0)
        return {};
    if (direction.compare("X"_L1, Qt::CaseInsensitive) == 0 && number < plot.lights(Axis::X))
        return Light{Axis::X, number};
    if (direction.compare("Y"_L1, Qt::CaseInsensitive) == 0 && number < plot.lights(Axis::Y))
        return Light{Axis::Y, number};
    return {};
}

// The picture is drawn for the screen that the window is on by now.
void LightSet_dlg::followScreen()
{
    QScreen *shown = screen();
    if (shown->geometry() == drawnFor && devicePixelRatioF() == drawnScale)
        return;
    drawnFor = shown->geometry();
    drawnScale = devicePixelRatioF();
    const auto index = QGuiApplication::screens().indexOf(shown);
    plot.setScreen(ScreenLayout::current().screens.value(index).size(), drawnScale);
}
