// SPDX-License-Identifier: MIT
// The project's only way in to libcups' PPD API.
#pragma once

#include <cups/versioning.h>

// libcups marks its whole PPD API deprecated in favour of IPP Everywhere, yet
// the printers this panel serves are configured through their PPD: the host
// hands us a ppd_file_t and every device capability is an attribute or option
// in it. Every source includes <cups/ppd.h> through this header, which turns
// the deprecation marker of that API into a plain export, so the warning stays
// meaningful for everything else.
#undef _CUPS_DEPRECATED_1_6_MSG
#define _CUPS_DEPRECATED_1_6_MSG(m) _CUPS_PUBLIC
#include <cups/ppd.h>

#include <memory>

// An opened PPD that is closed with its owner.
struct PpdClose {
    void operator()(ppd_file_t *ppd) const { ppdClose(ppd); }
};
using PpdFile = std::unique_ptr<ppd_file_t, PpdClose>;
