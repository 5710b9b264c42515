// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/advset_dlg.h"
#include "dialogs/lightset_dlg.h"
#include "dialogs/test_win.h"
#include "tests/support/widgets.h"

#include <QMetaMethod>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

static_assert(std::is_default_constructible_v<advset_dlg>);

class TestAdvSetDlg : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QWidget> window;
    test_win *test = nullptr;
    LightSet_dlg *lights = nullptr;
    advset_dlg *menu = nullptr;

private slots:
    void init()
    {
        window = std::make_unique<QWidget>();
        test = new test_win(window.get());
        lights = new LightSet_dlg(window.get());
        menu = new advset_dlg(window.get());
        menu->show();
        QVERIFY(QTest::qWaitForWindowExposed(menu));
    }
    void cleanup() { window.reset(); }

    void the_form_is_as_drawn_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QRect>("geometry");
        QTest::newRow("test") << u"testbtn"_s << u"Test"_s << QRect(20, 20, 91, 25);
        QTest::newRow("lights") << u"testbtn_2"_s << u"Light Setting"_s << QRect(20, 60, 91, 25);
        QTest::newRow("exit") << u"canbtn"_s << u"Exit"_s << QRect(20, 100, 91, 25);
    }
    void the_form_is_as_drawn()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, text);
        QFETCH(const QRect, geometry);
        QCOMPARE(menu->windowTitle(), u"MalvoTools"_s);
        QCOMPARE(menu->minimumSize(), QSize(131, 148));
        QCOMPARE(menu->maximumSize(), QSize(131, 148));
        QCOMPARE(menu->font().family(), u"Tahoma"_s);
        QCOMPARE(menu->findChildren<QPushButton *>().size(), 3);
        const auto *button = menu->findChild<QPushButton *>(name);
        QVERIFY(button);
        QCOMPARE(button->text(), text);
        QCOMPARE(button->geometry(), geometry);
        QVERIFY(button->fontMetrics().horizontalAdvance(text) + 8 <= button->width());
        QVERIFY(button->fontMetrics().height() + 4 <= button->height());
    }

    void the_buttons_are_reached_by_tab_from_top_to_bottom()
    {
        QStringList reached;
        menu->findChild<QPushButton *>(u"testbtn"_s)->setFocus();
        for (int i = 0; i < 4; ++i) {
            reached.append(menu->focusWidget()->objectName());
            QTest::keyClick(menu->focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(reached, QStringList({u"testbtn"_s, u"testbtn_2"_s, u"canbtn"_s, u"testbtn"_s}));
    }

    void test_shows_the_signal_test_window_that_is_there()
    {
        press(menu, "testbtn");
        QVERIFY(test->isVisible());
        QVERIFY(!lights->isVisible());
        QVERIFY(menu->isVisible());
        QCOMPARE(window->findChildren<test_win *>().size(), 1);
    }

    void pressing_test_twice_shows_the_same_window_with_its_curves()
    {
        press(menu, "testbtn");
        QVERIFY(QTest::qWaitForWindowExposed(test));
        press(test, "Xbtn");
        UCHAR counts[64] = {0xFC, 0xA5, 0x80, 0x00, 0x00, 0x03, 0x00, 0x02, 0x00};
        test->DoRecv03(counts);
        UCHAR page[64] = {0xFC, 0xA5, 0x81, 0x00, 0x00, 0x00, 0x00, 200, 180, 220};
        test->DoRecv03(page);
        const QImage curves = test->grab().toImage();
        QVERIFY(curves != test_win().grab().toImage());

        press(menu, "testbtn");
        QVERIFY(test->isVisible());
        QCOMPARE(test->grab().toImage(), curves);
        test->close();
        press(menu, "testbtn");
        QVERIFY(test->isVisible());
        QCOMPARE(test->grab().toImage(), curves);
        QCOMPARE(window->findChildren<test_win *>().size(), 1);
    }

    void a_visible_window_stays_where_it_is()
    {
        press(menu, "testbtn");
        QVERIFY(QTest::qWaitForWindowExposed(test));
        test->move(123, 77);
        QTRY_COMPARE(test->pos(), QPoint(123, 77));
        press(menu, "testbtn");
        QTest::qWait(100);
        QCOMPARE(test->pos(), QPoint(123, 77));
    }

    void light_setting_shows_the_screen_that_is_there_and_once()
    {
        QSignalSpy sent(lights, &LightSet_dlg::Write03);
        press(menu, "testbtn_2");
        QVERIFY(lights->isVisible());
        QVERIFY(!test->isVisible());
        QCOMPARE(sent.size(), 1);
        press(menu, "testbtn_2");
        QVERIFY(lights->isVisible());
        QCOMPARE(sent.size(), 1);
        QCOMPARE(window->findChildren<LightSet_dlg *>().size(), 1);
    }

    void exit_hides_the_menu_and_stops_neither_screen()
    {
        press(menu, "testbtn");
        press(menu, "testbtn_2");
        QSignalSpy polled(lights, &LightSet_dlg::Write03);
        press(menu, "canbtn");
        QVERIFY(!menu->isVisible());
        QVERIFY(test->isVisible());
        QVERIFY(lights->isVisible());
        // Nothing that ends either of them was sent, and the polling goes on.
        QCOMPARE(polled.size(), 0);
        UCHAR settings[64] = {0xFC, 0xA2, 0x85};
        settings[17] = settings[19] = 4;
        lights->DoRecv03(settings);
        QTRY_VERIFY(!polled.isEmpty());
    }

    void without_a_window_behind_it_the_menu_leads_nowhere()
    {
        advset_dlg alone;
        alone.show();
        for (const char *name : {"testbtn", "testbtn_2"})
            press(&alone, name);
        QVERIFY(alone.isVisible());
        QVERIFY(!test->isVisible());
        QVERIFY(!lights->isVisible());
    }

    void it_reads_and_sends_nothing()
    {
        QSignalSpy sent(menu, &advset_dlg::Write03);
        menu->GetData();
        menu->SendSettingData();
        QCOMPARE(sent.size(), 0);
    }

    void escape_hides_the_menu()
    {
        QTest::keyClick(menu, Qt::Key_Escape);
        QVERIFY(!menu->isVisible());
    }

    void a_report_changes_nothing_and_is_not_answered()
    {
        QSignalSpy sent(menu, &advset_dlg::Write03);
        const QImage before = menu->grab().toImage();
        for (const UCHAR classOf : {0x01, 0xA2, 0xA3, 0xA5, 0xFF}) {
            UCHAR report[64] = {0xFC, classOf, 0x81, 0x3B};
            menu->DoRecv03(report);
        }
        QCOMPARE(menu->grab().toImage(), before);
        QCOMPARE(sent.size(), 0);
    }

    void the_slots_are_in_their_order()
    {
        QByteArrayList slotsFound;
        const QMetaObject &meta = advset_dlg::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            if (meta.method(i).methodType() == QMetaMethod::Slot)
                slotsFound.append(meta.method(i).name());
        }
        QCOMPARE(slotsFound, QByteArrayList({"on_canbtn_clicked", "DoRecv03",
                                             "on_testbtn_2_clicked", "on_testbtn_clicked"}));
    }
};

QTEST_MAIN(TestAdvSetDlg)
#include "tst_advset_dlg.moc"
