// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

#include <csignal>
#include <sys/resource.h>

// Lets no file of this process grow beyond a size, as a full disk does.
class SmallDisk
{
public:
    explicit SmallDisk(qint64 size)
    {
        ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &before);
        rlimit small = before;
        small.rlim_cur = rlim_t(size);
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;
    ~SmallDisk()
    {
        ::setrlimit(RLIMIT_FSIZE, &before);
        ::signal(SIGXFSZ, SIG_DFL);
    }

private:
    rlimit before{};
};
