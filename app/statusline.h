#pragma once

#include "device/link.h"

#include <QCoreApplication>

class QLabel;

// The status label of the main window: whether a frame is linked, and in its tool tip and for
// screen readers by what, what keeps it from being linked, how the last calibration ended if not by
// the user, what is recorded, or what to try, in order. Each new problem is told on standard error
// too.
class StatusLine
{
    Q_DECLARE_TR_FUNCTIONS(StatusLine)

public:
    explicit StatusLine(QLabel *label);

    void show(const Link::State &state);
    // A sentence; an empty one takes it away.
    void setCalibrationNote(const QString &note);
    void setRecordingNote(const QString &note);

private:
    static QString hintFor(const Link::State &state);
    void showHint();

    QLabel *label; // not owned
    Link::State shown;
    QString calibrationNote;
    QString recordingNote;
};
