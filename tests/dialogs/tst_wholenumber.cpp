// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/wholenumber.h"

#include <QLineEdit>
#include <QLocale>
#include <QScopeGuard>
#include <QTest>
#include <QValidator>

using namespace Qt::StringLiterals;

class TestWholeNumber : public QObject
{
    Q_OBJECT

private slots:
    void a_number_within_its_range_is_read_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");
        QTest::newRow("the least") << u"-3"_s << -3;
        QTest::newRow("the largest") << u"120"_s << 120;
        QTest::newRow("zero") << u"0"_s << 0;
        QTest::newRow("a sign") << u"+7"_s << 7;
        QTest::newRow("zeros before it") << u"007"_s << 7;
    }
    void a_number_within_its_range_is_read()
    {
        QFETCH(const QString, text);
        QTEST(wholeNumber(text, -3, 120).value_or(-999), "number");
    }

    void anything_else_is_none_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text : {"", "-", "abc", "7a", "1.0", "1,0", "-4", "121", "99999999999"})
            QTest::newRow(text) << QString::fromLatin1(text);
        QTest::newRow("other digits") << u"\u0661\u0660"_s;
    }
    void anything_else_is_none()
    {
        QFETCH(const QString, text);
        QVERIFY(!wholeNumber(text, -3, 120));
    }

    void a_field_takes_what_may_become_such_a_number_in_every_locale()
    {
        const auto back = qScopeGuard([before = QLocale()] { QLocale::setDefault(before); });
        for (const QLocale &locale : {QLocale(QLocale::English, QLocale::UnitedStates),
                                      QLocale(QLocale::German, QLocale::Germany),
                                      QLocale(QLocale::Arabic, QLocale::Egypt)}) {
            QLocale::setDefault(locale);
            QLineEdit field;
            takeWholeNumbers(&field, -3, 1200);
            const auto isTaken = [&field](const QString &text) {
                field.clear();
                for (const QChar letter : text)
                    field.insert(letter);
                return field.text() == text;
            };
            for (const QString &text : {u"1200"_s, u"0"_s, u"-3"_s}) {
                QVERIFY2(isTaken(text), qPrintable(text));
                QVERIFY2(field.hasAcceptableInput(), qPrintable(text));
            }
            for (const QString &text :
                 {u"1,200"_s, u"1.200"_s, u"1x"_s, u"-10"_s, u"\u0661"_s, u"12000"_s})
                QVERIFY2(!isTaken(text) || !field.hasAcceptableInput(), qPrintable(text));
        }
    }
};

QTEST_MAIN(TestWholeNumber)
#include "tst_wholenumber.moc"
