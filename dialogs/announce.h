// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QString;
class QWidget;

// Has a screen reader say words about a widget at once, wherever its user is in that window;
// nothing while the window is hidden. Neither what is shown nor where the keyboard is changes.
void announce(const QWidget *about, const QString &words);
