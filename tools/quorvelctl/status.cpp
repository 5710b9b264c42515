// SPDX-License-Identifier: GPL-3.0-or-later

#include "status.h"

#include "program.h"
#include "questions.h"
#include "session.h"
#include "words.h"

#include <CLI/CLI.hpp>

#include <QElapsedTimer>

using namespace Qt::StringLiterals;

namespace ctl {

namespace {

void status(Session &session)
{
    session.connectFrame();
    QElapsedTimer time;
    time.start();
    askRotation(session);
    const int ms = int(time.elapsed());
    const QString port = session.frameLink().state().port;
    QJsonObject members{{u"answer_ms"_s, ms}};
    QStringList lines;
    if (session.isSerial()) {
        const int rate = bitsPerSecond(session.portSettings().BaudRate);
        members[u"link"_s] = u"serial"_s;
        members[u"port"_s] = port;
        members[u"rate"_s] = rate;
        lines += Words::tr("Connected over %1 at %2 bits per second.").arg(port).arg(rate);
    } else {
        const bool current = session.isCurrentGeneration();
        members[u"link"_s] = u"usb"_s;
        members[u"port"_s] = port;
        members[u"generation"_s] = current ? u"current"_s : u"older"_s;
        lines += port.isEmpty() ? Words::tr("Connected by USB.")
                                : Words::tr("Connected by USB at %1.").arg(port);
        lines += current ? Words::tr("It is of the current generation.")
                         : Words::tr("It is of the older generation, which "
                                     "does not tell of its firmware.");
    }
    lines += Words::tr("It answered within %1 ms.").arg(ms);
    session.answer(lines, members);
}

} // namespace

void addStatus(CLI::App &app, Session &session)
{
    CLI::App *command =
        app.add_subcommand("status", "Show how the frame is linked, and whether it answers");
    define(*command, session, [&session] { status(session); });
}

} // namespace ctl
