#include "calibration_dlg.h"

#include "calend_dlg.h"
#include "device/records.h"
#include "ui_calibration_dlg.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

using namespace std::chrono_literals;
namespace cal = command::calibration;

namespace {

constexpr auto TickPeriod = 500ms;
constexpr int TicksUntilTimeOut = 60;

// Rings of the target per animation phase, radii in pixels.
constexpr int Phases = 3;
constexpr std::array<int, Phases> OuterRing{32, 36, 40};
constexpr std::array<int, Phases> MiddleRing{24, 24, 24};
constexpr std::array<int, Phases> InnerRing{16, 12, 8};
constexpr int CrossArm = OuterRing[0];

constexpr int PenWidth = 2;
constexpr int CountdownPoints = 50;
constexpr int HintPoints = 40;
constexpr QPoint CountdownFromCentre(-25, 0);
constexpr QPoint HintFromCentre(-200, 50);

} // namespace

Calibration_Dlg::Calibration_Dlg(QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::Calibration_Dlg>())
    , timer(new QTimer(this))
{
    ui->setupUi(this);
    setWindowOpacity(0.5);
    connect(timer, &QTimer::timeout, this, &Calibration_Dlg::ontimer);
    await(cal::Step1);
}

Calibration_Dlg::~Calibration_Dlg() = default;

void Calibration_Dlg::setPrimaryScr(int screen)
{
    setPrimaryScr(screen, ScreenLayout::current());
}

void Calibration_Dlg::setPrimaryScr(int screen, const ScreenLayout &layout)
{
    if (layout.screens.isEmpty())
        return;
    gWidth = layout.desktop.width();
    gHeight = layout.desktop.height();
    const QRect chosen = layout.screens.size() == 1
                             ? QRect(QPoint(0, 0), layout.desktop)
                             : layout.screens.value(screen, layout.screens.first());
    cStartX = chosen.x();
    cStartY = chosen.y();
    cWidth = chosen.width();
    cHeight = chosen.height();
    mainmap = QPixmap(cWidth, cHeight);
    placeTargets(cWidth, cHeight);

    const QList<QScreen *> screens = QGuiApplication::screens();
    if (const QScreen *shown = screens.value(screen, screens.first())) {
        rect = shown->geometry();
        move(shown->availableGeometry().topLeft());
    }
}

QRect Calibration_Dlg::calibratedScreen() const
{
    return {cStartX, cStartY, cWidth, cHeight};
}

void Calibration_Dlg::placeTargets(int width, int height)
{
    const int left = width / 8;
    const int right = width / 8 * 7;
    const int top = height / 8;
    const int bottom = height / 8 * 7;
    ellipse_x = {left, right, right, left};
    ellipse_y = {top, top, bottom, bottom};
}

void Calibration_Dlg::SendCalStep(int step)
{
    Frame frame = step == cal::Check ? command::CalibrationCheck{.x = cStartX,
                                                                 .y = cStartY,
                                                                 .width = cWidth,
                                                                 .height = cHeight,
                                                                 .desktopWidth = gWidth,
                                                                 .desktopHeight = gHeight}
                                           .encode()
                                     : command::CalibrationStep{UCHAR(step)}.encode();
    emit Write03(frame.data());
}

void Calibration_Dlg::SendCalSave()
{
    SendCalStep(cal::Save);
    std::puts("SendCalSave");
}

void Calibration_Dlg::SendCalReset()
{
    SendCalStep(cal::Reset);
}

int Calibration_Dlg::GetDeviation() const
{
    const int left = (cal_x[0] + cal_x[3]) / 2;
    const int right = (cal_x[1] + cal_x[2]) / 2;
    const int top = (cal_y[0] + cal_y[1]) / 2;
    const int bottom = (cal_y[2] + cal_y[3]) / 2;
    const int dx = std::abs(left - right);
    const int dy = std::abs(top - bottom);
    const int ex = std::abs(cal_x[3] - left) + std::abs(cal_x[1] - right);
    const int ey = std::abs(cal_y[3] - bottom) + std::abs(cal_y[1] - top);
    return (ey / 2 * 30) / (dy / 10 + 1) + (ex / 2 * 30) / (dx / 10 + 1);
}

void Calibration_Dlg::paintEvent(QPaintEvent *)
{
    if (mainmap.isNull())
        return;
    // Positions are native pixels; sizes grow with the display scaling.
    const qreal scale = devicePixelRatioF();
    mainmap.setDevicePixelRatio(1);
    mainmap.fill(Qt::blue);
    {
        QPainter painter(&mainmap);
        painter.setPen(QPen(Qt::white, PenWidth));

        painter.translate(ellipse_x[size_t(point_step)], ellipse_y[size_t(point_step)]);
        painter.scale(scale, scale);
        painter.drawLine(-CrossArm, -CrossArm, CrossArm, CrossArm);
        painter.drawLine(-CrossArm, CrossArm, CrossArm, -CrossArm);
        for (const auto &ring : {OuterRing, MiddleRing, InnerRing}) {
            const int radius = ring[size_t(ellipse_step)];
            painter.drawEllipse(QPoint(0, 0), radius, radius);
        }

        painter.resetTransform();
        painter.translate(QPoint(cWidth / 2, cHeight / 2));
        painter.scale(scale, scale);
        QFont font = painter.font();
        font.setPointSize(CountdownPoints);
        painter.setFont(font);
        const int seconds = (TicksUntilTimeOut - time_step) / 2;
        painter.drawText(CountdownFromCentre,
                         QString::number(seconds).rightJustified(2, QLatin1Char('0')));
        font.setPointSize(HintPoints);
        painter.setFont(font);
        painter.drawText(HintFromCentre, tr("press ESC to back"));
    }
    mainmap.setDevicePixelRatio(scale);
    QPainter(this).drawPixmap(0, 0, mainmap);
}

void Calibration_Dlg::showEvent(QShowEvent *)
{
    if (!showing.begins())
        return;
    cal_end = false;
    underWay = true;
    ++session;
    point_step = 0;
    ellipse_step = 0;
    time_step = 0;
    deviation = 0;
    m_IsCali = 1;
    await(cal::Step1);
    if (rect.isValid())
        setGeometry(rect);
    // Not showFullScreen(), which shows a window that is being shown already: newer toolkits take
    // that for another showing.
    setWindowState((windowState() & ~Qt::WindowMinimized) | Qt::WindowFullScreen);
    // Without a window manager nobody else gives it the keyboard.
    activateWindow();
    SendCalStep(cal::Begin);
    timer->start(TickPeriod);
}

void Calibration_Dlg::hideEvent(QHideEvent *)
{
    if (!showing.ends())
        return;
    m_IsCali = 0;
    timer->stop();
    // What the device still says belongs to what is over.
    news.forget();
    finishSession();
}

// Tells the device what becomes of the calibration.
void Calibration_Dlg::finishSession()
{
    if (!underWay)
        return;
    bool save = false;
    if (cal_end) {
        const int asking = session;
        CalEnd_dlg asked(nullptr);
        question = &asked;
        // Where the eyes are; the main window may be elsewhere.
        if (rect.isValid())
            asked.move(rect.center() - asked.rect().center());
        save = asked.CalEnd(deviation);
        // Another device may have been plugged in meanwhile; the result is not its own.
        if (session != asking)
            return;
        if (asked.timedOut())
            emit endedByItself(
                tr("The calibration was discarded because nobody answered whether to "
                   "save it. %1")
                    .arg(CalEnd_dlg::accuracyText(deviation)));
    }
    underWay = false;
    if (save)
        SendCalSave();
    else
        SendCalReset();
}

void Calibration_Dlg::OnLinkEnding(bool deviceGone)
{
    const bool tell = underWay && !deviceGone;
    if (underWay)
        emit endedByItself(deviceGone
                               ? tr("The calibration ended because the touch frame was lost.")
                               : tr("The calibration ended with the link to the touch frame. "
                                    "It was discarded."));
    underWay = false;
    ++session;
    news.forget();
    if (tell)
        SendCalReset();
    if (question)
        question->reject();
    if (!deviceGone)
        hide();
}

void Calibration_Dlg::ontimer()
{
    ellipse_step = (ellipse_step + 1) % Phases;
    ++time_step;
    if (time_step == TicksUntilTimeOut) {
        emit endedByItself(tr("The calibration ended because no target was touched for a while. It "
                              "was discarded."));
        hide();
    }
    update();
}

void Calibration_Dlg::DoRecv03(UCHAR *RecvBuf)
{
    DoOldCalibration(RecvBuf);
    if (cal_end)
        hide();
}

// The link delivers a reply many times over: each is acted on once, and in order.
void Calibration_Dlg::await(UCHAR step)
{
    news.forget();
    news.ask({command::Calibration, step});
}

void Calibration_Dlg::DoOldCalibration(unsigned char *buf)
{
    const Frame frame = command::frameAt(buf);
    const bool awaited = news.take(frame) == ReportNews::News::Answer;
    const auto reply = command::CalibrationStep::decode(frame);
    if (!reply)
        return;
    if (reply->step == cal::Begin)
        qDebug("CAL_BEGIN\n");
    if (!awaited)
        return;
    switch (reply->step) {
    case cal::Step1:
    case cal::Step2:
    case cal::Step3:
    case cal::Step4:
        qDebug("CAL_STEP%d\n", reply->step);
        point_step = reply->step - cal::Step1;
        await(UCHAR(reply->step + 1));
        SendCalStep(reply->step);
        break;
    case cal::Check:
        qDebug("CAL_CHECK\n");
        await(cal::End);
        SendCalStep(cal::Check);
        break;
    default:
        qDebug("CAL_END\n");
        if (const auto end = command::CalibrationEnd::decode(frame))
            deviation = (std::abs(end->deviationX) + std::abs(end->deviationY)) / 2;
        if (deviation <= CalEnd_dlg::LargestGoodDeviation)
            qDebug("%s\n", qPrintable(tr("Calibration accuracy: %1%").arg(100 - deviation)));
        cal_end = true;
        break;
    }
    update();
}
