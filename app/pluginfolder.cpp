// SPDX-License-Identifier: GPL-3.0-or-later

#include "pluginfolder.h"

#include "printable.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <system_error>
#include <utility>

using namespace Qt::StringLiterals;
namespace fs = std::filesystem;
using Stat = struct stat;

namespace {

constexpr int MaxEntries = 4096;
constexpr int MaxLinks = 40; // as many as the kernel follows

// Names of files come from whoever made them.
QString printable(const fs::path &path)
{
    return printable(QFile::decodeName(path.c_str()));
}

bool isTrusted(uid_t user)
{
    return user == 0 || user == geteuid();
}

bool othersCanWrite(const Stat &entry)
{
    return (entry.st_mode & (S_IWGRP | S_IWOTH)) != 0;
}

QString userName(uid_t user)
{
    const passwd *known = getpwuid(user);
    return known != nullptr ? QString::fromLocal8Bit(known->pw_name) : QString::number(user);
}

QString groupName(gid_t group)
{
    const struct group *known = getgrgid(group);
    return known != nullptr ? QString::fromLocal8Bit(known->gr_name) : QString::number(group);
}

// Looks at a folder and at all that it leads to. The first problem found ends the search.
class Judge
{
    Q_DECLARE_TR_FUNCTIONS(PluginFolder)

public:
    QString judge(const fs::path &folder)
    {
        if (const auto place = resolve(folder, Missing::IsFine))
            waiting.push_back(*place);
        while (!waiting.empty() && problem.isEmpty()) {
            const fs::path place = waiting.front();
            waiting.pop_front();
            visit(place);
        }
        return problem;
    }

private:
    enum class Missing { IsFine, MustStayMissing };

    // Where a path leads without any links; nothing when it leads nowhere or when a folder on
    // the way lets others exchange what stands in it.
    std::optional<fs::path> resolve(const fs::path &path, Missing missing)
    {
        fs::path place = "/";
        std::deque<fs::path> ahead(path.begin(), path.end());
        int links = 0;
        while (!ahead.empty()) {
            const fs::path name = ahead.front();
            ahead.pop_front();
            if (name == "/" || name == "." || name.empty())
                continue;
            if (name == "..") {
                place = place.parent_path();
                continue;
            }
            Stat above{};
            if (lstat(place.c_str(), &above) != 0)
                return fail(cannotBeRead(place));
            const fs::path next = place / name;
            Stat entry{};
            if (lstat(next.c_str(), &entry) != 0) {
                if (errno != ENOENT && errno != ENOTDIR)
                    return fail(cannotBeRead(next));
                if (missing == Missing::MustStayMissing)
                    checkWritable(place, above);
                return {};
            }
            // Where the sticky bit is set, nobody can exchange what belongs to somebody else.
            if (!(above.st_mode & S_ISVTX) && !checkWritable(place, above))
                return {};
            if (!checkOwner(next, entry))
                return {};
            if (!S_ISLNK(entry.st_mode)) {
                place = next;
                continue;
            }
            std::error_code error;
            const fs::path target = fs::read_symlink(next, error);
            if (error || ++links > MaxLinks)
                return fail(tr("%1 cannot be followed; remove this link").arg(printable(next)));
            if (target.is_absolute())
                place = "/";
            ahead.insert(ahead.begin(), target.begin(), target.end());
        }
        return place;
    }

    void visit(const fs::path &place)
    {
        Stat entry{};
        if (lstat(place.c_str(), &entry) != 0) {
            fail(cannotBeRead(place));
            return;
        }
        if (!seen.emplace(entry.st_dev, entry.st_ino).second)
            return;
        if (seen.size() > MaxEntries) {
            fail(tr("it holds more than %1 files; remove what is no plug-in").arg(MaxEntries));
            return;
        }
        if (!checkOwner(place, entry) || !checkWritable(place, entry) || !S_ISDIR(entry.st_mode))
            return;
        std::error_code error;
        fs::directory_iterator each(place, error);
        while (!error && each != fs::directory_iterator()) {
            if (waiting.size() > MaxEntries) {
                fail(tr("it holds more than %1 files; remove what is no plug-in").arg(MaxEntries));
                return;
            }
            if (fs::is_symlink(each->symlink_status(error))) {
                if (const auto target = resolve(each->path(), Missing::MustStayMissing))
                    waiting.push_back(*target);
                if (!problem.isEmpty())
                    return;
            } else {
                waiting.push_back(each->path());
            }
            each.increment(error);
        }
        if (error)
            fail(tr("%1 cannot be read (%2)")
                     .arg(printable(place), QString::fromStdString(error.message())));
    }

    bool checkOwner(const fs::path &place, const Stat &entry)
    {
        if (isTrusted(entry.st_uid))
            return true;
        fail(tr("%1 belongs to user %2; \"chown root\" would let it in")
                 .arg(printable(place), userName(entry.st_uid)));
        return false;
    }

    bool checkWritable(const fs::path &place, const Stat &entry)
    {
        if (!othersCanWrite(entry))
            return true;
        if ((entry.st_mode & S_IWOTH) != 0)
            fail(tr("everybody can write to %1; \"chmod go-w\" would let it in")
                     .arg(printable(place)));
        else
            fail(tr("group %1 can write to %2; \"chmod go-w\" would let it in")
                     .arg(groupName(entry.st_gid), printable(place)));
        return false;
    }

    static QString cannotBeRead(const fs::path &place)
    {
        return tr("%1 cannot be read (%2)").arg(printable(place), qt_error_string(errno));
    }

    std::nullopt_t fail(const QString &why)
    {
        problem = why;
        return std::nullopt;
    }

    QString problem;
    std::deque<fs::path> waiting; // without links
    std::set<std::pair<dev_t, ino_t>> seen;
};

} // namespace

QString pluginFolderProblem(const QString &folder)
{
    const QString problem =
        Judge().judge(QFile::encodeName(QDir::current().absoluteFilePath(folder)).toStdString());
    if (problem.isEmpty())
        return {};
    return Judge::tr("the plug-in folder %1 is left out: %2").arg(folder, problem);
}

void addPluginFolder()
{
    const QString folder = u"./plugins"_s;
    // Qt ignores a folder that does not exist; it must not come into being after it was judged.
    if (QFileInfo(folder).canonicalFilePath().isEmpty())
        return;
    const QString problem = pluginFolderProblem(folder);
    if (problem.isEmpty())
        QCoreApplication::addLibraryPath(folder);
    else
        std::fprintf(stderr, "%s\n", qPrintable(problem));
}
