// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/pacing.h"
#include "wrappedframe.h"

// A simulated frame that is read at a steady pace: a real one's is three times slower, and without
// any there are a hundred reads between two commands.
class SteadyFrame final : public WrappedFrame
{
public:
    using WrappedFrame::WrappedFrame;

    int ReadReport(UCHAR reportId, UCHAR *buf) override
    {
        const int result = frame->ReadReport(reportId, buf);
        Pacer().sleep(std::chrono::milliseconds(20));
        return result;
    }
};
