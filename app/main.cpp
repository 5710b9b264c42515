// SPDX-License-Identifier: GPL-3.0-or-later

#include "commandline.h"
#include "config/lastcalibration.h"
#include "demo.h"
#include "device/version.h"
#include "endsignals.h"
#include "heap.h"
#include "mainwindow.h"
#include "pluginfolder.h"
#include "printable.h"
#include "qtsingleapplication.h"
#include "resources/resources.h"
#include "resources/translations.h"

#include <QElapsedTimer>
#include <QPointer>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fontconfig/fontconfig.h>
#include <future>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int MessageTimeoutMs = 5000;
constexpr int Failed = 1;
constexpr int WrongUsage = 2;

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

// Where the toolkit finds no display it writes several lines and ends with a core dump. What it
// writes is kept until it is clear that it was about something else.
QByteArray heldBack;

void sayWithoutDump(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type != QtFatalMsg) {
        heldBack += qFormatLogMessage(type, context, message).toLocal8Bit() + '\n';
        return;
    }
    std::fprintf(stderr, "%s\n",
                 qPrintable(QCoreApplication::translate(
                     "main", "There is no display to show windows on. Start this from a desktop, "
                             "or set DISPLAY or WAYLAND_DISPLAY.")));
    _exit(Failed);
}

// True when the running instance has taken the message. One that is there and does not answer is
// told of.
bool handOver(QtSingleApplication &app, const QString &message, bool *hangs)
{
    QElapsedTimer time;
    time.start();
    const bool taken = app.sendMessage(message, MessageTimeoutMs);
    *hangs = !taken && time.hasExpired(MessageTimeoutMs);
    if (*hangs) {
        std::fprintf(stderr, "%s\n",
                     qPrintable(QCoreApplication::translate(
                         "main", "Quorvel runs already but does not answer. End it with "
                                 "\"pkill -KILL quorvel\" and start it again.")));
    }
    return taken;
}

// The window whose link ends in good order when the toolkit ends the program by itself, as it does
// when the display is gone.
QPointer<MainWindow> shownWindow;

void endShownWindow()
{
    if (shownWindow)
        shownWindow->endLink();
}

} // namespace

int main(int argc, char **argv)
{
    settleHeap();
    // Whoever reads the output through a pipe sees each line when it is written.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    // Who no longer reads the output does not end the program.
    std::signal(SIGPIPE, SIG_IGN);

    CommandLine asked = CommandLine::parse(argumentsOf(argc, argv));
    if (asked.help) {
        std::fputs(qPrintable(CommandLine::helpText()), stdout);
        return 0;
    }
    if (asked.version) {
        std::puts("quorvel " QUORVEL_VERSION);
        return 0;
    }
    std::unique_ptr<Demo> demo;
    if (asked.demo) {
        QString problem;
        demo = Demo::create(asked.profile, asked.faults, &problem);
        if (!demo) {
            std::fprintf(stderr, "%s\n", qPrintable(problem));
            return WrongUsage;
        }
    }

    addPluginFolder();
    // Nothing is shown, so no display is needed.
    if (argumentsOf(argc, argv).contains(u"-close"_s))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Closing the last window is no reason to end: the program lives in the tray.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    // The toolkit asks for the system's fonts when the first text is measured. They are read while
    // the display answers: each takes milliseconds.
    const std::future<FcBool> fonts = std::async(FcInit);
    // A demonstration is an instance of its own kind and leaves the real one alone.
    const QtMessageHandler usual = qInstallMessageHandler(sayWithoutDump);
    QtSingleApplication app(argc, argv, demo ? u"quorvel-demo"_s : QString());
    fonts.wait();
    qInstallMessageHandler(usual);
    std::fputs(heldBack.constData(), stderr);
    initResources();
    const Translations translations;
    // Qt has taken its own options out by now: "-style" does not ask for a silent start.
    asked = CommandLine::parse(argumentsOf(argc, argv));
    if (!asked.close && !asked.problem.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(asked.problem));
        return WrongUsage;
    }

    bool hangs = false;
    // An instance that was just ending leaves its place to this one.
    const auto runsAlready = [&app, &hangs] {
        return app.isRunning() && (handOver(app, u"-W"_s, &hangs) || hangs || app.isRunning());
    };
    // The window records from its beginning, and only if this start is not another's to serve.
    const bool records = !asked.close && !asked.record.isEmpty();
    if (records && runsAlready()) {
        std::fprintf(stderr, "%s\n",
                     qPrintable(QCoreApplication::translate(
                         "main", "Quorvel runs already, and this start records nothing: choose "
                                 "\"Record...\" in the menu of its window.")));
        return Failed;
    }

    MainWindow window(demo ? demo->adapter() : nullptr, records ? asked.record : QString());
    if (!window.recordProblem().isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(window.recordProblem()));
        window.OnExit();
        return Failed;
    }
    if (demo)
        demo->attachTo(window);
    else
        QObject::connect(&window, &MainWindow::calibrationSaved, &window, [](int deviation) {
            LastCalibration{QDateTime::currentDateTimeUtc(), deviation}.keep();
        });

    if (asked.close) {
        handOver(app, u"-C"_s, &hangs);
        window.OnExit();
        return hangs ? Failed : 0;
    }
    if (runsAlready()) {
        window.OnExit();
        return hangs ? Failed : 0;
    }
    QObject::connect(&app, &QtSingleApplication::messageReceived, &window,
                     &MainWindow::handleMessage);
    EndSignals endSignals;
    QObject::connect(&endSignals, &EndSignals::asked, &window, &MainWindow::OnExit);
    shownWindow = &window;
    std::atexit(endShownWindow);
    if (!asked.hidden)
        window.show();
    else
        std::fprintf(stderr, "%s\n",
                     qPrintable(QCoreApplication::translate("main", "Started hidden in the tray: "
                                                                    "the argument %1 asks for it.")
                                    .arg(printable(asked.hiddenBy))));
    const int result = QtSingleApplication::exec();
    // What becomes of the last frames is told before the last line, and belongs to it.
    window.endLink();
    if (demo)
        std::puts(demo->calibrationKept() ? "calibration: kept" : "calibration: not kept");
    return result;
}
