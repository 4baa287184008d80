// SPDX-License-Identifier: MIT
// Job options as job attributes of an IPP request.
#pragma once

#include <cups/cups.h>

namespace pdehost {

// Adds the options to the request's job attributes. IPP attributes and PPD
// options are encoded as libcups encodes them for `lp -o` (their types, a
// comma-separated list of values); a print-settings key of an extension
// (a reverse-DNS name, with a dot) becomes one string value exactly as it
// is, because libcups would read a leading "{" as a collection and split
// the text at commas.
void addJobOptions(ipp_t *request, int count, cups_option_t *options);

} // namespace pdehost
