#pragma once

class QLabel;
class QString;

// Shows words in a label, to assistive tools too; no words hide it.
void showNotice(QLabel *label, const QString &words);
