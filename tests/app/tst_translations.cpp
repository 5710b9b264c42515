// SPDX-License-Identifier: GPL-3.0-or-later

// Which language is spoken, and how.

#include "resources/translations.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString packets(int lost)
{
    return QCoreApplication::translate(
               "RecordAction", "Recording into %1, where %Ln packet(s) are missing.", nullptr, lost)
        .arg(u"a.pcap"_s);
}

} // namespace

class TestTranslations : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QLocale::setDefault(QLocale::c()); }

    void the_first_wanted_language_that_there_is_is_spoken_data()
    {
        QTest::addColumn<QStringList>("wanted");
        QTest::addColumn<QString>("spoken");
        QTest::newRow("German") << QStringList{u"de-DE"_s, u"de"_s} << u"de"_s;
        QTest::newRow("Austrian") << QStringList{u"de-AT"_s} << u"de"_s;
        QTest::newRow("Chinese of China") << QStringList{u"zh-Hans-CN"_s, u"zh"_s} << u"zh_CN"_s;
        QTest::newRow("Chinese of Singapore") << QStringList{u"zh-SG"_s} << u"zh_CN"_s;
        QTest::newRow("Chinese of Taiwan") << QStringList{u"zh-Hant-TW"_s, u"zh-TW"_s} << u"en"_s;
        QTest::newRow("English") << QStringList{u"en-GB"_s} << u"en"_s;
        QTest::newRow("unknown") << QStringList{u"fr-FR"_s} << u"en"_s;
        QTest::newRow("none") << QStringList{u"C"_s} << u"en"_s;
        QTest::newRow("no list") << QStringList() << u"en"_s;
        QTest::newRow("nonsense") << QStringList{u"???"_s} << u"en"_s;
        QTest::newRow("second choice") << QStringList{u"fr-FR"_s, u"de-DE"_s} << u"de"_s;
        QTest::newRow("English first") << QStringList{u"en-US"_s, u"de-DE"_s} << u"en"_s;
    }
    void the_first_wanted_language_that_there_is_is_spoken()
    {
        QFETCH(const QStringList, wanted);
        QFETCH(const QString, spoken);
        QCOMPARE(Translations::languageFor(wanted), spoken);
    }

    void the_environment_decides_data()
    {
        QTest::addColumn<QStringList>("variables");
        QTest::addColumn<QString>("word");
        const QString german = u"gesund"_s;
        const QString chinese = u"正常"_s;
        const QString english = u"healthy"_s;
        QTest::newRow("LANG") << QStringList{u"LANG=de_DE.UTF-8"_s} << german;
        QTest::newRow("LC_MESSAGES before LANG")
            << QStringList{u"LANG=de_DE.UTF-8"_s, u"LC_MESSAGES=zh_CN.UTF-8"_s} << chinese;
        QTest::newRow("LC_ALL before LC_MESSAGES")
            << QStringList{u"LC_ALL=de_DE.UTF-8"_s, u"LC_MESSAGES=zh_CN.UTF-8"_s} << german;
        QTest::newRow("LANGUAGE before LC_ALL")
            << QStringList{u"LC_ALL=de_DE.UTF-8"_s, u"LANGUAGE=zh_CN:de"_s} << chinese;
        QTest::newRow("second of LANGUAGE")
            << QStringList{u"LC_ALL=fr_FR.UTF-8"_s, u"LANGUAGE=fr:de"_s} << german;
        QTest::newRow("unknown") << QStringList{u"LC_ALL=fr_FR.UTF-8"_s} << english;
        QTest::newRow("none") << QStringList{u"LC_ALL=C"_s} << english;
        QTest::newRow("nothing") << QStringList() << english;
    }
    void the_environment_decides()
    {
        QFETCH(const QStringList, variables);
        QFETCH(const QString, word);
        QProcess child;
        child.start(u"env"_s, QStringList{u"-u"_s, u"LC_ALL"_s, u"-u"_s, u"LC_MESSAGES"_s, u"-u"_s,
                                          u"LANG"_s, u"-u"_s, u"LANGUAGE"_s} +
                                  variables +
                                  QStringList{QCoreApplication::applicationFilePath(), u"--say"_s});
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.exitCode(), 0);
        QCOMPARE(QString::fromUtf8(child.readAllStandardOutput()), word);
    }

    void plural_forms_follow_the_language_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QStringList>("said"); // of 0, 1 and 2
        QTest::newRow("en") << u"en"_s
                            << QStringList{
                                   u"Recording into a.pcap, where 0 packets are missing."_s,
                                   u"Recording into a.pcap, where 1 packet is missing."_s,
                                   u"Recording into a.pcap, where 2 packets are missing."_s};
        QTest::newRow("de") << u"de"_s
                            << QStringList{u"Aufzeichnung nach a.pcap; 0 Pakete fehlen darin."_s,
                                           u"Aufzeichnung nach a.pcap; 1 Paket fehlt darin."_s,
                                           u"Aufzeichnung nach a.pcap; 2 Pakete fehlen darin."_s};
        QTest::newRow("zh_CN") << u"zh_CN"_s
                               << QStringList{u"正在录制到 a.pcap，其中缺少 0 个数据包。"_s,
                                              u"正在录制到 a.pcap，其中缺少 1 个数据包。"_s,
                                              u"正在录制到 a.pcap，其中缺少 2 个数据包。"_s};
    }
    void plural_forms_follow_the_language()
    {
        QFETCH(const QString, language);
        QFETCH(const QStringList, said);
        const Translations translations(language);
        for (int count = 0; count < 3; ++count)
            QCOMPARE(packets(count), said[count]);
    }

    void numbers_follow_the_locale()
    {
        const Translations translations(u"de"_s);
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        QCOMPARE(packets(12345), u"Aufzeichnung nach a.pcap; 12.345 Pakete fehlen darin."_s);
    }

    void what_is_for_others_stays_English_for_as_long_as_that_takes()
    {
        const Translations translations(u"de"_s);
        const auto word = [] { return QCoreApplication::translate("lights", "healthy"); };
        QCOMPARE(word(), u"gesund"_s);
        {
            const InEnglish outer;
            const InEnglish inner;
            QCOMPARE(word(), u"healthy"_s);
            QCOMPARE(packets(1), u"Recording into a.pcap, where 1 packet is missing."_s);
        }
        QCOMPARE(word(), u"gesund"_s);
    }

    void English_is_spoken_again_afterwards()
    {
        {
            const Translations translations(u"zh_CN"_s);
            QCOMPARE(QCoreApplication::translate("lights", "healthy"), u"正常"_s);
        }
        QCOMPARE(QCoreApplication::translate("lights", "healthy"), u"healthy"_s);
    }

    void there_are_words_for_every_language()
    {
        QCOMPARE(Translations::languages(), QStringList({u"en"_s, u"de"_s, u"zh_CN"_s}));
        for (const QString &language : Translations::languages()) {
            QTranslator words;
            QVERIFY2(words.load(u":/i18n/quorvel_"_s + language), qPrintable(language));
            QVERIFY(!words.isEmpty());
        }
    }
};

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (app.arguments().contains(u"--say"_s)) {
        const Translations translations;
        std::fputs(qUtf8Printable(QCoreApplication::translate("lights", "healthy")), stdout);
        return 0;
    }
    TestTranslations test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_translations.moc"
