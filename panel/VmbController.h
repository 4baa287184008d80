// SPDX-License-Identifier: MIT
// The controller of the panel's view: it gates and converts the model's
// values for the panel, learns the device's storage from the PPD, keeps the
// derived enable and colour properties in step, localizes the view and
// attaches the input formatters.
#pragma once

#include "localization/BasicPdeView.h"
#include "panel/VmbModel.h"
#include "text/CupsPpd.h"
#include "text/StringEncoding.h"

#include <QLabel>
#include <QLineEdit>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariant>

#include <memory>
#include <optional>
#include <utility>

namespace pde {
class Bundle;
}

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

class InputStringChecker;

class VmbController : public QObject
{
    Q_OBJECT
    // Outlets, connected by the nib.
    Q_PROPERTY(com_norvanta_qs_o_vellumark_pde_JobTypeQTRN::BasicPdeView *vmbView READ vmbView WRITE setVmbView)
    Q_PROPERTY(com_norvanta_qs_o_vellumark_pde_JobTypeQTRN::VmbModel *vmbModel READ vmbModel WRITE setVmbModel)
    Q_PROPERTY(QLineEdit *userNameTextField READ userNameTextField WRITE setUserNameTextField)
    Q_PROPERTY(QLineEdit *passwordTextField READ passwordTextField WRITE setPasswordTextField)
    Q_PROPERTY(QLineEdit *docNameTextField READ docNameTextField WRITE setDocNameTextField)
    Q_PROPERTY(QLabel *storageNoteLabel READ storageNoteLabel WRITE setStorageNoteLabel)

public:
    explicit VmbController(QObject *parent = nullptr);
    // Stops observing the model and lets the formatters and the bundle go.
    ~VmbController() override;

    // Resets the five values through this controller's setters (so the print
    // type stays where it is while the device cannot store).
    void restoreDefaults();
    // Observes the model's print type and document-name type, builds the three
    // formatters (user ID 8, password 12 digits, document name 12), makes a
    // refused keystroke show its field's rule, follows the view's palette,
    // and restores the defaults.
    Q_INVOKABLE void awakeFromNib();

    BasicPdeView *mainView() const { return m_view; }
    // Hands the view the bundle, translates its controls, attaches the
    // formatters to the three fields (again on every call), makes each field
    // wide enough for its longest content, and says in the storage note
    // whether the printer has no job storage.
    void localizeView();

    // Learns the storage capability: the marked choice of "Option2", else of
    // "NVHardDisk"; any keyword but "False" and "None" means storage. The
    // user ID and document name fields then refuse characters the PPD's
    // printer language encoding cannot store. A null PPD changes nothing;
    // the capability is never taken back.
    void setPPD(ppd_file_t *ppd);
    ppd_file_t *ppd() const { return m_ppd; }

    // No value without a model; 0 while the model says the device cannot store.
    QVariant printType() const;
    // Ignored without a model or while the device cannot store.
    void setPrintType(const QVariant &printType);
    std::optional<QString> userName() const;
    void setUserName(const std::optional<QString> &userName);
    // The protected form of the model's clear password, in the PPD's printer
    // language encoding (UTF-8 without a PPD); nullopt without a model or
    // when the password cannot be protected (an empty one cannot).
    std::optional<QString> password() const;
    // Takes the protected form; the model gets the clear text, or an empty
    // password when it cannot be unprotected.
    void setPassword(const std::optional<QString> &protectedPassword);
    QVariant documentNameType() const;
    void setDocumentNameType(const QVariant &documentNameType);
    std::optional<QString> documentName() const;
    void setDocumentName(const std::optional<QString> &documentName);

    // Recomputes the derived properties from the model's current values,
    // whatever changed.
    void observeValueForKeyPath(const QString &keyPath, QObject *object, const QVariantMap &change,
                                void *context);
    // Sets the four caption colours from the model's flags: the view's
    // disabled text colour where the flag is off, its text colour where on.
    void refreshCaptionColors();

    pde::Bundle *bundle() const { return m_bundle; }
    void setBundle(pde::Bundle *bundle) { m_bundle = bundle; }

    BasicPdeView *vmbView() const { return m_view; }
    void setVmbView(BasicPdeView *view) { m_view = view; }
    VmbModel *vmbModel() const { return m_model; }
    void setVmbModel(VmbModel *model) { m_model = model; }
    QLineEdit *userNameTextField() const { return m_userNameTextField; }
    void setUserNameTextField(QLineEdit *field) { m_userNameTextField = field; }
    QLineEdit *passwordTextField() const { return m_passwordTextField; }
    void setPasswordTextField(QLineEdit *field) { m_passwordTextField = field; }
    QLineEdit *docNameTextField() const { return m_docNameTextField; }
    void setDocNameTextField(QLineEdit *field) { m_docNameTextField = field; }
    QLabel *storageNoteLabel() const { return m_storageNoteLabel; }
    void setStorageNoteLabel(QLabel *label) { m_storageNoteLabel = label; }

protected:
    // Follows palette changes of the view: the caption colours come from it.
    bool eventFilter(QObject *watched, QEvent *event) override;

public Q_SLOTS:
    // The defaults button.
    void clickDefaults(QObject *sender);
    // Opens "SecureJobType.html" in the help book the PPD ("NVPTHelpBookName")
    // or the bundle names.
    void showHelpBook(QObject *sender);

private:
    // Makes the user ID and document name formatters refuse what `encoding`
    // cannot store.
    void setStorageEncoding(StringEncoding encoding);
    // Shows the field's rule (its tooltip) briefly beside it.
    void showRule(QLineEdit *field);
    // The storage note: shown, with the PPD's storage option and choice when
    // it has one, while the printer cannot store jobs; hidden otherwise.
    void updateStorageNote();
    void sizeFieldsForLongestContent();
    // The printer language encoding of the PPD, UTF-8 without one.
    StringEncoding passwordEncoding() const;

    QPointer<BasicPdeView> m_view;
    QPointer<VmbModel> m_model;
    QPointer<QLineEdit> m_userNameTextField;
    QPointer<QLineEdit> m_passwordTextField;
    QPointer<QLineEdit> m_docNameTextField;
    QPointer<QLabel> m_storageNoteLabel;
    // The texts of the storage option and of its marked choice, when the PPD
    // said there is no storage.
    std::optional<std::pair<QString, QString>> m_missingStorage;
    pde::Bundle *m_bundle = nullptr;
    ppd_file_t *m_ppd = nullptr;
    std::unique_ptr<InputStringChecker> m_userNameFormatter;
    std::unique_ptr<InputStringChecker> m_passwordFormatter;
    std::unique_ptr<InputStringChecker> m_docNameFormatter;
    QMetaObject::Connection m_printTypeObservation;
    QMetaObject::Connection m_documentNameTypeObservation;
};

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
