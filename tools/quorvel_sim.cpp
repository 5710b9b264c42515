// SPDX-License-Identifier: GPL-3.0-or-later

// A simulated touch frame for this machine, steered by lines on standard input.

#include "simconsole.h"

#include "device/filedescriptor.h"
#include "device/version.h"
#include "sim/faultplan.h"
#include "sim/profile.h"
#include "sim/replay.h"
#include "sim/serialsession.h"
#include "sim/usbsession.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QTextStream>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <sys/signalfd.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

enum ExitCode { Done = 0, Failed = 1, WrongUsage = 2 };

class Simulator
{
    Q_DECLARE_TR_FUNCTIONS(Simulator)

public:
    int run(const QStringList &arguments);

private:
    bool readOptions(const QStringList &arguments);
    bool readDoor(QStringList words);
    bool openLog(const QString &path);
    sim::Clock clock() const;
    std::unique_ptr<sim::Session> makeSession() const;
    int runSession();
    void print(const QString &line);
    void printError(const QString &line);

    const std::chrono::steady_clock::time_point started = std::chrono::steady_clock::now();
    QCommandLineParser parser;
    sim::Profile profile;
    sim::FaultPlan faults;
    bool isSerial = false;
    QString recordingFile; // to replay
    std::optional<sim::Replay> recording;
    QFile log;
};

// A descriptor that becomes readable when this process is asked to end.
FileDescriptor endSignals()
{
    sigset_t ends;
    sigemptyset(&ends);
    sigaddset(&ends, SIGTERM);
    sigaddset(&ends, SIGINT);
    sigaddset(&ends, SIGHUP);
    sigprocmask(SIG_BLOCK, &ends, nullptr);
    return FileDescriptor(signalfd(-1, &ends, SFD_CLOEXEC | SFD_NONBLOCK));
}

int Simulator::run(const QStringList &arguments)
{
    if (!readOptions(arguments)) {
        printError(tr("see quorvel-sim --help"));
        return WrongUsage;
    }
    if (parser.isSet(u"help"_s)) {
        std::fputs(qUtf8Printable(parser.helpText()), stdout);
        return Done;
    }
    if (parser.isSet(u"version"_s)) {
        print(QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion());
        return Done;
    }

    QString problem;
    if (parser.isSet(u"profile"_s)) {
        const auto loaded = sim::Profile::load(parser.value(u"profile"_s), &problem);
        if (!loaded) {
            printError(problem);
            return WrongUsage;
        }
        profile = *loaded;
    }
    if (parser.isSet(u"faults"_s)) {
        const auto link = isSerial ? sim::FaultPlan::Link::Serial : sim::FaultPlan::Link::Usb;
        const auto loaded = sim::FaultPlan::load(parser.value(u"faults"_s), &problem, link);
        if (!loaded) {
            printError(problem);
            return WrongUsage;
        }
        faults = *loaded;
    }
    if (!recordingFile.isEmpty()) {
        recording = sim::Replay::load(recordingFile, clock(), &problem);
        if (!recording) {
            printError(problem);
            return WrongUsage;
        }
    }
    if (parser.isSet(u"log"_s) && !openLog(parser.value(u"log"_s)))
        return Failed;
    return runSession();
}

bool Simulator::readOptions(const QStringList &arguments)
{
    parser.setApplicationDescription(tr(
        "A simulated touch frame on this machine's USB or on a serial line.\n"
        "\n"
        "  usb     a USB device on the kernel's virtual host controller (modprobe vhci-hcd; root)\n"
        "  serial  a serial line: a pseudo-terminal, whose name is told in the line \"ok plug\"\n"
        "  replay  the device's side of a recording, on a serial line unless told \"usb\"; lines "
        "with \"replay\" tell where the host departs from it\n"
        "\n"
        "Standard input takes one command a line: touch X Y (native pixels of the desktop), "
        "plug, unplug, state, wait MS, quit. Each is answered by a line \"ok ...\", or by "
        "\"error: ...\" on standard error. Every frame goes to standard output in words. At "
        "the end of input the frame stays until SIGTERM, SIGINT or SIGHUP.\n"
        "\n"
        "Exit codes: 0 done, 1 failed, 2 wrong usage, profile, fault plan or recording."));
    parser.addOptions({
        {{u"h"_s, u"help"_s}, tr("Show this help.")},
        {{u"v"_s, u"version"_s}, tr("Show the version.")},
        {u"profile"_s, tr("What the frame is like (see sim/profiles)."), tr("file")},
        {u"faults"_s, tr("What goes wrong with its transfers (see sim/faults)."), tr("file")},
        {u"link"_s, tr("Serial: make a symbolic link to the terminal."), tr("path")},
        {u"log"_s, tr("Append every line of standard output to a file as well."), tr("file")},
        {u"unplugged"_s, tr("Start unplugged.")},
        {u"quit-at-end"_s, tr("Quit at the end of standard input.")},
    });
    parser.addPositionalArgument(u"usb|serial|replay"_s, tr("How the frame is attached."));
    parser.addPositionalArgument(u"file"_s, tr("With replay: the recording."), u"[file"_s);
    parser.addPositionalArgument(u"door"_s, tr("With replay: usb or serial."), u"[usb|serial]]"_s);

    if (!parser.parse(arguments)) {
        printError(parser.errorText());
        return false;
    }
    if (parser.isSet(u"help"_s) || parser.isSet(u"version"_s))
        return true;
    if (!readDoor(parser.positionalArguments()))
        return false;
    if (parser.isSet(u"link"_s) && (!isSerial || parser.value(u"link"_s).isEmpty())) {
        printError(tr("--link goes with serial and takes a path"));
        return false;
    }
    return true;
}

bool Simulator::readDoor(QStringList words)
{
    if (words.isEmpty()) {
        printError(tr("say how the frame is attached: quorvel-sim usb, or quorvel-sim serial"));
        return false;
    }
    if (words.first() == "replay"_L1) {
        if (words.size() < 2 || words[1].isEmpty()) {
            printError(tr("say what is replayed: quorvel-sim replay FILE"));
            return false;
        }
        recordingFile = words[1];
        words.remove(0, 2);
        if (words.isEmpty())
            words.append(u"serial"_s);
    }
    if (words != QStringList(u"usb"_s) && words != QStringList(u"serial"_s)) {
        printError(tr("'%1' is no way to attach the frame: there are usb and serial")
                       .arg(words.join(u' ')));
        return false;
    }
    isSerial = words.first() == "serial"_L1;
    return true;
}

bool Simulator::openLog(const QString &path)
{
    log.setFileName(path);
    if (log.open(QIODevice::WriteOnly | QIODevice::Append))
        return true;
    printError(tr("%1: cannot be written: %2").arg(path, log.errorString()));
    return false;
}

sim::Clock Simulator::clock() const
{
    return [start = started] {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now() - start);
    };
}

std::unique_ptr<sim::Session> Simulator::makeSession() const
{
    std::unique_ptr<sim::Session> session;
    if (isSerial) {
        session =
            std::make_unique<sim::SerialSession>(profile, faults, clock(), parser.value(u"link"_s));
    } else {
        session = std::make_unique<sim::UsbSession>(profile, faults, clock());
    }
    if (recording)
        session->replay(*recording);
    return session;
}

int Simulator::runSession()
{
    const FileDescriptor asked = endSignals();
    // A reader of our output that leaves does not end the frame.
    std::signal(SIGPIPE, SIG_IGN);

    const std::unique_ptr<sim::Session> session = makeSession();
    QObject::connect(session.get(), &sim::Session::logged, qApp, [this](const QStringList &lines) {
        for (const QString &line : lines)
            print(line);
    });
    if (!parser.isSet(u"unplugged"_s)) {
        if (const QString problem = session->plug(); !problem.isEmpty()) {
            printError(problem);
            return Failed;
        }
        print(u"ok plug "_s + session->place());
    } else {
        print(u"ok unplugged"_s);
    }

    QSocketNotifier ends(asked.get(), QSocketNotifier::Read);
    QObject::connect(&ends, &QSocketNotifier::activated, qApp, &QCoreApplication::quit);
    SimConsole console(*session, STDIN_FILENO);
    QObject::connect(&console, &SimConsole::answered, qApp,
                     [this](const QString &line) { print(line); });
    QObject::connect(&console, &SimConsole::failed, qApp,
                     [this](const QString &line) { printError(line); });
    QObject::connect(&console, &SimConsole::quitAsked, qApp, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    if (parser.isSet(u"quit-at-end"_s)) {
        QObject::connect(&console, &SimConsole::ended, qApp, &QCoreApplication::quit,
                         Qt::QueuedConnection);
    }
    const int code = QCoreApplication::exec();
    if (session->recording())
        print(u"ok replay "_s + session->recording()->state());
    session->unplug();
    return code;
}

void Simulator::print(const QString &line)
{
    const QByteArray text = line.toUtf8() + '\n';
    std::fwrite(text.constData(), 1, size_t(text.size()), stdout);
    std::fflush(stdout);
    if (log.isOpen()) {
        log.write(text);
        log.flush();
    }
}

void Simulator::printError(const QString &line)
{
    std::fprintf(stderr, "%s\n", qUtf8Printable(line));
}

} // namespace

int main(int argc, char *argv[])
{
    // The standard descriptors are used by their numbers: none may belong to something else.
    while (true) {
        const int spare = ::open("/dev/null", O_RDWR);
        if (spare < 0 || spare > STDERR_FILENO) {
            if (spare > STDERR_FILENO)
                ::close(spare);
            break;
        }
    }
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"quorvel-sim"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(QUORVEL_VERSION));
    return Simulator().run(QCoreApplication::arguments());
}
