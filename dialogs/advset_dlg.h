// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/struct.h"

#include <QDialog>

#include <memory>

namespace Ui {
class advset_dlg;
}

// The menu of the two diagnostic screens. Both are children of its own parent; the menu only shows
// them, and neither sends nor answers anything itself.
class advset_dlg : public QDialog
{
    Q_OBJECT
public:
    explicit advset_dlg(QWidget *parent = nullptr);
    ~advset_dlg() override;

    // As every dialog of a device has them; a menu has nothing to read or send.
    void GetData();
    void SendSettingData();

signals:
    void Write03(UCHAR *WriteBuf); // every device dialog has it; never emitted here

public slots:
    void on_canbtn_clicked();
    void DoRecv03(UCHAR *RecvBuf);
    void on_testbtn_2_clicked();
    void on_testbtn_clicked();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    std::unique_ptr<Ui::advset_dlg> ui;
};
