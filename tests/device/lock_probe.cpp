// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/advice.h"
#include "device/linux_hid_adapter.h"
#include "device/posix_qextserialport.h"
#include "tests/support/filenode.h"

#include <QCoreApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

// lock_probe usb FILE: uses a frame whose node is that file.
// lock_probe serial NODE: uses a serial port.
//
// Says "outcome: uses it", or why it does not, and goes on until its standard input ends.
int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    if (argc != 3)
        return 2;
    const QString path = QString::fromLocal8Bit(argv[2]);
    FileNode io(argv[2]);
    HID_AdpterPacket::OP_HID_Adapter adapter(io);
    Posix_QextSerialPort port(path, {});
    QString outcome = u"uses it"_s;
    if (argv[1] == QByteArray("usb")) {
        adapter.DoFindDev({}, true);
        if (!adapter.IsDevOpened())
            outcome = Advice::frameInUse(path, adapter.LastProblem().user).evidence;
    } else if (!port.open(QIODevice::ReadWrite)) {
        outcome = port.errorString();
    }
    std::printf("outcome: %s\n", qPrintable(outcome));
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    return 0;
}
