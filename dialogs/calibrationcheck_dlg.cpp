// SPDX-License-Identifier: GPL-3.0-or-later

#include "calibrationcheck_dlg.h"

#include "announce.h"
#include "screenlayout.h"
#include "ui_calibrationcheck_dlg.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QTouchEvent>

#include <algorithm>

using namespace std::chrono_literals;

namespace {

constexpr auto LeftAfter = 60s; // without a touch or a key

constexpr qreal Arm = CalibrationCheck::CrossArm;
constexpr qreal AskedRing = 14;
constexpr qreal WorstRing = 8;
constexpr qreal TouchDot = 3;
// Of lines, in native pixels: odd, so that a pixel is the middle.
int lineWidth(qreal width, qreal scale)
{
    return int(width * scale) | 1;
}
constexpr qreal ThinLine = 1;
constexpr qreal AskedLine = 3;

constexpr int Gap = 6;         // between a cross and what is written beside it
constexpr int PanelWidth = 60; // in points of its letters

// Letters are read from where the frame is touched: they grow with the page. In points.
constexpr int SmallLetters = 9;
constexpr int LargeLetters = 14;
constexpr int LineParts = 60; // of the shorter side

QString told(qreal number)
{
    return QLocale().toString(number, 'f', 1);
}

} // namespace

CalibrationCheck_dlg::CalibrationCheck_dlg(QWidget *parent)
    : WholeScreen(parent)
    , ui(std::make_unique<Ui::CalibrationCheck_dlg>())
    , model(std::make_unique<CalibrationCheck>(CalibrationCheck::Screen()))
    , untilLeft(new QTimer(this))
{
    ui->setupUi(this);
    setAttribute(Qt::WA_AcceptTouchEvents);
    untilLeft->setSingleShot(true);
    connect(untilLeft, &QTimer::timeout, this, &CalibrationCheck_dlg::reject);
    // A screen that is being removed is named until it is gone, which may be after the last resize.
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &CalibrationCheck_dlg::lookAtScreen,
            Qt::QueuedConnection);
}

CalibrationCheck_dlg::~CalibrationCheck_dlg() = default;

CalibrationCheck::Screen CalibrationCheck_dlg::screenCovered() const
{
    const ScreenLayout layout = ScreenLayout::current();
    QScreen *on = covered ? covered.get() : screen();
    const qsizetype number = QGuiApplication::screens().indexOf(on);
    return {.pixels = layout.screens.value(number).size(),
            .millimetres = layout.millimetres.value(number),
            .scale = layout.scaleOf(on)};
}

void CalibrationCheck_dlg::begin()
{
    model = std::make_unique<CalibrationCheck>(screenCovered());
    tell();
}

void CalibrationCheck_dlg::showEvent(QShowEvent *)
{
    if (!showing.begins())
        return;
    covered = parentWidget() ? parentWidget()->screen() : screen();
    cover(covered->geometry());
    begin();
}

void CalibrationCheck_dlg::hideEvent(QHideEvent *)
{
    if (showing.ends())
        untilLeft->stop();
}

void CalibrationCheck_dlg::lookAtScreen()
{
    const QSize pixels = screenCovered().pixels;
    if (isVisible() && !pixels.isEmpty() && pixels != model->size())
        begin();
}

// It fills its screen a moment after it was shown, and a screen may change its size.
void CalibrationCheck_dlg::resizeEvent(QResizeEvent *)
{
    lookAtScreen();
    placePanel();
}

void CalibrationCheck_dlg::on_againButton_clicked()
{
    begin();
}

void CalibrationCheck_dlg::keyPressEvent(QKeyEvent *event)
{
    untilLeft->start(LeftAfter);
    if (event->key() != Qt::Key_Backspace) {
        WholeScreen::keyPressEvent(event);
        return;
    }
    model->takeBack();
    tell();
}

void CalibrationCheck_dlg::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        take(event->position(), event->timestamp());
}

bool CalibrationCheck_dlg::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::TouchBegin: {
        // At the end a touch is for the buttons: as one of the mouse.
        if (model->isFinished())
            break;
        const auto *touch = static_cast<QTouchEvent *>(event);
        take(touch->points().first().position(), touch->timestamp());
        event->accept();
        return true;
    }
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        event->accept();
        return true;
    default:
        break;
    }
    return WholeScreen::event(event);
}

void CalibrationCheck_dlg::take(const QPointF &at, quint64 ms)
{
    if (!model->take(at * model->scale(), qint64(ms)))
        return;
    tell();
    // At once, as what is said next takes the place of what is still to be said.
    const QString words = ui->resultLab->text() + u'\n' + ui->taskLab->text();
    announce(ui->taskLab, words);
    emit spoken(words);
}

void CalibrationCheck_dlg::tell()
{
    const int asked = model->asked();
    const bool isFinished = model->isFinished();
    if (!isFinished)
        ui->taskLab->setText(
            tr("Touch the middle of cross %L1 of %L2.").arg(asked + 1).arg(model->Crosses));
    else if (model->verdict() == CalibrationCheck::Verdict::Passed)
        ui->taskLab->setText(tr("Passed"));
    else
        ui->taskLab->setText(tr("Calibrate again"));
    ui->resultLab->setText(resultWords());
    ui->hintLab->setVisible(!isFinished);
    ui->againButton->setVisible(isFinished);
    ui->closeButton->setVisible(isFinished);
    ui->panel->setAttribute(Qt::WA_TransparentForMouseEvents, !isFinished);
    placePanel();
    if (isFinished)
        ui->closeButton->setFocus();
    else
        setFocus();
    untilLeft->start(LeftAfter);
    update();
}

QString CalibrationCheck_dlg::resultWords() const
{
    const bool hasSize = model->pixelMillimetres().has_value();
    const int last = model->asked() - 1;
    if (last < 0)
        return {};
    if (!model->isFinished()) {
        const qreal off = model->distance(last);
        return hasSize ? tr("Cross %L1: %2 px off, which is %3 mm.")
                             .arg(last + 1)
                             .arg(told(off), told(model->distanceInMillimetres(last)))
                       : tr("Cross %L1: %2 px off.").arg(last + 1).arg(told(off));
    }
    const int worst = model->worst();
    const QString words =
        hasSize
            ? tr("Touches were %1 px (%2 mm) off on average, and at the most %3 px (%4 mm), at "
                 "cross %L5.\nGood are up to %6 px on average and %7 px at the most.")
                  .arg(told(model->meanDistance()), told(model->meanInMillimetres()),
                       told(model->distance(worst)), told(model->distanceInMillimetres(worst)))
            : tr("Touches were %1 px off on average, and at the most %2 px, at cross %L3.\nGood "
                 "are up to %4 px on average and %5 px at the most.")
                  .arg(told(model->meanDistance()), told(model->distance(worst)));
    return words.arg(worst + 1).arg(told(model->largestGoodMean()),
                                    told(model->largestGoodWorst()));
}

// Between the cross in the middle and the one at the bottom.
void CalibrationCheck_dlg::placePanel()
{
    QFont letters = font();
    letters.setPointSize(
        std::clamp(std::min(width(), height()) / LineParts, SmallLetters, LargeLetters));
    setFont(letters);
    const int wide = std::min(PanelWidth * letters.pointSize(), width() - 2 * Gap);
    letters.setPointSize(2 * letters.pointSize() - SmallLetters + 2);
    letters.setBold(true);
    ui->taskLab->setFont(letters);
    // They count what was hidden before it was ever shown.
    ui->buttons->invalidate();
    ui->panelLayout->invalidate();
    const int high = ui->panelLayout->hasHeightForWidth()
                         ? ui->panelLayout->totalHeightForWidth(wide)
                         : ui->panel->sizeHint().height();
    const int top = std::min(height() / 2 + int(Arm) + Gap, height() - high);
    ui->panel->setGeometry((width() - wide) / 2, top, wide, high);
}

void CalibrationCheck_dlg::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    for (int number = 0; number < model->Crosses; ++number)
        paintWords(painter, number);
    // The rest in native pixels, as touches are.
    painter.scale(1 / model->scale(), 1 / model->scale());
    for (int number = 0; number < model->Crosses; ++number)
        paintCross(painter, number);
    for (int number = 0; number < model->asked(); ++number)
        paintTouch(painter, number);
}

void CalibrationCheck_dlg::paintCross(QPainter &painter, int number) const
{
    const bool isAsked = number == model->asked();
    const qreal scale = model->scale();
    QPen pen = painter.pen();
    pen.setWidth(lineWidth(isAsked ? AskedLine : ThinLine, scale));
    pen.setCapStyle(Qt::FlatCap);
    painter.setPen(pen);
    const QPoint cross = model->cross(number);
    const int arm = qRound(Arm * scale);
    painter.drawLine(cross - QPoint(arm, 0), cross + QPoint(arm, 0));
    painter.drawLine(cross - QPoint(0, arm), cross + QPoint(0, arm));
    if (isAsked)
        painter.drawEllipse(QPointF(cross), AskedRing * scale, AskedRing * scale);
}

void CalibrationCheck_dlg::paintTouch(QPainter &painter, int number) const
{
    const qreal scale = model->scale();
    const QPointF touch = model->touch(number);
    painter.drawLine(QPointF(model->cross(number)), touch);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (model->isFinished() && number == model->worst())
        painter.drawEllipse(touch, WorstRing * scale, WorstRing * scale);
    painter.setBrush(painter.pen().color());
    painter.drawEllipse(touch, TouchDot * scale, TouchDot * scale);
    painter.restore();
}

// Its number, and how far its touch was off, on the side where there is room.
void CalibrationCheck_dlg::paintWords(QPainter &painter, int number) const
{
    QString words;
    if (number >= model->asked())
        words = QLocale().toString(number + 1);
    else if (model->pixelMillimetres())
        words = tr("%L1: %2 px, %3 mm")
                    .arg(number + 1)
                    .arg(told(model->distance(number)), told(model->distanceInMillimetres(number)));
    else
        words = tr("%L1: %2 px").arg(number + 1).arg(told(model->distance(number)));
    const QPoint cross = (QPointF(model->cross(number)) / model->scale()).toPoint();
    QRect place(QPoint(0, 0), painter.fontMetrics().size(Qt::TextSingleLine, words));
    place.moveCenter(cross);
    if (cross.y() < height() / 3)
        place.moveTop(cross.y() + int(Arm) + Gap);
    else
        place.moveBottom(cross.y() - int(Arm) - Gap);
    place.moveLeft(std::clamp(place.left(), Gap, std::max(Gap, width() - Gap - place.width())));
    painter.drawText(place, Qt::AlignCenter, words);
}
