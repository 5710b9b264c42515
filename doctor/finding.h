// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/advice.h"

#include <QString>

namespace doctor {

// What an examination found out about one thing that a frame needs to work.
struct Finding
{
    enum class Verdict {
        Good,
        Note,     // works, but somebody may want to know
        Trouble,  // keeps the frame from working
        NotLooked // and the evidence says why
    };
    // What kind of trouble: programs end with a code for each.
    enum class Cause { None, NoFrame, NoPermission, InUse, NoAnswer, Failed };

    QString check; // a word that never changes: "kernel", "node" and so on
    Verdict verdict = Verdict::Good;
    QString evidence; // what was seen, in whole sentences
    QString nextStep; // what helps; empty where nothing has to be done
    Cause cause = Cause::None;

    static Finding good(const QString &check, const QString &evidence)
    {
        return {check, Verdict::Good, evidence, {}, Cause::None};
    }
    static Finding note(const QString &check, const Advice &advice)
    {
        return {check, Verdict::Note, advice.evidence, advice.nextStep, Cause::None};
    }
    static Finding trouble(const QString &check, Cause cause, const Advice &advice)
    {
        return {check, Verdict::Trouble, advice.evidence, advice.nextStep, cause};
    }
    static Finding notLooked(const QString &check, const QString &why)
    {
        return {check, Verdict::NotLooked, why, {}, Cause::None};
    }

    Advice advice() const { return {evidence, nextStep}; }
    bool operator==(const Finding &) const = default;
};

} // namespace doctor
