// SPDX-License-Identifier: GPL-3.0-or-later

#include "reportnews.h"

#include <algorithm>

namespace {

bool answers(const Frame &report, const ReportNews::Answer &question)
{
    return command::is(report, question.commandClass, question.sub) &&
           std::equal(question.value.begin(), question.value.begin() + question.valueSize,
                      report.begin() + command::offset::Value);
}

} // namespace

void ReportNews::ask(const Answer &answer)
{
    if (!awaits(answer))
        awaited.push_back(answer);
}

bool ReportNews::awaits(const Answer &answer) const
{
    return std::find(awaited.begin(), awaited.end(), answer) != awaited.end();
}

void ReportNews::forget()
{
    awaited.clear();
    last = {};
}

ReportNews::News ReportNews::take(const Frame &report)
{
    const bool repeated = report == last;
    last = report;
    const auto question =
        std::find_if(awaited.begin(), awaited.end(),
                     [&report](const Answer &one) { return answers(report, one); });
    if (question != awaited.end()) {
        awaited.erase(question);
        return News::Answer;
    }
    return repeated ? News::Repeated : News::New;
}
