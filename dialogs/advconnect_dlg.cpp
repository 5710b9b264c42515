// SPDX-License-Identifier: GPL-3.0-or-later

#include "advconnect_dlg.h"

#include "scrolled.h"
#include "ui_advconnect_dlg.h"

advconnect_dlg::advconnect_dlg(QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::advconnect_dlg>())
{
    ui->setupUi(this);
    keepOnScreen(this);
}

advconnect_dlg::~advconnect_dlg() = default;
