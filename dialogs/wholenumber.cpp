// SPDX-License-Identifier: GPL-3.0-or-later

#include "wholenumber.h"

#include <QIntValidator>
#include <QLineEdit>
#include <QLocale>

std::optional<int> wholeNumber(const QString &text, int least, int most)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < least || number > most)
        return {};
    return number;
}

void takeWholeNumbers(QLineEdit *field, int least, int most)
{
    QLocale plain = QLocale::c();
    plain.setNumberOptions(QLocale::OmitGroupSeparator | QLocale::RejectGroupSeparator);
    auto *validator = new QIntValidator(least, most, field);
    validator->setLocale(plain);
    field->setValidator(validator);
}
