// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "exitcode.h"

#include <QString>

#include <exception>

namespace ctl {

// What keeps a command from being done: the exit code, and why as one sentence with what helps.
//
// Thrown by whatever finds out, outside of any event loop; run() tells it.
class Failure : public std::exception
{
public:
    Failure(int exitCode, QString why)
        : failedWith(exitCode)
        , sentence(std::move(why))
    {
    }

    int code() const { return failedWith; }
    const QString &why() const { return sentence; }
    const char *what() const noexcept override { return nameOf(failedWith); }

private:
    int failedWith;
    QString sentence;
};

} // namespace ctl
