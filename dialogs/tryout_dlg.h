// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "gesturereader.h"

#include <QDialog>

#include <memory>

namespace Ui {
class TryOut_dlg;
}
class QTimer;

// A field to try gestures out in: what the desktop sees of a press and hold, a double click, a drag
// and a wheel, with times and distances. The last one is told, to assistive tools too, and those
// before it are listed.
class TryOut_dlg : public QDialog
{
    Q_OBJECT
public:
    static constexpr int MostListed = 20;

    explicit TryOut_dlg(QWidget *parent = nullptr);
    ~TryOut_dlg() override;

    // A gesture as a sentence.
    static QString words(const Gesture &gesture);

signals:
    void spoken(const QString &words); // to assistive tools

public slots:
    void tell(const Gesture &gesture);
    void on_clearButton_clicked();

private:
    void speak();

    std::unique_ptr<Ui::TryOut_dlg> ui;
    QTimer *untilSpoken; // child; while it runs, the last gesture may become another one
};
