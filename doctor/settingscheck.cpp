// SPDX-License-Identifier: GPL-3.0-or-later

#include "settingscheck.h"

#include "config/XML_Reader.h"
#include "config/fields.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace doctor {

namespace {

struct SettingsWords
{
    Q_DECLARE_TR_FUNCTIONS(doctor::Settings)
};

constexpr auto SettingsCheck = "settings"_L1;
// What the file says of the connection.
constexpr int ByUsb = 1;
constexpr int ByUart = 2;

using Cause = Finding::Cause;

// What the forms make of a number that they cannot show.
_SMOOTHING_DATA withinRanges(const _SMOOTHING_DATA &data)
{
    return {.smo_en = data.smo_en != 0, .smo_lv = std::clamp(data.smo_lv, 4, 6)};
}

_CONNECT_DATA withinRanges(_CONNECT_DATA data)
{
    PortSettings &line = data.uartsetting;
    if (data.connect != ByUsb && data.connect != ByUart)
        data.connect = ByUsb;
    if (bitsPerSecond(line.BaudRate) == 0)
        line.BaudRate = PortSettings().BaudRate;
    line.DataBits = std::clamp(line.DataBits, DATA_5, DATA_8);
    line.Parity = std::clamp(line.Parity, PAR_NONE, PAR_SPACE);
    if (line.StopBits != STOP_2)
        line.StopBits = STOP_1; // no port here takes 1.5
    return data;
}

bool mayWrite(const QString &path)
{
    return ::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), W_OK, AT_EACCESS) == 0;
}

// The names of the fields that differ from what is in range.
template <typename Record>
void compare(const Record &said, const Record &good, QStringList &names)
{
    QStringList values;
    element::visitFields(
        said, [&values](QLatin1StringView, const auto &value) { values += u"%1"_s.arg(value); });
    qsizetype next = 0;
    element::visitFields(good, [&](QLatin1StringView name, const auto &value) {
        if (values[next++] != u"%1"_s.arg(value))
            names += name;
    });
}

// Where the document stops being one; empty when it does not.
QString firstMistake(QFile &file)
{
    QXmlStreamReader document(&file);
    while (!document.atEnd())
        document.readNext();
    file.seek(0);
    if (!document.hasError())
        return {};
    return SettingsWords::tr("line %1: %2").arg(document.lineNumber()).arg(document.errorString());
}

} // namespace

Finding checkSettings(const QString &path)
{
    const QFileInfo info(path);
    const QFileInfo folder(info.path());
    if (!info.exists()) {
        if (folder.isDir() && mayWrite(info.path()))
            return Finding::note(SettingsCheck,
                                 {SettingsWords::tr("There is no settings file %1 yet.").arg(path),
                                  SettingsWords::tr("It is made when a window is used; until then "
                                                    "the frame keeps its own gestures.")});
        return Finding::trouble(
            SettingsCheck, Cause::Failed,
            {SettingsWords::tr("There is no settings file %1, and none can be made.").arg(path),
             SettingsWords::tr("Make the folder %1, owned by this user.").arg(info.path())});
    }
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        return Finding::trouble(
            SettingsCheck, Cause::Failed,
            {SettingsWords::tr("The settings file %1 cannot be read.").arg(path),
             SettingsWords::tr("See that it is a file, owned by this user, or move it away.")});
    if (const QString mistake = firstMistake(file); !mistake.isEmpty())
        return Finding::trouble(
            SettingsCheck, Cause::Failed,
            {SettingsWords::tr("The settings file %1 is damaged (%2).").arg(path, mistake),
             SettingsWords::tr("Open each settings window and choose OK, which writes the file "
                               "anew, or move it away.")});

    xml_reader reader;
    const _XML_DATA data = reader.read(&file);
    QStringList missing;
    for (const QLatin1StringView section :
         {element::EasySetting, element::Setting, element::Smoothing, element::Connect})
        if (!reader.gaveWhole(section))
            missing += section;
    if (!missing.isEmpty())
        return Finding::note(
            SettingsCheck,
            {SettingsWords::tr("The settings file %1 is not whole: it lacks values of %2.")
                 .arg(path, missing.join(u", "_s)),
             SettingsWords::tr("Open each settings window and choose OK. Gestures are not sent "
                               "until the file names every one.")});
    QStringList odd;
    compare(data.SettingData, ::withinRanges(data.SettingData), odd);
    compare(data.SmoothingData, withinRanges(data.SmoothingData), odd);
    compare(data.ConnectData, withinRanges(data.ConnectData), odd);
    if (!odd.isEmpty())
        return Finding::note(
            SettingsCheck,
            {SettingsWords::tr("The settings file %1 has values out of range: %2.")
                 .arg(path, odd.join(u", "_s)),
             SettingsWords::tr("Open the windows that show them and choose OK: the nearest that is "
                               "possible counts until then.")});
    if (!mayWrite(path))
        return Finding::note(
            SettingsCheck,
            {SettingsWords::tr("The settings file %1 can be read, but not written.").arg(path),
             SettingsWords::tr("Give it to this user if settings are to be kept.")});
    return Finding::good(SettingsCheck,
                         SettingsWords::tr("The settings file %1 is whole.").arg(path));
}

} // namespace doctor
