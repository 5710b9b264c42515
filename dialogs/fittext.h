#pragma once

class QLabel;

// Gives a label of one line its parent's font, made as much smaller as its text needs to fit into
// so many pixels and the label's height; not below 6 points, where the tool tip takes the whole
// text instead.
void fitText(QLabel *label, int width);
