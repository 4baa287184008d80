// SPDX-License-Identifier: MIT
// Fixture PPDs of tests/data opened with libcups, owned, defaults marked as
// a host marks them.
#pragma once

#include "text/CupsPpd.h"

#include <memory>

namespace testsupport {

struct PpdClose {
    void operator()(ppd_file_t *ppd) const { ppdClose(ppd); }
};
using Ppd = std::unique_ptr<ppd_file_t, PpdClose>;

// Opens tests/data/<name> and marks its defaults; null when libcups refuses it.
Ppd openFixturePpd(const char *name);

} // namespace testsupport
