// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "calibrationcheck.h"
#include "showing.h"
#include "wholescreen.h"

#include <QPointer>
#include <QScreen>

#include <memory>

namespace Ui {
class CalibrationCheck_dlg;
}
class QTimer;

// A full-screen page that asks for touches on crosses, shows how far each was from its cross, and
// says whether the frame is to be calibrated again. It covers the screen that shows its parent, as
// a calibration does.
//
// A press counts, not where the pointer is let go: whoever sees it beside the cross would put it
// right. Until the last one nothing else on the page takes a press, wherever a badly calibrated
// frame puts it. ESC leaves, Backspace takes a touch back, and so that nobody is locked in, the
// page leaves by itself when nothing has been touched for a while.
class CalibrationCheck_dlg : public WholeScreen
{
    Q_OBJECT
public:
    explicit CalibrationCheck_dlg(QWidget *parent = nullptr);
    ~CalibrationCheck_dlg() override;

    const CalibrationCheck &check() const { return *model; }

signals:
    void spoken(const QString &words); // to assistive tools

public slots:
    void on_againButton_clicked();

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    CalibrationCheck::Screen screenCovered() const;
    void begin();
    void lookAtScreen();
    void take(const QPointF &at, quint64 ms); // in the window's own pixels
    void tell();
    QString resultWords() const;
    void placePanel();
    void paintCross(QPainter &painter, int number) const;
    void paintTouch(QPainter &painter, int number) const;
    void paintWords(QPainter &painter, int number) const;

    std::unique_ptr<Ui::CalibrationCheck_dlg> ui;
    Showing showing{this};
    QPointer<QScreen> covered;
    std::unique_ptr<CalibrationCheck> model; // of the screen that is covered
    QTimer *untilLeft;                       // child
};
