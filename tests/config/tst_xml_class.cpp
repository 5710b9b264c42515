// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/xml_class.h"

#include "documents.h"
#include "tests/support/settingshome.h"
#include "words.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr _SETTING_DATA SomeSetting = {11, 12, 13, 14, 15, 16, 17, 18};

// Everything that a store reads; each section goes to the file.
QString all(XML_CLASS &store)
{
    return QStringList{words(store.read_easysetting()), words(store.read_setting()),
                       words(store.read_smoothing()), words(store.read_connect())}
        .join(u" / "_s);
}

} // namespace

// The store on a home directory of its own.
class TestXmlClass : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;

    QString path() const { return home->path(); }
    QByteArray content() const { return home->content(); }
    void setContent(const QByteArray &bytes) const { home->setContent(bytes); }

private slots:
    void init() { home = std::make_unique<SettingsHome>(); }
    void cleanup() { home.reset(); }

    void constructing_a_store_touches_no_file()
    {
        const XML_CLASS store;
        QVERIFY(!QFile::exists(path()));
    }

    void the_first_reading_makes_the_file_with_all_defaults()
    {
        XML_CLASS store;
        const _SETTING_DATA read = store.read_setting();
        QCOMPARE(read.rb_duration, 1500);
        QCOMPARE(read.rb_ran, 3);
        QCOMPARE(read.db_speed, 600);
        QCOMPARE(read.db_ran, 30);
        QCOMPARE(read.wheel_sen, 2);
        QCOMPARE(content(), QByteArray(DefaultFile));
    }

    void every_section_reads_its_defaults_from_a_file_just_made()
    {
        QCOMPARE(words(XML_CLASS().read_easysetting()), u"'Indoor' 'Write'"_s);
        QVERIFY(QFile::remove(path()));
        QCOMPARE(words(XML_CLASS().read_setting()), u"1 1 1500 3 600 30 1 2"_s);
        QVERIFY(QFile::remove(path()));
        QCOMPARE(words(XML_CLASS().read_smoothing()), u"1 5"_s);
        QVERIFY(QFile::remove(path()));
        QCOMPARE(words(XML_CLASS().read_connect()), u"1 0 1 'COM1' 12 3 0 0 0 500"_s);
    }

    void a_section_that_was_read_is_kept_beside_the_others()
    {
        XML_CLASS store;
        QCOMPARE(store.SettingData, _SETTING_DATA());
        store.read_setting();
        QCOMPARE(store.SettingData.rb_duration, 1500);
        QCOMPARE(store.EasysettingData, _EASYSETTING_DATA());
        store.read_easysetting();
        QCOMPARE(store.EasysettingData.Use, u"Write"_s);
        QCOMPARE(store.SmoothingData, _SMOOTHING_DATA());
        store.read_smoothing();
        QCOMPARE(store.SmoothingData.smo_lv, 5);
        QCOMPARE(store.ConnectData, _CONNECT_DATA());
        store.read_connect();
        QCOMPARE(store.ConnectData.uartport, u"COM1"_s);

        XML_CLASS().write_setting(SomeSetting);
        store.read_smoothing();
        QCOMPARE(store.SettingData.rb_duration, 1500);
        store.read_setting();
        QCOMPARE(store.SettingData, SomeSetting);
    }

    void the_file_is_all_that_is_made()
    {
        XML_CLASS().read_setting();
        const auto every = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
        QCOMPARE(QDir(home->folder()).entryList(every), QStringList{u".config"_s});
        QCOMPARE(QDir(home->filePath(u".config"_s)).entryList(every), QStringList{u"ForQuorvel"_s});
        QVERIFY(QFileInfo(path()).isFile());
    }

    void a_file_that_is_there_is_only_read()
    {
        const QByteArray mine = "<data><smoothing><SMO_LV>abc</SMO_LV></smoothing></data>";
        setContent(mine);
        XML_CLASS store;
        all(store);
        QCOMPARE(content(), mine);
    }

    void a_word_instead_of_a_number_reads_as_zero()
    {
        setContent(QByteArray(OtherFile).replace(">22<", ">abc<"));
        XML_CLASS store;
        QCOMPARE(words(store.read_smoothing()), u"21 0"_s);
    }

    void line_ends_of_another_system_will_do()
    {
        setContent(QByteArray(OtherFile).replace("\n", "\r\n"));
        XML_CLASS store;
        QCOMPARE(all(store), OtherWords);
    }

    // The defaults come only with a file that could be made.
    void a_file_without_elements_reads_as_zeros_and_not_as_defaults()
    {
        setContent("");
        XML_CLASS store;
        QCOMPARE(all(store), EmptyWords);
        QCOMPARE(content(), QByteArray());
    }

    void setting_the_defaults_changes_neither_the_file_nor_what_is_read()
    {
        setContent(OtherFile);
        XML_CLASS store;
        store.set_XmlData_default();
        QCOMPARE(all(store), OtherWords);
        QCOMPARE(content(), QByteArray(OtherFile));
    }

    void writing_a_section_keeps_the_others_data()
    {
        QTest::addColumn<int>("section");
        QTest::addColumn<QString>("expected");
        QTest::newRow("easysetting")
            << 0
            << u"'Rain' 'Multipoint' / 1 1 1500 3 600 30 1 2 / 1 5 / 1 0 1 'COM1' 12 3 0 0 0 500"_s;
        QTest::newRow("setting")
            << 1
            << u"'Indoor' 'Write' / 11 12 13 14 15 16 17 18 / 1 5 / 1 0 1 'COM1' 12 3 0 0 0 500"_s;
        QTest::newRow("smoothing")
            << 2
            << u"'Indoor' 'Write' / 1 1 1500 3 600 30 1 2 / 21 22 / 1 0 1 'COM1' 12 3 0 0 0 500"_s;
        QTest::newRow("connect") << 3
                                 << u"'Indoor' 'Write' / 1 1 1500 3 600 30 1 2 / 1 5 / "
                                    "31 32 33 'ttyS4' 19 2 4 3 1 34"_s;
    }
    void writing_a_section_keeps_the_others()
    {
        QFETCH(const int, section);
        QFETCH(const QString, expected);
        // Once into a file that the writing has to make first, once into one that is there.
        for (const bool there : {false, true}) {
            QFile::remove(path());
            if (there)
                setContent(DefaultFile);
            XML_CLASS store;
            if (section == 0)
                store.write_easysetting({u"Rain"_s, u"Multipoint"_s});
            else if (section == 1)
                store.write_setting(SomeSetting);
            else if (section == 2)
                store.write_smoothing({21, 22});
            else
                store.write_connect(
                    {31,
                     32,
                     33,
                     u"ttyS4"_s,
                     {BAUD115200, DATA_7, PAR_SPACE, StopBitsType(3), FLOW_HARDWARE, 34}});
            QCOMPARE(all(store), expected);
            XML_CLASS fresh;
            QCOMPARE(all(fresh), expected);
        }
    }

    void all_sections_written_make_the_whole_file()
    {
        XML_CLASS store;
        store.write_connect({31,
                             32,
                             33,
                             u"ttyS4"_s,
                             {BAUD115200, DATA_7, PAR_SPACE, StopBitsType(3), FLOW_HARDWARE, 34}});
        store.write_smoothing({21, 22});
        store.write_setting(SomeSetting);
        store.write_easysetting({u"Rain"_s, u"Multipoint"_s});
        QCOMPARE(content(), QByteArray(OtherFile));
    }

    void two_stores_see_what_the_other_wrote()
    {
        XML_CLASS usage;
        XML_CLASS smoothing;
        usage.read_easysetting();
        smoothing.read_smoothing();
        usage.write_easysetting({u"Shock"_s, u"Percussion"_s});
        smoothing.write_smoothing({0, 4});
        const QString both =
            u"'Shock' 'Percussion' / 1 1 1500 3 600 30 1 2 / 0 4 / 1 0 1 'COM1' 12 3 0 0 0 500"_s;
        QCOMPARE(all(usage), both);
        QCOMPARE(all(smoothing), both);
    }

    void what_another_program_changed_is_kept_by_a_writing()
    {
        XML_CLASS store;
        store.read_setting();
        setContent(OtherFile);
        store.write_smoothing({0, 4});
        QCOMPARE(content(), QByteArray(OtherFile).replace(">21<", ">0<").replace(">22<", ">4<"));
    }

    void what_a_writing_rewrites_is_only_what_it_knows()
    {
        setContent("<data extra='1'><new>8</new><!-- mine --><smoothing><SMO_LV>6</SMO_LV>"
                   "</smoothing></data>");
        XML_CLASS store;
        store.write_easysetting({u"Rain"_s, u"Write"_s});
        QVERIFY(!content().contains("new") && !content().contains("mine") &&
                !content().contains("extra"));
        QCOMPARE(all(store), u"'Rain' 'Write' / 0 0 0 0 0 0 0 0 / 0 6 / 0 0 0 '' 0 0 0 0 0 0"_s);
    }

    void a_longer_file_leaves_no_rest()
    {
        setContent(QByteArray(OtherFile) + QByteArray(5000, ' '));
        XML_CLASS store;
        store.write_smoothing({21, 22});
        QCOMPARE(content(), QByteArray(OtherFile));
    }

    void a_store_keeps_what_a_shortened_file_lacks()
    {
        setContent(OtherFile);
        XML_CLASS store;
        store.read_setting();
        setContent("<data><setting><RB_RAN>4</RB_RAN></setting></data>");
        QCOMPARE(all(store), u"'Rain' 'Multipoint' / 11 12 13 4 15 16 17 18 / 21 22 / "
                             "31 32 33 'ttyS4' 19 2 4 3 1 34"_s);
        setContent("");
        QCOMPARE(words(store.read_setting()), u"11 12 13 4 15 16 17 18"_s);
        // Another store knows nothing of that.
        XML_CLASS other;
        QCOMPARE(all(other), EmptyWords);
    }

    void a_writing_writes_what_the_store_kept_for_a_shortened_file()
    {
        setContent(OtherFile);
        XML_CLASS store;
        store.read_setting();
        setContent("<data><setting>");
        store.write_smoothing({21, 22});
        QCOMPARE(content(), QByteArray(OtherFile));
    }

    void what_was_written_is_kept_only_once_it_was_read()
    {
        setContent(OtherFile);
        XML_CLASS store;
        store.write_smoothing({0, 4});
        setContent("");
        QCOMPARE(words(store.read_smoothing()), u"21 22"_s);
    }

    void a_file_that_went_is_made_anew_with_the_defaults()
    {
        setContent(OtherFile);
        XML_CLASS store;
        store.read_setting();
        QVERIFY(QFile::remove(path()));
        QCOMPARE(all(store), DefaultWords);
        QCOMPARE(content(), QByteArray(DefaultFile));
    }

    void numbers_outside_the_lists_survive_a_writing()
    {
        setContent(QByteArray(OtherFile).replace(">19<", ">-7<").replace(">2<", ">2147483647<"));
        XML_CLASS store;
        store.write_smoothing({21, 22});
        QCOMPARE(content(),
                 QByteArray(OtherFile).replace(">19<", ">-7<").replace(">2<", ">2147483647<"));
    }

    void the_home_directory_is_looked_up_at_every_operation()
    {
        XML_CLASS::useHome(QString());
        const QByteArray before = qgetenv("HOME");
        QTemporaryDir other;
        QVERIFY(QDir(other.path()).mkdir(u".config"_s));
        XML_CLASS store;
        qputenv("HOME", QFile::encodeName(home->folder()));
        store.write_smoothing({0, 4});
        qputenv("HOME", QFile::encodeName(other.path()));
        const _SMOOTHING_DATA read = store.read_smoothing();
        qputenv("HOME", before);
        QCOMPARE(words(read), u"1 5"_s);
        QVERIFY(content().contains("<SMO_LV>4<"));
        QVERIFY(QFile::exists(other.filePath(u".config/ForQuorvel"_s)));
    }

    void a_home_with_a_name_beyond_ascii_will_do()
    {
        const QString odd = home->filePath(u"Benutzer ä \U0001F600"_s);
        QVERIFY(QDir().mkpath(odd + u"/.config"_s));
        XML_CLASS::useHome(odd);
        QCOMPARE(words(XML_CLASS().read_smoothing()), u"1 5"_s);
        QVERIFY(QFile::exists(odd + u"/.config/ForQuorvel"_s));
    }
};

QTEST_GUILESS_MAIN(TestXmlClass)
#include "tst_xml_class.moc"
