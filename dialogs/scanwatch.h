// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/commands.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>

#include <array>
#include <optional>

class QString;

// What a window has asked the frame for and what of it has come.
//
// A scan comes in pages, a report each. A frame that is asked for another one meanwhile may drop
// the rest: asked early again and again it never says the whole. So whoever polls holds back while
// pages come. Questions go by the sub-command of their scan request: the counts, or an axis.
class ScanWatch
{
public:
    // How long the link takes to bring one report, with some room.
    static constexpr int ReportMs = 70;
    // After so many report times without a page of it, a scan has ended early.
    static constexpr int SilentReports = 3;
    static constexpr int PatienceMs = 2000;
    // How often a window looks whether patience is over.
    static constexpr int LookMs = 200;

    // At least 1: the answer to a question without one is waited for too.
    static int pagesOf(int lights, int lightsPerPage);

    // Pages: how many the answer will have, as far as that is known.
    void asked(UCHAR question, int pages = 1);
    void answered(UCHAR question);
    // A page, counted from 1; the last one is the answer.
    void pageCame(UCHAR axis, int page, int pages);
    void forget();

    // Pages of a scan come, and it is not at its end.
    bool isArriving() const;
    bool isWaiting() const;
    // How long whatever is asked now may take to get through behind what is still to come.
    int backlogMs() const;
    // In words, what has not come in time; nothing if all has.
    QString overdue() const;

private:
    struct Question
    {
        bool open = false;
        int pages = 1;
        int last = 0;     // page that came since it was asked, 0 for none
        int furthest = 0; // page that came since it was answered
        QDeadlineTimer due;
    };

    std::array<Question, 3> questions;
    QElapsedTimer sincePage;
};
