// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "frame.h"

#include <vector>

// Which reports are news to a receiver, and which only come again.
//
// Over USB the last report is read anew in every cycle until the device has another one. So a
// report that equals the one before it is old, unless the receiver has asked again for just that:
// the device may have nothing else to say.
class ReportNews
{
public:
    enum class News {
        Repeated,
        New,    // differs from the report before it
        Answer, // is what was asked for, and comes for the first time since
    };

    // What a report has to be to answer a question.
    struct Answer
    {
        UCHAR commandClass = 0;
        UCHAR sub = 0;
        std::array<UCHAR, 3> value{}; // from command::offset::Value on
        int valueSize = 0;            // how many of these bytes count

        bool operator==(const Answer &) const = default;
    };

    // Awaits an answer until it comes. To ask twice is to ask once.
    void ask(const Answer &answer);
    bool awaits(const Answer &answer) const;
    // Awaits nothing and has heard nothing: the device is another one.
    void forget();

    // To be given every report of the link, of any kind, in turn.
    News take(const Frame &report);

private:
    std::vector<Answer> awaited;
    Frame last{};
};
