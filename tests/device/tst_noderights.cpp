// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/noderights.h"
#include "tests/support/files.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <array>
#include <grp.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

// On a machine below a folder of the test's.
class TestNodeRights : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        machine.emplace();
        QVERIFY(machine->isValid());
        put(u"/dev/node"_s, {});
        QCOMPARE(::chmod(qPrintable(machine->path() + u"/dev/node"_s), 0660), 0);
    }

    void without_a_list_of_groups_nobody_is_a_member()
    {
        const NodeRights rights = of({u"anna"_s, {46}});
        QVERIFY(!rights.groupExists);
        QVERIFY(!rights.userIsMember);
        QVERIFY(!rights.sessionIsMember);
        QVERIFY(!rights.ruleIsApplied());
    }

    void nor_where_the_group_is_not_in_the_list()
    {
        put(u"/etc/group"_s, "root:x:0:\nanna:x:46:anna\n");
        const NodeRights rights = of({u"anna"_s, {46}});
        QVERIFY(!rights.groupExists);
        QVERIFY(!rights.userIsMember);
        QVERIFY(!rights.sessionIsMember);
    }

    void a_user_can_be_a_member_and_the_session_not_yet()
    {
        put(u"/etc/group"_s, "plugdev:x:46:bert,anna\nvideo:x:44:carla\n");
        const NodeRights late = of({u"anna"_s, {1000, 44}});
        QVERIFY(late.groupExists && late.userIsMember && !late.sessionIsMember);
        const NodeRights since = of({u"anna"_s, {1000, 46}});
        QVERIFY(since.groupExists && since.userIsMember && since.sessionIsMember);
        const NodeRights other = of({u"carla"_s, {1000, 44}});
        QVERIFY(other.groupExists && !other.userIsMember && !other.sessionIsMember);
        const NodeRights nameless = of({QString(), {46}});
        QVERIFY(nameless.groupExists && !nameless.userIsMember && nameless.sessionIsMember);
    }

    void this_user_has_the_groups_of_the_session()
    {
        if (::geteuid() != 0)
            QFAIL("needs root, to join groups");
        std::vector<gid_t> before(size_t(std::max(0, ::getgroups(0, nullptr))));
        QVERIFY(::getgroups(int(before.size()), before.data()) >= 0);
        const std::array<gid_t, 2> joined = {46, 4711};
        QCOMPARE(::setgroups(joined.size(), joined.data()), 0);
        const NodeRights::User user = NodeRights::User::current();
        QCOMPARE(::setgroups(before.size(), before.data()), 0);
        QCOMPARE(user.name, u"root"_s);
        QCOMPARE(user.groups, QList<gid_t>({::getegid(), 46, 4711}));
    }

    void a_node_has_an_owner_a_group_and_rights()
    {
        struct stat status = {};
        QCOMPARE(::stat(qPrintable(machine->path() + u"/dev/node"_s), &status), 0);
        const QByteArray group = QByteArray::number(status.st_gid);
        QCOMPARE(of({}).group, QString::fromLatin1(group));
        put(u"/etc/group"_s, "other:x:4711:\nplugdev:x:" + group + ":\nlast:x:4712:\n");
        const NodeRights rights = of({});
        QCOMPARE(rights.mode, mode_t(0660));
        QCOMPARE(rights.group, u"plugdev"_s);
        QVERIFY(rights.groupMay() && rights.ruleIsApplied() && !rights.isRootsAlone());
        QCOMPARE(::chmod(qPrintable(machine->path() + u"/dev/node"_s), 0640), 0);
        QVERIFY(!of({}).groupMay() && !of({}).ruleIsApplied());
    }

    void a_node_that_is_not_there_has_none()
    {
        put(u"/etc/group"_s, "root:x:0:\nplugdev:x:46:\n");
        const NodeRights rights = NodeRights::of(u"/dev/none"_s, machine->path(), {});
        QCOMPARE(rights.owner, QString());
        QCOMPARE(rights.group, QString());
        QCOMPARE(rights.mode, mode_t(0));
        QVERIFY(rights.groupExists);
        QVERIFY(!rights.isRootsAlone());
    }

    void the_first_rule_of_its_name_counts()
    {
        QCOMPARE(of({}).rule, QString());
        for (const QString &folder :
             {u"/lib"_s, u"/usr/lib"_s, u"/usr/local/lib"_s, u"/run"_s, u"/etc"_s}) {
            const QString rule = folder + u"/udev/rules.d/70-quorvel.rules"_s;
            put(rule, {});
            QCOMPARE(of({}).rule, rule);
        }
    }

private:
    void put(const QString &path, const QByteArray &content) const
    {
        const QString file = machine->path() + path;
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        writeFile(file, content);
    }
    NodeRights of(const NodeRights::User &user) const
    {
        return NodeRights::of(u"/dev/node"_s, machine->path(), user);
    }

    std::optional<QTemporaryDir> machine;
};

QTEST_GUILESS_MAIN(TestNodeRights)
#include "tst_noderights.moc"
