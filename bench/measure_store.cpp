// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/xml_class.h"
#include "figure.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <chrono>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

using Clock = std::chrono::steady_clock;
using Ms = std::chrono::duration<double, std::milli>;

constexpr int Rounds = 500;
constexpr double BarMs = 1;

[[noreturn]] void giveUp(const char *sentence)
{
    std::fprintf(stderr, "%s\n", sentence);
    std::exit(EXIT_FAILURE);
}

// As many bytes as the settings, without making or understanding them.
void readAndWrite(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        giveUp("the settings file cannot be read");
    const QByteArray bytes = file.readAll();
    file.close();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        giveUp("the settings file cannot be written");
}

} // namespace

// measure_store: what a dialog costs when it shows its settings and when it applies them. Prints
// lines of the table; the exit code is 0 when the bar holds.
int main()
{
    const QTemporaryDir home;
    if (!home.isValid() || !QDir(home.path()).mkdir(u".config"_s))
        giveUp("no directory for the settings can be made");
    XML_CLASS::useHome(home.path());
    XML_CLASS store;
    _SMOOTHING_DATA data = store.read_smoothing();
    if (data.smo_lv != 5)
        giveUp("the settings file is not made");

    std::vector<double> both;
    std::vector<double> bare;
    for (int i = 0; i < Rounds; ++i) {
        const auto begin = Clock::now();
        data = store.read_smoothing();
        data.smo_lv = i;
        store.write_smoothing(data);
        const auto middle = Clock::now();
        readAndWrite(XML_CLASS::filePath());
        const auto end = Clock::now();
        both.push_back(Ms(middle - begin).count());
        bare.push_back(Ms(end - middle).count());
        if (store.read_smoothing().smo_lv != i)
            giveUp("the settings were not written");
    }
    const bool holds =
        print({"settings read, then one section written, ms", BarMs, Figure::HeldBy::Median, both});
    return print({"  the same bytes read and written, ms", 0, Figure::HeldBy::Median, bare}) &&
                   holds
               ? 0
               : 1;
}
