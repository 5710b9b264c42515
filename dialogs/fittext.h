// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QLabel;
class QWidget;

// Gives a label of one line its parent's font, made as much smaller as its text needs to fit into
// so many pixels and the label's height; not below 6 points, where the tool tip takes the whole
// text instead.
void fitText(QLabel *label, int width);

// Makes the font of each button of a window as much smaller as its text needs to fit into it; not
// below 6 points. Where the words of a language are short enough nothing changes.
void fitButtons(const QWidget *window);
