// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "capture/record.h"
#include "doctor/examination.h"
#include "ziparchive.h"

#include <QStringList>

#include <deque>

namespace bundle {

// What a program gives to a support file.
struct Sources
{
    const doctor::Machine *machine = nullptr; // not owned, like the next
    const doctor::Examination *examination = nullptr;
    QString program;                    // its name
    QString linked;                     // where the frame is linked; empty when none is
    QString settingsFile;               // path
    QStringList screens;                // a line for each; empty for a program without windows
    QByteArray recording;               // the last frames as a recording; empty when there are none
    std::deque<capture::Record> frames; // the same
};

// All files, the one that tells of the others first. What is made of text has neither names of
// persons nor of machines; frames have none.
QList<Entry> contentsOf(const Sources &sources);

} // namespace bundle
