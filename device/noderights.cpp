// SPDX-License-Identifier: GPL-3.0-or-later

#include "noderights.h"

#include <QFile>

#include <algorithm>
#include <cstdio>
#include <grp.h>
#include <memory>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t PermissionBits = 07777;
constexpr auto Root = "root"_L1;

struct CloseFile
{
    void operator()(std::FILE *file) const { std::fclose(file); }
};

// Calls visit(entry) for each group of a file in the format of /etc/group.
template <typename Visit>
void forEachGroup(const QString &path, Visit visit)
{
    const std::unique_ptr<std::FILE, CloseFile> file(
        std::fopen(QFile::encodeName(path).constData(), "re"));
    if (!file)
        return;
    while (const group *entry = fgetgrent(file.get()))
        visit(*entry);
}

bool lists(const group &entry, const QString &user)
{
    for (char **member = entry.gr_mem; *member; ++member)
        if (user == QString::fromLocal8Bit(*member))
            return true;
    return false;
}

QString userName(uid_t user)
{
    const passwd *entry = getpwuid(user);
    return entry ? QString::fromLocal8Bit(entry->pw_name) : QString();
}

} // namespace

NodeRights::User NodeRights::User::current()
{
    User user{userName(geteuid()), {getegid()}};
    if (const int count = getgroups(0, nullptr); count > 0) {
        QList<gid_t> groups(count);
        groups.resize(std::max(0, getgroups(count, groups.data())));
        user.groups += groups;
    }
    return user;
}

NodeRights NodeRights::of(const QString &node, const QString &root, const User &user)
{
    NodeRights rights;
    struct stat status
    {
    };
    const bool there = ::stat(QFile::encodeName(root + node).constData(), &status) == 0;
    if (there) {
        rights.mode = status.st_mode & PermissionBits;
        rights.owner = userName(status.st_uid);
        if (rights.owner.isEmpty())
            rights.owner = QString::number(status.st_uid);
        rights.group = QString::number(status.st_gid);
    }
    forEachGroup(root + "/etc/group"_L1, [&](const ::group &entry) {
        if (there && entry.gr_gid == status.st_gid)
            rights.group = QString::fromLocal8Bit(entry.gr_name);
        if (QLatin1StringView(entry.gr_name) != QLatin1StringView(GroupName))
            return;
        rights.groupExists = true;
        rights.userIsMember = !user.name.isEmpty() && lists(entry, user.name);
        rights.sessionIsMember = user.groups.contains(entry.gr_gid);
    });
    // As udevd does: of files of one name, the first counts.
    for (const auto folder :
         {"/etc"_L1, "/run"_L1, "/usr/local/lib"_L1, "/usr/lib"_L1, "/lib"_L1}) {
        const QString file = folder + "/udev/rules.d/"_L1 + QLatin1StringView(RuleName);
        if (QFile::exists(root + file)) {
            rights.rule = file;
            break;
        }
    }
    return rights;
}

bool NodeRights::ruleIsApplied() const
{
    return group == QLatin1StringView(GroupName) && groupMay();
}

bool NodeRights::groupMay() const
{
    constexpr mode_t ForGroup = S_IRGRP | S_IWGRP;
    return (mode & ForGroup) == ForGroup && group != Root;
}

bool NodeRights::isRootsAlone() const
{
    return owner == Root && group == Root;
}
