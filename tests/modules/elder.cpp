// SPDX-License-Identifier: GPL-3.0-or-later

// A module of another version: it gives nothing to this one.
extern "C" __attribute__((visibility("default"))) void *quorvel_elder(const char *)
{
    return nullptr;
}
