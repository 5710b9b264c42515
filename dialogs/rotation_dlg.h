// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/reportnews.h"
#include "showing.h"

#include <QDialog>
#include <QTime>

#include <memory>
#include <optional>

namespace Ui {
class Rotation_dlg;
}
class QTimer;

// Turns the coordinates that the touch frame reports by quarter turns, and shows the rotation that
// the frame says it has. Nothing is kept here: each showing and each button asks the frame anew.
//
// While a question is unanswered, the tool tip of the shown rotation says since when; after a few
// seconds of that the rotation is unknown.
class Rotation_dlg : public QDialog
{
    Q_OBJECT
public:
    explicit Rotation_dlg(QWidget *parent = nullptr);
    ~Rotation_dlg() override;

    // Sends the rotation chosen last and asks which one the frame has.
    void SendRotationData();
    // Asks, then blocks for a second: the frame's time to answer. The answer comes to DoRecv03.
    // Presses of a rotation button that wait for the end of that second are dropped.
    void getCurrentRotation();
    void updateCurrentRotationLab();
    // What the frame said is forgotten: the next one may be another.
    void OnLinkEnded();

    // What the frame turns by after a reset, in quarter turns; UnknownRotation before it said so.
    UCHAR reportedDefaultRotation() const { return defaultRotation; }

    static constexpr UCHAR UnknownRotation = 0xFF;

signals:
    void Write03(UCHAR *WriteBuf);

public slots:
    void on_okbtn_clicked();
    void on_rotation0btn_clicked();
    void on_rotation90btn_clicked();
    void on_rotation180btn_clicked();
    void on_rotation270btn_clicked();
    // Takes a report of FrameSize bytes, of any command class.
    void DoRecv03(UCHAR *RecvBuf);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void setRotation(UCHAR code);
    void setUnansweredSince(std::optional<QTime> time);
    void giveUp();

    std::unique_ptr<Ui::Rotation_dlg> ui;
    Showing showing{this};
    UCHAR defaultRotation = UnknownRotation; // quarter turns, as reported
    UCHAR currentRotation = UnknownRotation; // quarter turns, as reported
    UCHAR tosetRotation = 0;                 // quarter turns, of the next set command
    std::optional<QTime> unansweredSince;    // the first question without an answer
    QTimer *patience;                        // child; runs from the first question to giveUp()
    QTimer *settling;                        // child; runs while presses may come from the pause
    int turnsToSettle = 0;
    ReportNews news;
};
