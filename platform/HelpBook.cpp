// SPDX-License-Identifier: MIT
// Help book registration and navigation through pdekit's help viewer.
#include "platform/HelpBook.h"

#include "pdekit/Bundle.h"
#include "pdekit/HelpViewer.h"
#include "text/PpdAttribute.h"

#include <algorithm>
#include <cstring>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

const QString kHelpBookNameKey = QStringLiteral("CFBundleHelpBookName");

// The attribute's value as ASCII text; nullopt when the PPD lacks the
// attribute or its value is not ASCII.
std::optional<QString> asciiAttribute(ppd_file_t *ppd, const char *keyword)
{
    const ppd_attr_t *attr = ppdFindAttr_ALT(ppd, keyword);
    if (attr == nullptr || attr->value == nullptr)
        return std::nullopt;
    const char *value = attr->value;
    if (std::any_of(value, value + std::strlen(value), [](char c) { return (c & 0x80) != 0; }))
        return std::nullopt;
    return QString::fromLatin1(value);
}

void openIfString(const QVariant &book, const QString &pagePath, const std::optional<QString> &anchor)
{
    if (book.typeId() == QMetaType::QString)
        pde::HelpViewer::instance().gotoPage(book.toString(), pagePath, anchor);
}

} // namespace

void RegisterHelpBook(const pde::Bundle *bundle)
{
    if (bundle != nullptr)
        pde::HelpViewer::instance().registerHelpBook(bundle->bundleURL());
}

void GotoHelpPage(const pde::Bundle *bundle, const QString &pagePath, const std::optional<QString> &anchor)
{
    if (bundle != nullptr)
        openIfString(bundle->objectForInfoDictionaryKey(kHelpBookNameKey), pagePath, anchor);
}

void GotoHelpPage2_105(ppd_file_t *ppd, const char *keyword, const pde::Bundle *bundle,
                       const QString &pagePath, const std::optional<QString> &anchor)
{
    if (bundle == nullptr)
        return;
    if (ppd != nullptr) {
        if (const std::optional<QString> key = asciiAttribute(ppd, keyword)) {
            const QVariant book = bundle->objectForInfoDictionaryKey(*key);
            if (book.isValid()) {
                openIfString(book, pagePath, anchor);
                return;
            }
        }
    }
    const QVariant name = bundle->objectForInfoDictionaryKey(kHelpBookNameKey);
    if (name.typeId() == QMetaType::QString) {
        const QVariant chained = bundle->objectForInfoDictionaryKey(name.toString());
        if (chained.isValid()) {
            openIfString(chained, pagePath, anchor);
            return;
        }
    }
    openIfString(name, pagePath, anchor);
}

void GotoHelpPage2_106(ppd_file_t *ppd, const char *keyword, const pde::Bundle *bundle,
                       const std::optional<QString> &defaultFolder,
                       const std::optional<QString> &pageName, const std::optional<QString> &anchor)
{
    if (bundle == nullptr || !pageName)
        return;
    const ppd_attr_t *attr = ppd != nullptr ? ppdFindAttr_ALT(ppd, keyword) : nullptr;
    const QString folder = attr != nullptr && attr->value != nullptr
                               ? QString::fromUtf8(attr->value)
                               : defaultFolder.value_or(QStringLiteral("(null)"));
    openIfString(bundle->infoDictionary().value(kHelpBookNameKey), folder + u'/' + *pageName, anchor);
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
