// SPDX-License-Identifier: GPL-3.0-or-later

#include "capture/recorder.h"
#include "device/portsettings.h"
#include "device/serialframing.h"
#include "figure.h"
#include "tests/support/fakeadapter.h"
#include "tests/support/farend.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

using Seconds = std::chrono::duration<double>;

constexpr int Rounds = 20;
constexpr int FramesARound = 20'000;
constexpr double BarPercent = 1;

// A reader's cycle and a writer's, one after the other without a pause.
constexpr double UsbFrames = 1 / 0.067 + 1 / 0.051;
constexpr double BitsAByte = 10; // on the line, with start and stop bit

// Empty frames in both directions at the fastest rate of the list.
double serialFrames()
{
    return 2 * bitsPerSecond(BAUD256000) / BitsAByte / command::serial::wireLength(0);
}

[[noreturn]] void giveUp(const QString &sentence)
{
    std::fprintf(stderr, "%s\n", qPrintable(sentence));
    std::_Exit(EXIT_FAILURE);
}

} // namespace

// measure_record: what of a processor a recording takes when the link carries all it can. Prints
// lines of the table; the exit code is 0 when the bars hold.
int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    const QTemporaryDir place;
    const auto adapter = std::make_shared<FakeAdapter>();
    adapter->present = false;
    Link link(adapter);
    capture::Recorder recorder(link);
    if (const QString problem = recorder.start(place.filePath(u"traffic.pcap"_s));
        !problem.isEmpty())
        giveUp(problem);

    std::vector<double> usb;
    std::vector<double> serial;
    Traffic traffic{.direction = Traffic::Direction::FromFrame,
                    .over = Traffic::Over::Usb,
                    .result = Traffic::Result::Done,
                    .frame = {}};
    for (int round = 0; round < Rounds; ++round) {
        const auto begin = processorTime();
        for (int i = 0; i < FramesARound; ++i) {
            traffic.frame[5] = UCHAR(i & 0xFF);
            emit link.traffic(traffic);
        }
        const double each = Seconds(processorTime() - begin).count() / FramesARound;
        usb.push_back(each * UsbFrames * 100);
        serial.push_back(each * serialFrames() * 100);
    }
    if (recorder.lost() > 0 || recorder.written() != quint64(Rounds) * FramesARound)
        giveUp(u"not every frame was recorded: "_s + recorder.problem());
    const bool byUsb = print(
        {"recording, % of a core, USB at its fastest", BarPercent, Figure::HeldBy::Median, usb});
    const bool onLine = print({"recording, % of a core, empty frames at 256000 baud", BarPercent,
                               Figure::HeldBy::Median, serial});
    return byUsb && onLine ? 0 : 1;
}
