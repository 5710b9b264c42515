// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/devicelock.h"
#include "device/noderights.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace doctor {

// The machine that is examined. Files are looked for below a root, which tests make up; what files
// do not tell is asked of the functions that can be overridden.
class Machine
{
public:
    // An empty root is this machine's.
    explicit Machine(QString root = {});
    Machine(const Machine &) = delete;
    Machine &operator=(const Machine &) = delete;
    virtual ~Machine() = default;

    const QString &root() const { return rootFolder; }
    bool exists(const QString &path) const;
    // A whole file without blanks around it; empty when it cannot be read.
    QString text(const QString &path) const;
    // The names in a folder, sorted; none when there is no such folder.
    QStringList entries(const QString &folder) const;
    // The last name of what a link leads to; empty when it is none.
    QString linkName(const QString &path) const;

    virtual QString kernelRelease() const;
    virtual QString hostName() const;
    // Whether this user may read and write it.
    virtual bool mayOpen(const QString &node) const;
    virtual DeviceUser lockHolder(const QString &node) const;
    virtual QList<DeviceUser> openedBy(const QString &node) const;
    virtual NodeRights::User user() const;
    virtual QProcessEnvironment environment() const;

private:
    QString rootFolder;
};

// A touch frame on USB, as the kernel shows it to everybody.
struct UsbFrame
{
    QString device; // the kernel's name: "1-2"
    quint16 product = 0;
    quint16 release = 0;   // binary coded decimal
    QString interfaceName; // of the first interface: "1-2:1.0"; empty when it has none
    QString driver;        // that uses the interface; empty for none
    QString node;          // path; empty when the kernel made none

    // All that there are, by name.
    static QList<UsbFrame> allOf(const Machine &machine);
};

} // namespace doctor
