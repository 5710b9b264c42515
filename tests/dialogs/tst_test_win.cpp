// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/test_win.h"
#include "tests/support/paints.h"
#include "tests/support/plainplot.h"
#include "tests/support/smalldisk.h"
#include "tests/support/widgets.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QMenu>
#include <QMessageBox>
#include <QPaintEngine>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <QWindow>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using Axis = SignalPlot::Axis;
using Bytes = QList<int>;

namespace {

const QColor White(Qt::white);
const QColor Black(Qt::black);
const QColor Green(Qt::green);
const QColor DarkGreen(Qt::darkGreen);
const QColor Red(Qt::red);
const QColor DarkRed(Qt::darkRed);

// Three lights of X, two of Y, and pages for them; all but the first page of X and Y below is
// noise of the others.
const Bytes Counts32 = {0xFC, 0xA5, 0x80, 0x05, 0x00, 0x03, 0x00, 0x02, 0x00};
const Bytes X1 = {0xFC, 0xA5, 0x81, 0x06, 0x00, 0x00, 0x00, 250, 100, 200};
const Bytes X2 = {0xFC, 0xA5, 0x81, 0x06, 0x00, 0x00, 0x00, 250, 110, 190};
const Bytes X3 = {0xFC, 0xA5, 0x81, 0x06, 0x00, 0x00, 0x00, 250, 50, 195};
const Bytes Y1 = {0xFC, 0xA5, 0x82, 0x05, 0x00, 0x00, 0x00, 150, 25};
const Bytes Y2 = {0xFC, 0xA5, 0x82, 0x05, 0x00, 0x00, 0x00, 160, 25};
const Bytes Y3 = {0xFC, 0xA5, 0x82, 0x05, 0x00, 0x00, 0x00, 150, 50};
// Levels 1000, 400, 800 in rows 45, 312, 134; 440 and 760 in rows 294 and 152; 200 and 780 in
// rows 401 and 143.
const QList<QPoint> X1Points = {{290, 45}, {580, 312}, {870, 134}};
const QList<QPoint> X3Points = {{290, 45}, {580, 401}, {870, 143}};
const QList<QPoint> X3Ripple = {{290, 490}, {580, 383}, {870, 481}}; // 0, 107, 9 pixels
const QList<QPoint> XAgc = {{290, 0}, {580, 0}, {870, 0}};
// Levels 600 and 100 in rows 223 and 446; 640 in row 205; 200 in row 401.
const QList<QPoint> Y1Points = {{290, 223}, {580, 446}};
const QList<QPoint> Y3Points = {{290, 223}, {580, 401}};
const QList<QPoint> Y3Ripple = {{290, 472}, {580, 445}}; // 18, 45 pixels
const QList<QPoint> YAgc = {{290, 0}, {580, 0}};

struct Curve
{
    Axis axis;
    QList<QPoint> points;
};

// The same level for every light of a page.
Bytes page(int sub, int first, int level)
{
    Bytes bytes = {0xFC, 0xA5, sub, 0x3A, 0x00, first % 256, first / 256};
    bytes.append(QList<int>(55, level));
    return bytes;
}

QByteArray request(std::initializer_list<char> bytes)
{
    return QByteArray(bytes.begin(), qsizetype(bytes.size())).leftJustified(64, '\0');
}
const QByteArray AskCounts = request({'\x00', '\xA5', '\x00'});
const QByteArray AskX = request({'\x00', '\xA5', '\x01'});
const QByteArray AskY = request({'\x00', '\xA5', '\x02'});

// A paper that knows which image of the picture's size was put on it; drawing into an image gives
// it another key.
class Paper : public QPaintDevice
{
public:
    QPaintEngine *paintEngine() const override { return &engine; }
    qint64 key() const { return engine.key; }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
            return 1000;
        case PdmHeight:
            return 650;
        case PdmWidthMM:
            return 265;
        case PdmHeightMM:
            return 172;
        case PdmDepth:
            return 32;
        case PdmNumColors:
            return INT_MAX;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return int(devicePixelRatioFScale());
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return 96;
        default: // newer toolkits ask in other words as well, and translate them
            return QPaintDevice::metric(metric);
        }
    }

private:
    class Engine : public QPaintEngine
    {
    public:
        Engine()
            : QPaintEngine(AllFeatures)
        {
        }
        qint64 key = 0;

        bool begin(QPaintDevice *) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState &) override {}
        void drawPixmap(const QRectF &, const QPixmap &, const QRectF &) override {}
        void drawImage(const QRectF &, const QImage &image, const QRectF &,
                       Qt::ImageConversionFlags) override
        {
            if (image.size() == QSize(880, 490))
                key = image.cacheKey();
        }
        void drawPolygon(const QPointF *, int, PolygonDrawMode) override {}
        void drawPath(const QPainterPath &) override {}
        void drawTextItem(const QPointF &, const QTextItem &) override {}
        Type type() const override { return User; }
    };
    mutable Engine engine;
};

QStringList clippedTexts(const QWidget &window)
{
    QStringList clipped;
    for (const QLabel *label : window.findChildren<QLabel *>()) {
        // A field may lie over the label's end.
        int room = label->width();
        if (const QWidget *field = label->buddy())
            room = std::min(room, field->x() - label->x());
        if (label->sizeHint().width() > room || label->sizeHint().height() > label->height())
            clipped.append(label->objectName());
    }
    for (const QPushButton *button : window.findChildren<QPushButton *>()) {
        if (button->fontMetrics().horizontalAdvance(button->text()) + 8 > button->width())
            clipped.append(button->objectName());
    }
    for (const QCheckBox *box : window.findChildren<QCheckBox *>()) {
        if (box->sizeHint().width() > box->width() || box->fontMetrics().height() > box->height())
            clipped.append(box->objectName());
    }
    for (const QLineEdit *field : window.findChildren<QLineEdit *>()) {
        if (field->fontMetrics().horizontalAdvance(u"9999"_s) + 12 > field->width() ||
            field->fontMetrics().height() + 4 > field->height())
            clipped.append(field->objectName());
    }
    return clipped;
}

} // namespace

class TestTestWin : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> place;
    std::unique_ptr<test_win> window;
    QList<QByteArray> sent;

    QTimer *timer() const { return window->findChild<QTimer *>(); }
    QAction *logAction() const { return window->findChild<QAction *>(u"logAction"_s); }
    QMenu *menu() const { return window->findChild<QMenu *>(); }
    void setText(const QString &name, const QString &text)
    {
        in<QLineEdit>(window, name)->setText(text);
    }
    void check(const QString &name, bool on) { in<QCheckBox>(window, name)->setChecked(on); }
    void tick() { QVERIFY(QMetaObject::invokeMethod(window.get(), "ontimer")); }

    void deliver(const Bytes &bytes)
    {
        std::array<UCHAR, 64> report{};
        std::copy(bytes.begin(), bytes.end(), report.begin());
        window->DoRecv03(report.data());
        report.fill(0xEE); // the window keeps no pointer
    }
    void deliver(const QList<Bytes> &reports)
    {
        for (const Bytes &report : reports)
            deliver(report);
    }
    // Limits that leave the picture alone but for row 0.
    void wideLimits()
    {
        setText(u"Upper_text"_s, u"1100"_s);
        setText(u"Lower_text"_s, u"0"_s);
    }
    // A continuous test whose timer does not tick by itself in the time of a test.
    void startContinuous()
    {
        setText(u"interal_text"_s, u"9999"_s);
        press(window, "ALL_btn");
    }

    // In device pixels.
    QImage picture() const
    {
        const QImage image = window->grab().toImage();
        const int ratio = int(image.devicePixelRatio());
        return image.copy(70 * ratio, 50 * ratio, 880 * ratio, 490 * ratio);
    }
    QImage plain(const QList<Curve> &curves, int upper, int lower) const
    {
        std::vector<SignalPlot::Curve> spans;
        for (const Curve &curve : curves)
            spans.push_back({curve.axis, std::span(curve.points.begin(), curve.points.end())});
        const int ratio = int(window->devicePixelRatioF());
        QPixmap pixmap(880 * ratio, 490 * ratio);
        pixmap.setDevicePixelRatio(ratio);
        drawPlainly(pixmap, spans, upper, lower);
        return pixmap.toImage().convertToFormat(QImage::Format_RGB32);
    }
    void compare(const QList<Curve> &curves, int upper = 1100, int lower = 0)
    {
        QCOMPARE(picture().convertToFormat(QImage::Format_RGB32), plain(curves, upper, lower));
    }
    // Nothing of a picture: the scale alone.
    bool pictureIsEmpty() const
    {
        const QImage image = picture();
        for (int y = 0; y < 490; ++y) {
            for (int x = 0; x < 880; ++x) {
                // The horizontal axis and the labels lie outside.
                if (image.pixelColor(x, y) != White)
                    return false;
            }
        }
        return true;
    }

    static QString logPath() { return QDir::current().filePath(u"TestLog.csv"_s); }
    // The log with dates and times that are as they should be replaced by D,T.
    static QString log()
    {
        QFile file(logPath());
        if (!file.open(QIODevice::ReadOnly))
            return u"(no file)"_s;
        QString text = QString::fromLatin1(file.readAll());
        const QString today = QDateTime::currentDateTime().toString(u"yyMMdd"_s);
        static const QRegularExpression Time(u"(\\d{6}),\\d\\d:\\d\\d:\\d\\d:\\d{3},"_s);
        const QRegularExpressionMatch match = Time.match(text);
        if (match.hasMatch() && match.captured(1) != today)
            return u"(wrong day)"_s;
        return text.replace(Time, u"D,T,"_s);
    }
    QList<QMessageBox *> boxes() const { return window->findChildren<QMessageBox *>(); }

private slots:
    void init()
    {
        place = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir::setCurrent(place->path()));
        sent.clear();
        window = std::make_unique<test_win>();
        connect(window.get(), &test_win::Write03, this, [this](const UCHAR *buf) {
            sent.append(QByteArray(reinterpret_cast<const char *>(buf), 64));
        });
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }
    void cleanup()
    {
        window.reset();
        QDir::setCurrent(QDir::rootPath());
        place.reset();
    }

    // The form

    void the_form_is_as_drawn_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QRect>("geometry");
        const auto row = [](const char *name, const QString &text, const QRect &geometry) {
            QTest::newRow(name) << QString::fromLatin1(name) << text << geometry;
        };
        row("Xbtn", u"Once [X]"_s, {40, 570, 81, 31});
        row("Ybtn", u"Once [Y]"_s, {40, 610, 81, 31});
        row("ALL_btn", u"All Test"_s, {130, 570, 91, 71});
        row("exitbtn", u"Exit"_s, {880, 570, 81, 71});
        row("groupBox", u""_s, {250, 570, 601, 72});
        row("label", u"Upper Limit:"_s, {30, 15, 81, 16});
        row("label_2", u"Lower Limit:"_s, {30, 45, 81, 16});
        row("Upper_text", u"1000"_s, {100, 13, 61, 20});
        row("Lower_text", u"650"_s, {100, 42, 61, 20});
        row("label_3", u"Interval (s):"_s, {190, 15, 81, 16});
        row("interal_text", u"1"_s, {260, 13, 61, 20});
        row("label_4", u"AGC:"_s, {190, 45, 61, 16});
        row("AGC_text", u"255"_s, {260, 42, 61, 20});
        row("ADCche", u"ADC"_s, {350, 15, 71, 16});
        row("AGCche", u"AGC"_s, {350, 45, 71, 16});
        row("Ripche", u"Rippel"_s, {410, 15, 71, 16});
        row("def_btn", u"Defualt"_s, {490, 20, 81, 31});
    }
    void the_form_is_as_drawn()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, text);
        QFETCH(const QRect, geometry);
        const QWidget *widget = in<QWidget>(window, name);
        QVERIFY(widget);
        const char *property = qobject_cast<const QGroupBox *>(widget) ? "title" : "text";
        QCOMPARE(widget->property(property).toString(), text);
        QCOMPARE(widget->geometry(), geometry);
        const bool inBox = geometry.y() < 100;
        QCOMPARE(widget->parentWidget()->objectName(), inBox ? u"groupBox"_s : u"centralwidget"_s);
        if (!inBox)
            QCOMPARE(widget->mapTo(window.get(), QPoint(0, 0)), geometry.topLeft());
    }

    void the_window_has_a_fixed_size_and_its_own_fonts()
    {
        QCOMPARE(window->windowTitle(), u"MalvoTools"_s);
        QCOMPARE(window->size(), QSize(1000, 650));
        QCOMPARE(window->minimumSize(), QSize(1000, 650));
        QCOMPARE(window->maximumSize(), QSize(1000, 650));
        QCOMPARE(window->font().family(), u"Tahoma"_s);
        QCOMPARE(window->font().pointSize(), 8);
        const QPushButton *all = in(window, "ALL_btn");
        QCOMPARE(all->font().family(), u"Tahoma"_s);
        QCOMPARE(all->font().pointSize(), 11);
        QVERIFY(all->font().bold());
        QCOMPARE(all->styleSheet(), u"color: rgb(0, 170, 0);"_s);
        QVERIFY(in<QCheckBox>(window, "ADCche")->isChecked());
        QVERIFY(!in<QCheckBox>(window, "AGCche")->isChecked());
        QVERIFY(in<QCheckBox>(window, "Ripche")->isChecked());
    }

    void the_form_has_ten_actions_that_nothing_shows()
    {
        QStringList texts;
        QStringList checked;
        for (const QAction *action : window->findChildren<QAction *>()) {
            if (action == logAction() || action == menu()->menuAction())
                continue;
            texts.append(action->text());
            if (action->isChecked())
                checked.append(action->text());
        }
        QCOMPARE(texts, QStringList({u"Exit"_s, u"Touch Test"_s, u"Multitouch View"_s,
                                     u"Data View"_s, u"Options..."_s, u"AGC..."_s, u"X Data"_s,
                                     u"Y Data"_s, u"Number"_s, u"Range"_s}));
        QCOMPARE(checked, QStringList({u"X Data"_s, u"Y Data"_s, u"Number"_s, u"Range"_s}));
        QVERIFY(window->actions().isEmpty());
        QCOMPARE(menu()->actions(), QList<QAction *>{logAction()});
    }

    void fields_take_whole_numbers_of_their_range_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("largest");
        QTest::addColumn<QString>("tooLarge");
        QTest::newRow("upper") << u"Upper_text"_s << u"1100"_s << u"1101"_s;
        QTest::newRow("lower") << u"Lower_text"_s << u"1100"_s << u"1101"_s;
        QTest::newRow("interval") << u"interal_text"_s << u"9999"_s << u"10000"_s;
        QTest::newRow("agc") << u"AGC_text"_s << u"255"_s << u"256"_s;
    }
    void fields_take_whole_numbers_of_their_range()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, largest);
        QFETCH(const QString, tooLarge);
        auto *field = in<QLineEdit>(window, name);
        const auto typed = [field](const QString &text) {
            field->clear();
            QTest::keyClicks(field, text);
            return field->text();
        };
        QCOMPARE(typed(largest), largest);
        QVERIFY(field->hasAcceptableInput());
        QCOMPARE(typed(u"0"_s), u"0"_s);
        QVERIFY(field->hasAcceptableInput());
        QVERIFY(typed(tooLarge) != tooLarge || !field->hasAcceptableInput());
        QCOMPARE(typed(u"-1x"_s), u"1"_s);
    }

    void nothing_is_clipped() { QCOMPARE(clippedTexts(*window), QStringList()); }

    void everything_is_reachable_by_keyboard_and_named()
    {
        QStringList reached;
        in(window, "Xbtn")->setFocus();
        for (int i = 0; i < 12; ++i) {
            reached.append(QApplication::focusWidget()->objectName());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(reached,
                 QStringList({u"Xbtn"_s, u"Ybtn"_s, u"ALL_btn"_s, u"Upper_text"_s, u"Lower_text"_s,
                              u"interal_text"_s, u"AGC_text"_s, u"ADCche"_s, u"AGCche"_s,
                              u"Ripche"_s, u"def_btn"_s, u"exitbtn"_s}));
        QCOMPARE(in<QLabel>(window, "label")->buddy(), in<QLineEdit>(window, "Upper_text"));
        QCOMPARE(in<QLabel>(window, "label_2")->buddy(), in<QLineEdit>(window, "Lower_text"));
        QCOMPARE(in<QLabel>(window, "label_3")->buddy(), in<QLineEdit>(window, "interal_text"));
        QCOMPARE(in<QLabel>(window, "label_4")->buddy(), in<QLineEdit>(window, "AGC_text"));
        for (const QString &name : {u"Xbtn"_s, u"Ybtn"_s, u"exitbtn"_s, u"groupBox"_s, u"ADCche"_s,
                                    u"AGCche"_s, u"Ripche"_s, u"def_btn"_s})
            QVERIFY2(!in<QWidget>(window, name)->accessibleName().isEmpty() ||
                         !in<QWidget>(window, name)->accessibleDescription().isEmpty(),
                     qPrintable(name));
        QVERIFY(!window->accessibleName().isEmpty());
    }

    void the_slots_stand_in_their_order()
    {
        QStringList names;
        const QMetaObject &meta = test_win::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            if (meta.method(i).methodType() == QMetaMethod::Slot)
                names.append(QString::fromLatin1(meta.method(i).methodSignature()));
        }
        QCOMPARE(names, QStringList({u"on_exitbtn_clicked()"_s, u"on_def_btn_clicked()"_s,
                                     u"on_Xbtn_clicked()"_s, u"on_Ybtn_clicked()"_s,
                                     u"on_ALL_btn_clicked()"_s, u"ontimer()"_s,
                                     u"DoRecv03(UCHAR*)"_s, u"OnLinkEnded()"_s}));
    }

    void the_default_button_restores_what_the_form_began_with()
    {
        for (const QString &name :
             {u"Upper_text"_s, u"Lower_text"_s, u"interal_text"_s, u"AGC_text"_s})
            setText(name, u"7"_s);
        check(u"ADCche"_s, false);
        check(u"AGCche"_s, true);
        check(u"Ripche"_s, false);
        press(window, "def_btn");
        QCOMPARE(in<QLineEdit>(window, "Upper_text")->text(), u"1000"_s);
        QCOMPARE(in<QLineEdit>(window, "Lower_text")->text(), u"650"_s);
        QCOMPARE(in<QLineEdit>(window, "interal_text")->text(), u"1"_s);
        QCOMPARE(in<QLineEdit>(window, "AGC_text")->text(), u"255"_s);
        QVERIFY(in<QCheckBox>(window, "ADCche")->isChecked());
        QVERIFY(!in<QCheckBox>(window, "AGCche")->isChecked());
        QVERIFY(in<QCheckBox>(window, "Ripche")->isChecked());
        QCOMPARE(sent, QList<QByteArray>());
    }

    void exit_closes_the_window()
    {
        press(window, "exitbtn");
        QVERIFY(!window->isVisible());
    }

    // Requests

    void once_x_asks_for_the_counts_and_for_x()
    {
        press(window, "Xbtn");
        QCOMPARE(sent, QList<QByteArray>({AskCounts, AskX}));
        QVERIFY(!timer()->isActive());
        QCOMPARE(in(window, "ALL_btn")->text(), u"All Test"_s);
    }

    void once_y_asks_for_the_counts_and_for_y()
    {
        press(window, "Ybtn");
        QCOMPARE(sent, QList<QByteArray>({AskCounts, AskY}));
        QVERIFY(!timer()->isActive());
    }

    void once_is_once()
    {
        press(window, "Xbtn");
        deliver({Counts32, X1});
        QTest::qWait(50);
        QCOMPARE(sent, QList<QByteArray>({AskCounts, AskX}));
        QVERIFY(!timer()->isActive());
    }

    void all_test_asks_for_the_counts_and_waits_for_the_timer()
    {
        startContinuous();
        QCOMPARE(sent, QList<QByteArray>({AskCounts}));
        QVERIFY(timer()->isActive());
        QCOMPARE(in(window, "ALL_btn")->text(), u"Stop"_s);
    }

    void the_timer_asks_for_x_and_y_in_turns()
    {
        startContinuous();
        sent.clear();
        for (int i = 0; i < 5; ++i)
            tick();
        QCOMPARE(sent, QList<QByteArray>({AskX, AskY, AskX, AskY, AskX}));
    }

    void whose_turn_it_is_survives_stop_and_closing()
    {
        startContinuous();
        tick();
        press(window, "ALL_btn");
        window->hide();
        window->show();
        startContinuous();
        sent.clear();
        tick();
        tick();
        QCOMPARE(sent, QList<QByteArray>({AskY, AskX}));
    }

    void the_period_is_the_interval_times_150_ms_data()
    {
        QTest::addColumn<QString>("interval");
        QTest::addColumn<int>("period");
        QTest::newRow("0") << u"0"_s << 0;
        QTest::newRow("1") << u"1"_s << 150;
        QTest::newRow("2") << u"2"_s << 300;
        QTest::newRow("9999") << u"9999"_s << 1499850;
        QTest::newRow("nothing typed") << u""_s << 0;
    }
    void the_period_is_the_interval_times_150_ms()
    {
        QFETCH(const QString, interval);
        QFETCH(const int, period);
        setText(u"interal_text"_s, interval);
        window->on_ALL_btn_clicked();
        QVERIFY(timer()->isActive());
        QCOMPARE(timer()->interval(), period);
        if (period != 0) {
            tick();
            QCOMPARE(timer()->interval(), period);
        }
    }

    void the_timer_keeps_asking_by_itself()
    {
        press(window, "ALL_btn");
        QTRY_VERIFY(sent.size() >= 4);
        QCOMPARE(sent.mid(0, 4), QList<QByteArray>({AskCounts, AskX, AskY, AskX}));
    }

    // Interval 0

    void an_interval_of_0_waits_only_for_the_pages_it_asks_for()
    {
        setText(u"interal_text"_s, u"0"_s);
        window->on_ALL_btn_clicked();
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0xF4, 0x01, 0x38, 0x00}); // 500 and 56 lights
        tick();
        QCOMPARE(sent.last(), AskX);
        QCOMPARE(timer()->interval(), 10 * 70);
        tick();
        QCOMPARE(sent.last(), AskY);
        QCOMPARE(timer()->interval(), 2 * 70);
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x37, 0x00, 0x00, 0x00}); // 55 and none
        tick();
        QCOMPARE(timer()->interval(), 70);
        tick();
        QCOMPARE(timer()->interval(), 70);
    }

    void an_interval_of_0_lets_the_window_paint_and_stop()
    {
        // What the writer may take for each.
        connect(window.get(), &test_win::Write03, this, [] { QThread::msleep(60); });
        setText(u"interal_text"_s, u"0"_s);
        press(window, "ALL_btn");
        Paints paints(window.get());
        for (int before = 1; before < 6; ++before) {
            paints.count = 0;
            window->update();
            QTRY_VERIFY(paints.count > 0);
            QTRY_VERIFY(sent.size() > before);
        }
        press(window, "ALL_btn");
        QVERIFY(!timer()->isActive());
        const qsizetype asked = sent.size();
        QTest::qWait(200);
        QCOMPARE(sent.size(), asked);
    }

    // Refusal

    void limits_that_leave_nothing_between_them_are_refused_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("upper");
        QTest::addColumn<QString>("lower");
        for (const QString &button : {u"Xbtn"_s, u"Ybtn"_s, u"ALL_btn"_s}) {
            const QByteArray name = button.toLatin1();
            QTest::newRow(name + " equal") << button << u"800"_s << u"800"_s;
            QTest::newRow(name + " less") << button << u"649"_s << u"650"_s;
            QTest::newRow(name + " nothing typed") << button << u""_s << u"0"_s;
        }
    }
    void limits_that_leave_nothing_between_them_are_refused()
    {
        QFETCH(const QString, button);
        QFETCH(const QString, upper);
        QFETCH(const QString, lower);
        setText(u"Upper_text"_s, upper);
        setText(u"Lower_text"_s, lower);
        setText(u"interal_text"_s, u"5"_s);
        press(window, button);
        QCOMPARE(boxes().size(), 1);
        QCOMPARE(boxes().first()->windowTitle(), u"Quorvel"_s);
        QCOMPARE(boxes().first()->text(), u"Upper limit value less than lower limit value."_s);
        QVERIFY(boxes().first()->isVisible());
        QVERIFY(!boxes().first()->isModal());
        QCOMPARE(in<QLineEdit>(window, "Upper_text")->text(), u"1000"_s);
        QCOMPARE(in<QLineEdit>(window, "Lower_text")->text(), u"650"_s);
        QCOMPARE(in<QLineEdit>(window, "interal_text")->text(), u"5"_s);
        QCOMPARE(sent, QList<QByteArray>());
        QVERIFY(!timer()->isActive());
        QCOMPARE(in(window, "ALL_btn")->text(), u"All Test"_s);
        QVERIFY(in(window, "Xbtn")->isEnabled());
        QVERIFY(pictureIsEmpty());
    }

    void a_refusal_leaves_the_picture_of_the_last_test()
    {
        wideLimits();
        press(window, "Xbtn");
        deliver({Counts32, X1});
        setText(u"Upper_text"_s, u"0"_s);
        press(window, "Xbtn");
        compare({{Axis::X, X1Points}});
    }

    void limits_one_unit_apart_are_taken()
    {
        setText(u"Upper_text"_s, u"651"_s);
        press(window, "Xbtn");
        QCOMPARE(boxes().size(), 0);
        QCOMPARE(sent.size(), 2);
    }

    // The continuous test

    void ten_inputs_are_disabled_until_stop()
    {
        const QStringList inputs = {
            u"def_btn"_s, u"Xbtn"_s,     u"Ybtn"_s,         u"ADCche"_s,     u"AGCche"_s,
            u"Ripche"_s,  u"AGC_text"_s, u"interal_text"_s, u"Upper_text"_s, u"Lower_text"_s};
        startContinuous();
        for (const QString &name : inputs)
            QVERIFY2(!in<QWidget>(window, name)->isEnabled(), qPrintable(name));
        QVERIFY(in(window, "ALL_btn")->isEnabled());
        QVERIFY(in(window, "exitbtn")->isEnabled());
        press(window, "ALL_btn");
        for (const QString &name : inputs)
            QVERIFY2(in<QWidget>(window, name)->isEnabled(), qPrintable(name));
        QVERIFY(!timer()->isActive());
        QCOMPARE(in(window, "ALL_btn")->text(), u"All Test"_s);
    }

    void stop_leaves_only_the_scale()
    {
        startContinuous();
        deliver({Counts32, X1, Y1});
        QVERIFY(!pictureIsEmpty());
        press(window, "ALL_btn");
        QVERIFY(pictureIsEmpty());
        // What was still under way is taken but not shown.
        deliver({X2, Y2});
        QVERIFY(pictureIsEmpty());
    }

    void hiding_stops_the_continuous_test()
    {
        startContinuous();
        press(window, "exitbtn");
        QVERIFY(!timer()->isActive());
        QCOMPARE(in(window, "ALL_btn")->text(), u"All Test"_s);
        QVERIFY(in(window, "Xbtn")->isEnabled());
        window->show();
        QVERIFY(pictureIsEmpty());
    }

    void minimising_does_not_stop_the_continuous_test()
    {
        startContinuous();
        window->showMinimized();
        QTRY_VERIFY(window->isMinimized() && !window->windowHandle()->isExposed());
        QVERIFY(timer()->isActive());
        QCOMPARE(in(window, "ALL_btn")->text(), u"Stop"_s);
    }

    void the_picture_is_painted_again_only_when_y_is_complete()
    {
        startContinuous();
        deliver(Counts32);
        Paints paints(window.get());
        QCoreApplication::processEvents();
        paints.count = 0;
        deliver(X1);
        QCoreApplication::processEvents();
        QCOMPARE(paints.count, 0);
        deliver(Y1);
        QTRY_COMPARE(paints.count, 1);
        deliver(X2);
        QCoreApplication::processEvents();
        QCOMPARE(paints.count, 1);
    }

    void a_single_test_paints_when_its_scan_is_complete_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("sub");
        QTest::newRow("X") << u"Xbtn"_s << 0x81;
        QTest::newRow("Y") << u"Ybtn"_s << 0x82;
    }
    void a_single_test_paints_when_its_scan_is_complete()
    {
        QFETCH(const QString, button);
        QFETCH(const int, sub);
        press(window, button);
        Paints paints(window.get());
        QCoreApplication::processEvents();
        paints.count = 0;
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x78, 0x00, 0x78, 0x00}); // 120 each
        deliver({page(sub, 0, 100), page(sub, 55, 101)});
        QCoreApplication::processEvents();
        QCOMPARE(paints.count, 0);
        deliver(page(sub, 110, 102));
        QTRY_COMPARE(paints.count, 1);
    }

    void what_becomes_of_the_picture_is_seen_at_once()
    {
        const auto isPaintedAfter = [this](const std::function<void()> &happens) {
            QTest::qWait(50); // for what is painted anyway
            const Paints paints(window.get());
            happens();
            return QTest::qWaitFor([&] { return paints.region.contains(QPoint(500, 300)); }, 2000);
        };
        startContinuous();
        deliver({Counts32, X1, Y1});
        QVERIFY(isPaintedAfter([this] { window->on_ALL_btn_clicked(); }));
        window->on_Xbtn_clicked();
        deliver({Counts32, X1});
        QVERIFY(isPaintedAfter([this] { window->on_Ybtn_clicked(); }));
        deliver({Counts32, Y1});
        QVERIFY(isPaintedAfter([this] { window->OnLinkEnded(); }));
    }

    void painting_draws_the_picture_anew_only_after_a_change()
    {
        wideLimits();
        startContinuous();
        deliver({Counts32, X1, Y1});
        Paper paper;
        window->render(&paper);
        const qint64 drawn = paper.key();
        QVERIFY(drawn != 0);
        window->render(&paper);
        QCOMPARE(paper.key(), drawn);
        deliver(Y1); // again
        window->render(&paper);
        QCOMPARE(paper.key(), drawn);
        deliver(Y2);
        window->render(&paper);
        QVERIFY(paper.key() != drawn);
    }

    // What is received

    void before_a_test_only_the_scale_is_shown()
    {
        QVERIFY(pictureIsEmpty());
        const QImage image = window->grab().toImage();
        QCOMPARE(image.pixelColor(25, 25), White);
        QCOMPARE(image.pixelColor(974, 559), White);
        QCOMPARE(image.pixelColor(60, 50), Black);   // (35, 25)
        QCOMPARE(image.pixelColor(60, 540), Black);  // (35, 515)
        QCOMPARE(image.pixelColor(960, 540), Black); // (935, 515)
        QCOMPARE(image.pixelColor(961, 540), White);
        QVERIFY(image.pixelColor(24, 24) != White);
        QVERIFY(image.pixelColor(975, 560) != White);
    }

    void without_a_complete_scan_only_the_limits_are_shown()
    {
        check(u"AGCche"_s, true);
        press(window, "Xbtn");
        compare({}, 1000, 650);
        deliver(Counts32);
        compare({}, 1000, 650);
    }

    void pages_before_the_counts_are_ignored()
    {
        wideLimits();
        press(window, "Xbtn");
        deliver(X1);
        compare({});
        deliver({Counts32, X1});
        compare({{Axis::X, X1Points}});
    }

    void pages_are_ignored_while_a_count_is_0_data()
    {
        QTest::addColumn<Bytes>("counts");
        QTest::addColumn<Bytes>("page");
        const Bytes none = {0xFC, 0xA5, 0x80, 0x05, 0x00, 0x00, 0x00, 0x00, 0x00};
        const Bytes onlyY = {0xFC, 0xA5, 0x80, 0x05, 0x00, 0x00, 0x00, 0x02, 0x00};
        const Bytes onlyX = {0xFC, 0xA5, 0x80, 0x05, 0x00, 0x03, 0x00, 0x00, 0x00};
        QTest::newRow("X page, no lights") << none << X1;
        QTest::newRow("Y page, no lights") << none << Y1;
        QTest::newRow("X page, no X lights") << onlyY << X1;
        QTest::newRow("Y page, no X lights") << onlyY << Y1;
        QTest::newRow("Y page, no Y lights") << onlyX << Y1;
    }
    void pages_are_ignored_while_a_count_is_0()
    {
        QFETCH(const Bytes, counts);
        QFETCH(const Bytes, page);
        wideLimits();
        startContinuous();
        Paints paints(window.get());
        QCoreApplication::processEvents();
        paints.count = 0;
        deliver({counts, page});
        QCoreApplication::processEvents();
        QCOMPARE(paints.count, 0);
        compare({});
    }

    void other_reports_change_nothing_data()
    {
        QTest::addColumn<Bytes>("report");
        QTest::newRow("another class") << Bytes{0xFC, 0xA2, 0x81, 0x06, 0, 0, 0, 1, 2, 3};
        QTest::newRow("a request") << Bytes{0xFC, 0xA5, 0x01, 0x06, 0, 0, 0, 1, 2, 3};
        QTest::newRow("counts of another class") << Bytes{0xFC, 0xA3, 0x80, 0x05, 0, 9, 0, 9, 0};
        QTest::newRow("another sub-command") << Bytes{0xFC, 0xA5, 0x83, 0x06, 0, 0, 0, 1, 2, 3};
        QTest::newRow("a page behind the last light")
            << Bytes{0xFC, 0xA5, 0x81, 0x06, 0, 3, 0, 1, 2, 3};
        QTest::newRow("a page far behind it")
            << Bytes{0xFC, 0xA5, 0x81, 0x06, 0, 0xFF, 0xFF, 1, 2, 3};
    }
    void other_reports_change_nothing()
    {
        QFETCH(const Bytes, report);
        wideLimits();
        press(window, "Xbtn");
        deliver({Counts32, report});
        compare({});
        deliver({X1, report});
        compare({{Axis::X, X1Points}});
    }

    void byte_0_of_a_report_does_not_matter()
    {
        wideLimits();
        press(window, "Xbtn");
        Bytes counts = Counts32;
        Bytes levels = X1;
        counts[0] = 0;
        levels[0] = 0;
        deliver({counts, levels});
        compare({{Axis::X, X1Points}});
    }

    // Curves

    void one_light_is_a_green_dot_in_a_dark_green_ring_with_its_number()
    {
        wideLimits();
        press(window, "Xbtn");
        deliver({{0xFC, 0xA5, 0x80, 0x05, 0x00, 0x01, 0x00, 0x01, 0x00},
                 {0xFC, 0xA5, 0x81, 0x04, 0x00, 0x00, 0x00, 100}}); // row 312
        compare({{Axis::X, {{870, 312}}}});
        const QImage image = picture();
        QCOMPARE(image.pixelColor(870, 312), Green);
        for (const QPoint &ring : {QPoint(868, 312), QPoint(872, 312), QPoint(870, 310),
                                   QPoint(870, 314), QPoint(869, 310), QPoint(871, 314)})
            QCOMPARE(image.pixelColor(ring), DarkGreen);
        for (const QPoint &outside : {QPoint(868, 310), QPoint(872, 314), QPoint(867, 312),
                                      QPoint(873, 312), QPoint(870, 309), QPoint(870, 315)})
            QCOMPARE(image.pixelColor(outside), White);
        // The number stands on row 305 and is green on white, whatever its letters.
        int inked = 0;
        for (int y = 0; y < 490; ++y) {
            for (int x = 0; x < 880; ++x) {
                const QColor colour = image.pixelColor(x, y);
                if (colour == White || y == 0 || (y >= 310 && y <= 314))
                    continue;
                QVERIFY(x >= 866 && x <= 876 && y >= 295 && y <= 306);
                QVERIFY(colour.red() == colour.blue() && colour.green() >= colour.red());
                ++inked;
            }
        }
        QVERIFY(inked >= 5);
    }

    // Also run on a display of twice the pixels.
    void every_pixel_of_the_display_is_used()
    {
        setText(u"Upper_text"_s, u"900"_s);
        startContinuous();
        deliver({Counts32, X1, Y1, X2, Y2, X3, Y3});
        compare(
            {{Axis::X, X3Points}, {Axis::X, X3Ripple}, {Axis::Y, Y3Points}, {Axis::Y, Y3Ripple}},
            900, 650);
        const qreal ratio = window->devicePixelRatioF();
        QCOMPARE(picture().size(), QSize(880, 490) * ratio);
        QCOMPARE(ratio, qEnvironmentVariable("EXPECTED_RATIO", u"1"_s).toDouble());
    }

    void x_is_dark_green_from_point_to_point()
    {
        wideLimits();
        press(window, "Xbtn");
        deliver({Counts32, X1});
        compare({{Axis::X, X1Points}});
        const QImage image = picture();
        // A line ends in the middle of every dot.
        for (const QPoint &point : X1Points)
            QCOMPARE(image.pixelColor(point), DarkGreen);
        QCOMPARE(image.pixelColor(868, 134), DarkGreen);
        QCOMPARE(image.pixelColor(871, 134), Green);
        // Half way between the first two, in row 178 or 179, and nowhere else in that column.
        QVERIFY((image.pixelColor(435, 178) == DarkGreen) !=
                (image.pixelColor(435, 179) == DarkGreen));
        for (int y = 1; y < 490; ++y)
            QVERIFY(y == 178 || y == 179 || image.pixelColor(435, y) == White);
    }

    void y_is_dark_red()
    {
        wideLimits();
        press(window, "Ybtn");
        deliver({Counts32, Y1});
        compare({{Axis::Y, Y1Points}});
        const QImage image = picture();
        QCOMPARE(image.pixelColor(290, 223), DarkRed);
        QCOMPARE(image.pixelColor(288, 223), DarkRed);
        QCOMPARE(image.pixelColor(289, 223), Red);
        QCOMPARE(image.pixelColor(580, 446), DarkRed);
        QVERIFY(image.pixelColor(435, 334) == DarkRed || image.pixelColor(435, 335) == DarkRed);
    }

    void both_axes_are_drawn_x_first()
    {
        wideLimits();
        startContinuous();
        deliver({Counts32, X1, Y1});
        compare({{Axis::X, X1Points}, {Axis::Y, Y1Points}});
    }

    void the_dashed_limits_lie_over_the_curves()
    {
        setText(u"Upper_text"_s, u"1000"_s);
        setText(u"Lower_text"_s, u"400"_s);
        press(window, "Xbtn");
        deliver({Counts32, X1});
        compare({{Axis::X, X1Points}}, 1000, 400);
        const QImage image = picture();
        // Rows 45 and 312 hold the first two dots. Dashes begin at every sixth pixel.
        QCOMPARE(image.pixelColor(288, 45), Black);
        QCOMPARE(image.pixelColor(291, 45), Black);
        QCOMPARE(image.pixelColor(292, 45), DarkGreen); // a gap
        QCOMPARE(image.pixelColor(293, 45), White);
        QCOMPARE(image.pixelColor(579, 312), Black);
        QCOMPARE(image.pixelColor(580, 312), DarkGreen);
        QCOMPARE(image.pixelColor(0, 312), Black);
        QCOMPARE(image.pixelColor(4, 312), White);
        QCOMPARE(image.pixelColor(879, 312), Black);
    }

    void limits_of_0_and_1100_lie_on_the_edges()
    {
        wideLimits();
        press(window, "Xbtn");
        const QImage image = picture();
        QCOMPARE(image.pixelColor(0, 0), Black);
        QCOMPARE(image.pixelColor(4, 0), White);
        for (int x = 0; x < 880; ++x)
            QCOMPARE(image.pixelColor(x, 489), White); // row 490 is the axis of the scale
    }

    void the_agc_curve_is_flat_along_the_top()
    {
        wideLimits();
        check(u"AGCche"_s, true);
        press(window, "Xbtn");
        deliver({Counts32, X1});
        compare({{Axis::X, X1Points}, {Axis::X, XAgc}});
        QCOMPARE(picture().pixelColor(582, 1), DarkGreen); // the lower half of a dot
    }

    void only_what_is_checked_is_drawn()
    {
        wideLimits();
        check(u"ADCche"_s, false);
        check(u"AGCche"_s, true);
        startContinuous();
        deliver({Counts32, X1, Y1});
        compare({{Axis::X, XAgc}, {Axis::Y, YAgc}});
        press(window, "ALL_btn");
        check(u"AGCche"_s, false);
        startContinuous();
        deliver({Counts32, X1, Y1});
        compare({});
    }

    void ripple_is_drawn_after_three_scans_of_its_axis()
    {
        wideLimits();
        startContinuous();
        deliver({Counts32, X1, Y1});
        compare({{Axis::X, X1Points}, {Axis::Y, Y1Points}});
        deliver({X2, Y2});
        compare(
            {{Axis::X, {{290, 45}, {580, 294}, {870, 152}}}, {Axis::Y, {{290, 205}, {580, 446}}}});
        deliver({X3, Y3});
        compare(
            {{Axis::X, X3Points}, {Axis::X, X3Ripple}, {Axis::Y, Y3Points}, {Axis::Y, Y3Ripple}});
    }

    void signal_agc_and_ripple_of_both_axes_lie_in_that_order()
    {
        wideLimits();
        check(u"AGCche"_s, true);
        startContinuous();
        deliver({Counts32, X1, Y1, X2, Y2, X3, Y3});
        compare({{Axis::X, X3Points},
                 {Axis::X, XAgc},
                 {Axis::X, X3Ripple},
                 {Axis::Y, Y3Points},
                 {Axis::Y, YAgc},
                 {Axis::Y, Y3Ripple}});
    }

    void a_light_that_did_not_change_has_its_ripple_on_the_bottom_edge()
    {
        wideLimits();
        check(u"ADCche"_s, false);
        startContinuous();
        deliver({Counts32, X1, Y1, X1, Y1, X1, Y1});
        compare(
            {{Axis::X, {{290, 490}, {580, 490}, {870, 490}}}, {Axis::Y, {{290, 490}, {580, 490}}}});
        QCOMPARE(picture().pixelColor(290, 488), DarkRed); // the upper end of a dot, Y over X
        QCOMPARE(picture().pixelColor(870, 488), DarkGreen);
    }

    void a_level_of_255_lies_in_row_36()
    {
        wideLimits();
        press(window, "Xbtn");
        deliver({{0xFC, 0xA5, 0x80, 0x05, 0x00, 0x02, 0x00, 0x00, 0x00},
                 {0xFC, 0xA5, 0x81, 0x05, 0x00, 0x00, 0x00, 255, 0}});
        compare({{Axis::X, {{435, 36}, {870, 490}}}});
        const QImage image = picture();
        QCOMPARE(image.pixelColor(435, 34), DarkGreen);
        QCOMPARE(image.pixelColor(435, 33), White);
    }

    void lights_are_spread_over_870_pixels_data()
    {
        QTest::addColumn<int>("lights");
        QTest::newRow("2") << 2;
        QTest::newRow("7, truncated") << 7;
        QTest::newRow("55, one page") << 55;
        QTest::newRow("56, one more than a page") << 56;
        QTest::newRow("120") << 120;
        QTest::newRow("500") << 500;
    }
    void lights_are_spread_over_870_pixels()
    {
        QFETCH(const int, lights);
        wideLimits();
        press(window, "Xbtn");
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, lights % 256, lights / 256, 0x00, 0x00});
        for (int first = 0; first < lights; first += 55)
            deliver(page(0x81, first, 100));
        QList<QPoint> points;
        for (int i = 0; i < lights; ++i)
            points.append({(i + 1) * 870 / lights, 312});
        QCOMPARE(points.last(), QPoint(870, 312));
        compare({{Axis::X, points}});
    }

    void the_last_page_ends_with_the_last_light()
    {
        wideLimits();
        startContinuous();
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x78, 0x00, 0x01, 0x00}); // 120 and 1
        deliver({page(0x81, 0, 100), page(0x81, 55, 100), page(0x81, 110, 200)});
        // With the count grown, lights 120 to 164 would show had they been filled.
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0xA5, 0x00, 0x01, 0x00});
        deliver(page(0x82, 0, 100));
        QList<QPoint> points;
        for (int i = 0; i < 110; ++i)
            points.append({(i + 1) * 870 / 120, 312});
        for (int i = 110; i < 120; ++i)
            points.append({(i + 1) * 870 / 120, 134});
        for (int i = 120; i < 165; ++i)
            points.append({0, 0});
        compare({{Axis::X, points}, {Axis::Y, {{5, 312}}}});
    }

    void storage_ends_at_500_and_350_lights()
    {
        wideLimits();
        startContinuous();
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x58, 0x02, 0x90, 0x01}); // 600 and 400
        for (int first = 0; first < 600; first += 55)
            deliver(page(0x81, first, 100));
        for (int first = 0; first < 400; first += 55)
            deliver(page(0x82, first, 200));
        QList<QPoint> x;
        QList<QPoint> y;
        for (int i = 0; i < 500; ++i)
            x.append({(i + 1) * 870 / 600, 312});
        for (int i = 0; i < 350; ++i)
            y.append({(i + 1) * 870 / 600, 134});
        compare({{Axis::X, x}, {Axis::Y, y}});
    }

    void with_fewer_lights_y_ends_in_the_middle()
    {
        wideLimits();
        startContinuous();
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x64, 0x00, 0x32, 0x00}); // 100 and 50
        deliver({page(0x81, 0, 100), page(0x81, 55, 100), page(0x82, 0, 200)});
        const QImage image = picture();
        QCOMPARE(image.pixelColor(435, 132), DarkRed); // light 50 at x = 435
        for (int y = 125; y < 145; ++y) {
            for (int x = 450; x < 880; ++x)
                QCOMPARE(image.pixelColor(x, y), White);
        }
        QCOMPARE(image.pixelColor(870, 310), DarkGreen);
    }

    // Repeated pages

    void a_single_test_shows_no_ripple_however_often_the_link_repeats_its_page()
    {
        wideLimits();
        press(window, "Xbtn");
        deliver(Counts32);
        deliver(Counts32);
        for (int i = 0; i < 10; ++i)
            deliver(X1);
        compare({{Axis::X, X1Points}});
    }

    void repeated_pages_leave_the_ripple_as_it_is()
    {
        wideLimits();
        startContinuous();
        deliver(Counts32);
        for (const Bytes &report : {X1, Y1, X2, Y2, X3, Y3}) {
            tick();
            deliver({report, report, report});
        }
        compare(
            {{Axis::X, X3Points}, {Axis::X, X3Ripple}, {Axis::Y, Y3Points}, {Axis::Y, Y3Ripple}});
    }

    void an_equal_page_that_was_asked_for_is_a_new_scan()
    {
        wideLimits();
        startContinuous();
        deliver(Counts32);
        // The replies of Y got lost.
        for (int i = 0; i < 3; ++i) {
            tick();
            deliver({X1, X1});
            tick();
        }
        compare({{Axis::X, X1Points}, {Axis::X, {{290, 490}, {580, 490}, {870, 490}}}});
    }

    void equal_counts_of_a_second_test_are_taken()
    {
        wideLimits();
        press(window, "Xbtn");
        deliver(Counts32);
        press(window, "Xbtn");
        deliver({Counts32, X1});
        compare({{Axis::X, X1Points}});
    }

    void the_last_page_of_an_earlier_test_does_not_answer_the_next()
    {
        wideLimits();
        press(window, "Xbtn");
        deliver({Counts32, X1});
        press(window, "Xbtn");
        deliver(X1);
        compare({});
        deliver({Counts32, X3});
        compare({{Axis::X, X3Points}});
    }

    void a_finished_test_survives_closing()
    {
        wideLimits();
        press(window, "Xbtn");
        deliver({Counts32, X1});
        window->hide();
        window->show();
        compare({{Axis::X, X1Points}});
    }

    void a_later_test_of_the_other_axis_shows_that_axis_alone()
    {
        wideLimits();
        press(window, "Xbtn");
        deliver({Counts32, X1});
        press(window, "Ybtn");
        deliver({Counts32, Y1});
        compare({{Axis::Y, Y1Points}});
    }

    // A scan that is still coming

    void a_scan_that_comes_is_waited_for()
    {
        startContinuous();
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x78, 0x00, 0x02, 0x00}); // 120 and 2
        tick();
        QCOMPARE(sent.last(), AskX);
        sent.clear();
        deliver(page(0x81, 0, 100));
        tick();
        QCOMPARE(sent, QList<QByteArray>());
        deliver(page(0x81, 55, 100));
        tick();
        QCOMPARE(sent, QList<QByteArray>());
        deliver(page(0x81, 110, 100));
        // Its turn has waited long enough, and waits for no timer either.
        QCoreApplication::processEvents();
        QCOMPARE(sent, QList<QByteArray>({AskY}));
        QCOMPARE(timer()->interval(), 9999 * 150);
    }

    void a_scan_that_stops_coming_is_waited_for_three_report_times()
    {
        startContinuous();
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x78, 0x00, 0x02, 0x00}); // 120 and 2
        tick();
        sent.clear();
        deliver(page(0x81, 0, 100));
        QElapsedTimer time;
        time.start();
        tick();
        QCOMPARE(sent, QList<QByteArray>());
        QTRY_COMPARE(sent, QList<QByteArray>({AskY}));
        QVERIFY(time.elapsed() >= 200 && time.elapsed() < 1000);
    }

    void a_page_that_is_repeated_is_no_sign_of_a_scan_that_comes()
    {
        startContinuous();
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x78, 0x00, 0x02, 0x00}); // 120 and 2
        tick();
        deliver(page(0x81, 0, 100));
        for (int i = 0; i < 4; ++i) {
            QTest::qWait(70);
            deliver(page(0x81, 0, 100));
        }
        sent.clear();
        tick();
        QCOMPARE(sent, QList<QByteArray>({AskY}));
    }

    void without_an_answer_every_tick_asks()
    {
        startContinuous();
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0xF4, 0x01, 0x5E, 0x01}); // 500 and 350
        sent.clear();
        for (int i = 0; i < 4; ++i)
            tick();
        QCOMPARE(sent, QList<QByteArray>({AskX, AskY, AskX, AskY}));
    }

    // The other layout

    void pages_behind_a_reading_of_the_settings_are_not_taken()
    {
        wideLimits();
        startContinuous();
        deliver({Counts32, X1, Y1});
        compare({{Axis::X, X1Points}, {Axis::Y, Y1Points}});
        deliver({{0xFC, 0xA2, 0x85, 0x10, 0x00}, X2, Y2});
        compare({{Axis::X, X1Points}, {Axis::Y, Y1Points}});
        deliver({Counts32, X3, Y3});
        compare({{Axis::X, X3Points}, {Axis::Y, Y3Points}});
    }

    void pages_from_before_the_counts_of_a_second_test_are_not_taken()
    {
        wideLimits();
        press(window, "Xbtn");
        deliver({Counts32, X1});
        deliver(Bytes{0xFC, 0xA2, 0x85, 0x10, 0x00});
        press(window, "Xbtn");
        deliver({X2, Y2});
        compare({});
        deliver({Counts32, X3});
        compare({{Axis::X, X3Points}});
    }

    // Others at the frame

    void pages_that_others_asked_for_are_not_taken()
    {
        wideLimits();
        startContinuous();
        deliver({Counts32, X1, Y1});
        window->standAside(FrameUsers::LightScreen, true);
        deliver({X2, Y2});
        compare({{Axis::X, X1Points}, {Axis::Y, Y1Points}});
        sent.clear();
        window->standAside(FrameUsers::LightScreen, false);
        QCOMPARE(sent, QList<QByteArray>({AskCounts}));
        deliver({X2, Y2}); // still under way
        compare({{Axis::X, X1Points}, {Axis::Y, Y1Points}});
        deliver({Counts32, X3, Y3});
        compare({{Axis::X, X3Points}, {Axis::Y, Y3Points}});
    }

    void a_test_waits_for_all_of_them_and_says_for_whom()
    {
        const auto *notice = in<QLabel>(window, "notice");
        window->standAside(FrameUsers::LightScreen, true);
        QVERIFY(!notice->isVisible());
        press(window, "Xbtn");
        QCOMPARE(notice->text(), u"The test waits until the light setting is closed"_s);
        window->standAside(FrameUsers::LightCheck, true);
        QCOMPARE(notice->text(), u"The test waits until the light check has ended"_s);
        window->standAside(FrameUsers::LightCheck, false);
        QCOMPARE(notice->text(), u"The test waits until the light setting is closed"_s);
        QCOMPARE(sent, QList<QByteArray>());
        window->standAside(FrameUsers::LightScreen, false);
        QVERIFY(!notice->isVisible());
        QCOMPARE(sent, QList<QByteArray>({AskCounts, AskX}));
    }

    void while_others_have_the_frame_no_tick_asks()
    {
        press(window, "ALL_btn");
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x78, 0x00, 0x02, 0x00}); // 120 and 2
        tick();
        deliver(page(0x81, 0, 100));
        tick(); // this one waits for the end of the scan
        window->standAside(FrameUsers::LightCheck, true);
        sent.clear();
        QTest::qWait(2 * ScanWatch::SilentReports * ScanWatch::ReportMs);
        QCOMPARE(sent, QList<QByteArray>());
        QVERIFY(!timer()->isActive());
    }

    void what_was_not_answered_before_others_is_no_matter_behind_them()
    {
        const auto *notice = in<QLabel>(window, "notice");
        press(window, "Xbtn");
        QTRY_COMPARE(notice->text(), u"No answer from the touch frame"_s);
        QVERIFY(notice->isVisible());
        window->standAside(FrameUsers::LightCheck, true);
        QCOMPARE(notice->text(), u"The test waits until the light check has ended"_s);
        window->standAside(FrameUsers::LightCheck, false);
        QVERIFY(!notice->isVisible());
    }

    void a_test_that_ended_with_its_link_does_not_go_on_behind_others()
    {
        press(window, "Xbtn");
        deliver(Counts32);
        window->OnLinkEnded();
        sent.clear();
        window->standAside(FrameUsers::LightCheck, true);
        QVERIFY(!in<QLabel>(window, "notice")->isVisible());
        window->standAside(FrameUsers::LightCheck, false);
        QCOMPARE(sent, QList<QByteArray>());
    }

    // Numbers and words

    void only_plain_digits_can_be_typed_whatever_the_locale()
    {
        const QLocale before;
        for (const QLocale &locale : {QLocale(QLocale::English, QLocale::UnitedStates),
                                      QLocale(QLocale::German, QLocale::Germany),
                                      QLocale(QLocale::Arabic, QLocale::Egypt)}) {
            QLocale::setDefault(locale);
            window = std::make_unique<test_win>();
            auto *field = in<QLineEdit>(window, "Upper_text");
            for (const QString &typed : {u"1,000"_s, u"1.000"_s, u"\u0661\u0660\u0660\u0660"_s}) {
                field->clear();
                for (const QChar digit : typed)
                    field->insert(digit);
                QVERIFY2(field->text() == u"1000"_s || field->text().isEmpty(),
                         qPrintable(field->text()));
            }
        }
        QLocale::setDefault(before);
    }

    void a_field_that_cannot_be_read_is_shown_and_no_test_starts_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("words");
        const auto row = [](const char *name, const QString &text, const QString &words) {
            QTest::newRow(qPrintable(QString::fromLatin1(name) + u' ' + text))
                << QString::fromLatin1(name) << text << words;
        };
        const QString limit = u" enter a whole number from 0 to 1100"_s;
        row("Upper_text", u"1,000"_s, u"Upper Limit:"_s + limit);
        row("Upper_text", u"1101"_s, u"Upper Limit:"_s + limit);
        row("Lower_text", u"-1"_s, u"Lower Limit:"_s + limit);
        row("Lower_text", u"99999999999"_s, u"Lower Limit:"_s + limit);
        row("interal_text", u"10000"_s, u"Interval (s): enter a whole number from 0 to 9999"_s);
        row("interal_text", u"14316558"_s, u"Interval (s): enter a whole number from 0 to 9999"_s);
        row("AGC_text", u"256"_s, u"AGC: enter a whole number from 0 to 255"_s);
    }
    void a_field_that_cannot_be_read_is_shown_and_no_test_starts()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, text);
        QFETCH(const QString, words);
        auto *field = in<QLineEdit>(window, name);
        const QString before = field->text();
        setText(name, text);
        press(window, "ALL_btn");
        QCOMPARE(sent, QList<QByteArray>());
        QVERIFY(!timer()->isActive());
        QCOMPARE(in(window, "ALL_btn")->text(), u"All Test"_s);
        const auto *notice = in<QLabel>(window, "notice");
        QVERIFY(notice->isVisible());
        QCOMPARE(notice->text(), words);
        QCOMPARE(window->focusWidget(), field);
        QCOMPARE(field->selectedText(), text);
        setText(name, before);
        press(window, "ALL_btn");
        QVERIFY(!notice->isVisible());
        QCOMPARE(sent.size(), 1);
    }

    void of_several_fields_that_cannot_be_read_the_first_is_shown()
    {
        setText(u"Lower_text"_s, u"1101"_s);
        setText(u"AGC_text"_s, u"256"_s);
        press(window, "Xbtn");
        QCOMPARE(in<QLabel>(window, "notice")->text(),
                 u"Lower Limit: enter a whole number from 0 to 1100"_s);
        QCOMPARE(window->focusWidget(), in<QLineEdit>(window, "Lower_text"));
    }

    void words_stand_above_the_plot_and_fit()
    {
        auto *notice = in<QLabel>(window, "notice");
        QVERIFY(!notice->isVisible());
        const QRect plot(70, 50, 880, 490);
        QVERIFY(!QRect(notice->mapTo(window.get(), QPoint(0, 0)), notice->size()).intersects(plot));
        for (const QString &words : {u"Interval (s): enter a whole number from 0 to 9999"_s,
                                     u"The test waits until the light setting is closed"_s,
                                     u"Scan incomplete: page 10 of 10"_s}) {
            notice->setText(words);
            QVERIFY(notice->sizeHint().width() * 3 / 2 <= notice->width());
            QVERIFY(notice->sizeHint().height() <= notice->height());
        }
    }

    // The end of a link

    void the_end_of_the_link_stops_a_continuous_test_as_stop_does()
    {
        logAction()->trigger();
        startContinuous();
        deliver({Counts32, X1, Y1});
        window->OnLinkEnded();
        QVERIFY(!timer()->isActive());
        QCOMPARE(in(window, "ALL_btn")->text(), u"All Test"_s);
        QVERIFY(in(window, "Xbtn")->isEnabled());
        QVERIFY(pictureIsEmpty());
        QVERIFY(log().endsWith(u"\nD,T,1000,400,800,600,,100,,\n"_s));
    }

    void the_end_of_the_link_ends_a_single_test_and_writes_its_log()
    {
        logAction()->trigger();
        press(window, "Xbtn");
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x38, 0x00, 0x00, 0x00}); // 56
        deliver(page(0x81, 0, 1));
        window->OnLinkEnded();
        const QString expected = log();
        QVERIFY(expected.endsWith(u"NG/PASS\nD,T,"_s + u"4,"_s.repeated(55) + u"\n"_s));
        deliver({{0xFC, 0xA5, 0x80, 0x05, 0x00, 0x38, 0x00, 0x00, 0x00}, page(0x81, 55, 2)});
        window->hide();
        QCOMPARE(log(), expected);
    }

    void curves_of_one_device_are_not_shown_for_the_next()
    {
        wideLimits();
        press(window, "Xbtn");
        deliver({Counts32, X1});
        window->OnLinkEnded();
        compare({});
        // Pages that come without counts are nobody's.
        deliver(X2);
        compare({});
        press(window, "Xbtn");
        deliver({Counts32, X1});
        compare({{Axis::X, X1Points}});
    }

    void no_level_of_one_device_is_left_in_the_curve_of_the_next()
    {
        wideLimits();
        press(window, "Xbtn");
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x38, 0x00, 0x00, 0x00}); // 56
        deliver({page(0x81, 0, 100), page(0x81, 55, 100)});
        window->OnLinkEnded();
        press(window, "Xbtn");
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x38, 0x00, 0x00, 0x00});
        deliver(page(0x81, 55, 100)); // the first page is lost
        QList<QPoint> points(55);
        points.append({870, 312});
        compare({{Axis::X, points}});
    }

    // The log

    void the_log_is_off_until_it_is_asked_for()
    {
        QCOMPARE(logAction()->text(), u"&Log to TestLog.csv"_s);
        QVERIFY(logAction()->isCheckable());
        QVERIFY(!logAction()->isChecked());
        press(window, "Xbtn");
        deliver({Counts32, X1});
        startContinuous();
        deliver({Counts32, X1, Y1});
        press(window, "ALL_btn");
        QVERIFY(!QFile::exists(logPath()));
    }

    void the_menu_opens_by_mouse_and_keyboard_and_switches_the_log()
    {
        QContextMenuEvent mouse(QContextMenuEvent::Mouse, {300, 300},
                                window->mapToGlobal(QPoint(300, 300)));
        QApplication::sendEvent(in<QWidget>(window, "centralwidget"), &mouse);
        QTRY_VERIFY(menu()->isVisible());
        QTest::keyClick(menu(), Qt::Key_L);
        QVERIFY(logAction()->isChecked());
        QTRY_VERIFY(!menu()->isVisible());

        // The key Menu.
        QContextMenuEvent keyboard(QContextMenuEvent::Keyboard, {0, 0},
                                   window->mapToGlobal(QPoint(0, 0)));
        QApplication::sendEvent(in(window, "Xbtn"), &keyboard);
        QTRY_VERIFY(menu()->isVisible());
        QTest::keyClick(menu(), Qt::Key_L);
        QVERIFY(!logAction()->isChecked());
        QTRY_VERIFY(!menu()->isVisible());

        for (QWidget *focused : {in<QWidget>(window, "Xbtn"), in<QWidget>(window, "Upper_text")}) {
            window->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(window.get()));
            focused->setFocus();
            QTest::keyClick(focused, Qt::Key_F10, Qt::ShiftModifier);
            QTRY_VERIFY(menu()->isVisible());
            QTest::keyClick(menu(), Qt::Key_Escape);
            QTRY_VERIFY(!menu()->isVisible());
        }
    }

    void a_log_of_an_earlier_day_stays_while_there_is_nothing_to_write()
    {
        const QByteArray earlier = "Date,Time,X000,NG/PASS\n260101,08:00:00:000,437,\n";
        QFile file(logPath());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(earlier) == earlier.size());
        file.close();
        const auto kept = [] {
            QFile now(logPath());
            return now.open(QIODevice::ReadOnly) ? now.readAll() : QByteArray("(no file)");
        };
        window->close();
        QCOMPARE(kept(), earlier);
        window->show();
        logAction()->trigger(); // switched on, and nothing tested
        window->close();
        QCOMPARE(kept(), earlier);
        window->show();
        startContinuous();
        deliver(Counts32); // and no level
        window->close();
        QCOMPARE(kept(), earlier);
        window.reset();
        QCOMPARE(kept(), earlier);
    }

    void a_test_of_x_writes_one_row()
    {
        logAction()->trigger();
        press(window, "Xbtn");
        deliver(Counts32);
        QVERIFY(!QFile::exists(logPath()));
        deliver(X1);
        QCOMPARE(log(), u"Date,Time,X000,X001,X002,Y000,Y001,NG/PASS\n"
                        "D,T,1000,400,800,\n"_s);
        // The test is over.
        QVERIFY(QFile::remove(logPath()));
        deliver({X1, Counts32, X2});
        logAction()->trigger();
        QVERIFY(!QFile::exists(logPath()));
    }

    void a_test_of_y_writes_two_commas_after_each_level_and_no_time()
    {
        logAction()->trigger();
        press(window, "Ybtn");
        deliver({{0xFC, 0xA5, 0x80, 0x05, 0x00, 0x02, 0x00, 0x01, 0x00},
                 {0xFC, 0xA5, 0x82, 0x04, 0x00, 0x00, 0x00, 25}});
        QCOMPARE(log(), u"Date,Time,X000,X001,Y000,NG/PASS\n100,,\n"_s);
    }

    void a_continuous_test_writes_a_row_for_each_pair_of_scans_when_stopped()
    {
        logAction()->trigger();
        startContinuous();
        deliver({Counts32, Counts32});
        for (const Bytes &report : {X1, Y1, X1, Y1}) {
            tick();
            deliver({report, report, report});
        }
        tick();
        deliver(X3);
        QVERIFY(!QFile::exists(logPath()));
        press(window, "ALL_btn");
        const QString expected = u"Date,Time,X000,X001,X002,Y000,Y001,NG/PASS\n"
                                 "D,T,1000,400,800,600,,100,,\n"
                                 "D,T,1000,400,800,600,,100,,\n"
                                 "D,T,1000,200,780,\n"_s;
        QCOMPARE(log(), expected);
        deliver({Y3, Counts32, X1}); // late
        logAction()->trigger();
        QCOMPARE(log(), expected);
    }

    void closing_the_window_writes_the_log_of_a_continuous_test()
    {
        logAction()->trigger();
        startContinuous();
        deliver({Counts32, X1, Y1});
        press(window, "exitbtn");
        QVERIFY(log().endsWith(u"\nD,T,1000,400,800,600,,100,,\n"_s));
    }

    void lights_are_numbered_with_three_digits_and_pages_follow_in_one_row()
    {
        logAction()->trigger();
        press(window, "Xbtn");
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x78, 0x00, 0x00, 0x00});
        deliver({page(0x81, 0, 1), page(0x81, 0, 1), page(0x81, 55, 2), page(0x81, 55, 2),
                 page(0x81, 110, 3), page(0x81, 110, 3)});
        QString title = u"Date,Time,"_s;
        for (int i = 0; i < 120; ++i)
            title += (i < 10 ? u"X00"_s : i < 100 ? u"X0"_s : u"X"_s) + QString::number(i) + u',';
        QCOMPARE(log(), title + u"NG/PASS\nD,T,"_s + u"4,"_s.repeated(55) + u"8,"_s.repeated(55) +
                            u"12,"_s.repeated(10) + u"\n"_s);
    }

    void fields_of_a_lost_page_are_empty_and_a_lost_scan_ends_its_row()
    {
        logAction()->trigger();
        startContinuous();
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x78, 0x00, 0x3A, 0x00}); // 120 and 58
        deliver({page(0x81, 0, 1), page(0x81, 110, 3)});                 // 55 is lost, then Y
        deliver({page(0x81, 0, 2), page(0x81, 55, 2)});                  // 110 is lost
        deliver({page(0x82, 0, 5), page(0x82, 55, 5)});
        press(window, "ALL_btn");
        const QStringList rows = log().split(u'\n');
        QCOMPARE(rows.size(), 4);
        QCOMPARE(rows.at(1),
                 u"D,T,"_s + u"4,"_s.repeated(55) + u","_s.repeated(55) + u"12,"_s.repeated(10));
        QCOMPARE(rows.at(2),
                 u"D,T,"_s + u"8,"_s.repeated(110) + u","_s.repeated(10) + u"20,,"_s.repeated(58));
        QCOMPARE(rows.at(3), QString());
    }

    void switched_on_during_a_test_the_log_begins_with_the_next_scan()
    {
        startContinuous();
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x38, 0x00, 0x01, 0x00}); // 56 and 1
        deliver(page(0x81, 0, 1));
        logAction()->trigger();
        deliver({page(0x81, 55, 2), page(0x82, 0, 3), page(0x81, 0, 4), page(0x81, 55, 5)});
        logAction()->trigger();
        const QStringList rows = log().split(u'\n');
        QCOMPARE(rows.size(), 4);
        QCOMPARE(rows.at(1), u"12,,"_s);
        QCOMPARE(rows.at(2), u"D,T,"_s + u"16,"_s.repeated(55) + u"20,"_s);
        // Switched off, it is written and at its end.
        deliver({page(0x82, 0, 6), page(0x81, 0, 7)});
        press(window, "ALL_btn");
        QCOMPARE(log().split(u'\n'), rows);
    }

    void switched_on_behind_a_test_the_log_begins_with_the_next()
    {
        press(window, "Xbtn");
        deliver({Counts32, X1});
        logAction()->trigger();
        deliver(X2); // late
        window->close();
        QVERIFY(!QFile::exists(logPath()));
        window->show();
        press(window, "Xbtn");
        deliver({Counts32, X3});
        QCOMPARE(log(), u"Date,Time,X000,X001,X002,Y000,Y001,NG/PASS\nD,T,1000,200,780,\n"_s);
    }

    void switched_on_before_the_counts_are_told_the_log_has_those()
    {
        press(window, "Xbtn");
        deliver({Counts32, X1});
        press(window, "Xbtn");
        logAction()->trigger();
        deliver({{0xFC, 0xA5, 0x80, 0x05, 0x00, 0x02, 0x00, 0x01, 0x00},
                 {0xFC, 0xA5, 0x81, 0x05, 0x00, 0x00, 0x00, 25, 50}});
        QCOMPARE(log(), u"Date,Time,X000,X001,Y000,NG/PASS\nD,T,100,200,\n"_s);
    }

    void a_log_goes_on_behind_others()
    {
        logAction()->trigger();
        startContinuous();
        deliver({Counts32, X1, Y1});
        window->standAside(FrameUsers::LightCheck, true);
        window->standAside(FrameUsers::LightCheck, false);
        deliver({Counts32, X3, Y3});
        press(window, "ALL_btn");
        QCOMPARE(log(), u"Date,Time,X000,X001,X002,Y000,Y001,NG/PASS\n"
                        "D,T,1000,400,800,600,,100,,\n"
                        "D,T,1000,200,780,600,,200,,\n"_s);
    }

    void a_new_test_begins_a_new_log()
    {
        logAction()->trigger();
        press(window, "Xbtn");
        deliver({Counts32, X1});
        press(window, "Xbtn");
        deliver({Counts32, X3});
        QCOMPARE(log(), u"Date,Time,X000,X001,X002,Y000,Y001,NG/PASS\nD,T,1000,200,780,\n"_s);
    }

    void the_log_of_an_unfinished_test_is_written_when_the_next_begins()
    {
        logAction()->trigger();
        press(window, "Xbtn");
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x38, 0x00, 0x00, 0x00}); // 56
        deliver(page(0x81, 0, 1));
        QVERIFY(!QFile::exists(logPath()));
        press(window, "Xbtn");
        QVERIFY(log().endsWith(u"NG/PASS\nD,T,"_s + u"4,"_s.repeated(55) + u"\n"_s));
    }

    void the_log_of_an_unfinished_single_test_is_written_when_the_window_closes()
    {
        logAction()->trigger();
        press(window, "Xbtn");
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x38, 0x00, 0x00, 0x00}); // 56
        deliver(page(0x81, 0, 1));
        window->hide();
        QVERIFY(log().endsWith(u"NG/PASS\nD,T,"_s + u"4,"_s.repeated(55) + u"\n"_s));
        // What comes after all is part of the same row.
        deliver(page(0x81, 55, 2));
        QVERIFY(log().endsWith(u"NG/PASS\nD,T,"_s + u"4,"_s.repeated(55) + u"8,\n"_s));
    }

    void a_late_page_of_the_other_axis_does_not_end_a_test()
    {
        logAction()->trigger();
        press(window, "Xbtn");
        deliver({0xFC, 0xA5, 0x80, 0x05, 0x00, 0x38, 0x00, 0x02, 0x00}); // 56 and 2
        deliver({page(0x81, 0, 1), Y1});
        QVERIFY(!QFile::exists(logPath()));
        deliver(page(0x81, 55, 2));
        QVERIFY(log().endsWith(u"NG/PASS\nD,T,"_s + u"4,"_s.repeated(55) + u"8,\n"_s));
    }

    void a_test_without_an_answer_writes_nothing()
    {
        logAction()->trigger();
        press(window, "Xbtn");
        startContinuous();
        press(window, "ALL_btn");
        QVERIFY(!QFile::exists(logPath()));
        QCOMPARE(boxes().size(), 0);
    }

    void a_file_that_cannot_be_written_is_told_once_a_test_and_the_text_is_kept()
    {
        QVERIFY(QDir::current().mkdir(u"TestLog.csv"_s)); // also root cannot write this
        logAction()->trigger();
        startContinuous();
        deliver({Counts32, X1, Y1});
        press(window, "ALL_btn");
        QCOMPARE(boxes().size(), 1);
        QCOMPARE(boxes().first()->windowTitle(), u"warning"_s);
        QCOMPARE(boxes().first()->text(), u"False to open ResultX.csv."_s);
        QCOMPARE(boxes().first()->icon(), QMessageBox::Warning);
        QCOMPARE(boxes().first()->standardButtons(), QMessageBox::Ok);
        QVERIFY(boxes().first()->isVisible());
        QVERIFY(!boxes().first()->isModal());
        QTest::mouseClick(boxes().first()->button(QMessageBox::Ok), Qt::LeftButton);
        QTRY_COMPARE(boxes().size(), 0);
        // The next try is silent.
        window->hide();
        QCOMPARE(boxes().size(), 0);
        window->show();
        QVERIFY(QDir::current().rmdir(u"TestLog.csv"_s));
        window->hide();
        QVERIFY(log().endsWith(u"\nD,T,1000,400,800,600,,100,,\n"_s));
        // The next test warns again.
        QVERIFY(QFile::remove(logPath()));
        QVERIFY(QDir::current().mkdir(u"TestLog.csv"_s));
        window->show();
        press(window, "Xbtn");
        deliver({Counts32, X1});
        QCOMPARE(boxes().size(), 1);
        QVERIFY(QDir::current().rmdir(u"TestLog.csv"_s));
    }

    void a_log_for_which_the_disk_had_no_room_is_written_when_there_is_some()
    {
        logAction()->trigger();
        startContinuous();
        deliver({Counts32, X1, Y1});
        {
            const SmallDisk disk(10);
            press(window, "ALL_btn");
            QCOMPARE(boxes().size(), 1);
        }
        window->hide();
        QVERIFY(log().endsWith(u"\nD,T,1000,400,800,600,,100,,\n"_s));
    }

    // A pipe would wait for a reader, and a link lead to a file of somebody else's choice.
    void a_log_is_written_to_a_file_only()
    {
        QCOMPARE(::mkfifo("TestLog.csv", 0600), 0);
        logAction()->trigger();
        press(window, "Xbtn");
        deliver({Counts32, X1});
        QCOMPARE(boxes().size(), 1);
        QVERIFY(QFile::remove(u"TestLog.csv"_s));

        QVERIFY(QFile::link(QDir::current().filePath(u"elsewhere"_s), u"TestLog.csv"_s));
        press(window, "Xbtn");
        deliver({Counts32, X1});
        QVERIFY(!QFile::exists(u"elsewhere"_s));
        QCOMPARE(boxes().size(), 2);
        QVERIFY(QFile::remove(u"TestLog.csv"_s));
    }

    void what_is_not_written_yet_is_written_when_the_program_ends()
    {
        logAction()->trigger();
        startContinuous();
        deliver({Counts32, X1});
        window.reset();
        QVERIFY(log().endsWith(u"\nD,T,1000,400,800,\n"_s));
    }

    void each_logged_level_can_be_traced()
    {
        QLoggingCategory::setFilterRules(u"quorvel.signaltest.debug=true"_s);
        logAction()->trigger();
        startContinuous();
        deliver(Counts32);
        for (const char *trace : {"doCVSstring_X: 0", "doCVSstring_X: 1", "doCVSstring_X: 2",
                                  "doCVSstring_Y: 0", "doCVSstring_Y: 1"})
            QTest::ignoreMessage(QtDebugMsg, trace);
        deliver({X1, Y1});
        QLoggingCategory::setFilterRules({});
    }
};

QTEST_MAIN(TestTestWin)
#include "tst_test_win.moc"
