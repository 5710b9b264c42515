// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/calend_dlg.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QLoggingCategory>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

static_assert(std::is_default_constructible_v<CalEnd_dlg>);

class TestCalEndDlg : public QObject
{
    Q_OBJECT

private:
    // Runs an action once the question is on the screen.
    static void whenAsked(CalEnd_dlg &question, const std::function<void()> &action)
    {
        auto *poll = new QTimer(&question);
        connect(poll, &QTimer::timeout, &question, [&question, poll, action] {
            if (!question.isVisible())
                return;
            poll->stop();
            action();
        });
        poll->start(10);
    }
    static QPushButton *yes(const CalEnd_dlg &question)
    {
        return question.findChild<QPushButton *>(u"pushButton"_s);
    }
    static QPushButton *no(const CalEnd_dlg &question)
    {
        return question.findChild<QPushButton *>(u"Nobtn"_s);
    }
    // Second by second, without waiting for the seconds.
    static void tick(CalEnd_dlg &question, int times)
    {
        for (int i = 0; i < times; ++i)
            QMetaObject::invokeMethod(&question, "ontimer");
    }

private slots:
    void the_form_is_as_drawn()
    {
        const CalEnd_dlg question(nullptr);
        QCOMPARE(question.windowTitle(), u"MalvoTools"_s);
        QCOMPARE(question.windowModality(), Qt::WindowModal); // the tray still answers
        QCOMPARE(question.minimumSize(), QSize(421, 106));
        QCOMPARE(question.maximumSize(), QSize(421, 106));
        QCOMPARE(question.font().family(), u"Tahoma"_s);
        const auto *accuracy = question.findChild<QLabel *>(u"L1_lab"_s);
        const auto *text = question.findChild<QLabel *>(u"label_2"_s);
        QCOMPARE(accuracy->geometry(), QRect(10, 10, 401, 20));
        QCOMPARE(accuracy->text(), u"_"_s);
        QCOMPARE(text->geometry(), QRect(10, 30, 401, 20));
        QCOMPARE(text->text(), u"Do you want to save the Calibration results ?"_s);
        QCOMPARE(text->alignment(), Qt::AlignCenter);
        QCOMPARE(yes(question)->geometry(), QRect(90, 60, 81, 31));
        QCOMPARE(yes(question)->text(), u"Yes"_s);
        QCOMPARE(no(question)->geometry(), QRect(250, 60, 81, 31));
        QCOMPARE(no(question)->text(), u"No = 10"_s);
    }

    void nothing_is_clipped()
    {
        CalEnd_dlg question(nullptr);
        const auto *text = question.findChild<QLabel *>(u"label_2"_s);
        QVERIFY(text->sizeHint().width() <= text->width());
        QVERIFY(text->fontMetrics().height() <= text->height());
        for (const QPushButton *button : {yes(question), no(question)})
            QVERIFY(button->fontMetrics().horizontalAdvance(button->text()) + 8 <= button->width());
    }

    void a_deviation_of_5_is_an_accuracy_of_95_and_6_is_an_error()
    {
        QCOMPARE(CalEnd_dlg::accuracyText(3), u"Calibration accuracy: 97%."_s);
        QCOMPARE(CalEnd_dlg::accuracyText(5), u"Calibration accuracy: 95%."_s);
        QCOMPARE(CalEnd_dlg::accuracyText(6),
                 u"Calibration error is too large.We recommend calibrate it again."_s);
    }

    void neither_accuracy_nor_error_is_shown_data()
    {
        QTest::addColumn<int>("deviation");
        QTest::newRow("good") << 5;
        QTest::newRow("bad") << 6;
    }
    void neither_accuracy_nor_error_is_shown()
    {
        QFETCH(const int, deviation);
        CalEnd_dlg question(nullptr);
        bool looked = false;
        whenAsked(question, [&] {
            QVERIFY(!question.findChild<QLabel *>(u"L1_lab"_s)->isVisible());
            for (const QLabel *label : question.findChildren<QLabel *>())
                QVERIFY(!label->text().contains(u"accuracy"_s) &&
                        !label->text().contains(u"error"_s));
            looked = true;
            question.reject();
        });
        QVERIFY(!question.CalEnd(deviation));
        QVERIFY(looked);
    }

    void whoever_looks_closer_learns_how_good_the_calibration_was_data()
    {
        QTest::addColumn<int>("deviation");
        QTest::addColumn<QString>("told");
        QTest::newRow("perfect") << 0 << u"Calibration accuracy: 100%."_s;
        QTest::newRow("good") << 3 << u"Calibration accuracy: 97%."_s;
        QTest::newRow("bad") << 20
                             << u"Calibration error is too large.We recommend calibrate it again. "
                                "The touches were 20% off."_s;
        QTest::newRow("worst") << 128
                               << u"Calibration error is too large.We recommend calibrate it "
                                  "again. The touches were 128% off."_s;
    }
    void whoever_looks_closer_learns_how_good_the_calibration_was()
    {
        QFETCH(const int, deviation);
        QFETCH(const QString, told);
        CalEnd_dlg question;
        whenAsked(question, [&] { question.reject(); });
        QVERIFY(!question.CalEnd(deviation));
        QCOMPARE(question.toolTip(), told);
        QCOMPARE(question.accessibleDescription(), told);
    }

    // Off unless it is asked for.
    void the_log_learns_it_too()
    {
        QLoggingCategory::setFilterRules(u"quorvel.calibration.info=true"_s);
        const auto asBefore = qScopeGuard([] { QLoggingCategory::setFilterRules({}); });
        QTest::ignoreMessage(QtInfoMsg, "Calibration accuracy: 97%.");
        CalEnd_dlg question;
        whenAsked(question, [&] { question.reject(); });
        QVERIFY(!question.CalEnd(3));
    }

    void yes_answers_true()
    {
        CalEnd_dlg question(nullptr);
        whenAsked(question, [&] { QTest::mouseClick(yes(question), Qt::LeftButton); });
        QVERIFY(question.CalEnd(0));
    }

    void no_answers_false()
    {
        CalEnd_dlg question(nullptr);
        whenAsked(question, [&] { QTest::mouseClick(no(question), Qt::LeftButton); });
        QVERIFY(!question.CalEnd(0));
    }

    void escape_answers_false()
    {
        CalEnd_dlg question(nullptr);
        whenAsked(question, [&] { QTest::keyClick(&question, Qt::Key_Escape); });
        QVERIFY(!question.CalEnd(0));
    }

    void the_button_counts_down_and_the_eleventh_tick_closes()
    {
        CalEnd_dlg question(nullptr);
        bool counted = false;
        whenAsked(question, [&] {
            for (int left = 9; left >= 0; --left) {
                tick(question, 1);
                QCOMPARE(no(question)->text(), u"No = %1"_s.arg(left));
                QVERIFY(question.isVisible());
            }
            tick(question, 1);
            QVERIFY(!question.isVisible());
            counted = true;
        });
        QVERIFY(!question.CalEnd(0));
        QVERIFY(counted);
    }

    void yes_while_the_button_shows_0_answers_true()
    {
        CalEnd_dlg question(nullptr);
        whenAsked(question, [&] {
            tick(question, 10);
            QCOMPARE(no(question)->text(), u"No = 0"_s);
            QTest::mouseClick(yes(question), Qt::LeftButton);
        });
        QVERIFY(question.CalEnd(0));
    }

    void without_input_it_closes_by_itself_after_eleven_seconds()
    {
        QElapsedTimer time;
        time.start();
        CalEnd_dlg question(nullptr);
        QVERIFY(!question.CalEnd(0));
        QVERIFY(time.elapsed() >= 10500);
        QVERIFY(time.elapsed() < 15000);
    }
};

QTEST_MAIN(TestCalEndDlg)
#include "tst_calend_dlg.moc"
