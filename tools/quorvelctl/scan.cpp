#include "scan.h"

#include "questions.h"
#include "session.h"
#include "words.h"

#include <algorithm>
#include <optional>

using namespace std::chrono_literals;

namespace ctl {

namespace {

constexpr int Attempts = 4;
// Behind that much silence a page is lost. The next page takes 70 ms, and longer over a slow hub.
constexpr auto PagePatience = 1500ms;
// A transfer that breaks in the middle leaves zeros from here on.
constexpr int TornFrom = FrameSize / 2 - command::scan::Levels;

static_assert(command::settings::AxisX == command::scan::AxisX &&
              command::settings::AxisY == command::scan::AxisY);

class Scan
{
public:
    Scan(Session &theSession, UCHAR theAxis, int theLights, bool hasPairs)
        : session(theSession)
        , axis(theAxis)
        , lights(size_t(theLights))
        , pairs(hasPairs)
    {
    }

    // False: a page is missing. All that came is in levels.
    bool run();

    Levels levels;
    bool mayBeTorn = false;

private:
    std::optional<command::ScanPage> pageOf(const Frame &frame) const;
    void take(const command::ScanPage &page);
    std::chrono::milliseconds patience() const
    {
        return std::min<std::chrono::milliseconds>(PagePatience, session.options.timeout);
    }

    Session &session;
    const UCHAR axis;
    const size_t lights;
    const bool pairs;
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
    take(*pageOf(first));
    QDeadlineTimer silence(patience());
    while (levels.levels.size() < lights) {
        session.output.progress(Words::tr("Scanning %1: %2 of %3 lights")
                                    .arg(axisName(axis))
                                    .arg(levels.levels.size())
                                    .arg(lights));
        const auto said = session.report(silence);
        if (!said)
            return false;
        const auto page = said->isNew ? pageOf(said->frame) : std::nullopt;
        if (!page)
            continue;
        // The question was asked twice, and a scan begins anew.
        if (page->first == 0)
            levels = {};
        const size_t before = levels.levels.size();
        if (page->first == int(before))
            take(*page);
        if (levels.levels.size() == before)
            return false;
        silence = QDeadlineTimer(patience());
    }
    session.output.progress({});
    return true;
}

void Scan::take(const command::ScanPage &page)
{
    const int bytes = page.size;
    if (bytes > TornFrom && std::all_of(page.bytes.begin() + TornFrom, page.bytes.begin() + bytes,
                                        [](UCHAR byte) { return byte == 0; }))
        mayBeTorn = true;
    for (int i = 0; i < (pairs ? bytes / 2 : bytes) && levels.levels.size() < lights; ++i) {
        levels.levels.push_back(pairs ? page.pairLevel(i) : page.level(i));
        if (pairs)
            levels.gains.push_back(page.pairGain(i));
    }
}

} // namespace

Levels scanAxis(Session &session, UCHAR axis, int lights, bool pairs)
{
    std::optional<Levels> doubtful;
    size_t most = 0;
    for (int attempt = 0; attempt < Attempts; ++attempt) {
        Scan scan(session, axis, lights, pairs);
        const bool isWhole = scan.run();
        most = std::max(most, scan.levels.levels.size());
        if (!isWhole)
            continue;
        // Half a page of dead lights is believed when it is there a second time.
        if (!scan.mayBeTorn || doubtful)
            return scan.levels;
        doubtful = scan.levels;
    }
    if (doubtful)
        return *doubtful;
    throw session.overdue(Words::tr("The scan of %1 stays incomplete: %2 of %3 lights came.")
                              .arg(axisName(axis))
                              .arg(most)
                              .arg(lights));
}

} // namespace ctl
