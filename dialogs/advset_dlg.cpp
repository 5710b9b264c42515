// SPDX-License-Identifier: GPL-3.0-or-later

#include "advset_dlg.h"

#include "fittext.h"
#include "lightset_dlg.h"
#include "scrolled.h"
#include "test_win.h"
#include "ui_advset_dlg.h"

namespace {

template <typename Screen>
void showSibling(const QWidget *menu)
{
    if (menu->parentWidget() == nullptr)
        return;
    if (auto *screen = menu->parentWidget()->findChild<Screen *>())
        screen->show();
}

} // namespace

advset_dlg::advset_dlg(QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::advset_dlg>())
{
    ui->setupUi(this);
    keepOnScreen(this);
    fitButtons(this);
}

advset_dlg::~advset_dlg() = default;

void advset_dlg::on_canbtn_clicked()
{
    hide();
}

void advset_dlg::GetData() {}

void advset_dlg::SendSettingData() {}

void advset_dlg::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
}

void advset_dlg::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
}

// No report concerns a menu; the main window hands them to every dialog of a device alike.
void advset_dlg::DoRecv03(UCHAR *) {}

void advset_dlg::on_testbtn_2_clicked()
{
    showSibling<LightSet_dlg>(this);
}

void advset_dlg::on_testbtn_clicked()
{
    showSibling<test_win>(this);
}
