#include "commandline.h"
#include "demo.h"
#include "mainwindow.h"
#include "pluginfolder.h"
#include "qtsingleapplication.h"
#include "resources/resources.h"

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int MessageTimeoutMs = 5000;
constexpr int WrongUsage = 2;

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

} // namespace

int main(int argc, char **argv)
{
    // Whoever reads the output through a pipe sees each line when it is written.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);

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
    // Closing the last window is no reason to end: the program lives in the tray.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    // A demonstration is an instance of its own kind and leaves the real one alone.
    QtSingleApplication app(argc, argv, demo ? u"quorvel-demo"_s : QString());
    initResources();
    // Qt has taken its own options out by now: "-style" does not ask for a silent start.
    asked = CommandLine::parse(argumentsOf(argc, argv));

    MainWindow window(demo ? demo->adapter() : nullptr);
    if (demo)
        demo->attachTo(window);

    if (asked.close) {
        app.sendMessage(u"-C"_s, MessageTimeoutMs);
        window.OnExit();
        return 0;
    }
    // An instance that was just ending leaves its place to this one.
    if (app.isRunning() && (app.sendMessage(u"-W"_s, MessageTimeoutMs) || app.isRunning())) {
        window.OnExit();
        return 0;
    }
    QObject::connect(&app, &QtSingleApplication::messageReceived, &window,
                     &MainWindow::handleMessage);
    if (!asked.hidden)
        window.show();
    const int result = QtSingleApplication::exec();
    if (demo)
        std::puts(demo->calibrationKept() ? "calibration: kept" : "calibration: not kept");
    return result;
}
