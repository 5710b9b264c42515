// SPDX-License-Identifier: GPL-3.0-or-later

#include "smoothing_dlg.h"

#include "config/fields.h"
#include "outcome.h"
#include "scrolled.h"
#include "ui_smoothing_dlg.h"

smoothing_dlg::smoothing_dlg(QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::smoothing_dlg>())
{
    ui->setupUi(this);
    keepOnScreen(this);
    connect(ui->smo_lv, &QSlider::valueChanged, this, [this] { outcome::show(ui->noticeLab, {}); });
    connect(ui->checkBox, &QCheckBox::toggled, this, [this] { outcome::show(ui->noticeLab, {}); });
    Get_Data();
}

smoothing_dlg::~smoothing_dlg() = default;

void smoothing_dlg::Get_Data()
{
    SmoothingData = xmlclass.read_smoothing();
    Data2Smoothing();
}

void smoothing_dlg::Set_Data()
{
    Smoothing2Data();
    xmlclass.write_smoothing(SmoothingData);
}

void smoothing_dlg::Data2Smoothing()
{
    ui->smo_lv->setValue(SmoothingData.smo_lv);
    ui->checkBox->setChecked(SmoothingData.smo_en != 0);
}

void smoothing_dlg::Smoothing2Data()
{
    SmoothingData.smo_lv = ui->smo_lv->value();
    SmoothingData.smo_en = ui->checkBox->isChecked() ? 1 : 0;
}

void smoothing_dlg::SendSmoothingData()
{
    Frame frame{};
    emit Write03(frame.data());
}

// For a report that tells of smoothing; no device is known to send one.
void smoothing_dlg::DoRecv04(UCHAR *) {}

// Another program may have written the file.
void smoothing_dlg::showEvent(QShowEvent *event)
{
    if (showing.begins())
        Get_Data();
    QDialog::showEvent(event);
}

void smoothing_dlg::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
    // A minimised window keeps what was not saved yet.
    if (!showing.ends())
        return;
    Get_Data();
    outcome::show(ui->noticeLab, {});
}

void smoothing_dlg::on_pushButton_clicked()
{
    Set_Data();
    // What a store reads from no file is what it had before.
    const bool kept =
        xmlclass.read_smoothing() == SmoothingData && xmlclass.gaveWhole(element::Smoothing);
    close();
    // For the next opening.
    if (!kept)
        outcome::show(ui->noticeLab, outcome::notKept());
}

void smoothing_dlg::on_pushButton_2_clicked()
{
    close();
}

void smoothing_dlg::on_pushButton_3_clicked()
{
    ui->smo_lv->setValue(ui->smo_lv->value() - 1);
}

void smoothing_dlg::on_pushButton_4_clicked()
{
    ui->smo_lv->setValue(ui->smo_lv->value() + 1);
}
