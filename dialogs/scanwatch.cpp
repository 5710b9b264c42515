// SPDX-License-Identifier: GPL-3.0-or-later

#include "scanwatch.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

static_assert(command::scan::Counts == 0 && command::scan::AxisX == 1 && command::scan::AxisY == 2);

} // namespace

int ScanWatch::pagesOf(int lights, int lightsPerPage)
{
    return std::max(1, (lights + lightsPerPage - 1) / lightsPerPage);
}

void ScanWatch::asked(UCHAR question, int pages)
{
    Question &one = questions.at(question);
    one.last = 0;
    if (one.open)
        return;
    const int backlog = backlogMs();
    one = {true, pages, 0, 0, QDeadlineTimer(PatienceMs + backlog)};
}

void ScanWatch::answered(UCHAR question)
{
    questions.at(question) = {};
}

void ScanWatch::pageCame(UCHAR axis, int page, int pages)
{
    Question &one = questions.at(axis);
    if (!one.open)
        return;
    sincePage.start();
    if (page >= pages) {
        answered(axis);
        return;
    }
    one.pages = pages;
    one.last = page;
    if (page > one.furthest) {
        one.furthest = page;
        one.due = std::max(one.due, QDeadlineTimer(PatienceMs));
    }
}

void ScanWatch::forget()
{
    questions = {};
}

bool ScanWatch::isArriving() const
{
    return sincePage.isValid() && sincePage.elapsed() < SilentReports * ReportMs &&
           std::any_of(questions.begin(), questions.end(),
                       [](const Question &one) { return one.open && one.last > 0; });
}

bool ScanWatch::isWaiting() const
{
    return std::any_of(questions.begin(), questions.end(),
                       [](const Question &one) { return one.open; });
}

int ScanWatch::backlogMs() const
{
    int pages = 0;
    for (const Question &one : questions)
        pages += one.open ? one.pages - one.last : 0;
    return pages * ReportMs;
}

QString ScanWatch::overdue() const
{
    QString words;
    for (const Question &one : questions) {
        if (!one.open || !one.due.hasExpired())
            continue;
        if (one.furthest == 0)
            return QCoreApplication::translate("ScanWatch", "No answer from the touch frame");
        words = QCoreApplication::translate("ScanWatch", "Scan incomplete: page %1 of %2")
                    .arg(one.furthest)
                    .arg(one.pages);
    }
    return words;
}
