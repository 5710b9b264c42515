// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/pluginfolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr uid_t Stranger = 65534;

} // namespace

// Every test has a working directory of its own, /tmp/<...>/place, in which "./plugins" is judged.
class TestPluginFolder : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void no_folder_is_no_problem();
    void a_folder_of_this_user_is_added();
    void a_folder_that_others_can_write_is_left_out_data();
    void a_folder_that_others_can_write_is_left_out();
    void a_folder_of_another_user_is_left_out_data();
    void a_folder_of_another_user_is_left_out();
    void a_sticky_folder_above_is_fine_while_the_entry_is_ours();
    void a_sticky_folder_above_is_no_excuse_for_a_foreign_entry();
    void a_sticky_folder_inside_is_not_fine();
    void a_link_is_judged_by_where_it_leads_data();
    void a_link_is_judged_by_where_it_leads();
    void a_link_to_nothing_is_left_out_where_others_could_put_something();
    void links_in_a_circle_end();
    void a_huge_folder_is_left_out();
    void many_small_folders_are_left_out_like_a_huge_one();
    void a_folder_that_cannot_be_listed_is_left_out();
    void a_folder_that_cannot_be_looked_into_is_left_out();
    void a_folder_that_cannot_be_reached_is_left_out();
    void a_file_name_cannot_steer_the_terminal();
    void what_is_added_outlives_the_start_of_the_application();
    void what_is_left_out_is_not_added();

private:
    QString path(const QString &name) const { return base->filePath(name); }
    void makeFolder(const QString &name) const;
    void makeFile(const QString &name) const;
    void makeLink(const QString &target, const QString &name) const;
    void setMode(const QString &name, mode_t mode) const;
    bool giveAway(const QString &name) const;

    std::unique_ptr<QTemporaryDir> base;
    QString startedIn;
};

void TestPluginFolder::init()
{
    startedIn = QDir::currentPath();
    umask(022);
    base = std::make_unique<QTemporaryDir>(u"/tmp/quorvel-plugins-XXXXXX"_s);
    QVERIFY(base->isValid());
    makeFolder(u"place"_s);
    QVERIFY(QDir::setCurrent(path(u"place"_s)));
}

void TestPluginFolder::cleanup()
{
    QVERIFY(QDir::setCurrent(startedIn));
    base.reset();
}

void TestPluginFolder::makeFolder(const QString &name) const
{
    QVERIFY(QDir().mkpath(path(name)));
}

void TestPluginFolder::makeFile(const QString &name) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
}

void TestPluginFolder::makeLink(const QString &target, const QString &name) const
{
    QVERIFY(QFile::link(target, path(name)));
}

void TestPluginFolder::setMode(const QString &name, mode_t mode) const
{
    QCOMPARE(chmod(path(name).toLocal8Bit().constData(), mode), 0);
}

bool TestPluginFolder::giveAway(const QString &name) const
{
    return lchown(path(name).toLocal8Bit().constData(), Stranger, Stranger) == 0;
}

void TestPluginFolder::no_folder_is_no_problem()
{
    QCOMPARE(pluginFolderProblem(u"./plugins"_s), QString());
    // Not even where others could make one: Qt ignores what is not there.
    setMode(u"place"_s, 01777);
    QCOMPARE(pluginFolderProblem(u"./plugins"_s), QString());
}

void TestPluginFolder::a_folder_of_this_user_is_added()
{
    makeFolder(u"place/plugins/platforms"_s);
    makeFile(u"place/plugins/platforms/libqx.so"_s);
    QCOMPARE(pluginFolderProblem(u"./plugins"_s), QString());
    QCOMPARE(pluginFolderProblem(path(u"place/plugins"_s)), QString());
}

void TestPluginFolder::a_folder_that_others_can_write_is_left_out_data()
{
    QTest::addColumn<QString>("loose");
    QTest::addColumn<uint>("mode");
    QTest::addColumn<QString>("who");
    for (const auto &[mode, who] : {std::pair(0775U, u"group "_s), std::pair(0757U, u"everybody"_s),
                                    std::pair(0777U, u"everybody"_s)}) {
        for (const QString &loose :
             {u"place"_s, u"place/plugins"_s, u"place/plugins/platforms"_s,
              u"place/plugins/platforms/deep"_s, u"place/plugins/platforms/deep/libqx.so"_s})
            QTest::addRow("%o %s", mode, qPrintable(loose)) << loose << mode << who;
    }
}

void TestPluginFolder::a_folder_that_others_can_write_is_left_out()
{
    QFETCH(QString, loose);
    QFETCH(uint, mode);
    QFETCH(QString, who);
    makeFolder(u"place/plugins/platforms/deep"_s);
    makeFile(u"place/plugins/platforms/deep/libqx.so"_s);
    setMode(loose, mode);
    const QString problem = pluginFolderProblem(u"./plugins"_s);
    QVERIFY2(problem.startsWith(u"the plug-in folder ./plugins is left out: "_s + who),
             qPrintable(problem));
    QVERIFY2(problem.contains(u" can write to "_s + path(loose) + u';'), qPrintable(problem));
    setMode(loose, 0755);
    QCOMPARE(pluginFolderProblem(u"./plugins"_s), QString());
}

void TestPluginFolder::a_folder_of_another_user_is_left_out_data()
{
    QTest::addColumn<QString>("foreign");
    QTest::newRow("above") << u"place"_s;
    QTest::newRow("itself") << u"place/plugins"_s;
    QTest::newRow("folder inside") << u"place/plugins/platforms"_s;
    QTest::newRow("file inside") << u"place/plugins/platforms/libqx.so"_s;
}

void TestPluginFolder::a_folder_of_another_user_is_left_out()
{
    QFETCH(QString, foreign);
    makeFolder(u"place/plugins/platforms"_s);
    makeFile(u"place/plugins/platforms/libqx.so"_s);
    QVERIFY2(giveAway(foreign), "needs root, to give a file to another user");
    const QString problem = pluginFolderProblem(u"./plugins"_s);
    QVERIFY2(problem.contains(path(foreign) + u" belongs to user "_s), qPrintable(problem));
}

void TestPluginFolder::a_sticky_folder_above_is_fine_while_the_entry_is_ours()
{
    makeFolder(u"place/plugins"_s);
    setMode(u"place"_s, 01777);
    QCOMPARE(pluginFolderProblem(u"./plugins"_s), QString());
    setMode(u"place"_s, 0777);
    QVERIFY(!pluginFolderProblem(u"./plugins"_s).isEmpty());
}

void TestPluginFolder::a_sticky_folder_above_is_no_excuse_for_a_foreign_entry()
{
    makeFolder(u"place/mine"_s);
    makeLink(u"mine"_s, u"place/plugins"_s);
    setMode(u"place"_s, 01777);
    QCOMPARE(pluginFolderProblem(u"./plugins"_s), QString());
    // Whoever owns the link can make it lead elsewhere.
    QVERIFY2(giveAway(u"place/plugins"_s), "needs root, to give a link to another user");
    const QString problem = pluginFolderProblem(u"./plugins"_s);
    QVERIFY2(problem.contains(u"place/plugins belongs to user "_s), qPrintable(problem));
}

void TestPluginFolder::a_sticky_folder_inside_is_not_fine()
{
    makeFolder(u"place/plugins/platforms"_s);
    setMode(u"place/plugins/platforms"_s, 01777);
    const QString problem = pluginFolderProblem(u"./plugins"_s);
    QVERIFY2(problem.contains(u"everybody can write to "_s + path(u"place/plugins/platforms"_s)),
             qPrintable(problem));
}

void TestPluginFolder::a_link_is_judged_by_where_it_leads_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("loose");
    QTest::newRow("the folder, absolute")
        << u"place/plugins"_s << u"@/far/in"_s << u"far/in/x.so"_s;
    QTest::newRow("the folder, relative") << u"place/plugins"_s << u"../far/in"_s << u"far/in"_s;
    QTest::newRow("above its target") << u"place/plugins"_s << u"@/far/in"_s << u"far"_s;
    QTest::newRow("a folder inside")
        << u"place/plugins/far"_s << u"../../far/in"_s << u"far/in/x.so"_s;
    QTest::newRow("a folder inside, from where the link is")
        << u"place/plugins/far"_s << u"./../../far/in"_s << u"far/in/x.so"_s;
    QTest::newRow("a file inside")
        << u"place/plugins/x.so"_s << u"@/far/in/x.so"_s << u"far/in/x.so"_s;
    QTest::newRow("above a file") << u"place/plugins/x.so"_s << u"@/far/in/x.so"_s << u"far/in"_s;
    QTest::newRow("through a link") << u"place/plugins/x.so"_s << u"@/alias/x.so"_s << u"far"_s;
}

void TestPluginFolder::a_link_is_judged_by_where_it_leads()
{
    QFETCH(QString, link);
    QFETCH(QString, target);
    QFETCH(QString, loose);
    makeFolder(u"far/in"_s);
    makeFile(u"far/in/x.so"_s);
    makeLink(u"far/in"_s, u"alias"_s);
    if (link != u"place/plugins")
        makeFolder(u"place/plugins"_s);
    makeLink(target.replace(u'@', base->path()), link);
    QCOMPARE(pluginFolderProblem(u"./plugins"_s), QString());
    setMode(loose, 0777);
    const QString problem = pluginFolderProblem(u"./plugins"_s);
    QVERIFY2(problem.contains(u"everybody can write to "_s + path(loose) + u';'),
             qPrintable(problem));
}

void TestPluginFolder::a_link_to_nothing_is_left_out_where_others_could_put_something()
{
    makeFolder(u"place/plugins"_s);
    makeFolder(u"far"_s);
    makeLink(path(u"far/x.so"_s), u"place/plugins/x.so"_s);
    QCOMPARE(pluginFolderProblem(u"./plugins"_s), QString());
    setMode(u"far"_s, 01777);
    const QString problem = pluginFolderProblem(u"./plugins"_s);
    QVERIFY2(problem.contains(u"everybody can write to "_s + path(u"far"_s)), qPrintable(problem));
}

void TestPluginFolder::links_in_a_circle_end()
{
    makeFolder(u"place/plugins/a"_s);
    makeLink(u"../a"_s, u"place/plugins/a/again"_s);
    makeLink(u".."_s, u"place/plugins/a/up"_s);
    QCOMPARE(pluginFolderProblem(u"./plugins"_s), QString());
    makeLink(u"two"_s, u"place/plugins/one"_s);
    makeLink(u"one"_s, u"place/plugins/two"_s);
    const QString problem = pluginFolderProblem(u"./plugins"_s);
    QVERIFY2(problem.contains(u"cannot be followed"), qPrintable(problem));
}

void TestPluginFolder::a_huge_folder_is_left_out()
{
    makeFolder(u"place/plugins"_s);
    for (int i = 0; i < 5000; i++)
        makeFile(u"place/plugins/%1"_s.arg(i));
    const QString problem = pluginFolderProblem(u"./plugins"_s);
    QVERIFY2(problem.contains(u"more than 4096 files"), qPrintable(problem));
    // A folder just within the bound is judged whole.
    for (int i = 4000; i < 5000; i++)
        QVERIFY(QFile::remove(path(u"place/plugins/%1"_s.arg(i))));
    QCOMPARE(pluginFolderProblem(u"./plugins"_s), QString());
    setMode(u"place/plugins/3999"_s, 0666);
    QVERIFY(pluginFolderProblem(u"./plugins"_s).contains(path(u"place/plugins/3999"_s)));
}

void TestPluginFolder::many_small_folders_are_left_out_like_a_huge_one()
{
    constexpr int Files = 99;
    QString folder = u"place/plugins"_s;
    for (int deep = 0; deep < 40; ++deep) {
        makeFolder(folder);
        for (int i = 0; i < Files; ++i)
            makeFile(folder + u"/%1"_s.arg(i));
        folder += u"/d"_s;
    }
    // 4000 of 4096.
    QCOMPARE(pluginFolderProblem(u"./plugins"_s), QString());
    makeFolder(folder);
    for (int i = 0; i < Files; ++i)
        makeFile(folder + u"/%1"_s.arg(i));
    const QString problem = pluginFolderProblem(u"./plugins"_s);
    QVERIFY2(problem.contains(u"more than 4096 files"), qPrintable(problem));
}

void TestPluginFolder::a_folder_that_cannot_be_looked_into_is_left_out()
{
    if (geteuid() != 0)
        QFAIL("needs root, to become a user that may not look into a folder");
    makeFolder(u"place/plugins/secret"_s);
    makeFile(u"place/plugins/secret/x.so"_s);
    setMode(u"place/plugins/secret"_s, 0744); // its names only
    QCOMPARE(chmod(base->path().toLocal8Bit().constData(), 0755), 0);
    QCOMPARE(seteuid(Stranger), 0);
    const QString problem = pluginFolderProblem(u"./plugins"_s);
    QCOMPARE(seteuid(0), 0);
    QVERIFY2(problem.contains(path(u"place/plugins/secret/x.so"_s) +
                              u" cannot be read (Permission denied)"_s),
             qPrintable(problem));
}

void TestPluginFolder::a_folder_that_cannot_be_reached_is_left_out()
{
    if (geteuid() != 0)
        QFAIL("needs root, to become a user that may not come here");
    makeFolder(u"place/plugins"_s);
    QCOMPARE(chmod(base->path().toLocal8Bit().constData(), 0700), 0);
    QCOMPARE(seteuid(Stranger), 0);
    const QString problem = pluginFolderProblem(u"./plugins"_s);
    QCOMPARE(seteuid(0), 0);
    QVERIFY2(problem.contains(path(u"place"_s) + u" cannot be read (Permission denied)"_s),
             qPrintable(problem));
}

void TestPluginFolder::a_folder_that_cannot_be_listed_is_left_out()
{
    if (geteuid() != 0)
        QFAIL("needs root, to become a user that may not list a folder");
    makeFolder(u"place/plugins/secret"_s);
    setMode(u"place/plugins/secret"_s, 0700);
    QCOMPARE(chmod(base->path().toLocal8Bit().constData(), 0755), 0);
    QCOMPARE(pluginFolderProblem(u"./plugins"_s), QString());
    QCOMPARE(seteuid(Stranger), 0);
    const QString problem = pluginFolderProblem(u"./plugins"_s);
    QCOMPARE(seteuid(0), 0);
    QVERIFY2(problem.contains(path(u"place/plugins/secret"_s) + u" cannot be read"_s),
             qPrintable(problem));
}

void TestPluginFolder::a_file_name_cannot_steer_the_terminal()
{
    makeFolder(u"place/plugins"_s);
    makeFile(u"place/plugins/\x1b[2Jx\n.so"_s);
    setMode(u"place/plugins/\x1b[2Jx\n.so"_s, 0666);
    const QString problem = pluginFolderProblem(u"./plugins"_s);
    QVERIFY2(problem.contains(u"/plugins/?[2Jx?.so"), qPrintable(problem));
    QVERIFY(!problem.contains(u'\x1b'));
    QVERIFY(!problem.contains(u'\n'));
}

void TestPluginFolder::what_is_added_outlives_the_start_of_the_application()
{
    makeFolder(u"place/plugins"_s);
    QVERIFY(!QCoreApplication::libraryPaths().contains(path(u"place/plugins"_s)));
    addPluginFolder();
    QVERIFY(QCoreApplication::libraryPaths().contains(path(u"place/plugins"_s)));
    int argc = 1;
    QByteArray name = "tst_pluginfolder"_ba;
    char *argv[] = {name.data(), nullptr};
    const QCoreApplication app(argc, argv);
    QVERIFY(QCoreApplication::libraryPaths().contains(path(u"place/plugins"_s)));
    QCoreApplication::removeLibraryPath(path(u"place/plugins"_s));
}

void TestPluginFolder::what_is_left_out_is_not_added()
{
    makeFolder(u"place/plugins"_s);
    setMode(u"place/plugins"_s, 0777);
    const QStringList before = QCoreApplication::libraryPaths();
    addPluginFolder();
    QCOMPARE(QCoreApplication::libraryPaths(), before);
    // What is not there yet is not added either, and says nothing.
    QVERIFY(QDir().rmdir(path(u"place/plugins"_s)));
    addPluginFolder();
    QCOMPARE(QCoreApplication::libraryPaths(), before);
}

// Plug-in folders are judged before there is an application, so this test runs without one.
int main(int argc, char **argv)
{
    TestPluginFolder test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_pluginfolder.moc"
