// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Needs QUORVEL_RULES.

#include "tests/support/outside.h"

#include <QDir>
#include <QFile>
#include <QProcess>

// The system's udevd, and the tool's rule for it, for the time of one test.
class Udev
{
public:
    Udev() = default;
    Udev(const Udev &) = delete;
    Udev &operator=(const Udev &) = delete;
    ~Udev() { QFile::remove(ruleFile()); }

    static bool installRule()
    {
        return QDir().mkpath(QFileInfo(ruleFile()).path()) &&
               QFile::copy(QStringLiteral(QUORVEL_RULES), ruleFile());
    }

    // True when it answers.
    bool start()
    {
        const QString usual = QStringLiteral("/usr/lib/systemd/systemd-udevd");
        daemon.start(QFile::exists(usual) ? usual : QStringLiteral("/lib/systemd/systemd-udevd"));
        return daemon.waitForStarted() && outside::inTime([] {
                   QProcess ping;
                   ping.start(QStringLiteral("udevadm"),
                              {QStringLiteral("control"), QStringLiteral("--ping")});
                   return ping.waitForFinished() && ping.exitStatus() == QProcess::NormalExit &&
                          ping.exitCode() == 0;
               });
    }

    // False when it had to be killed.
    bool end()
    {
        if (daemon.state() == QProcess::NotRunning)
            return true;
        daemon.terminate();
        return daemon.waitForFinished();
    }

private:
    static QString ruleFile() { return QStringLiteral("/etc/udev/rules.d/70-quorvel.rules"); }

    QProcess daemon;
};
