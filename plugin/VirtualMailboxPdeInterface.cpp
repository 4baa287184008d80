// SPDX-License-Identifier: MIT
// Life cycle of the job-type panel: creation, the view from the nib, the
// help set-up, pushing values into the controls, tear-down.
#include "plugin/VirtualMailboxPdeInterface.h"

#include "localization/LocalizedString.h"
#include "panel/InputStringChecker.h"
#include "panel/NumberValue.h"
#include "pdekit/Bundle.h"
#include "platform/HelpBook.h"
#include "platform/LoginName.h"
#include "platform/SystemVersion.h"
#include "platform/UtilityService.h"
#include "plugin/PluginLogging.h"
#include "text/PpdAttribute.h"
#include "text/PrinterLanguageEncoding.h"

#include <QWidget>

#include <cstring>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

const QString kDefaultNib = QStringLiteral("SecurePrint");

// The pop-ups' choices and the defaults a value outside them is taken as.
constexpr int kPrintTypeChoices = 5;
constexpr int kDefaultPrintType = 0;
constexpr int kDocumentNameTypeChoices = 2;
constexpr int kDefaultDocumentNameType = 1;

} // namespace

VirtualMailboxPdeInterface::VirtualMailboxPdeInterface(pde::PDEPluginCallback *callback, pde::Bundle *bundle)
    : BasicPdeInterface(callback, bundle)
{
    setPrintType(0);
    setUserName(defaultUserName());
    setPassword(QString());
    setDocumentNameType(1);
    setDocumentName(QString());
    m_minPasswordLength = 0;
    if (ppd() != nullptr) {
        const ppd_attr_t *allowNull = ppdFindAttr_ALT(ppd(), "NVPTAllowNullPassword");
        if (allowNull != nullptr && (allowNull->value == nullptr || std::strcmp(allowNull->value, "True") != 0))
            m_minPasswordLength = 1;
    }
}

VirtualMailboxPdeInterface::~VirtualMailboxPdeInterface()
{
    setPrintType({});
    setUserName(std::nullopt);
    setPassword(std::nullopt);
    setDocumentNameType({});
    setDocumentName(std::nullopt);
    releaseTopLevelObjects();
}

void VirtualMailboxPdeInterface::keepTopLevelObjects(pde::Nib::TopLevelObjects objects)
{
    for (std::unique_ptr<QObject> &object : objects) {
        if (object->isWidgetType())
            m_nibWidgets.emplace_back(static_cast<QWidget *>(object.release()));
        else
            m_nibObjects.push_back(std::move(object));
    }
}

void VirtualMailboxPdeInterface::releaseTopLevelObjects()
{
    m_vmbController = nullptr;
    // Controller first, so that it stops observing before the model goes.
    while (!m_nibObjects.empty())
        m_nibObjects.pop_back();
    // A view the host placed in its dialog leaves the dialog as it is
    // deleted; one the host already deleted with its dialog is left alone.
    for (const QPointer<QWidget> &widget : m_nibWidgets) {
        if (widget)
            delete widget.data();
    }
    m_nibWidgets.clear();
}

QString VirtualMailboxPdeInterface::defaultUserName() const
{
    // What the user ID field would accept when typed: the first 8
    // characters of the login name, all of them in the field's rules and
    // storable in the printer's encoding; otherwise none.
    InputStringChecker field;
    field.setMaxLength(kUserNameMaxLength);
    field.setAcceptableCodeRange(kUserNameAcceptableRange);
    field.setStorageEncoding(GetEncodingInfoFromPPD(ppd()));
    const QString login = CopyLoginName().value_or(QString()).left(static_cast<qsizetype>(kUserNameMaxLength));
    return field.isPartialStringValid(login, nullptr, nullptr) ? login : QString();
}

void VirtualMailboxPdeInterface::setPrintType(const QVariant &printType)
{
    m_printType = choiceOrDefault(printType, kPrintTypeChoices, kDefaultPrintType);
}

void VirtualMailboxPdeInterface::setDocumentNameType(const QVariant &documentNameType)
{
    m_documentNameType = choiceOrDefault(documentNameType, kDocumentNameTypeChoices, kDefaultDocumentNameType);
}

QWidget *VirtualMailboxPdeInterface::panelView()
{
    if (!m_vmbController) {
        m_nibFileName = kDefaultNib;
        releaseTopLevelObjects();
        if (ppd() != nullptr) {
            // A name from the PPD must stay inside the bundle's resources.
            if (std::optional<QString> nib = CopyPPDAttribute(ppd(), "NVJobTypeNibName")) {
                if (pde::Bundle::isPlainResourceName(*nib)) {
                    m_nibFileName = *nib;
                } else {
                    qCWarning(lcPlugin).nospace() << "NVJobTypeNibName " << *nib
                                                  << " is not a plain name inside the bundle's resources; the nib "
                                                  << kDefaultNib << " is used";
                }
            }
        }
        if (pluginBundle() != nullptr) {
            pde::Nib::TopLevelObjects objects;
            pde::Nib::load(*pluginBundle(), m_nibFileName, this, &objects);
            keepTopLevelObjects(std::move(objects));
        }
        if (!m_vmbController) {
            releaseTopLevelObjects();
            return nullptr;
        }
        m_vmbController->setBundle(pluginBundle());
        m_vmbController->setPPD(ppd());

        std::uint32_t systemVersion = 0;
        Gestalt_ALT(gestaltSystemVersion, &systemVersion);
        const QString identifier = pluginBundle() != nullptr ? pluginBundle()->identifier() : QString();
        if ((systemVersion & ~0xFu) == 0x1060)
            UtilityService::removeHelpCacheForBundleID(identifier);
        RegisterHelpBook(pde::Bundle::withIdentifier(identifier));
    }
    return m_vmbController->mainView();
}

void VirtualMailboxPdeInterface::updateView()
{
    if (!m_vmbController)
        return;
    m_vmbController->localizeView();
    m_vmbController->setPrintType(printType());
    m_vmbController->setUserName(userName());
    m_vmbController->setPassword(password());
    m_vmbController->setDocumentNameType(documentNameType());
    m_vmbController->setDocumentName(documentName());
}

void VirtualMailboxPdeInterface::willShow()
{
    updateView();
}

bool VirtualMailboxPdeInterface::shouldShowHelp()
{
    if (!m_vmbController)
        return true;
    m_vmbController->showHelpBook(this);
    return false;
}

QString VirtualMailboxPdeInterface::localized(const QString &key) const
{
    return nvktraLocalizedStringForKey(pluginBundle(), key, std::nullopt, std::nullopt).value_or(QString());
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
