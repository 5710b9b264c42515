// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/records.h"
#include "profile.h"

#include <QPointF>
#include <QSizeF>

#include <array>
#include <chrono>
#include <deque>
#include <functional>
#include <optional>
#include <random>
#include <vector>

namespace sim {

using Clock = std::function<std::chrono::milliseconds()>;

// A calibration that the device keeps.
struct KeptCalibration
{
    command::CalibrationCheck screen; // what a serial line cut off is 0
    int deviationX = 0;               // percent of the screen's width, 0 to 127
    int deviationY = 0;

    bool operator==(const KeptCalibration &) const = default;
};

// What a device that nobody has set keeps its lights between.
inline constexpr command::AdcLines FirstAdcLines{.min = 3800,
                                                 .max = 4000,
                                                 .minEdge = 3000,
                                                 .maxEdge = 3200,
                                                 .threshold = 1000,
                                                 .edgeThreshold = 600};

struct LightState
{
    int offset = 0; // of the AGC, -128 to 127
    bool off = false;

    bool operator==(const LightState &) const = default;
};

// The controller's firmware: takes command frames and queues reply frames, touch by touch and
// call by call. The same profile and the same calls give the same bytes.
//
// What the device keeps through a reset and without power: a saved calibration, the rotation, the
// ADC settings, the lights' offsets and switches, the serial rate. All else starts anew: queued
// replies, the last report, a calibration in progress, the gestures, the layout of scan pages.
//
// No threads and no locks: its owner sees to that.
class Firmware
{
public:
    enum class Calibration {
        Idle,
        Offered, // told the host a step and waits for its echo
        Waiting, // waits for a touch
        Ended,   // told the host the deviations and waits for save or reset
    };

    Firmware(Profile profile, Clock clock);

    // Takes a command; bytes 1 to 63 matter. A command that is unknown or makes no sense changes
    // nothing and is counted. A link that cuts commands says how many bytes arrived; the rest is
    // zero. Whoever is not told the whole screen of a calibration goes by where the touches lie.
    void command(const Frame &frame, int arrived = FrameSize);
    // The input report: the next reply, or the last one again. Byte 0 is always the report id.
    Frame report();
    // A finger at a native pixel of the desktop.
    void touch(QPoint pixel);
    // What happens at a reset and when power comes back.
    void restart();
    // Queues a report as it stands: for replies that no real device gives.
    void say(const Frame &frame) { replies.push_back(frame); }

    const Profile &profile() const { return features; }
    bool hasReply() const { return !replies.empty(); }
    int queuedReplies() const { return int(replies.size()); }
    int unknownCommands() const { return unknown; }
    std::chrono::milliseconds uptime() const { return clock() - startedAt; }

    Calibration calibration() const { return state; }
    // The step that the device offered or waits at, 1 to 5; 0 while idle.
    int calibrationStep() const { return step; }
    bool calibrationKept() const { return saved.has_value(); }
    std::optional<KeptCalibration> keptCalibration() const { return saved; }

    std::optional<command::Gestures> gestures() const;
    command::AdcLines adcSettings() const;
    // The axis is command::settings::AxisX or AxisY, the number is 0-based and in range.
    LightState light(UCHAR axis, int number) const;
    // Where a finger of so many lights' width is felt, while no calibration runs; places are 0 to 1
    // of each axis. A light feels it by the part of its reading that the finger takes away, if that
    // is the ADC threshold (at the ends of an axis the edge's) at least; the finger is where, on
    // both axes, most is missing on average. Nothing where an axis feels nothing.
    std::optional<QPointF> feel(QPointF place, QSizeF width) const;
    int rotation() const;
    std::optional<int> baudCode() const;

private:
    struct Reading
    {
        int adc; // 12 bits
        int agc;
        int org; // 12 bits
    };

    bool execute(const Frame &request, int arrived);
    // Keeps a command that is well-formed and of this kind; false for any other.
    template <typename Record>
    bool keep(const Frame &request);
    // What was kept last, if anything.
    template <typename Record>
    std::optional<Record> kept() const;
    bool calibrate(const Frame &request, int arrived);
    bool check(const Frame &request, int arrived);
    bool obeyLight(const command::LightRequest &request);
    void sayFirmware();
    void sayAdc();
    void sayLight(const command::LightName &name);
    void sayCounts();
    void askForScan(UCHAR axis);
    void beginScanToCome();
    void sayScan(UCHAR axis);
    void sayCalibration(UCHAR sub);

    void answer(const std::vector<Frame> &pages);
    bool isWaiting(UCHAR cls, UCHAR sub) const;
    void dropReplies(UCHAR cls);
    int lights(UCHAR axis) const;
    Reading measure(UCHAR axis, int number);
    const OddLight &oddity(UCHAR axis, int number) const;
    int droop(UCHAR axis, int number) const;
    int steadyReading(UCHAR axis, int number) const;
    std::optional<double> feelAlong(UCHAR axis, double place, double width) const;

    Profile features;
    Clock clock;
    std::chrono::milliseconds startedAt;
    std::mt19937 generator;
    std::deque<Frame> replies;
    Frame last{};
    int unknown = 0;

    Calibration state = Calibration::Idle;
    int step = 0;
    std::array<QPoint, command::calibration::Targets> touches;
    KeptCalibration measured; // of the check that ended the calibration
    std::optional<KeptCalibration> saved;

    std::vector<Frame> keptCommands; // the last of each kind that sets something and no more
    std::vector<LightState> lightsX;
    std::vector<LightState> lightsY;
    bool pairs = false; // scan pages carry two bytes a light
    // Axes that are scanned again once their pages have been read; each stands here once.
    std::vector<UCHAR> scansToCome;
};

} // namespace sim
