// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QLabel;
class QString;

// A label for words that come and go: hidden, and in the colours of the desktop's tool tips, which
// read on whatever the window draws below it.
void prepareNotice(QLabel *label);

// Shows words in such a label, to assistive tools too; no words hide it.
void showNotice(QLabel *label, const QString &words);
