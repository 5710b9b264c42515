// SPDX-License-Identifier: GPL-3.0-or-later

#include "simconsole.h"

#include <array>
#include <cerrno>
#include <unistd.h>

using namespace Qt::StringLiterals;

SimConsole::SimConsole(sim::Session &theSession, int descriptor)
    : session(theSession)
    , input(descriptor)
    , readable(descriptor, QSocketNotifier::Read)
{
    pause.setSingleShot(true);
    pause.setTimerType(Qt::PreciseTimer);
    connect(&readable, &QSocketNotifier::activated, this, &SimConsole::read);
    connect(&pause, &QTimer::timeout, this, [this] {
        emit answered(u"ok wait"_s);
        runWaiting();
    });
}

void SimConsole::read()
{
    std::array<char, 4096> chunk; // NOLINT(cppcoreguidelines-pro-type-member-init)
    const ssize_t count = ::read(input, chunk.data(), chunk.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (count > 0) {
        unfinished.append(chunk.data(), count);
    } else {
        readable.setEnabled(false);
        atEnd = true;
        if (!unfinished.isEmpty())
            unfinished += '\n';
    }
    takeLines();
    runWaiting();
}

void SimConsole::takeLines()
{
    for (qsizetype end = unfinished.indexOf('\n'); end >= 0; end = unfinished.indexOf('\n')) {
        waiting.push_back(QString::fromUtf8(unfinished.left(end)).simplified());
        unfinished.remove(0, end + 1);
    }
    if (unfinished.size() > MaxLine) {
        emit failed(tr("error: a line of more than %1 bytes is no command").arg(MaxLine));
        unfinished.clear();
    }
}

void SimConsole::runWaiting()
{
    while (!pause.isActive() && !waiting.empty()) {
        const QString line = waiting.front();
        waiting.pop_front();
        if (!line.isEmpty())
            run(line);
    }
    if (atEnd && !pause.isActive() && waiting.empty())
        emit ended();
}

void SimConsole::run(const QString &line)
{
    const QStringList words = line.split(u' ');
    const QString &name = words.first();
    const QStringList values = words.mid(1);
    if (name == "touch"_L1) {
        touch(values);
        return;
    }
    if (name == "wait"_L1) {
        wait(values);
        return;
    }
    const bool known =
        name == "plug"_L1 || name == "unplug"_L1 || name == "state"_L1 || name == "quit"_L1;
    if (!known) {
        fail(name, tr("there is no such command; there are touch X Y, plug, unplug, state, "
                      "wait MS and quit"));
    } else if (!values.isEmpty()) {
        fail(name, tr("takes no values"));
    } else if (name == "plug"_L1) {
        if (const QString problem = session.plug(); problem.isEmpty())
            emit answered(u"ok plug "_s + session.place());
        else
            fail(name, problem);
    } else if (name == "unplug"_L1) {
        if (session.unplug())
            emit answered(u"ok unplug"_s);
        else
            fail(name, tr("it is unplugged already"));
    } else if (name == "state"_L1) {
        emit answered(u"ok state "_s + session.state());
    } else {
        waiting.clear();
        emit answered(u"ok quit"_s);
        emit quitAsked();
    }
}

void SimConsole::touch(const QStringList &values)
{
    bool isX = false;
    bool isY = false;
    const int x = values.value(0).toInt(&isX);
    const int y = values.value(1).toInt(&isY);
    if (values.size() != 2 || !isX || !isY)
        fail(u"touch"_s, tr("takes two numbers, such as: touch 160 100"));
    else if (!session.touch({x, y}))
        fail(u"touch"_s, session.recording() ? tr("a recording feels nothing")
                                             : tr("the frame is unplugged and feels nothing"));
    else
        emit answered(u"ok touch %1,%2"_s.arg(x).arg(y));
}

void SimConsole::wait(const QStringList &values)
{
    bool isNumber = false;
    const int ms = values.value(0).toInt(&isNumber);
    if (values.size() != 1 || !isNumber || ms < 0 || ms > MaxWaitMs)
        fail(u"wait"_s, tr("takes milliseconds between 0 and %1").arg(MaxWaitMs));
    else
        pause.start(ms);
}

void SimConsole::fail(const QString &line, const QString &reason)
{
    emit failed(tr("error: %1: %2").arg(line, reason));
}
