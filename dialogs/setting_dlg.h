// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "config/xml_class.h"
#include "device/struct.h"
#include "showing.h"

#include <QDialog>

#include <memory>

namespace Ui {
class Setting_dlg;
}

// Chooses what the screen is mainly used for and what surrounds it. The two blue texts are the
// pending choice; OK and Apply keep it in the settings file, and the window tells if they could
// not; leaving in any other way drops it. Nothing is sent: no command carries a preset.
class Setting_dlg : public QDialog
{
    Q_OBJECT
public:
    explicit Setting_dlg(QWidget *parent = nullptr);
    ~Setting_dlg() override;

    void Get_Data();     // file to form
    void Easyset_Data(); // form to file
    void Data2Easysetting();
    void Easysetting2Data();
    void SendSettingData();
    void setStringFont();

signals:
    void Write03(UCHAR *WriteBuf); // never emitted

public slots:
    void on_Operatebtn_clicked();
    void on_Writebtn_clicked();
    void on_Percussionbtn_clicked();
    void on_Multipointbtn_clicked();
    void on_Indoorbtn_clicked();
    void on_Rainbtn_clicked();
    void on_Sunshinebtn_clicked();
    void on_Shockbtn_clicked();
    void on_okbtn_clicked();
    void on_canbtn_clicked();
    void on_applybtn_clicked();
    void on_AdvBtn_clicked();
    void DoRecv03(UCHAR *RecvBuf); // FrameSize bytes; nothing is done with them
    void OnUSBConnect();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void choose(QString *word, const QString &chosenWord);
    void showChosen();
    bool isKept(); // what the form shows

    std::unique_ptr<Ui::Setting_dlg> ui;
    Showing showing{this};
    _EASYSETTING_DATA EasysettingData; // as last read or kept
    _EASYSETTING_DATA chosen;          // pending, as the file would have it
    XML_CLASS xmlclass;
};
