// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/xml_class.h"

#include "documents.h"
#include "words.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void giveUp(const char *what)
{
    std::fprintf(stderr, "store_probe cannot %s: %s\n", what, std::strerror(errno));
    std::exit(3);
}

void say(const QString &line)
{
    std::puts(qUtf8Printable(line));
}

void put(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        giveUp(qPrintable(u"write "_s + path));
}

// Puts the process into a mount namespace of its own; without root, as root of a user namespace.
void leaveMounts()
{
    const uid_t user = geteuid();
    const gid_t group = getegid();
    if (unshare(CLONE_NEWNS) != 0) {
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            giveUp("make a mount namespace, neither as this user nor in a user namespace");
        put(u"/proc/self/setgroups"_s, "deny");
        put(u"/proc/self/uid_map"_s,
            QByteArray::number(user) + ' ' + QByteArray::number(user) + " 1");
        put(u"/proc/self/gid_map"_s,
            QByteArray::number(group) + ' ' + QByteArray::number(group) + " 1");
    }
    if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        giveUp("keep its mounts to itself");
}

void becomeUser(uid_t user)
{
    if (setgroups(0, nullptr) != 0 || setgid(user) != 0 || setuid(user) != 0)
        giveUp("become another user");
    // Else the leak sanitizer may not look into its own process any more.
    prctl(PR_SET_DUMPABLE, 1);
}

// Leaves no room for one more byte.
void fill(const QByteArray &path)
{
    const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0)
        giveUp("make the file that fills the disk");
    const QByteArray block(4096, 'x');
    while (::write(fd, block.constData(), size_t(block.size())) > 0) {
    }
    if (errno != ENOSPC)
        giveUp("fill the disk");
    ::close(fd);
}

} // namespace

// store_probe WORD...: does to the settings in $HOME what each word says, one after the other.
//
//   tmpfs          a disk of 64 KiB on $HOME that only this process sees, with .config in it
//   fill, free     leaves no room on it, makes room again
//   read-only      nothing on it can be changed any more
//   user=UID       becomes that user
//   put            makes a settings file with other values than the defaults
//   read           prints all that the store reads
//   write          writes the smoothing section: 0 4
//   write-use=N    writes the usage section with a text of N characters
//   new            a new store in place of the last one
//   file           prints how many bytes the settings file has, or "none"
//
// The exit code is 3 for surroundings that cannot be made.
int main(int argc, char **argv)
{
    const QByteArray home = QFile::encodeName(QDir::homePath());
    auto store = std::make_unique<XML_CLASS>();
    for (int i = 1; i < argc; ++i) {
        const QString word = QString::fromUtf8(argv[i]);
        const int number = word.section(u'=', 1).toInt();
        if (word == "tmpfs"_L1) {
            leaveMounts();
            if (mount("tmpfs", home.constData(), "tmpfs", 0, "size=64k") != 0)
                giveUp("mount a small disk");
            if (!QDir().mkdir(QDir::homePath() + u"/.config"_s))
                giveUp("make .config");
        } else if (word == "fill"_L1) {
            fill(home + "/filler");
        } else if (word == "free"_L1) {
            if (::unlink((home + "/filler").constData()) != 0)
                giveUp("make room");
        } else if (word == "read-only"_L1) {
            if (mount(nullptr, home.constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0)
                giveUp("make the disk read-only");
        } else if (word.startsWith("user="_L1)) {
            becomeUser(uid_t(number));
        } else if (word == "put"_L1) {
            put(XML_CLASS::filePath(), OtherFile);
        } else if (word == "read"_L1) {
            say(QStringList{words(store->read_easysetting()), words(store->read_setting()),
                            words(store->read_smoothing()), words(store->read_connect())}
                    .join(u" / "_s));
        } else if (word == "write"_L1) {
            store->write_smoothing({0, 4});
        } else if (word.startsWith("write-use="_L1)) {
            store->write_easysetting({u"Rain"_s, QString(number, u'x')});
        } else if (word == "new"_L1) {
            store = std::make_unique<XML_CLASS>();
        } else if (word == "file"_L1) {
            const QFileInfo file(XML_CLASS::filePath());
            say(file.exists() ? QString::number(file.size()) : u"none"_s);
        } else {
            std::fprintf(stderr, "store_probe does not know '%s'\n", argv[i]);
            return 2;
        }
    }
    return 0;
}
