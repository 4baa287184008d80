// SPDX-License-Identifier: MIT
// The job-type panel: it holds the five values between the host's calls,
// loads its view from the bundle's nib on first demand, moves the values to
// and from the controller, writes and reads the print-settings record,
// validates the input and contributes its summary lines.
#pragma once

#include "panel/VmbController.h"
#include "pdekit/Nib.h"
#include "plugin/BasicPdeInterface.h"

#include <QPointer>
#include <QString>
#include <QVariant>
#include <QWidget>

#include <memory>
#include <optional>
#include <vector>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// The keys of the record, each this prefix and a suffix.
inline constexpr QLatin1StringView kPrintSettingsKeyPrefix{"com.norvanta.qs.o.print.printsettings."};

class VirtualMailboxPdeInterface : public BasicPdeInterface
{
    Q_OBJECT
    // The nib's outlet to its controller.
    Q_PROPERTY(com_norvanta_qs_o_vellumark_pde_JobTypeQTRN::VmbController *vmbController READ vmbController WRITE setVmbController)

public:
    // The values start as print type 0, the login name as user ID (see
    // defaultUserName), empty password, document name type 1, empty
    // document name. An empty password is refused later
    // when the PPD has "NVPTAllowNullPassword" with a value other than "True".
    VirtualMailboxPdeInterface(pde::PDEPluginCallback *callback, pde::Bundle *bundle);
    // Sets the five values to none, then lets the nib's objects go.
    ~VirtualMailboxPdeInterface() override;

    // Loads the nib ("SecurePrint", or the PPD's "NVJobTypeNibName" when that
    // is a plain name inside the bundle's resources, else logged) once,
    // hands the controller the bundle and the PPD, registers the help book;
    // returns the view, or null (and tries again next time) when the nib does
    // not load or does not connect the controller.
    QWidget *panelView() override;
    // Pushes the five values into the controller (after localizing the view).
    void updateView();
    void willShow() override;
    // Refuses the save with an alert when a held job has no user ID, or one
    // the printer's encoding cannot store, when a secure job has no password
    // where the PPD requires one, or when an entered document name cannot be
    // stored.
    bool validateInputValues();
    // Reads the record from the job's print settings (a missing user ID is
    // the default one); always true.
    bool restoreValuesAndReturnError(pde::PDEError *error) override;
    // Takes the values from the controls, validates them and writes the record;
    // false when there are no print settings or the input is refused.
    bool saveValuesAndReturnError(pde::PDEError *error) override;
    // The job type, user ID, password as asterisks, document name type and
    // document name lines, in display order.
    std::optional<pde::SummaryInfo> summaryInfo() override;
    // Opens the panel's help page once the view exists (false); true before.
    bool shouldShowHelp() override;

    QVariant printType() const { return m_printType; }
    // A number outside the choices (0 to 4) is taken as 0, the default.
    void setPrintType(const QVariant &printType);
    std::optional<QString> userName() const { return m_userName; }
    void setUserName(const std::optional<QString> &userName) { m_userName = userName; }
    // The protected form, never the clear text.
    std::optional<QString> password() const { return m_password; }
    void setPassword(const std::optional<QString> &password) { m_password = password; }
    QVariant documentNameType() const { return m_documentNameType; }
    // A number outside the choices (0 and 1) is taken as 1, the default.
    void setDocumentNameType(const QVariant &documentNameType);
    std::optional<QString> documentName() const { return m_documentName; }
    void setDocumentName(const std::optional<QString> &documentName) { m_documentName = documentName; }

    VmbController *vmbController() const { return m_vmbController; }
    void setVmbController(VmbController *controller) { m_vmbController = controller; }
    std::size_t minPasswordLength() const { return m_minPasswordLength; }
    const QString &nibFileName() const { return m_nibFileName; }

private:
    // The user ID when none is stored: the login name trimmed to the 8
    // characters the field takes, or empty when the field would refuse it
    // (a character outside its rules or the printer's encoding).
    QString defaultUserName() const;
    QString localized(const QString &key) const;
    // Takes over what a nib load made: widgets watched, other objects owned.
    void keepTopLevelObjects(pde::Nib::TopLevelObjects objects);
    void releaseTopLevelObjects();

    QPointer<VmbController> m_vmbController;
    QVariant m_printType;
    std::optional<QString> m_userName;
    std::optional<QString> m_password;
    QVariant m_documentNameType;
    std::optional<QString> m_documentName;
    // The nib's top-level objects. The view is handed to the host, which may
    // place it in a dialog and delete it with the dialog before or after it
    // lets the panel go: widgets are watched and deleted only while they
    // live; the model and the controller have no parent and are owned.
    std::vector<QPointer<QWidget>> m_nibWidgets;
    std::vector<std::unique_ptr<QObject>> m_nibObjects;
    std::size_t m_minPasswordLength = 0;
    QString m_nibFileName;
};

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
