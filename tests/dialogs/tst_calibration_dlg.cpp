// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/calend_dlg.h"
#include "dialogs/calibration_dlg.h"
#include "tests/support/calibrating.h"
#include "tests/support/capture.h"
#include "tests/support/hand.h"
#include "tests/support/hides.h"
#include "tests/support/paints.h"

#include <QApplication>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QShowEvent>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

static_assert(std::is_default_constructible_v<Calibration_Dlg>);

namespace {

// A reply as it comes from the device: report id, class, step.
void reply(Calibration_Dlg &screen, UCHAR step, UCHAR byte4 = 0, UCHAR byte5 = 0)
{
    UCHAR frame[64] = {0xFC, 0x01, step, 0x00, byte4, byte5};
    screen.DoRecv03(frame);
}

// What the window sends, as hexadecimal text of bytes 0 to 14.
class Sent
{
public:
    explicit Sent(Calibration_Dlg &screen)
    {
        QObject::connect(&screen, &Calibration_Dlg::Write03, &screen, [this](UCHAR *frame) {
            frames.append(QByteArray(reinterpret_cast<char *>(frame), 15).toHex(' '));
            rest.append(QByteArray(reinterpret_cast<char *>(frame + 15), 49));
        });
    }
    QByteArrayList take() { return std::exchange(frames, {}); }

    QByteArrayList frames;
    QByteArrayList rest;
};

const QByteArray Begin = "00 01 00 00 00 00 00 00 00 00 00 00 00 00 00";
const QByteArray Step1 = "00 01 01 00 00 00 00 00 00 00 00 00 00 00 00";
const QByteArray Step2 = "00 01 02 00 00 00 00 00 00 00 00 00 00 00 00";
const QByteArray Step3 = "00 01 03 00 00 00 00 00 00 00 00 00 00 00 00";
const QByteArray Step4 = "00 01 04 00 00 00 00 00 00 00 00 00 00 00 00";
const QByteArray Reset = "00 01 06 00 00 00 00 00 00 00 00 00 00 00 00";
const QByteArray Save = "00 01 ff 00 00 00 00 00 00 00 00 00 00 00 00";

ScreenLayout oneScreen(int width, int height)
{
    return {{QRect(0, 0, width, height)}, QSize(width, height)};
}

QList<int> list(const std::array<int, 4> &numbers)
{
    return {numbers.begin(), numbers.end()};
}

// The picture as it must be, drawn from its description alone.
QImage expectedPicture(QSize size, qreal scale, QPoint target, int outer, int middle, int inner,
                       const QString &countdown)
{
    QPixmap picture(size * scale);
    picture.fill(Qt::blue);
    QPainter painter(&picture);
    painter.scale(scale, scale);
    painter.setPen(QPen(QBrush(Qt::white), 2));
    const int x = target.x();
    const int y = target.y();
    painter.drawLine(x - 32, y - 32, x + 32, y + 32);
    painter.drawLine(x - 32, y + 32, x + 32, y - 32);
    for (const int radius : {outer, middle, inner})
        painter.drawEllipse(x - radius, y - radius, 2 * radius, 2 * radius);
    QFont font = painter.font();
    font.setPointSize(50);
    painter.setFont(font);
    painter.drawText(size.width() / 2 - 25, size.height() / 2, countdown);
    font.setPointSize(40);
    painter.setFont(font);
    painter.drawText(size.width() / 2 - 200, size.height() / 2 + 50, u"press ESC to back"_s);
    painter.end();
    return picture.toImage().convertToFormat(QImage::Format_RGB32);
}

} // namespace

class TestCalibrationDlg : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Calibration_Dlg> screen;
    std::unique_ptr<Sent> sent;

    void show()
    {
        screen->setPrimaryScr(0);
        screen->setWindowFlags(Qt::WindowFlags(0x12));
        screen->show();
        QVERIFY(QTest::qWaitForWindowExposed(screen.get()));
    }
    void bringToCheck()
    {
        for (UCHAR step = 0; step <= 5; ++step)
            reply(*screen, step);
    }

private slots:
    void init()
    {
        screen = std::make_unique<Calibration_Dlg>();
        sent = std::make_unique<Sent>(*screen);
    }
    void cleanup()
    {
        screen.reset();
        sent.reset();
    }

    void a_1920_by_1080_screen_has_its_targets_at_an_eighth()
    {
        screen->setPrimaryScr(0, oneScreen(1920, 1080));
        screen->SendCalStep(5);
        QCOMPARE(sent->take(), QByteArrayList({"00 01 05 00 00 00 00 80 07 38 04 80 07 38 04"}));
        QCOMPARE(list(screen->targetsX()), QList<int>({240, 1680, 1680, 240}));
        QCOMPARE(list(screen->targetsY()), QList<int>({135, 135, 945, 945}));
    }

    void division_comes_before_multiplication()
    {
        screen->setPrimaryScr(0, oneScreen(1366, 768));
        QCOMPARE(list(screen->targetsX()), QList<int>({170, 1190, 1190, 170}));
        QCOMPARE(list(screen->targetsY()), QList<int>({96, 96, 672, 672}));
        screen->setPrimaryScr(0, oneScreen(1680, 1050));
        QCOMPARE(list(screen->targetsX()), QList<int>({210, 1470, 1470, 210}));
        QCOMPARE(list(screen->targetsY()), QList<int>({131, 131, 917, 917}));
    }

    void a_second_screen_sends_its_place_and_the_whole_desktop()
    {
        const ScreenLayout two{{QRect(0, 0, 1920, 1080), QRect(1920, 0, 1920, 1080)},
                               QSize(3840, 1080)};
        screen->setPrimaryScr(1, two);
        screen->SendCalStep(5);
        QCOMPARE(sent->take(), QByteArrayList({"00 01 05 80 07 00 00 80 07 38 04 00 0f 38 04"}));
        QCOMPARE(list(screen->targetsX()), QList<int>({240, 1680, 1680, 240}));
        QCOMPARE(screen->calibratedScreen(), QRect(1920, 0, 1920, 1080));
    }

    void a_chosen_screen_is_moved_to_before_it_is_covered()
    {
        const QPoint place = QGuiApplication::primaryScreen()->availableGeometry().topLeft();
        screen->move(place + QPoint(200, 100));
        screen->setPrimaryScr(0, oneScreen(1280, 800));
        QCOMPARE(screen->pos(), place);
    }

    void values_wider_than_16_bits_are_cut()
    {
        screen->setPrimaryScr(0, oneScreen(0x12345, 0x101));
        screen->SendCalStep(5);
        QCOMPARE(sent->take(), QByteArrayList({"00 01 05 00 00 00 00 45 23 01 01 45 23 01 01"}));
    }

    void no_screen_sets_nothing()
    {
        screen->setPrimaryScr(0, oneScreen(800, 600));
        screen->setPrimaryScr(0, ScreenLayout{});
        QCOMPARE(screen->calibratedScreen(), QRect(0, 0, 800, 600));
    }

    // As a compositor has them, which hands touches to the screen that the frame is on.
    void a_screen_for_itself_counts_from_its_own_corner()
    {
        const ScreenLayout two{.screens = {QRect(0, 0, 1920, 1080), QRect(1920, 0, 1280, 800)},
                               .desktop = QSize(3200, 1080),
                               .isEachForItself = true};
        screen->setPrimaryScr(1, two);
        screen->SendCalStep(5);
        QCOMPARE(sent->take(), QByteArrayList({"00 01 05 00 00 00 00 00 05 20 03 00 05 20 03"}));
        QCOMPARE(list(screen->targetsX()), QList<int>({160, 1120, 1120, 160}));
        QCOMPARE(screen->calibratedScreen(), QRect(0, 0, 1280, 800));
    }

    void showing_fills_the_screen_and_begins_once()
    {
        QCOMPARE(screen->m_IsCali, UCHAR(0));
        show();
        QTRY_COMPARE(screen->geometry(), QGuiApplication::primaryScreen()->geometry());
        QCOMPARE(screen->m_IsCali, UCHAR(1));
        QTest::qWait(100);
        QCOMPARE(sent->take(), QByteArrayList({Begin}));
        QCOMPARE(screen->windowFlags() & 0x12, Qt::WindowFlags(0x12));
        QCOMPARE(screen->windowTitle(), u"MalvoTools"_s);
        QVERIFY(qAbs(screen->windowOpacity() - 0.5) < 1.0 / 255);
    }

    void each_step_is_echoed_and_moves_the_target()
    {
        show();
        sent->take();
        QCOMPARE(screen->currentTarget(), 0);
        reply(*screen, 0);
        QCOMPARE(sent->take(), QByteArrayList());
        reply(*screen, 1);
        QCOMPARE(sent->take(), QByteArrayList({Step1}));
        QCOMPARE(screen->currentTarget(), 0);
        reply(*screen, 2);
        QCOMPARE(sent->take(), QByteArrayList({Step2}));
        QCOMPARE(screen->currentTarget(), 1);
        reply(*screen, 3);
        QCOMPARE(sent->take(), QByteArrayList({Step3}));
        QCOMPARE(screen->currentTarget(), 2);
        reply(*screen, 4);
        QCOMPARE(sent->take(), QByteArrayList({Step4}));
        QCOMPARE(screen->currentTarget(), 3);
        reply(*screen, 5);
        const QSize size = QGuiApplication::primaryScreen()->size();
        QCOMPARE(size, QSize(1280, 800));
        QCOMPARE(sent->take(), QByteArrayList({"00 01 05 00 00 00 00 00 05 20 03 00 05 20 03"}));
        for (const QByteArray &rest : sent->rest)
            QCOMPARE(rest, QByteArray(49, '\0'));
        QVERIFY(screen->isVisible());
    }

    void a_reply_out_of_order_changes_nothing()
    {
        show();
        sent->take();
        for (const UCHAR step : {2, 3, 4, 5, 0xFF, 6, 0x80}) {
            reply(*screen, step);
            QCOMPARE(sent->take(), QByteArrayList());
            QCOMPARE(screen->currentTarget(), 0);
        }
        reply(*screen, 1);
        reply(*screen, 3);
        QCOMPARE(sent->take(), QByteArrayList({Step1}));
        QVERIFY(screen->isVisible());
    }

    void a_repeated_reply_is_echoed_once()
    {
        show();
        sent->take();
        for (int i = 0; i < 5; ++i)
            reply(*screen, 1);
        QCOMPARE(sent->take(), QByteArrayList({Step1}));
        for (int i = 0; i < 5; ++i)
            reply(*screen, 2);
        QCOMPARE(sent->take(), QByteArrayList({Step2}));
    }

    void replies_of_other_classes_are_ignored()
    {
        show();
        sent->take();
        UCHAR rotation[64] = {0xFC, 0xA7, 0x01};
        screen->DoRecv03(rotation);
        QCOMPARE(sent->take(), QByteArrayList());
    }

    void the_report_id_is_not_looked_at()
    {
        show();
        sent->take();
        UCHAR frame[64] = {0x00, 0x01, 0x01};
        screen->DoRecv03(frame);
        QCOMPARE(sent->take(), QByteArrayList({Step1}));
    }

    void the_debug_lines_tell_steps_and_accuracy_data()
    {
        QTest::addColumn<UCHAR>("byte4");
        QTest::addColumn<UCHAR>("byte5");
        QTest::addColumn<QStringList>("atTheEnd");
        const QString end = u"CAL_END\n"_s;
        // (|-2| + |3|) / 2 = 2
        QTest::newRow("signed, averaged and cut")
            << UCHAR(0xFE) << UCHAR(0x03) << QStringList({end, u"Calibration accuracy: 98%\n"_s});
        QTest::newRow("both the other way")
            << UCHAR(0xFD) << UCHAR(0xFB) << QStringList({end, u"Calibration accuracy: 96%\n"_s});
        QTest::newRow("5 is still good")
            << UCHAR(5) << UCHAR(6) << QStringList({end, u"Calibration accuracy: 95%\n"_s});
        QTest::newRow("6 is not") << UCHAR(6) << UCHAR(6) << QStringList({end});
        QTest::newRow("the lowest byte") << UCHAR(0x80) << UCHAR(0) << QStringList({end});
    }
    void the_debug_lines_tell_steps_and_accuracy()
    {
        QFETCH(const UCHAR, byte4);
        QFETCH(const UCHAR, byte5);
        QFETCH(const QStringList, atTheEnd);
        show();
        Answer answer(false);
        static QStringList lines;
        lines.clear();
        const QtMessageHandler before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &text) { lines += text; });
        bringToCheck();
        reply(*screen, 0xFF, byte4, byte5);
        qInstallMessageHandler(before);
        QCOMPARE(lines, QStringList({u"CAL_BEGIN\n"_s, u"CAL_STEP1\n"_s, u"CAL_STEP2\n"_s,
                                     u"CAL_STEP3\n"_s, u"CAL_STEP4\n"_s, u"CAL_CHECK\n"_s}) +
                            atTheEnd);
        QCOMPARE(answer.asked, 1);
    }

    void yes_saves_and_closes()
    {
        show();
        bringToCheck();
        sent->take();
        Answer answer(true);
        QSignalSpy saved(screen.get(), &Calibration_Dlg::saved);
        Capture output(stdout);
        reply(*screen, 0xFF, 3, 1);
        QVERIFY(output.text().split('\n').contains("SendCalSave"));
        QCOMPARE(answer.asked, 1);
        QVERIFY(!screen->isVisible());
        QCOMPARE(screen->m_IsCali, UCHAR(0));
        QCOMPARE(sent->take(), QByteArrayList({Save}));
        QCOMPARE(saved.size(), 1);
        QCOMPARE(saved.first().first().toInt(), 2);
    }

    void no_resets_and_closes()
    {
        show();
        bringToCheck();
        sent->take();
        Answer answer(false);
        reply(*screen, 0xFF, 1, 1);
        QCOMPARE(answer.asked, 1);
        QVERIFY(!screen->isVisible());
        QCOMPARE(sent->take(), QByteArrayList({Reset}));
    }

    void a_question_that_nobody_answers_discards_the_calibration_and_that_is_told()
    {
        show();
        bringToCheck();
        sent->take();
        QStringList told;
        connect(screen.get(), &Calibration_Dlg::endedByItself, screen.get(),
                [&told](const QString &why) { told += why; });
        QTimer::singleShot(200, screen.get(), [] {
            auto *question = qobject_cast<CalEnd_dlg *>(QApplication::activeModalWidget());
            QVERIFY(question);
            for (int second = 0; second <= 10; ++second)
                question->ontimer();
        });
        reply(*screen, 0xFF, 1, 1);
        QCOMPARE(sent->take(), QByteArrayList({Reset}));
        QVERIFY(!screen->isVisible());
        QCOMPARE(told.size(), 1);
        QVERIFY2(told.first().startsWith(u"The calibration was discarded because nobody answered "
                                         "whether to save it. Calibration "_s),
                 qPrintable(told.first()));
        // Whoever says No knows that.
        show();
        bringToCheck();
        Answer answer(false);
        reply(*screen, 0xFF, 1, 1);
        QCOMPARE(answer.asked, 1);
        QCOMPARE(told.size(), 1);
    }

    void the_end_is_acted_on_once()
    {
        show();
        bringToCheck();
        sent->take();
        Answer answer(true);
        for (int i = 0; i < 3; ++i)
            reply(*screen, 0xFF, 1, 1);
        QCOMPARE(answer.asked, 1);
        QCOMPARE(sent->take(), QByteArrayList({Save}));
    }

    void escape_leaves_and_resets()
    {
        show();
        reply(*screen, 1);
        sent->take();
        QTest::keyClick(screen.get(), Qt::Key_Escape);
        QVERIFY(!screen->isVisible());
        QCOMPARE(sent->take(), QByteArrayList({Reset}));
        QCOMPARE(screen->m_IsCali, UCHAR(0));
    }

    void after_exactly_60_ticks_the_window_closes_and_resets()
    {
        show();
        sent->take();
        for (int tick = 1; tick <= 59; ++tick)
            screen->ontimer();
        QVERIFY(screen->isVisible());
        QCOMPARE(sent->take(), QByteArrayList());
        screen->ontimer();
        QVERIFY(!screen->isVisible());
        QCOMPARE(sent->take(), QByteArrayList({Reset}));
    }

    void ticks_come_twice_a_second()
    {
        show();
        const QImage before = screen->grab().toImage();
        QTRY_VERIFY_WITH_TIMEOUT(screen->grab().toImage() != before, 1000);
    }

    void ticks_and_steps_are_seen_at_once()
    {
        show();
        screen->findChild<QTimer *>()->stop();
        QCoreApplication::processEvents();
        QVERIFY(isPaintedFor(screen.get(), [this] { screen->ontimer(); }));
        QVERIFY(isPaintedFor(screen.get(), [this] { reply(*screen, 1); }));
        QVERIFY(isPaintedFor(screen.get(), [this] { reply(*screen, 2); }));
    }

    void any_ending_leaves_a_clean_next_showing_data()
    {
        QTest::addColumn<QString>("ending");
        for (const char *ending : {"escape", "time-out", "saved", "discarded", "device lost"})
            QTest::newRow(ending) << QString::fromLatin1(ending);
    }
    void any_ending_leaves_a_clean_next_showing()
    {
        QFETCH(const QString, ending);
        show();
        if (ending == "escape"_L1) {
            reply(*screen, 1);
            reply(*screen, 2);
            screen->reject();
        } else if (ending == "time-out"_L1) {
            reply(*screen, 1);
            for (int tick = 0; tick < 60; ++tick)
                screen->ontimer();
        } else if (ending == "device lost"_L1) {
            reply(*screen, 1);
            screen->OnLinkEnding(true);
            screen->close();
        } else {
            bringToCheck();
            Answer answer(ending == "saved"_L1);
            reply(*screen, 0xFF, 9, 9);
            QCOMPARE(answer.asked, 1);
        }
        QVERIFY(!screen->isVisible());
        sent->take();

        show();
        QCOMPARE(sent->take(), QByteArrayList({Begin}));
        QCOMPARE(screen->currentTarget(), 0);
        QCOMPARE(screen->m_IsCali, UCHAR(1));
        // The device still repeats how the last calibration ended.
        reply(*screen, 0xFF, 9, 9);
        QVERIFY(screen->isVisible());
        QCOMPARE(screen->grab().toImage().convertToFormat(QImage::Format_RGB32),
                 expectedPicture({1280, 800}, 1, {160, 100}, 32, 24, 16, u"30"_s));
        bringToCheck();
        QCOMPARE(sent->take().size(), 5);
        Answer answer(true);
        reply(*screen, 0xFF, 1, 1);
        QCOMPARE(sent->take(), QByteArrayList({Save}));
    }

    void before_the_first_showing_replies_are_followed_all_the_same()
    {
        screen->setPrimaryScr(0, oneScreen(1280, 800));
        for (const UCHAR step : {2, 0, 1, 1, 3, 2})
            reply(*screen, step);
        QCOMPARE(sent->take(), QByteArrayList({Step1, Step2}));
        for (const UCHAR step : {3, 4, 5})
            reply(*screen, step);
        QCOMPARE(sent->take(),
                 QByteArrayList({Step3, Step4, "00 01 05 00 00 00 00 00 05 20 03 00 05 20 03"_ba}));
        reply(*screen, 0xFF, 1, 1);
        QCOMPARE(sent->take(), QByteArrayList());
        QVERIFY(!screen->isVisible());
        QVERIFY(!QApplication::activeModalWidget());
        show();
        QCOMPARE(sent->take(), QByteArrayList({Begin}));
    }

    void a_hidden_screen_answers_nothing_data()
    {
        QTest::addColumn<int>("touches");
        QTest::addColumn<QString>("ending");
        for (const char *ending : {"escape", "time-out", "link lost", "link closed"}) {
            for (const int touches : {0, 1, 5})
                QTest::addRow("%s after %d", ending, touches)
                    << touches << QString::fromLatin1(ending);
        }
        QTest::newRow("saved") << 5 << u"saved"_s;
        QTest::newRow("discarded") << 5 << u"discarded"_s;
    }
    void a_hidden_screen_answers_nothing()
    {
        QFETCH(const int, touches);
        QFETCH(const QString, ending);
        show();
        for (int step = 0; step <= touches; ++step)
            reply(*screen, UCHAR(step));
        QCOMPARE(sent->take().size(), touches + 1);
        if (ending == "escape"_L1)
            QTest::keyClick(screen.get(), Qt::Key_Escape);
        for (int tick = 0; ending == "time-out"_L1 && tick < 60; ++tick)
            screen->ontimer();
        if (ending.startsWith("link"_L1))
            screen->OnLinkEnding(ending == "link lost"_L1);
        if (ending == "link lost"_L1)
            screen->close();
        if (ending == "saved"_L1 || ending == "discarded"_L1) {
            Answer answer(ending == "saved"_L1);
            reply(*screen, 0xFF, 1, 1);
        }
        QVERIFY(!screen->isVisible());
        const QByteArrayList told = ending == "saved"_L1       ? QByteArrayList{Save}
                                    : ending == "link lost"_L1 ? QByteArrayList{}
                                                               : QByteArrayList{Reset};
        QCOMPARE(sent->take(), told);
        for (const UCHAR step : {0, 1, 2, 3, 4, 5, 0xFF, 6})
            reply(*screen, step);
        QCOMPARE(sent->take(), QByteArrayList());
        QVERIFY(!QApplication::activeModalWidget());
    }

    // A window manager takes the window away and brings it back

    void being_minimised_neither_ends_nor_begins_a_calibration()
    {
        show();
        reply(*screen, 1);
        sent->take();
        const Hides hides(screen.get());
        screen->setWindowState(screen->windowState() | Qt::WindowMinimized);
        QTRY_VERIFY(hides.bySystem > 0);
        QCOMPARE(screen->m_IsCali, UCHAR(1));
        reply(*screen, 2);
        QCOMPARE(sent->take(), QByteArrayList({Step2}));
        screen->setWindowState(Qt::WindowFullScreen);
        screen->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(screen.get()));
        QTest::qWait(100);
        QCOMPARE(sent->take(), QByteArrayList());
        QCOMPARE(screen->currentTarget(), 1);
        QTest::keyClick(screen.get(), Qt::Key_Escape);
        QCOMPARE(sent->take(), QByteArrayList({Reset}));
    }

    void a_calibration_that_is_left_minimised_ends_in_time_and_the_next_one_is_seen()
    {
        show();
        const Hides hides(screen.get());
        screen->setWindowState(screen->windowState() | Qt::WindowMinimized);
        QTRY_VERIFY(hides.bySystem > 0);
        sent->take();
        for (int tick = 0; tick < 60; ++tick)
            screen->ontimer();
        QCOMPARE(sent->take(), QByteArrayList({Reset}));
        QVERIFY(!screen->isVisible());
        show();
        QVERIFY(!screen->isMinimized());
        QTRY_COMPARE(screen->geometry(), QGuiApplication::primaryScreen()->geometry());
        QCOMPARE(sent->take(), QByteArrayList({Begin}));
    }

    void another_workspace_neither_ends_nor_begins_a_calibration()
    {
        show();
        sent->take();
        QHideEvent gone;
        QSpontaneKeyEvent::setSpontaneous(&gone);
        qApp->notify(screen.get(), &gone);
        QShowEvent back;
        QSpontaneKeyEvent::setSpontaneous(&back);
        qApp->notify(screen.get(), &back);
        for (const QString &workspace : {u"1"_s, u"0"_s}) {
            QVERIFY(hand::does({u"set_desktop"_s, workspace}));
            QTest::qWait(200);
        }
        QCOMPARE(sent->take(), QByteArrayList());
        QCOMPARE(screen->m_IsCali, UCHAR(1));
    }

    // The link ends

    void a_device_that_can_still_hear_is_reset_before_its_link_ends()
    {
        show();
        reply(*screen, 1);
        sent->take();
        screen->OnLinkEnding(false);
        QCOMPARE(sent->take(), QByteArrayList({Reset}));
        QVERIFY(!screen->isVisible());
        QVERIFY(!QApplication::activeModalWidget());
        screen->OnLinkEnding(false);
        screen->OnLinkEnding(true);
        screen->close();
        QCOMPARE(sent->take(), QByteArrayList());
    }

    void a_link_that_ends_without_a_calibration_is_told_nothing()
    {
        screen->OnLinkEnding(false);
        screen->OnLinkEnding(true);
        show();
        screen->close();
        sent->take();
        screen->OnLinkEnding(false);
        QCOMPARE(sent->take(), QByteArrayList());
        QVERIFY(!screen->isVisible());
    }

    void a_link_that_ends_during_the_question_takes_it_away_and_resets_once()
    {
        show();
        bringToCheck();
        sent->take();
        QByteArrayList atOnce;
        QTimer::singleShot(200, screen.get(), [&] {
            QVERIFY(qobject_cast<CalEnd_dlg *>(QApplication::activeModalWidget()));
            screen->OnLinkEnding(false);
            atOnce = sent->take();
        });
        reply(*screen, 0xFF, 1, 1);
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(atOnce, QByteArrayList({Reset}));
        QCOMPARE(sent->take(), QByteArrayList());
    }

    void a_device_that_goes_after_its_link_was_said_to_end_is_sent_nothing_more()
    {
        show();
        screen->OnLinkEnding(true);
        sent->take();
        QVERIFY(screen->isVisible());
        screen->OnLinkEnding(false);
        QCOMPARE(sent->take(), QByteArrayList());
        QVERIFY(!screen->isVisible());
    }

    void the_answer_to_an_old_question_does_not_reach_the_next_calibration()
    {
        show();
        bringToCheck();
        sent->take();
        QTimer::singleShot(200, screen.get(), [&] {
            auto *question = qobject_cast<CalEnd_dlg *>(QApplication::activeModalWidget());
            QVERIFY(question);
            screen->OnLinkEnding(true);
            // The answer is still on its way when the next frame is calibrated.
            screen->show();
        });
        reply(*screen, 0xFF, 1, 1);
        QCOMPARE(sent->take(), QByteArrayList({Begin}));
        QVERIFY(screen->isVisible());
        screen->close();
        QCOMPARE(sent->take(), QByteArrayList({Reset}));
    }

    void a_lost_device_is_neither_asked_about_nor_sent_to()
    {
        show();
        bringToCheck();
        sent->take();
        screen->OnLinkEnding(true);
        reply(*screen, 0xFF, 1, 1);
        screen->close();
        QVERIFY(!screen->isVisible());
        QCOMPARE(sent->take(), QByteArrayList());
    }

    // The window hides a moment later.
    void a_lost_device_that_is_still_heard_of_is_not_answered()
    {
        show();
        reply(*screen, 1);
        sent->take();
        screen->OnLinkEnding(true);
        QVERIFY(screen->isVisible());
        reply(*screen, 2);
        QCOMPARE(sent->take(), QByteArrayList());
        QCOMPARE(screen->currentTarget(), 0);
    }

    void a_calibration_that_begins_during_the_question_resets_the_one_before()
    {
        show();
        bringToCheck();
        sent->take();
        QTimer::singleShot(200, screen.get(), [this] {
            QVERIFY(qobject_cast<CalEnd_dlg *>(QApplication::activeModalWidget()));
            screen->show();
            QVERIFY(!QApplication::activeModalWidget());
        });
        reply(*screen, 0xFF, 1, 1);
        QCOMPARE(sent->take(), QByteArrayList({Reset, Begin}));
        QVERIFY(screen->isVisible());
        screen->close();
        QCOMPARE(sent->take(), QByteArrayList({Reset}));
    }

    void a_device_lost_during_the_question_takes_the_question_away()
    {
        show();
        bringToCheck();
        sent->take();
        QTimer::singleShot(200, screen.get(), [this] {
            QVERIFY(qobject_cast<CalEnd_dlg *>(QApplication::activeModalWidget()));
            screen->OnLinkEnding(true);
        });
        reply(*screen, 0xFF, 1, 1);
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(sent->take(), QByteArrayList());
    }

    void every_pixel_is_in_its_place_data()
    {
        QTest::addColumn<int>("point");
        QTest::addColumn<int>("ticks");
        QTest::addColumn<QPoint>("target");
        QTest::addColumn<int>("outer");
        QTest::addColumn<int>("inner");
        QTest::addColumn<QString>("countdown");
        QTest::newRow("top left") << 0 << 0 << QPoint(160, 100) << 32 << 16 << u"30"_s;
        QTest::newRow("top right") << 1 << 1 << QPoint(1120, 100) << 36 << 12 << u"29"_s;
        QTest::newRow("bottom right") << 2 << 2 << QPoint(1120, 700) << 40 << 8 << u"29"_s;
        QTest::newRow("bottom left") << 3 << 3 << QPoint(160, 700) << 32 << 16 << u"28"_s;
        QTest::newRow("one digit") << 0 << 41 << QPoint(160, 100) << 40 << 8 << u"09"_s;
        QTest::newRow("last half-second") << 0 << 59 << QPoint(160, 100) << 40 << 8 << u"00"_s;
    }
    void every_pixel_is_in_its_place()
    {
        QFETCH(const int, point);
        QFETCH(const int, ticks);
        QFETCH(const QPoint, target);
        QFETCH(const int, outer);
        QFETCH(const int, inner);
        QFETCH(const QString, countdown);
        show();
        for (int step = 1; step <= point + 1; ++step)
            reply(*screen, UCHAR(step));
        for (int tick = 0; tick < ticks; ++tick)
            screen->ontimer();
        QImage shown = screen->grab().toImage().convertToFormat(QImage::Format_RGB32);
        const qreal scale = shown.devicePixelRatio();
        QCOMPARE(scale, qEnvironmentVariable("EXPECTED_RATIO", u"1"_s).toDouble());
        shown.setDevicePixelRatio(1);
        QCOMPARE(shown, expectedPicture({1280, 800}, scale, target, outer, 24, inner, countdown));
    }

    void the_estimate_follows_its_formula_data()
    {
        QTest::addColumn<QList<int>>("x");
        QTest::addColumn<QList<int>>("y");
        QTest::addColumn<int>("deviation");
        QTest::newRow("perfect") << QList<int>{240, 1680, 1680, 240}
                                 << QList<int>{135, 135, 945, 945} << 0;
        // dx = |(100+140)/2 - (900+920)/2| = 790, ex = |140-120| + |900-910| = 30
        // dy = |(100+120)/2 - (700+690)/2| = 585, ey = |690-695| + |120-110| = 15
        // (15/2*30)/(585/10+1) + (30/2*30)/(790/10+1) = 210/59 + 450/80 = 3 + 5
        QTest::newRow("skewed") << QList<int>{100, 900, 920, 140} << QList<int>{100, 120, 700, 690}
                                << 8;
        // dx = |(21+26)/2 - (100+73)/2| = 63, ex = |26-23| + |100-86| = 17
        // dy = |(33+93)/2 - (119+108)/2| = 50, ey = |108-113| + |93-63| = 35
        // (35/2*30)/(50/10+1) + (17/2*30)/(63/10+1) = 510/6 + 240/7 = 85 + 34
        QTest::newRow("cut at every division")
            << QList<int>{21, 100, 73, 26} << QList<int>{33, 93, 119, 108} << 119;
        // dx = |(17+70)/2 - (134+101)/2| = 74, ex = |70-43| + |134-117| = 44
        // dy = |(23+44)/2 - (114+171)/2| = 109, ey = |171-142| + |44-33| = 40
        // (40/2*30)/(109/10+1) + (44/2*30)/(74/10+1) = 600/11 + 660/8 = 54 + 82
        QTest::newRow("far off") << QList<int>{17, 134, 101, 70} << QList<int>{23, 44, 114, 171}
                                 << 136;
        QTest::newRow("one point") << QList<int>{5, 5, 5, 5} << QList<int>{5, 5, 5, 5} << 0;
    }
    void the_estimate_follows_its_formula()
    {
        QFETCH(const QList<int>, x);
        QFETCH(const QList<int>, y);
        QFETCH(const int, deviation);
        std::copy(x.begin(), x.end(), screen->cal_x.begin());
        std::copy(y.begin(), y.end(), screen->cal_y.begin());
        QCOMPARE(screen->GetDeviation(), deviation);
    }

    // A screen may say that it is where it was.
    void a_screen_that_stays_as_it_is_ends_nothing()
    {
        show();
        QVERIFY(screen->isVisible());
        emit screen->screen()->geometryChanged(screen->screen()->geometry());
        emit screen->screen()->virtualGeometryChanged(screen->screen()->virtualGeometry());
        QVERIFY(screen->isVisible());
    }

    void a_screen_that_changes_when_nothing_is_touched_any_more_ends_nothing()
    {
        int told = 0;
        connect(screen.get(), &Calibration_Dlg::endedByItself, screen.get(), [&told] { ++told; });
        const auto changes = [] {
            QScreen *covered = QGuiApplication::primaryScreen();
            emit covered->geometryChanged(covered->geometry());
        };
        screen->setPrimaryScr(0, oneScreen(1024, 768)); // what it was
        changes();
        screen->show();
        QVERIFY(QTest::qWaitForWindowExposed(screen.get()));
        bringToCheck();
        sent->take();
        bool asked = false;
        QTimer::singleShot(200, screen.get(), [&] {
            changes();
            auto *question = qobject_cast<CalEnd_dlg *>(QApplication::activeModalWidget());
            asked = question && question->isVisible();
            if (question)
                question->on_pushButton_clicked();
        });
        reply(*screen, 0xFF, 1, 1);
        QVERIFY(asked);
        QCOMPARE(sent->take(), QByteArrayList({Save}));
        changes();
        QCOMPARE(told, 0);
    }

    void a_screen_that_has_changed_ends_the_calibration_data()
    {
        QTest::addColumn<bool>("itself");
        QTest::newRow("itself") << true;
        QTest::newRow("the desktop around it") << false;
    }
    void a_screen_that_has_changed_ends_the_calibration()
    {
        QFETCH(const bool, itself);
        QStringList told;
        connect(screen.get(), &Calibration_Dlg::endedByItself, screen.get(),
                [&told](const QString &why) { told += why; });
        // What it was when the calibration began.
        screen->setPrimaryScr(0, oneScreen(1024, 768));
        screen->show();
        QVERIFY(QTest::qWaitForWindowExposed(screen.get()));
        sent->take();
        QScreen *covered = QGuiApplication::primaryScreen();
        if (itself)
            emit covered->geometryChanged(covered->geometry());
        else
            emit covered->virtualGeometryChanged(covered->virtualGeometry());
        QVERIFY(!screen->isVisible());
        QCOMPARE(sent->take(), QByteArrayList({Reset}));
        QCOMPARE(told, QStringList(u"The calibration ended because the screens have changed. It "
                                   "was discarded."_s));
    }
};

QTEST_MAIN(TestCalibrationDlg)
#include "tst_calibration_dlg.moc"
