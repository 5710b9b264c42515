// SPDX-License-Identifier: GPL-3.0-or-later

#include "bundle/scrubber.h"
#include "tests/support/madeupmachine.h"

#include <QTest>

using namespace Qt::StringLiterals;
using bundle::Scrubber;

namespace {

// A machine with names of persons in every place that knows some.
struct Planted
{
    Planted()
    {
        machine.write(u"/etc/passwd"_s, "root:x:0:0:root:/root:/bin/bash\n"
                                        "daemon:x:1:1:daemon:/usr/sbin:/usr/sbin/nologin\n"
                                        "nobody:x:65534:65534:nobody:/nonexistent:/bin/false\n"
                                        "anna:x:1000:1000:Anna Maria Muster,,,:/home/anna:/bin/sh\n"
                                        "bob:x:1001:1001::/srv/people/bob:/bin/sh\n");
        machine.write(u"/etc/group"_s, "root:x:0:\nplugdev:x:46:anna\nanna:x:1000:\n"
                                       "frontdesk:x:1002:anna,bob\n");
        machine.write(u"/etc/hostname"_s, "lobby-7.example.org\n");
        machine.write(u"/etc/machine-id"_s, "0123456789abcdef0123456789abcdef\n");
        machine.who.name = u"somebody"_s;
        machine.variables.insert(u"HOME"_s, u"/mnt/homes/somebody"_s);
        machine.variables.insert(u"SUDO_USER"_s, u"carla"_s);
    }

    MadeUpMachine machine;
};

} // namespace

class TestScrubber : public QObject
{
    Q_OBJECT

private slots:
    void names_of_persons_and_machines_go_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("cleaned");
        const auto row = [](const char *name, const QString &text, const QString &cleaned) {
            QTest::newRow(name) << text << cleaned;
        };
        row("account", u"owner anna, group plugdev"_s, u"owner <user>, group plugdev"_s);
        row("home", u"/home/anna/.config/ForQuorvel"_s, u"<home>/.config/ForQuorvel"_s);
        row("home elsewhere", u"/srv/people/bob/x"_s, u"<home>/x"_s);
        row("home of the session", u"/mnt/homes/somebody/x"_s, u"<home>/x"_s);
        row("letter case", u"ANNA and Anna"_s, u"<user> and <user>"_s);
        row("full name", u"by Anna Maria Muster."_s, u"by <user>."_s);
        row("in other words", u"backup_anna-2 anna.txt"_s, u"backup_<user>-2 <user>.txt"_s);
        row("a part of a word", u"annals, hannah, anna2"_s, u"annals, hannah, anna2"_s);
        row("this user", u"somebody"_s, u"<user>"_s);
        row("who became root", u"carla"_s, u"<user>"_s);
        row("group", u"group frontdesk"_s, u"group <group>"_s);
        row("machine", u"lobby-7.example.org lobby-7"_s, u"<machine> <machine>"_s);
        row("what the machine calls itself", u"made-up-machine:0"_s, u"<machine>:0"_s);
        row("its number", u"id 0123456789abcdef0123456789abcdef"_s, u"id <machine>"_s);
        row("several", u"anna@lobby-7:/home/anna"_s, u"<user>@<machine>:<home>"_s);
    }
    void names_of_persons_and_machines_go()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, cleaned);
        const Planted planted;
        QCOMPARE(Scrubber(planted.machine).clean(text), cleaned);
    }

    void names_of_the_system_stay()
    {
        const Planted planted;
        const QString text = u"root daemon nobody plugdev /dev/usb/hiddev0 quorvel"_s;
        QCOMPARE(Scrubber(planted.machine).clean(text), text);
    }

    void a_machine_without_a_name_is_let_alone()
    {
        MadeUpMachine machine;
        machine.write(u"/etc/hostname"_s, "localhost\n");
        QCOMPARE(Scrubber(machine).clean(u"a localhost b"_s), u"a localhost b"_s);
    }

    void a_name_may_hold_any_character()
    {
        MadeUpMachine machine;
        machine.who.name = u"j.ü(r*gen"_s;
        QCOMPARE(Scrubber(machine).clean(u"x J.Ü(R*GEN y jxü(r*gen"_s), u"x <user> y jxü(r*gen"_s);
    }
};

QTEST_GUILESS_MAIN(TestScrubber)
#include "tst_scrubber.moc"
