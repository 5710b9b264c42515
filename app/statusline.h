#pragma once

#include "device/link.h"

#include <QCoreApplication>

class QLabel;
class QMessageBox;
class QPushButton;

// The status label of the main window: whether a frame is linked, and in its tool tip and for
// screen readers by what, what keeps it from being linked, how the last calibration ended if not by
// the user, what is recorded, or what to try, in order. The button beside it shows the same in a
// window. Each new problem is told on standard error too.
class StatusLine
{
    Q_DECLARE_TR_FUNCTIONS(StatusLine)

public:
    StatusLine(QLabel *label, QPushButton *button);

    void show(const Link::State &state);
    // A sentence; an empty one takes it away.
    void setCalibrationNote(const QString &note);
    void setRecordingNote(const QString &note);

    // In short, with the name of the tool.
    QString sentence() const;

private:
    static QString hintFor(const Link::State &state);
    void showHint();

    QLabel *label;       // not owned
    QPushButton *button; // not owned
    QMessageBox *box;    // of the label's window
    Link::State shown;
    QString calibrationNote;
    QString recordingNote;
};
