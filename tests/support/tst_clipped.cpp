// SPDX-License-Identifier: GPL-3.0-or-later

#include "clipped.h"

#include <QDialog>
#include <QTest>

using namespace Qt::StringLiterals;

// A dialog in which all texts fit, and widgets that get smaller or move.
class TestClipped : public QObject
{
    Q_OBJECT

private slots:
    void what_fits_is_not_named()
    {
        const Form form;
        QCOMPARE(clipped(form), QStringList());
    }

    void what_does_not_fit_is_named_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QRect>("shrunk");
        QTest::newRow("label too narrow") << u"label"_s << QRect(10, 10, 20, 30);
        QTest::newRow("label too low") << u"label"_s << QRect(10, 10, 400, 6);
        QTest::newRow("wrapped label too low") << u"wrapped"_s << QRect(10, 50, 200, 15);
        QTest::newRow("wrapped label too narrow") << u"wrapped"_s << QRect(10, 50, 30, 90);
        QTest::newRow("button too narrow") << u"button"_s << QRect(10, 150, 30, 40);
        QTest::newRow("button too low") << u"button"_s << QRect(10, 150, 200, 8);
        QTest::newRow("check box too narrow") << u"checkBox"_s << QRect(10, 200, 40, 30);
        QTest::newRow("check box too low") << u"checkBox"_s << QRect(10, 200, 400, 6);
        QTest::newRow("group too narrow") << u"group"_s << QRect(10, 240, 20, 50);
        QTest::newRow("outside") << u"button"_s << QRect(350, 150, 200, 40);
    }
    void what_does_not_fit_is_named()
    {
        QFETCH(const QString, name);
        QFETCH(const QRect, shrunk);
        const Form form;
        form.findChild<QWidget *>(name)->setGeometry(shrunk);
        QCOMPARE(clipped(form), QStringList(name));
    }

    void widgets_that_overlap_are_named()
    {
        const Form form;
        form.findChild<QPushButton *>()->move(10, 180);
        QCOMPARE(clipped(form), QStringList({u"button"_s, u"checkBox"_s}));
    }

private:
    struct Form : QDialog
    {
        Form()
        {
            resize(420, 300);
            add(new QLabel(u"Words of some length"_s, this), u"label"_s, {10, 10, 400, 30});
            auto *wrapped = new QLabel(u"Words that take two lines of a narrow label"_s, this);
            wrapped->setWordWrap(true);
            add(wrapped, u"wrapped"_s, {10, 50, 200, 90});
            add(new QPushButton(u"Percussion"_s, this), u"button"_s, {10, 150, 200, 40});
            add(new QCheckBox(u"Enable something"_s, this), u"checkBox"_s, {10, 200, 400, 30});
            add(new QGroupBox(u"Environment"_s, this), u"group"_s, {10, 240, 400, 50});
        }

    private:
        static void add(QWidget *widget, const QString &name, QRect place)
        {
            widget->setObjectName(name);
            widget->setGeometry(place);
        }
    };
};

QTEST_MAIN(TestClipped)
#include "tst_clipped.moc"
