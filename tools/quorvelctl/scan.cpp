// SPDX-License-Identifier: GPL-3.0-or-later

#include "scan.h"

#include "questions.h"
#include "session.h"
#include "words.h"

#include "lights/axisscan.h"

#include <algorithm>
#include <optional>

using namespace std::chrono_literals;

namespace ctl {

namespace {

constexpr int Attempts = 4;
// Behind that much silence a page is lost. The next page takes 70 ms, and longer over a slow hub.
constexpr auto PagePatience = 1500ms;

static_assert(command::settings::AxisX == command::scan::AxisX &&
              command::settings::AxisY == command::scan::AxisY);

class Scan
{
public:
    Scan(Session &theSession, UCHAR theAxis, int theLights, bool hasPairs)
        : session(theSession)
        , axis(theAxis)
        , scan(theLights, hasPairs)
    {
    }

    // False: a page is missing.
    bool run();
    // All that came.
    const lights::AxisScan &result() const { return scan; }

private:
    std::optional<command::ScanPage> pageOf(const Frame &frame) const;
    std::chrono::milliseconds patience() const
    {
        return std::min<std::chrono::milliseconds>(PagePatience, session.options.timeout);
    }

    Session &session;
    const UCHAR axis;
    lights::AxisScan scan;
};

std::optional<command::ScanPage> Scan::pageOf(const Frame &frame) const
{
    auto page = command::ScanPage::decode(frame);
    return page && page->axis == axis ? page : std::nullopt;
}

bool Scan::run()
{
    const Frame request = command::request(command::Scan, axis);
    const Frame first = session.ask(request, [this](const Frame &report) {
        const auto page = pageOf(report);
        return page && page->first == 0;
    });
    lights::AxisScan::Taken taken = scan.take(*pageOf(first));
    QDeadlineTimer silence(patience());
    while (taken == lights::AxisScan::Taken::More) {
        session.output.progress(Words::tr("Scanning %1: %2 of %3 lights")
                                    .arg(axisName(axis))
                                    .arg(scan.levels().size())
                                    .arg(scan.lights()));
        const auto said = session.report(silence);
        if (!said)
            return false;
        // A first page comes again where the question was asked twice.
        if (const auto page = said->isNew ? pageOf(said->frame) : std::nullopt) {
            taken = scan.take(*page);
            silence = QDeadlineTimer(patience());
        }
    }
    session.output.progress({});
    return taken == lights::AxisScan::Taken::Whole;
}

} // namespace

Levels scanAxis(Session &session, UCHAR axis, int count, bool pairs)
{
    std::optional<Levels> doubtful;
    size_t most = 0;
    for (int attempt = 0; attempt < Attempts; ++attempt) {
        Scan scan(session, axis, count, pairs);
        const bool isWhole = scan.run();
        const lights::AxisScan &came = scan.result();
        most = std::max(most, came.levels().size());
        if (!isWhole)
            continue;
        // Half a page of dead lights is believed when it is there a second time.
        Levels levels{came.levels(), came.gains()};
        if (!came.mayBeTorn() || doubtful)
            return levels;
        doubtful = levels;
    }
    if (doubtful)
        return *doubtful;
    throw session.overdue(Words::tr("The scan of %1 stays incomplete: %2 of %3 lights came.")
                              .arg(axisName(axis))
                              .arg(most)
                              .arg(count));
}

} // namespace ctl
