// SPDX-License-Identifier: GPL-3.0-or-later

#include "test_win.h"

#include "message.h"
#include "notice.h"
#include "readable.h"
#include "ui_test_win.h"
#include "wholenumber.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QShortcut>
#include <QTimer>
#include <QTimerEvent>

#include <algorithm>

using namespace Qt::StringLiterals;
namespace scan = command::scan;

namespace {

constexpr int UnitsPerLevel = 4; // of the one-byte levels
constexpr int LargestLimit = SignalPlot::FullScale;
constexpr int LargestInterval = 9999;
constexpr int LargestAgc = 255;

const QString DefaultUpper = u"1000"_s;
const QString DefaultLower = u"650"_s;
const QString DefaultInterval = u"1"_s;
const QString DefaultAgc = u"255"_s;

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
    scrolled = keepOnScreen(this);
    readable::keep(ui->ALL_btn);
    prepareNotice(ui->notice);
    takeWholeNumbers(ui->Upper_text, 0, LargestLimit);
    takeWholeNumbers(ui->Lower_text, 0, LargestLimit);
    takeWholeNumbers(ui->interal_text, 0, LargestInterval);
    takeWholeNumbers(ui->AGC_text, 0, LargestAgc);
    connect(timer, &QTimer::timeout, this, &test_win::ontimer);

    logAction->setObjectName(u"logAction"_s);
    logAction->setCheckable(true);
    connect(logAction, &QAction::toggled, this, &test_win::onLogToggled);
    menu->addAction(logAction);
    // The key Menu comes as a context menu event; this one does not on every desktop.
    connect(new QShortcut(Qt::SHIFT | Qt::Key_F10, this), &QShortcut::activated, this,
            [this] { menu->popup(mapToGlobal(plotPlace().topLeft())); });
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

void test_win::on_ALL_btn_clicked()
{
    if (isContinuous())
        stopContinuous();
    else
        startContinuous();
}

void test_win::ontimer()
{
    if (watch.isArriving()) {
        late.start(ScanWatch::ReportMs, this);
        return;
    }
    late.stop();
    if (!believing && countsDue.hasExpired())
        askForCounts();
    const UCHAR axis = X_finish ? scan::AxisY : scan::AxisX;
    if (testdata.interal == 0)
        timer->setInterval(ScanWatch::ReportMs * pages(axis));
    X_finish = !X_finish;
    send(axis);
}

void test_win::DoRecv03(UCHAR *RecvBuf)
{
    const Frame report = command::frameAt(RecvBuf);
    const bool repeated = news.take(report) == ReportNews::News::Repeated;
    if (users.any())
        return;
    if (command::AdcReport::decode(report))
        believing = false;
    else if (const auto counts = command::LightCounts::decode(report))
        takeCounts(*counts);
    else if (const auto page = command::ScanPage::decode(report); page && !repeated && believing)
        takePage(*page);
}

void test_win::OnLinkEnded()
{
    if (isContinuous())
        stopContinuous();
    testing = false;
    log.end();
    news.forget();
    watch.forget();
    testdata.X_total = 0;
    testdata.Y_total = 0;
    picture.forget();
    showPlot();
    updateNotice();
}

void test_win::standAside(FrameUsers::User user, bool aside)
{
    if (users.set(user, aside)) {
        believing = false;
        watch.forget();
        timer->stop();
        late.stop();
        if (!users.any() && testing)
            ask();
    }
    updateNotice();
}

void test_win::addToMenu(QAction *action)
{
    menu->addAction(action);
    addAction(action);
}

void test_win::paintEvent(QPaintEvent *event)
{
    if (!event->region().intersects(plotPlace()))
        return;
    QPainter painter(this);
    picture.paint(painter, plotPlace().topLeft(), this, testdata, X_enable, Y_enable);
}

void test_win::hideEvent(QHideEvent *event)
{
    QMainWindow::hideEvent(event);
    if (!isHidden())
        return; // minimised, or on another workspace
    if (isContinuous())
        stopContinuous();
    else if (log.isUnsaved())
        log.writeLog();
}

void test_win::contextMenuEvent(QContextMenuEvent *event)
{
    menu->popup(event->globalPos());
}

void test_win::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == look.timerId()) {
        updateNotice();
    } else if (event->timerId() == late.timerId()) {
        timer->start(); // the next tick is a whole period away
        ontimer();
    } else {
        QMainWindow::timerEvent(event);
    }
}

// False when the fields make no sense; no test starts then.
bool test_win::takeSettings()
{
    refusal.clear();
    const auto upper = read(ui->label, LargestLimit);
    const auto lower = read(ui->label_2, LargestLimit);
    const auto interval = read(ui->label_3, LargestInterval);
    const auto agc = read(ui->label_4, LargestAgc);
    updateNotice();
    if (!upper || !lower || !interval || !agc)
        return false;
    if (*upper <= *lower) {
        MALVOUTIL::Message::ShowMsg(this, tr("Upper limit value less than lower limit value."));
        ui->Upper_text->setText(DefaultUpper);
        ui->Lower_text->setText(DefaultLower);
        return false;
    }
    log.beginTest();
    testdata.AGC = *agc;
    testdata.interal = *interval;
    testdata.upper = *upper;
    testdata.lower = *lower;
    testdata.showADC = ui->ADCche->isChecked();
    testdata.showAGC = ui->AGCche->isChecked();
    testdata.showRip = ui->Ripche->isChecked();
    testdata.X_total = 0;
    testdata.Y_total = 0;
    return true;
}

// An empty field counts as 0. The first one that cannot be read is shown.
std::optional<int> test_win::read(const QLabel *name, int most)
{
    auto *field = qobject_cast<QLineEdit *>(name->buddy());
    const auto number = field->text().isEmpty() ? 0 : wholeNumber(field->text(), 0, most);
    if (!number && refusal.isEmpty()) {
        refusal = tr("%1 enter a whole number from 0 to %2").arg(name->text()).arg(most);
        field->setFocus();
        field->selectAll();
    }
    return number;
}

void test_win::startSingle(UCHAR axis)
{
    if (!takeSettings())
        return;
    X_enable = axis == scan::AxisX ? SignalPicture::UnderTest : 0;
    Y_enable = axis == scan::AxisY ? SignalPicture::UnderTest : 0;
    begin();
}

void test_win::startContinuous()
{
    if (!takeSettings())
        return;
    enableInputs(false);
    X_enable = SignalPicture::UnderTest;
    Y_enable = SignalPicture::UnderTest;
    continuous = true;
    ui->ALL_btn->setText(tr("Stop"));
    begin();
}

void test_win::begin()
{
    testing = true;
    showPlot();
    watch.forget();
    if (!users.any())
        ask();
    updateNotice();
}

void test_win::ask()
{
    askForCounts();
    if (isContinuous())
        timer->start(testdata.interal * IntervalUnitMs);
    else
        send(X_enable != 0 ? scan::AxisX : scan::AxisY);
}

// This also chooses the layout of pages.
void test_win::askForCounts()
{
    believing = false;
    countsDue.setRemainingTime(ScanWatch::PatienceMs);
    send(scan::Counts);
}

void test_win::stopContinuous()
{
    enableInputs(true);
    timer->stop();
    late.stop();
    continuous = false;
    X_enable = 0;
    Y_enable = 0;
    ui->ALL_btn->setText(tr("All Test"));
    showPlot();
    testing = false;
    log.end();
    watch.forget();
    updateNotice();
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
    picture.change();
    update(plotPlace());
}

void test_win::send(UCHAR sub)
{
    watch.asked(sub, sub == scan::Counts ? 1 : pages(sub));
    if (!look.isActive())
        look.start(ScanWatch::LookMs, this);
    if (sub != scan::Counts) // a scan is news from its first page on
        news.ask({command::Scan, command::replyTo(sub), {0, 0}, 2});
    Frame frame = command::request(command::Scan, sub);
    emit Write03(frame.data());
}

void test_win::takeCounts(const command::LightCounts &counts)
{
    believing = true;
    watch.answered(scan::Counts);
    testdata.X_total = counts.x;
    testdata.Y_total = counts.y;
    picture.change();
    if (testing && !log.isRunning() && logAction->isChecked())
        log.begin(lights(scan::AxisX), lights(scan::AxisY));
    updateNotice();
}

void test_win::takePage(const command::ScanPage &page)
{
    const UCHAR axis = page.axis;
    if (testdata.X_total == 0 || page.first >= lights(axis))
        return;
    const auto row = axis == scan::AxisX ? SignalLog::Row::X : SignalLog::Row::Y;
    const int end = std::min(page.first + scan::LevelsPerPage, lights(axis));
    for (int i = page.first; i < end; ++i) {
        const int level = UnitsPerLevel * page.level(i - page.first);
        picture.setLevel(axis, i, testdata.X_total, level);
        if (progress(axis) != 0)
            log.level(row, i, level);
    }
    const bool isLast = end == lights(axis);
    watch.pageCame(axis, isLast ? pages(axis) : page.first / scan::LevelsPerPage + 1, pages(axis));
    updateNotice();
    // What has waited for the end of this scan is due.
    if (late.isActive() && !watch.isArriving())
        late.start(0, this);
    if (isLast)
        completeScan(axis);
}

void test_win::completeScan(UCHAR axis)
{
    const bool underTest = progress(axis) != 0;
    if (underTest && progress(axis) < SignalPicture::Saturated)
        ++progress(axis);
    // While both axes are under test the picture waits for Y.
    if (axis == scan::AxisX && Y_enable != 0)
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

void test_win::updateNotice()
{
    if (!watch.isWaiting())
        look.stop();
    const QString other = users.has(FrameUsers::LightCheck)
                              ? tr("The test waits until the light check has ended")
                              : tr("The test waits until the light setting is closed");
    showNotice(ui->notice, !refusal.isEmpty()       ? refusal
                           : users.any() && testing ? other
                                                    : watch.overdue());
}

void test_win::onLogToggled(bool on)
{
    if (!on)
        log.end();
    else if (testing && testdata.X_total != 0)
        log.begin(lights(scan::AxisX), lights(scan::AxisY));
}
