// A simulated touch frame for this machine, steered by lines on standard input.

#include "simconsole.h"

#include "device/filedescriptor.h"
#include "device/version.h"
#include "sim/faultplan.h"
#include "sim/profile.h"
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
    bool openLog(const QString &path);
    bool isSerial() const;
    std::unique_ptr<sim::Session> makeSession() const;
    int runSession();
    void print(const QString &line);
    void printError(const QString &line);

    QCommandLineParser parser;
    sim::Profile profile;
    sim::FaultPlan faults;
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
        const auto link = isSerial() ? sim::FaultPlan::Link::Serial : sim::FaultPlan::Link::Usb;
        const auto loaded = sim::FaultPlan::load(parser.value(u"faults"_s), &problem, link);
        if (!loaded) {
            printError(problem);
            return WrongUsage;
        }
        faults = *loaded;
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
        "\n"
        "Standard input takes one command a line: touch X Y (native pixels of the desktop), "
        "plug, unplug, state, wait MS, quit. Each is answered by a line \"ok ...\", or by "
        "\"error: ...\" on standard error. Every frame goes to standard output in words. At "
        "the end of input the frame stays until SIGTERM, SIGINT or SIGHUP.\n"
        "\n"
        "Exit codes: 0 done, 1 failed, 2 wrong usage, profile or fault plan."));
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
    parser.addPositionalArgument(u"usb|serial"_s, tr("How the frame is attached."));

    if (!parser.parse(arguments)) {
        printError(parser.errorText());
        return false;
    }
    if (parser.isSet(u"help"_s) || parser.isSet(u"version"_s))
        return true;
    const QStringList doors = parser.positionalArguments();
    if (doors.isEmpty()) {
        printError(tr("say how the frame is attached: quorvel-sim usb, or quorvel-sim serial"));
        return false;
    }
    if (doors != QStringList(u"usb"_s) && doors != QStringList(u"serial"_s)) {
        printError(tr("'%1' is no way to attach the frame: there are usb and serial")
                       .arg(doors.join(u' ')));
        return false;
    }
    if (parser.isSet(u"link"_s) && (!isSerial() || parser.value(u"link"_s).isEmpty())) {
        printError(tr("--link goes with serial and takes a path"));
        return false;
    }
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

bool Simulator::isSerial() const
{
    return parser.positionalArguments() == QStringList(u"serial"_s);
}

std::unique_ptr<sim::Session> Simulator::makeSession() const
{
    const auto start = std::chrono::steady_clock::now();
    const sim::Clock clock = [start] {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now() - start);
    };
    if (isSerial()) {
        return std::make_unique<sim::SerialSession>(profile, faults, clock,
                                                    parser.value(u"link"_s));
    }
    return std::make_unique<sim::UsbSession>(profile, faults, clock);
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
