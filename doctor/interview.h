// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/link.h"
#include "device/records.h"
#include "finding.h"

#include <QString>

#include <chrono>
#include <optional>

namespace doctor {

// What a frame said when it was asked.
struct Interview
{
    // Why it was not asked, and what kind of trouble that is; empty and None when it was.
    QString whyNot;
    Finding::Cause cause = Finding::Cause::None;

    QString port; // node or serial port that carried the question
    bool serial = false;
    int rate = 0;        // of a serial line, in bits per second
    int answerMs = -1;   // until the answer; negative: none came in time
    int reportMs = 0;    // between two reports by USB; 0: none came, or fewer than two
    quint32 release = 0; // of a frame on USB, binary coded decimal
    std::optional<command::FirmwareRecord> firmware; // of a current generation

    bool answered() const { return answerMs >= 0; }
};

// Asks a linked frame for its rotation, which changes nothing and which every generation answers,
// and one of the current generation for its firmware. Runs the event loop, without input of the
// user, at most for patience and a second. rate: that an open serial port is set to.
Interview interview(Link &link, int rate, std::chrono::milliseconds patience);

// Three findings: whether it answers, how fast, and which generation it is of. That it could not be
// asked is trouble only if none is known that would keep it from being asked.
QList<Finding> checkAnswers(const Interview &interview, bool troubleIsKnown = false);

} // namespace doctor
