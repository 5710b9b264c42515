// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

class QLabel;

// What became of the settings of a window that OK or Apply was to keep.
namespace outcome {

QString kept();
QString notKept();   // and why
QString shortPath(); // of the settings file, from the home on where it lies there

// Says so in a label that has no other use; nothing for an empty text. Screen readers are told.
void show(QLabel *label, const QString &text);

} // namespace outcome
