// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QBasicTimer>
#include <QDialog>
#include <QRect>

// A dialog that covers a screen while it is shown. The window system's window stays behind a hidden
// one: the toolkit does not ask for the whole screen again for another in its place.
class WholeScreen : public QDialog
{
    Q_OBJECT
public:
    using QDialog::QDialog;

protected:
    // From the show event: covers a screen with this geometry, and takes the keyboard.
    void cover(const QRect &screen);
    void timerEvent(QTimerEvent *event) override;

private:
    bool isElsewhere() const;

    QRect covered;    // a screen's geometry
    QBasicTimer look; // whether the window manager did it
    int looksLeft = 0;
};
