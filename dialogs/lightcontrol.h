// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/records.h"

#include <QDeadlineTimer>

#include <optional>
#include <vector>

// The light that a user has chosen: which reports about it count, what is wanted of it, and what is
// to be sent for that.
//
// Answers come late, out of step with what is written, and again. So a report counts only if it
// names the light and says what was last written to it; another value is believed only when no
// older answer can be under way any more. Steps that are wanted meanwhile add up, and go out as one
// when the step before has been answered.
class LightControl
{
public:
    using Request = command::LightRequest;

    static constexpr int LargestOffset = 50; // that is stepped to, either way
    // No answer is later than this: three seconds, behind all pages of the largest frame.
    static constexpr int LatestAnswerMs = 8000;

    const std::optional<command::LightName> &light() const { return chosen; }
    // Another light, or none. What the steps to the light before still want is to be sent.
    std::optional<Request> choose(const std::optional<command::LightName> &light);
    void forget();

    // False: it says nothing that counts about the chosen light.
    bool take(const command::LightReport &report);
    // A report has counted since the light was chosen.
    bool isKnown() const { return agc.has_value(); }
    // What was written has not been answered.
    bool isStepping() const { return isUnanswered(command::settings::SetLight); }
    bool isSwitching() const { return isUnanswered(command::settings::SwitchLight); }
    // What is wanted, or else what the frame reports.
    int offset() const { return wanted.value_or(reported); }

    // One step up or down, unless that is out of bounds. Afterwards, and after a report, there may
    // be something to send.
    void step(int by);
    std::optional<Request> next();
    // The same without waiting for an answer.
    std::optional<Request> rest();
    Request switchTo(bool off);

private:
    struct Write
    {
        Request request;
        QDeadlineTimer doubtUntil; // reports of another value
    };

    bool isUnanswered(UCHAR sub) const;
    void note(const Request &request);

    std::optional<command::LightName> chosen;
    std::optional<int> agc; // as reported
    int reported = 0;       // offset
    std::optional<int> wanted;
    std::vector<Write> writes; // of any light, at most one for each value of it
};
