// SPDX-License-Identifier: GPL-3.0-or-later

#include "lightset_dlg.h"

#include "notice.h"
#include "readable.h"
#include "screenlayout.h"
#include "scrolled.h"
#include "test_win.h"
#include "ui_lightset_dlg.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QTimerEvent>

#include <algorithm>
#include <initializer_list>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
namespace settings = command::settings;
namespace scan = command::scan;
using PlotAxis = LightPlot::Axis;
using Light = LightPlot::Light;

namespace {

constexpr auto PollPeriod = 180ms;
constexpr int TicksAfterRead = 5;
constexpr int TicksAfterWrite = 10;
constexpr int ReadBackMs = 300; // after a write, which goes out first

} // namespace

LightSet_dlg::LightSet_dlg(QWidget *parent)
    : WholeScreen(parent)
    , ui(std::make_unique<Ui::LightSet_dlg>())
    , timer(new QTimer(this))
{
    ui->setupUi(this);
    panelPlace = ui->groupBox_3->geometry();
    new Scrolled(ui->groupBox_3, panelPlace.size());
    ui->LightChooseBtn->hide();
    prepareNotice(ui->notice);
    readable::keep(ui->label_15);
    // A click on the panel, or on a button of it that waits for a reply, chooses no light below.
    ui->groupBox_3->setAttribute(Qt::WA_NoMousePropagation);
    showValuesPlainly();
    connect(timer, &QTimer::timeout, this, &LightSet_dlg::ontimer);
    for (const QLineEdit *field : {ui->LightDir, ui->LightNum})
        connect(field, &QLineEdit::textEdited, this, &LightSet_dlg::onChosen);
    for (QPushButton *button : {ui->LightAddBtn, ui->LightDecBtn})
        button->installEventFilter(this);
}

LightSet_dlg::~LightSet_dlg() = default;

void LightSet_dlg::on_LightChooseBtn_2_clicked()
{
    if (isAside)
        return;
    ui->LightChooseBtn_2->setEnabled(false);
    const auto light = chosenLight();
    if (light && control.light() == nameOf(*light))
        askAbout(control.switchTo(ui->LightChooseBtn_2->text() == tr("Disable")));
}

void LightSet_dlg::on_LightChooseBtn_clicked()
{
    const auto light = chosenLight();
    if (!light)
        return;
    unasked = false;
    askAbout({settings::GetLight, nameOf(*light)});
}

void LightSet_dlg::on_LightDecBtn_clicked()
{
    step(-1);
}

void LightSet_dlg::on_LightAddBtn_clicked()
{
    step(1);
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
    postponed = TimerStep != 0 && watch.isArriving();
    if (postponed) {
        if (unasked)
            on_LightChooseBtn_clicked();
        return;
    }
    if (!believing && layoutDue.hasExpired())
        askForSettings();
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
    if (news.take(report) == ReportNews::News::Repeated || isAside)
        return;
    if (const auto settingsReport = command::AdcReport::decode(report)) {
        takeSettings(*settingsReport);
    } else if (const auto light = command::LightReport::decode(report)) {
        takeLight(*light);
        update();
    } else if (const auto counts = command::LightCounts::decode(report)) {
        plot.setCounts(counts->x, counts->y);
        // Somebody asked for the other layout; without a signal test there is nobody who would.
        believing = believing && !signalTest();
    } else if (const auto page = command::ScanPage::decode(report); page && believing) {
        takePage(*page);
    }
    updateNotice();
}

void LightSet_dlg::OnLinkEnded()
{
    Ready = false;
    userChose = false;
    unasked = false;
    control.forget();
    news.forget();
    watch.forget();
    plot.forget();
    // The next one starts with the other layout of pages, and has settings of its own.
    doubtLayout();
    written.reset();
    isOther = false;
    refusal.clear();
    readBack.stop();
    lightDue = QDeadlineTimer(QDeadlineTimer::Forever);
    for (QLineEdit *field : {ui->MinADC, ui->MaxADC, ui->MinEdgeADC, ui->MaxEdgeADC,
                             ui->ADCThreshold, ui->EdgeADCThreshold, ui->LightDir, ui->LightNum,
                             ui->LightADC, ui->LightORG, ui->LightAGC, ui->LightAGCSet})
        field->setText({}); // clear() would count as typed
    ui->LightChooseBtn_2->setText(tr("Disable"));
    updateLight();
    updateNotice();
    update();
}

void LightSet_dlg::showEvent(QShowEvent *)
{
    if (!showing.begins())
        return;
    if (test_win *test = signalTest()) {
        test->standAside(FrameUsers::LightScreen, true);
        // What it has asked for may still come.
        believing = false;
    }
    Ready = false;
    unasked = userChose;
    plot.setCounts(0, 0);
    for (QLineEdit *field : {ui->MinADC, ui->MaxADC, ui->MinEdgeADC, ui->MaxEdgeADC,
                             ui->ADCThreshold, ui->EdgeADCThreshold})
        field->setModified(false);
    const QWidget *operatedOn = parentWidget() ? parentWidget() : this;
    cover(operatedOn->screen()->geometry());
    TimerStep = 0;
    if (!isAside)
        beginAsking();
    look.start(ScanWatch::LookMs, this);
}

void LightSet_dlg::hideEvent(QHideEvent *)
{
    if (!showing.ends())
        return;
    Ready = false;
    postponed = false;
    plot.dropPicture();
    if (const auto unsent = control.rest())
        askAbout(*unsent);
    GetADCData();
    timer->stop();
    late.stop();
    look.stop();
    readBack.stop();
    written.reset();
    isOther = false;
    refusal.clear();
    watch.forget();
    lightDue = QDeadlineTimer(QDeadlineTimer::Forever);
    updateNotice();
    // Behind the last read, which chooses this window's layout.
    if (test_win *test = signalTest())
        test->standAside(FrameUsers::LightScreen, false);
}

void LightSet_dlg::changeEvent(QEvent *event)
{
    WholeScreen::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showValuesPlainly();
    // A window manager may clean up after the last showing when the next has begun already.
    if (event->type() == QEvent::WindowStateChange && isVisible() &&
        !(windowState() & (Qt::WindowFullScreen | Qt::WindowMinimized)))
        setWindowState(windowState() | Qt::WindowFullScreen);
}

// The panel keeps inside the screen.
void LightSet_dlg::resizeEvent(QResizeEvent *)
{
    QRect place(panelPlace.topLeft(), panelPlace.size().boundedTo(size()));
    place.moveRight(std::min(place.right(), width() - 1));
    place.moveBottom(std::min(place.bottom(), height() - 1));
    ui->groupBox_3->setGeometry(place);
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
    onChosen();
}

// A button that waits for an answer is disabled; who presses it then has made a step all the same.
bool LightSet_dlg::eventFilter(QObject *watched, QEvent *event)
{
    const auto *button = qobject_cast<QPushButton *>(watched);
    const bool isPress =
        event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (!button || button->isEnabled() || !isPress ||
        static_cast<QMouseEvent *>(event)->button() != Qt::LeftButton)
        return WholeScreen::eventFilter(watched, event);
    if (control.isStepping())
        step(button == ui->LightAddBtn ? 1 : -1);
    return true;
}

void LightSet_dlg::keyPressEvent(QKeyEvent *event)
{
    if (parked && focusWidget() == this && event->key() == Qt::Key_Space)
        step(parked == ui->LightAddBtn ? 1 : -1);
    else
        WholeScreen::keyPressEvent(event);
}

void LightSet_dlg::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == look.timerId()) {
        updateNotice();
    } else if (event->timerId() == late.timerId()) {
        late.stop();
        timer->start(); // the next tick is a whole period away
        ontimer();
    } else if (event->timerId() == readBack.timerId()) {
        readBack.stop();
        askForSettings();
        TimerStop = std::max(TimerStop, TicksAfterRead);
    } else {
        WholeScreen::timerEvent(event);
    }
}

void LightSet_dlg::GetADCData()
{
    askForSettings();
    TimerStop = TicksAfterRead;
}

void LightSet_dlg::SendADCData()
{
    const auto lines = typedLines();
    updateNotice();
    if (!lines || isAside)
        return;
    send(lines->encode());
    TimerStop = TicksAfterWrite;
    // Shown is what the device then says of it.
    written = lines;
    isOther = false;
    readBack.start(ReadBackMs, this);
}

void LightSet_dlg::SendSetLightData()
{
    if (const auto due = control.next())
        askAbout(*due);
}

void LightSet_dlg::askForSettings()
{
    news.ask({command::Settings, command::replyTo(settings::GetAdc), {}, 0});
    watch.asked(scan::Counts); // which it tells too
    layoutDue.setRemainingTime(ScanWatch::PatienceMs);
    send(command::request(command::Settings, settings::GetAdc));
}

// Each request about a light is answered by how the light is.
void LightSet_dlg::askAbout(const command::LightRequest &request)
{
    const command::LightName &light = request.light;
    news.ask({command::Settings,
              command::replyTo(settings::GetLight),
              {light.axis, UCHAR(light.number & 0xFF), UCHAR(light.number >> 8 & 0xFF)},
              3});
    if (lightDue.isForever())
        lightDue = QDeadlineTimer(ScanWatch::PatienceMs + watch.backlogMs());
    send(request.encode());
}

void LightSet_dlg::requestScan(UCHAR axis)
{
    news.ask({command::Scan, command::replyTo(axis), {0, 0}, 2});
    watch.asked(axis, pages(axis));
    send(command::request(command::Scan, axis));
}

void LightSet_dlg::send(Frame frame)
{
    if (!isAside)
        emit Write03(frame.data());
}

void LightSet_dlg::beginAsking()
{
    GetADCData();
    timer->start(PollPeriod);
}

test_win *LightSet_dlg::signalTest() const
{
    return parentWidget() ? parentWidget()->findChild<test_win *>() : nullptr;
}

// The picture is drawn for the screen that the window is on by now.
void LightSet_dlg::followScreen()
{
    QScreen *shown = screen();
    if (shown->geometry() == drawnFor && devicePixelRatioF() == drawnRatio)
        return;
    drawnFor = shown->geometry();
    drawnRatio = devicePixelRatioF();
    const ScreenLayout layout = ScreenLayout::current();
    drawnScale = layout.scaleOf(shown);
    const auto index = QGuiApplication::screens().indexOf(shown);
    plot.setScreen(layout.screens.value(index).size(), drawnScale);
}
