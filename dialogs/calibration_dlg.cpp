// SPDX-License-Identifier: GPL-3.0-or-later

#include "calibration_dlg.h"

#include "calend_dlg.h"
#include "device/records.h"
#include "ui_calibration_dlg.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QWindow>

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

// The screen of that number, or the first one.
CalibrationScreen areaOn(qsizetype number, const ScreenLayout &layout)
{
    QRect screen = layout.screens.size() == 1
                       ? QRect(QPoint(0, 0), layout.desktop)
                       : layout.screens.value(number, layout.screens.first());
    if (!layout.isEachForItself)
        return {screen, layout.desktop};
    screen.moveTo(0, 0);
    return {screen, screen.size()};
}

} // namespace

Calibration_Dlg::Calibration_Dlg(QWidget *parent)
    : WholeScreen(parent)
    , ui(std::make_unique<Ui::Calibration_Dlg>())
    , timer(new QTimer(this))
{
    ui->setupUi(this);
    setWindowOpacity(0.5);
    connect(timer, &QTimer::timeout, this, &Calibration_Dlg::ontimer);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &Calibration_Dlg::lookAtScreens);
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
    area = areaOn(screen, layout);
    mainmap = {};
    const auto targets = area.targets();
    for (size_t i = 0; i < targets.size(); ++i) {
        ellipse_x[i] = targets[i].x();
        ellipse_y[i] = targets[i].y();
    }

    const QList<QScreen *> screens = QGuiApplication::screens();
    if (QScreen *shown = screens.value(screen, screens.first())) {
        watch(shown);
        rect = shown->geometry();
        compositorScale = layout.isEachForItself ? layout.scaleOf(shown) : 0;
        move(shown->availableGeometry().topLeft());
    }
}

// The desktop says so more than once when its screens change.
void Calibration_Dlg::watch(QScreen *screen)
{
    if (covered)
        covered->disconnect(this);
    covered = screen;
    connect(screen, &QScreen::geometryChanged, this, &Calibration_Dlg::lookAtScreens);
    connect(screen, &QScreen::virtualGeometryChanged, this, &Calibration_Dlg::lookAtScreens);
}

// Touches of targets that were elsewhere would calibrate for a desktop that is no more.
void Calibration_Dlg::lookAtScreens()
{
    if (!underWay || cal_end)
        return;
    const ScreenLayout layout = ScreenLayout::current();
    const auto number = QGuiApplication::screens().indexOf(covered.get());
    if (number >= 0 && number < layout.screens.size() && areaOn(number, layout) == area)
        return;
    emit endedByItself(
        tr("The calibration ended because the screens have changed. It was discarded."));
    hide();
}

QRect Calibration_Dlg::calibratedScreen() const
{
    return area.screen;
}

qreal Calibration_Dlg::scale() const
{
    return compositorScale > 0 ? compositorScale : devicePixelRatioF();
}

void Calibration_Dlg::SendCalStep(int step)
{
    send(CalibrationSteps::echoFrame(step, area));
}

void Calibration_Dlg::send(Frame frame)
{
    emit Write03(frame.data());
}

void Calibration_Dlg::SendCalSave()
{
    send(CalibrationSteps::saveFrame());
    std::puts("SendCalSave");
}

void Calibration_Dlg::SendCalReset()
{
    send(CalibrationSteps::resetFrame());
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
        mainmap = QPixmap(area.screen.size());
    if (mainmap.isNull())
        return;
    // Positions are native pixels; sizes grow with the display scaling.
    const qreal scale = this->scale();
    mainmap.setDevicePixelRatio(1);
    mainmap.fill(Qt::blue);
    {
        QPainter painter(&mainmap);
        painter.setPen(QPen(Qt::white, PenWidth));

        const auto target = size_t(steps.target());
        painter.translate(ellipse_x[target], ellipse_y[target]);
        painter.scale(scale, scale);
        painter.drawLine(-CrossArm, -CrossArm, CrossArm, CrossArm);
        painter.drawLine(-CrossArm, CrossArm, CrossArm, -CrossArm);
        for (const auto &ring : {OuterRing, MiddleRing, InnerRing}) {
            const int radius = ring[size_t(ellipse_step)];
            painter.drawEllipse(QPoint(0, 0), radius, radius);
        }

        painter.resetTransform();
        painter.translate(QPoint(area.screen.width() / 2, area.screen.height() / 2));
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
    if (question) {
        question->reject();
        if (underWay)
            SendCalReset();
    }
    cal_end = false;
    underWay = true;
    ++session;
    ellipse_step = 0;
    time_step = 0;
    m_IsCali = 1;
    steps.begin();
    cover(rect);
    send(CalibrationSteps::beginFrame());
    timer->start(TickPeriod);
}

void Calibration_Dlg::hideEvent(QHideEvent *)
{
    if (!showing.ends())
        return;
    m_IsCali = 0;
    timer->stop();
    mainmap = {};
    // What the device still says belongs to what is over.
    steps.forget();
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
        if (opener && opener->windowHandle()) {
            asked.winId(); // makes its window
            asked.windowHandle()->setTransientParent(opener->windowHandle());
        }
        // Where the eyes are; the main window may be elsewhere.
        if (rect.isValid())
            asked.move(rect.center() - asked.rect().center());
        save = asked.CalEnd(steps.deviation());
        // Another device may have been plugged in meanwhile; the result is not its own.
        if (session != asking)
            return;
        if (asked.timedOut())
            emit endedByItself(
                tr("The calibration was discarded because nobody answered whether to "
                   "save it. %1")
                    .arg(CalEnd_dlg::accuracyText(steps.deviation())));
    }
    underWay = false;
    if (save) {
        SendCalSave();
        emit saved(steps.deviation());
    } else {
        SendCalReset();
    }
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
    steps.forget();
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

void Calibration_Dlg::DoOldCalibration(unsigned char *buf)
{
    using Event = CalibrationSteps::Event;
    const Frame frame = command::frameAt(buf);
    const auto reply = command::CalibrationStep::decode(frame);
    if (reply && reply->step == cal::Begin)
        qDebug("CAL_BEGIN\n");
    switch (steps.take(frame)) {
    case Event::Nothing:
        return;
    case Event::Target:
        qDebug("CAL_STEP%d\n", reply->step);
        send(steps.echo(area));
        break;
    case Event::Checking:
        qDebug("CAL_CHECK\n");
        send(steps.echo(area));
        break;
    case Event::Ended:
        qDebug("CAL_END\n");
        if (steps.deviation() <= CalEnd_dlg::LargestGoodDeviation)
            qDebug("%s\n",
                   qPrintable(tr("Calibration accuracy: %1%").arg(100 - steps.deviation())));
        cal_end = true;
        break;
    }
    update();
}
