// SPDX-License-Identifier: MIT
// Encoding job options into IPP requests.
#include "host/JobAttributes.h"

#include "host/IppRequest.h"

#include <cstring>

namespace pdehost {

bool isExtensionKey(const QString &name)
{
    return name.contains(u'.');
}

void addJobOptions(ipp_t *request, int count, cups_option_t *options)
{
    int encoded = 0;
    cups_option_t *standard = nullptr;
    for (int i = 0; i < count; ++i) {
        const char *name = options[i].name;
        const char *value = options[i].value != nullptr ? options[i].value : "";
        if (!isExtensionKey(QString::fromUtf8(name))) {
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

bool setJobOptions(SchedulerConnection &scheduler, int id, const Options &entries, QString *error)
{
    if (entries.isEmpty())
        return true;
    pde::PrintSettings settings;
    for (const auto &[key, value] : entries)
        settings.setValue(key, value);
    const pde::CupsOptions options = settings.toCupsOptions();
    Ipp request = newIppRequest(IPP_OP_SET_JOB_ATTRIBUTES, {}, id);
    addJobOptions(request.get(), options.count(), options.data());
    return sendIppRequest(scheduler, std::move(request), "/jobs/", error) != nullptr;
}

} // namespace pdehost
