// SPDX-License-Identifier: GPL-3.0-or-later

#include "versions.h"

#include "program.h"
#include "questions.h"
#include "session.h"
#include "usbnodes.h"
#include "words.h"

#include <CLI/CLI.hpp>

using namespace Qt::StringLiterals;

namespace ctl {

namespace {

void versions(Session &session)
{
    session.connectFrame();
    const auto firmware = firmwareOf(session);
    QStringList lines;
    QJsonObject members{{u"generation"_s, firmware ? u"current"_s : u"older"_s},
                        {u"usb"_s, QJsonValue::Null},
                        {u"firmware"_s, QJsonValue::Null}};
    if (!session.isSerial()) {
        const QString version = releaseText(hidver.VersionNumber);
        const QString vendor = hex(hidver.VendorID, 4);
        const QString product = hex(hidver.ProductID, 4);
        lines += Words::tr("Device version: %1").arg(version);
        lines += Words::tr("Hardware: %1 - %2").arg(vendor, product);
        members[u"usb"_s] =
            QJsonObject{{u"version"_s, version}, {u"vendor"_s, vendor}, {u"product"_s, product}};
    }
    if (firmware) {
        const QString checksum = hex(firmware->checksum, 8);
        const QString revision = hex(firmware->revision, 6);
        const QString family = hex(firmware->family, 2);
        const QString date = hex(firmware->date, 4);
        const QString number = hex(firmware->number, 5);
        lines += Words::tr("Firmware: checksum %1, revision %2").arg(checksum, revision);
        lines += Words::tr("Product: family %1, date %2, number %3").arg(family, date, number);
        members[u"firmware"_s] = QJsonObject{{u"checksum"_s, checksum},
                                             {u"revision"_s, revision},
                                             {u"family"_s, family},
                                             {u"date"_s, date},
                                             {u"number"_s, number}};
    } else {
        lines += Words::tr("Firmware: a frame of the older generation does not tell.");
    }
    session.answer(lines, members);
}

} // namespace

void addVersions(CLI::App &app, Session &session)
{
    CLI::App *command =
        app.add_subcommand("versions", "Show what the frame is, and what firmware runs in it");
    define(*command, session, [&session] { versions(session); });
}

} // namespace ctl
