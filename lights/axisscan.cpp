// SPDX-License-Identifier: GPL-3.0-or-later

#include "axisscan.h"

#include <algorithm>

namespace lights {

namespace {

constexpr int TornFrom = FrameSize / 2 - command::scan::Levels;

} // namespace

AxisScan::Taken AxisScan::take(const command::ScanPage &page)
{
    if (page.first == 0) {
        levelsCame.clear();
        gainsCame.clear();
        torn = false;
    }
    const auto lights = size_t(all);
    const size_t before = levelsCame.size();
    if (page.first != int(before) || before == lights)
        return Taken::Gap;
    const int bytes = page.size;
    if (bytes > TornFrom && std::all_of(page.bytes.begin() + TornFrom, page.bytes.begin() + bytes,
                                        [](UCHAR byte) { return byte == 0; }))
        torn = true;
    for (int i = 0; i < (pairs ? bytes / 2 : bytes) && levelsCame.size() < lights; ++i) {
        levelsCame.push_back(pairs ? page.pairLevel(i) : page.level(i));
        if (pairs)
            gainsCame.push_back(page.pairGain(i));
    }
    if (levelsCame.size() == before)
        return Taken::Gap;
    return levelsCame.size() == lights ? Taken::Whole : Taken::More;
}

} // namespace lights
