// SPDX-License-Identifier: GPL-3.0-or-later

#include "setting_dlg.h"

#include "config/fields.h"
#include "fittext.h"
#include "outcome.h"
#include "present.h"
#include "readable.h"
#include "scrolled.h"
#include "ui_setting_dlg.h"
#include "useradv_dlg.h"

using namespace Qt::StringLiterals;

Setting_dlg::Setting_dlg(QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::Setting_dlg>())
{
    ui->setupUi(this);
    keepOnScreen(this);
    readable::keep(ui->UseLab);
    readable::keep(ui->EnvironmentLab);
    setWindowFlags(Qt::Drawer);
    // Only one environment can be chosen so far; the others are there to be seen.
    for (QPushButton *button : {ui->Rainbtn, ui->Sunshinebtn, ui->Shockbtn})
        button->setEnabled(false);
    setStringFont();
    Get_Data();
    fitButtons(this);
}

Setting_dlg::~Setting_dlg() = default;

// No report concerns a preset; the main window hands them to every dialog of a device alike.
void Setting_dlg::DoRecv03(UCHAR *) {}

void Setting_dlg::OnUSBConnect()
{
    Get_Data();
    SendSettingData();
}

// Another program may have written the file.
void Setting_dlg::showEvent(QShowEvent *event)
{
    if (showing.begins())
        Get_Data();
    QDialog::showEvent(event);
}

void Setting_dlg::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
    if (!showing.ends())
        return;
    Get_Data();
    outcome::show(ui->noticeLab, {});
}

void Setting_dlg::on_Operatebtn_clicked()
{
    choose(&chosen.Use, u"Operate"_s);
}

void Setting_dlg::on_Writebtn_clicked()
{
    choose(&chosen.Use, u"Write"_s);
}

void Setting_dlg::on_Percussionbtn_clicked()
{
    choose(&chosen.Use, u"Percussion"_s);
}

void Setting_dlg::on_Multipointbtn_clicked()
{
    choose(&chosen.Use, u"Multipoint"_s);
}

void Setting_dlg::on_Indoorbtn_clicked()
{
    choose(&chosen.Environment, u"Indoor"_s);
}

void Setting_dlg::on_Rainbtn_clicked()
{
    choose(&chosen.Environment, u"Rain"_s);
}

void Setting_dlg::on_Sunshinebtn_clicked()
{
    choose(&chosen.Environment, u"Sunshine"_s);
}

void Setting_dlg::on_Shockbtn_clicked()
{
    choose(&chosen.Environment, u"Shock"_s);
}

void Setting_dlg::on_okbtn_clicked()
{
    on_applybtn_clicked();
    const QString problem = isKept() ? QString() : outcome::notKept();
    close();
    // For the next opening.
    outcome::show(ui->noticeLab, problem);
}

void Setting_dlg::on_canbtn_clicked()
{
    close();
}

void Setting_dlg::on_applybtn_clicked()
{
    Easyset_Data();
    SendSettingData();
    outcome::show(ui->noticeLab, isKept() ? outcome::kept() : outcome::notKept());
}

void Setting_dlg::on_AdvBtn_clicked()
{
    if (parentWidget() == nullptr)
        return;
    if (auto *advanced = parentWidget()->findChild<useradv_dlg *>())
        present(advanced);
}

void Setting_dlg::choose(QString *word, const QString &chosenWord)
{
    *word = chosenWord;
    showChosen();
    outcome::show(ui->noticeLab, {});
}

// The settings file has the same words in every language; one that no button has is shown as it is.
void Setting_dlg::showChosen()
{
    ui->EnvironmentLab->setText(tr(chosen.Environment.toUtf8().constData()));
    ui->UseLab->setText(tr(chosen.Use.toUtf8().constData()));
}

// What a store reads from no file is what it had before.
bool Setting_dlg::isKept()
{
    return xmlclass.read_easysetting() == EasysettingData &&
           xmlclass.gaveWhole(element::EasySetting);
}

void Setting_dlg::Get_Data()
{
    EasysettingData = xmlclass.read_easysetting();
    Data2Easysetting();
}

void Setting_dlg::Easyset_Data()
{
    Easysetting2Data();
    xmlclass.write_easysetting(EasysettingData);
}

void Setting_dlg::Data2Easysetting()
{
    chosen = EasysettingData;
    showChosen();
}

void Setting_dlg::Easysetting2Data()
{
    EasysettingData = chosen;
}

// Empty until there is a command that carries the preset.
void Setting_dlg::SendSettingData() {}

void Setting_dlg::setStringFont()
{
    // The labels with a style sheet of their own take no font over from the window.
    for (QWidget *widget : std::initializer_list<QWidget *>{this, ui->UseLab, ui->EnvironmentLab})
        widget->setFont(QFont(u"Tahoma"_s, 9));
}
