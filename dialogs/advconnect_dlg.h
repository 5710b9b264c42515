// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class advconnect_dlg;
}

// The form for the choices of TUIO output. Nothing reads it and nothing makes it: the settings
// file has no place for a protocol or a version, and the serial port is chosen in connect_dlg.
class advconnect_dlg : public QDialog
{
    Q_OBJECT
public:
    explicit advconnect_dlg(QWidget *parent = nullptr);
    ~advconnect_dlg() override;

private:
    std::unique_ptr<Ui::advconnect_dlg> ui;
};
