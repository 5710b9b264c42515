// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/calibrationsteps.h"

#include <QDialog>

#include <memory>

namespace Ui {
class CalEnd_dlg;
}
class QTimer;

// Asks whether to save a finished calibration; unanswered, it says No after eleven seconds. Its
// tool tip tells how good the calibration was.
class CalEnd_dlg : public QDialog
{
    Q_OBJECT
public:
    static constexpr int LargestGoodDeviation = CalibrationSteps::LargestGoodDeviation;

    // The countdown runs from here.
    explicit CalEnd_dlg(QWidget *parent = nullptr);
    ~CalEnd_dlg() override;

    // Asks, and returns true for Yes. The deviation is in per cent, 0 or more.
    bool CalEnd(int deviation);
    // Nobody answered.
    bool timedOut() const { return unanswered; }

    // What there is to say about a deviation.
    static QString accuracyText(int deviation);

public slots:
    void on_Nobtn_clicked();
    void on_pushButton_clicked();
    void ontimer();

protected:
    void showEvent(QShowEvent *event) override;

private:
    std::unique_ptr<Ui::CalEnd_dlg> ui;
    bool save = false; // the answer
    bool unanswered = false;
    int time = 10; // seconds left on the No button
    QTimer *timer; // child
};
