// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ziparchive.h"

namespace bundle {

// The bytes of a zip archive. Its implementation is a module, since only support files need
// libarchive and all that it brings along.
class Zip
{
public:
    static constexpr const char *Name = "archive";

    // With the entries in their order; the reason in problem when they cannot be made.
    virtual QByteArray pack(const QList<Entry> &entries, QString *problem) = 0;

protected:
    ~Zip() = default;
};

} // namespace bundle
