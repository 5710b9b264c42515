// SPDX-License-Identifier: GPL-3.0-or-later

#include "outcome.h"

#include "announce.h"
#include "config/xml_class.h"
#include "fittext.h"

#include <QCoreApplication>
#include <QDir>
#include <QLabel>

namespace outcome {

QString kept()
{
    return QCoreApplication::translate("outcome", "Kept.");
}

QString shortPath()
{
    QString path = XML_CLASS::filePath();
    if (path.startsWith(QDir::homePath() + u'/'))
        path.replace(0, QDir::homePath().size(), u'~');
    return path;
}

QString notKept()
{
    return QCoreApplication::translate("outcome", "Not kept: cannot write %1").arg(shortPath());
}

void show(QLabel *label, const QString &text)
{
    label->setText(text);
    label->setToolTip(QString());
    if (text.isEmpty())
        return;
    fitText(label, label->width());
    announce(label, text);
}

} // namespace outcome
