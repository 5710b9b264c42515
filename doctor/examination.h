// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "interview.h"
#include "machine.h"

#include <QJsonObject>
#include <QList>
#include <QStringList>

#include <optional>

namespace doctor {

// What a program knows, or is asked for, beyond what the machine shows.
struct Patient
{
    QString usbNode;      // that the frame is wanted at; empty for any
    QString serialPort;   // that the frame is wanted at; empty for a frame on USB
    QString settingsFile; // path
    std::optional<bool> hasTray;
};

// Everything that keeps a frame from working, looked at in the order in which it has to be there.
class Examination
{
public:
    // Looks at the machine, and at what the frame said.
    static Examination of(const Machine &machine, const Patient &patient, const Interview &said);

    const QList<Finding> &findings() const { return found; }
    // The one to begin with; nullptr when there is no trouble.
    const Finding *firstTrouble() const;

    // A line for each finding, and one for its next step.
    QStringList lines() const;
    // {"findings": [{"check", "verdict", "evidence", "next_step"}...], "first_trouble": check or
    // null, "cause": word or null}. All but evidence and next_step are words that never change.
    QJsonObject json() const;

private:
    QList<Finding> found;
};

// "good", "note", "trouble" or "not-looked"; "no-frame", "no-permission" and so on.
QString nameOf(Finding::Verdict verdict);
QString nameOf(Finding::Cause cause);

} // namespace doctor
