// SPDX-License-Identifier: MIT
// Encoding job options into IPP requests.
#include "host/JobAttributes.h"

#include <cstring>

namespace pdehost {

void addJobOptions(ipp_t *request, int count, cups_option_t *options)
{
    int encoded = 0;
    cups_option_t *standard = nullptr;
    for (int i = 0; i < count; ++i) {
        const char *name = options[i].name;
        const char *value = options[i].value != nullptr ? options[i].value : "";
        if (std::strchr(name, '.') == nullptr) {
            encoded = cupsAddOption(name, value, encoded, &standard);
            continue;
        }
        // A name value holds up to 255 bytes; longer texts go as text.
        ippAddString(request, IPP_TAG_JOB, std::strlen(value) > 255 ? IPP_TAG_TEXT : IPP_TAG_NAME, name, nullptr,
                     value);
    }
    cupsEncodeOptions2(request, encoded, standard, IPP_TAG_JOB);
    cupsFreeOptions(encoded, standard);
}

} // namespace pdehost
