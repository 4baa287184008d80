// SPDX-License-Identifier: MIT
// Gating, conversion and derived state of the panel's controls.
#include "panel/VmbController.h"

#include "panel/InputStringChecker.h"
#include "panel/NumberValue.h"
#include "pdekit/Bundle.h"
#include "platform/HelpBook.h"
#include "text/PasswordProtection.h"
#include "text/PrinterLanguageEncoding.h"

#include <QColor>
#include <QGuiApplication>
#include <QPalette>

#include <cstring>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

constexpr std::size_t kUserNameMaxLength = 8;
constexpr std::size_t kPasswordMaxLength = 12;
constexpr std::size_t kDocNameMaxLength = 12;

std::unique_ptr<InputStringChecker> makeFormatter(std::size_t maxLength, const char16_t *ranges)
{
    auto formatter = std::make_unique<InputStringChecker>();
    formatter->setMaxLength(maxLength);
    formatter->setAcceptableCodeRange(ranges);
    return formatter;
}

std::optional<QString> stringOf(const QVariant &value)
{
    if (!value.isValid())
        return std::nullopt;
    return value.toString();
}

QVariant variantOf(const std::optional<QString> &text)
{
    return text ? QVariant(*text) : QVariant();
}

// A caption is grey while its control does not apply, the text colour of
// controls otherwise.
QColor captionColor(const QVariant &applies)
{
    if (numberEquals(applies, 0))
        return QColor(Qt::lightGray);
    return QGuiApplication::palette().color(QPalette::Active, QPalette::WindowText);
}

} // namespace

VmbController::VmbController(QObject *parent) : QObject(parent) {}

VmbController::~VmbController()
{
    QObject::disconnect(m_printTypeObservation);
    QObject::disconnect(m_documentNameTypeObservation);
    setBundle(nullptr);
}

void VmbController::restoreDefaults()
{
    setPrintType(0);
    setUserName(QString());
    setPassword(QString());
    setDocumentNameType(1);
    setDocumentName(QString());
}

void VmbController::awakeFromNib()
{
    if (m_model) {
        const auto observe = [this](const QString &keyPath) {
            return [this, keyPath] { observeValueForKeyPath(keyPath, m_model, {}, nullptr); };
        };
        m_printTypeObservation = connect(m_model, &VmbModel::printTypeChanged, this,
                                         observe(QStringLiteral("printType")));
        m_documentNameTypeObservation = connect(m_model, &VmbModel::documentNameTypeChanged, this,
                                                observe(QStringLiteral("documentNameType")));
    }
    m_userNameFormatter = makeFormatter(kUserNameMaxLength, kUserNameAcceptableRange);
    m_passwordFormatter = makeFormatter(kPasswordMaxLength, kPasswordAcceptableRange);
    m_docNameFormatter = makeFormatter(kDocNameMaxLength, kDocNameAcceptableRange);
    // The texts are stored in the printer's encoding: the default one until
    // a PPD names another.
    setStorageEncoding(GetEncodingInfoFromPPD(nullptr));
    restoreDefaults();
}

void VmbController::localizeView()
{
    if (m_view) {
        m_view->setBundle(m_bundle);
        m_view->localizeAllControls();
    }
    if (m_userNameTextField)
        m_userNameTextField->setValidator(m_userNameFormatter.get());
    if (m_passwordTextField)
        m_passwordTextField->setValidator(m_passwordFormatter.get());
    if (m_docNameTextField)
        m_docNameTextField->setValidator(m_docNameFormatter.get());
}

void VmbController::setPPD(ppd_file_t *ppd)
{
    if (ppd == nullptr)
        return;
    m_ppd = ppd;
    setStorageEncoding(GetEncodingInfoFromPPD(ppd));
    const ppd_choice_t *choice = ppdFindMarkedChoice(ppd, "Option2");
    if (choice == nullptr)
        choice = ppdFindMarkedChoice(ppd, "NVHardDisk");
    if (choice == nullptr)
        return;
    if (std::strcmp(choice->choice, "False") == 0 || std::strcmp(choice->choice, "None") == 0)
        return;
    if (m_model)
        m_model->setCanStore(true);
}

QVariant VmbController::printType() const
{
    if (!m_model)
        return {};
    if (numberEquals(m_model->canStore(), 0))
        return 0;
    return m_model->printType();
}

void VmbController::setPrintType(const QVariant &printType)
{
    if (!m_model || numberEquals(m_model->canStore(), 0))
        return;
    m_model->setPrintType(printType);
}

std::optional<QString> VmbController::userName() const
{
    return m_model ? stringOf(m_model->userName()) : std::nullopt;
}

void VmbController::setUserName(const std::optional<QString> &userName)
{
    if (m_model)
        m_model->setUserName(variantOf(userName));
}

void VmbController::setStorageEncoding(StringEncoding encoding)
{
    for (InputStringChecker *formatter : {m_userNameFormatter.get(), m_docNameFormatter.get()}) {
        if (formatter != nullptr)
            formatter->setStorageEncoding(encoding);
    }
}

StringEncoding VmbController::passwordEncoding() const
{
    return m_ppd != nullptr ? GetEncodingInfoFromPPD(m_ppd) : StringEncoding::UTF8;
}

std::optional<QString> VmbController::password() const
{
    if (!m_model)
        return std::nullopt;
    return CreateEncryptedString(stringOf(m_model->password()), passwordEncoding());
}

void VmbController::setPassword(const std::optional<QString> &protectedPassword)
{
    if (!m_model)
        return;
    const std::optional<QString> clear = CreateDecryptedString(protectedPassword, passwordEncoding());
    m_model->setPassword(clear ? QVariant(*clear) : QVariant(QString()));
}

QVariant VmbController::documentNameType() const
{
    return m_model ? m_model->documentNameType() : QVariant();
}

void VmbController::setDocumentNameType(const QVariant &documentNameType)
{
    if (m_model)
        m_model->setDocumentNameType(documentNameType);
}

std::optional<QString> VmbController::documentName() const
{
    return m_model ? stringOf(m_model->documentName()) : std::nullopt;
}

void VmbController::setDocumentName(const std::optional<QString> &documentName)
{
    if (m_model)
        m_model->setDocumentName(variantOf(documentName));
}

void VmbController::observeValueForKeyPath(const QString &, QObject *, const QVariantMap &, void *)
{
    if (!m_model)
        return;
    VmbModel &model = *m_model;
    if (numberEquals(model.canStore(), 0)) {
        model.setIsStored(false);
        model.setIsSecure(false);
        model.setIsCustomDocName(false);
        return;
    }
    if (numberEquals(model.printType(), 0)) {
        model.setIsStored(false);
        model.setIsSecure(false);
        model.setIsCustomDocName(false);
    } else {
        model.setIsStored(true);
        model.setIsSecure(numberEquals(model.printType(), 4) || numberEquals(model.printType(), 1));
        model.setIsCustomDocName(!numberEquals(model.documentNameType(), 0));
    }
    model.setCanStoreColor(captionColor(model.canStore()));
    model.setIsStoredColor(captionColor(model.isStored()));
    model.setIsSecureColor(captionColor(model.isSecure()));
    model.setIsCustomDocNameColor(captionColor(model.isCustomDocName()));
}

void VmbController::clickDefaults(QObject *)
{
    restoreDefaults();
}

void VmbController::showHelpBook(QObject *)
{
    const pde::Bundle *bundle = m_bundle != nullptr ? pde::Bundle::withIdentifier(m_bundle->identifier()) : nullptr;
    GotoHelpPage2_105(m_ppd, "NVPTHelpBookName", bundle, QStringLiteral("SecureJobType.html"), std::nullopt);
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
