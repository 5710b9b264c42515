// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "config/xml_class.h"
#include "device/struct.h"
#include "showing.h"

#include <QDialog>

#include <memory>

namespace Ui {
class smoothing_dlg;
}

// Smoothing of written strokes: on or off, and its level. The choice goes to the settings file with
// OK and nowhere else; however else the window is closed, it shows the file's values again. If the
// file cannot be written, the window tells so at its next opening.
class smoothing_dlg : public QDialog
{
    Q_OBJECT
public:
    explicit smoothing_dlg(QWidget *parent = nullptr);
    ~smoothing_dlg() override;

    void Get_Data(); // file to form
    void Set_Data(); // form to file
    void Data2Smoothing();
    void Smoothing2Data();
    // Sends an empty frame: no command for smoothing is known, so nothing calls this.
    void SendSmoothingData();

signals:
    void Write03(UCHAR *WriteBuf);

public slots:
    void on_pushButton_clicked();
    void on_pushButton_2_clicked();
    void on_pushButton_3_clicked();
    void on_pushButton_4_clicked();
    // Takes a report of FrameSize bytes and drops it.
    void DoRecv04(UCHAR *RecvBuf);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    std::unique_ptr<Ui::smoothing_dlg> ui;
    Showing showing{this};
    _SMOOTHING_DATA SmoothingData; // as the file or the window had it last
    XML_CLASS xmlclass;
};
