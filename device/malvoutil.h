// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "struct.h"

namespace MALVOUTIL {

// Bytes of frames.
class Buf_util
{
public:
    static void CleanBuf(UCHAR *buf, int length);
    // The source comes first.
    static void CopyBuf(const UCHAR *source, UCHAR *destination, int length);
};

} // namespace MALVOUTIL
