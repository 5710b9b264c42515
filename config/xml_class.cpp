// SPDX-License-Identifier: GPL-3.0-or-later

#include "xml_class.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

// The highest threshold: not even warnings come without being asked for.
Q_LOGGING_CATEGORY(lcSettings, "quorvel.settings", QtFatalMsg)

namespace {

QString &otherHome()
{
    static QString directory;
    return directory;
}

void logProblem(const char *what, const QFile &file)
{
    qCWarning(lcSettings).noquote()
        << u"cannot %1 %2: %3"_s.arg(QLatin1StringView(what), file.fileName(), file.errorString());
}

bool open(QFile &file, QIODevice::OpenMode mode)
{
    const char *what = mode & QIODevice::ReadOnly ? "read" : "write";
    const QFileInfo there(file.fileName());
    if (there.exists() && !there.isFile()) {
        // A pipe would be waited for.
        qCWarning(lcSettings).noquote()
            << u"cannot %1 %2: it is not a file"_s.arg(QLatin1StringView(what), file.fileName());
        return false;
    }
    const bool opened = file.open(mode | QIODevice::Text);
    if (!opened)
        logProblem(what, file);
    return opened;
}

} // namespace

void XML_CLASS::useHome(const QString &directory)
{
    otherHome() = directory;
}

QString XML_CLASS::filePath()
{
    return (otherHome().isEmpty() ? QDir::homePath() : otherHome()) + "/.config/ForQuorvel"_L1;
}

void XML_CLASS::set_XmlData_default()
{
    XmlData.EasySettingData = {.Environment = u"Indoor"_s, .Use = u"Write"_s};
    XmlData.SettingData = {.all_en = 1,
                           .rb_en = 1,
                           .rb_duration = 1500,
                           .rb_ran = 3,
                           .db_speed = 600,
                           .db_ran = 30,
                           .wheel_en = 1,
                           .wheel_sen = 2};
    XmlData.SmoothingData = {.smo_en = 1, .smo_lv = 5};
    XmlData.ConnectData = {.connect = 1,
                           .TUIO_en = 0,
                           .OS_en = 1,
                           .uartport = u"COM1"_s,
                           .uartsetting = PortSettings()};
}

void XML_CLASS::write_easysetting(const _EASYSETTING_DATA &data)
{
    readFile();
    XmlData.EasySettingData = data;
    writeFile();
}

void XML_CLASS::write_setting(const _SETTING_DATA &data)
{
    readFile();
    XmlData.SettingData = data;
    writeFile();
}

void XML_CLASS::write_smoothing(const _SMOOTHING_DATA &data)
{
    readFile();
    XmlData.SmoothingData = data;
    writeFile();
}

void XML_CLASS::write_connect(const _CONNECT_DATA &data)
{
    readFile();
    XmlData.ConnectData = data;
    writeFile();
}

_EASYSETTING_DATA XML_CLASS::read_easysetting()
{
    readFile();
    EasysettingData = XmlData.EasySettingData;
    return EasysettingData;
}

_SETTING_DATA XML_CLASS::read_setting()
{
    readFile();
    SettingData = XmlData.SettingData;
    return SettingData;
}

_SMOOTHING_DATA XML_CLASS::read_smoothing()
{
    readFile();
    SmoothingData = XmlData.SmoothingData;
    return SmoothingData;
}

_CONNECT_DATA XML_CLASS::read_connect()
{
    readFile();
    ConnectData = XmlData.ConnectData;
    return ConnectData;
}

// Reads the whole file, which is made with the defaults if it cannot be read.
void XML_CLASS::readFile()
{
    QFile file(filePath());
    if (!open(file, QIODevice::ReadOnly)) {
        set_XmlData_default();
        writeTo(file);
        open(file, QIODevice::ReadOnly);
    }
    XmlData = xmlReader.read(&file);
}

void XML_CLASS::writeFile()
{
    QFile file(filePath());
    writeTo(file);
}

void XML_CLASS::writeTo(QFile &file)
{
    if (!open(file, QIODevice::WriteOnly | QIODevice::Unbuffered))
        return;
    // Qt's writer and a buffered file both forget why a device takes only a part.
    QBuffer document;
    document.open(QIODevice::WriteOnly);
    xmlWriter.write(&document, XmlData);
    const QByteArray all = document.data();
    for (qint64 done = 0; done < all.size();) {
        const qint64 more = file.write(all.constData() + done, all.size() - done);
        if (more <= 0) {
            logProblem("write all of", file);
            break;
        }
        done += more;
    }
    file.close();
}
