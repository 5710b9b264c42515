// SPDX-License-Identifier: GPL-3.0-or-later

#include "examination.h"

#include "desktopchecks.h"
#include "serialchecks.h"
#include "settingscheck.h"
#include "usbchecks.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonValue>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace doctor {

namespace {

struct ExaminationWords
{
    Q_DECLARE_TR_FUNCTIONS(doctor::Examination)
};

QString label(Finding::Verdict verdict)
{
    switch (verdict) {
    case Finding::Verdict::Good:
        break;
    case Finding::Verdict::Note:
        return ExaminationWords::tr("note");
    case Finding::Verdict::Trouble:
        return ExaminationWords::tr("TROUBLE");
    case Finding::Verdict::NotLooked:
        return ExaminationWords::tr("not looked at");
    }
    return ExaminationWords::tr("good");
}

// What a frame on USB needs does not count where it is wanted on a serial line, nor where it works
// without, as in a container.
Finding asFarAsNeeded(const Finding &finding, const QString &serialPort, bool answers)
{
    if (finding.verdict != Finding::Verdict::Trouble || (serialPort.isEmpty() && !answers))
        return finding;
    return Finding::note(
        finding.check,
        {finding.evidence, serialPort.isEmpty()
                               ? ExaminationWords::tr("The frame answers all the same.")
                               : ExaminationWords::tr("The frame at the serial port %1 does not "
                                                      "need this.")
                                     .arg(serialPort)});
}

} // namespace

QString nameOf(Finding::Verdict verdict)
{
    switch (verdict) {
    case Finding::Verdict::Good:
        break;
    case Finding::Verdict::Note:
        return u"note"_s;
    case Finding::Verdict::Trouble:
        return u"trouble"_s;
    case Finding::Verdict::NotLooked:
        return u"not-looked"_s;
    }
    return u"good"_s;
}

QString nameOf(Finding::Cause cause)
{
    switch (cause) {
    case Finding::Cause::None:
        break;
    case Finding::Cause::NoFrame:
        return u"no-frame"_s;
    case Finding::Cause::NoPermission:
        return u"no-permission"_s;
    case Finding::Cause::InUse:
        return u"in-use"_s;
    case Finding::Cause::NoAnswer:
        return u"no-answer"_s;
    case Finding::Cause::Failed:
        return u"failed"_s;
    }
    return {};
}

Examination Examination::of(const Machine &machine, const Patient &patient, const Interview &said)
{
    QList<UsbFrame> frames = UsbFrame::allOf(machine);
    if (!patient.usbNode.isEmpty())
        frames.removeIf([&](const UsbFrame &frame) { return frame.node != patient.usbNode; });
    Examination examination;
    for (const Finding &finding :
         {checkKernel(machine), checkNode(machine, frames, patient.usbNode), checkIds(frames),
          checkPermission(machine, frames), checkProgram(machine, frames)})
        examination.found += asFarAsNeeded(finding, patient.serialPort, said.answered());
    examination.found += checkSerialPorts(machine, patient.serialPort);
    examination.found += checkAnswers(said, examination.firstTrouble() != nullptr);
    examination.found += checkSettings(patient.settingsFile);
    examination.found += checkTray(patient.hasTray);
    examination.found += checkDesktop(machine);
    return examination;
}

const Finding *Examination::firstTrouble() const
{
    const auto first = std::find_if(found.begin(), found.end(), [](const Finding &finding) {
        return finding.verdict == Finding::Verdict::Trouble;
    });
    return first == found.end() ? nullptr : &*first;
}

QStringList Examination::lines() const
{
    constexpr qsizetype CheckWidth = 12;
    constexpr qsizetype VerdictWidth = 15;
    const QString indent(CheckWidth + VerdictWidth, u' ');
    QStringList all;
    for (const Finding &finding : found) {
        all += finding.check.leftJustified(CheckWidth) +
               label(finding.verdict).leftJustified(VerdictWidth) + finding.evidence;
        if (!finding.nextStep.isEmpty())
            all += indent + finding.nextStep;
    }
    return all;
}

QJsonObject Examination::json() const
{
    QJsonArray findings;
    for (const Finding &finding : found)
        findings += QJsonObject{{u"check"_s, finding.check},
                                {u"verdict"_s, nameOf(finding.verdict)},
                                {u"evidence"_s, finding.evidence},
                                {u"next_step"_s, finding.nextStep}};
    const Finding *first = firstTrouble();
    return {{u"findings"_s, findings},
            {u"first_trouble"_s, first ? QJsonValue(first->check) : QJsonValue()},
            {u"cause"_s, first ? QJsonValue(nameOf(first->cause)) : QJsonValue()}};
}

} // namespace doctor
