// SPDX-License-Identifier: GPL-3.0-or-later

#include "interview.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace doctor {

namespace {

struct AnswerWords
{
    Q_DECLARE_TR_FUNCTIONS(doctor::Answers)
};

constexpr auto AnswerCheck = "answer"_L1;
constexpr auto RateCheck = "rate"_L1;
constexpr auto GenerationCheck = "generation"_L1;
// How long a question is left alone before it is asked again.
constexpr auto AskAgain = 500ms;
// A report by USB takes 67 ms.
constexpr int SlowReportMs = 200;
constexpr int ReportsToMeasure = 8;

using Cause = Finding::Cause;

bool isRotation(const Frame &report)
{
    return command::RotationReport::decode(report).has_value();
}

// Runs the event loop until a report is what is waited for; false when there was none in time.
bool waitFor(Link &link, QDeadlineTimer deadline, const std::function<bool(const Frame &)> &isIt)
{
    QEventLoop loop;
    bool found = false;
    const auto heard = QObject::connect(&link, &Link::received, &loop, [&](const UCHAR *report) {
        if (!found && isIt(command::frameAt(report))) {
            found = true;
            loop.quit();
        }
    });
    QObject::connect(&link, &Link::ended, &loop, &QEventLoop::quit);
    QTimer::singleShot(
        std::chrono::ceil<std::chrono::milliseconds>(deadline.remainingTimeAsDuration()), &loop,
        &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    QObject::disconnect(heard);
    return found;
}

// By USB the last report comes again and again, so an answer differs from the one before it.
class Questions
{
public:
    Questions(Link &theLink, QDeadlineTimer theDeadline)
        : link(theLink)
        , deadline(theDeadline)
    {
    }

    std::optional<Frame> ask(Frame question, const std::function<bool(const Frame &)> &isAnswer)
    {
        while (!deadline.hasExpired() && link.isLinked()) {
            link.send(question.data());
            std::optional<Frame> answer;
            const QDeadlineTimer again = std::min(deadline, QDeadlineTimer(AskAgain));
            waitFor(link, again, [&](const Frame &report) {
                const bool isNew = last != report;
                last = report;
                if (isNew && isAnswer(report))
                    answer = report;
                return answer.has_value();
            });
            if (answer)
                return answer;
        }
        return {};
    }
    // What the frame said before it was asked anything; nothing comes unasked over a serial line.
    void listen()
    {
        waitFor(link, deadline, [this](const Frame &report) {
            last = report;
            return true;
        });
    }

private:
    Link &link;
    const QDeadlineTimer deadline;
    std::optional<Frame> last;
};

} // namespace

Interview interview(Link &link, int rate, std::chrono::milliseconds patience)
{
    Interview said;
    if (!link.isLinked()) {
        said.whyNot = link.state().problem.isEmpty() ? link.usbProblem() : link.state().problem;
        if (said.whyNot.isEmpty())
            said.whyNot = AnswerWords::tr("No touch frame is linked.");
        said.cause = link.isInUse() ? Cause::InUse : Cause::NoFrame;
        return said;
    }
    said.serial = link.kind() == Link::SerialOpen;
    said.port = link.state().port;
    said.rate = said.serial ? rate : 0;
    Questions questions(link, QDeadlineTimer(patience));
    if (!said.serial)
        questions.listen();
    QElapsedTimer time;
    time.start();
    if (questions.ask(command::request(command::Rotation, command::rotation::Query), isRotation))
        said.answerMs = int(time.elapsed());
    if (said.serial || !link.isLinked())
        return said;

    said.release = hidver.VersionNumber;
    if (said.answered() && isCurrentGeneration(said.release)) {
        const auto answer = questions.ask(
            command::request(command::Firmware, command::firmware::Query), [](const Frame &report) {
                return command::FirmwareRecord::decode(report).has_value();
            });
        if (answer)
            said.firmware = command::FirmwareRecord::decode(*answer);
    }
    int reports = 0;
    time.restart();
    waitFor(link, QDeadlineTimer(1s), [&](const Frame &) { return ++reports >= ReportsToMeasure; });
    if (reports > 0)
        said.reportMs = int(time.elapsed() / reports);
    return said;
}

QList<Finding> checkAnswers(const Interview &said, bool troubleIsKnown)
{
    if (!said.whyNot.isEmpty()) {
        const Finding why = troubleIsKnown
                                ? Finding::notLooked(AnswerCheck, said.whyNot)
                                : Finding::trouble(AnswerCheck, said.cause,
                                                   {said.whyNot, AnswerWords::tr("Try again.")});
        const QString unasked = AnswerWords::tr("The frame could not be asked.");
        return {why, Finding::notLooked(RateCheck, unasked),
                Finding::notLooked(GenerationCheck, unasked)};
    }
    QList<Finding> findings;
    if (said.answered())
        findings += Finding::good(
            AnswerCheck, said.port.isEmpty()
                             ? AnswerWords::tr("It answers after %1 ms.").arg(said.answerMs)
                             : AnswerWords::tr("It answers at %1, after %2 ms.")
                                   .arg(said.port)
                                   .arg(said.answerMs));
    else if (said.serial)
        findings += Finding::trouble(
            AnswerCheck, Cause::NoAnswer,
            {AnswerWords::tr("No frame answers at %1.").arg(said.port),
             AnswerWords::tr("Check the cable, and look for the frame's rate with \"Find\" in the "
                             "window \"Connect\".")});
    else
        findings += Finding::trouble(
            AnswerCheck, Cause::NoAnswer,
            {AnswerWords::tr("The frame does not answer."),
             AnswerWords::tr("Unplug it, wait for ten seconds and plug it in again, at another USB "
                             "port if need be.")});

    if (said.serial)
        findings += Finding::good(
            RateCheck, AnswerWords::tr("The serial port is set to %1 baud.").arg(said.rate));
    else if (said.reportMs == 0)
        findings += Finding::trouble(
            RateCheck, Cause::NoAnswer,
            {AnswerWords::tr("The frame sends no reports."),
             AnswerWords::tr("Unplug it and plug it in again, without a hub between.")});
    else if (said.reportMs > SlowReportMs)
        findings += Finding::note(
            RateCheck,
            {AnswerWords::tr("A report takes %1 ms, where 67 are usual.").arg(said.reportMs),
             AnswerWords::tr("Plug the frame in without a hub, and see what else keeps "
                             "this machine busy.")});
    else
        findings +=
            Finding::good(RateCheck, AnswerWords::tr("A report takes %1 ms.").arg(said.reportMs));

    if (said.serial)
        findings += Finding::notLooked(GenerationCheck,
                                       AnswerWords::tr("A frame on a serial line does not say its "
                                                       "generation."));
    else if (!isCurrentGeneration(said.release))
        findings += Finding::good(GenerationCheck,
                                  AnswerWords::tr("It is of the older generation, which does not "
                                                  "say its firmware."));
    else if (said.firmware)
        findings +=
            Finding::good(GenerationCheck,
                          AnswerWords::tr("It is of the current generation, with the firmware %1.")
                              .arg(u"%1-%2"_s.arg(said.firmware->checksum, 8, 16, QChar(u'0'))
                                       .arg(said.firmware->revision, 6, 16, QChar(u'0'))
                                       .toUpper()));
    else
        findings += Finding::note(GenerationCheck,
                                  {AnswerWords::tr("It is of the current generation, but does not "
                                                   "say its firmware."),
                                   AnswerWords::tr("Plug it in again; a frame that stays so needs "
                                                   "its firmware anew.")});
    return findings;
}

} // namespace doctor
