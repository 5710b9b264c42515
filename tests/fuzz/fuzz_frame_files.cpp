// SPDX-License-Identifier: GPL-3.0-or-later

#include "demand.h"
#include "device/commands.h"
#include "lights/thresholds.h"
#include "sim/faultplan.h"
#include "sim/profile.h"

using namespace Qt::StringLiterals;
using sim::FaultPlan;

namespace {

void readProfile(const QString &text)
{
    QString problem;
    const auto profile = sim::Profile::parse(text, u"input"_s, &problem);
    demand(profile.has_value() == problem.isEmpty(), "a refused profile has a reason");
    if (!profile)
        return;
    demand(profile->lightsX >= 1 && profile->lightsX <= 500 && profile->lightsY >= 1 &&
               profile->lightsY <= 350,
           "a frame has lights, and not too many");
    demand(profile->rotation <= 3 && profile->defaultRotation <= 3, "turns are quarters");
    for (const sim::OddLight &light : profile->oddLights) {
        const int lights =
            light.axis == command::settings::AxisX ? profile->lightsX : profile->lightsY;
        demand(light.number >= 0 && light.number < lights, "an odd light is one of the frame's");
    }
}

void readPlan(const QString &text, FaultPlan::Link link)
{
    QString problem;
    const auto plan = FaultPlan::parse(text, u"input"_s, &problem, link);
    demand(plan.has_value() == problem.isEmpty(), "a refused plan has a reason");
    if (!plan)
        return;
    quint64 free = 1;
    for (const sim::Fault &fault : plan->faults()) {
        demand(fault.first >= free && fault.count >= 1, "faults come one after the other");
        free = fault.first + fault.count;
        demand(plan->at(fault.first) == fault, "a fault is found where it begins");
        demand(fault.duration <= std::chrono::minutes(10), "no fault lasts for ever");
        demand(fault.bytes <= FaultPlan::MaxBytes, "nor spoils more than a frame");
        demand(link == FaultPlan::Link::Serial ||
                   (fault.kind != sim::Fault::Kind::Noise && fault.kind != sim::Fault::Kind::Lose),
               "USB has no such fault");
    }
}

void readThresholds(const QByteArray &text)
{
    QString problem;
    const auto thresholds = lights::Thresholds::parse(text, u"input"_s, &problem);
    demand(thresholds.has_value() == problem.isEmpty(), "refused thresholds have a reason");
    if (!thresholds)
        return;
    const auto again = lights::Thresholds::parse(thresholds->toJson(), u"again"_s, &problem);
    demand(again == thresholds, "what is written is read again");
}

} // namespace

// Any text is read as what a person writes about a frame, or refused with a reason: by its first
// byte a profile, a fault plan of a link, or thresholds.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *input, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(input) + 1, qsizetype(size) - 1);
    switch (input[0]) {
    case 'p':
        readProfile(QString::fromUtf8(bytes));
        break;
    case 'u':
        readPlan(QString::fromUtf8(bytes), FaultPlan::Link::Usb);
        break;
    case 's':
        readPlan(QString::fromUtf8(bytes), FaultPlan::Link::Serial);
        break;
    default:
        readThresholds(bytes);
    }
    return 0;
}
