// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/link.h"
#include "doctor/machine.h"

#include <QObject>

class QLabel;
class QMessageBox;
class QPushButton;

// The status label of the main window: whether a frame is linked, and in its tool tip and for
// screen readers by what, what keeps it from being linked, how the last calibration ended if not by
// the user, what is recorded, or why no frame is there to be linked, as it is when the tip is
// shown. The button beside it shows the same in a window. Each new problem is told on standard
// error too.
class StatusLine : public QObject
{
    Q_OBJECT

public:
    StatusLine(QLabel *label, QPushButton *button, const doctor::Machine &machine = thisMachine());

    void show(const Link::State &state);
    // A sentence; an empty one takes it away.
    void setCalibrationNote(const QString &note);
    void setRecordingNote(const QString &note);

    // In short, with the name of the tool.
    QString sentence() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    static const doctor::Machine &thisMachine();
    QString hintFor(const Link::State &state) const;
    void showHint();
    void tellInWindow();

    QLabel *label;                  // not owned
    QPushButton *button;            // not owned
    QMessageBox *box = nullptr;     // of the label's window, made when it is first shown
    const doctor::Machine &machine; // outlives this
    Link::State shown;
    QString calibrationNote;
    QString recordingNote;
};
