// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tests/support/files.h"

#include <QProcess>
#include <QStringList>

// Programs that the tests of a fleet run.

inline constexpr int PatienceMs = 60'000;

struct Ended
{
    int code = -1;
    QByteArray out;
    QByteArray err;
};

inline Ended run(const QString &program, const QStringList &arguments, const QByteArray &input = {})
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForStarted())
        return {-1, {}, process.errorString().toUtf8()};
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(PatienceMs))
        return {-1, process.readAllStandardOutput(), "it does not end"};
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

// A program that is ended with the test.
class Server
{
public:
    ~Server()
    {
        process.terminate();
        if (!process.waitForFinished())
            process.kill();
        process.waitForFinished();
    }
    bool start(const QString &program, const QStringList &arguments)
    {
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, arguments);
        return process.waitForStarted();
    }
    QProcess process;
};
