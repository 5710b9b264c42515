// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "capture/recorder.h"

#include <QAction>

// The menu entry that begins and ends a recording of the link's traffic, and the words about it.
// A loss is told on standard error too, once.
class RecordAction : public QAction
{
    Q_OBJECT
public:
    // The link outlives this. The window is where questions come up.
    RecordAction(Link &link, QWidget *window);

    // An empty text, or why no recording began.
    QString start(const QString &file) { return recorder.start(file); }
    // What is being recorded, and what is lost; empty without a recording.
    QString note() const;

signals:
    // note() has another text.
    void noteChanged();

private:
    void onTriggered();
    void askForFile();
    void showState();

    capture::Recorder recorder;
    QWidget *window; // not owned
};
