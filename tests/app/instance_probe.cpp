// SPDX-License-Identifier: GPL-3.0-or-later

// One start of a single-instance application, for tests that need real processes.
//
//   instance_probe ID serve             become the first, or hand "-W" over and end
//   instance_probe ID linger MS         serve, and take so long to end afterwards
//   instance_probe ID send TEXT MS      only send; never become the first
//   instance_probe ID sendlong BYTES MS
//   instance_probe ID self              become the first and send to oneself
//   instance_probe ID ask               become the first, if nobody is, and end
//
// ID may be empty. Each step is one line on standard output; the exit code is 0 when the step
// asked for succeeded. A first ends when a message holds "-C"; one that holds "-Q" finds it ending
// already.

#include "app/qtsingleapplication.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QThread>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

void say(const QString &line)
{
    std::printf("%s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

void hear(const QString &message)
{
    if (message.size() <= 100) {
        say(u"got "_s + message);
    } else {
        const QByteArray sum =
            QCryptographicHash::hash(message.toUtf8(), QCryptographicHash::Sha1).toHex();
        say(u"got %1 %2"_s.arg(message.size()).arg(QString::fromLatin1(sum)));
    }
    if (message.contains(u"-C"))
        QCoreApplication::quit();
    // Newer toolkits tell of the end before the receiver has returned.
    if (message.contains(u"-Q")) {
        QMetaObject::invokeMethod(qApp, "aboutToQuit", Qt::DirectConnection);
        QCoreApplication::quit();
    }
}

int send(QtSingleApplication &app, const QString &message, int timeout)
{
    QElapsedTimer clock;
    clock.start();
    const bool sent = app.sendMessage(message, timeout);
    say(u"%1 %2"_s.arg(sent ? u"sent"_s : u"failed"_s).arg(clock.elapsed()));
    return sent ? 0 : 1;
}

int serve(QtSingleApplication &app)
{
    if (app.isRunning())
        return send(app, u"-W"_s, 5000);
    QObject::connect(&app, &QtSingleApplication::messageReceived, &app, &hear);
    say(u"first"_s);
    return QtSingleApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    QtSingleApplication app(argc, argv, QString::fromLocal8Bit(argv[1]));
    const QStringList arguments = QCoreApplication::arguments();
    const QString &step = arguments.at(2);
    if (step == u"serve")
        return serve(app);
    if (step == u"linger" && argc == 4) {
        const int result = serve(app);
        say(u"lingering"_s);
        QThread::msleep(arguments.at(3).toULong());
        return result;
    }
    if (step == u"send" && argc == 5)
        return send(app, arguments.at(3), arguments.at(4).toInt());
    if (step == u"sendlong" && argc == 5)
        return send(app, QString(arguments.at(3).toInt(), u'm'), arguments.at(4).toInt());
    if (step == u"self" && !app.isRunning())
        return send(app, u"to myself"_s, 5000);
    if (step == u"ask") {
        say(app.isRunning() ? u"running"_s : u"first"_s);
        return 0;
    }
    return 2;
}
