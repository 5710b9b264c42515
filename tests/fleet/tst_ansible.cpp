// SPDX-License-Identifier: GPL-3.0-or-later

// The role as it is installed, played against this machine and a simulated frame. Nothing outside a
// temporary folder changes.

#include "programs.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// The number behind a word of the recap, the line that ends a play.
int counted(const Ended &play, const QString &word)
{
    const QRegularExpression recap(u"PLAY RECAP.*\\n.*\\b"_s + word + u"=(\\d+)"_s);
    const auto match = recap.match(QString::fromUtf8(play.out));
    return match.hasMatch() ? match.captured(1).toInt() : -1;
}

// What was made of a task: "ok", "changed", "fatal" and so on; empty when it was not reached.
QString outcomeOf(const Ended &play, const QString &task)
{
    const QRegularExpression line(u"TASK \\[quorvel : %1\\].*?^(\\w+): \\[localhost\\]"_s.arg(task),
                                  QRegularExpression::MultilineOption |
                                      QRegularExpression::DotMatchesEverythingOption);
    return line.match(QString::fromUtf8(play.out)).captured(1);
}

const QString GesturesTask = u"Set the gestures"_s;
const QString RotationTask = u"Turn the frame"_s;

} // namespace

class TestAnsible : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir place;
    Server frame;

    QString at(const QString &path) const { return place.filePath(path); }
    bool startFrame(Server &server, const QString &link, const QStringList &more = {})
    {
        return server.start(QStringLiteral(QUORVEL_SIM_PROGRAM),
                            QStringList{u"serial"_s, u"--link"_s, at(link)} + more) &&
               QTest::qWaitFor([&] { return QFile::exists(at(link)); }, PatienceMs);
    }
    // The value of a word of the line that the frame tells its state with.
    QString ofFrame(const QString &name)
    {
        frame.process.readAllStandardOutput();
        frame.process.write("state\n");
        QString said;
        const bool told = QTest::qWaitFor(
            [&] {
                said += QString::fromUtf8(frame.process.readAllStandardOutput());
                return said.contains(QRegularExpression(u"ok state[^\\n]*\\n"_s));
            },
            PatienceMs);
        return told ? said.section(u"ok state"_s, 1)
                          .section(u' ' + name + u'=', 1)
                          .section(u' ', 0, 0)
                          .trimmed()
                    : QString();
    }
    Ended quorvelctl(const QString &words)
    {
        return run(QStringLiteral(QUORVELCTL_PROGRAM),
                   words.split(u' ') + QStringList{u"--port"_s, at(u"frame"_s)});
    }
    Ended play(const QJsonObject &more = {}, const QStringList &options = {},
               const QString &book = u"play.yml"_s)
    {
        QJsonObject variables{
            {u"quorvel_source"_s, u"none"_s},
            {u"quorvel_live"_s, false},
            {u"quorvel_root"_s, at(u"root"_s)},
            {u"quorvel_command"_s, QStringLiteral(QUORVELCTL_PROGRAM)},
            {u"quorvel_port"_s, at(u"frame"_s)},
            {u"quorvel_rotation"_s, 90},
            {u"quorvel_gestures"_s, QJsonObject{{u"hold_ms"_s, 2000}, {u"wheel"_s, false}}},
        };
        for (auto one = more.begin(); one != more.end(); ++one)
            variables[one.key()] = one.value();
        return run(u"ansible-playbook"_s,
                   QStringList{u"-i"_s, u"localhost,"_s, at(book), u"-e"_s,
                               QString::fromUtf8(QJsonDocument(variables).toJson())} +
                       options);
    }
    // Only what concerns the frame.
    Ended playFrame(const QJsonObject &more = {}, const QStringList &options = {})
    {
        return play(more, options, u"frame.yml"_s);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(QDir(place.path()).mkpath(u"home/.config"_s));
        qputenv("HOME", QFile::encodeName(at(u"home"_s)));
        qunsetenv("XDG_CONFIG_HOME");
        qputenv("ANSIBLE_ROLES_PATH", QFile::encodeName(at(u"usr/share/ansible/roles"_s)));
        qputenv("ANSIBLE_NOCOLOR", "1");
        qputenv("ANSIBLE_NOCOWS", "1");
        const Ended installed =
            run(u"cmake"_s, {u"--install"_s, QStringLiteral(QUORVEL_BUILD), u"--component"_s,
                             u"ansible"_s, u"--prefix"_s, at(u"usr"_s)});
        QVERIFY2(installed.code == 0, installed.err);
        const QByteArray head = "- hosts: localhost\n"
                                "  connection: local\n"
                                "  gather_facts: false\n";
        for (const auto &[name, tasks] :
             {std::pair(u"play.yml"_s, QByteArray("  roles: [quorvel]\n")),
              std::pair(u"frame.yml"_s,
                        QByteArray("  tasks:\n"
                                   "    - include_role: {name: quorvel, tasks_from: frame}\n"
                                   "    - debug: {var: quorvel_frame}\n"))}) {
            QFile book(at(name));
            QVERIFY(book.open(QIODevice::WriteOnly));
            book.write(head + tasks);
        }
        QVERIFY(startFrame(frame, u"frame"_s));
    }

    void the_first_play_changes_and_the_second_does_not()
    {
        const Ended first = play();
        QVERIFY2(first.code == 0, first.out + first.err);
        QCOMPARE(outcomeOf(first, GesturesTask), u"changed"_s);
        QCOMPARE(outcomeOf(first, RotationTask), u"changed"_s);
        QCOMPARE(ofFrame(u"rotation"_s), u"1"_s);
        QVERIFY(ofFrame(u"gestures"_s).startsWith(u"1,1,2000,3,0"_s));
        QVERIFY(contentOf(at(u"root/etc/udev/rules.d/70-quorvel.rules"_s)).contains("plugdev"));
        QVERIFY(contentOf(at(u"root/etc/systemd/system/quorvel-metrics.service"_s))
                    .contains("User=quorvel-metrics"));
        QVERIFY(QFile::exists(at(u"root/etc/systemd/system/quorvel-metrics.timer"_s)));
        QVERIFY(QFile::exists(at(u"root/etc/sysusers.d/quorvel-metrics.conf"_s)));
        QVERIFY(QFile::exists(at(u"root/etc/tmpfiles.d/quorvel-metrics.conf"_s)));
        QVERIFY(contentOf(at(u"root/etc/default/quorvel-metrics"_s))
                    .contains("QUORVEL_METRICS_OPTIONS=\"--port " +
                              QFile::encodeName(at(u"frame"_s)) + "\"\n"));

        const Ended second = play();
        QVERIFY2(second.code == 0, second.out + second.err);
        QCOMPARE(counted(second, u"changed"_s), 0);
        QCOMPARE(outcomeOf(second, GesturesTask), u"ok"_s);
        QCOMPARE(outcomeOf(second, RotationTask), u"ok"_s);
    }

    void what_differs_is_changed_again_but_not_by_a_check()
    {
        QCOMPARE(quorvelctl(u"rotation set 180"_s).code, 0);
        QCOMPARE(quorvelctl(u"gestures set --hold-time 700 --hold-range 5"_s).code, 0);
        const Ended check = playFrame({}, {u"--check"_s, u"--diff"_s});
        QVERIFY2(check.code == 0, check.out + check.err);
        QCOMPARE(counted(check, u"changed"_s), 2);
        QVERIFY2(check.out.contains("-    \"degrees\": 180\n+    \"degrees\": 90\n"), check.out);
        QVERIFY2(check.out.contains("-    \"hold_ms\": 700,\n+    \"hold_ms\": 2000,\n"),
                 check.out);
        QCOMPARE(ofFrame(u"rotation"_s), u"2"_s);
        QVERIFY(ofFrame(u"gestures"_s).startsWith(u"1,1,700,5,0"_s));

        const Ended real = playFrame();
        QCOMPARE(counted(real, u"changed"_s), 2);
        QCOMPARE(ofFrame(u"rotation"_s), u"1"_s);
        // What was not named stays.
        QVERIFY(ofFrame(u"gestures"_s).startsWith(u"1,1,2000,5,0"_s));
        // The fact.
        QVERIFY2(real.out.contains(R"("revision": "003812")"), real.out);
    }

    void a_frame_that_does_not_answer_fails_with_the_sentence()
    {
        QFile plan(at(u"plan"_s));
        QVERIFY(plan.open(QIODevice::WriteOnly));
        plan.write("at 1 silent 1000000\n");
        plan.close();
        Server silent;
        QVERIFY(startFrame(silent, u"silent"_s, {u"--faults"_s, plan.fileName()}));
        const Ended failed =
            playFrame({{u"quorvel_port"_s, at(u"silent"_s)},
                       {u"quorvel_timeout"_s, 0.4},
                       {u"quorvel_gestures"_s, QJsonObject{{u"finger"_s, false}}}});
        QCOMPARE(failed.code, 2);
        QCOMPARE(outcomeOf(failed, GesturesTask), u"fatal"_s);
        for (const char *words : {"The touch frame did not answer within 0.4 s.",
                                  R"("cause": "no-answer")", R"("rc": 6)", R"("unconfirmed": )"})
            QVERIFY2(failed.out.contains(words), failed.out);
    }

    void a_frame_that_is_not_there_is_told_of_where_nothing_is_to_change()
    {
        const Ended told =
            playFrame({{u"quorvel_port"_s, at(u"nothing"_s)}, {u"quorvel_rotation"_s, -1}});
        QVERIFY2(told.code == 0, told.out + told.err);
        QCOMPARE(counted(told, u"changed"_s), 0);
        QVERIFY2(told.out.contains(R"("cause": "no-frame")"), told.out);
        QVERIFY2(told.out.contains(R"("answers": false)"), told.out);
    }

    void what_makes_no_sense_is_refused_before_anything_happens()
    {
        const Ended refused = play({{u"quorvel_rotation"_s, 45}});
        QCOMPARE(refused.code, 2);
        QCOMPARE(counted(refused, u"changed"_s), 0);
        QVERIFY2(refused.out.contains("quorvel_rotation"), refused.out);
        QCOMPARE(outcomeOf(refused, RotationTask), QString());
    }
};

QTEST_GUILESS_MAIN(TestAnsible)
#include "tst_ansible.moc"
