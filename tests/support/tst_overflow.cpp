// SPDX-License-Identifier: GPL-3.0-or-later

#include "overflow.h"

#include <QDialog>
#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

// A dialog in which all texts fit, until one gets longer.
class TestOverflow : public QObject
{
    Q_OBJECT

private:
    QDialog window;
    QPushButton button{&window};
    QLabel label{&window};
    QLineEdit field{&window};

private slots:
    void initTestCase()
    {
        window.setObjectName(u"window"_s);
        button.setObjectName(u"button"_s);
        button.setGeometry(10, 10, 80, 28);
        label.setObjectName(u"label"_s);
        label.setGeometry(10, 50, 300, 22);
        field.setGeometry(120, 50, 60, 22);
    }
    void init()
    {
        button.setText(u"OK"_s);
        label.setText(u"Limit:"_s);
    }

    void what_fits_is_not_named() { QCOMPARE(overflow::texts(window), QStringList()); }

    void a_text_that_is_longer_than_its_button_is_named()
    {
        button.setText(u"A text that is longer than a button of this size takes"_s);
        QCOMPARE(overflow::texts(window).size(), 1);
        QVERIFY(overflow::texts(window).first().startsWith(u"window/button: \"A text that"_s));
    }

    void a_text_that_runs_below_a_field_is_named()
    {
        label.setText(u"A limit that runs below its field:"_s);
        QVERIFY(label.sizeHint().width() <= label.width());
        QCOMPARE(overflow::texts(window).size(), 1);
        QVERIFY(overflow::texts(window).first().startsWith(u"window/label: \"A limit that"_s));
    }
};

QTEST_MAIN(TestOverflow)
#include "tst_overflow.moc"
