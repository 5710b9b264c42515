// SPDX-License-Identifier: GPL-3.0-or-later

#include "calend_dlg.h"

#include "scrolled.h"
#include "ui_calend_dlg.h"

#include <QLoggingCategory>
#include <QTimer>

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(lcCalibration, "quorvel.calibration", QtWarningMsg)

CalEnd_dlg::CalEnd_dlg(QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::CalEnd_dlg>())
    , timer(new QTimer(this))
{
    ui->setupUi(this);
    keepOnScreen(this);
    setWindowModality(Qt::WindowModal); // the tray's menu still works
    connect(timer, &QTimer::timeout, this, &CalEnd_dlg::ontimer);
    timer->start(1s);
}

CalEnd_dlg::~CalEnd_dlg() = default;

QString CalEnd_dlg::accuracyText(int deviation)
{
    if (deviation > LargestGoodDeviation)
        return tr("Calibration error is too large.We recommend calibrate it again.");
    return tr("Calibration accuracy: %1%.").arg(100 - deviation);
}

bool CalEnd_dlg::CalEnd(int deviation)
{
    // The question stays short: the accuracy is for whoever looks closer.
    qCInfo(lcCalibration).noquote() << accuracyText(deviation);
    const QString whole =
        deviation > LargestGoodDeviation
            ? tr("Calibration error is too large.We recommend calibrate it again. The touches were "
                 "%1% off.")
                  .arg(deviation)
            : accuracyText(deviation);
    setToolTip(whole);
    setAccessibleDescription(whole);
    ui->L1_lab->hide();
    exec();
    return save;
}

void CalEnd_dlg::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    // Without a window manager nobody else gives it the keyboard.
    activateWindow();
}

void CalEnd_dlg::on_Nobtn_clicked()
{
    close();
}

void CalEnd_dlg::on_pushButton_clicked()
{
    save = true;
    close();
}

void CalEnd_dlg::ontimer()
{
    if (time == 0) {
        unanswered = true;
        close();
    }
    --time;
    ui->Nobtn->setText(tr("No = %1").arg(time));
}
