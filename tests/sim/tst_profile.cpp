// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/profile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using sim::Profile;

class TestProfile : public QObject
{
    Q_OBJECT

private slots:
    void every_key_is_read();
    void an_empty_text_is_the_frame_of_the_defaults();
    void comments_and_blanks_mean_nothing();
    void an_early_request_drops_or_finishes();
    void a_wrong_text_is_refused_with_line_and_reason_data();
    void a_wrong_text_is_refused_with_line_and_reason();
    void a_file_that_is_not_there_is_refused();
    void a_directory_is_refused();
    void a_file_too_large_is_refused();
    void a_file_on_disk_is_refused_under_its_path();
    void the_profiles_that_come_along_are_right_data();
    void the_profiles_that_come_along_are_right();
};

void TestProfile::every_key_is_read()
{
    QString problem;
    const auto profile = Profile::parse(u"release 0x2FFF\n"
                                        "product 0xABCD\n"
                                        "lights-x 500\n"
                                        "lights-y 350\n"
                                        "level 255\n"
                                        "curve 7\n"
                                        "noise 0\n"
                                        "seed 4294967295\n"
                                        "dead x 499\n"
                                        "weak y 0 60\n"
                                        "noisy x 7 40\n"
                                        "revision 0xFFFFFF\n"
                                        "checksum 0xFFFFFFFF\n"
                                        "date 0xFFFF\n"
                                        "number 0xFFFFF\n"
                                        "family 255\n"
                                        "rotation 3\n"
                                        "default-rotation 1\n"
                                        "early-request finishes\n"_s,
                                        u"a.profile"_s, &problem);
    QVERIFY2(profile, qPrintable(problem));
    QCOMPARE(profile->release, 0x2FFF);
    QCOMPARE(profile->product, 0xABCD);
    QCOMPARE(profile->lightsX, 500);
    QCOMPARE(profile->lightsY, 350);
    QCOMPARE(profile->level, 255);
    QCOMPARE(profile->curve, 7);
    QCOMPARE(profile->noise, 0);
    QCOMPARE(profile->seed, 4294967295U);
    const std::vector<sim::OddLight> odd = {
        {1, 499, 0}, {2, 0, 60}, {.axis = 1, .number = 7, .noise = 40}};
    QCOMPARE(profile->oddLights, odd);
    QCOMPARE(profile->revision, 0xFFFFFFU);
    QCOMPARE(profile->checksum, 0xFFFFFFFFU);
    QCOMPARE(profile->date, 0xFFFFU);
    QCOMPARE(profile->number, 0xFFFFFU);
    QCOMPARE(int(profile->family), 255);
    QCOMPARE(int(profile->rotation), 3);
    QCOMPARE(int(profile->defaultRotation), 1);
    QCOMPARE(profile->earlyRequest, sim::EarlyRequest::Finishes);
}

void TestProfile::an_empty_text_is_the_frame_of_the_defaults()
{
    QString problem;
    const auto profile = Profile::parse(QString(), u"a.profile"_s, &problem);
    QVERIFY(profile);
    QCOMPARE(profile->release, 0x3010);
    QCOMPARE(profile->lightsX, 96);
    QCOMPARE(profile->lightsY, 54);
    QCOMPARE(profile->earlyRequest, sim::EarlyRequest::Drops);
    QVERIFY(problem.isEmpty());
}

void TestProfile::comments_and_blanks_mean_nothing()
{
    QString problem;
    const auto profile =
        Profile::parse(u"# lights-x 5\r\n\n  lights-x \t 7 # seven\n#"_s, u"a.profile"_s, &problem);
    QVERIFY2(profile, qPrintable(problem));
    QCOMPARE(profile->lightsX, 7);
}

void TestProfile::an_early_request_drops_or_finishes()
{
    QString problem;
    const auto drops = Profile::parse(u"early-request drops"_s, u"a.profile"_s, &problem);
    QVERIFY2(drops, qPrintable(problem));
    QCOMPARE(drops->earlyRequest, sim::EarlyRequest::Drops);
    const auto finishes = Profile::parse(u"early-request finishes"_s, u"a.profile"_s, &problem);
    QVERIFY2(finishes, qPrintable(problem));
    QCOMPARE(finishes->earlyRequest, sim::EarlyRequest::Finishes);
}

void TestProfile::a_wrong_text_is_refused_with_line_and_reason_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("problem");

    const auto row = [](const char *name, const char *text, const char *problem) {
        QTest::newRow(name) << QString::fromLatin1(text) << QString::fromLatin1(problem);
    };
    row("unknown key", "# a\n\nlights-z 4", "f.profile:3: lights-z is not a key of a profile");
    row("missing value", "level\n", "f.profile:1: level has no value");
    row("two values", "level 1 2\n", "f.profile:1: level takes one value, not 2");
    row("not a number", "seed many", "f.profile:1: seed is many, which is not a number");
    row("number with a tail", "seed 1x", "f.profile:1: seed is 1x, which is not a number");
    row("fraction", "level 1.5", "f.profile:1: level is 1.5, which is not a number");
    row("release without 0x", "release 3010",
        "f.profile:1: release is 3010: write a hexadecimal number such as 0x3010");
    row("product without digits", "product 0x",
        "f.profile:1: product is 0x: write a hexadecimal number such as 0x3010");
    row("release of 17 bits", "release 0x10000",
        "f.profile:1: release is 0x10000: it lies between 0 and 65535");
    row("too many X lights", "\n\n\n\n\n\nlights-x 600",
        "f.profile:7: lights-x is 600: the largest frame has 500");
    row("one X light too many", "lights-x 501",
        "f.profile:1: lights-x is 501: the largest frame has 500");
    row("one Y light too many", "lights-y 351",
        "f.profile:1: lights-y is 351: the largest frame has 350");
    row("no lights", "lights-y 0", "f.profile:1: lights-y is 0: it lies between 1 and 350");
    row("level too high", "level 256", "f.profile:1: level is 256: it lies between 0 and 255");
    row("negative noise", "noise -1", "f.profile:1: noise is -1: it lies between 0 and 255");
    row("negative curve", "curve -1", "f.profile:1: curve is -1: it lies between 0 and 255");
    row("seed of 33 bits", "seed 4294967296",
        "f.profile:1: seed is 4294967296: it lies between 0 and 4294967295");
    row("revision of 25 bits", "revision 0x1000000",
        "f.profile:1: revision is 0x1000000: it lies between 0 and 16777215");
    row("checksum of 33 bits", "checksum 0x100000000",
        "f.profile:1: checksum is 0x100000000: it lies between 0 and 4294967295");
    row("date of 17 bits", "date 0x10000",
        "f.profile:1: date is 0x10000: it lies between 0 and 65535");
    row("number of 21 bits", "number 0x100000",
        "f.profile:1: number is 0x100000: it lies between 0 and 1048575");
    row("family of 9 bits", "family 256", "f.profile:1: family is 256: it lies between 0 and 255");
    row("rotation by a full turn", "rotation 4",
        "f.profile:1: rotation is 4: it lies between 0 and 3");
    row("default rotation in degrees", "default-rotation 90",
        "f.profile:1: default-rotation is 90: it lies between 0 and 3");
    row("early request without a word", "\nearly-request",
        "f.profile:2: early-request has no value");
    row("early request with two words", "early-request drops finishes",
        "f.profile:1: early-request takes one value, not 2");
    row("early request of another word", "level 9\nearly-request waits",
        "f.profile:2: early-request is waits: write drops or finishes");
    row("early request of a number", "early-request 1",
        "f.profile:1: early-request is 1: write drops or finishes");
    row("repeated early request", "early-request drops\nearly-request finishes",
        "f.profile:2: early-request stands on line 1 already");
    row("repeated key", "level 1\nnoise 1\nlevel 1", "f.profile:3: level stands on line 1 already");
    row("dead without a light", "dead x",
        "f.profile:1: dead takes an axis and a light, such as: dead x 12");
    row("dead with a level", "dead x 1 2",
        "f.profile:1: dead takes an axis and a light, such as: dead x 12");
    row("weak without a level", "weak x 1",
        "f.profile:1: weak takes an axis, a light and a level, such as: weak x 12 60");
    row("noisy without its noise", "noisy x 1",
        "f.profile:1: noisy takes an axis, a light and its noise, such as: noisy x 12 40");
    row("noise too high", "noisy x 1 256",
        "f.profile:1: the noise is 256: it lies between 0 and 255");
    row("weak on a third axis", "weak z 1 2", "f.profile:1: z is not an axis: write x or y");
    row("dead light that is no number", "dead x one", "f.profile:1: one is not a number");
    row("weak level that is no number", "weak x 1 low", "f.profile:1: low is not a number");
    row("weak level too high", "weak x 1 256",
        "f.profile:1: the level is 256: it lies between 0 and 255");
    row("negative light", "dead x -1", "f.profile:1: there is no light -1");
    row("light behind the axis", "dead x 10\nlights-x 10",
        "f.profile:1: there is no light x 10: the axis has 0 to 9");
    row("light behind the default axis", "level 9\nweak y 54 5",
        "f.profile:2: there is no light y 54: the axis has 0 to 53");
    row("light twice", "dead x 5\n\nweak x 5 60",
        "f.profile:3: light x 5 stands on line 1 already");
}

void TestProfile::a_wrong_text_is_refused_with_line_and_reason()
{
    QFETCH(QString, text);
    QFETCH(QString, problem);

    QString said;
    QVERIFY(!Profile::parse(text, u"f.profile"_s, &said));
    QCOMPARE(said, problem);
}

void TestProfile::a_file_that_is_not_there_is_refused()
{
    QTemporaryDir home;
    const QString path = home.filePath(u"none.profile"_s);
    QString problem;
    QVERIFY(!Profile::load(path, &problem));
    QCOMPARE(problem, path + u": cannot be read: No such file or directory"_s);
}

void TestProfile::a_directory_is_refused()
{
    QTemporaryDir home;
    QString problem;
    QVERIFY(!Profile::load(home.path(), &problem));
    QVERIFY2(problem.startsWith(home.path() + u": cannot be read: "_s), qPrintable(problem));
}

void TestProfile::a_file_too_large_is_refused()
{
    QTemporaryDir home;
    QFile file(home.filePath(u"large.profile"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray((1 << 20) + 1, '#'));
    file.close();
    QString problem;
    QVERIFY(!Profile::load(file.fileName(), &problem));
    QCOMPARE(problem, file.fileName() + u": is larger than 1 MiB, which no such file needs"_s);
}

void TestProfile::a_file_on_disk_is_refused_under_its_path()
{
    QTemporaryDir home;
    QFile file(home.filePath(u"frame.profile"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("noise 2\nlights-x 600\n");
    file.close();
    QString problem;
    QVERIFY(!Profile::load(file.fileName(), &problem));
    QCOMPARE(problem, file.fileName() + u":2: lights-x is 600: the largest frame has 500"_s);
}

void TestProfile::the_profiles_that_come_along_are_right_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("release");
    QTest::addColumn<int>("lightsX");
    QTest::addColumn<int>("lightsY");

    QTest::newRow("current") << u"current"_s << 0x3010 << 96 << 54;
    QTest::newRow("edge") << u"edge"_s << 0x3000 << 110 << 55;
    QTest::newRow("old") << u"old"_s << 0x2FFF << 64 << 40;
    QTest::newRow("largest") << u"largest"_s << 0x3010 << 500 << 350;
    QTest::newRow("worn") << u"worn"_s << 0x3010 << 96 << 54;
}

void TestProfile::the_profiles_that_come_along_are_right()
{
    QFETCH(QString, name);
    QFETCH(int, release);
    QFETCH(int, lightsX);
    QFETCH(int, lightsY);

    QString problem;
    const auto profile =
        Profile::load(QStringLiteral(SIM_DIR) + u"/profiles/%1.profile"_s.arg(name), &problem);
    QVERIFY2(profile, qPrintable(problem));
    QCOMPARE(int(profile->release), release);
    QCOMPARE(profile->lightsX, lightsX);
    QCOMPARE(profile->lightsY, lightsY);
    QCOMPARE(profile->earlyRequest,
             name == u"edge"_s ? sim::EarlyRequest::Finishes : sim::EarlyRequest::Drops);
    const QStringList all = QDir(QStringLiteral(SIM_DIR) + u"/profiles"_s).entryList(QDir::Files);
    QCOMPARE(all, QStringList({u"current.profile"_s, u"edge.profile"_s, u"largest.profile"_s,
                               u"old.profile"_s, u"worn.profile"_s}));
}

QTEST_GUILESS_MAIN(TestProfile)
#include "tst_profile.moc"
