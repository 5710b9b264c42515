// SPDX-License-Identifier: GPL-3.0-or-later

// What shells offer for the command line program, asked of the shells themselves.

#include "help.h"

#include <QMap>
#include <QProcess>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongEnoughMs = 30'000;
const QStringList Shells = {u"bash"_s, u"zsh"_s, u"fish"_s};

// What each shell offers behind a line, sorted; they are asked at the same time, as they start
// slowly.
QMap<QString, QStringList> offered(const QString &line)
{
    std::array<QProcess, 3> processes;
    for (size_t i = 0; i < processes.size(); ++i)
        processes[i].start(QStringLiteral(COMPLETE),
                           {Shells[qsizetype(i)], QStringLiteral(COMPLETIONS), line});
    QMap<QString, QStringList> all;
    for (size_t i = 0; i < processes.size(); ++i) {
        QStringList &words = all[Shells[qsizetype(i)]];
        if (!processes[i].waitForFinished(LongEnoughMs))
            words += u"it did not end"_s;
        words += QString::fromUtf8(processes[i].readAllStandardOutput())
                     .split(u'\n', Qt::SkipEmptyParts);
        if (const QByteArray problems = processes[i].readAllStandardError(); !problems.isEmpty())
            words += QString::fromUtf8(problems);
        words.sort();
        words.removeDuplicates();
    }
    return all;
}

QStringList sorted(QStringList words)
{
    words.sort();
    return words;
}

} // namespace

class TestCompletion : public QObject
{
    Q_OBJECT

private slots:
    void every_command_is_offered()
    {
        const QStringList commands = subcommandsOf({});
        for (const QStringList &words : offered(u"quorvelctl "_s))
            QCOMPARE(words, sorted(commands));
        for (const QString &command : commands) {
            const QStringList inner = subcommandsOf(command);
            if (inner.isEmpty())
                continue;
            for (const QStringList &words : offered(u"quorvelctl %1 "_s.arg(command)))
                QCOMPARE(words, sorted(inner));
        }
    }

    void every_option_is_offered_data() { rowsOfAllCommands(); }
    void every_option_is_offered()
    {
        QFETCH(QString, command);
        const QStringList options = sorted(optionsOf(command) + optionsOf({}));
        const auto all = offered(u"quorvelctl %1 --"_s.arg(command));
        for (const QString &shell : Shells) {
            for (const QString &option : options)
                QVERIFY2(all[shell].contains(option), qPrintable(shell + u": "_s + option));
            for (const QString &word : all[shell])
                QVERIFY2(options.contains(word), qPrintable(shell + u": "_s + word));
        }
    }

    void values_are_offered_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("words");
        QTest::newRow("degrees") << u"quorvelctl rotation set "_s
                                 << QStringList({u"0"_s, u"180"_s, u"270"_s, u"90"_s});
        QTest::newRow("behind an option with a value")
            << u"quorvelctl --timeout 3 --json rotation "_s << QStringList({u"set"_s, u"show"_s});
        QTest::newRow("axes") << u"quorvelctl lights off "_s << QStringList({u"x"_s, u"y"_s});
        QTest::newRow("a switch") << u"quorvelctl gestures set --wheel "_s
                                  << QStringList({u"off"_s, u"on"_s});
        QTest::newRow("a rate") << u"quorvelctl status --rate 1152"_s << QStringList(u"115200"_s);
    }
    void values_are_offered()
    {
        QFETCH(QString, line);
        QFETCH(QStringList, words);
        for (const QStringList &said : offered(line))
            QCOMPARE(said, words);
    }
};

QTEST_GUILESS_MAIN(TestCompletion)
#include "tst_completion.moc"
