// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace lights {
struct Report;
}

namespace ctl {

// Whether the name of a file says what kind of report it is to be: .html or .pdf.
bool canWriteReport(const QString &path);

// Writes it, whole or not at all. A page is printed as PDF by quorvel-print, a program of its own:
// this one would take several times its memory with what fonts need.
void writeReport(const QString &path, const lights::Report &report);

} // namespace ctl
