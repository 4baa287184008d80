// SPDX-License-Identifier: MIT
// The panel's lines of the print dialog's summary.
#include "plugin/VirtualMailboxPdeInterface.h"

#include "panel/NumberValue.h"
#include "text/PasswordProtection.h"
#include "text/PrinterLanguageEncoding.h"

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

QString printTypeLabelKey(const QVariant &printType)
{
    if (numberEquals(printType, 4))
        return QStringLiteral("Job Type Secure");
    if (numberEquals(printType, 2))
        return QStringLiteral("Job Type Sample");
    if (numberEquals(printType, 1))
        return QStringLiteral("Job Type Secure");
    if (numberEquals(printType, 3))
        return QStringLiteral("Job Type Public");
    return QStringLiteral("Job Type None");
}

} // namespace

std::optional<pde::SummaryInfo> VirtualMailboxPdeInterface::summaryInfo()
{
    pde::SummaryInfo summary;
    QStringList order;
    const auto addLine = [&](const QString &titleKey, const QString &value) {
        const QString title = localized(titleKey);
        summary.insert(title, value);
        order.append(title);
    };

    addLine(QStringLiteral("Job Type Title"), localized(printTypeLabelKey(printType())));
    if (!numberEquals(printType(), 0)) {
        if (userName() && !userName()->isEmpty())
            addLine(QStringLiteral("User ID Title"), *userName());

        if ((numberEquals(printType(), 4) || numberEquals(printType(), 1)) && password()
            && !password()->isEmpty()) {
            // The encoding the controller protected it with.
            const StringEncoding encoding = ppd() != nullptr ? GetEncodingInfoFromPPD(ppd()) : StringEncoding::UTF8;
            std::optional<QString> clear = CreateDecryptedString(password(), encoding);
            if (clear) {
                addLine(QStringLiteral("Password Title"), QString(clear->size(), u'*'));
                clear->fill(QChar(0));
            }
        }

        if (numberEquals(documentNameType(), 1)) {
            addLine(QStringLiteral("Document Type Title"), localized(QStringLiteral("Document Name Type Enter Name")));
            if (documentName() && !documentName()->isEmpty())
                addLine(QStringLiteral("Document Name Title"), *documentName());
        } else {
            addLine(QStringLiteral("Document Type Title"), localized(QStringLiteral("Document Name Type Auto")));
        }
    }
    summary.insert(QString(pde::kSummaryDisplayOrderKey), order);
    return summary;
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
