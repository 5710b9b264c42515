// SPDX-License-Identifier: GPL-3.0-or-later

#include "lights/thresholds.h"

#include <QTemporaryDir>
#include <QTest>

using lights::Thresholds;
using namespace Qt::StringLiterals;

class TestThresholds : public QObject
{
    Q_OBJECT

private slots:
    void a_file_sets_what_it_names()
    {
        QString problem;
        const auto read = Thresholds::parse(
            R"({"format": "quorvel-light-thresholds", "version": 1,
                "weakShare": 0.25, "boardLights": 10})",
            u"t.json"_s, &problem);
        QVERIFY2(read, qPrintable(problem));
        Thresholds expected;
        expected.weakShare = 0.25;
        expected.boardLights = 10;
        QCOMPARE(*read, expected);
    }

    void what_is_written_is_read_again()
    {
        Thresholds changed;
        changed.deadLevel = 3.5;
        changed.stretchLights = 5;
        QString problem;
        const auto read = Thresholds::parse(changed.toJson(), u"t.json"_s, &problem);
        QVERIFY2(read, qPrintable(problem));
        QCOMPARE(*read, changed);
    }

    void what_makes_no_sense_is_refused_with_a_reason_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("reason");
        const QByteArray head(R"({"format": "quorvel-light-thresholds", "version": 1)");
        const auto row = [](const char *name, const QByteArray &text, const QString &reason) {
            QTest::newRow(name) << text << reason;
        };
        row("empty", {}, u"t.json: no JSON, at byte 0: "_s);
        row("cut off", head, u"t.json: no JSON, at byte "_s);
        row("another file", R"({"format": "quorvel-lights", "version": 1})",
            u"t.json: no file of thresholds: \"format\" has to be "
            "\"quorvel-light-thresholds\""_s);
        row("a later version", R"({"format": "quorvel-light-thresholds", "version": 2})",
            u"t.json: \"version\" has to be 1"_s);
        row("unknown", head + R"(, "weekShare": 0.1})",
            u"t.json: there is no threshold \"weekShare\""_s);
        row("too large", head + R"(, "weakShare": 1.5})",
            u"t.json: \"weakShare\" has to be a number from 0 to 1"_s);
        row("no number", head + R"(, "weakShare": "much"})",
            u"t.json: \"weakShare\" has to be a number from 0 to 1"_s);
        row("half a light", head + R"(, "boardLights": 8.5})",
            u"t.json: \"boardLights\" has to be a whole number from 2 to 500"_s);
    }
    void what_makes_no_sense_is_refused_with_a_reason()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, reason);
        QString problem;
        QVERIFY(!Thresholds::parse(text, u"t.json"_s, &problem));
        QVERIFY2(problem.startsWith(reason), qPrintable(problem));
    }

    void a_file_that_is_not_there_is_told()
    {
        QTemporaryDir folder;
        QString problem;
        QVERIFY(!Thresholds::load(folder.filePath(u"none.json"_s), &problem));
        QVERIFY(problem.contains(u"none.json cannot be read: "_s));
    }
};

QTEST_GUILESS_MAIN(TestThresholds)
#include "tst_thresholds.moc"
