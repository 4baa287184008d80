// SPDX-License-Identifier: MIT
// Prefix-matching PPD attribute lookup in file order.
#include "text/PpdAttribute.h"

#include "text/StringConversion.h"

#include <cstring>
#include <span>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

ppd_attr_t *ppdFindAttr_ALT(ppd_file_t *ppd, const char *name) noexcept
{
    if (ppd == nullptr || name == nullptr || *name == '\0' || ppd->num_attrs < 1
        || ppd->attrs == nullptr)
        return nullptr;

    const std::size_t length = std::strlen(name);
    for (int i = 0; i < ppd->num_attrs; ++i) {
        ppd_attr_t *attr = ppd->attrs[i];
        // attr->name is a terminated array, so strncmp stops inside it even
        // when `name` is longer.
        if (attr != nullptr && std::strncmp(attr->name, name, length) == 0)
            return attr;
    }
    return nullptr;
}

std::optional<QString> CopyPPDAttribute(ppd_file_t *ppd, const char *name)
{
    if (ppd == nullptr)
        return std::nullopt;
    const ppd_attr_t *attr = ppdFindAttr_ALT(ppd, name);
    if (attr == nullptr || attr->value == nullptr)
        return std::nullopt;
    const auto *bytes = reinterpret_cast<const unsigned char *>(attr->value);
    return decodeBytes(std::span(bytes, std::strlen(attr->value)), StringEncoding::UTF8);
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
