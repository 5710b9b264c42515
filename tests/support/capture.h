// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QTemporaryFile>

#include <cstdio>
#include <unistd.h>

// What goes to standard output or standard error while this lives.
class Capture
{
public:
    explicit Capture(FILE *captured)
        : stream(captured)
    {
        if (!file.open())
            qFatal("no temporary file to capture into");
        std::fflush(stream);
        saved = ::dup(::fileno(stream));
        ::dup2(file.handle(), ::fileno(stream));
    }
    Capture(const Capture &) = delete;
    Capture &operator=(const Capture &) = delete;
    ~Capture()
    {
        std::fflush(stream);
        ::dup2(saved, ::fileno(stream));
        ::close(saved);
    }

    QByteArray text()
    {
        std::fflush(stream);
        file.seek(0);
        return file.readAll();
    }

private:
    FILE *stream;
    QTemporaryFile file;
    int saved;
};
