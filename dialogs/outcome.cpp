#include "outcome.h"

#include "config/xml_class.h"
#include "fittext.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QLabel>

namespace outcome {

QString kept()
{
    return QCoreApplication::translate("outcome", "Kept.");
}

QString notKept()
{
    return QCoreApplication::translate("outcome", "Not kept: cannot write %1")
        .arg(XML_CLASS::filePath());
}

void show(QLabel *label, const QString &text)
{
    label->setText(text);
    label->setToolTip(QString());
    if (text.isEmpty())
        return;
    fitText(label, label->width());
    QAccessibleEvent told(label, QAccessible::Alert);
    QAccessible::updateAccessibility(&told);
}

} // namespace outcome
