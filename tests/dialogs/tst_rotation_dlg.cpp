// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/rotation_dlg.h"
#include "tests/support/settled.h"
#include "tests/support/widgets.h"

#include <QElapsedTimer>
#include <QGroupBox>
#include <QLabel>
#include <QLocale>
#include <QMetaMethod>
#include <QPushButton>
#include <QShowEvent>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

static_assert(std::is_default_constructible_v<Rotation_dlg>);

namespace {

const QByteArray Rest("\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
                      "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0",
                      58);

// Six bytes typed by hand, and 58 zeros behind them.
QByteArray frame(const char *begin)
{
    return QByteArray::fromHex(begin) + Rest;
}

const QByteArray Query = frame("00 A7 02 00 00 00");
const QByteArray DefaultIs0 = frame("FC A7 81 02 00 00");
const QByteArray CurrentIs0 = frame("FC A7 82 02 00 00");
const QByteArray CurrentIs90 = frame("FC A7 82 02 00 01");
const QByteArray FirmwareReply = frame("FC A3 80 0E 00 02");

} // namespace

class TestRotationDlg : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Rotation_dlg> dialog;
    QList<QByteArray> sent;

    QLabel *shown() const { return in<QLabel>(dialog, "Rotationlab"); }
    void receive(QByteArray report) const
    {
        QCOMPARE(report.size(), 64);
        dialog->DoRecv03(reinterpret_cast<UCHAR *>(report.data()));
    }
    // What the hint says of the time, and that it says nothing else.
    QTime silentSince() const
    {
        const QString begin = u"The touch frame has not answered since "_s;
        const QString hint = shown()->toolTip();
        if (!hint.startsWith(begin) || !hint.endsWith(u'.') ||
            hint != shown()->accessibleDescription())
            return {};
        return QLocale().toTime(hint.sliced(begin.size()).chopped(1), u"HH:mm:ss"_s);
    }
    bool hinted() const { return silentSince().isValid(); }
    bool hintless() const
    {
        return shown()->toolTip().isEmpty() && shown()->accessibleDescription().isEmpty();
    }

    // As a user's hand on a window that is busy: events that wait for it.
    void pressDuringThePause(const char *name) const
    {
        auto *button = in(dialog, name);
        const QPointF at = button->rect().center();
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
            QCoreApplication::postEvent(
                button,
                new QMouseEvent(type, at, button->mapToGlobal(at), Qt::LeftButton,
                                type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                                Qt::NoModifier));
    }

private slots:
    void init()
    {
        dialog = std::make_unique<Rotation_dlg>(nullptr);
        sent.clear();
        connect(dialog.get(), &Rotation_dlg::Write03, this, [this](const UCHAR *buf) {
            sent.append(QByteArray(reinterpret_cast<const char *>(buf), 64));
        });
    }
    void cleanup() { dialog.reset(); }

    void the_window_is_a_drawer_of_fixed_size()
    {
        QCOMPARE(dialog->objectName(), u"Rotation_dlg"_s);
        QCOMPARE(dialog->windowTitle(), u"Quorvel"_s);
        QCOMPARE(dialog->minimumSize(), QSize(332, 166));
        QCOMPARE(dialog->maximumSize(), QSize(332, 166));
        QCOMPARE(dialog->font().pointSize(), 8);
        QCOMPARE(int(dialog->windowType()), 7);
        QVERIFY(!dialog->isVisible());
    }

    void the_form_is_as_drawn_data()
    {
        QTest::addColumn<QRect>("geometry");
        QTest::addColumn<QString>("text");
        QTest::newRow("groupBox_4") << QRect(10, 10, 311, 118) << u"Rotation"_s;
        QTest::newRow("label_6") << QRect(30, 20, 281, 20) << u"Your current rotation is:"_s;
        QTest::newRow("rotation0btn") << QRect(20, 50, 61, 51) << u"0"_s;
        QTest::newRow("rotation90btn") << QRect(90, 50, 61, 51) << u"90"_s;
        QTest::newRow("rotation180btn") << QRect(160, 50, 61, 51) << u"180"_s;
        QTest::newRow("rotation270btn") << QRect(230, 50, 61, 51) << u"270"_s;
        QTest::newRow("Rotationlab") << QRect(160, 20, 71, 20) << u"-1"_s;
        QTest::newRow("okbtn") << QRect(210, 130, 85, 27) << u"OK"_s;
    }
    void the_form_is_as_drawn()
    {
        QFETCH(const QRect, geometry);
        QFETCH(const QString, text);
        const auto *widget = in<QWidget>(dialog, QTest::currentDataTag());
        QCOMPARE(widget->geometry(), geometry);
        const auto *group = qobject_cast<const QGroupBox *>(widget);
        QCOMPARE(group ? group->title() : widget->property("text").toString(), text);
        QCOMPARE(widget->font().family(), u"Tahoma"_s);
    }

    void the_rotation_stands_in_blue_of_8_points()
    {
        QCOMPARE(shown()->styleSheet(), u"color: rgb(0, 0, 255);"_s);
        QCOMPARE(shown()->font().pointSize(), 8);
        shown()->ensurePolished();
        QCOMPARE(shown()->palette().color(QPalette::WindowText), QColor(0, 0, 255));
    }

    void the_text_ends_before_the_rotation_begins()
    {
        dialog->show();
        const auto *text = in<QLabel>(dialog, "label_6");
        QVERIFY(text->x() + text->sizeHint().width() <= shown()->x());
        QVERIFY(text->sizeHint().height() <= text->height());
        QVERIFY(text->font().pointSize() <= 8);
        QVERIFY(text->font().pointSize() >= 6);
    }

    void nothing_is_clipped()
    {
        for (const int code : {0, 1, 2, 3, 4}) {
            QByteArray report = frame("FC A7 82 02 00 00");
            report[5] = char(code);
            receive(report);
            QVERIFY(shown()->sizeHint().width() <= shown()->width());
            QVERIFY(shown()->sizeHint().height() <= shown()->height());
        }
        const QList<QPushButton *> buttons = dialog->findChildren<QPushButton *>();
        QCOMPARE(buttons.size(), 5);
        for (const QPushButton *button : buttons) {
            QVERIFY(button->fontMetrics().horizontalAdvance(button->text()) + 8 <= button->width());
            QVERIFY(button->fontMetrics().height() + 6 <= button->height());
        }
    }

    void everything_is_reachable_by_keyboard_and_named()
    {
        dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
        QStringList reached;
        for (int i = 0; i < 5; ++i) {
            reached.append(QApplication::focusWidget()->objectName());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(reached, QStringList({u"okbtn"_s, u"rotation0btn"_s, u"rotation90btn"_s,
                                       u"rotation180btn"_s, u"rotation270btn"_s}));
        QCOMPARE(in(dialog, "rotation90btn")->accessibleName(), u"90 degrees"_s);
    }

    void a_key_pressed_right_after_the_showing_turns_nothing()
    {
        dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QCOMPARE(sent, {Query});
        QVERIFY(!dialog->isVisible());
    }

    // What is sent

    void a_button_sets_its_rotation_and_asks_for_it_data()
    {
        QTest::addColumn<QByteArray>("set");
        QTest::newRow("rotation0btn")
            << QByteArray::fromHex("00 A7 00 02 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                                   "00 00 00 00 00 00 00 00 "
                                   "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                                   "00 00 00 00 00 00 00 00 "
                                   "00 00 00 00 00 00");
        QTest::newRow("rotation90btn")
            << QByteArray::fromHex("00 A7 00 02 00 01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                                   "00 00 00 00 00 00 00 00 "
                                   "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                                   "00 00 00 00 00 00 00 00 "
                                   "00 00 00 00 00 00");
        QTest::newRow("rotation180btn")
            << QByteArray::fromHex("00 A7 00 02 00 02 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                                   "00 00 00 00 00 00 00 00 "
                                   "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                                   "00 00 00 00 00 00 00 00 "
                                   "00 00 00 00 00 00");
        QTest::newRow("rotation270btn")
            << QByteArray::fromHex("00 A7 00 02 00 03 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                                   "00 00 00 00 00 00 00 00 "
                                   "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                                   "00 00 00 00 00 00 00 00 "
                                   "00 00 00 00 00 00");
    }
    void a_button_sets_its_rotation_and_asks_for_it()
    {
        QFETCH(const QByteArray, set);
        QCOMPARE(set.size(), 64);
        press(dialog, QTest::currentDataTag());
        QCOMPARE(sent, QList<QByteArray>({set, Query}));
        // Not what was sent is shown, but what the frame says.
        QCOMPARE(shown()->text(), u"-1"_s);
    }

    void the_question_is_a7_02_and_zeros()
    {
        dialog->getCurrentRotation();
        QCOMPARE(
            sent,
            {QByteArray::fromHex(
                "00 A7 02 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                "00 00 00 00 00 00 00 00 00 00 00 00")});
    }

    void a_question_gives_the_frame_a_second_to_answer()
    {
        QElapsedTimer time;
        time.start();
        dialog->getCurrentRotation();
        QVERIFY(time.elapsed() >= 999);
    }

    void every_showing_asks()
    {
        dialog->show();
        QCOMPARE(sent, {Query});
        dialog->hide();
        dialog->show();
        QCOMPARE(sent, QList<QByteArray>({Query, Query}));
    }

    void coming_back_from_another_workspace_asks_nothing()
    {
        dialog->show();
        QShowEvent back;
        QSpontaneKeyEvent::setSpontaneous(&back);
        QVERIFY(qApp->notify(dialog.get(), &back));
        QCOMPARE(sent, {Query});
    }

    void constructing_and_receiving_send_nothing()
    {
        receive(DefaultIs0);
        receive(CurrentIs0);
        QVERIFY(sent.isEmpty());
    }

    void ok_closes()
    {
        dialog->show();
        press(dialog, "okbtn");
        QVERIFY(!dialog->isVisible());
        QCOMPARE(sent, {Query});
    }

    void presses_during_the_pause_are_dropped()
    {
        dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
        QTRY_VERIFY(isSettled(dialog.get()));
        sent.clear();
        // The query is out, the pause begins.
        connect(dialog.get(), &Rotation_dlg::Write03, this, [this] {
            if (sent.size() != 2)
                return;
            for (const char *name :
                 {"rotation180btn", "rotation270btn", "rotation0btn", "rotation270btn"})
                pressDuringThePause(name);
            auto *focused = in(dialog, "rotation180btn");
            for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
                QCoreApplication::postEvent(
                    focused, new QKeyEvent(type, Qt::Key_Space, Qt::NoModifier, u" "_s));
        });
        QElapsedTimer time;
        time.start();
        press(dialog, "rotation90btn");
        QTRY_VERIFY(isSettled(dialog.get()));
        QCOMPARE(sent, QList<QByteArray>({frame("00 A7 00 02 00 01"), Query}));
        QVERIFY(time.elapsed() < 2000);
        press(dialog, "rotation180btn");
        QCOMPARE(sent.sliced(2), QList<QByteArray>({frame("00 A7 00 02 00 02"), Query}));
    }

    void a_press_while_the_window_appears_is_dropped()
    {
        dialog->show();
        pressDuringThePause("rotation180btn");
        QTest::qWait(300);
        QCOMPARE(sent, {Query});
    }

    // What is shown

    void the_rotation_does_not_stick_to_the_words_before_it()
    {
        receive(CurrentIs90);
        dialog->show();
        QVERIFY(shown()->indent() >= 3);
        const QImage picture = shown()->grab().toImage();
        for (int x = 0; x < 3; ++x) {
            for (int y = 0; y < picture.height(); ++y)
                QCOMPARE(picture.pixelColor(x, y), picture.pixelColor(0, 0));
        }
    }

    void the_label_shows_what_the_frame_reports_data()
    {
        QTest::addColumn<QByteArray>("report");
        QTest::addColumn<QString>("text");
        QTest::newRow("0") << frame("FC A7 82 02 00 00") << u"0"_s;
        QTest::newRow("90") << frame("FC A7 82 02 00 01") << u"90"_s;
        QTest::newRow("180") << frame("FC A7 82 02 00 02") << u"180"_s;
        QTest::newRow("270") << frame("FC A7 82 02 00 03") << u"270"_s;
        QTest::newRow("the first code outside") << frame("FC A7 82 02 00 04") << u"-1"_s;
        QTest::newRow("code 7") << frame("FC A7 82 02 00 07") << u"-1"_s;
        QTest::newRow("code 255") << frame("FC A7 82 02 00 FF") << u"-1"_s;
    }
    void the_label_shows_what_the_frame_reports()
    {
        QFETCH(const QByteArray, report);
        QFETCH(const QString, text);
        receive(frame("FC A7 82 02 00 02"));
        receive(report);
        QCOMPARE(shown()->text(), text);
    }

    void before_the_first_answer_the_label_reads_minus_1()
    {
        QCOMPARE(shown()->text(), u"-1"_s);
        dialog->show();
        QCOMPARE(shown()->text(), u"-1"_s);
        receive(FirmwareReply);
        QCOMPARE(shown()->text(), u"-1"_s);
    }

    void a_report_of_another_class_refreshes_the_label_without_changing_it()
    {
        receive(CurrentIs90);
        shown()->setText(u"stale"_s);
        receive(frame("FC A2 82 02 00 03"));
        QCOMPARE(shown()->text(), u"90"_s);
        QCOMPARE(dialog->reportedDefaultRotation(), UCHAR(0xFF));
    }

    void the_default_rotation_changes_nothing_else()
    {
        receive(CurrentIs90);
        QCOMPARE(dialog->reportedDefaultRotation(), UCHAR(0xFF));
        receive(frame("FC A7 81 02 00 03"));
        QCOMPARE(dialog->reportedDefaultRotation(), UCHAR(3));
        QCOMPARE(shown()->text(), u"90"_s);
        receive(frame("FC A7 82 02 00 02"));
        QCOMPARE(dialog->reportedDefaultRotation(), UCHAR(3));
        QCOMPARE(shown()->text(), u"180"_s);
    }

    void other_sub_commands_are_ignored_data()
    {
        QTest::addColumn<QByteArray>("report");
        QTest::newRow("00") << frame("FC A7 00 02 00 03");
        QTest::newRow("02") << frame("FC A7 02 02 00 03");
        QTest::newRow("80") << frame("FC A7 80 02 00 03");
        QTest::newRow("83") << frame("FC A7 83 02 00 03");
    }
    void other_sub_commands_are_ignored()
    {
        QFETCH(const QByteArray, report);
        receive(DefaultIs0);
        receive(CurrentIs90);
        receive(report);
        QCOMPARE(shown()->text(), u"90"_s);
        QCOMPARE(dialog->reportedDefaultRotation(), UCHAR(0));
    }

    void the_same_answer_many_times_over_only_refreshes_the_label()
    {
        for (int i = 0; i < 100; ++i) {
            shown()->setText(u"stale"_s);
            receive(CurrentIs90);
            QCOMPARE(shown()->text(), u"90"_s);
        }
        QVERIFY(sent.isEmpty());
        QVERIFY(hintless());
    }

    // Another frame

    void the_end_of_a_link_forgets_what_its_frame_said()
    {
        receive(frame("FC A7 81 02 00 03"));
        receive(CurrentIs90);
        dialog->getCurrentRotation();
        QVERIFY(hinted());
        dialog->OnLinkEnded();
        QCOMPARE(shown()->text(), u"-1"_s);
        QCOMPARE(dialog->reportedDefaultRotation(), UCHAR(0xFF));
        QVERIFY(hintless());
        QCOMPARE(sent, {Query});
    }

    void the_first_answer_of_the_next_frame_is_new_even_if_it_says_the_same()
    {
        receive(CurrentIs90);
        dialog->OnLinkEnded();
        dialog->getCurrentRotation();
        receive(CurrentIs90);
        QVERIFY(hintless());
        QCOMPARE(shown()->text(), u"90"_s);
    }

    void signal_and_slots_are_in_their_order()
    {
        QByteArrayList found;
        const QMetaObject &meta = Rotation_dlg::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            found.append(meta.method(i).methodSignature() + ' ' +
                         meta.method(i).parameterNames().join(','));
        QCOMPARE(found,
                 QByteArrayList({"Write03(UCHAR*) WriteBuf", "on_okbtn_clicked() ",
                                 "on_rotation0btn_clicked() ", "on_rotation90btn_clicked() ",
                                 "on_rotation180btn_clicked() ", "on_rotation270btn_clicked() ",
                                 "DoRecv03(UCHAR*) RecvBuf"}));
    }

    // A frame that does not answer

    void without_a_question_there_is_no_hint() { QVERIFY(hintless()); }

    void silence_is_told_with_the_time_of_the_question()
    {
        const QTime before = QTime::currentTime();
        dialog->show();
        const QTime after = QTime::currentTime();
        if (after < before)
            QFAIL("midnight passed during the test: run it again");
        QVERIFY(hinted());
        QVERIFY(silentSince() >= QTime(before.hour(), before.minute(), before.second()));
        QVERIFY(silentSince() <= after);
        QCOMPARE(shown()->text(), u"-1"_s);
    }

    void a_further_question_keeps_the_time_of_the_first()
    {
        dialog->getCurrentRotation();
        const QTime first = silentSince();
        QVERIFY(first.isValid());
        press(dialog, "rotation90btn");
        QCOMPARE(silentSince(), first);
        dialog->show();
        dialog->hide();
        QCOMPARE(silentSince(), first);
    }

    void an_old_answer_repeated_is_no_answer()
    {
        receive(DefaultIs0);
        receive(CurrentIs90);
        press(dialog, "rotation180btn");
        for (int i = 0; i < 20; ++i)
            receive(CurrentIs90);
        QVERIFY(hinted());
        QCOMPARE(shown()->text(), u"90"_s);
    }

    void an_answer_that_says_the_same_as_before_is_one()
    {
        receive(DefaultIs0);
        receive(CurrentIs90);
        dialog->getCurrentRotation();
        receive(CurrentIs90);
        QVERIFY(hinted());
        receive(DefaultIs0);
        QVERIFY(hinted());
        receive(CurrentIs90);
        QVERIFY(hintless());
        receive(CurrentIs90);
        QVERIFY(hintless());
    }

    void an_answer_whose_first_half_went_unseen_is_one_if_it_differs()
    {
        receive(CurrentIs90);
        dialog->getCurrentRotation();
        receive(CurrentIs90);
        receive(CurrentIs0);
        QVERIFY(hintless());
        QCOMPARE(shown()->text(), u"0"_s);
    }

    void a_difference_in_the_last_byte_is_one()
    {
        receive(CurrentIs90);
        dialog->getCurrentRotation();
        QByteArray other = CurrentIs90;
        other[63] = 1;
        receive(other);
        QVERIFY(hintless());
    }

    void an_old_answer_is_a_new_one_after_a_report_of_another_class()
    {
        receive(CurrentIs90);
        dialog->getCurrentRotation();
        receive(FirmwareReply);
        QVERIFY(hinted());
        receive(CurrentIs90);
        QVERIFY(hintless());
    }

    void the_very_first_report_repeats_nothing()
    {
        dialog->getCurrentRotation();
        receive(CurrentIs0);
        QVERIFY(hintless());
    }

    void only_the_current_rotation_is_an_answer_data()
    {
        QTest::addColumn<QByteArray>("report");
        QTest::newRow("default rotation") << DefaultIs0;
        QTest::newRow("another class") << FirmwareReply;
        QTest::newRow("the same sub-command of another class") << frame("FC A2 82 02 00 01");
        QTest::newRow("another sub-command") << frame("FC A7 83 02 00 01");
    }
    void only_the_current_rotation_is_an_answer()
    {
        QFETCH(const QByteArray, report);
        dialog->getCurrentRotation();
        receive(report);
        QVERIFY(hinted());
        // After something else, the same answer as ever is a new one.
        receive(CurrentIs90);
        QVERIFY(hintless());
    }

    void without_an_answer_the_rotation_is_unknown_after_a_while()
    {
        receive(DefaultIs0);
        receive(CurrentIs90);
        QElapsedTimer time;
        time.start();
        dialog->getCurrentRotation();
        QCOMPARE(shown()->text(), u"90"_s);
        QTRY_COMPARE_WITH_TIMEOUT(shown()->text(), u"-1"_s, 4000);
        QVERIFY2(time.elapsed() >= 2800 && time.elapsed() < 4000,
                 QByteArray::number(time.elapsed()));
        QVERIFY(hinted());
        // The link goes on handing over the last answer.
        receive(CurrentIs90);
        QCOMPARE(shown()->text(), u"-1"_s);
        receive(DefaultIs0);
        QCOMPARE(shown()->text(), u"-1"_s);
        receive(CurrentIs90);
        QCOMPARE(shown()->text(), u"90"_s);
        QVERIFY(hintless());
    }

    void an_answer_in_time_stays()
    {
        dialog->getCurrentRotation();
        receive(CurrentIs90);
        QTest::qWait(2500);
        QCOMPARE(shown()->text(), u"90"_s);
    }

    void after_the_end_of_the_link_no_answer_is_awaited()
    {
        dialog->getCurrentRotation();
        dialog->OnLinkEnded();
        receive(CurrentIs90);
        QTest::qWait(2500);
        QCOMPARE(shown()->text(), u"90"_s);
    }

    void after_an_answer_the_next_silence_has_its_own_time()
    {
        dialog->getCurrentRotation();
        const QTime first = silentSince();
        receive(DefaultIs0);
        receive(CurrentIs0);
        QVERIFY(hintless());
        dialog->getCurrentRotation();
        QVERIFY(hinted());
        QVERIFY(silentSince() != first);
    }
};

QTEST_MAIN(TestRotationDlg)
#include "tst_rotation_dlg.moc"
