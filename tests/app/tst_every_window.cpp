// SPDX-License-Identifier: GPL-3.0-or-later

// What holds in every window of the tool: what is told to assistive tools, and what can be read
// on a light and on a dark desktop.

#include "config/windowplaces.h"
#include "dialogs/calibration_dlg.h"
#include "dialogs/lightset_dlg.h"
#include "dialogs/readable.h"
#include "dialogs/rotation_dlg.h"
#include "dialogs/test_win.h"
#include "dialogs/wholescreen.h"
#include "resources/resources.h"
#include "resources/translations.h"
#include "tests/support/allwindows.h"
#include "tests/support/frames.h"
#include "tests/support/settingshome.h"
#include "tests/support/widgets.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionGroupBox>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// What is described to have a colour of its own.
const QHash<QString, QColor> OwnColours{
    {u"MainWindow/pushButton"_s, QColor(75, 76, 161)},
    {u"Setting_dlg/UseLab"_s, QColor(0, 0, 255)},
    {u"Setting_dlg/EnvironmentLab"_s, QColor(0, 0, 255)},
    {u"Rotation_dlg/Rotationlab"_s, QColor(0, 0, 255)},
    {u"test_win/ALL_btn"_s, QColor(0, 170, 0)},
    {u"LightSet_dlg/label_15"_s, QColor(255, 40, 12)},
};

QString nameOf(const QWidget *widget)
{
    return widget->window()->objectName() + u'/' + widget->objectName();
}

QString visibleText(const QWidget *widget)
{
    QString text;
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
        text = button->text();
    else if (const auto *label = qobject_cast<const QLabel *>(widget))
        text = label->text();
    else if (const auto *group = qobject_cast<const QGroupBox *>(widget))
        text = group->title();
    // Where letters are no part of a language, an accelerator stands behind the text.
    static const QRegularExpression behind(u"\\(&.\\)"_s);
    return text.remove(behind).remove(u'&').trimmed();
}

// A list of choices is named by its label: its own name is the choice.
QString spokenName(QWidget *widget)
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(widget);
    if (!interface)
        return {};
    if (qobject_cast<QComboBox *>(widget)) {
        const auto labels = interface->relations(QAccessible::Label);
        return labels.isEmpty() ? QString() : labels.first().first->text(QAccessible::Name);
    }
    return interface->text(QAccessible::Name);
}

// Whole words of it, but for an accelerator behind the text.
bool beginsWith(QString name, const QString &text)
{
    static const QRegularExpression behind(u"\\([A-Z]\\)"_s);
    name.remove(behind);
    return name.startsWith(text) &&
           (name.size() == text.size() || !name.at(text.size()).isLetterOrNumber());
}

// Where a widget draws its text, without its frame.
QRect textRect(QWidget *widget)
{
    const QStyle *style = widget->style();
    if (qobject_cast<QPushButton *>(widget))
        return widget->rect().adjusted(4, 4, -4, -4);
    if (auto *button = qobject_cast<QAbstractButton *>(widget)) {
        QStyleOptionButton option;
        option.initFrom(button);
        return style->subElementRect(button->inherits("QRadioButton")
                                         ? QStyle::SE_RadioButtonContents
                                         : QStyle::SE_CheckBoxContents,
                                     &option, button);
    }
    if (auto *group = qobject_cast<QGroupBox *>(widget)) {
        QStyleOptionGroupBox option;
        option.initFrom(group);
        option.text = group->title();
        option.subControls = QStyle::SC_GroupBoxLabel;
        return style->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, group);
    }
    if (auto *box = qobject_cast<QComboBox *>(widget)) {
        QStyleOptionComboBox option;
        option.initFrom(box);
        return style->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField,
                                     box);
    }
    if (qobject_cast<QLineEdit *>(widget) || qobject_cast<QPlainTextEdit *>(widget))
        return widget->rect().adjusted(3, 3, -3, -3);
    return widget->rect();
}

// The colour of most of a picture, and the one that differs most from it.
struct Look
{
    QColor ground;
    QColor ink;
    bool hasInkOf(const QColor &color) const { return ink.rgb() == color.rgb(); }
    qreal contrast() const { return readable::contrast(ink, ground); }
};

Look look(const QImage &picture)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            ++counts[picture.pixel(x, y)];
    Look seen;
    int most = 0;
    for (const auto [colour, count] : counts.asKeyValueRange()) {
        if (count > most) {
            most = count;
            seen.ground = QColor(colour);
        }
    }
    seen.ink = seen.ground;
    for (const QRgb colour : counts.keys())
        if (readable::contrast(colour, seen.ground) > seen.contrast())
            seen.ink = QColor(colour);
    return seen;
}

QPalette lightPalette()
{
    return {QColor(239, 239, 239)};
}
QPalette darkPalette()
{
    QPalette dark(QColor(53, 53, 53));
    dark.setColor(QPalette::Base, QColor(35, 35, 35));
    return dark;
}
QPalette blackPalette()
{
    QPalette black(Qt::black);
    black.setColor(QPalette::Base, Qt::black);
    return black;
}

} // namespace

class TestEveryWindow : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;
    std::optional<AllWindows> all;

    void open()
    {
        all.emplace();
        // They have their words, or fit them to their place, when they come up.
        all->calibrationCheck.show();
        all->main.findChild<Rotation_dlg *>()->show();
    }
    static QWidgetList shownIn(const QWidget *window)
    {
        QWidgetList all;
        for (QWidget *widget : window->findChildren<QWidget *>())
            if (widget->window() == window && widget->isVisibleTo(window))
                all.append(widget);
        return all;
    }
    // Everything that comes and goes is there, with words.
    static void fillIn()
    {
        for (const QWidget *window : windowsOfTool()) {
            for (const QString &name : {u"notice"_s, u"noticeLab"_s, u"L1_lab"_s}) {
                if (auto *label = window->findChild<QLabel *>(name)) {
                    label->setText(u"Words"_s);
                    label->show();
                }
            }
            for (QLineEdit *field : window->findChildren<QLineEdit *>())
                field->setText(u"123"_s);
            for (QPlainTextEdit *view : window->findChildren<QPlainTextEdit *>())
                view->setPlainText(u"Words"_s);
            for (QPushButton *button : window->findChildren<QPushButton *>())
                button->setEnabled(true);
        }
    }
    static void everyTextReads()
    {
        int texts = 0;
        QStringList bad;
        for (QWidget *window : windowsOfTool()) {
            const QImage picture = window->grab().toImage();
            for (QWidget *widget : shownIn(window)) {
                const auto *field = qobject_cast<QLineEdit *>(widget);
                const bool hasText = !visibleText(widget).isEmpty() || field ||
                                     qobject_cast<QComboBox *>(widget) ||
                                     qobject_cast<QPlainTextEdit *>(widget);
                const bool isCovered = qobject_cast<QComboBox *>(widget->parentWidget());
                if (!hasText || isCovered || (!widget->isEnabled() && !field))
                    continue;
                ++texts;
                const QRect place(widget->mapTo(window, textRect(widget).topLeft()),
                                  textRect(widget).size());
                const Look seen = look(picture.copy(place));
                const QString facts =
                    u"%1: %2 on %3, %4"_s.arg(nameOf(widget), seen.ink.name(), seen.ground.name())
                        .arg(seen.contrast());
                if (seen.contrast() < 4.5)
                    bad.append(facts);
                const auto own = OwnColours.constFind(nameOf(widget));
                if (own != OwnColours.cend() && !seen.hasInkOf(*own))
                    bad.append(facts + u", not "_s + own->name());
            }
        }
        QVERIFY2(bad.isEmpty(), qPrintable(bad.join(u'\n')));
        QVERIFY2(texts > 120, qPrintable(QString::number(texts)));
    }

private slots:
    void initTestCase()
    {
        initResources();
        QGuiApplication::setQuitOnLastWindowClosed(false);
        // A letter's thinnest line has its whole colour.
        QFont font = QApplication::font();
        font.setStyleStrategy(QFont::NoAntialias);
        QApplication::setFont(font);
    }
    void init()
    {
        hidver = {};
        home = std::make_unique<SettingsHome>();
    }
    void cleanup()
    {
        all.reset();
        home.reset();
        QApplication::setPalette(QPalette());
    }

    void every_window_is_found_where_it_was_left()
    {
        open();
        QStringList forgotten;
        for (QWidget *window : windowsOfTool()) {
            if (qobject_cast<WholeScreen *>(window))
                continue;
            window->show();
            window->hide();
            if (!windowplaces::of(window->objectName()))
                forgotten += window->objectName();
        }
        QCOMPARE(forgotten, QStringList());
    }

    void what_is_spoken_begins_with_what_is_seen_data()
    {
        QTest::addColumn<QString>("language");
        for (const QString &language : Translations::languages())
            QTest::newRow(qPrintable(language)) << language;
    }
    void what_is_spoken_begins_with_what_is_seen()
    {
        QFETCH(const QString, language);
        const Translations translations(language);
        open();
        int controls = 0;
        QStringList bad;
        for (QWidget *window : windowsOfTool()) {
            for (QWidget *widget : shownIn(window)) {
                const QString text = visibleText(widget);
                if (text.isEmpty())
                    continue;
                ++controls;
                const auto *label = qobject_cast<QLabel *>(widget);
                QWidget *named = label && label->buddy() ? label->buddy() : widget;
                QString expected = text;
                if (named != widget && (expected.endsWith(u':') || expected.endsWith(u'：')))
                    expected.chop(1);
                if (!beginsWith(spokenName(named), expected))
                    bad.append(u"%1: \"%2\" is spoken of as \"%3\""_s.arg(nameOf(named), expected,
                                                                          spokenName(named)));
            }
        }
        QVERIFY2(bad.isEmpty(), qPrintable(bad.join(u'\n')));
        QVERIFY2(controls > 90, qPrintable(QString::number(controls)));
    }

    void what_can_have_the_keyboard_has_a_name()
    {
        open();
        QStringList bad;
        for (QWidget *window : windowsOfTool())
            for (QWidget *widget : shownIn(window))
                if ((widget->focusPolicy() & Qt::TabFocus) != 0 && spokenName(widget).isEmpty())
                    bad.append(nameOf(widget));
        QVERIFY2(bad.isEmpty(), qPrintable(bad.join(u'\n')));
    }

    void the_status_is_spoken_as_it_is_seen()
    {
        open();
        auto *status = all->main.findChild<QLabel *>(u"stalab"_s);
        QCOMPARE(spokenName(status), u"Already link equipment"_s);
        all->main.UiWhenUncon();
        QCOMPARE(spokenName(status), u"Have not linked equipment"_s);
    }

    void a_text_that_changes_is_spoken_as_it_is_then()
    {
        open();
        auto *both = all->main.findChild<test_win *>()->findChild<QPushButton *>(u"ALL_btn"_s);
        both->click();
        QCOMPARE(spokenName(both), u"Stop"_s);
        both->click();
        QCOMPARE(spokenName(both), u"All Test"_s);
        all->question.ontimer();
        QCOMPARE(spokenName(all->question.findChild<QPushButton *>(u"Nobtn"_s)), u"No = 9"_s);
    }

    void every_text_reads_on_this_desktop_data()
    {
        QTest::addColumn<QPalette>("palette");
        QTest::newRow("light") << lightPalette();
        QTest::newRow("dark") << darkPalette();
        QTest::newRow("black") << blackPalette();
    }
    void every_text_reads_on_this_desktop()
    {
        QFETCH(const QPalette, palette);
        QApplication::setPalette(palette);
        open();
        fillIn();
        everyTextReads();
    }

    void every_text_reads_when_the_desktop_changes_its_colours()
    {
        QApplication::setPalette(lightPalette());
        open();
        fillIn();
        for (const QPalette &palette : {darkPalette(), lightPalette(), blackPalette()}) {
            QApplication::setPalette(palette);
            QCoreApplication::processEvents();
            everyTextReads();
        }
    }

    void only_texts_of_a_described_colour_leave_the_palette()
    {
        QApplication::setPalette(darkPalette());
        open();
        for (QWidget *window : windowsOfTool()) {
            for (QWidget *widget : shownIn(window)) {
                if (visibleText(widget).isEmpty() || !widget->isEnabled())
                    continue;
                const QColor text = widget->palette().color(widget->foregroundRole());
                const QColor expected = OwnColours.value(
                    nameOf(widget), QApplication::palette(widget).color(widget->foregroundRole()));
                QVERIFY2(text == expected, qPrintable(nameOf(widget)));
            }
        }
    }

    void the_curves_of_the_signal_test_read_on_this_desktop_data()
    {
        every_text_reads_on_this_desktop_data();
    }
    void the_curves_of_the_signal_test_read_on_this_desktop()
    {
        QFETCH(const QPalette, palette);
        QApplication::setPalette(palette);
        open();
        auto *window = all->main.findChild<test_win *>();
        const auto take = [window](const char *bytes) {
            Frame frame = deviceFrame(bytes);
            window->DoRecv03(frame.data());
        };
        for (const auto &[button, page, colour] :
             {std::tuple(u"Xbtn"_s, "A5 81 00 00 00 00 40 80 C0 60", QColor(Qt::darkGreen)),
              std::tuple(u"Ybtn"_s, "A5 82 00 00 00 00 40 80 C0 60", QColor(Qt::darkRed))}) {
            window->findChild<QPushButton *>(button)->click();
            take("A5 80 00 00 04 00 04 00");
            take(page);
            const QImage picture = window->grab().toImage();
            const Look curve = look(picture.copy(QRect(72, 52, 870, 480)));
            QCOMPARE(curve.ground, QColor(Qt::white));
            const Look scale = look(picture.copy(QRect(26, 40, 30, 500)));
            QCOMPARE(scale.ground, QColor(Qt::white));
            QVERIFY2(scale.contrast() >= 4.5, qPrintable(scale.ink.name()));
            int drawn = 0;
            for (int y = 52; y < 530; ++y)
                for (int x = 72; x < 940; ++x)
                    drawn += picture.pixel(x, y) == colour.rgb() ? 1 : 0;
            QVERIFY2(drawn > 50, qPrintable(button));
            QVERIFY(readable::contrast(colour, curve.ground) >= 4.5);
        }
    }

    void the_picture_of_the_lights_reads_on_this_desktop_data()
    {
        every_text_reads_on_this_desktop_data();
    }
    void the_picture_of_the_lights_reads_on_this_desktop()
    {
        QFETCH(const QPalette, palette);
        QApplication::setPalette(palette);
        open();
        auto *window = all->main.findChild<LightSet_dlg *>();
        const auto take = [window](const char *bytes) {
            Frame frame = deviceFrame(bytes);
            window->DoRecv03(frame.data());
        };
        window->show();
        take("A2 85 00 00 64 00 C8 00 64 00 C8 00 32 00 32 00 04 00 04 00");
        window->findChild<QLineEdit *>(u"LightDir"_s)->setText(u"X"_s);
        window->findChild<QLineEdit *>(u"LightNum"_s)->setText(u"1"_s);
        for (int i = 0; i < 12; ++i)
            window->ontimer();
        take("A5 80 00 00 04 00 04 00");
        take("A5 81 00 00 00 00 40 10 40 10 40 10 40 10");
        const QImage picture = window->grab().toImage();
        // Its label, above the bottom and left of the bar.
        const QRect place(picture.width() / 2 - 160, picture.height() - 115, 150, 20);
        const Look label = look(picture.copy(place));
        QCOMPARE(label.ground, QColor(Qt::white));
        QVERIFY2(label.contrast() >= 4.5, qPrintable(label.ink.name()));
        window->close();
    }

    void the_words_of_the_calibration_read()
    {
        open();
        Calibration_Dlg screen;
        screen.setPrimaryScr(0);
        screen.resize(screen.calibratedScreen().size());
        const QImage picture = screen.grab().toImage();
        const Look words = look(picture.copy(picture.rect().adjusted(300, 300, -300, -300)));
        QCOMPARE(words.ground, QColor(Qt::blue));
        QVERIFY2(words.contrast() >= 4.5, qPrintable(words.ink.name()));
    }
};

QTEST_MAIN(TestEveryWindow)
#include "tst_every_window.moc"
