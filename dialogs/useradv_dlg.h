// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "config/xml_class.h"
#include "device/struct.h"
#include "showing.h"

#include <QDialog>

#include <memory>

class QSlider;
namespace Ui {
class useradv_dlg;
}

// Sets how gestures of a finger become mouse actions. OK and Apply keep the settings in the
// settings file and send them; leaving in any other way drops what was changed. The stored
// settings are sent on every connection, so what was kept without a frame arrives with the next;
// but only if the file gives them all: a frame must not be set to what nobody chose.
// Double-click settings are only stored.
class useradv_dlg : public QDialog
{
    Q_OBJECT
public:
    explicit useradv_dlg(QWidget *parent = nullptr);
    ~useradv_dlg() override;

    // Whether a frame would receive what is sent; not at first. Who applies settings is told in
    // the window whether they were sent and kept; after OK, at the next opening, if they were not.
    void setConnected(bool connected);

    void Get_Data(); // file to form
    void Set_Data(); // form to file
    void Data2Setting();
    void Setting2Data();
    void SendSettingData();

signals:
    void Write03(UCHAR *WriteBuf); // FrameSize bytes, valid during the call

public slots:
    void on_pushButton_4_clicked();
    void on_pushButton_5_clicked();
    void on_pushButton_6_clicked();
    void on_pushButton_7_clicked();
    void on_pushButton_8_clicked();
    void on_pushButton_9_clicked();
    void on_pushButton_10_clicked();
    void on_pushButton_11_clicked();
    void on_pushButton_12_clicked();
    void on_pushButton_15_clicked();
    void on_applybtn_clicked();
    void on_resbtn_clicked();
    void on_okbtn_clicked();
    void on_canbtn_clicked();
    void DoRecv03(UCHAR *RecvBuf); // FrameSize bytes; nothing is done with them
    void OnUSBConnect();
    // The frame may have forgotten what it was told: it is told once more what is kept, and what is
    // being changed in the form stays.
    void OnWakeUp();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    struct Outcome
    {
        bool sent = false;
        bool kept = false;

        bool operator==(const Outcome &) const = default;
    };

    void sendKept();
    void send(const _SETTING_DATA &settings);
    Outcome applySettings();
    void tellOutcome(const Outcome &became);
    void setNotice(const QString &line, const QString &sentence = {});

    std::unique_ptr<Ui::useradv_dlg> ui;
    Showing showing{this};
    _SETTING_DATA SettingData; // as last read, kept or defaulted
    XML_CLASS xmlclass;
    bool isConnected = false;
};
