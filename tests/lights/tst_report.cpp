// SPDX-License-Identifier: GPL-3.0-or-later

#include "lights/judge.h"
#include "lights/report.h"
#include "tests/support/madeupreport.h"

#include <QRegularExpression>
#include <QSet>
#include <QTest>
#include <QXmlStreamReader>

using namespace lights;
using namespace Qt::StringLiterals;

namespace {

// Elements of a page, which has to be well-formed; nothing else is read by everybody alike.
struct Page
{
    explicit Page(const QByteArray &html)
    {
        QByteArray xml = html;
        xml.replace("<!DOCTYPE html>\n", "");
        // The two elements of HTML that are never closed.
        xml.replace("<meta charset=\"utf-8\">", "");
        xml.replace("initial-scale=1\">", "initial-scale=1\"/>");
        QXmlStreamReader reader(xml);
        QString innermost;
        while (!reader.atEnd()) {
            const auto token = reader.readNext();
            if (token == QXmlStreamReader::StartElement) {
                innermost = reader.name().toString();
                ++count[innermost];
                for (const QXmlStreamAttribute &attribute : reader.attributes())
                    attributes[innermost + u' ' + attribute.name().toString()] +=
                        attribute.value().toString();
            } else if (token == QXmlStreamReader::Characters) {
                texts[innermost] += reader.text().toString();
            }
        }
        problem = reader.errorString();
    }

    QHash<QString, int> count;
    QHash<QString, QStringList> attributes; // by element and attribute
    QHash<QString, QStringList> texts;
    QString problem;
};

} // namespace

class TestReport : public QObject
{
    Q_OBJECT

private slots:
    void a_page_is_whole_and_needs_nothing_else()
    {
        const QByteArray html = toHtml(madeUpReport(100));
        const Page page(html);
        QCOMPARE(page.problem, QString());
        for (const char *foreign : {"<script", "<link", "<img", "http:", "https:", "url("})
            QVERIFY2(!html.contains(foreign), foreign);
        QCOMPARE(page.count[u"h1"_s], 1);
        QCOMPARE(page.texts[u"title"_s].first(), u"Lights of a touch frame"_s);
        QCOMPARE(page.attributes[u"html lang"_s], QStringList{u"en"_s});
    }

    void it_says_who_when_and_what()
    {
        const Page page(toHtml(madeUpReport(100)));
        const QString words = page.texts[u"td"_s].join(u'\n');
        QVERIFY(words.contains(u"Hall <left> & right"_s));
        QVERIFY(words.contains(u"21-01234-1605"_s));
        QVERIFY(words.contains(u"2026-11-21 20:15 UTC"_s));
        QVERIFY(words.contains(u"quorvelctl 3.0.1.0"_s));
        QVERIFY(page.texts[u"p"_s].contains(u"SERVICE NEEDED"_s));
        const QStringList entries = page.texts[u"li"_s];
        QVERIFY(entries.contains(
            u"X 40 to X 47: broken board. Replace the board between 200 and 240 mm from the left, "
            "or see to its plug: all its lights fail alike."_s));
        QVERIFY(entries.contains(u"X 20: weak. Clean light X 20, 103 mm from the left; if it stays "
                                 "weak, plan to replace its board."_s));
        QVERIFY(!entries.filter(u"are missed."_s).isEmpty());
    }

    void a_healthy_frame_passes()
    {
        const Page page(toHtml(madeUpReport(210)));
        QCOMPARE(page.problem, QString());
        QVERIFY(page.texts[u"p"_s].contains(u"PASS"_s));
        QVERIFY(page.texts[u"p"_s].contains(u"Nothing was found."_s));
        QCOMPARE(page.count[u"li"_s], 0);
    }

    void whoever_does_not_see_it_is_told_what_there_is()
    {
        const Page page(toHtml(madeUpReport(100)));
        QCOMPARE(page.count[u"svg"_s], 3);
        QCOMPARE(page.attributes[u"svg role"_s], QStringList(3, u"img"_s));
        QCOMPARE(page.attributes[u"svg aria-label"_s].size(), 3);
        QVERIFY(!page.attributes[u"svg aria-label"_s].contains(QString()));
        QCOMPARE(page.count[u"caption"_s], page.count[u"table"_s]);
        // Each row of the table and each of the head has its heading.
        QCOMPARE(page.attributes[u"th scope"_s].size(), page.count[u"th"_s]);
        QVERIFY(page.count[u"th"_s] >= 64 + 40 + 5);
        QVERIFY(page.texts[u"text"_s].contains(u"w"_s));
        QVERIFY(page.texts[u"text"_s].contains(u"d"_s));
    }

    void every_light_is_in_the_pictures_and_in_the_table()
    {
        const Page page(toHtml(madeUpReport(100)));
        const QStringList classes = page.attributes[u"rect class"_s];
        QCOMPARE(classes.count(u"healthy"_s), 2 * (64 + 40 - 9)); // at both edges
        QCOMPARE(classes.count(u"dead"_s), 2 * 8);
        QCOMPARE(classes.count(u"weak"_s), 2);
        QCOMPARE(classes.count(u"stretch broken-board"_s), 2);
        QVERIFY(classes.contains(u"missed"_s));
        QCOMPARE(page.attributes[u"polyline points"_s].size(), 4);
        QCOMPARE(page.attributes[u"polyline points"_s][0].split(u' ').size(), 64);
        QCOMPARE(page.texts[u"td"_s].count(u"210.0"_s), 2 * (64 + 40) - 9);
    }

    void a_comparison_has_its_own_part()
    {
        Report report = madeUpReport(100);
        report.baseline = madeUpReport(210).measurement;
        report.changes = changesSince(judge(*report.baseline), report.verdicts);
        report.trend = trendOf({*report.baseline, report.measurement});
        const Page page(toHtml(report));
        QVERIFY(page.texts[u"h2"_s].contains(u"Since it was in good order"_s));
        QVERIFY(page.texts[u"td"_s].contains(u"-52.4"_s));
        QVERIFY(!Page(toHtml(madeUpReport(100)))
                     .texts[u"h2"_s]
                     .contains(u"Since it was in good order"_s));
    }
};

QTEST_GUILESS_MAIN(TestReport)
#include "tst_report.moc"
