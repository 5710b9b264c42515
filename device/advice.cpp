// SPDX-License-Identifier: GPL-3.0-or-later

#include "advice.h"

#include "noderights.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

namespace {

struct AdviceWords
{
    Q_DECLARE_TR_FUNCTIONS(Advice)
};

// What is said of a node, which is %1, by how much is known of who uses it.
struct UserSentences
{
    const char *nobodyKnown;
    const char *process; // %2: its number
    const char *program; // %2, and %3: its number
};

QString sentence(const UserSentences &sentences, const QString &node, const DeviceUser &user)
{
    const QString number = QString::number(user.pid);
    if (user.pid <= 0)
        return AdviceWords::tr(sentences.nobodyKnown).arg(node);
    if (user.program.isEmpty())
        return AdviceWords::tr(sentences.process).arg(node, number);
    return AdviceWords::tr(sentences.program).arg(node, user.program, number);
}

QString freeSoon()
{
    return AdviceWords::tr("It can be used here as soon as that program has let go of it.");
}

QString roomAdvice()
{
    return AdviceWords::tr("Close windows and programs that are not needed, or start this one "
                           "again.");
}

QString rightsAdvice(const NodeRights &rights)
{
    const QString group = QString::fromLatin1(NodeRights::GroupName);
    if (rights.rule.isEmpty())
        return AdviceWords::tr("Install the udev rule %1 and plug the frame in again. Without a "
                               "session at the screen, join the group %2 too.")
            .arg(QString::fromLatin1(NodeRights::RuleName), group);
    if (!rights.groupExists)
        return AdviceWords::tr("The udev rule %1 is there, but this system has no group %2. Make "
                               "it with \"groupadd --system %2\", join it and plug the frame in "
                               "again.")
            .arg(rights.rule, group);
    if (!rights.ruleIsApplied())
        return AdviceWords::tr("The udev rule %1 is there, but the node does not have its rights "
                               "yet. Plug the frame in again.")
            .arg(rights.rule);
    if (rights.userIsMember && !rights.sessionIsMember)
        return AdviceWords::tr("This user is in the group %1, but joined it after this session "
                               "began. Log in again.")
            .arg(group);
    return AdviceWords::tr("Join the group %1, then log in again.").arg(group);
}

} // namespace

Advice Advice::frameInUse(const QString &node, const DeviceUser &user)
{
    return {
        sentence(
            {QT_TRANSLATE_NOOP("Advice", "The touch frame at %1 is in use by another program."),
             QT_TRANSLATE_NOOP("Advice", "The touch frame at %1 is in use by process %2."),
             QT_TRANSLATE_NOOP("Advice", "The touch frame at %1 is in use by %2 (process %3).")},
            node, user),
        freeSoon()};
}

Advice Advice::frameOpened(const QString &node, const DeviceUser &user)
{
    return {sentence({QT_TRANSLATE_NOOP("Advice", "Another program has %1 open without saying that "
                                                  "it uses the frame."),
                      QT_TRANSLATE_NOOP("Advice", "Process %2 has %1 open without saying that it "
                                                  "uses the frame."),
                      QT_TRANSLATE_NOOP("Advice", "%2 (process %3) has %1 open without saying that "
                                                  "it uses the frame.")},
                     node, user),
            AdviceWords::tr("End that program if answers get lost.")};
}

Advice Advice::frameForbidden(const QString &node, int error, const NodeRights &rights)
{
    return {AdviceWords::tr("A touch frame is at %1 but this user may not open it (%2).")
                .arg(node, QString::fromLocal8Bit(std::strerror(error))),
            rightsAdvice(rights)};
}

Advice Advice::frameNotOpened(const QString &node, int error)
{
    const QString why = QString::fromLocal8Bit(std::strerror(error));
    if (isForRoom(error))
        return {AdviceWords::tr("%1, perhaps a touch frame, cannot be opened (%2).").arg(node, why),
                roomAdvice()};
    return {AdviceWords::tr("A touch frame is at %1 but it cannot be opened (%2).").arg(node, why),
            AdviceWords::tr("Unplug it and plug it in again.")};
}

Advice Advice::portNotOpened(const QString &node, int error)
{
    return {AdviceWords::tr("The serial port %1 cannot be opened (%2).")
                .arg(node, QString::fromLocal8Bit(std::strerror(error))),
            isForRoom(error) ? roomAdvice() : QString()};
}

bool Advice::isForRoom(int error)
{
    return error == EMFILE || error == ENFILE || error == ENOMEM;
}

Advice Advice::noThread()
{
    return {
        AdviceWords::tr("A touch frame is there but cannot be read: this system has no room for "
                        "another thread."),
        AdviceWords::tr("End programs that are not needed. The frame is used as soon as there "
                        "is room.")};
}

Advice Advice::portInUse(const QString &node, const DeviceUser &user)
{
    return {
        sentence({QT_TRANSLATE_NOOP("Advice", "The serial port %1 is in use by another program."),
                  QT_TRANSLATE_NOOP("Advice", "The serial port %1 is in use by process %2."),
                  QT_TRANSLATE_NOOP("Advice", "The serial port %1 is in use by %2 (process %3).")},
                 node, user),
        freeSoon()};
}

Advice Advice::portLeftLocked(const QString &node, const QString &lockFile)
{
    return {AdviceWords::tr("A program that has ended left the file %1 behind, which keeps the "
                            "serial port %2 closed.")
                .arg(lockFile, node),
            AdviceWords::tr("Remove that file, as its owner %1 or as root.")
                .arg(QFileInfo(lockFile).owner())};
}

Advice Advice::portForbidden(const QString &node, const NodeRights &rights)
{
    if (rights.groupMay())
        return {AdviceWords::tr("This user may not open the serial port %1.").arg(node),
                AdviceWords::tr("Join the group %1, then log in again.").arg(rights.group)};
    if (rights.isRootsAlone())
        return {
            AdviceWords::tr("This user may not open the serial port %1: it belongs to root "
                            "alone.")
                .arg(node),
            AdviceWords::tr("The device manager (udev) has usually not set up such a port. Plug "
                            "its adapter in again, run \"sudo udevadm trigger\" or restart this "
                            "machine.")};
    return {AdviceWords::tr("This user may not open the serial port %1: it is for its owner %2 "
                            "alone.")
                .arg(node, rights.owner),
            AdviceWords::tr("Ask who looks after this machine for access.")};
}

Advice Advice::noSuchPort(const QString &node)
{
    return {AdviceWords::tr("There is no serial port %1.").arg(node),
            AdviceWords::tr("Check the cable and the name, such as ttyUSB0.")};
}
