// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <optional>

class QLineEdit;

// Numbers that users type, read in one way whatever the locale: the digits 0 to 9, without groups,
// with a sign and blanks around if they like. Nothing for all else, and for what is out of range.
std::optional<int> wholeNumber(const QString &text, int least, int most);

// Lets nothing else be typed into a field.
void takeWholeNumbers(QLineEdit *field, int least, int most);
