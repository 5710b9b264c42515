// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/malvoutil.h"

#include <QTest>

using MALVOUTIL::Buf_util;

class TestMalvoUtil : public QObject
{
    Q_OBJECT

private slots:
    void cleaning_zeroes_the_length_and_no_more()
    {
        UCHAR buf[4] = {1, 2, 3, 4};
        Buf_util::CleanBuf(buf, 3);
        QCOMPARE(QByteArray(reinterpret_cast<char *>(buf), 4), QByteArray::fromHex("00000004"));
    }

    void copying_takes_the_source_first()
    {
        const UCHAR source[3] = {7, 8, 9};
        UCHAR destination[3] = {1, 2, 3};
        Buf_util::CopyBuf(source, destination, 2);
        QCOMPARE(destination[0], UCHAR(7));
        QCOMPARE(destination[1], UCHAR(8));
        QCOMPARE(destination[2], UCHAR(3));
        QCOMPARE(source[0], UCHAR(7));
    }

    void release_0x2FFF_is_an_older_device_and_0x3000_a_current_one()
    {
        QVERIFY(!isCurrentGeneration(0x2FFF));
        QVERIFY(isCurrentGeneration(0x3000));
        QVERIFY(isCurrentGeneration(0x3010));
        QVERIFY(!isCurrentGeneration(0));
    }
};

QTEST_GUILESS_MAIN(TestMalvoUtil)
#include "tst_malvoutil.moc"
