// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/lightwall.h"
#include "tests/support/madeupreport.h"
#include "tests/support/widgets.h"

#include <QMouseEvent>
#include <QTest>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;
using lights::Axis;
using lights::LightPlace;

namespace {

constexpr int LightsX = 64;
constexpr int LightsY = 40;
const QString Nothing = u"The frame and its lights"_s;

} // namespace

class TestLightWall : public QObject
{
    Q_OBJECT

private:
    const lights::Report report = madeUpReport(210);
    std::unique_ptr<LightWall> wall;
    QList<LightPlace> chosen;
    QList<LightPlace> opened;

    QPointF middleOf(const LightPlace &place, size_t edge = 0) const
    {
        return lights::Wall(report.measurement, QSizeF(wall->size())).light(place)[edge].center();
    }
    // What is said to be chosen, such as "X 17".
    QString told() const
    {
        const QString name = wall->accessibleName();
        return name.startsWith(Nothing + u". "_s)
                   ? name.sliced(Nothing.size() + 2).section(u':', 0, 0)
                   : QString();
    }
    int marks() const
    {
        return pixelsOf(wall->grab().toImage(), wall->palette().color(QPalette::Highlight));
    }
    // A smaller frame of the same kind.
    static lights::Report smaller(int x, int y)
    {
        lights::Report other = madeUpReport(210);
        for (auto &[axis, count] : {std::pair(Axis::X, x), std::pair(Axis::Y, y)}) {
            other.measurement.axis(axis).lights = count;
            for (lights::Scan &scan : other.measurement.axis(axis).scans)
                scan.resize(size_t(count));
        }
        other.verdicts = judge(other.measurement);
        return other;
    }

private slots:
    void init()
    {
        wall = std::make_unique<LightWall>();
        wall->resize(700, 450);
        chosen.clear();
        opened.clear();
        connect(wall.get(), &LightWall::chosen, this,
                [this](const LightPlace &place) { chosen += place; });
        connect(wall.get(), &LightWall::opened, this,
                [this](const LightPlace &place) { opened += place; });
    }
    void cleanup() { wall.reset(); }

    void before_there_is_a_report_there_is_nothing_to_choose()
    {
        QCOMPARE(wall->accessibleName(), Nothing);
        for (const int key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_End, Qt::Key_Return})
            QTest::keyClick(wall.get(), Qt::Key(key));
        wall->choose({Axis::X, 0});
        QTest::mouseClick(wall.get(), Qt::LeftButton, {}, QPoint(350, 40));
        QTest::mouseMove(wall.get(), QPoint(350, 45));
        QCOMPARE(wall->toolTip(), QString());
        QCOMPARE(wall->accessibleName(), Nothing);
        QVERIFY(chosen.isEmpty() && opened.isEmpty());
        const QImage empty = wall->grab().toImage();
        QCOMPARE(empty.pixelColor(350, 225), wall->palette().color(QPalette::Base));
        wall->setReport(report);
        QVERIFY(wall->grab().toImage() != empty);
        QCOMPARE(wall->accessibleName(), Nothing);
        QCOMPARE(marks(), 0);
    }

    void the_arrow_keys_go_along_an_edge_and_stop_at_its_ends()
    {
        wall->setReport(report);
        const std::pair<int, LightPlace> steps[] = {{Qt::Key_Right, {Axis::X, 1}},
                                                    {Qt::Key_Right, {Axis::X, 2}},
                                                    {Qt::Key_Left, {Axis::X, 1}},
                                                    {Qt::Key_Home, {Axis::X, 0}},
                                                    {Qt::Key_Left, {Axis::X, 0}},
                                                    {Qt::Key_End, {Axis::X, LightsX - 1}},
                                                    {Qt::Key_Right, {Axis::X, LightsX - 1}},
                                                    {Qt::Key_Down, {Axis::Y, 0}},
                                                    {Qt::Key_Down, {Axis::Y, 1}},
                                                    {Qt::Key_Down, {Axis::Y, 2}},
                                                    {Qt::Key_Up, {Axis::Y, 1}},
                                                    {Qt::Key_End, {Axis::Y, LightsY - 1}},
                                                    {Qt::Key_Down, {Axis::Y, LightsY - 1}},
                                                    {Qt::Key_Home, {Axis::Y, 0}},
                                                    {Qt::Key_Up, {Axis::Y, 0}},
                                                    {Qt::Key_Right, {Axis::X, 0}},
                                                    {Qt::Key_Up, {Axis::Y, 0}},
                                                    {Qt::Key_Left, {Axis::X, 0}}};
        for (const auto &[key, place] : steps) {
            QTest::keyClick(wall.get(), Qt::Key(key));
            QCOMPARE(std::exchange(chosen, {}), {place});
            QCOMPARE(told(),
                     (place.axis == Axis::X ? u"X "_s : u"Y "_s) + QString::number(place.number));
        }
        QVERIFY(opened.isEmpty());
    }

    void a_light_is_opened_by_key_when_one_is_chosen()
    {
        wall->setReport(report);
        const int keys[] = {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space};
        for (const int key : keys)
            QTest::keyClick(wall.get(), Qt::Key(key));
        QVERIFY(opened.isEmpty());
        wall->choose({Axis::Y, 7});
        for (const int key : keys) {
            QTest::keyClick(wall.get(), Qt::Key(key));
            QCOMPARE(std::exchange(opened, {}), QList<LightPlace>({{Axis::Y, 7}}));
        }
        QVERIFY(chosen.isEmpty()); // by nobody here
    }

    void other_keys_are_for_the_window()
    {
        wall->setReport(report);
        for (const int key : {Qt::Key_Escape, Qt::Key_F1, Qt::Key_A}) {
            QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
            QCoreApplication::sendEvent(wall.get(), &event);
            QVERIFY(!event.isAccepted());
        }
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QCoreApplication::sendEvent(wall.get(), &event);
        QVERIFY(event.isAccepted()); // a button would else be pressed
    }

    void a_click_at_either_edge_chooses_a_light_and_opens_it()
    {
        wall->setReport(report);
        for (const LightPlace &place : {LightPlace{Axis::X, 17}, LightPlace{Axis::Y, 30}}) {
            for (const size_t edge : {0, 1}) {
                QTest::mouseClick(wall.get(), Qt::LeftButton, {}, middleOf(place, edge).toPoint());
                QCOMPARE(std::exchange(chosen, {}), {place});
                QCOMPARE(std::exchange(opened, {}), {place});
            }
        }
        QTest::mouseClick(wall.get(), Qt::LeftButton, {}, wall->rect().center());
        QTest::mouseClick(wall.get(), Qt::RightButton, {}, middleOf({Axis::X, 3}).toPoint());
        QVERIFY(chosen.isEmpty() && opened.isEmpty());
        QCOMPARE(told(), u"Y 30"_s);
    }

    void the_light_under_the_pointer_is_told_without_a_button()
    {
        wall->setReport(report);
        QVERIFY(wall->hasMouseTracking());
        const auto toldAt = [this](QPointF at) {
            QMouseEvent moved(QEvent::MouseMove, at, wall->mapToGlobal(at), Qt::NoButton,
                              Qt::NoButton, Qt::NoModifier);
            QCoreApplication::sendEvent(wall.get(), &moved);
            return wall->toolTip();
        };
        QVERIFY(toldAt(middleOf({Axis::X, 17})).startsWith(u"X 17: "_s));
        QVERIFY(toldAt(middleOf({Axis::Y, 30}, 1)).startsWith(u"Y 30: "_s));
        QCOMPARE(toldAt(wall->rect().center()), QString());
        QVERIFY(chosen.isEmpty());
    }

    void what_is_marked_is_seen_at_both_edges()
    {
        wall->setReport(report);
        QCOMPARE(marks(), 0);
        wall->mark(Axis::X, 10, 17);
        QCOMPARE(told(), u"X 10"_s);
        const QImage picture = wall->grab().toImage();
        const QColor mark = wall->palette().color(QPalette::Highlight);
        const QImage upper = picture.copy(0, 0, picture.width(), picture.height() / 2);
        const QImage lower =
            picture.copy(0, picture.height() / 2, picture.width(), picture.height() / 2);
        const double width = middleOf({Axis::X, 17}).x() - middleOf({Axis::X, 10}).x();
        for (const QImage &half : {upper, lower})
            QVERIFY(pixelsOf(half, mark) > 2 * int(width));
        const int many = marks();
        wall->choose({Axis::X, 10});
        QVERIFY(marks() > 0 && marks() < many);
        QVERIFY(chosen.isEmpty());
    }

    void the_mark_of_a_thin_light_can_be_seen()
    {
        wall->resize(320, 240);
        wall->setReport(report);
        const lights::Wall places(report.measurement, QSizeF(wall->size()));
        const QColor mark = wall->palette().color(QPalette::Highlight);
        for (const LightPlace &place : {LightPlace{Axis::X, 20}, LightPlace{Axis::Y, 20}}) {
            const bool isX = place.axis == Axis::X;
            const QRectF light = places.light(place)[0];
            QVERIFY((isX ? light.width() : light.height()) < 4);
            wall->choose(place);
            const QImage picture = wall->grab().toImage();
            // Through the middle of the light.
            const QImage line = isX ? picture.copy(0, int(light.center().y()), 320, 1)
                                    : picture.copy(int(light.center().x()), 0, 1, 240);
            QList<int> marked;
            for (int at = 0; at < (isX ? 320 : 240); ++at) {
                if (line.pixelColor(isX ? at : 0, isX ? 0 : at) == mark)
                    marked += at;
            }
            QVERIFY(!marked.isEmpty());
            const int size = marked.last() - marked.first();
            QVERIFY2(size >= 7 && size <= 12, qPrintable(QString::number(size)));
            const double middle = isX ? light.center().x() : light.center().y();
            QVERIFY(qAbs((marked.first() + marked.last()) / 2. - middle) < 1.2);
        }
    }

    void a_light_that_there_is_not_is_not_chosen()
    {
        wall->setReport(report);
        wall->choose({Axis::Y, LightsY - 1});
        QCOMPARE(told(), u"Y 39"_s);
        wall->choose({Axis::Y, LightsY});
        wall->mark(Axis::X, LightsX - 2, LightsX);
        QCOMPARE(told(), u"Y 39"_s);
        wall->mark(Axis::X, LightsX - 2, LightsX - 1);
        QCOMPARE(told(), u"X 62"_s);
    }

    void a_choice_outlives_a_report_that_has_its_light()
    {
        wall->setReport(report);
        wall->choose({Axis::Y, 30});
        const lights::Report again = smaller(LightsX, 31);
        wall->setReport(again);
        QCOMPARE(told(), u"Y 30"_s);
        const lights::Report less = smaller(LightsX, 30);
        wall->setReport(less);
        QCOMPARE(wall->accessibleName(), Nothing);
        QCOMPARE(marks(), 0);
        QTest::keyClick(wall.get(), Qt::Key_Return);
        QVERIFY(opened.isEmpty());
        // Nor does one of the other axis count.
        wall->choose({Axis::X, 40});
        wall->setReport(again);
        QCOMPARE(told(), u"X 40"_s);
        wall->mark(Axis::X, 30, 45);
        const lights::Report narrow = smaller(45, LightsY);
        wall->setReport(narrow);
        QCOMPARE(wall->accessibleName(), Nothing);
    }

    void the_keyboard_is_seen()
    {
        wall->setReport(report);
        wall->show();
        QVERIFY(QTest::qWaitForWindowActive(wall.get()));
        wall->clearFocus();
        QCOMPARE(marks(), 0);
        wall->setFocus();
        // Dots along all four sides.
        const QImage picture = wall->grab().toImage();
        const QColor mark = wall->palette().color(QPalette::Highlight);
        const int width = picture.width();
        const int height = picture.height();
        for (const QRect &side : {QRect(0, 0, width, 3), QRect(0, height - 3, width, 3),
                                  QRect(0, 0, 3, height), QRect(width - 3, 0, 3, height)})
            QVERIFY(pixelsOf(picture.copy(side), mark) > 50);
    }
};

QTEST_MAIN(TestLightWall)
#include "tst_lightwall.moc"
