// SPDX-License-Identifier: GPL-3.0-or-later

// Recordings as a user makes them: from the menu of the window, and at a start.

#include "app/mainwindow.h"
#include "app/recordaction.h"
#include "capture/reader.h"
#include "config/xml_class.h"
#include "resources/resources.h"
#include "tests/support/capture.h"
#include "tests/support/fakeadapter.h"
#include "tests/support/openline.h"
#include "tests/support/smalldisk.h"
#include "tests/support/widgets.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongEnoughMs = 20'000;

// How many records a readable file has; -1 for one that is none.
int recordsIn(const QString &path)
{
    QString problem;
    const auto reader = capture::Reader::open(path, &problem);
    if (!reader)
        return -1;
    int count = 0;
    while (reader->next())
        ++count;
    return reader->problem().isEmpty() ? count : -1;
}

bool hasSent(const QString &path, UCHAR commandClass)
{
    QString problem;
    const auto reader = capture::Reader::open(path, &problem);
    while (const auto record = reader ? reader->next() : std::nullopt) {
        if (record->kind == capture::Kind::ToFrame && record->frame[1] == commandClass)
            return true;
    }
    return false;
}

} // namespace

class TestRecord : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> place;
    QString path;
    std::shared_ptr<FakeAdapter> frame;
    std::unique_ptr<MainWindow> window;

    QAction *entry() const { return window->findChild<RecordAction *>(); }
    QString hint() const { return window->findChild<QLabel *>(u"stalab"_s)->toolTip(); }
    void choose(const QString &file) const
    {
        whenOpen<QFileDialog>([file](QFileDialog *dialog) { chooseFile(dialog, file); });
        entry()->trigger();
    }

private slots:
    void initTestCase()
    {
        initResources();
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    }
    void init()
    {
        place = std::make_unique<QTemporaryDir>();
        path = place->filePath(u"traffic.pcap"_s);
        XML_CLASS::useHome(place->path());
        frame = std::make_shared<FakeAdapter>();
        window = std::make_unique<MainWindow>(frame);
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }
    void cleanup()
    {
        window.reset();
        XML_CLASS::useHome(QString());
    }

    void the_menu_begins_and_ends_a_recording()
    {
        QCOMPARE(entry()->text(), u"&Record..."_s);
        choose(path);
        QCOMPARE(entry()->text(), u"Stop &recording"_s);
        QTRY_VERIFY(recordsIn(path) > 2);
        QVERIFY(hint().endsWith(u"\nRecording into %1."_s.arg(path)));
        QCOMPARE(window->findChild<QLabel *>(u"stalab"_s)->accessibleDescription(), hint());
        entry()->trigger();
        QCOMPARE(entry()->text(), u"&Record..."_s);
        QVERIFY(!hint().contains(path));
        const int records = recordsIn(path);
        QTest::qWait(100);
        QCOMPARE(recordsIn(path), records);
    }

    void what_cannot_be_recorded_is_told_while_it_lasts_and_what_is_missing_afterwards()
    {
        choose(path);
        QTRY_VERIFY(recordsIn(path) > 2);
        Capture errors(stderr);
        {
            const SmallDisk full(QFileInfo(path).size());
            QTRY_VERIFY(hint().endsWith(
                u"\nRecording into %1, but that cannot be written: File too large."_s.arg(path)));
        }
        QTRY_VERIFY2(QRegularExpression(
                         u"\nRecording into %1, where \\d+ packet\\(s\\) are missing\\.$"_s.arg(
                             QRegularExpression::escape(path)))
                         .match(hint())
                         .hasMatch(),
                     qPrintable(hint()));
        entry()->trigger();
        QVERIFY(!hint().contains(path));
        // Once, and not for every packet.
        const QByteArray told = errors.text();
        QCOMPARE(told.count(QFile::encodeName(path)), 1);
        QVERIFY2(told.contains("File too large"), told);
    }

    void a_single_packet_that_is_missing_is_told_too()
    {
        window.reset();
        frame = std::make_shared<FakeAdapter>();
        frame->present = false;
        window = std::make_unique<MainWindow>(frame);
        const auto line = openLine(*window);
        choose(path);
        const int before = recordsIn(path);
        const QByteArray turned = QByteArray::fromHex("51 56 FC A7 82 02 00 01 00 00");
        {
            const SmallDisk full(QFileInfo(path).size());
            line->give(turned);
            QTRY_VERIFY2(hint().endsWith(u"but that cannot be written: File too large."_s),
                         qPrintable(hint()));
        }
        line->give(turned);
        QTRY_VERIFY2(
            hint().endsWith(u"\nRecording into %1, where 1 packet(s) are missing."_s.arg(path)),
            qPrintable(hint()));
        QTRY_COMPARE(recordsIn(path), before + 1);
    }

    void nobody_has_to_record()
    {
        QStringList filters;
        whenOpen<QFileDialog>([&filters](QFileDialog *dialog) {
            filters = dialog->nameFilters();
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        entry()->trigger();
        QCOMPARE(filters, QStringList{u"Recordings (*.pcap)"_s});
        QCOMPARE(entry()->text(), u"&Record..."_s);
        QVERIFY(QDir(place->path()).entryList({u"*.pcap"_s}).isEmpty());
    }

    void a_name_without_an_ending_gets_the_usual_one()
    {
        choose(place->filePath(u"traffic"_s));
        QVERIFY(recordsIn(path) > 0);
    }

    void a_file_that_is_no_recording_is_kept_and_that_is_said()
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("dear diary, today I have been quite busy again\n");
        file.close();
        QString said;
        // The file dialog asks whether it may be replaced, and the user does not look.
        whenOpen<QMessageBox>([&said](QMessageBox *question) {
            whenOpen<QMessageBox>([&said](QMessageBox *refusal) {
                said = refusal->windowTitle() + u": "_s + refusal->text();
                QTest::keyClick(refusal, Qt::Key_Return);
            });
            question->button(QMessageBox::Yes)->click();
        });
        choose(path);
        QCOMPARE(said,
                 u"No recording: %1: exists and is no recording: choose another name"_s.arg(path));
        QCOMPARE(entry()->text(), u"&Record..."_s);
        QCOMPARE(file.size(), 47);
    }

    void a_window_records_from_its_first_frame_to_its_last()
    {
        window.reset();
        window = std::make_unique<MainWindow>(frame, path);
        QCOMPARE(window->recordProblem(), QString());
        QVERIFY(hint().contains(u"Recording into %1."_s.arg(path)));
        window.reset();
        // What it sent while it was being made, and the end of its link.
        QVERIFY(hasSent(path, 0xA3));
        QString problem;
        const auto reader = capture::Reader::open(path, &problem);
        std::optional<capture::Record> last;
        while (const auto record = reader->next())
            last = record;
        QVERIFY(last);
        QCOMPARE(last->kind, capture::Kind::LinkEnded);
        QCOMPARE(last->end, capture::End::Closed);
    }

    void a_killed_program_leaves_a_readable_recording()
    {
        QProcess tool;
        tool.start(QStringLiteral(QUORVEL_PROGRAM), {u"--demo"_s, u"--record="_s + path});
        QVERIFY(tool.waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(recordsIn(path) > 5, LongEnoughMs);
        tool.kill();
        QVERIFY(tool.waitForFinished());
        QVERIFY(recordsIn(path) > 5);
        QVERIFY(hasSent(path, 0xA3));
    }

    void a_start_that_cannot_record_says_why_and_ends_with_1()
    {
        QProcess tool;
        tool.start(QStringLiteral(QUORVEL_PROGRAM),
                   {u"--demo"_s, u"--record=/nowhere/at-all-close"_s});
        QVERIFY(tool.waitForFinished(LongEnoughMs));
        QCOMPARE(tool.exitCode(), 1);
        QCOMPARE(tool.readAllStandardError(),
                 "/nowhere/at-all-close: cannot be written: No such file or directory\n");
    }

    void a_second_start_cannot_record_for_the_first_and_says_so()
    {
        QProcess first;
        first.start(QStringLiteral(QUORVEL_PROGRAM), {u"--demo"_s, u"--record="_s + path});
        QVERIFY(first.waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(recordsIn(path) > 5, LongEnoughMs);
        QProcess second;
        const QString other = place->filePath(u"other.pcap"_s);
        second.start(QStringLiteral(QUORVEL_PROGRAM), {u"--demo"_s, u"--record="_s + other});
        QVERIFY(second.waitForFinished(LongEnoughMs));
        QCOMPARE(second.exitCode(), 1);
        QCOMPARE(second.readAllStandardError(),
                 "Quorvel runs already, and this start records nothing: choose \"Record...\" in "
                 "the menu of its window.\n");
        QVERIFY(!QFile::exists(other));
        first.terminate();
        QVERIFY(first.waitForFinished(LongEnoughMs));
        QVERIFY(recordsIn(path) > 5);
    }
};

QTEST_MAIN(TestRecord)
#include "tst_record.moc"
