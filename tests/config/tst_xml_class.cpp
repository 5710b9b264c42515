#include "config/xml_class.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

const char DefaultFile[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<data>
    <easysetting>
        <ENVIRONMENT>Indoor</ENVIRONMENT>
        <USE>Write</USE>
    </easysetting>
    <setting>
        <ALL_EN>1</ALL_EN>
        <RB_EN>1</RB_EN>
        <RB_DURATION>1500</RB_DURATION>
        <RB_RAN>3</RB_RAN>
        <DB_SPEED>600</DB_SPEED>
        <DB_RAN>30</DB_RAN>
        <WHEEL_EN>1</WHEEL_EN>
        <WHEEL_SEN>2</WHEEL_SEN>
    </setting>
    <smoothing>
        <SMO_EN>1</SMO_EN>
        <SMO_LV>5</SMO_LV>
    </smoothing>
    <connect>
        <CONNECT>1</CONNECT>
        <TUIO_EN>0</TUIO_EN>
        <OS_EN>1</OS_EN>
        <UARTPORT>COM1</UARTPORT>
        <BAUDRATE>12</BAUDRATE>
        <DATABITS>3</DATABITS>
        <FLOWCONTROL>0</FLOWCONTROL>
        <PARITY>0</PARITY>
        <STOPBITS>0</STOPBITS>
        <TIMEOUT>500</TIMEOUT>
    </connect>
</data>
)";

} // namespace

// The store on a home directory of its own.
class tst_xml_class : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> home;

    QString path() const { return home->filePath(u".config/ForQuorvel"_s); }
    QByteArray content() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private slots:
    void init()
    {
        home = std::make_unique<QTemporaryDir>();
        QVERIFY(home->isValid());
        QVERIFY(QDir(home->path()).mkdir(u".config"_s));
        XML_CLASS::useHome(home->path());
    }
    void cleanup()
    {
        XML_CLASS::useHome(QString());
        home.reset();
    }

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
};

QTEST_GUILESS_MAIN(tst_xml_class)
#include "tst_xml_class.moc"
