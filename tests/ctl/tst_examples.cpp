// SPDX-License-Identifier: GPL-3.0-or-later

// The examples of the manuals, run as they stand by the real program on a simulated frame, and its
// documents compared with the schemas.

#include "finger.h"
#include "help.h"
#include "tests/support/settingshome.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTimer>

#include <array>
#include <memory>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongEnoughMs = 30'000;

QString textOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", qPrintable(path));
    return QString::fromUtf8(file.readAll());
}

QStringList linesOfBlocks(const QString &text, const QString &pattern)
{
    QStringList lines;
    const QRegularExpression blocks(pattern, QRegularExpression::DotMatchesEverythingOption |
                                                 QRegularExpression::MultilineOption);
    for (auto block = blocks.globalMatch(text); block.hasNext();)
        lines += block.next().captured(1).split(u'\n', Qt::SkipEmptyParts);
    return lines;
}

QStringList examplesOfPage()
{
    return linesOfBlocks(textOf(QStringLiteral(QUORVELCTL_PAGE)), u"^```sh\n(.*?)^```$"_s);
}

// The command alone, saying it in JSON.
QString withJson(const QString &example)
{
    return example.section(u" ||"_s, 0, 0).remove(u" --json"_s) + u" --json"_s;
}

QStringList examplesOfManual()
{
    QString manual = textOf(QStringLiteral(QUORVELCTL_MANUAL));
    QStringList lines = linesOfBlocks(manual.replace(u"\\-"_s, u"-"_s), u"^\\.EX\n(.*?)^\\.EE$"_s);
    lines.removeIf([](const QString &line) { return !line.startsWith(u"quorvelctl "_s); });
    return lines;
}

} // namespace

class TestExamples : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        hidver = {};
        home.emplace();
        // Where the examples find a recording and leave theirs.
        QVERIFY(QDir::setCurrent(home->folder()));
        QVERIFY(QFile::copy(QStringLiteral(RECORDINGS "/calibration.pcap"), u"traffic.pcap"_s));
        frame.start(QStringLiteral(QUORVEL_SIM_PROGRAM),
                    {u"serial"_s, u"--quit-at-end"_s, u"--link"_s, home->filePath(u"frame"_s)});
        QVERIFY(frame.waitForReadyRead(LongEnoughMs));
        // Somebody touches wherever a target may be.
        connect(&finger, &QTimer::timeout, this, [this] { frame.write("touch 240 135\n"); });
        finger.start(100);
    }
    void cleanup()
    {
        finger.stop();
        finger.disconnect();
        frame.closeWriteChannel();
        QVERIFY(frame.waitForFinished(LongEnoughMs));
        QCOMPARE(frame.exitCode(), 0);
        QVERIFY(QDir::setCurrent(QDir::rootPath()));
    }

    void an_example_does_what_it_says_data()
    {
        QTest::addColumn<QString>("line");
        const QStringList page = examplesOfPage();
        const QStringList manual = examplesOfManual();
        QVERIFY(page.size() > 15);
        QVERIFY(manual.size() > 10);
        for (const QString &line : page)
            QTest::addRow("page: %s", qPrintable(line)) << line;
        for (const QString &line : manual)
            QTest::addRow("manual: %s", qPrintable(line)) << line;
    }
    void an_example_does_what_it_says()
    {
        QFETCH(QString, line);
        const Outcome outcome = runLine(line);
        QCOMPARE(outcome.err, "");
        QCOMPARE(outcome.code, 0);
        QVERIFY(!outcome.out.isEmpty());
    }

    void every_command_has_an_example_data() { rowsOfAllCommands(); }
    void every_command_has_an_example()
    {
        QFETCH(QString, command);
        for (const QStringList &examples : {examplesOfPage(), examplesOfManual()})
            QVERIFY(std::any_of(examples.begin(), examples.end(), [&](const QString &line) {
                return (line + u' ').startsWith(u"quorvelctl %1 "_s.arg(command));
            }));
    }

    void every_document_is_as_its_schema_says()
    {
        QByteArray documents;
        // Over the serial line, by the real program.
        for (const QString &line : examplesOfPage())
            documents += runLine(withJson(line)).out;
        // By USB, in this process; and what goes wrong.
        const auto usb = quickFrame();
        for (const QString &line : examplesOfPage()) {
            documents +=
                runCtl(withJson(line).remove(u"quorvelctl "_s), usb, [&](ctl::Session &session) {
                    new Finger(&session, usb, {4, QPoint(240, 135)});
                }).out;
        }
        documents += runCtl(u"status --json"_s, quickFrame({}, {}, false)).out;
        documents += runCtl(u"dance --json"_s).out;
        documents += gone();
        documents += asked();
        sim::Profile older;
        older.release = 0x2FFF;
        documents += runCtl(u"versions --json"_s, quickFrame(older)).out;

        QProcess check;
        check.setProcessChannelMode(QProcess::MergedChannels);
        check.start(QStringLiteral(CHECK_DOCUMENTS), {QStringLiteral(QUORVELCTL_PAGE)});
        check.write(documents);
        check.closeWriteChannel();
        QVERIFY(check.waitForFinished(LongEnoughMs));
        QVERIFY2(check.exitStatus() == QProcess::NormalExit && check.exitCode() == 0,
                 check.readAll().constData());
    }

    void a_document_that_no_schema_describes_is_noticed_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::newRow("another member")
            << QByteArray(R"({"command":"rotation set","ok":true,"degrees":90,"more":1})");
        QTest::newRow("another value")
            << QByteArray(R"({"command":"rotation set","ok":true,"degrees":91})");
        QTest::newRow("another command") << QByteArray(R"({"command":"dance","ok":true})");
    }
    void a_document_that_no_schema_describes_is_noticed()
    {
        QFETCH(QByteArray, document);
        QProcess check;
        check.start(QStringLiteral(CHECK_DOCUMENTS), {QStringLiteral(QUORVELCTL_PAGE)});
        check.write(document + '\n');
        check.closeWriteChannel();
        QVERIFY(check.waitForFinished(LongEnoughMs));
        QCOMPARE(check.exitCode(), 1);
        QVERIFY(check.readAll().contains(document));
    }

    void every_command_and_option_is_on_the_page_and_in_the_manual_data() { rowsOfAllCommands(); }
    void every_command_and_option_is_on_the_page_and_in_the_manual()
    {
        QFETCH(QString, command);
        const QString page = textOf(QStringLiteral(QUORVELCTL_PAGE));
        const QString manual = textOf(QStringLiteral(QUORVELCTL_MANUAL)).replace(u"\\-"_s, u"-"_s);
        const QString section = u"^## %1\\b"_s.arg(command.section(u' ', 0, 0));
        const QString name =
            command.contains(u' ') ? u".*\\b%1\\b"_s.arg(command.section(u' ', 1)) : u""_s;
        QVERIFY(
            page.contains(QRegularExpression(section + name, QRegularExpression::MultilineOption)));
        for (const QString &option : optionsOf(command)) {
            QVERIFY2(page.contains(option), qPrintable(option));
            QVERIFY2(manual.contains(option), qPrintable(option));
        }
    }

private:
    // A line of a shell on whose serial port the frame is.
    Outcome runLine(const QString &line)
    {
        QProcess shell;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QUORVELCTL_PORT"_s, home->filePath(u"frame"_s));
        environment.insert(u"HOME"_s, home->folder());
        environment.insert(u"PATH"_s,
                           QStringLiteral(QUORVELCTL_FOLDER) + u':' + environment.value(u"PATH"_s));
        shell.setProcessEnvironment(environment);
        QEventLoop loop;
        connect(&shell, &QProcess::finished, &loop, &QEventLoop::quit);
        QTimer::singleShot(LongEnoughMs, &shell, [&shell] { shell.kill(); });
        shell.start(u"sh"_s, {u"-c"_s, line});
        loop.exec();
        return {shell.exitStatus() == QProcess::NormalExit ? shell.exitCode() : -1,
                shell.readAllStandardOutput(), shell.readAllStandardError()};
    }

    // A watch that sees its frame go.
    static QByteArray gone()
    {
        const auto usb = quickFrame();
        return runCtl(u"watch --for 0.5 --json"_s, usb,
                      [&usb](ctl::Session &session) {
                          QTimer::singleShot(100, &session, [usb] { usb->unplug(); });
                      })
            .out;
    }
    // A calibration on a terminal where nobody says anything.
    static QByteArray asked()
    {
        ctl::Surroundings around;
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0)
            qFatal("no pipe");
        ::close(ends[1]);
        around.input = ends[0];
        around.inputIsTerminal = true;
        const auto usb = quickFrame();
        const QByteArray out = runCtl(
                                   u"calibrate --screen 1920x1080 --json"_s, usb,
                                   [&](ctl::Session &session) {
                                       new Finger(&session, usb, {4, QPoint(240, 135)});
                                   },
                                   around)
                                   .out;
        ::close(ends[0]);
        return out;
    }

    std::optional<SettingsHome> home;
    QProcess frame;
    QTimer finger;
};

QTEST_GUILESS_MAIN(TestExamples)
#include "tst_examples.moc"
