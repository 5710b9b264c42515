#include "lightset_dlg.h"

#include "device/malvoutil.h"
#include "screenlayout.h"
#include "ui_lightset_dlg.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QMutexLocker>
#include <QPainter>
#include <QScreen>
#include <QTimer>

#include <utility>

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

Frame request(UCHAR classOf, UCHAR sub, UCHAR length = 0)
{
    Frame frame{};
    frame[command::offset::Class] = classOf;
    frame[command::offset::Sub] = sub;
    frame[command::offset::Length] = length;
    return frame;
}

// A typed number: what is none counts as 0, and the high byte is a quotient, cut towards 0.
void putTyped(UCHAR *p, const QString &text)
{
    const int value = text.toInt();
    p[0] = UCHAR(value & 0xFF);
    p[1] = UCHAR(value / 256);
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
    Frame frame = request(command::Settings, settings::SwitchLight, settings::SwitchLightLength);
    frame[settings::LightAxis] = axisCode(light->axis);
    putTyped(&frame[settings::LightNumber], ui->LightNum->text());
    frame[settings::LightSwitch] = ui->LightChooseBtn_2->text() == tr("Disable") ? 1 : 0;
    emit Write03(frame.data());
}

void LightSet_dlg::on_LightChooseBtn_clicked()
{
    const auto light = chosenLight();
    if (!light)
        return;
    Frame frame = request(command::Settings, settings::GetLight, settings::GetLightLength);
    frame[settings::LightAxis] = axisCode(light->axis);
    putTyped(&frame[settings::LightNumber], ui->LightNum->text());
    unasked = false;
    emit Write03(frame.data());
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
    const QMutexLocker lock(&mutex);
    Frame frame;
    MALVOUTIL::Buf_util::CopyBuf(RecvBuf, frame.data(), FrameSize);
    const UCHAR sub = frame[command::offset::Sub];

    if (frame[command::offset::Class] == command::Settings) {
        if (sub == command::replyTo(settings::GetAdc)) {
            for (const auto &[field, at] :
                 {std::pair(ui->MinADC, settings::MinAdc), std::pair(ui->MaxADC, settings::MaxAdc),
                  std::pair(ui->MinEdgeADC, settings::MinEdgeAdc),
                  std::pair(ui->MaxEdgeADC, settings::MaxEdgeAdc),
                  std::pair(ui->ADCThreshold, settings::AdcThreshold),
                  std::pair(ui->EdgeADCThreshold, settings::EdgeAdcThreshold)})
                field->setText(QString::number(command::le16(&frame[size_t(at)])));
            plot.setCounts(command::le16(&frame[settings::AdcLightsX]),
                           command::le16(&frame[settings::AdcLightsY]));
        } else if (sub == command::replyTo(settings::GetLight)) {
            showLight(frame);
            update();
        }
    } else if (frame[command::offset::Class] == command::Scan) {
        if (sub == command::replyTo(scan::Counts))
            plot.setCounts(command::le16(&frame[scan::CountX]),
                           command::le16(&frame[scan::CountY]));
        else if (sub == command::replyTo(scan::AxisX) && plot.storeX(frame))
            update();
        else if (sub == command::replyTo(scan::AxisY))
            plot.storeY(frame);
    }
}

void LightSet_dlg::showLight(const Frame &frame)
{
    const UCHAR axis = frame[settings::LightAxis];
    if (axis == settings::AxisX || axis == settings::AxisY) {
        const Light light{axis == settings::AxisX ? Axis::X : Axis::Y,
                          command::le16(&frame[settings::LightNumber])};
        // The answer to an earlier question does not take back what the user has chosen since.
        if (unasked && light != chosenLight())
            return;
        setChosen(light);
    }
    ui->LightAGCSet->setText(QString::number(qint8(frame[settings::LightOffset])));
    ui->LightAGC->setText(QString::number(frame[settings::LightAgc]));
    ui->LightADC->setText(QString::number(command::le16(&frame[settings::LightAdc])));
    ui->LightORG->setText(QString::number(command::le16(&frame[settings::LightOrg])));
    ui->LightChooseBtn_2->setText(frame[settings::LightOff] != 0 ? tr("Enable") : tr("Disable"));
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
    Frame frame = request(command::Settings, settings::GetAdc);
    emit Write03(frame.data());
    TimerStop = TicksAfterRead;
}

void LightSet_dlg::SendADCData()
{
    Frame frame = request(command::Settings, settings::SetAdc, settings::AdcLength);
    putTyped(&frame[settings::MinAdc], ui->MinADC->text());
    putTyped(&frame[settings::MaxAdc], ui->MaxADC->text());
    putTyped(&frame[settings::MinEdgeAdc], ui->MinEdgeADC->text());
    putTyped(&frame[settings::MaxEdgeAdc], ui->MaxEdgeADC->text());
    putTyped(&frame[settings::AdcThreshold], ui->ADCThreshold->text());
    putTyped(&frame[settings::EdgeAdcThreshold], ui->EdgeADCThreshold->text());
    emit Write03(frame.data());
    TimerStop = TicksAfterWrite;
}

void LightSet_dlg::SendSetLightData()
{
    Frame frame = request(command::Settings, settings::SetLight, settings::SetLightLength);
    frame[settings::LightAxis] = ui->LightDir->text() == "X"_L1 ? settings::AxisX : settings::AxisY;
    putTyped(&frame[settings::LightNumber], ui->LightNum->text());
    frame[settings::LightOffset] = UCHAR(ui->LightAGCSet->text().toInt());
    ui->LightAddBtn->setEnabled(false);
    ui->LightDecBtn->setEnabled(false);
    emit Write03(frame.data());
}

void LightSet_dlg::requestScan(UCHAR axis)
{
    Frame frame = request(command::Scan, axis);
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
