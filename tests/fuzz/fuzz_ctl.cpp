// SPDX-License-Identifier: GPL-3.0-or-later

#include "demand.h"
#include "tests/ctl/run.h"
#include "tests/support/madeupmachine.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTimer>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// How long a command may work on a frame before somebody asks it to end.
constexpr auto Moment = 30ms;

// Everything that a command may read or write lies below a folder that nobody else has.
class Surface
{
public:
    Surface()
    {
        demand(home.isValid() && QDir::setCurrent(home.path()), "there is a folder for the files");
        qputenv("HOME", home.path().toLocal8Bit());
        for (const char *variable :
             {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "QUORVELCTL_PORT"})
            qunsetenv(variable);
        demand(input >= 0, "there is an input");
    }

    ctl::Surroundings around(QIODevice *out) const
    {
        ctl::Surroundings made;
        made.out = out;
        made.input = input;
        made.machine = &machine;
        return made;
    }
    void clear() const
    {
        for (const QFileInfo &entry :
             QDir(home.path())
                 .entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
            demand(entry.isDir() ? QDir(entry.filePath()).removeRecursively()
                                 : QFile::remove(entry.filePath()),
                   "what was written can be removed");
    }

private:
    int argc = 1;
    char name[11] = "quorvelctl";
    char *argv[2] = {name, nullptr};
    const QCoreApplication application{argc, argv};
    const QTemporaryDir home;
    const int input = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    const MadeUpMachine machine;
};

bool isPlainJson(const QStringList &arguments)
{
    for (const QString &argument : arguments)
        // Behind -h more letters may stand, as behind any short option, and any may have a value.
        if (argument == u"--"_s || argument.startsWith(u"-h"_s) ||
            argument.startsWith(u"--help"_s) || argument.startsWith(u"--version"_s) ||
            argument.startsWith(u"--json="_s))
            return false;
    return arguments.contains(u"--json"_s);
}

} // namespace

// Any arguments, parted by NUL bytes: the command line tool does what they say or says why not, and
// ends as it promises to, with no frame or, if the first byte is 'f', with one.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    static const Surface surface;
    if (size == 0)
        return 0;
    QStringList arguments;
    // No path leads out of the folder.
    for (const QByteArray &argument :
         QByteArray(reinterpret_cast<const char *>(bytes) + 1, qsizetype(size) - 1)
             .replace('/', '_')
             .split('\0'))
        arguments.append(QString::fromLocal8Bit(argument));

    const bool plugged = bytes[0] == 'f';
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    const Outcome outcome = runCtl(
        arguments, quickFrame({}, {}, plugged),
        [plugged](ctl::Session &session) {
            QTimer::singleShot(plugged ? Moment : 0ms, &session,
                               [&session] { session.interrupt(SIGTERM); });
        },
        surface.around(&out));
    surface.clear();

    demand((outcome.code >= ctl::Done && outcome.code <= ctl::NoOutput) ||
               outcome.code == ctl::SignalBase + SIGTERM,
           "the exit code is one of those that are promised");
    demand(outcome.code == ctl::Done || !out.data().isEmpty() || !outcome.err.isEmpty(),
           "who fails says why");
    if (isPlainJson(arguments))
        for (const QByteArray &line : out.data().trimmed().split('\n'))
            demand(line.isEmpty() || QJsonDocument::fromJson(line).isObject(),
                   "programs are given JSON only");
    return 0;
}
