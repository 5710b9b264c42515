// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/struct.h"

#include <QCoreApplication>
#include <QString>

#include <optional>
#include <vector>

namespace sim {

// One light of a frame that is not like the others.
struct OddLight
{
    UCHAR axis = 0;                          // command::settings::AxisX or AxisY
    int number = 0;                          // 0-based
    std::optional<int> level = std::nullopt; // 0 to 255; 0: dead
    std::optional<int> noise = std::nullopt; // 0 to 255, as Profile's

    bool operator==(const OddLight &) const = default;
};

// What a frame does when it is asked for a scan while one of the same axis still waits to be read.
enum class EarlyRequest {
    Drops,    // drops the pages that wait and scans anew
    Finishes, // says them all, then scans anew, once however often it was asked meanwhile
};

// What one touch frame is like: everything that differs between frames is data. sim/profiles/
// holds examples; each says what its keys mean.
struct Profile
{
    Q_DECLARE_TR_FUNCTIONS(sim::Profile)

public:
    quint16 release = 0x3010; // binary coded decimal
    quint16 product = 0x0001;
    int lightsX = 96; // 1 to 500
    int lightsY = 54; // 1 to 350
    // The signal, in the units of a one-byte scan level: the middle of an axis lies at level, its
    // ends lower by curve, and each reading is off by up to noise either way.
    int level = 215; // 0 to 255
    int curve = 20;  // 0 to 255
    int noise = 2;   // 0 to 255
    quint32 seed = 1;
    std::vector<OddLight> oddLights;
    // What the firmware tells of itself.
    quint32 revision = 0x003812;   // 24 bits
    quint32 checksum = 0x5A17C0DE; // 32 bits
    quint32 date = 0x1605;         // 16 bits
    quint32 number = 0x01234;      // 20 bits
    UCHAR family = 0x21;
    // Quarter turns, 0 to 3.
    UCHAR rotation = 0;
    UCHAR defaultRotation = 0;
    EarlyRequest earlyRequest = EarlyRequest::Drops;

    // Reads lines of "key value", such as "lights-x 96" or "early-request finishes"; '#' starts a
    // comment. Returns nothing for a text that is wrong, and tells file, line and reason in
    // problem, for example "frame.profile:7: lights-x is 600: the largest frame has 500".
    static std::optional<Profile> parse(const QString &text, const QString &file, QString *problem);
    // The same for a file on disk; problem then begins with the path.
    static std::optional<Profile> load(const QString &path, QString *problem);
};

} // namespace sim
