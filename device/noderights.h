// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QString>

#include <sys/types.h>

// Who may open a touch frame's node, and what decides it: the udev rule that the package installs,
// and the group that it gives the node to.
struct NodeRights
{
    // The rule's file, and its group for users without a session at the screen.
    static constexpr char RuleName[] = "70-quorvel.rules";
    static constexpr char GroupName[] = "plugdev";

    struct User
    {
        QString name;        // empty for one that has none
        QList<gid_t> groups; // of this session

        // Of this process, as the kernel judges it.
        static User current();
    };

    QString owner; // a number where it has no name
    QString group;
    mode_t mode = 0;          // permission bits
    QString rule;             // path of the rule; empty when it is not installed
    bool groupExists = false; // GroupName is known here
    bool userIsMember = false;
    bool sessionIsMember = false; // it began when the user was a member already

    // Folders are looked for below root, which is empty for this machine.
    static NodeRights of(const QString &node, const QString &root = {},
                         const User &user = User::current());

    // Whether the node has the rights that the rule gives.
    bool ruleIsApplied() const;
    // Whether its group may use it, and is one that people join.
    bool groupMay() const;
    // Whether it is root's, as before the device manager gave it to somebody.
    bool isRootsAlone() const;
};
