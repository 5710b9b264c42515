// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "wrappedframe.h"

#include <algorithm>
#include <optional>

// A simulated frame whose first answer of a kind comes as something else of that kind.
class NoisyFrame final : public WrappedFrame
{
public:
    NoisyFrame(std::shared_ptr<sim::SimAdapter> theFrame, const Frame &theNoise)
        : WrappedFrame(std::move(theFrame))
        , noise(theNoise)
    {
    }

    int ReadReport(UCHAR reportId, UCHAR *buf) override
    {
        constexpr int KindEnd = 3;
        const int result = frame->ReadReport(reportId, buf);
        if (noise && std::equal(noise->begin(), noise->begin() + KindEnd, buf)) {
            std::copy(noise->begin(), noise->end(), buf);
            noise.reset();
        }
        return result;
    }

private:
    std::optional<Frame> noise; // the reader's thread only
};
