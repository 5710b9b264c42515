// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "sim/session.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QStringList>
#include <QTimer>

#include <deque>

// Steers the simulated frame with lines on standard input: touch X Y, plug, unplug, state,
// wait MS, quit. Each is answered by one line: "ok ..." on standard output when it is done, or
// "error: ..." on standard error when it is wrong or failed, and then nothing has happened.
class SimConsole : public QObject
{
    Q_OBJECT
public:
    static constexpr int MaxWaitMs = 10 * 60 * 1000;
    static constexpr int MaxLine = 1000; // bytes

    // The session outlives this. The descriptor stays open and is read as lines come.
    SimConsole(sim::Session &session, int input);

signals:
    void answered(const QString &line);
    void failed(const QString &line);
    void quitAsked();
    // Nothing more comes, and all that came is done.
    void ended();

private:
    void read();
    void takeLines();
    void runWaiting();
    void run(const QString &line);
    void touch(const QStringList &values);
    void wait(const QStringList &values);
    void fail(const QString &line, const QString &reason);

    sim::Session &session;
    const int input;
    QSocketNotifier readable;
    QTimer pause;
    QByteArray unfinished; // the beginning of a line
    std::deque<QString> waiting;
    bool atEnd = false;
};
