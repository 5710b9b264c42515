// SPDX-License-Identifier: GPL-3.0-or-later

// The light check at a simulated frame, as a technician uses it.

#include "device/version.h"
#include "dialogs/curves.h"
#include "dialogs/lightcheck_dlg.h"
#include "dialogs/lightset_dlg.h"
#include "dialogs/lightwall.h"
#include "dialogs/readable.h"
#include "dialogs/test_win.h"
#include "lights/history.h"
#include "lights/words.h"
#include "sim/firmware.h"
#include "tests/support/frames.h"
#include "tests/support/hides.h"
#include "tests/support/paints.h"
#include "tests/support/widgets.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using lights::Axis;
using lights::LightPlace;

namespace {

sim::Profile wornFrame()
{
    sim::Profile profile;
    profile.lightsX = 60;
    profile.lightsY = 40;
    profile.oddLights = {{.axis = command::settings::AxisX, .number = 17, .level = 0},
                         {.axis = command::settings::AxisY, .number = 30, .level = 60}};
    return profile;
}

sim::Profile frameWithWeakX17()
{
    sim::Profile profile;
    profile.oddLights = {{.axis = command::settings::AxisX, .number = 17, .level = 60}};
    return profile;
}

// What is painted in this colour.
QRect boxOf(const QImage &picture, QColor colour)
{
    QRect box;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, y) == colour)
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

// A frame that answers as soon as the event loop comes to it.
class QuickLink : public QObject
{
public:
    explicit QuickLink(const sim::Profile &profile)
        : firmware(profile, [this] { return std::chrono::milliseconds(now += 100); })
    {
    }

    template <typename Window>
    void attach(Window *window)
    {
        connect(window, &Window::Write03, this, [this](const UCHAR *bytes) {
            const Frame frame = command::frameAt(bytes);
            asked += text(frame);
            QMetaObject::invokeMethod(
                this, [this, frame] { answer(frame); }, Qt::QueuedConnection);
        });
        receivers.push_back([window](UCHAR *bytes) { window->DoRecv03(bytes); });
    }

    sim::Firmware firmware;
    QList<QByteArray> asked;
    bool unplugged = false;
    int silentAfter = 1000000; // reports

private:
    void answer(const Frame &frame)
    {
        if (unplugged)
            return;
        firmware.command(frame);
        while (firmware.queuedReplies() > 0 && silentAfter-- > 0) {
            const Frame report = firmware.report();
            for (const auto &receiver : receivers) {
                Frame copy = report;
                receiver(copy.data());
            }
        }
    }

    int now = 0;
    std::vector<std::function<void(UCHAR *)>> receivers;
};

} // namespace

class TestLightCheckDlg : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<QWidget> parent;
    std::unique_ptr<QuickLink> link;
    test_win *test = nullptr;
    LightSet_dlg *screen = nullptr;
    LightCheck_dlg *dialog = nullptr;

    QString words(const char *label) const { return in<QLabel>(dialog, label)->text(); }
    QString notice() const
    {
        const auto *label = in<QLabel>(dialog, "notice");
        return label->isVisible() ? label->text() : QString();
    }
    bool isMeasuring() const { return in(dialog, "measureButton")->text() == u"&Stop"_s; }
    void start(const sim::Profile &profile = wornFrame())
    {
        parent = std::make_unique<QWidget>();
        link = std::make_unique<QuickLink>(profile);
        test = new test_win(parent.get());
        screen = new LightSet_dlg(parent.get());
        dialog = new LightCheck_dlg(parent.get());
        link->attach(test);
        link->attach(screen);
        link->attach(dialog);
        dialog->linkBegan(lights::Measuring::Source::Usb);
        dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog));
    }
    void measure()
    {
        press(dialog, "measureButton");
        QVERIFY(isMeasuring());
        QTRY_VERIFY_WITH_TIMEOUT(!isMeasuring(), 20000);
    }
    int rowOf(const QString &name) const
    {
        const auto *rows = in<QTableView>(dialog, "table")->model();
        for (int row = 0; row < rows->rowCount(); ++row) {
            if (rows->index(row, 0).data().toString() == name)
                return row;
        }
        return -1;
    }
    // What can be compared with, as the menu has it: the newest, others, a file, nothing.
    QList<QAction *> baselines() const
    {
        auto *menu = in(dialog, "compareButton")->menu();
        emit menu->aboutToShow();
        QList<QAction *> entries = menu->actions();
        entries.removeIf([](const QAction *entry) { return entry->isSeparator(); });
        return entries;
    }
    QString chosenRow() const
    {
        return in<QTableView>(dialog, "table")->currentIndex().siblingAtColumn(0).data().toString();
    }

private slots:
    void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(folder->path()));
    }
    void cleanup()
    {
        parent.reset();
        link.reset();
    }

    void a_measurement_ends_in_a_verdict()
    {
        start();
        QCOMPARE(words("verdictLab"), u"Not measured yet"_s);
        QVERIFY(!in(dialog, "reportButton")->isEnabled());
        measure();
        QCOMPARE(words("verdictLab"), u"SERVICE NEEDED"_s);
        QCOMPARE(notice(), QString());
        QVERIFY(words("unitLab").startsWith(u"Unit 21-01234-1605, measured "_s));
        QCOMPARE(dialog->shown().measurement.x.scans.size(), 16U);
        QVERIFY(in(dialog, "reportButton")->isEnabled());
        QStringList findings;
        for (int i = 0; i < in<QListWidget>(dialog, "findingsList")->count(); ++i)
            findings += in<QListWidget>(dialog, "findingsList")->item(i)->text();
        QVERIFY(findings.contains(u"X 17: dead. See whether light X 17 is covered; if not, replace "
                                  "its board."_s));
        QVERIFY(!findings.filter(u"Touches at light X 17 are missed."_s).isEmpty());
    }

    void a_healthy_frame_passes()
    {
        start({});
        measure();
        QCOMPARE(words("verdictLab"), u"PASS"_s);
        QCOMPARE(in<QListWidget>(dialog, "findingsList")->count(), 0);
    }

    void a_verdict_is_read_on_a_colour_of_its_own()
    {
        start({});
        const auto look = [this] {
            const auto *verdict = in<QLabel>(dialog, "verdictLab");
            const QRect place(verdict->mapTo(dialog, QPoint()), verdict->size());
            const QImage label = dialog->grab(place).toImage();
            return std::pair(label.pixelColor(1, 1), pixelsOf(label, Qt::white));
        };
        const QColor none = look().first;
        measure();
        const auto [pass, passWords] = look();
        link->firmware = sim::Firmware(frameWithWeakX17(), [] { return 0ms; });
        measure();
        const auto [service, serviceWords] = look();
        QVERIFY(pass != none && service != none && pass != service);
        for (const QColor &ground : {pass, service})
            QVERIFY2(readable::contrast(ground, Qt::white) >= readable::LeastContrast,
                     qPrintable(ground.name()));
        QVERIFY(passWords > 50 && serviceWords > 50);
    }

    void a_frame_with_more_lights_of_y_than_of_x_is_judged_too()
    {
        sim::Profile upright;
        upright.lightsX = 40;
        upright.lightsY = 60;
        start(upright);
        measure();
        QCOMPARE(words("verdictLab"), u"PASS"_s);
        QVERIFY(in(dialog, "reportButton")->isEnabled());
    }

    void without_a_frame_nothing_can_be_measured()
    {
        LightCheck_dlg alone;
        alone.show();
        QVERIFY(QTest::qWaitForWindowExposed(&alone));
        const auto *unit = in<QLabel>(&alone, "unitLab");
        QVERIFY(!in(&alone, "measureButton")->isEnabled());
        QVERIFY(!in<QProgressBar>(&alone, "progress")->isVisible());
        QCOMPARE(unit->text(), u"No touch frame is linked."_s);
        alone.linkBegan(lights::Measuring::Source::Usb);
        QVERIFY(in(&alone, "measureButton")->isEnabled());
        QCOMPARE(unit->text(), QString());
        alone.OnLinkEnded();
        QVERIFY(!in(&alone, "measureButton")->isEnabled());
        QCOMPARE(unit->text(), u"No touch frame is linked."_s);
        QVERIFY(!in<QLabel>(&alone, "notice")->isVisible());
    }

    void how_far_a_measurement_is_can_be_seen()
    {
        start();
        const auto *progress = in<QProgressBar>(dialog, "progress");
        QVERIFY(!progress->isVisible());
        press(dialog, "measureButton");
        QVERIFY(progress->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(!isMeasuring(), 20000);
        QVERIFY(!progress->isVisible());
        QCOMPARE(progress->value(), progress->maximum());
        // A series has no end to come nearer to.
        in<QCheckBox>(dialog, "followBox")->setChecked(true);
        press(dialog, "measureButton");
        QVERIFY(isMeasuring());
        QVERIFY(!progress->isVisible());
        press(dialog, "measureButton");
    }

    void the_table_has_every_light_and_sorts_by_what_is_asked()
    {
        start();
        measure();
        in<QTabWidget>(dialog, "tabs")->setCurrentIndex(1);
        auto *table = in<QTableView>(dialog, "table");
        QCOMPARE(table->model()->rowCount(), 100);
        QCOMPARE(table->horizontalHeader()->length(), table->viewport()->width());
        QCOMPARE(rowOf(u"X 2"_s), 2); // not behind X 19
        QCOMPARE(table->horizontalHeader()->sortIndicatorSection(), 0);
        QCOMPARE(table->horizontalHeader()->sortIndicatorOrder(), Qt::AscendingOrder);
        table->sortByColumn(2, Qt::AscendingOrder);
        QCOMPARE(rowOf(u"X 17"_s), 0);
        QCOMPARE(rowOf(u"Y 30"_s), 1);
        const QModelIndex verdict = table->model()->index(1, 1);
        QCOMPARE(verdict.data().toString(), u"weak"_s);
        QCOMPARE(verdict.data(Qt::AccessibleTextRole).toString(), u"Verdict of light Y 30: weak"_s);
    }

    void the_table_tells_what_was_measured()
    {
        start();
        auto *table = in<QTableView>(dialog, "table");
        auto *sorted = qobject_cast<QSortFilterProxyModel *>(table->model());
        QAbstractItemModelTester tester(sorted->sourceModel());
        QVERIFY(!sorted->sourceModel()->data(QModelIndex()).isValid());
        measure();
        QStringList titles;
        for (int column = 0; column < sorted->columnCount(); ++column)
            titles += sorted->headerData(column, Qt::Horizontal).toString();
        QCOMPARE(titles, QStringList({u"Light"_s, u"Verdict"_s, u"Level"_s, u"Healthy level"_s,
                                      u"Noise"_s, u"Change, %"_s}));
        const lights::Light &weak = dialog->shown().verdicts.y.lights.at(30);
        const auto number = [](double value) { return QString::number(value, 'f', 1); };
        const int row = rowOf(u"Y 30"_s);
        QStringList cells;
        for (int column = 0; column < sorted->columnCount(); ++column) {
            const QModelIndex cell = sorted->index(row, column);
            cells += cell.data().toString();
            QCOMPARE(bool(cell.data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight), column > 1);
        }
        QCOMPARE(cells, QStringList({u"Y 30"_s, u"weak"_s, number(weak.level),
                                     number(weak.expected), number(weak.noise), QString()}));
        QVERIFY(weak.level > 0 && weak.expected > weak.level);
        // The worst ones can be had on top.
        table->sortByColumn(1, Qt::DescendingOrder);
        QCOMPARE(rowOf(u"X 17"_s), 0);
        QCOMPARE(rowOf(u"Y 30"_s), 1);
        table->sortByColumn(3, Qt::AscendingOrder);
        for (int i = 1; i < sorted->rowCount(); ++i)
            QVERIFY(sorted->index(i - 1, 3).data().toDouble() <=
                    sorted->index(i, 3).data().toDouble());
        const QModelIndex light = sorted->sourceModel()->index(99, 5);
        QCOMPARE(sorted->sourceModel()->rowCount(light), 0);
        QCOMPARE(sorted->sourceModel()->columnCount(light), 0);
        // A frame with as many lights may have them elsewhere.
        QSignalSpy changed(sorted->sourceModel(), &QAbstractItemModel::dataChanged);
        measure();
        QCOMPARE(changed.last()[0].toModelIndex(), sorted->sourceModel()->index(0, 0));
        QCOMPARE(changed.last()[1].toModelIndex(), light);
        QCOMPARE(sorted->index(rowOf(u"Y 30"_s), 1).data().toString(), u"weak"_s);
    }

    void a_light_chosen_in_the_table_is_shown_everywhere_and_enter_opens_it()
    {
        start();
        measure();
        in<QTabWidget>(dialog, "tabs")->setCurrentIndex(1);
        auto *table = in<QTableView>(dialog, "table");
        table->sortByColumn(2, Qt::AscendingOrder); // X 17, Y 30, and the healthy ones
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          table->visualRect(table->model()->index(1, 2)).center());
        QVERIFY(in<LightWall>(dialog, "wall")->accessibleName().contains(u"Y 30: weak, level "_s));
        QVERIFY(in<QWidget>(dialog, "curves")->accessibleName().contains(u"Y 30: weak, level "_s));
        QTest::qWait(50);
        const Paints paints(in<LightWall>(dialog, "wall"));
        QTest::keyClick(table, Qt::Key_Up);
        QVERIFY(in<LightWall>(dialog, "wall")->accessibleName().contains(u"X 17: dead, level "_s));
        QTRY_VERIFY(paints.count > 0);
        QTest::keyClick(table, Qt::Key_Down);
        QVERIFY(!screen->isVisible());
        QTest::keyClick(table, Qt::Key_Return);
        QTRY_VERIFY(screen->isVisible());
        QCOMPARE(screen->findChild<QLineEdit *>(u"LightDir"_s)->text(), u"Y"_s);
        QCOMPARE(screen->findChild<QLineEdit *>(u"LightNum"_s)->text(), u"30"_s);
        screen->close();
    }

    void a_finding_shows_its_place()
    {
        start();
        measure();
        auto *list = in<QListWidget>(dialog, "findingsList");
        const auto weak = list->findItems(u"Y 30: weak"_s, Qt::MatchStartsWith);
        QCOMPARE(weak.size(), 1);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(weak.first()).center());
        QCOMPARE(chosenRow(), u"Y 30"_s);
        QVERIFY(in<LightWall>(dialog, "wall")->accessibleName().contains(u"Y 30: weak, level "_s));
        QVERIFY(in<QWidget>(dialog, "curves")->accessibleName().contains(u"Y 30: weak, level "_s));
        // Who takes the choice back still sees where that was.
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::ControlModifier,
                          list->visualItemRect(weak.first()).center());
        QVERIFY(list->selectedItems().isEmpty());
        QCOMPARE(chosenRow(), u"Y 30"_s);
    }

    void all_lights_of_a_finding_are_marked_on_the_frame()
    {
        sim::Profile broken;
        broken.lightsX = 30;
        broken.lightsY = 20;
        for (int number = 10; number < 18; ++number)
            broken.oddLights.push_back(
                {.axis = command::settings::AxisX, .number = number, .level = 0});
        start(broken);
        measure();
        auto *list = in<QListWidget>(dialog, "findingsList");
        const auto board = list->findItems(u"X 10 to X 17: "_s, Qt::MatchStartsWith);
        QCOMPARE(board.size(), 1);
        auto *wall = in<LightWall>(dialog, "wall");
        const QColor marks = wall->palette().color(QPalette::Highlight);
        QVERIFY(boxOf(wall->grab().toImage(), marks).isEmpty());
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(board.first()).center());
        const lights::Wall places(dialog->shown().measurement, QSizeF(wall->size()));
        const double pitch = places.light({Axis::X, 10})[0].width();
        QVERIFY2(pitch > 6, qPrintable(QString::number(pitch)));
        const auto isMarked = [&](int first, int last) {
            const QRect box = boxOf(wall->grab().toImage(), marks);
            return qAbs(box.left() - places.light({Axis::X, first})[0].left()) < pitch / 2 &&
                   qAbs(box.right() - places.light({Axis::X, last})[0].right()) < pitch / 2;
        };
        QVERIFY(isMarked(10, 17));
        // The curves show them larger.
        auto *curves = in<QWidget>(dialog, "curves");
        QCoreApplication::processEvents();
        const QImage larger = curves->grab().toImage();
        QTest::keyClick(curves, Qt::Key_0);
        QTRY_VERIFY(curves->grab().toImage() != larger);
        wall->choose({Axis::X, 12});
        QVERIFY(isMarked(12, 12));
    }

    void the_frame_shows_whether_it_has_the_keyboard()
    {
        start();
        measure();
        auto *wall = in<LightWall>(dialog, "wall");
        const QImage without = wall->grab().toImage();
        Paints paints(wall);
        wall->setFocus();
        QTRY_VERIFY(paints.count > 0);
        QVERIFY(wall->grab().toImage() != without);
        paints.count = 0;
        in<QListWidget>(dialog, "findingsList")->setFocus();
        QTRY_VERIFY(paints.count > 0);
        QVERIFY(wall->grab().toImage() == without);
    }

    void the_frame_cannot_be_squeezed_until_no_light_is_seen()
    {
        start();
        in<QSplitter>(dialog, "columns")->setSizes({1, 2000});
        in<QSplitter>(dialog, "rows")->setSizes({1, 2000});
        QTest::qWait(50);
        QVERIFY(in<LightWall>(dialog, "wall")->width() >= 200);
        QVERIFY(in<LightWall>(dialog, "wall")->height() >= 120);
    }

    void the_keyboard_walks_along_the_frame_and_the_curves()
    {
        start();
        measure();
        auto *wall = in<LightWall>(dialog, "wall");
        wall->setFocus();
        for (int i = 0; i < 17; ++i)
            QTest::keyClick(wall, Qt::Key_Right);
        QCOMPARE(chosenRow(), u"X 17"_s);
        QVERIFY(wall->accessibleName().contains(u"X 17: dead, level "_s));
        QTest::keyClick(wall, Qt::Key_Down);
        QCOMPARE(chosenRow(), u"Y 0"_s);
        QTest::keyClick(wall, Qt::Key_End);
        QCOMPARE(chosenRow(), u"Y 39"_s);
        auto *curves = in<QWidget>(dialog, "curves");
        curves->setFocus();
        QTest::keyClick(curves, Qt::Key_Left);
        QCOMPARE(chosenRow(), u"Y 38"_s);
        QTest::keyClick(curves, Qt::Key_Up);
        QCOMPARE(chosenRow(), u"X 38"_s);
        QVERIFY(curves->accessibleName().contains(u"X 38: healthy, level "_s));
        QTest::keyClick(curves, Qt::Key_End);
        QCOMPARE(chosenRow(), u"X 59"_s);
        QTest::qWait(100); // it is drawn anew
        const QImage whole = curves->grab().toImage();
        QTest::keyClick(curves, Qt::Key_Plus);
        QTRY_VERIFY(curves->grab().toImage() != whole);
        QTest::keyClick(curves, Qt::Key_0);
        QTRY_VERIFY(curves->grab().toImage() == whole);
    }

    void the_keyboard_goes_back_along_the_frame_and_round_its_corner()
    {
        start();
        auto *wall = in<LightWall>(dialog, "wall");
        wall->setFocus();
        QTest::keyClick(wall, Qt::Key_Right); // before there are lights
        QCOMPARE(wall->accessibleName(), u"The frame and its lights"_s);
        auto *curves = in<QWidget>(dialog, "curves");
        curves->setFocus();
        QTest::keyClick(curves, Qt::Key_Right);
        QCOMPARE(curves->accessibleName(), u"Curves of the levels"_s);
        measure();
        wall->setFocus();
        const std::pair<Qt::Key, QString> steps[] = {
            {Qt::Key_Left, u"X 0"_s}, {Qt::Key_End, u"X 59"_s},  {Qt::Key_Left, u"X 58"_s},
            {Qt::Key_Up, u"Y 0"_s},   {Qt::Key_Down, u"Y 1"_s},  {Qt::Key_Down, u"Y 2"_s},
            {Qt::Key_Up, u"Y 1"_s},   {Qt::Key_Home, u"Y 0"_s},  {Qt::Key_Up, u"Y 0"_s},
            {Qt::Key_End, u"Y 39"_s}, {Qt::Key_Down, u"Y 39"_s}, {Qt::Key_Left, u"X 0"_s}};
        for (const auto &[key, light] : steps) {
            QTest::keyClick(wall, key);
            QCOMPARE(chosenRow(), light);
        }
        // Whoever has the table beside it sees the row.
        in<QTabWidget>(dialog, "tabs")->setCurrentIndex(1);
        const auto *table = in<QTableView>(dialog, "table");
        QTest::qWait(50);
        Paints paints(table->viewport());
        QTest::keyClick(wall, Qt::Key_End);
        QCOMPARE(chosenRow(), u"X 59"_s);
        const auto row = [table] {
            return table->visualRect(table->currentIndex().siblingAtColumn(3));
        };
        QVERIFY(table->viewport()->rect().contains(row()));
        QTRY_VERIFY(paints.region.contains(row().center()));
        QTest::qWait(50);
        paints.region = {};
        QTest::keyClick(wall, Qt::Key_Left); // this row is in view already
        QTRY_VERIFY(paints.region.contains(row().center()));
        QTest::keyClick(wall, Qt::Key_Space);
        QTRY_VERIFY(screen->isVisible());
        screen->close();
        // Any other key is the window's.
        QKeyEvent other(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(wall, &other);
        QVERIFY(!dialog->isVisible());
    }

    void the_light_under_the_pointer_is_told()
    {
        start();
        measure();
        auto *wall = in<LightWall>(dialog, "wall");
        const lights::Wall places(dialog->shown().measurement, QSizeF(wall->size()));
        const auto pointAt = [wall](QPointF at) {
            QMouseEvent moved(QEvent::MouseMove, at, wall->mapToGlobal(at), Qt::NoButton,
                              Qt::NoButton, Qt::NoModifier);
            QCoreApplication::sendEvent(wall, &moved);
            return wall->toolTip();
        };
        QVERIFY2(pointAt(places.light({Axis::X, 17})[0].center()).startsWith(u"X 17: dead"_s),
                 qPrintable(wall->toolTip()));
        QVERIFY2(pointAt(places.light({Axis::Y, 30})[1].center()).startsWith(u"Y 30: weak"_s),
                 qPrintable(wall->toolTip()));
        QCOMPARE(pointAt(QPointF(wall->rect().center())), QString());
    }

    void a_right_click_opens_nothing()
    {
        start();
        measure();
        auto *wall = in<LightWall>(dialog, "wall");
        const lights::Wall places(dialog->shown().measurement, QSizeF(wall->size()));
        const QPoint at = places.light({Axis::X, 17})[1].center().toPoint();
        QTest::mouseClick(wall, Qt::RightButton, {}, at);
        QTest::mouseClick(wall, Qt::LeftButton, {}, wall->rect().center());
        QCOMPARE(wall->accessibleName(), u"The frame and its lights"_s);
        QVERIFY(!screen->isVisible());
    }

    void a_light_that_the_next_frame_does_not_have_is_no_longer_chosen()
    {
        start();
        measure();
        auto *wall = in<LightWall>(dialog, "wall");
        wall->choose({Axis::Y, 39});
        QVERIFY(wall->accessibleName().contains(u"Y 39: "_s));
        wall->choose({Axis::Y, 40});
        QVERIFY(wall->accessibleName().contains(u"Y 39: "_s));
        sim::Profile smaller = wornFrame();
        smaller.lightsY = 39;
        smaller.oddLights = {};
        link->firmware = sim::Firmware(smaller, [] { return 0ms; });
        measure();
        QCOMPARE(in<QTableView>(dialog, "table")->model()->rowCount(), 99);
        QCOMPARE(wall->accessibleName(), u"The frame and its lights"_s);
    }

    void a_double_click_on_the_curves_opens_a_light()
    {
        start();
        measure();
        auto *curves = in<QWidget>(dialog, "curves");
        // Somewhere in the left half are the lights of X.
        const QPoint at(curves->width() / 4, curves->height() / 3);
        QTest::mouseClick(curves, Qt::LeftButton, {}, at);
        const QString light = chosenRow();
        QVERIFY2(light.startsWith(u"X "_s), qPrintable(light));
        QTest::mouseDClick(curves, Qt::LeftButton, {}, at);
        QTRY_VERIFY(screen->isVisible());
        QCOMPARE(screen->findChild<QLineEdit *>(u"LightDir"_s)->text(), u"X"_s);
        QCOMPARE(screen->findChild<QLineEdit *>(u"LightNum"_s)->text(), light.mid(2));
        screen->close();
    }

    void without_a_frame_no_light_is_opened()
    {
        start();
        measure();
        dialog->OnLinkEnded();
        auto *wall = in<LightWall>(dialog, "wall");
        wall->choose({Axis::Y, 30});
        wall->setFocus();
        QTest::keyClick(wall, Qt::Key_Return);
        QTest::qWait(100);
        QVERIFY(!screen->isVisible());
    }

    // As a damaged installation has it. Programs look for their parts where they were told when
    // they were linked, so this one is started again where that is an empty file.
    void without_its_curves_the_rest_works()
    {
        constexpr const char *Without = "QUORVEL_TEST_WITHOUT_CURVES";
        if (!qEnvironmentVariableIsSet(Without)) {
            start();
            QVERIFY(in<QWidget>(dialog, "curves"));
            QFile maps(u"/proc/self/maps"_s);
            QVERIFY(maps.open(QIODevice::ReadOnly));
            const auto part = QRegularExpression(u"/\\S*/quorvel-curves\\.so"_s)
                                  .match(QString::fromLocal8Bit(maps.readAll()));
            QVERIFY(part.hasMatch());
            QStringList words = {u"--mount"_s,
                                 u"sh"_s,
                                 u"-c"_s,
                                 u"mount --bind /dev/null \"$0\" && exec \"$@\""_s,
                                 part.captured(),
                                 QCoreApplication::applicationFilePath(),
                                 QString::fromLatin1(QTest::currentTestFunction())};
            if (geteuid() != 0)
                words.prepend(u"--map-root-user"_s);
            QProcess again;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(QString::fromLatin1(Without), u"1"_s);
            again.setProcessEnvironment(environment);
            again.setProcessChannelMode(QProcess::MergedChannels);
            again.start(u"unshare"_s, words);
            QVERIFY(again.waitForFinished(60000));
            QVERIFY2(again.exitCode() == 0, again.readAll());
            return;
        }
        start();
        QVERIFY(!in<QWidget>(dialog, "curves"));
        QStringList told;
        for (const QLabel *label : dialog->findChildren<QLabel *>())
            told += label->isVisible() ? label->text() : QString();
        QVERIFY2(!told.filter(u"A part of Quorvel is missing: install it again. ("_s).isEmpty(),
                 qPrintable(told.join(u'\n')));
        // Where the curves would be.
        QStringList besides;
        for (const QLabel *label :
             in<QTabWidget>(dialog, "tabs")->currentWidget()->findChildren<QLabel *>()) {
            besides += label->text();
            // A long reason makes no wide window.
            QVERIFY(label->minimumSizeHint().width() <
                    label->fontMetrics().horizontalAdvance(label->text()));
        }
        QVERIFY2(besides.join(u'\n').contains(u"A part of Quorvel is missing"_s),
                 qPrintable(besides.join(u'\n')));
        measure();
        QCOMPARE(words("verdictLab"), u"SERVICE NEEDED"_s);
        auto *wall = in<LightWall>(dialog, "wall");
        wall->setFocus();
        QTest::keyClick(wall, Qt::Key_End);
        QCOMPARE(chosenRow(), u"X 59"_s);
        in<QListWidget>(dialog, "findingsList")->setCurrentRow(0);
        QVERIFY(wall->accessibleName() != u"The frame and its lights"_s);
    }

    void enter_opens_a_light_in_the_light_screen()
    {
        start();
        measure();
        auto *wall = in<LightWall>(dialog, "wall");
        wall->choose({Axis::Y, 30});
        wall->setFocus();
        QTest::keyClick(wall, Qt::Key_Return);
        QTRY_VERIFY(screen->isVisible());
        QCOMPARE(screen->findChild<QLineEdit *>(u"LightDir"_s)->text(), u"Y"_s);
        QCOMPARE(screen->findChild<QLineEdit *>(u"LightNum"_s)->text(), u"30"_s);
        QTRY_COMPARE_WITH_TIMEOUT(screen->findChild<QLineEdit *>(u"LightAGC"_s)->text().isEmpty(),
                                  false, 10000);
        QCOMPARE(screen->findChild<QLineEdit *>(u"LightNum"_s)->text(), u"30"_s);
        screen->close();
    }

    void a_click_on_a_light_opens_it()
    {
        start();
        measure();
        auto *wall = in<LightWall>(dialog, "wall");
        const lights::Wall places(dialog->shown().measurement, QSizeF(wall->size()));
        QTest::mouseClick(wall, Qt::LeftButton, {},
                          places.light({Axis::X, 17})[1].center().toPoint());
        QTRY_VERIFY(screen->isVisible());
        QCOMPARE(screen->findChild<QLineEdit *>(u"LightNum"_s)->text(), u"17"_s);
        screen->close();
    }

    void a_series_follows_the_frame_until_it_is_stopped()
    {
        start({});
        in<QCheckBox>(dialog, "followBox")->setChecked(true);
        press(dialog, "measureButton");
        QTRY_COMPARE_WITH_TIMEOUT(words("verdictLab"), u"PASS"_s, 5000);
        link->firmware.command(command::LightRequest{.sub = command::settings::SwitchLight,
                                                     .light = {command::settings::AxisX, 50},
                                                     .off = true}
                                   .encode());
        QTRY_COMPARE_WITH_TIMEOUT(words("verdictLab"), u"SERVICE NEEDED"_s, 10000);
        const QRegularExpression following(
            u"^Following the touch frame: [1-9][0-9]* scan.* of each axis so far\\.$"_s);
        QTRY_VERIFY2(following.match(notice()).hasMatch(), qPrintable(notice()));
        QVERIFY(isMeasuring());
        // Each scan of it is seen.
        Paints paints(in<LightWall>(dialog, "wall"));
        QTRY_VERIFY(paints.count > 2);
        press(dialog, "measureButton");
        QVERIFY(!isMeasuring());
        QCOMPARE(notice(), QString());
        link->asked.clear();
        QTest::qWait(300);
        QCOMPARE(link->asked, QList<QByteArray>());
    }

    void a_series_keeps_the_finding_that_is_looked_at()
    {
        start();
        in<QCheckBox>(dialog, "followBox")->setChecked(true);
        press(dialog, "measureButton");
        auto *list = in<QListWidget>(dialog, "findingsList");
        const auto row = [list](const QString &begin) {
            const auto found = list->findItems(begin, Qt::MatchStartsWith);
            return found.isEmpty() ? -1 : list->row(found.first());
        };
        QTRY_VERIFY_WITH_TIMEOUT(row(u"Y 30: weak"_s) >= 0, 5000);
        const int before = row(u"Y 30: weak"_s);
        list->setCurrentRow(before);
        const auto switchOff = [this](UCHAR axis, int number) {
            link->firmware.command(command::LightRequest{
                .sub = command::settings::SwitchLight, .light = {axis, number}, .off = true}
                                       .encode());
        };
        switchOff(command::settings::AxisX, 50);
        QTRY_VERIFY_WITH_TIMEOUT(row(u"Y 30: weak"_s) > before, 10000);
        QCOMPARE(list->currentRow(), row(u"Y 30: weak"_s));
        QVERIFY(list->currentItem()->isSelected());
        // Also when there is something else to be said of it.
        switchOff(command::settings::AxisY, 30);
        QTRY_COMPARE_WITH_TIMEOUT(row(u"Y 30: weak"_s), -1, 10000);
        QCOMPARE(list->currentRow(), row(u"Y 30: "_s));
        // With the light that it is of it goes too.
        link->firmware = sim::Firmware(frameWithWeakX17(), [] { return 0ms; });
        dialog->linkBegan(lights::Measuring::Source::Usb);
        QTRY_COMPARE_WITH_TIMEOUT(row(u"Y 30: "_s), -1, 10000);
        QCOMPARE(list->currentRow(), -1);
        press(dialog, "measureButton");
    }

    void who_opens_a_light_looks_at_no_series_any_more()
    {
        start();
        in<QCheckBox>(dialog, "followBox")->setChecked(true);
        press(dialog, "measureButton");
        QTRY_VERIFY(!dialog->shown().measurement.x.scans.empty());
        auto *wall = in<LightWall>(dialog, "wall");
        wall->choose({Axis::Y, 30});
        wall->setFocus();
        QTest::keyClick(wall, Qt::Key_Return);
        QVERIFY(!isMeasuring());
        QVERIFY(in<QCheckBox>(dialog, "followBox")->isEnabled());
        QTRY_VERIFY(screen->isVisible());
        QTRY_VERIFY(!screen->findChild<QLineEdit *>(u"LightAGC"_s)->text().isEmpty());
        screen->close();
    }

    void the_signal_test_stands_aside_and_goes_on_afterwards()
    {
        start();
        test->show();
        test->findChild<QLineEdit *>(u"interal_text"_s)->setText(u"1"_s);
        press(test, "ALL_btn");
        QTRY_VERIFY(link->asked.contains("00 A5"));
        in<QCheckBox>(dialog, "followBox")->setChecked(true);
        press(dialog, "measureButton");
        link->asked.clear();
        QTRY_VERIFY_WITH_TIMEOUT(dialog->shown().measurement.x.scans.size() == 16, 20000);
        QVERIFY(!link->asked.contains("00 A5"));
        QCOMPARE(test->findChild<QLabel *>(u"notice"_s)->text(),
                 u"The test waits until the light check has ended"_s);
        link->asked.clear();
        press(dialog, "measureButton");
        QTRY_VERIFY(link->asked.contains("00 A5"));
        press(test, "ALL_btn");
    }

    void the_light_screen_stands_aside_and_goes_on_afterwards()
    {
        start();
        in<QCheckBox>(dialog, "followBox")->setChecked(true);
        press(dialog, "measureButton");
        screen->show();
        QVERIFY(QTest::qWaitForWindowExposed(screen));
        QTest::qWait(600);
        QCOMPARE(screen->findChild<QLineEdit *>(u"MinADC"_s)->text(), QString());
        QTRY_COMPARE(screen->findChild<QLabel *>(u"notice"_s)->text(),
                     u"This waits until the light check has ended"_s);
        dialog->close();
        QTRY_VERIFY_WITH_TIMEOUT(!screen->findChild<QLineEdit *>(u"MinADC"_s)->text().isEmpty(),
                                 5000);
        QVERIFY(screen->findChild<QLabel *>(u"notice"_s)->text().isEmpty());
        screen->close();
    }

    void an_unplug_is_survived()
    {
        start();
        press(dialog, "measureButton");
        link->unplugged = true;
        dialog->OnLinkEnded();
        QVERIFY(isMeasuring());
        QCOMPARE(notice(), u"The touch frame is gone. Measuring begins anew when one is there."_s);
        QCoreApplication::processEvents();
        link->unplugged = false;
        dialog->linkBegan(lights::Measuring::Source::Usb);
        QCOMPARE(notice(), QString());
        QTRY_VERIFY_WITH_TIMEOUT(!isMeasuring(), 20000);
        QCOMPARE(words("verdictLab"), u"SERVICE NEEDED"_s);
        dialog->OnLinkEnded();
        QCOMPARE(words("verdictLab"), u"SERVICE NEEDED"_s); // and says of which unit
        QVERIFY(!in(dialog, "measureButton")->isEnabled());
    }

    void a_frame_that_falls_silent_is_told()
    {
        start();
        link->silentAfter = 10;
        press(dialog, "measureButton");
        QTRY_VERIFY_WITH_TIMEOUT(!isMeasuring(), 15000);
        QVERIFY(!notice().isEmpty());
        QCOMPARE(words("verdictLab"), u"Not measured yet"_s);
        press(dialog, "measureButton");
        QCOMPARE(notice(), QString());
    }

    void what_was_remembered_is_compared_with()
    {
        start({});
        measure();
        press(dialog, "rememberButton");
        QVERIFY2(notice().startsWith(u"Remembered."_s), qPrintable(notice()));
        // Not with itself.
        baselines().first()->trigger();
        QCOMPARE(words("comparisonLab"), QString());
        link->firmware = sim::Firmware(frameWithWeakX17(), [] { return 0ms; });
        measure();
        const QStringList sentences = words("comparisonLab").split(u'\n');
        QCOMPARE(sentences.size(), 2);
        QVERIFY2(QRegularExpression(u"^Since .+ light X 17 has changed most for the worse, by "
                                    "-[5-9][0-9]\\.[0-9] % beside the others\\.$"_s)
                     .match(sentences[0])
                     .hasMatch(),
                 qPrintable(sentences[0]));
        QVERIFY2(sentences[1].startsWith(u"The weakest light is X 17 at level "_s),
                 qPrintable(sentences[1]));
        auto *table = in<QTableView>(dialog, "table");
        const QString change = table->model()->index(rowOf(u"X 17"_s), 5).data().toString();
        QVERIFY2(change.toDouble() < -50, qPrintable(change));
        // Not compared with anything.
        auto *menu = in(dialog, "compareButton")->menu();
        emit menu->aboutToShow();
        QCOMPARE(menu->actions().size(), 5); // the newest, its date, a line, a file, nothing
        menu->actions().last()->trigger();
        QCOMPARE(words("comparisonLab"), QString());
    }

    void any_of_the_last_dozen_that_were_remembered_is_compared_with()
    {
        start({});
        measure();
        lights::Measurement earlier = dialog->shown().measurement;
        const QDateTime now = earlier.date;
        for (int days = 1; days <= 13; ++days) {
            earlier.date = now.addDays(-days);
            QString problem;
            QVERIFY2(lights::History().remember(earlier, &problem), qPrintable(problem));
        }
        press(dialog, "rememberButton");
        // The newest, twelve dates, a file, nothing.
        QCOMPARE(baselines().size(), 15);
        QVERIFY(baselines().first()->isChecked());
        QCOMPARE(baselines().first()->text(), u"&What was remembered last"_s);
        QCOMPARE(baselines().at(13)->text(), u"A &file..."_s);
        QCOMPARE(baselines().last()->text(), u"&Nothing"_s);
        const auto dateOf = [&](int days) {
            return QLocale().toString(now.addDays(-days).toLocalTime(), QLocale::ShortFormat);
        };
        QCOMPARE(baselines().at(1)->text(), dateOf(0));
        QCOMPARE(baselines().at(12)->text(), dateOf(11));
        baselines().at(6)->trigger();
        QVERIFY2(words("comparisonLab").startsWith(u"Since %1 light "_s.arg(dateOf(5))),
                 qPrintable(words("comparisonLab")));
        for (int i = 0; i < 15; ++i)
            QCOMPARE(baselines().at(i)->isChecked(), i == 6);
        baselines().last()->trigger();
        for (int i = 0; i < 15; ++i)
            QCOMPARE(baselines().at(i)->isChecked(), i == 14);
        baselines().first()->trigger();
        QVERIFY2(words("comparisonLab").startsWith(u"Since %1 light "_s.arg(dateOf(1))),
                 qPrintable(words("comparisonLab")));
    }

    void a_file_is_compared_with_until_something_is_remembered()
    {
        start({});
        measure();
        const QString then = folder->filePath(u"then.json"_s);
        dialog->saveReport(then);
        link->firmware = sim::Firmware(frameWithWeakX17(), [] { return 0ms; });
        measure();
        QCOMPARE(words("comparisonLab"), QString());
        QVERIFY(!in<QLabel>(dialog, "comparisonLab")->isVisible());
        whenOpen<QFileDialog>([&](QFileDialog *asked) {
            QCOMPARE(asked->windowModality(), Qt::WindowModal);
            QCOMPARE(asked->fileMode(), QFileDialog::ExistingFile);
            chooseFile(asked, then);
        });
        baselines().at(1)->trigger();
        const QString changed = u"light X 17 has changed most"_s;
        QVERIFY2(words("comparisonLab").contains(changed), qPrintable(words("comparisonLab")));
        QVERIFY(in<QLabel>(dialog, "comparisonLab")->isVisible());
        for (const QAction *one : baselines())
            QVERIFY(!one->isChecked());
        // The next measurement too.
        measure();
        QVERIFY(words("comparisonLab").contains(changed));
        press(dialog, "rememberButton");
        QVERIFY(baselines().first()->isChecked());
        measure();
        QVERIFY(!words("comparisonLab").isEmpty());
        QVERIFY(!words("comparisonLab").contains(changed));
    }

    void the_curves_show_what_lights_are_and_are_to_be_and_were()
    {
        const QColor is(0x00, 0x72, 0xB2);
        const QColor isToBe(0xD5, 0x5E, 0x00);
        const QColor was(0x77, 0x77, 0x77);
        const QColor bad(0x8A, 0x3C, 0x00);
        sim::Profile dim;
        dim.level = 150;
        start(dim);
        measure();
        const QString then = folder->filePath(u"then.json"_s);
        dialog->saveReport(then);
        link->firmware = sim::Firmware(frameWithWeakX17(), [] { return 0ms; });
        measure();
        const auto picture = [this] { return in<QWidget>(dialog, "curves")->grab().toImage(); };
        QTRY_VERIFY(pixelsOf(picture(), bad) > 5);
        QVERIFY(pixelsOf(picture(), isToBe) > 50);
        const int grey = pixelsOf(picture(), was); // of letters
        const int lowest = boxOf(picture(), is).bottom();
        dialog->compareWithFile(then);
        QTRY_VERIFY(pixelsOf(picture(), was) > grey + 50);
        // The change of the weak light stands below all levels.
        QVERIFY(boxOf(picture(), is).bottom() > lowest);
    }

    void a_file_of_another_unit_or_of_something_else_is_not_compared_with()
    {
        start({});
        dialog->OnLinkEnded();
        dialog->linkBegan(lights::Measuring::Source::OlderUsb);
        auto *name = in<QLineEdit>(dialog, "nameEdit");
        QTest::keyClicks(name, u"Hall"_s);
        measure();
        const QString hall = folder->filePath(u"hall.json"_s);
        dialog->saveReport(hall);
        dialog->compareWithFile(hall);
        QVERIFY(!words("comparisonLab").isEmpty());
        name->clear();
        QTest::keyClicks(name, u"Kitchen"_s);
        QTest::keyClick(name, Qt::Key_Return);
        QCOMPARE(words("comparisonLab"), QString());
        dialog->compareWithFile(hall);
        QCOMPARE(notice(), u"%1: it is of another unit, Hall and not Kitchen"_s.arg(hall));
        QCOMPARE(words("comparisonLab"), QString());
        dialog->compareWithFile(folder->filePath(u"nothing.json"_s));
        QVERIFY2(notice().contains(u"nothing.json"_s), qPrintable(notice()));
        whenOpen<QFileDialog>([](QFileDialog *asked) { QTest::keyClick(asked, Qt::Key_Escape); });
        baselines().at(1)->trigger();
        QCOMPARE(words("comparisonLab"), QString());
    }

    void what_was_remembered_and_is_damaged_is_told()
    {
        start({});
        measure();
        press(dialog, "rememberButton");
        const QDir place(folder->filePath(u"quorvel/lights/21-01234-1605"_s));
        QCOMPARE(place.entryList({u"*.json"_s}).size(), 1);
        QFile damaged(place.filePath(u"00000000.json"_s));
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write("{");
        damaged.close();
        const auto beginAnew = [this] {
            delete dialog;
            dialog = new LightCheck_dlg(parent.get());
            link = std::make_unique<QuickLink>(sim::Profile());
            link->attach(dialog);
            dialog->linkBegan(lights::Measuring::Source::Usb);
            dialog->show();
        };
        beginAnew();
        measure();
        QVERIFY2(notice().contains(damaged.fileName()), qPrintable(notice()));
        QVERIFY(!words("comparisonLab").isEmpty()); // with the other one
        // By a series too.
        beginAnew();
        in<QCheckBox>(dialog, "followBox")->setChecked(true);
        press(dialog, "measureButton");
        QTRY_VERIFY2(notice().startsWith(u"Following the touch frame: "_s) &&
                         notice().contains(damaged.fileName()),
                     qPrintable(notice()));
        press(dialog, "measureButton");
    }

    void a_series_is_compared_with_what_was_remembered()
    {
        start({});
        measure();
        press(dialog, "rememberButton");
        link->firmware = sim::Firmware(frameWithWeakX17(), [] { return 0ms; });
        in<QCheckBox>(dialog, "followBox")->setChecked(true);
        press(dialog, "measureButton");
        QTRY_VERIFY2_WITH_TIMEOUT(words("comparisonLab").contains(u"light X 17 has changed most"_s),
                                  qPrintable(words("comparisonLab")), 10000);
        // How the weakest light goes on is told of a measurement, not of each scan.
        QCOMPARE(words("comparisonLab").count(u'\n'), 0);
        press(dialog, "measureButton");
    }

    void a_unit_that_tells_nothing_is_asked_for_a_name()
    {
        start();
        dialog->OnLinkEnded();
        dialog->linkBegan(lights::Measuring::Source::OlderUsb);
        measure();
        QVERIFY2(words("unitLab").startsWith(u"Measured "_s), qPrintable(words("unitLab")));
        press(dialog, "rememberButton");
        QVERIFY2(notice().contains(u"give it a name"_s), qPrintable(notice()));
        QCOMPARE(dialog->focusWidget(), in<QLineEdit>(dialog, "nameEdit"));
        QTest::keyClicks(in<QLineEdit>(dialog, "nameEdit"), u" Hall "_s);
        press(dialog, "rememberButton");
        QVERIFY2(notice().startsWith(u"Remembered."_s), qPrintable(notice()));
        QCOMPARE(dialog->shown().measurement.unit.name, u"Hall"_s);
        QVERIFY(QDir(folder->filePath(u"quorvel/lights/Hall"_s)).exists());
        // What is measured from now on is of the same unit.
        measure();
        QCOMPARE(dialog->shown().measurement.unit.name, u"Hall"_s);
    }

    void what_cannot_be_remembered_is_told()
    {
        start({});
        qputenv("XDG_DATA_HOME", "/dev/null");
        dialog = new LightCheck_dlg(parent.get());
        link->attach(dialog);
        dialog->linkBegan(lights::Measuring::Source::Usb);
        dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        measure();
        press(dialog, "rememberButton");
        QCOMPARE(notice(), u"The folder /dev/null/quorvel/lights/21-01234-1605 cannot be made."_s);
        QCOMPARE(dialog->focusWidget(), in(dialog, "rememberButton")); // no name helps
    }

    void a_report_is_written_as_its_name_says()
    {
        start();
        measure();
        const std::pair<const char *, const char *> kinds[] = {
            {"pdf", "%PDF-"}, {"html", "<!DOCTYPE html>"}, {"json", "{"}, {"csv", "axis,light,"}};
        for (const auto &[suffix, first] : kinds) {
            const QString path = folder->filePath(u"report."_s + QLatin1StringView(suffix));
            dialog->saveReport(path);
            QCOMPARE(notice(), u"Written to %1."_s.arg(path));
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QByteArray bytes = file.readAll();
            QVERIFY2(bytes.startsWith(first), suffix);
            if (qstrcmp(suffix, "html") == 0)
                QVERIFY(bytes.contains("Quorvel " QUORVEL_VERSION));
        }
        const QString loud = folder->filePath(u"REPORT.CSV"_s);
        dialog->saveReport(loud);
        QCOMPARE(notice(), u"Written to %1."_s.arg(loud));
        dialog->saveReport(u"/nowhere/report.html"_s);
        QVERIFY(notice().startsWith(u"/nowhere/report.html cannot be written"_s));
        dialog->saveReport(folder->filePath(u"report.txt"_s));
        QVERIFY(notice().contains(u"whose name ends with"_s));
    }

    void the_report_button_asks_for_a_file_whose_ending_is_that_of_the_chosen_kind()
    {
        start();
        measure();
        const std::pair<int, const char *> kinds[] = {
            {0, "report.pdf"}, {1, "report.html"}, {2, "report.json"}, {3, "report.csv"}};
        for (const auto &[steps, name] : kinds) {
            whenOpen<QFileDialog>([&, presses = steps](QFileDialog *asked) {
                QCOMPARE(asked->windowModality(), Qt::WindowModal);
                QCOMPARE(asked->acceptMode(), QFileDialog::AcceptSave); // asks before replacing
                auto *kind = asked->findChild<QComboBox *>(u"fileTypeCombo"_s);
                for (int i = 0; i < presses; ++i)
                    QTest::keyClick(kind, Qt::Key_Down);
                chooseFile(asked, folder->filePath(u"report"_s));
            });
            press(dialog, "reportButton");
            const QString path = folder->filePath(QString::fromLatin1(name));
            QCOMPARE(notice(), u"Written to %1."_s.arg(path));
            QVERIFY(QFile::exists(path));
        }
        whenOpen<QFileDialog>([](QFileDialog *asked) { QTest::keyClick(asked, Qt::Key_Escape); });
        press(dialog, "reportButton");
        QVERIFY(notice().endsWith(u"report.csv."_s));
    }

    void the_tab_key_reaches_everything_and_each_has_a_name()
    {
        start();
        measure();
        in(dialog, "measureButton")->setFocus();
        QStringList reached;
        for (int i = 0; i < 20; ++i) {
            QWidget *focus = dialog->focusWidget();
            const QString name = focus->objectName();
            if (reached.contains(name))
                break;
            reached += name;
            QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(focus);
            QVERIFY2(spoken && (!spoken->text(QAccessible::Name).isEmpty() ||
                                name == u"qt_tabwidget_tabbar"_s),
                     qPrintable(name));
            QTest::keyClick(focus, Qt::Key_Tab);
        }
        for (const char *name :
             {"measureButton", "followBox", "nameEdit", "wall", "findingsList", "curves",
              "rememberButton", "compareButton", "reportButton", "closeButton"})
            QVERIFY2(reached.contains(QString::fromLatin1(name)), name);
        QCOMPARE(reached.indexOf(u"curves"_s), reached.indexOf(u"qt_tabwidget_tabbar"_s) + 1);
    }

    void minimised_it_goes_on_measuring()
    {
        start();
        const auto *hides = new Hides(dialog);
        in<QCheckBox>(dialog, "followBox")->setChecked(true);
        press(dialog, "measureButton");
        dialog->showMinimized();
        QTRY_COMPARE(hides->bySystem, 1);
        QVERIFY(isMeasuring());
        link->asked.clear();
        QTRY_VERIFY(!link->asked.isEmpty());
        dialog->showNormal();
        QVERIFY(isMeasuring());
        press(dialog, "measureButton");
    }

    void closing_ends_the_measurement()
    {
        start();
        in<QCheckBox>(dialog, "followBox")->setChecked(true);
        press(dialog, "measureButton");
        QTRY_VERIFY(!dialog->shown().measurement.x.scans.empty());
        dialog->close();
        link->asked.clear();
        QTest::qWait(200);
        QCOMPARE(link->asked, QList<QByteArray>());
        dialog->show();
        QVERIFY(!isMeasuring());
        QCOMPARE(notice(), QString());
    }

    void it_fits_the_screen_and_shows_everything_at_800_by_600()
    {
        start();
        measure();
        const QRect room = dialog->screen()->availableGeometry();
        QTRY_VERIFY(room.contains(dialog->frameGeometry()));
        dialog->resize(800, 560);
        QTRY_COMPARE(dialog->size(), QSize(800, 560));
        for (const char *name : {"measureButton", "reportButton", "wall", "findingsList", "curves",
                                 "verdictLab", "closeButton"}) {
            const auto *widget = in<QWidget>(dialog, name);
            const QRect place(widget->mapTo(dialog, QPoint()), widget->size());
            QVERIFY2(dialog->rect().contains(place), name);
        }
        // Smaller than that it scrolls.
        dialog->resize(500, 380);
        QTRY_COMPARE(dialog->size(), QSize(500, 380));
        const auto bars = [this] {
            int visible = 0;
            for (const QScrollBar *bar : dialog->findChildren<QScrollBar *>())
                visible += bar->isVisible() && bar->accessibleName().startsWith(u"Scroll"_s);
            return visible;
        };
        QTRY_COMPARE(bars(), 2);
    }
};

QTEST_MAIN(TestLightCheckDlg)
#include "tst_lightcheck_dlg.moc"
