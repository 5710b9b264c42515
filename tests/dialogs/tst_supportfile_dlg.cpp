// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/supportfile_dlg.h"
#include "tests/support/widgets.h"

#include <QFile>
#include <QFontDatabase>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestSupportFileDlg : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SupportFile_dlg> dialog;

private slots:
    void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    void init()
    {
        dialog = std::make_unique<SupportFile_dlg>();
        dialog->setEntries({{u"about.txt"_s, u"what there is"_s, "about all", u"about all"_s},
                            {u"frames.pcap"_s, u"frames"_s, QByteArray("\0\xFF", 2),
                             u"12:00:00.000  rotation: read"_s}});
        dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
    }

    void every_file_is_shown_with_its_content()
    {
        auto *files = in<QListWidget>(dialog, "fileList");
        const auto *content = in<QPlainTextEdit>(dialog, "contentView");
        QCOMPARE(files->count(), 2);
        QCOMPARE(files->item(0)->text(), u"about.txt"_s);
        QCOMPARE(files->item(1)->toolTip(), u"frames"_s);
        QCOMPARE(files->item(1)->data(Qt::AccessibleDescriptionRole).toString(), u"frames"_s);
        QCOMPARE(content->toPlainText(), u"about all"_s);
        QVERIFY(content->isReadOnly());
        // In the desktop's letters of one width, for the columns.
        QCOMPARE(content->font().family(),
                 QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
        files->setFocus();
        QTest::keyClick(files, Qt::Key_Down);
        QCOMPARE(content->toPlainText(), u"12:00:00.000  rotation: read"_s);
    }

    void what_is_written_is_what_was_shown()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"support.zip"_s);
        dialog->saveTo(path);
        QCOMPARE(in<QLabel>(dialog, "outcomeLab")->text(), u"Written to %1."_s.arg(path));
        QCOMPARE(QProcess::execute(u"python3"_s, {u"-m"_s, u"zipfile"_s, u"-e"_s, path,
                                                  folder.filePath(u"out"_s)}),
                 0);
        QFile frames(folder.filePath(u"out/frames.pcap"_s));
        QVERIFY(frames.open(QIODevice::ReadOnly));
        QCOMPARE(frames.readAll(), QByteArray("\0\xFF", 2));
    }

    void the_button_asks_for_a_file_whose_name_gets_the_usual_ending()
    {
        const QTemporaryDir folder;
        bool wasAsked = false;
        whenOpen<QFileDialog>([&](QFileDialog *asked) {
            wasAsked = true;
            // What else the tool offers can be used meanwhile.
            QCOMPARE(asked->windowModality(), Qt::WindowModal);
            chooseFile(asked, folder.filePath(u"support"_s));
        });
        press(dialog, "saveButton");
        QVERIFY(wasAsked);
        const QString path = folder.filePath(u"support.zip"_s);
        QCOMPARE(in<QLabel>(dialog, "outcomeLab")->text(), u"Written to %1."_s.arg(path));
        QVERIFY(QFileInfo(path).size() > 0);
    }

    void whoever_changes_their_mind_writes_nothing()
    {
        whenOpen<QFileDialog>([](QFileDialog *asked) { QTest::keyClick(asked, Qt::Key_Escape); });
        press(dialog, "saveButton");
        QCOMPARE(in<QLabel>(dialog, "outcomeLab")->text(), QString());
        QVERIFY(dialog->isVisible());
    }

    void what_keeps_it_from_being_written_is_said_until_the_next_time()
    {
        dialog->saveTo(u"/nowhere/support.zip"_s);
        const auto *outcome = in<QLabel>(dialog, "outcomeLab");
        QVERIFY2(outcome->text().contains(u"/nowhere/support.zip cannot be written"_s),
                 qPrintable(outcome->text()));
        dialog->setEntries({{u"about.txt"_s, {}, {}, {}}});
        QCOMPARE(outcome->text(), QString());
        QCOMPARE(in<QPlainTextEdit>(dialog, "contentView")->toPlainText(), QString());
    }

    void the_keyboard_reaches_everything_and_leaves()
    {
        in<QListWidget>(dialog, "fileList")->setFocus();
        for (const char *next : {"contentView", "saveButton", "closeButton"}) {
            QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
            QCOMPARE(dialog->focusWidget()->objectName(), QString::fromLatin1(next));
        }
        for (const char *named : {"fileList", "contentView"})
            QVERIFY(!in<QWidget>(dialog, named)->accessibleName().isEmpty());
        QVERIFY(in(dialog, "saveButton")->isDefault());
        QTest::keyClick(dialog.get(), Qt::Key_Escape);
        QVERIFY(!dialog->isVisible());
    }
};

QTEST_MAIN(TestSupportFileDlg)
#include "tst_supportfile_dlg.moc"
