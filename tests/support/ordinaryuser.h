// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

#include <array>
#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

// While this lives, file modes hold for the superuser too.
class OrdinaryUser
{
public:
    OrdinaryUser()
    {
        if (!call(SYS_capget, saved))
            qFatal("the capabilities of this thread cannot be read");
        Sets fewer{saved[0], saved[1]};
        fewer[0].effective &= ~(1U << CAP_DAC_OVERRIDE | 1U << CAP_DAC_READ_SEARCH);
        if (!call(SYS_capset, fewer))
            qFatal("the capabilities of this thread cannot be laid down");
    }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;
    ~OrdinaryUser() { call(SYS_capset, saved); }

private:
    using Sets = std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3>;
    static bool call(long number, Sets &sets)
    {
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        return ::syscall(number, &header, sets.data()) == 0;
    }
    Sets saved{};
};
