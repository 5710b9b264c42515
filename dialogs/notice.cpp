// SPDX-License-Identifier: GPL-3.0-or-later

#include "notice.h"

#include "announce.h"

#include <QLabel>

void prepareNotice(QLabel *label)
{
    label->setBackgroundRole(QPalette::ToolTipBase);
    label->setForegroundRole(QPalette::ToolTipText);
    label->setAutoFillBackground(true);
    label->hide();
}

void showNotice(QLabel *label, const QString &words)
{
    if (label->text() == words)
        return;
    label->setText(words);
    label->setVisible(!words.isEmpty());
    announce(label, words);
}
