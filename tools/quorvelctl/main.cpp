// SPDX-License-Identifier: GPL-3.0-or-later

// The service tool for infrared touch frames, from the command line.

#include "program.h"
#include "session.h"
#include "usbnodes.h"

#include "device/filedescriptor.h"

#include <QCoreApplication>
#include <QFile>
#include <QLocale>
#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <sys/signalfd.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// A descriptor that tells of each signal that asks this process to end.
FileDescriptor endSignals()
{
    sigset_t ends;
    sigemptyset(&ends);
    for (const int signal : {SIGHUP, SIGINT, SIGTERM})
        sigaddset(&ends, signal);
    sigprocmask(SIG_BLOCK, &ends, nullptr);
    return FileDescriptor(signalfd(-1, &ends, SFD_CLOEXEC | SFD_NONBLOCK));
}

// The descriptors 0, 1 and 2 are used by their numbers: none may belong to something else.
void occupyStandardDescriptors()
{
    for (;;) {
        const int spare = ::open("/dev/null", O_RDWR);
        if (spare > STDERR_FILENO)
            ::close(spare);
        if (spare < 0 || spare > STDERR_FILENO)
            return;
    }
}

// The adapter writes a trace to the standard streams, which belong to what the program says.
void silenceTrace()
{
    if (std::FILE *nowhere = std::fopen("/dev/null", "we"))
        stdout = stderr = nowhere;
}

std::shared_ptr<HID_AdpterPacket::HID_Adapter> adapterFor(const QString &node)
{
    using namespace HID_AdpterPacket;
    if (node.isEmpty())
        return std::make_shared<OP_HID_Adapter>();
    static std::unique_ptr<ctl::OneNode> one;
    one = std::make_unique<ctl::OneNode>(node);
    return std::make_shared<OP_HID_Adapter>(*one);
}

} // namespace

int main(int argc, char *argv[])
{
    occupyStandardDescriptors();
    // Whoever no longer reads the output does not end the program: it leaves the frame in order.
    std::signal(SIGPIPE, SIG_IGN);
    const FileDescriptor asked = endSignals();
    silenceTrace();

    // Another library's event loop would only cost memory here.
    qputenv("QT_NO_GLIB", "1");
    const QCoreApplication application(argc, argv);
    // Scripts read what is said: English, and numbers with a point.
    QLocale::setDefault(QLocale::c());
    QFile out;
    QFile err;
    if (!out.open(STDOUT_FILENO, QIODevice::WriteOnly | QIODevice::Unbuffered) ||
        !err.open(STDERR_FILENO, QIODevice::WriteOnly | QIODevice::Unbuffered))
        return ctl::NoOutput;
    ctl::Session session({.out = &out,
                          .err = &err,
                          .errIsTerminal = ::isatty(STDERR_FILENO) == 1,
                          .input = STDIN_FILENO,
                          .inputIsTerminal = ::isatty(STDIN_FILENO) == 1,
                          .adapter = adapterFor,
                          .hiddev = &HID_AdpterPacket::HiddevIo::system()});
    QSocketNotifier ends(asked.get(), QSocketNotifier::Read);
    QObject::connect(&ends, &QSocketNotifier::activated, &session, [&asked, &session] {
        signalfd_siginfo signal{};
        if (::read(asked.get(), &signal, sizeof signal) == sizeof signal)
            session.interrupt(int(signal.ssi_signo));
    });
    return ctl::run(QCoreApplication::arguments().mid(1), session);
}
