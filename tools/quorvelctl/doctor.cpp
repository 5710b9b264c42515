// SPDX-License-Identifier: GPL-3.0-or-later

#include "doctor.h"

#include "config/xml_class.h"
#include "program.h"
#include "session.h"

#include <CLI/CLI.hpp>

using namespace Qt::StringLiterals;

namespace ctl {

namespace {

int codeOf(doctor::Finding::Cause cause)
{
    using Cause = doctor::Finding::Cause;
    switch (cause) {
    case Cause::None:
        return Done;
    case Cause::NoFrame:
        return NoFrame;
    case Cause::NoPermission:
        return NoPermission;
    case Cause::InUse:
        return InUse;
    case Cause::NoAnswer:
        return NoAnswer;
    case Cause::Failed:
        break;
    }
    return Failed;
}

doctor::Finding::Cause causeOf(int code)
{
    using Cause = doctor::Finding::Cause;
    for (const Cause cause : {Cause::NoFrame, Cause::NoPermission, Cause::InUse, Cause::NoAnswer})
        if (codeOf(cause) == code)
            return cause;
    return Cause::Failed;
}

void examine(Session &session)
{
    const doctor::Interview said = interviewed(session);
    const auto examination = doctor::Examination::of(machineOf(session), patientOf(session), said);
    const doctor::Finding *trouble = examination.firstTrouble();
    session.answer(examination.lines(), examination.json(),
                   trouble ? codeOf(trouble->cause) : Done);
}

} // namespace

const doctor::Machine &machineOf(const Session &session)
{
    static const doctor::Machine here;
    return session.around.machine ? *session.around.machine : here;
}

doctor::Patient patientOf(const Session &session)
{
    return {.usbNode = session.options.usb,
            .serialPort = session.options.port,
            .settingsFile = XML_CLASS::filePath(),
            .hasTray = {}};
}

// A frame that cannot be linked is a finding like any other.
doctor::Interview interviewed(Session &session, const std::function<void()> &onLinked)
{
    doctor::Interview said;
    bool asked = false;
    try {
        session.connectFrame();
        if (onLinked)
            onLinked();
        asked = true;
        said =
            doctor::interview(session.frameLink(), bitsPerSecond(session.portSettings().BaudRate),
                              session.options.timeout);
        // Somebody may have asked the program to end meanwhile.
        session.waitFor([] { return true; }, QDeadlineTimer());
    } catch (const Failure &failure) {
        if (failure.code() >= SignalBase)
            throw;
        if (!asked) {
            said.whyNot = failure.why();
            said.cause = causeOf(failure.code());
        }
    }
    return said;
}

void addDoctor(CLI::App &app, Session &session)
{
    CLI::App *command = app.add_subcommand(
        "doctor", "Look for what keeps a frame from working, and say what helps");
    define(*command, session, [&session] { examine(session); });
}

} // namespace ctl
