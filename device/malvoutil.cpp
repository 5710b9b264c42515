// SPDX-License-Identifier: GPL-3.0-or-later

#include "malvoutil.h"

#include <algorithm>

namespace MALVOUTIL {

void Buf_util::CleanBuf(UCHAR *buf, int length)
{
    std::fill_n(buf, length, UCHAR(0));
}

void Buf_util::CopyBuf(const UCHAR *source, UCHAR *destination, int length)
{
    std::copy_n(source, length, destination);
}

} // namespace MALVOUTIL
