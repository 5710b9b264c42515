// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QProcess>

#include <csignal>
#include <unistd.h>

// Output and errors of a process that is started next go to a pipe that nobody reads any more.
// QProcess itself reads on behind a channel that was closed.
inline void writeToNobody(QProcess &process)
{
    process.setChildProcessModifier([] {
        int ends[2] = {-1, -1};
        if (::pipe(ends) != 0 || ::dup2(ends[1], STDOUT_FILENO) < 0 ||
            ::dup2(ends[1], STDERR_FILENO) < 0)
            ::_exit(99);
        ::close(ends[0]);
        ::close(ends[1]);
        ::signal(SIGPIPE, SIG_DFL); // whatever this program does about it
    });
}
