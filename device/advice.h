// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "devicelock.h"

#include <QString>

struct NodeRights;

// What keeps a frame or a port that is there from being used: what was seen and what helps, each in
// whole sentences for the user. Links, windows and the examination of a machine say the same words.
struct Advice
{
    QString evidence;
    QString nextStep;

    QString words() const { return nextStep.isEmpty() ? evidence : evidence + u' ' + nextStep; }

    static Advice frameInUse(const QString &node, const DeviceUser &user);
    static Advice frameOpened(const QString &node, const DeviceUser &user); // without a lock
    // Error is errno of the attempt.
    static Advice frameForbidden(const QString &node, int error, const NodeRights &rights);
    static Advice frameNotOpened(const QString &node, int error);
    static Advice noThread();
    static Advice portNotOpened(const QString &node, int error);
    // Whether it says that this process or the system has no room, for descriptors or memory.
    static bool isForRoom(int error);
    static Advice portInUse(const QString &node, const DeviceUser &user);
    static Advice portLeftLocked(const QString &node, const QString &lockFile);
    static Advice portForbidden(const QString &node, const NodeRights &rights);
    static Advice noSuchPort(const QString &node);

    bool operator==(const Advice &) const = default;
};
