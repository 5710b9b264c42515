// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/fittext.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr int Edges = 8; // pixels beside the words of a button, both sides together

} // namespace

class TestFitText : public QObject
{
    Q_OBJECT

private:
    QWidget window;
    QPushButton *button = nullptr;
    QLabel *label = nullptr;

    // A button as wide as its words at a size of 12 points, and so many pixels more.
    int pointsWith(int more)
    {
        QFont font = button->font();
        font.setPointSize(12);
        button->setFont(font);
        button->setFixedWidth(
            button->fontMetrics().size(Qt::TextShowMnemonic, button->text()).width() + more);
        fitButtons(&window);
        return button->font().pointSize();
    }

private slots:
    void initTestCase()
    {
        button = new QPushButton(u"&Calibration of it all"_s, &window);
        label = new QLabel(u"No touch frame is linked"_s, &window);
    }

    void words_that_fit_stay_as_they_are()
    {
        QCOMPARE(pointsWith(Edges), 12);
        QCOMPARE(pointsWith(Edges + 100), 12);
    }

    void words_that_would_touch_the_edges_of_a_button_are_smaller()
    {
        QCOMPARE(pointsWith(Edges - 1), 11);
        QVERIFY(pointsWith(-60) < 11);
    }

    void no_words_are_smaller_than_six_points()
    {
        button->setFixedWidth(1);
        fitButtons(&window);
        QCOMPARE(button->font().pointSize(), 6);
        fitText(label, 1);
        QCOMPARE(label->font().pointSize(), 6);
        QCOMPARE(label->toolTip(), label->text());
    }

    void a_label_has_its_parents_letters_where_it_has_room()
    {
        const int usual = window.font().pointSize();
        label->resize(400, 100);
        label->setFont(window.font());
        const int wide = label->sizeHint().width();
        fitText(label, wide);
        QCOMPARE(label->font().pointSize(), usual);
        QCOMPARE(label->toolTip(), QString());
        fitText(label, wide - 1);
        QCOMPARE(label->font().pointSize(), usual - 1);
        QCOMPARE(label->toolTip(), QString());
        label->resize(400, label->sizeHint().height() - 1);
        fitText(label, wide);
        QVERIFY(label->font().pointSize() < usual - 1);
    }
};

QTEST_MAIN(TestFitText)
#include "tst_fittext.moc"
