// SPDX-License-Identifier: GPL-3.0-or-later

#include "calibrationsteps.h"

#include "records.h"

#include <cstdlib>

namespace cal = command::calibration;

std::array<QPoint, cal::Targets> CalibrationScreen::targets() const
{
    const int left = screen.width() / 8;
    const int right = screen.width() / 8 * 7;
    const int top = screen.height() / 8;
    const int bottom = screen.height() / 8 * 7;
    return {QPoint(left, top), QPoint(right, top), QPoint(right, bottom), QPoint(left, bottom)};
}

void CalibrationSteps::begin()
{
    taken = cal::Begin;
    shown = 0;
    deviates = 0;
    await(cal::Step1);
}

void CalibrationSteps::forget()
{
    news.forget();
}

void CalibrationSteps::await(UCHAR step)
{
    news.forget();
    news.ask({command::Calibration, step});
}

CalibrationSteps::Event CalibrationSteps::take(const Frame &report)
{
    const bool awaited = news.take(report) == ReportNews::News::Answer;
    const auto reply = command::CalibrationStep::decode(report);
    if (!reply || !awaited)
        return Event::Nothing;
    taken = reply->step;
    switch (taken) {
    case cal::Step1:
    case cal::Step2:
    case cal::Step3:
    case cal::Step4:
        shown = taken - cal::Step1;
        await(UCHAR(taken + 1));
        return Event::Target;
    case cal::Check:
        await(cal::End);
        return Event::Checking;
    default:
        if (const auto end = command::CalibrationEnd::decode(report))
            deviates = (std::abs(end->deviationX) + std::abs(end->deviationY)) / 2;
        return Event::Ended;
    }
}

Frame CalibrationSteps::beginFrame()
{
    return command::CalibrationStep{cal::Begin}.encode();
}

Frame CalibrationSteps::saveFrame()
{
    return command::CalibrationStep{cal::Save}.encode();
}

Frame CalibrationSteps::resetFrame()
{
    return command::CalibrationStep{cal::Reset}.encode();
}

Frame CalibrationSteps::echoFrame(int step, const CalibrationScreen &screen)
{
    if (step != cal::Check)
        return command::CalibrationStep{UCHAR(step)}.encode();
    return command::CalibrationCheck{.x = screen.screen.x(),
                                     .y = screen.screen.y(),
                                     .width = screen.screen.width(),
                                     .height = screen.screen.height(),
                                     .desktopWidth = screen.desktop.width(),
                                     .desktopHeight = screen.desktop.height()}
        .encode();
}
