// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/commandline.h"
#include "app/readhotplug.h"
#include "demand.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

void readArguments(const QByteArray &text)
{
    QStringList arguments;
    for (const QByteArray &argument : text.split('\0'))
        arguments.append(QString::fromLocal8Bit(argument));
    const CommandLine asked = CommandLine::parse(arguments);
    demand(asked.hidden == !asked.hiddenBy.isEmpty(), "a hidden start says which argument hid it");
    demand(!asked.problem.contains(u'\n'), "a problem is one line");
    for (const QString &value : {asked.profile, asked.faults, asked.record})
        demand(QString::fromLocal8Bit(text).contains(value), "no value comes from nowhere");
}

void readEvent(const QByteArray &message)
{
    const auto event = ReadHotplugThread::parse(message);
    const bool told = event != ReadHotplugThread::Event::None;
    demand(!told || message.size() >= ReadHotplugThread::MinMessage, "a stub tells nothing");
    demand(!told || message.contains("5156"), "no other vendor's device is told of");
}

} // namespace

// What others give the program before there is a window: by the first byte its arguments, parted by
// NUL bytes, or a message of the kernel.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *input, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(input) + 1, qsizetype(size) - 1);
    if (input[0] == 'a')
        readArguments(bytes);
    else
        readEvent(bytes);
    return 0;
}
