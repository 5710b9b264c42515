// SPDX-License-Identifier: GPL-3.0-or-later

#include "tryout_dlg.h"

#include "announce.h"
#include "scrolled.h"
#include "ui_tryout_dlg.h"

#include <QTimer>

#include <cstdlib>

using namespace std::chrono_literals;

namespace {

constexpr auto SpokenAfter = 600ms; // longer than a click waits for another, and a wheel turns on
constexpr int WheelStep = 120;      // of its angle

QString wheelWords(const Gesture &gesture)
{
    const bool isSideways = gesture.angle.y() == 0;
    const int angle = isSideways ? gesture.angle.x() : gesture.angle.y();
    const int steps = std::abs(angle) / WheelStep;
    QString words;
    if (steps == 0)
        words = TryOut_dlg::tr("Wheel: less than a step in %L1 ms");
    else if (isSideways)
        words = angle > 0 ? TryOut_dlg::tr("Wheel: %Ln step(s) to the left in %L1 ms", "", steps)
                          : TryOut_dlg::tr("Wheel: %Ln step(s) to the right in %L1 ms", "", steps);
    else
        words = angle > 0 ? TryOut_dlg::tr("Wheel: %Ln step(s) up in %L1 ms", "", steps)
                          : TryOut_dlg::tr("Wheel: %Ln step(s) down in %L1 ms", "", steps);
    return words.arg(gesture.time);
}

} // namespace

TryOut_dlg::TryOut_dlg(QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::TryOut_dlg>())
    , untilSpoken(new QTimer(this))
{
    ui->setupUi(this);
    keepWithinScreen(this);
    const GestureReader::Limits limits = GestureField::limits();
    ui->limitsLab->setText(
        tr("On this desktop two clicks within %L1 ms are a double click, two taps "
           "also within %L2 px; what is down for %L3 ms is held, and what moves "
           "%L4 px is dragged.")
            .arg(limits.doubleClickMs)
            .arg(qRound(limits.doubleTapPixels))
            .arg(limits.holdMs)
            .arg(qRound(limits.dragPixels)));
    // What is pressed there belongs to the field.
    ui->hintLab->setAttribute(Qt::WA_TransparentForMouseEvents);
    untilSpoken->setSingleShot(true);
    connect(untilSpoken, &QTimer::timeout, this, &TryOut_dlg::speak);
    connect(ui->field, &GestureField::recognised, this, &TryOut_dlg::tell);
}

TryOut_dlg::~TryOut_dlg() = default;

QString TryOut_dlg::words(const Gesture &gesture)
{
    using Kind = Gesture::Kind;
    const auto filled = [&gesture](const QString &words) {
        return words.arg(gesture.time).arg(qRound(gesture.distance));
    };
    switch (gesture.kind) {
    case Kind::Click:
        return filled(gesture.byTouch ? tr("Tap: down for %L1 ms, moved %L2 px")
                                      : tr("Click: down for %L1 ms, moved %L2 px"));
    case Kind::LateClick:
        return filled(gesture.byTouch
                          ? tr("Tap %L1 ms after the one before and %L2 px from it: no double tap")
                          : tr("Click %L1 ms after the one before and %L2 px from it: no double "
                               "click"));
    case Kind::DoubleClick:
        return filled(gesture.byTouch ? tr("Double tap: %L1 ms and %L2 px apart")
                                      : tr("Double click: %L1 ms and %L2 px apart"));
    case Kind::Hold:
        return filled(gesture.byTouch ? tr("Touched for %L1 ms, moved %L2 px: no right click")
                                      : tr("Pressed for %L1 ms, moved %L2 px: no right click"));
    case Kind::HeldRightClick:
        return filled(tr("Right click after %L1 ms, moved %L2 px"));
    case Kind::RightClick:
        return filled(tr("Right click: down for %L1 ms, moved %L2 px"));
    case Kind::Drag:
        return (gesture.byTouch ? tr("Drag by touch of %L1 px in %L2 ms")
                                : tr("Drag of %L1 px in %L2 ms"))
            .arg(qRound(gesture.distance))
            .arg(gesture.time);
    case Kind::Wheel:
        return wheelWords(gesture);
    }
    return {};
}

void TryOut_dlg::tell(const Gesture &gesture)
{
    if (!gesture.replaces) {
        if (untilSpoken->isActive())
            speak();
        if (!ui->lastLab->text().isEmpty())
            ui->logList->insertItem(0, ui->lastLab->text());
        if (ui->logList->count() > MostListed)
            ui->logList->model()->removeRow(MostListed);
    }
    ui->lastLab->setText(words(gesture));
    ui->hintLab->hide();
    untilSpoken->start(SpokenAfter);
}

void TryOut_dlg::on_clearButton_clicked()
{
    untilSpoken->stop();
    ui->lastLab->clear();
    ui->logList->clear();
    ui->field->clear();
    ui->hintLab->show();
}

void TryOut_dlg::speak()
{
    untilSpoken->stop();
    announce(ui->lastLab, ui->lastLab->text());
    emit spoken(ui->lastLab->text());
}
