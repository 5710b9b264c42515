// SPDX-License-Identifier: GPL-3.0-or-later

// Makes the recordings of this folder anew: the real program and the simulated frame go through
// what sessions.h says. Takes the folder to leave them in; docs/testing.md says how to call it.

#include "sessions.h"

#include <QApplication>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace outside;

namespace {

// Long enough for somebody who looks on when this is replayed.
constexpr int MsBeforeTouch = 1500;
constexpr int MsBeforeFall = 3000;

// Which transfers are spoilt: an answer that comes late, a command with a byte that nobody sent, an
// answer that loses its end, and one that comes twice.
constexpr const char *BadCable = "at 4 late 400ms\n"
                                 "at 8 noise 1\n"
                                 "at 14 lose 3\n"
                                 "at 15 repeat\n";

using Play = std::function<QString(SerialTool &serial)>;

bool record(const QDir &folder, const QString &name, const QStringList &frameArguments,
            const Play &play)
{
    const QString file = folder.filePath(name);
    SerialTool serial;
    QString problem =
        serial.begin(QStringList(u"serial"_s) + frameArguments, {u"--record="_s + file});
    if (problem.isEmpty())
        problem = play(serial);
    if (problem.isEmpty())
        problem = serial.end();
    std::printf("%s: %s\n%s\n", qPrintable(file),
                problem.isEmpty() ? "recorded" : qPrintable(problem),
                serial.frame.output.constData());
    return problem.isEmpty();
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2) {
        std::fprintf(stderr, "make_recordings FOLDER\n");
        return 2;
    }
    const QDir folder(arguments[1]);
    const QTemporaryDir place;
    QFile plan(place.filePath(u"bad-cable.faults"_s));
    if (!plan.open(QIODevice::WriteOnly) || plan.write(BadCable) < 0) {
        std::fprintf(stderr, "%s\n", qPrintable(plan.errorString()));
        return 1;
    }
    plan.close();

    const bool all = record(folder, u"calibration.pcap"_s, {},
                            [](SerialTool &serial) {
                                return sessions::calibrate(serial, [&serial](QPoint at) {
                                    QTest::qWait(MsBeforeTouch);
                                    return serial.frame.does("touch " + QByteArray::number(at.x()) +
                                                             ' ' + QByteArray::number(at.y()));
                                });
                            }) &&
                     record(folder, u"lights.pcap"_s, {}, sessions::adjustLight) &&
                     record(folder, u"bad-cable.pcap"_s, {u"--faults"_s, plan.fileName()},
                            [](SerialTool &serial) {
                                return sessions::turnOnBadCable(serial, [&serial] {
                                    QTest::qWait(MsBeforeFall);
                                    return serial.frame.does("unplug") && serial.frame.does("plug");
                                });
                            });
    return all ? 0 : 1;
}
