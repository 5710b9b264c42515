// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "doctor/machine.h"

#include <QHash>
#include <QRegularExpression>
#include <QString>

namespace bundle {

// Takes the names of persons and machines out of a text: of accounts, their homes, full names and
// groups, and of the machine. Names of the system's own accounts and groups stay, as rights are
// told by them. Letter case does not matter, and a name counts as a whole word only.
class Scrubber
{
public:
    explicit Scrubber(const doctor::Machine &machine);

    QString clean(const QString &text) const;

private:
    void add(const QString &name, const QString &instead);
    void addAccounts(const doctor::Machine &machine);
    void addMachine(const doctor::Machine &machine);

    QHash<QString, QString> names; // in lower case, to what stands for them
    QRegularExpression anyName;
};

} // namespace bundle
