// SPDX-License-Identifier: GPL-3.0-or-later

#include "useradv_dlg.h"

#include "advset_dlg.h"
#include "config/fields.h"
#include "device/records.h"
#include "fittext.h"
#include "outcome.h"
#include "present.h"
#include "scrolled.h"
#include "ui_useradv_dlg.h"

#include <QKeyEvent>
#include <QMouseEvent>

using namespace Qt::StringLiterals;

namespace {

// Sets a slider to its value plus a step, within its range.
void moveBy(QSlider *slider, int step)
{
    slider->setValue(slider->value() + step);
}

// The other way round within the range of the slider.
int inverted(const QSlider *slider, int value)
{
    return slider->maximum() + slider->minimum() - value;
}

} // namespace

useradv_dlg::useradv_dlg(QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::useradv_dlg>())
{
    ui->setupUi(this);
    keepOnScreen(this);
    setWindowFlags(Qt::Drawer);
    // A slider does not tell by itself what it stands at.
    const std::pair<QSlider *, QLabel *> numbers[] = {{ui->rbspeed, ui->rbspeedNumber},
                                                      {ui->rbran, ui->rbranNumber},
                                                      {ui->dbspeed, ui->dbspeedNumber},
                                                      {ui->dbran, ui->dbranNumber},
                                                      {ui->WheelSen, ui->WheelSenNumber}};
    for (const std::pair<QSlider *, QLabel *> &pair : numbers) {
        QSlider *slider = pair.first;
        QLabel *number = pair.second;
        const QString shown = slider == ui->rbspeed ? tr("%1 ms", "duration") : u"%1"_s;
        const auto tell = [slider, number, shown] {
            slider->setToolTip(shown.arg(slider->value()));
            number->setNum(slider->value());
        };
        connect(slider, &QSlider::valueChanged, slider, tell);
        connect(slider, &QSlider::valueChanged, this, [this] { setNotice({}); });
        tell();
    }
    for (const QCheckBox *box : {ui->checkBox, ui->checkBox_2, ui->WheelEn})
        connect(box, &QCheckBox::toggled, this, [this] { setNotice({}); });
    Get_Data();
    fitButtons(this);
}

useradv_dlg::~useradv_dlg() = default;

void useradv_dlg::setConnected(bool connected)
{
    isConnected = connected;
}

// No reply is awaited; the main window hands every report to every dialog of a device alike.
void useradv_dlg::DoRecv03(UCHAR *) {}

void useradv_dlg::OnUSBConnect()
{
    Get_Data();
    sendKept();
    setNotice({});
}

void useradv_dlg::OnWakeUp()
{
    sendKept();
}

void useradv_dlg::sendKept()
{
    const _SETTING_DATA kept = xmlclass.read_setting();
    // All zero is what another window writes for gestures that the file did not give; no form does.
    if (xmlclass.gaveWhole(element::Setting) && kept != _SETTING_DATA())
        send(withinRanges(kept));
    else
        qCWarning(lcSettings).noquote()
            << u"the touch frame is not told gestures: %1 does not give all of them"_s.arg(
                   XML_CLASS::filePath());
}

// No key but one has an effect here, Escape included.
void useradv_dlg::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_C || !ui->dbran->hasFocus() || parentWidget() == nullptr)
        return;
    if (auto *diagnostics = parentWidget()->findChild<advset_dlg *>())
        present(diagnostics);
}

// A click on a slider moves it; one on its words gives it the keyboard and leaves it as it is.
void useradv_dlg::mousePressEvent(QMouseEvent *event)
{
    const auto *words = qobject_cast<QLabel *>(childAt(event->position().toPoint()));
    if (words && words->buddy())
        words->buddy()->setFocus(Qt::MouseFocusReason);
    QDialog::mousePressEvent(event);
}

// Another program may have written the file.
void useradv_dlg::showEvent(QShowEvent *event)
{
    if (showing.begins())
        Get_Data();
    QDialog::showEvent(event);
}

void useradv_dlg::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
    if (!showing.ends())
        return;
    Get_Data();
    setNotice({});
}

void useradv_dlg::on_pushButton_4_clicked()
{
    moveBy(ui->dbspeed, -100);
}

void useradv_dlg::on_pushButton_5_clicked()
{
    moveBy(ui->dbran, -10);
}

void useradv_dlg::on_pushButton_6_clicked()
{
    moveBy(ui->dbran, 10);
}

void useradv_dlg::on_pushButton_7_clicked()
{
    moveBy(ui->dbspeed, 100);
}

void useradv_dlg::on_pushButton_8_clicked()
{
    moveBy(ui->rbspeed, 500);
}

void useradv_dlg::on_pushButton_9_clicked()
{
    moveBy(ui->rbran, 1);
}

void useradv_dlg::on_pushButton_10_clicked()
{
    moveBy(ui->rbran, -1);
}

void useradv_dlg::on_pushButton_11_clicked()
{
    moveBy(ui->rbspeed, -500);
}

void useradv_dlg::on_pushButton_12_clicked()
{
    moveBy(ui->WheelSen, 1);
}

void useradv_dlg::on_pushButton_15_clicked()
{
    moveBy(ui->WheelSen, -1);
}

void useradv_dlg::on_applybtn_clicked()
{
    tellOutcome(applySettings());
}

void useradv_dlg::on_resbtn_clicked()
{
    SettingData = {.all_en = 1,
                   .rb_en = 1,
                   .rb_duration = 1500,
                   .rb_ran = 3,
                   .db_speed = 600,
                   .db_ran = 40, // not what a new settings file says
                   .wheel_en = 1,
                   .wheel_sen = 2};
    Data2Setting();
}

void useradv_dlg::on_okbtn_clicked()
{
    const Outcome became = applySettings();
    close();
    if (became != Outcome{.sent = true, .kept = true})
        tellOutcome(became);
}

void useradv_dlg::on_canbtn_clicked()
{
    close();
}

void useradv_dlg::Get_Data()
{
    // What the form cannot show is not sent either.
    SettingData = withinRanges(xmlclass.read_setting());
    Data2Setting();
}

void useradv_dlg::Set_Data()
{
    Setting2Data();
    xmlclass.write_setting(SettingData);
}

void useradv_dlg::Data2Setting()
{
    ui->checkBox->setChecked(SettingData.all_en != 0);
    ui->checkBox_2->setChecked(SettingData.rb_en != 0);
    ui->rbspeed->setValue(SettingData.rb_duration);
    ui->rbran->setValue(SettingData.rb_ran);
    ui->dbspeed->setValue(SettingData.db_speed);
    ui->dbran->setValue(SettingData.db_ran);
    ui->WheelEn->setChecked(SettingData.wheel_en != 0);
    ui->WheelSen->setValue(inverted(ui->WheelSen, SettingData.wheel_sen));
}

void useradv_dlg::Setting2Data()
{
    SettingData.all_en = ui->checkBox->isChecked() ? 1 : 0;
    SettingData.rb_en = ui->checkBox_2->isChecked() ? 1 : 0;
    SettingData.rb_duration = ui->rbspeed->value();
    SettingData.rb_ran = ui->rbran->value();
    SettingData.db_speed = ui->dbspeed->value();
    SettingData.db_ran = ui->dbran->value();
    SettingData.wheel_en = ui->WheelEn->isChecked() ? 1 : 0;
    SettingData.wheel_sen = inverted(ui->WheelSen, ui->WheelSen->value());
}

void useradv_dlg::SendSettingData()
{
    send(SettingData);
}

void useradv_dlg::send(const _SETTING_DATA &settings)
{
    Frame frame = command::Gestures{.allEnabled = settings.all_en,
                                    .rightButtonEnabled = settings.rb_en,
                                    .rightButtonDuration = settings.rb_duration,
                                    .rightButtonRange = settings.rb_ran,
                                    .wheelEnabled = settings.wheel_en,
                                    .wheelSensitivity = settings.wheel_sen}
                      .encode();
    emit Write03(frame.data());
}

useradv_dlg::Outcome useradv_dlg::applySettings()
{
    Set_Data();
    SendSettingData();
    // What a store reads from no file is what it had before.
    const bool kept =
        xmlclass.read_setting() == SettingData && xmlclass.gaveWhole(element::Setting);
    return {.sent = isConnected, .kept = kept};
}

void useradv_dlg::tellOutcome(const Outcome &became)
{
    if (became.sent && became.kept)
        setNotice(tr("Kept, and sent to the touch frame."));
    else if (became.sent)
        setNotice(tr("Sent. Not kept: cannot write %1").arg(outcome::shortPath()),
                  tr("The settings are sent, but %1 cannot be written: they are not kept.")
                      .arg(XML_CLASS::filePath()));
    else if (became.kept)
        setNotice(tr("Kept. Sent when a frame is connected by USB."),
                  tr("No touch frame is connected. The settings are kept and will be sent when one "
                     "is connected by USB."));
    else
        setNotice(outcome::notKept(),
                  tr("No touch frame is connected, and %1 cannot be written: the settings are not "
                     "kept.")
                      .arg(XML_CLASS::filePath()));
}

// What there is to know about the last Apply; the sentence only if not all went as expected.
void useradv_dlg::setNotice(const QString &line, const QString &sentence)
{
    outcome::show(ui->noticeLab, line);
    ui->applybtn->setToolTip(sentence);
    ui->applybtn->setAccessibleDescription(sentence);
}
