// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "wrappedframe.h"

#include <QByteArray>

// A simulated frame that never gets commands that begin with certain bytes, and believes to be
// well.
class LossyFrame final : public WrappedFrame
{
public:
    LossyFrame(std::shared_ptr<sim::SimAdapter> theFrame, QByteArray theLost)
        : WrappedFrame(std::move(theFrame))
        , lost(std::move(theLost))
    {
    }

    bool SendReport(UCHAR reportId, UCHAR *buf) override
    {
        const QByteArray bytes(reinterpret_cast<const char *>(buf + 1), lost.size());
        return bytes != lost && frame->SendReport(reportId, buf);
    }

private:
    const QByteArray lost;
};
