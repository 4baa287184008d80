// SPDX-License-Identifier: MIT
// The six-entry print-settings record: the whole contract with the driver.
#include "plugin/VirtualMailboxPdeInterface.h"

#include "plugin/IntegerValue.h"
#include "pdekit/PrintSettings.h"
#include "text/PrinterLanguageEncoding.h"

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

QString key(const char *suffix)
{
    return kPrintSettingsKeyPrefix + QLatin1StringView(suffix);
}

void write(pde::PrintSettings *settings, const char *suffix, const QString &value)
{
    pde::PMPrintSettingsSetValue(settings, key(suffix), QVariant(value), false);
}

std::optional<QVariant> read(const pde::PrintSettings *settings, const char *suffix)
{
    std::optional<QVariant> value;
    pde::PMPrintSettingsGetValue(settings, key(suffix), &value);
    return value;
}

} // namespace

bool VirtualMailboxPdeInterface::saveValuesAndReturnError(pde::PDEError *)
{
    pde::PrintSettings *settings =
        pdePluginCallbackObject() != nullptr ? pdePluginCallbackObject()->printSettings() : nullptr;
    if (settings == nullptr)
        return false;

    if (m_vmbController) {
        setPrintType(m_vmbController->printType());
        setUserName(m_vmbController->userName());
        setPassword(m_vmbController->password());
        setDocumentNameType(m_vmbController->documentNameType());
        setDocumentName(m_vmbController->documentName());
    }
    if (!validateInputValues())
        return false;

    const StringEncoding encoding = GetEncodingInfoFromPPD(ppd());
    // Validation refused a text that applies and cannot be stored; one that
    // does not apply (its control is disabled) is stored empty rather than
    // leaving an earlier entry in the record.
    const auto storedForm = [encoding](const QString &text) {
        return CanStoreText(text, encoding) ? CopyEncodedString(text, encoding).value_or(QString()) : QString();
    };
    write(settings, "SecureVersion", QStringLiteral("201"));
    write(settings, "PrintType", oneHigher(integerValueOf(printType())));
    // A missing user ID leaves the earlier entry in place...
    if (const std::optional<QString> user = userName())
        write(settings, "PrintTypeUserName", storedForm(*user));
    write(settings, "PrintTypePassword", password().value_or(QString()));
    write(settings, "DocumentNameType", oneHigher(integerValueOf(documentNameType())));
    // ...while a missing document name is stored as the empty one.
    write(settings, "DocumentName", storedForm(documentName().value_or(QString())));
    return true;
}

bool VirtualMailboxPdeInterface::restoreValuesAndReturnError(pde::PDEError *)
{
    const pde::PrintSettings *settings =
        pdePluginCallbackObject() != nullptr ? pdePluginCallbackObject()->printSettings() : nullptr;
    if (settings != nullptr) {
        const StringEncoding encoding = GetEncodingInfoFromPPD(ppd());
        const auto readText = [&](const char *suffix, const std::optional<QString> &current,
                                  const QString &absent) {
            const std::optional<QVariant> stored = read(settings, suffix);
            if (!stored)
                return std::optional<QString>(absent);
            const std::optional<QString> decoded = CopyDecodedString(stored->toString(), encoding);
            return decoded ? decoded : current;
        };

        const std::optional<QVariant> type = read(settings, "PrintType");
        setPrintType(type ? oneLower(integerValueOf(*type)) : 0);
        setUserName(readText("PrintTypeUserName", userName(), defaultUserName()));
        const std::optional<QVariant> protectedPassword = read(settings, "PrintTypePassword");
        setPassword(protectedPassword ? protectedPassword->toString() : QString());
        const std::optional<QVariant> nameType = read(settings, "DocumentNameType");
        setDocumentNameType(nameType ? oneLower(integerValueOf(*nameType)) : 1);
        setDocumentName(readText("DocumentName", documentName(), QString()));
    }
    updateView();
    return true;
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
