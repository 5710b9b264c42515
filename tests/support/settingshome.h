// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "config/xml_class.h"
#include "tests/support/files.h"

#include <QDir>
#include <QTemporaryDir>

// A home directory with the settings of this test alone.
class SettingsHome
{
public:
    SettingsHome()
    {
        if (!home.isValid() || !QDir(home.path()).mkdir(QStringLiteral(".config")))
            qFatal("no temporary home directory");
        XML_CLASS::useHome(home.path());
    }
    SettingsHome(const SettingsHome &) = delete;
    SettingsHome &operator=(const SettingsHome &) = delete;
    ~SettingsHome() { XML_CLASS::useHome(QString()); }

    QString folder() const { return home.path(); }
    QString filePath(const QString &name) const { return home.filePath(name); }
    // Of the settings, as is their content.
    QString path() const { return filePath(QStringLiteral(".config/ForQuorvel")); }
    QByteArray content() const { return contentOf(path(), {}); }
    void setContent(const QByteArray &bytes) const { writeFile(path(), bytes); }
    // What one element of the file holds.
    QByteArray element(const QByteArray &name) const
    {
        const QByteArray begin = '<' + name + '>';
        const QByteArray text = content();
        const qsizetype start = text.indexOf(begin);
        const qsizetype end = text.indexOf("</" + name + '>');
        return start < 0 || end < 0 ? QByteArray()
                                    : text.sliced(start, end - start).mid(begin.size());
    }
    // The file as an editor would leave it. The element must be there.
    void edit(const QByteArray &name, const QByteArray &value) const
    {
        const QByteArray old = '<' + name + '>' + element(name) + "</" + name + '>';
        QByteArray text = content();
        if (!text.contains(old))
            qFatal("%s has no element %s", qPrintable(path()), name.constData());
        setContent(text.replace(old, '<' + name + '>' + value + "</" + name + '>'));
    }
    void removeConfigDirectory() const
    {
        if (!QDir(home.filePath(QStringLiteral(".config"))).removeRecursively())
            qFatal("cannot remove the directory .config");
    }
    bool hasConfigDirectory() const
    {
        return QDir(home.filePath(QStringLiteral(".config"))).exists();
    }

private:
    QTemporaryDir home;
};
