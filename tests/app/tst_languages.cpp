// SPDX-License-Identifier: GPL-3.0-or-later

// Every window in every language: what is shown fits, is translated, and is reached by keys of its
// own. Each run belongs to a desktop of its own: CMakeLists.txt gives its fonts and its scale.

#include "config/xml_class.h"
#include "dialogs/fittext.h"
#include "resources/resources.h"
#include "resources/translations.h"
#include "tests/support/allwindows.h"
#include "tests/support/overflow.h"
#include "tests/support/settingshome.h"
#include "tests/support/widgets.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// What a line that comes and goes may say, and in which context it is translated.
struct Line
{
    const char *window;
    const char *label;
    const char *context;
    QList<const char *> texts;
};

const Line Lines[] = {
    {"Setting_dlg", "noticeLab", "outcome", {"Kept.", "Not kept: cannot write %1"}},
    {"smoothing_dlg", "noticeLab", "outcome", {"Kept.", "Not kept: cannot write %1"}},
    {"useradv_dlg",
     "noticeLab",
     "useradv_dlg",
     {"Kept, and sent to the touch frame.", "Sent. Not kept: cannot write %1",
      "Kept. Sent when a frame is connected by USB."}},
    {"test_win", "notice", "ScanWatch", {"No answer from the touch frame"}},
    {"test_win",
     "notice",
     "test_win",
     {"The test waits until the light setting is closed", "%1 enter a whole number from 0 to %2"}},
    {"LightSet_dlg",
     "notice",
     "LightSet_dlg",
     {"%1: enter a whole number from 0 to %2", "The smallest ADC value is above the largest",
      "The smallest ADC value at the edges is above the largest",
      "The touch frame has no such light", "No answer about light %1 %2",
      "The touch frame has set other values"}},
    {"MainWindow", "stalab", "MainWindow", {"Have not linked equipment", "Already link equipment"}},
};

// And buttons that say something else at times.
const Line Buttons[] = {
    {"test_win", "ALL_btn", "test_win", {"All Test", "Stop"}},
    {"LightSet_dlg", "LightChooseBtn_2", "LightSet_dlg", {"Disable", "Enable"}},
    {"connect_dlg", "findButton", "connect_dlg", {"Fi&nd", "Stop"}},
    {"MainWindow", "nextbtn", "StatusLine", {"&Details", "&What to do next"}},
};

QString translated(const Line &line, const char *text)
{
    QString words = QCoreApplication::translate(line.context, text);
    return words.replace(u"%1"_s, u"~/.config/ForQuorvel"_s).replace(u"%2"_s, u"1100"_s);
}

QChar acceleratorOf(const QString &text)
{
    const auto at = QString(text).replace(u"&&"_s, u"__"_s).indexOf(u'&');
    return at < 0 || at + 1 >= text.size() ? QChar() : text.at(at + 1).toLower();
}

} // namespace

class TestLanguages : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Translations> translations;
    std::unique_ptr<SettingsHome> home;
    std::optional<AllWindows> all;

    // Some windows fit their words to their place when they come up.
    void open(const QString &language, bool shown)
    {
        translations = std::make_unique<Translations>(language);
        all.emplace();
        for (QWidget *window : windowsOfTool()) {
            if (!shown || window->inherits("Calibration_Dlg"))
                continue;
            window->setAttribute(Qt::WA_DontShowOnScreen);
            window->setWindowModality(Qt::NonModal);
            window->show();
        }
        QCoreApplication::processEvents();
    }
    static QWidget *windowCalled(const char *name)
    {
        for (QWidget *window : windowsOfTool())
            if (window->objectName() == QLatin1StringView(name))
                return window;
        return nullptr;
    }
    static void addLanguages()
    {
        QTest::addColumn<QString>("language");
        for (const QString &language : Translations::languages())
            QTest::newRow(qPrintable(language)) << language;
    }
    static QStringList textsOf(const QObject *object)
    {
        QStringList all;
        for (const char *property : {"text", "title", "windowTitle", "toolTip", "accessibleName",
                                     "accessibleDescription", "placeholderText"})
            all.append(object->property(property).toString());
        all.removeAll(QString());
        return all;
    }

private slots:
    void initTestCase()
    {
        initResources();
        QGuiApplication::setQuitOnLastWindowClosed(false);
    }
    void init()
    {
        hidver = {};
        home = std::make_unique<SettingsHome>();
    }
    void cleanup()
    {
        all.reset();
        translations.reset();
        home.reset();
    }

    void every_text_fits_data() { addLanguages(); }
    void every_text_fits()
    {
        QFETCH(const QString, language);
        open(language, true);
        QVERIFY2(windowsOfTool().size() >= 17, qPrintable(QString::number(windowsOfTool().size())));
        QStringList bad;
        for (QWidget *window : windowsOfTool())
            bad += overflow::texts(*window);
        QVERIFY2(bad.isEmpty(), qPrintable(u'\n' + bad.join(u'\n')));
    }

    void what_comes_and_goes_fits_data() { addLanguages(); }
    void what_comes_and_goes_fits()
    {
        QFETCH(const QString, language);
        open(language, true);
        QStringList bad;
        for (const Line &line : Lines) {
            QVERIFY2(windowCalled(line.window), line.window);
            auto *label =
                windowCalled(line.window)->findChild<QLabel *>(QString::fromLatin1(line.label));
            QVERIFY2(label, line.label);
            for (const char *text : line.texts) {
                label->setText(translated(line, text));
                label->show();
                if (label->objectName() == u"noticeLab")
                    fitText(label, label->width());
                if (overflow::isTooSmall(*label))
                    bad.append(u"%1/%2: \"%3\", %4 x %5 wants %6 x %7"_s
                                   .arg(QLatin1StringView(line.window),
                                        QLatin1StringView(line.label), label->text())
                                   .arg(label->width())
                                   .arg(label->height())
                                   .arg(label->sizeHint().width())
                                   .arg(label->sizeHint().height()));
            }
        }
        for (const Line &line : Buttons) {
            QVERIFY2(windowCalled(line.window), line.window);
            auto *button = windowCalled(line.window)
                               ->findChild<QAbstractButton *>(QString::fromLatin1(line.label));
            QVERIFY2(button, line.label);
            for (const char *text : line.texts) {
                button->setText(translated(line, text));
                if (overflow::isTooSmall(*button))
                    bad.append(u"%1/%2: \"%3\""_s.arg(QLatin1StringView(line.window),
                                                      QLatin1StringView(line.label),
                                                      button->text()));
            }
        }
        QVERIFY2(bad.isEmpty(), qPrintable(u'\n' + bad.join(u'\n')));
    }

    void no_two_controls_of_a_window_have_one_accelerator_data() { addLanguages(); }
    void no_two_controls_of_a_window_have_one_accelerator()
    {
        QFETCH(const QString, language);
        open(language, false);
        QStringList bad;
        int accelerators = 0;
        const auto look = [&](const QString &where, const QStringList &texts) {
            QString seen;
            for (const QString &text : texts) {
                const QChar key = acceleratorOf(text);
                if (key.isNull())
                    continue;
                ++accelerators;
                if (seen.contains(key))
                    bad.append(u"%1: %2 of \"%3\""_s.arg(where, key, text));
                seen += key;
            }
        };
        for (const QWidget *window : windowsOfTool()) {
            QStringList texts;
            for (const QWidget *widget : window->findChildren<QWidget *>()) {
                const auto *label = qobject_cast<const QLabel *>(widget);
                const bool isControl =
                    qobject_cast<const QAbstractButton *>(widget) || (label && label->buddy());
                if (isControl && widget->window() == window && widget->isVisibleTo(window))
                    texts.append(widget->property("text").toString());
            }
            look(window->objectName(), texts);
        }
        for (const QWidget *menu : QApplication::allWidgets()) {
            if (!menu->inherits("QMenu"))
                continue;
            QStringList texts;
            for (const QAction *action : menu->actions())
                texts.append(action->text());
            look(u"menu"_s, texts);
        }
        QVERIFY2(bad.isEmpty(), qPrintable(bad.join(u'\n')));
        QVERIFY2(accelerators > 20, qPrintable(QString::number(accelerators)));
    }

    // Chinese has no letters of its own that look like English ones.
    void no_English_is_left_in_Chinese()
    {
        open(u"zh_CN"_s, false);
        static const QRegularExpression word(u"[A-Za-z]{3,}"_s);
        const QStringList names{u"Quorvel"_s, u"quorvel"_s, u"MalvoTools"_s, u"ADC"_s,   u"AGC"_s,
                                u"ORG"_s,     u"USB"_s,     u"UART"_s,       u"TUIO"_s,  u"UDP"_s,
                                u"TCP"_s,     u"SID"_s,     u"PID"_s,        u"UNDEF"_s, u"ESC"_s,
                                u"TestLog"_s, u"csv"_s,     u"dev"_s,        u"usb"_s,   u"fake"_s,
                                u"Min"_s,     u"Max"_s};
        QStringList bad;
        int texts = 0;
        QList<const QObject *> objects;
        for (const QWidget *widget : QApplication::allWidgets())
            objects.append(widget);
        for (const QWidget *window : windowsOfTool())
            for (const QAction *action : window->findChildren<QAction *>())
                objects.append(action);
        for (const QObject *object : objects) {
            if (qobject_cast<const QLineEdit *>(object) || qobject_cast<const QComboBox *>(object))
                continue;
            for (const QString &text : textsOf(object)) {
                ++texts;
                for (auto words = word.globalMatch(text); words.hasNext();)
                    if (const QString found = words.next().captured(); !names.contains(found))
                        bad.append(u"%1: %2"_s.arg(object->objectName(), text));
            }
        }
        bad.removeDuplicates();
        QVERIFY2(bad.isEmpty(), qPrintable(u'\n' + bad.join(u'\n')));
        QVERIFY2(texts > 200, qPrintable(QString::number(texts)));
    }

    void presets_are_kept_by_one_name_in_every_language_data() { addLanguages(); }
    void presets_are_kept_by_one_name_in_every_language()
    {
        QFETCH(const QString, language);
        open(language, false);
        const QWidget *window = windowCalled("Setting_dlg");
        auto *operate = window->findChild<QPushButton *>(u"Operatebtn"_s);
        operate->click();
        window->findChild<QPushButton *>(u"applybtn"_s)->click();
        QCOMPARE(window->findChild<QLabel *>(u"UseLab"_s)->text(), operate->text());
        QCOMPARE(operate->text() == u"Operate"_s, language == u"en"_s);
        const auto kept = XML_CLASS().read_easysetting();
        QCOMPARE(kept.Use, u"Operate"_s);
        QCOMPARE(kept.Environment, u"Indoor"_s);
    }

    void the_toolkits_own_buttons_speak_it_too()
    {
        open(u"de"_s, false);
        const QMessageBox box(QMessageBox::Warning, QString(), QString(),
                              QMessageBox::Cancel | QMessageBox::Save);
        QStringList texts;
        for (const QAbstractButton *button : box.buttons())
            texts.append(QString(button->text()).remove(u'&'));
        texts.sort();
        QCOMPARE(texts, QStringList({u"Abbrechen"_s, u"Speichern"_s}));
    }
};

QTEST_MAIN(TestLanguages)
#include "tst_languages.moc"
