// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/reportnews.h"

#include <QTest>

#include <cstring>

namespace {

using News = ReportNews::News;

Frame bytes(const char *hex)
{
    const QByteArray typed = QByteArray::fromHex(hex);
    Frame frame{};
    memcpy(frame.data(), typed.constData(), size_t(typed.size()));
    return frame;
}

const Frame Rotation90 = bytes("FC A7 82 02 00 01");
const Frame Light7 = bytes("FC A2 87 0B 00 01 07 00 05");
const Frame Light8 = bytes("FC A2 87 0B 00 01 08 00 05");
const ReportNews::Answer AnyLight{0xA2, 0x87, {}, 0};
const ReportNews::Answer AboutLight7{0xA2, 0x87, {1, 7, 0}, 3};

} // namespace

class TestReportNews : public QObject
{
    Q_OBJECT

private slots:
    void a_report_that_equals_the_one_before_is_repeated()
    {
        ReportNews news;
        QVERIFY(news.take(Rotation90) == News::New);
        QVERIFY(news.take(Rotation90) == News::Repeated);
        QVERIFY(news.take(Light7) == News::New);
        QVERIFY(news.take(Rotation90) == News::New);
    }

    void one_byte_makes_another_report()
    {
        ReportNews news;
        Frame report = Rotation90;
        news.take(report);
        report[63] = 1;
        QVERIFY(news.take(report) == News::New);
    }

    void an_answer_that_says_the_same_again_counts_once()
    {
        ReportNews news;
        news.take(Light7);
        news.ask(AboutLight7);
        QVERIFY(news.take(Light7) == News::Answer);
        QVERIFY(news.take(Light7) == News::Repeated);
    }

    void asking_twice_is_asking_once()
    {
        ReportNews news;
        news.ask(AboutLight7);
        news.ask(AboutLight7);
        QVERIFY(news.take(Light7) == News::Answer);
        QVERIFY(!news.awaits(AboutLight7));
        QVERIFY(news.take(Light7) == News::Repeated);
    }

    void an_answer_about_something_else_answers_nothing()
    {
        ReportNews news;
        news.ask(AboutLight7);
        QVERIFY(news.take(Light8) == News::New);
        QVERIFY(news.take(Rotation90) == News::New);
        QVERIFY(news.awaits(AboutLight7));
        QVERIFY(news.take(Light7) == News::Answer);
    }

    void a_question_may_leave_the_value_open()
    {
        ReportNews news;
        news.ask(AnyLight);
        QVERIFY(news.take(Light8) == News::Answer);
    }

    void after_forgetting_nothing_is_awaited_and_nothing_is_known()
    {
        ReportNews news;
        news.take(Rotation90);
        news.ask(AnyLight);
        news.forget();
        QVERIFY(!news.awaits(AnyLight));
        QVERIFY(news.take(Rotation90) == News::New);
    }
};

QTEST_GUILESS_MAIN(TestReportNews)
#include "tst_reportnews.moc"
