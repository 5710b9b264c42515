// SPDX-License-Identifier: GPL-3.0-or-later

#include "measuring.h"

#include "judge.h"

#include <QTimerEvent>

#include <algorithm>

namespace lights {

namespace {

constexpr size_t MostAsked = 40;
constexpr int Attempts = 4;
// Behind so much silence a page is lost. The next page takes 70 ms, and longer over a slow hub.
constexpr int PatienceMs = 1500;
// A question takes 50 ms to get out, and the report before it may be read once more meanwhile.
constexpr int StaleMs = 150;

UCHAR numberOf(Axis axis)
{
    return axis == Axis::X ? command::settings::AxisX : command::settings::AxisY;
}

} // namespace

std::vector<command::LightName> lightsToAsk(const Measurement &measurement,
                                            const Thresholds &thresholds)
{
    const Verdicts verdicts = judge(measurement, thresholds);
    std::vector<command::LightName> names;
    for (const Axis axis : Axes) {
        const std::vector<Light> &lights = verdicts.axis(axis).lights;
        for (int i = 0; i < int(lights.size()) && names.size() < MostAsked; ++i) {
            if (lights[size_t(i)].verdict == LightVerdict::Dead)
                names.push_back({numberOf(axis), i});
        }
    }
    return names;
}

Measuring::Measuring(QObject *parent)
    : QObject(parent)
{
}

void Measuring::start(const Wish &theWish)
{
    wish = theWish;
    begin();
}

void Measuring::stop()
{
    step = Step::Idle;
    silence.stop();
}

void Measuring::linkBegan(Source theSource)
{
    linked = true;
    source = theSource;
    if (isRunning())
        begin();
}

void Measuring::linkEnded()
{
    linked = false;
    last.reset();
    silence.stop();
    if (isRunning())
        begin();
}

void Measuring::begin()
{
    collector = ScanCollector(wish.scans);
    counts = {};
    rounds = 0;
    dead.clear();
    asked.clear();
    doubtful = false;
    emit progressed(0, 0);
    go(!linked ? Step::Unlinked : source == Source::Usb ? Step::Firmware : Step::Settings);
}

void Measuring::go(Step next)
{
    step = next;
    attempts = 0;
    if (step != Step::Unlinked)
        send();
}

void Measuring::send()
{
    ++attempts;
    stale.setRemainingTime(StaleMs);
    silence.start(PatienceMs, this);
    scan = AxisScan(axis == command::scan::AxisX ? counts.x : counts.y, true);
    scanFrames.clear();
    const Frame frame = question();
    collector.sent(frame);
    emit ask(frame);
}

Frame Measuring::question() const
{
    using namespace command;
    switch (step) {
    case Step::Firmware:
        return request(Firmware, firmware::Query);
    case Step::Pages:
        return request(command::Scan, axis);
    case Step::OneLight:
        return LightRequest{.sub = settings::GetLight, .light = dead.back()}.encode();
    default:
        return request(Settings, settings::GetAdc);
    }
}

void Measuring::received(const Frame &report)
{
    const bool isOld = source != Source::Line && last == report && !stale.hasExpired();
    const bool isRepeated = last == report;
    last = report;
    if (step == Step::Idle || step == Step::Unlinked || isOld)
        return;
    // Somebody has chosen the other layout.
    if (command::LightCounts::decode(report) && step != Step::Firmware) {
        go(Step::Settings);
        return;
    }
    // By USB a page is read again until there is another.
    if (step == Step::Pages && isRepeated && !scanFrames.empty())
        return;
    take(report);
}

void Measuring::take(const Frame &report)
{
    if (step == Step::Firmware && command::FirmwareRecord::decode(report)) {
        collector.received(report);
        go(Step::Settings);
    } else if (const auto settings = command::AdcReport::decode(report);
               settings && settings->counts.arePossible() && step == Step::Settings) {
        collector.received(report);
        counts = settings->counts;
        if (counts.x == 0 && counts.y == 0) {
            stop();
            emit failed(tr("The touch frame says that it has no lights."));
            return;
        }
        axis = firstAxis();
        go(Step::Pages);
    } else if (const auto page = command::ScanPage::decode(report);
               page && step == Step::Pages && page->axis == axis) {
        scanFrames.push_back(report);
        takePage(*page);
    } else if (const auto light = command::LightReport::decode(report);
               light && step == Step::OneLight && light->light == dead.back()) {
        collector.received(report);
        asked.push_back(dead.back());
        dead.pop_back();
        askNextLight();
    }
}

void Measuring::takePage(const command::ScanPage &page)
{
    if (page.first == 0 && scanFrames.size() > 1)
        scanFrames.erase(scanFrames.begin(), scanFrames.end() - 1);
    switch (scan.take(page)) {
    case AxisScan::Taken::More:
        silence.start(PatienceMs, this);
        tellProgress(int(scanFrames.size()));
        break;
    case AxisScan::Taken::Whole:
        endScan();
        break;
    case AxisScan::Taken::Gap:
        // What was asked for before may still come; a first page begins anew.
        if (!scan.levels().empty())
            tryAgain();
        break;
    }
}

void Measuring::endScan()
{
    // Half a page of dead lights is believed when it is there a second time.
    if (scan.mayBeTorn() && !doubtful) {
        doubtful = true;
        send();
        return;
    }
    doubtful = false;
    for (const Frame &frame : scanFrames)
        collector.received(frame);
    date = QDateTime::currentDateTimeUtc();
    if (axis == command::scan::AxisX && counts.y > 0) {
        axis = command::scan::AxisY;
        tellProgress(0);
        go(Step::Pages);
    } else {
        endRound();
    }
}

void Measuring::endRound()
{
    ++rounds;
    axis = firstAxis();
    tellProgress(0);
    emit scanned();
    if (!isRunning()) // a receiver may have stopped it
        return;
    if (rounds < wish.scans) {
        go(Step::Pages);
        return;
    }
    for (const command::LightName &name : lightsToAsk(collector.measurement(), {})) {
        const bool isKnown = std::find(asked.begin(), asked.end(), name) != asked.end();
        if (!isKnown && asked.size() + dead.size() < MostAsked)
            dead.push_back(name);
    }
    askNextLight();
}

void Measuring::askNextLight()
{
    if (!dead.empty()) {
        go(Step::OneLight);
    } else if (wish.goesOn) {
        go(Step::Pages);
    } else {
        stop();
        emit finished();
    }
}

void Measuring::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == silence.timerId())
        tryAgain();
    else
        QObject::timerEvent(event);
}

void Measuring::tryAgain()
{
    if (attempts < Attempts) {
        send();
        return;
    }
    const bool isScan = step == Step::Pages && !scan.levels().empty();
    const bool isX = axis == command::scan::AxisX;
    const size_t came = scan.levels().size();
    stop();
    if (!isScan)
        emit failed(tr("No answer from the touch frame"));
    else
        emit failed((isX ? tr("The scan of X stays incomplete: %1 of %2 lights came.")
                         : tr("The scan of Y stays incomplete: %1 of %2 lights came."))
                        .arg(came)
                        .arg(scan.lights()));
}

void Measuring::tellProgress(int pagesOfScan)
{
    const int round = pages(command::scan::AxisX) + pages(command::scan::AxisY);
    const int before = axis == command::scan::AxisY ? pages(command::scan::AxisX) : 0;
    const int done = std::min(rounds, wish.scans) * round + before + pagesOfScan;
    emit progressed(std::min(done, wish.scans * round), wish.scans * round);
}

int Measuring::pages(UCHAR which) const
{
    const int lights = which == command::scan::AxisX ? counts.x : counts.y;
    return (lights + command::scan::PairsPerPage - 1) / command::scan::PairsPerPage;
}

UCHAR Measuring::firstAxis() const
{
    return counts.x > 0 ? command::scan::AxisX : command::scan::AxisY;
}

Measurement Measuring::measurement() const
{
    Measurement result = collector.measurement();
    result.date = date;
    return result;
}

} // namespace lights
