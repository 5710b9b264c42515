// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/version_dlg.h"

#include "device/struct.h"
#include "dialogs/fittext.h"
#include "tests/support/files.h"
#include "tests/support/ordinaryuser.h"
#include "tests/support/widgets.h"

#include <QClipboard>
#include <QCloseEvent>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

static_assert(std::is_default_constructible_v<Version_Dlg>);

namespace {

// Stands for the main window.
class Window : public QWidget
{
public:
    int closed = 0;
    bool hiddenFirst = false;

protected:
    void closeEvent(QCloseEvent *event) override
    {
        ++closed;
        hiddenFirst = isHidden();
        QWidget::closeEvent(event);
    }
};

QStringList debugOutput;

void collect(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    Q_UNUSED(context)
    if (type == QtDebugMsg)
        debugOutput.append(message);
}

} // namespace

class TestVersionDlg : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> place;
    QString before;

    static QStringList lines(const Version_Dlg &dialog)
    {
        QStringList texts;
        for (const char *name : {"label_3", "label_4", "label_5", "label_6"})
            texts.append(in<QLabel>(&dialog, name)->text());
        return texts;
    }
    static QStringList backedUp()
    {
        return QDir(u"backup"_s)
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    static void update(const Version_Dlg &dialog)
    {
        const QtMessageHandler handler = qInstallMessageHandler(collect);
        const auto restore = qScopeGuard([handler] { qInstallMessageHandler(handler); });
        in(&dialog, "pushButton_upgrade")->click();
    }
    static void update() { update(Version_Dlg(nullptr)); }

private slots:
    void init()
    {
        hidver = {};
        debugOutput.clear();
        before = QDir::currentPath();
        place = std::make_unique<QTemporaryDir>();
        QVERIFY(place->isValid());
        QVERIFY(QDir::setCurrent(place->path()));
    }
    void cleanup()
    {
        QVERIFY(QDir::setCurrent(before));
        place.reset();
        hidver = {};
    }

    // The form

    void the_window_is_of_fixed_size_and_tahoma_9()
    {
        const Version_Dlg dialog(nullptr);
        QCOMPARE(dialog.objectName(), u"Version_Dlg"_s);
        QCOMPARE(dialog.windowTitle(), u"Quorvel"_s);
        QCOMPARE(dialog.minimumSize(), QSize(190, 180));
        QCOMPARE(dialog.maximumSize(), QSize(190, 180));
        QCOMPARE(dialog.font().family(), u"Tahoma"_s);
        QCOMPARE(dialog.font().pointSize(), 9);
        for (const char *name : {"label_2", "label_3", "label_4", "label_5", "label_6"}) {
            QCOMPARE(in<QLabel>(&dialog, name)->font().family(), u"Tahoma"_s);
            QCOMPARE(in<QLabel>(&dialog, name)->font().pointSize(), 9);
        }
    }

    void the_labels_are_centred_where_they_are_drawn_data()
    {
        QTest::addColumn<QRect>("geometry");
        QTest::addColumn<QString>("text");
        QTest::newRow("label") << QRect(10, 10, 171, 21) << u"Quorvel"_s;
        QTest::newRow("label_2") << QRect(10, 40, 171, 20) << u"Service version: 3.0.1.0"_s;
        QTest::newRow("label_3") << QRect(10, 60, 171, 20) << u"Device version:"_s;
        QTest::newRow("label_4") << QRect(10, 80, 171, 20) << u"Hardware version:"_s;
        QTest::newRow("label_5") << QRect(10, 100, 171, 20) << u"SID:5c19e0a7_003812"_s;
        QTest::newRow("label_6") << QRect(10, 120, 171, 20) << u"PID:5c19e0a7_003812"_s;
    }
    void the_labels_are_centred_where_they_are_drawn()
    {
        QFETCH(const QRect, geometry);
        QFETCH(const QString, text);
        const Version_Dlg dialog(nullptr);
        const QLabel *label = in<QLabel>(&dialog, QTest::currentDataTag());
        QCOMPARE(label->geometry(), geometry);
        QCOMPARE(label->text(), text);
        QCOMPARE(label->alignment(), Qt::AlignHCenter | Qt::AlignVCenter);
    }

    void the_title_is_in_comic_sans_ms_14_bold()
    {
        Version_Dlg dialog(nullptr);
        const QLabel *title = in<QLabel>(&dialog, "label");
        QCOMPARE(title->font().family(), u"Comic Sans MS"_s);
        QCOMPARE(title->font().pointSize(), 14);
        QVERIFY(title->font().bold());
        dialog.show();
        QCOMPARE(title->font().pointSize(), 14);
        QVERIFY(title->sizeHint().width() <= title->width());
        QVERIFY(title->fontMetrics().tightBoundingRect(title->text()).height() <= title->height());
    }

    void ok_stands_alone_in_the_middle()
    {
        Version_Dlg dialog(nullptr);
        const auto *ok = in(&dialog, "pushButton");
        const auto *upgrade = in(&dialog, "pushButton_upgrade");
        QCOMPARE(ok->geometry(), QRect(60, 145, 71, 25));
        QCOMPARE(ok->text(), u"OK"_s);
        QCOMPARE(upgrade->geometry(), QRect(20, 145, 71, 25));
        QCOMPARE(upgrade->text(), u"Update"_s);
        dialog.show();
        QVERIFY(ok->isVisible());
        QVERIFY(!upgrade->isVisible());
    }

    void ok_accepts()
    {
        Version_Dlg dialog(nullptr);
        const QSignalSpy accepted(&dialog, &QDialog::accepted);
        dialog.show();
        press(&dialog, "pushButton");
        QCOMPARE(accepted.size(), 1);
        QVERIFY(!dialog.isVisible());
    }

    // The lines

    void the_record_is_shown_data()
    {
        QTest::addColumn<HID_VER>("record");
        QTest::addColumn<QStringList>("shown");
        QTest::newRow("all zero") << HID_VER{}
                                  << QStringList{
                                         u"Device version: 0.0.0.0"_s, u"Hardware: 0000 - 0000"_s,
                                         u"SID: 00000000 - 000000"_s, u"PID: UNDEF - 000000000"_s};
        QTest::newRow("family 1") << HID_VER{0x5156,     0x1, 0x3010, 0x3812,
                                             0x5C19E0A7, 1,   0x7E6,  0xABC}
                                  << QStringList{
                                         u"Device version: 3.0.1.0"_s, u"Hardware: 5156 - 0001"_s,
                                         u"SID: 5C19E0A7 - 003812"_s, u"PID: ORVA - 07E600ABC"_s};
        QTest::newRow("family 2, more than four digits")
            << HID_VER{0x12345, 0xFEDCBA98, 0x12345, 0x1234567, 0xA, 2, 0x12345, 0x123456}
            << QStringList{u"Device version: 12.3.4.5"_s, u"Hardware: 12345 - FEDCBA98"_s,
                           u"SID: 0000000A - 1234567"_s, u"PID: TELMA - 12345123456"_s};
        QTest::newRow("family 3, upper-case digits")
            << HID_VER{0xABCD, 0xEF, 0xABCD, 0xABCDEF, 0xDEADBEEF, 3, 0xFFFF, 0xFFFFF}
            << QStringList{u"Device version: A.B.C.D"_s, u"Hardware: ABCD - 00EF"_s,
                           u"SID: DEADBEEF - ABCDEF"_s, u"PID: UNDEF - FFFFFFFFF"_s};
        QTest::newRow("all ones") << HID_VER{0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF,
                                             0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF}
                                  << QStringList{u"Device version: FFFFF.F.F.F"_s,
                                                 u"Hardware: FFFFFFFF - FFFFFFFF"_s,
                                                 u"SID: FFFFFFFF - FFFFFFFF"_s,
                                                 u"PID: UNDEF - FFFFFFFFFFFFFFFF"_s};
    }
    void the_record_is_shown()
    {
        QFETCH(const HID_VER, record);
        QFETCH(const QStringList, shown);
        Version_Dlg dialog(nullptr);
        hidver = record;
        dialog.show();
        QCOMPARE(lines(dialog), shown);
    }

    void every_showing_reads_the_record_anew()
    {
        Version_Dlg dialog(nullptr);
        dialog.show();
        hidver.VersionNumber = 0x3010;
        hidver.P_FID = 1;
        QCOMPARE(lines(dialog).first(), u"Device version: 0.0.0.0"_s);
        dialog.hide();
        dialog.show();
        QCOMPARE(lines(dialog).first(), u"Device version: 3.0.1.0"_s);
        QCOMPARE(lines(dialog).last(), u"PID: ORVA - 000000000"_s);
    }

    void a_line_can_be_selected_with_the_mouse_and_copied()
    {
        Version_Dlg dialog;
        hidver.CHECKSUM = 0x5C19E0A7;
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        auto *line = in<QLabel>(&dialog, "label_5");
        const QPoint middle(line->width() / 2, line->height() / 2);
        // On "5C19E0A7".
        QTest::mouseDClick(line, Qt::LeftButton, {}, middle - QPoint(20, 0));
        QCOMPARE(line->selectedText(), u"5C19E0A7"_s);
        QGuiApplication::clipboard()->clear();
        QTest::keyClick(line, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"5C19E0A7"_s);
        QVERIFY(dialog.isVisible());
    }

    void every_line_can_be_reached_and_copied_with_the_keyboard()
    {
        Version_Dlg dialog;
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QCOMPARE(dialog.focusWidget()->objectName(), u"pushButton"_s);
        QStringList reached;
        QStringList copied;
        for (int i = 0; i < 5; ++i) {
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
            reached.append(dialog.focusWidget()->objectName());
            QTest::keyClick(dialog.focusWidget(), Qt::Key_A, Qt::ControlModifier);
            QTest::keyClick(dialog.focusWidget(), Qt::Key_C, Qt::ControlModifier);
            copied.append(QGuiApplication::clipboard()->text());
        }
        QCOMPARE(reached, QStringList({u"label_2"_s, u"label_3"_s, u"label_4"_s, u"label_5"_s,
                                       u"label_6"_s}));
        QCOMPARE(copied, QStringList{u"Service version: 3.0.1.0"_s} + lines(dialog));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
        QCOMPARE(dialog.focusWidget()->objectName(), u"pushButton"_s);
        QTest::keyClick(in<QLabel>(&dialog, "label_4"), Qt::Key_Return);
        QVERIFY(!dialog.isVisible());
    }

    void a_selection_goes_with_what_was_selected()
    {
        Version_Dlg dialog;
        hidver.CHECKSUM = 0x5C19E0A7;
        dialog.show();
        auto *line = in<QLabel>(&dialog, "label_5");
        line->setSelection(0, int(line->text().size()));
        QCOMPARE(line->selectedText(), u"SID: 5C19E0A7 - 000000"_s);
        hidver = {};
        dialog.refresh();
        QCOMPARE(line->selectedText(), QString());
    }

    void the_end_of_a_link_shows_at_once()
    {
        Version_Dlg dialog(nullptr);
        hidver = {0x5156, 0x1, 0x3010, 0x3812, 0x5C19E0A7, 1, 0x7E6, 0xABC};
        dialog.show();
        hidver = {};
        dialog.refresh();
        QCOMPARE(lines(dialog),
                 QStringList({u"Device version: 0.0.0.0"_s, u"Hardware: 0000 - 0000"_s,
                              u"SID: 00000000 - 000000"_s, u"PID: UNDEF - 000000000"_s}));
    }

    void the_end_of_a_link_leaves_a_hidden_window_as_it_is()
    {
        Version_Dlg dialog;
        dialog.refresh();
        QCOMPARE(lines(dialog).first(), u"Device version:"_s);
        dialog.setUI();
        QCOMPARE(lines(dialog).first(), u"Device version:"_s);
    }

    void no_value_of_a_device_is_clipped()
    {
        Version_Dlg dialog(nullptr);
        hidver = {0xFFFF, 0xFFFF, 0xFFFFFFFF, 0xFFFFFFF, 0xFFFFFFFF, 2, 0xFFFF, 0xFFFFF};
        dialog.show();
        QCOMPARE(lines(dialog),
                 QStringList({u"Device version: FFFFF.F.F.F"_s, u"Hardware: FFFF - FFFF"_s,
                              u"SID: FFFFFFFF - FFFFFFF"_s, u"PID: TELMA - FFFFFFFFF"_s}));
        for (const char *name : {"label_2", "label_3", "label_4", "label_5", "label_6"}) {
            const QLabel *label = in<QLabel>(&dialog, name);
            QVERIFY2(label->sizeHint().width() <= label->width(), name);
            QVERIFY2(label->sizeHint().height() <= label->height(), name);
            QVERIFY(label->font().pointSize() >= 6);
            QVERIFY(label->toolTip().isEmpty());
        }
        for (const QPushButton *button : dialog.findChildren<QPushButton *>())
            QVERIFY(button->fontMetrics().horizontalAdvance(button->text()) + 8 <= button->width());
    }

    void what_no_device_has_is_fitted_too()
    {
        Version_Dlg dialog(nullptr);
        hidver = {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF,
                  0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF};
        dialog.show();
        for (const char *name : {"label_3", "label_4", "label_5", "label_6"}) {
            const QLabel *label = in<QLabel>(&dialog, name);
            const bool fits = label->sizeHint().width() <= label->width();
            QVERIFY2(fits || label->font().pointSize() == 6, name);
            QCOMPARE(label->toolTip(), fits ? QString() : label->text());
        }
    }

    void a_short_text_gets_its_size_back()
    {
        Version_Dlg dialog(nullptr);
        hidver = {0xFFFFFFFF, 0xFFFFFFFF, 0, 0, 0, 0, 0, 0};
        dialog.show();
        dialog.hide();
        hidver = {};
        dialog.show();
        QCOMPARE(in<QLabel>(&dialog, "label_4")->font().pointSize(), 9);
        QVERIFY(in<QLabel>(&dialog, "label_4")->toolTip().isEmpty());
    }

    void a_text_gets_smaller_until_it_fits()
    {
        QWidget parent;
        parent.setFont(QFont(u"Tahoma"_s, 9));
        QLabel label(u"SID: FFFFFFFF - FFFFFFF"_s, &parent);
        const int whole = label.sizeHint().width();
        fitText(&label, whole);
        QCOMPARE(label.font().pointSize(), 9);
        fitText(&label, whole - 1);
        QCOMPARE(label.font().pointSize(), 8);
        QVERIFY(label.sizeHint().width() < whole);
        QVERIFY(label.toolTip().isEmpty());
    }

    void below_6_points_the_tool_tip_has_the_whole_text()
    {
        QWidget parent;
        parent.setFont(QFont(u"Tahoma"_s, 9));
        QLabel label(u"SID: FFFFFFFF - FFFFFFF"_s, &parent);
        fitText(&label, 40);
        QCOMPARE(label.font().pointSize(), 6);
        QCOMPARE(label.toolTip(), u"SID: FFFFFFFF - FFFFFFF"_s);
        label.setText(u"SID"_s);
        fitText(&label, 40);
        QCOMPARE(label.font().pointSize(), 9);
        QVERIFY(label.toolTip().isEmpty());
    }

    // The update

    void the_files_of_the_working_directory_are_copied()
    {
        writeFile(u"one.bin"_s, "first");
        writeFile(u"two with blanks"_s, QByteArray("\0\xFF", 2));
        writeFile(u"empty"_s, "");
        update();
        QCOMPARE(backedUp(), QStringList({u"empty"_s, u"one.bin"_s, u"two with blanks"_s}));
        QCOMPARE(contentOf(u"backup/one.bin"_s), QByteArray("first"));
        QCOMPARE(contentOf(u"backup/two with blanks"_s), QByteArray("\0\xFF", 2));
        QCOMPARE(contentOf(u"backup/empty"_s), QByteArray());
        QCOMPARE(contentOf(u"one.bin"_s), QByteArray("first"));
    }

    void the_created_path_goes_to_the_debug_output_once()
    {
        update();
        QCOMPARE(debugOutput, {QDir::currentPath() + u"/backup"_s});
        QVERIFY(QFileInfo(u"backup"_s).isDir());
        update();
        QCOMPARE(debugOutput.size(), 1);
    }

    void what_the_backup_has_is_left_as_it_is()
    {
        QVERIFY(QDir().mkdir(u"backup"_s));
        writeFile(u"backup/settings"_s, "old");
        writeFile(u"settings"_s, "new");
        writeFile(u"other"_s, "new too");
        update();
        QCOMPARE(contentOf(u"backup/settings"_s), QByteArray("old"));
        QCOMPARE(contentOf(u"backup/other"_s), QByteArray("new too"));
        QVERIFY(debugOutput.isEmpty());
    }

    void directories_and_the_backup_itself_are_not_copied()
    {
        QVERIFY(QDir().mkpath(u"folder/inner"_s));
        writeFile(u"folder/inside"_s, "inside");
        QVERIFY(QFile::link(u"folder"_s, u"link to folder"_s));
        update();
        update();
        QCOMPARE(backedUp(), QStringList());
    }

    void hidden_files_are_not_copied()
    {
        writeFile(u".hidden"_s, "hidden");
        writeFile(u"plain"_s, "plain");
        update();
        QCOMPARE(backedUp(), {u"plain"_s});
    }

    // Opening a pipe would wait for its other end; reading a device would never end.
    void pipes_and_devices_and_links_to_them_are_passed_over()
    {
        QCOMPARE(::mkfifo("pipe", 0600), 0);
        QVERIFY(QFile::link(u"pipe"_s, u"link to pipe"_s));
        QVERIFY(QFile::link(u"/dev/zero"_s, u"link to device"_s));
        QVERIFY(QFile::link(u"nowhere"_s, u"broken link"_s));
        writeFile(u"file"_s, "content");
        QVERIFY(QFile::link(u"file"_s, u"link to file"_s));
        update();
        QCOMPARE(backedUp(), QStringList({u"file"_s, u"link to file"_s}));
        QCOMPARE(contentOf(u"backup/link to file"_s), QByteArray("content"));
    }

    // In a folder of many users anybody can put one where the backup will be.
    void no_link_where_the_backup_goes_is_followed()
    {
        writeFile(u"a"_s, "first");
        QVERIFY(QDir().mkdir(u"elsewhere"_s));
        QVERIFY(QFile::link(u"elsewhere"_s, u"backup"_s));
        update();
        QCOMPARE(QDir(u"elsewhere"_s).entryList(QDir::Files), QStringList());

        QVERIFY(QFile::remove(u"backup"_s));
        QVERIFY(QDir().mkdir(u"backup"_s));
        QVERIFY(QFile::link(QDir::current().filePath(u"elsewhere/new"_s), u"backup/a"_s));
        update();
        QVERIFY(!QFile::exists(u"elsewhere/new"_s));
    }

    void a_copy_has_the_permissions_of_its_file()
    {
        writeFile(u"a"_s, "first");
        QVERIFY(QFile::setPermissions(u"a"_s, QFile::ReadOwner | QFile::ExeOwner));
        update();
        QCOMPARE(QFile::permissions(u"backup/a"_s) &
                     (QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOther),
                 QFile::ReadOwner | QFile::ExeOwner);
    }

    void a_file_that_cannot_be_read_is_passed_over()
    {
        writeFile(u"a"_s, "first");
        writeFile(u"b"_s, "secret");
        writeFile(u"c"_s, "last");
        QVERIFY(QFile::setPermissions(u"b"_s, {}));
        const OrdinaryUser user;
        QVERIFY(!QFile(u"b"_s).open(QIODevice::ReadOnly));
        update();
        QCOMPARE(backedUp(), QStringList({u"a"_s, u"c"_s}));
    }

    void a_directory_that_cannot_be_written_gets_no_backup()
    {
        writeFile(u"a"_s, "first");
        QVERIFY(QFile::setPermissions(u"."_s, QFile::ReadOwner | QFile::ExeOwner));
        const auto writable = qScopeGuard([] {
            QFile::setPermissions(u"."_s, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        });
        const OrdinaryUser user;
        Window window;
        const Version_Dlg dialog(&window);
        update(dialog);
        QVERIFY(!QFileInfo::exists(u"backup"_s));
        QVERIFY(debugOutput.isEmpty());
        QCOMPARE(window.closed, 1);
    }

    void a_file_named_backup_stays_as_it_is()
    {
        writeFile(u"backup"_s, "a file");
        writeFile(u"a"_s, "first");
        update();
        QCOMPARE(contentOf(u"backup"_s), QByteArray("a file"));
        QVERIFY(debugOutput.isEmpty());
    }

    void the_thread_has_ended_and_belongs_to_the_window()
    {
        const Version_Dlg dialog(nullptr);
        update(dialog);
        const QList<QThread *> threads = dialog.findChildren<QThread *>();
        QCOMPARE(threads.size(), 1);
        QVERIFY(dynamic_cast<MyThread *>(threads.first()));
        QVERIFY(threads.first()->isFinished());
    }

    void the_parent_is_hidden_and_closed_when_the_copies_are_there()
    {
        writeFile(u"one.bin"_s, "first");
        Window window;
        window.show();
        const Version_Dlg dialog(&window);
        update(dialog);
        QVERIFY(!window.isVisible());
        QCOMPARE(window.closed, 1);
        QVERIFY(window.hiddenFirst);
        QCOMPARE(backedUp(), {u"one.bin"_s});
    }
};

QTEST_MAIN(TestVersionDlg)
#include "tst_version_dlg.moc"
