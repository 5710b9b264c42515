// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDialog>

class QRect;

// A dialog that covers a screen while it is shown.
//
// The picture of a whole screen is megabytes. A window that nobody sees does not keep its one: it
// goes with the window of the desktop's, and the next showing makes both anew.
class WholeScreen : public QDialog
{
    Q_OBJECT
public:
    using QDialog::QDialog;

protected:
    // From the show event: covers a screen with this geometry, and takes the keyboard.
    void cover(const QRect &screen);
    // From the hide event.
    void giveBack();
};
