#include "notice.h"

#include <QAccessible>
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
    if (words.isEmpty())
        return;
    QAccessibleEvent alert(label, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}
