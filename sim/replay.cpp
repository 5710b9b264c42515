// SPDX-License-Identifier: GPL-3.0-or-later

#include "replay.h"

#include "capture/reader.h"
#include "device/framewords.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using std::chrono::milliseconds;

namespace sim {

namespace {

// How far ahead a command is looked for before it counts as asked again.
constexpr size_t Ahead = 16;

using Clocked = std::chrono::microseconds;

bool isEmpty(const Frame &report)
{
    return std::all_of(report.begin() + 1, report.end(), [](UCHAR byte) { return byte == 0; });
}

bool isRate(const Frame &frame)
{
    return frame[command::offset::Class] == command::SerialBaud;
}

} // namespace

// Sorts what a device said to the questions that it answered: the last one of the same class before
// it.
class Replay::Builder
{
public:
    explicit Builder(Replay &owner)
        : replay(owner)
    {
        replay.beginnings.emplace_back();
    }

    void take(const capture::Record &record)
    {
        if (!begun)
            startedAt = record.time;
        begun = true;
        now = record.time;
        switch (record.kind) {
        case capture::Kind::ToFrame:
            // What was not even tried nobody can answer.
            if (record.result != capture::Result::Dropped && !isRate(record.frame))
                ask(record);
            break;
        case capture::Kind::FromFrame:
            if (record.result == capture::Result::Done)
                hear(record);
            break;
        case capture::Kind::LinkBegan:
            begin();
            break;
        case capture::Kind::LinkEnded:
            if (record.end == capture::End::DeviceGone)
                lose();
            last.reset();
            break;
        }
    }

    void finish()
    {
        if (gone)
            endLink({});
        for (const auto &[number, again] : answeredAgain) {
            if (replay.exchanges[number].answers.empty())
                replay.exchanges[number].answers.push_back(again);
        }
    }

private:
    struct Question
    {
        size_t number; // of exchanges
        Clocked at;
    };

    void ask(const capture::Record &record)
    {
        const Question asked{replay.exchanges.size(), now};
        replay.exchanges.push_back({record.frame, {}});
        latest = asked;
        if (record.result == capture::Result::Done)
            asker[record.frame[command::offset::Class]] = asked;
    }

    void hear(const capture::Record &record)
    {
        // By USB the last report is read until there is another one.
        const bool again = record.over == capture::Over::Usb && last == record.frame;
        last = record.frame;
        if (isEmpty(record.frame))
            return;
        const auto question = asker.find(record.frame[command::offset::Class]);
        if (again) {
            // A second question of the same kind has that as its answer too.
            if (question != asker.end() && answers(record.frame, question->second))
                answeredAgain.emplace(question->second.number,
                                      Said{since(question->second.at), {}, record.frame});
            return;
        }
        if (question == asker.end())
            replay.beginnings.back().answers.push_back({since(startedAt), {}, record.frame});
        else
            say(question->second, {{}, {}, record.frame});
    }

    bool answers(const Frame &report, const Question &question) const
    {
        return report[command::offset::Sub] ==
               command::replyTo(replay.exchanges[question.number].question[command::offset::Sub]);
    }

    void say(const Question &question, Said said)
    {
        said.after = since(question.at);
        replay.exchanges[question.number].answers.push_back(said);
    }

    void begin()
    {
        if (!gone)
            return;
        // Its cable was in before its link began.
        endLink(std::min(since(gone->at), milliseconds(LongestAbsence)));
        replay.beginnings.emplace_back();
        startedAt = now;
    }

    void lose()
    {
        gone = Gone{now, since(latest ? latest->at : startedAt), latest};
        asker.clear();
        latest.reset();
    }

    void endLink(std::optional<milliseconds> back)
    {
        Exchange &exchange =
            gone->behind ? replay.exchanges[gone->behind->number] : replay.beginnings.back();
        exchange.answers.push_back({gone->after, Absence{back}, {}});
        gone.reset();
    }

    milliseconds since(Clocked time) const
    {
        return std::clamp(std::chrono::duration_cast<milliseconds>(now - time), milliseconds(0),
                          milliseconds(LongestDelay));
    }

    Replay &replay;
    bool begun = false;
    Clocked startedAt{0}; // of the present link
    Clocked now{0};
    std::map<UCHAR, Question> asker; // the last one of each class
    std::optional<Question> latest;
    std::optional<Frame> last; // report
    std::map<size_t, Said> answeredAgain;
    struct Gone
    {
        Clocked at;
        milliseconds after; // the question before, or the beginning of the link
        std::optional<Question> behind;
    };
    std::optional<Gone> gone; // while the device is away
};

std::optional<Replay> Replay::load(const QString &path, Clock clock, QString *problem)
{
    const auto reader = capture::Reader::open(path, problem);
    if (!reader)
        return {};
    Replay replay(std::move(clock));
    Builder builder(replay);
    bool hasFrame = false;
    while (const auto record = reader->next()) {
        builder.take(*record);
        hasFrame = hasFrame || record->isFrame();
    }
    builder.finish();
    if (!reader->problem().isEmpty())
        *problem = reader->problem();
    else if (!hasFrame)
        *problem = tr("%1: has no frame to replay").arg(path);
    else
        return replay;
    return {};
}

Replay::Replay(Clock theClock)
    : clock(std::move(theClock))
{
}

Replay::Replay(const std::vector<capture::Record> &records, Clock theClock)
    : Replay(std::move(theClock))
{
    Builder builder(*this);
    for (const capture::Record &record : records)
        builder.take(record);
    builder.finish();
}

void Replay::restart()
{
    waiting.clear();
    asleep = true;
}

void Replay::awake()
{
    if (!std::exchange(asleep, false) || link >= beginnings.size())
        return;
    answer(beginnings[link]);
    ++link;
}

void Replay::command(const Frame &frame, int arrived)
{
    awake();
    if (isRate(frame))
        return;
    const std::optional<size_t> found = find(frame, arrived);
    const QString words = framewords::describeCommand(frame);
    if (!found) {
        depart(u"replay  the host sends what is not in the recording: "_s + words);
        return;
    }
    if (*found < next) {
        depart(u"replay  the host sends once more: "_s + words);
    } else {
        if (*found > next) {
            depart(u"replay  the host leaves out %1, first: %2"_s.arg(*found - next)
                       .arg(framewords::describeCommand(exchanges[next].question)));
        } else {
            ++followed;
        }
        next = *found + 1;
        if (next == exchanges.size() && news.isEmpty())
            news = u"replay  this was the last command of the recording"_s;
    }
    answer(exchanges[*found]);
}

// The exchange that a command begins: the one that is expected, one a little later, one before, or
// one much later.
std::optional<size_t> Replay::find(const Frame &frame, int arrived) const
{
    const auto isAsked = [&frame, arrived](const Exchange &exchange) {
        return std::equal(frame.begin() + 1, frame.begin() + std::clamp(arrived, 1, FrameSize),
                          exchange.question.begin() + 1);
    };
    const auto expected = exchanges.begin() + std::ptrdiff_t(next);
    const auto soon = exchanges.begin() + std::ptrdiff_t(std::min(next + Ahead, exchanges.size()));
    if (const auto at = std::find_if(expected, soon, isAsked); at != soon)
        return size_t(at - exchanges.begin());
    const auto before =
        std::find_if(std::make_reverse_iterator(expected), exchanges.rend(), isAsked);
    if (before != exchanges.rend())
        return size_t(exchanges.rend() - before) - 1;
    if (const auto at = std::find_if(soon, exchanges.end(), isAsked); at != exchanges.end())
        return size_t(at - exchanges.begin());
    return {};
}

void Replay::depart(const QString &how)
{
    ++departed;
    news = how;
}

void Replay::answer(const Exchange &exchange)
{
    const milliseconds now = clock();
    for (const Said &said : exchange.answers) {
        const milliseconds due = now + said.after;
        const auto later = std::find_if(waiting.begin(), waiting.end(),
                                        [due](const Waiting &one) { return one.due > due; });
        waiting.insert(later, {due, said});
    }
}

bool Replay::isDue() const
{
    return !waiting.empty() && waiting.front().due <= clock();
}

std::optional<milliseconds> Replay::untilDue() const
{
    if (waiting.empty())
        return {};
    return std::max(waiting.front().due - clock(), milliseconds(0));
}

std::optional<Frame> Replay::takeReport()
{
    if (!isDue() || waiting.front().said.absence)
        return {};
    const Frame report = waiting.front().said.report;
    waiting.pop_front();
    return report;
}

std::optional<Replay::Absence> Replay::takeAbsence()
{
    if (!isDue() || !waiting.front().said.absence)
        return {};
    const Absence absence = *waiting.front().said.absence;
    waiting.clear();
    return absence;
}

QString Replay::takeNews()
{
    return std::exchange(news, {});
}

QString Replay::state() const
{
    return u"replayed=%1/%2 departures=%3"_s.arg(followed).arg(exchanges.size()).arg(departed);
}

} // namespace sim
