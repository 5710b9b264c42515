// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

class QIODevice;

namespace paper {

// Prints a report, the page of HTML that lights::toHtml() makes, as PDF on A4, with its pictures as
// lines and its words as text. Needs a QGuiApplication, for the fonts. False, and the reason in
// problem, for what is no such page and what takes no bytes.
bool printPdf(const QByteArray &html, QIODevice &device, QString *problem);

} // namespace paper
