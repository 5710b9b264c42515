#include "questions.h"

#include "session.h"

namespace ctl {

namespace {

Session::IsAnswer isRotation(UCHAR sub)
{
    return [sub](const Frame &report) {
        const auto rotation = command::RotationReport::decode(report);
        return rotation && rotation->sub == sub;
    };
}

} // namespace

Rotations askRotation(Session &session)
{
    namespace rotation = command::rotation;
    const Frame standard = session.ask(command::request(command::Rotation, rotation::Query),
                                       isRotation(rotation::DefaultReply));
    const Frame now = session.next(isRotation(rotation::CurrentReply));
    return {command::RotationReport::decode(standard)->code,
            command::RotationReport::decode(now)->code};
}

command::FirmwareRecord askFirmware(Session &session)
{
    const auto isFirmware = [](const Frame &report) {
        return command::FirmwareRecord::decode(report).has_value();
    };
    // A frame says the same for as long as it is on.
    const Frame report = session.ask(command::request(command::Firmware, command::firmware::Query),
                                     isFirmware, Session::Repeats::Taken);
    return *command::FirmwareRecord::decode(report);
}

} // namespace ctl
