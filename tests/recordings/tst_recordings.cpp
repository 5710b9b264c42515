// SPDX-License-Identifier: GPL-3.0-or-later

// The real program with the device's side of recordings that are kept: it does what it did then.

#include "sessions.h"

#include <QApplication>

using namespace Qt::StringLiterals;
using namespace outside;

class TestRecordings : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SerialTool> serial;

    QString replay(const QString &name)
    {
        serial = std::make_unique<SerialTool>();
        return serial->begin({u"replay"_s, QStringLiteral(RECORDINGS "/") + name});
    }
    // How much of the recording came when it was expected, such as "8/8". What the host sends once
    // more on a busy machine is answered once more.
    QByteArray followed() const
    {
        for (const QByteArray &line : serial->frame.output.split('\n')) {
            if (line.startsWith("ok replay replayed="))
                return line.mid(19).split(' ').first();
        }
        return "nothing";
    }
    bool hasStranger() const { return serial->frame.heard("not in the recording") > 0; }

private slots:
    void cleanup() { serial.reset(); }

    void a_whole_calibration_goes_as_it_went()
    {
        QCOMPARE(replay(u"calibration.pcap"_s), QString());
        QCOMPARE(sessions::calibrate(*serial, [](QPoint) { return true; }), QString());
        QCOMPARE(serial->end(), QString());
        QVERIFY2(followed() == "8/8", serial->frame.output);
        QVERIFY(!hasStranger());
    }

    void a_light_is_read_and_set_as_it_was()
    {
        QCOMPARE(replay(u"lights.pcap"_s), QString());
        QCOMPARE(sessions::adjustLight(*serial), QString());
        QCOMPARE(serial->end(), QString());
        // Readings of that session; the model would have others. Scans go on while the mouse is on
        // its way, so one more or less may come in between, and no count is the same twice.
        QVERIFY(serial->frame.heard("frame > host  light X 47: on, offset 0, agc 48, adc 3453, "
                                    "org 3453") > 0);
        QVERIFY(serial->frame.heard("frame > host  light X 47: on, offset 1, agc 48, adc 3463, "
                                    "org 3447") > 0);
        QVERIFY(!hasStranger());
    }

    void a_bad_cable_spoils_what_it_spoilt()
    {
        QCOMPARE(replay(u"bad-cable.pcap"_s), QString());
        QCOMPARE(sessions::turnOnBadCable(*serial, [] { return true; }), QString());
        QCOMPARE(serial->end(), QString());
        QVERIFY2(followed() == "10/10", serial->frame.output);
        QVERIFY(!hasStranger());
    }
};

QTEST_MAIN(TestRecordings)
#include "tst_recordings.moc"
