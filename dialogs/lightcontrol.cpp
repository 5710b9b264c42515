// SPDX-License-Identifier: GPL-3.0-or-later

#include "lightcontrol.h"

#include <algorithm>

namespace settings = command::settings;

namespace {

bool isSameValue(const command::LightRequest &a, const command::LightRequest &b)
{
    return a.sub == b.sub && a.light == b.light;
}

bool says(const command::LightReport &report, const command::LightRequest &written)
{
    return written.sub == settings::SetLight ? report.offset == written.offset
                                             : report.off == written.off;
}

} // namespace

std::optional<LightControl::Request>
LightControl::choose(const std::optional<command::LightName> &light)
{
    if (light == chosen)
        return {};
    const auto unsent = rest();
    chosen = light;
    agc.reset();
    reported = 0;
    wanted.reset();
    return unsent;
}

void LightControl::forget()
{
    *this = {};
}

bool LightControl::take(const command::LightReport &report)
{
    bool isOld = false;
    std::erase_if(writes, [&](const Write &write) {
        if (write.request.light != report.light)
            return false;
        const bool isSaid = says(report, write.request);
        if (!isSaid && !write.doubtUntil.hasExpired()) {
            isOld = true;
            return false;
        }
        // What the frame made of it instead ends the steps too.
        if (write.request.sub == settings::SetLight && report.light == chosen &&
            (!isSaid || wanted == report.offset))
            wanted.reset();
        return true;
    });
    if (isOld || report.light != chosen)
        return false;
    agc = report.agc;
    reported = report.offset;
    return true;
}

void LightControl::step(int by)
{
    if (!agc || (chosen->axis != settings::AxisX && chosen->axis != settings::AxisY))
        return;
    const int from = offset();
    if (by > 0 ? from >= LargestOffset : from <= -LargestOffset || -from >= *agc)
        return;
    wanted = from + by;
}

std::optional<LightControl::Request> LightControl::next()
{
    if (isStepping())
        return {};
    return rest();
}

std::optional<LightControl::Request> LightControl::rest()
{
    if (!chosen || !wanted)
        return {};
    Request request{settings::SetLight, *chosen};
    request.offset = *wanted;
    const bool isSent = std::any_of(writes.begin(), writes.end(),
                                    [&](const Write &one) { return one.request == request; });
    if (isSent)
        return {};
    note(request);
    return request;
}

LightControl::Request LightControl::switchTo(bool off)
{
    Request request{settings::SwitchLight, chosen.value_or(command::LightName())};
    request.off = off;
    note(request);
    return request;
}

bool LightControl::isUnanswered(UCHAR sub) const
{
    return std::any_of(writes.begin(), writes.end(), [&](const Write &one) {
        return one.request.sub == sub && one.request.light == chosen;
    });
}

void LightControl::note(const Request &request)
{
    std::erase_if(writes, [&](const Write &one) { return isSameValue(one.request, request); });
    writes.push_back({request, QDeadlineTimer(LatestAnswerMs)});
}
