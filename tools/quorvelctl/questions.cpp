// SPDX-License-Identifier: GPL-3.0-or-later

#include "questions.h"

#include "session.h"
#include "words.h"

using namespace Qt::StringLiterals;

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

std::optional<command::FirmwareRecord> firmwareOf(Session &session)
{
    if (!session.isSerial())
        return session.isCurrentGeneration() ? std::optional(askFirmware(session)) : std::nullopt;
    try {
        return askFirmware(session);
    } catch (const Failure &failure) {
        if (failure.code() != NoAnswer)
            throw;
    }
    askRotation(session);
    return {};
}

command::LightCounts askCounts(Session &session)
{
    const auto isCounts = [](const Frame &report) {
        const auto counts = command::LightCounts::decode(report);
        return counts && counts->arePossible();
    };
    return *command::LightCounts::decode(
        session.ask(command::request(command::Scan, command::scan::Counts), isCounts));
}

command::AdcReport askAdc(Session &session)
{
    const auto isAdc = [](const Frame &report) {
        const auto adc = command::AdcReport::decode(report);
        return adc && adc->counts.arePossible();
    };
    return *command::AdcReport::decode(
        session.ask(command::request(command::Settings, command::settings::GetAdc), isAdc));
}

command::LightReport askLight(Session &session, const command::LightRequest &request)
{
    const auto isAboutIt = [&request](const Frame &report) {
        const auto light = command::LightReport::decode(report);
        return light && light->light == request.light;
    };
    try {
        return *command::LightReport::decode(session.ask(request.encode(), isAboutIt));
    } catch (const Failure &failure) {
        if (failure.code() != NoAnswer)
            throw;
    }
    // A frame says nothing about a light that it does not have.
    const command::LightCounts counts = askCounts(session);
    const int count = request.light.axis == command::settings::AxisX ? counts.x : counts.y;
    if (request.light.number < count)
        throw Failure(NoAnswer, Words::tr("The touch frame says nothing about the light %1 %2.")
                                    .arg(axisName(request.light.axis))
                                    .arg(request.light.number));
    session.confirmed();
    throw Failure(Failed, Words::tr("The touch frame has no light %1 %2: the last one is %3.")
                              .arg(axisName(request.light.axis))
                              .arg(request.light.number)
                              .arg(count - 1));
}

QString axisName(UCHAR axis)
{
    return axis == command::settings::AxisX ? u"X"_s : u"Y"_s;
}

} // namespace ctl
