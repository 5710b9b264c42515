// SPDX-License-Identifier: GPL-3.0-or-later

#include "session.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace sim {

namespace {

QString calibrationName(Firmware::Calibration state)
{
    switch (state) {
    case Firmware::Calibration::Idle:
        return u"idle"_s;
    case Firmware::Calibration::Offered:
        return u"offered"_s;
    case Firmware::Calibration::Waiting:
        return u"waiting"_s;
    case Firmware::Calibration::Ended:
        return u"ended"_s;
    }
    return {};
}

QString keptWords(const std::optional<KeptCalibration> &kept)
{
    if (!kept)
        return u"kept=0"_s;
    const command::CalibrationCheck &screen = kept->screen;
    return u"kept=1 kept-deviation=%1,%2 kept-screen=%3,%4,%5,%6,%7,%8"_s.arg(kept->deviationX)
        .arg(kept->deviationY)
        .arg(screen.x)
        .arg(screen.y)
        .arg(screen.width)
        .arg(screen.height)
        .arg(screen.desktopWidth)
        .arg(screen.desktopHeight);
}

QString gestureWords(const std::optional<command::Gestures> &gestures)
{
    if (!gestures)
        return u"gestures=none"_s;
    return u"gestures=%1,%2,%3,%4,%5,%6"_s.arg(gestures->allEnabled)
        .arg(gestures->rightButtonEnabled)
        .arg(gestures->rightButtonDuration)
        .arg(gestures->rightButtonRange)
        .arg(gestures->wheelEnabled)
        .arg(gestures->wheelSensitivity);
}

} // namespace

Session::Session(Profile profile, FaultPlan faults, const Clock &clock)
    : frame(std::move(profile), std::move(faults), clock, false)
    , log(clock)
{
    comeback.setSingleShot(true);
    comeback.setTimerType(Qt::PreciseTimer);
    connect(&comeback, &QTimer::timeout, this, &Session::comeBack);
}

QString Session::plug()
{
    comeback.stop();
    if (frame.plugged())
        return tr("it is plugged already");
    if (QString problem = attach(); !problem.isEmpty())
        return problem;
    frame.plug();
    note(u"plugged into "_s + place());
    return {};
}

bool Session::unplug()
{
    comeback.stop();
    release();
    if (!frame.unplug())
        return false;
    note(u"unplugged"_s);
    return true;
}

bool Session::touch(QPoint pixel)
{
    if (!frame.plugged() || frame.recording())
        return false;
    note(u"touch at %1,%2"_s.arg(pixel.x()).arg(pixel.y()));
    frame.firmware().touch(pixel);
    felt();
    return true;
}

QString Session::state() const
{
    const Firmware &firmware = frame.firmware();
    const std::optional<int> baud = firmware.baudCode();
    return u"plugged=%1 calibration=%2 step=%3 %4 rotation=%5 %6 baud=%7 unknown=%8 queued=%9"_s
               .arg(frame.plugged() ? 1 : 0)
               .arg(calibrationName(firmware.calibration()))
               .arg(firmware.calibrationStep())
               .arg(keptWords(firmware.keptCalibration()))
               .arg(firmware.rotation())
               .arg(gestureWords(firmware.gestures()), baud ? QString::number(*baud) : u"none"_s)
               .arg(firmware.unknownCommands())
               .arg(firmware.queuedReplies()) +
           u" transfers=%1 uptime-ms=%2"_s.arg(frame.transfers()).arg(firmware.uptime().count()) +
           (frame.recording() ? u' ' + frame.recording()->state() : QString());
}

void Session::note(const QString &words)
{
    emit logged(log.note(words));
}

void Session::pulled()
{
    release();
    note(u"unplugged"_s);
    waitForComeback();
}

void Session::lost(const QString &reason)
{
    release();
    frame.unplug();
    note(u"unplugged: "_s + reason);
}

void Session::waitForComeback()
{
    if (const auto wait = frame.untilBack())
        comeback.start(*wait);
}

void Session::comeBack()
{
    if (!frame.comeBack()) {
        waitForComeback();
        return;
    }
    if (const QString problem = attach(); !problem.isEmpty()) {
        frame.unplug();
        note(u"could not be plugged again: "_s + problem);
        return;
    }
    note(u"plugged into "_s + place());
}

} // namespace sim
