// SPDX-License-Identifier: MIT
// The object behind the panel's controls: the five input values and the
// derived properties that enable the controls and colour their captions.
#pragma once

#include <QObject>
#include <QVariant>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// Every property is a QVariant so that "no value" stays representable (an
// invalid QVariant, unequal to every number). Each setter notifies, even when
// the value does not change.
class VmbModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QVariant printType READ printType WRITE setPrintType NOTIFY printTypeChanged)
    Q_PROPERTY(QVariant userName READ userName WRITE setUserName NOTIFY userNameChanged)
    Q_PROPERTY(QVariant password READ password WRITE setPassword NOTIFY passwordChanged)
    Q_PROPERTY(QVariant documentNameType READ documentNameType WRITE setDocumentNameType NOTIFY documentNameTypeChanged)
    Q_PROPERTY(QVariant documentName READ documentName WRITE setDocumentName NOTIFY documentNameChanged)
    Q_PROPERTY(QVariant canStore READ canStore WRITE setCanStore NOTIFY canStoreChanged)
    Q_PROPERTY(QVariant isStored READ isStored WRITE setIsStored NOTIFY isStoredChanged)
    Q_PROPERTY(QVariant isSecure READ isSecure WRITE setIsSecure NOTIFY isSecureChanged)
    Q_PROPERTY(QVariant isCustomDocName READ isCustomDocName WRITE setIsCustomDocName NOTIFY isCustomDocNameChanged)
    Q_PROPERTY(QVariant canStoreColor READ canStoreColor WRITE setCanStoreColor NOTIFY canStoreColorChanged)
    Q_PROPERTY(QVariant isStoredColor READ isStoredColor WRITE setIsStoredColor NOTIFY isStoredColorChanged)
    Q_PROPERTY(QVariant isSecureColor READ isSecureColor WRITE setIsSecureColor NOTIFY isSecureColorChanged)
    Q_PROPERTY(QVariant isCustomDocNameColor READ isCustomDocNameColor WRITE setIsCustomDocNameColor NOTIFY isCustomDocNameColorChanged)

public:
    explicit VmbModel(QObject *parent = nullptr);
    // Wipes the clear password, in every copy that shares its characters,
    // then sets all thirteen properties to no value, in declaration order, so
    // that observers see the model go.
    ~VmbModel() override;

    // The defaults: print type 0, empty user ID, password and document name,
    // document-name type 1, no storage, not stored, not secure, entered
    // document name, and four captions in the palette's disabled text colour.
    Q_INVOKABLE void awakeFromNib();

    QVariant printType() const { return m_printType; }
    QVariant userName() const { return m_userName; }
    QVariant password() const { return m_password; }
    QVariant documentNameType() const { return m_documentNameType; }
    QVariant documentName() const { return m_documentName; }
    QVariant canStore() const { return m_canStore; }
    QVariant isStored() const { return m_isStored; }
    QVariant isSecure() const { return m_isSecure; }
    QVariant isCustomDocName() const { return m_isCustomDocName; }
    QVariant canStoreColor() const { return m_canStoreColor; }
    QVariant isStoredColor() const { return m_isStoredColor; }
    QVariant isSecureColor() const { return m_isSecureColor; }
    QVariant isCustomDocNameColor() const { return m_isCustomDocNameColor; }

    void setPrintType(const QVariant &value);
    void setUserName(const QVariant &value);
    // The clear password; the previous text's memory is overwritten when the
    // model held the only copy.
    void setPassword(const QVariant &value);
    void setDocumentNameType(const QVariant &value);
    void setDocumentName(const QVariant &value);
    void setCanStore(const QVariant &value);
    void setIsStored(const QVariant &value);
    void setIsSecure(const QVariant &value);
    void setIsCustomDocName(const QVariant &value);
    void setCanStoreColor(const QVariant &value);
    void setIsStoredColor(const QVariant &value);
    void setIsSecureColor(const QVariant &value);
    void setIsCustomDocNameColor(const QVariant &value);

Q_SIGNALS:
    void printTypeChanged();
    void userNameChanged();
    void passwordChanged();
    void documentNameTypeChanged();
    void documentNameChanged();
    void canStoreChanged();
    void isStoredChanged();
    void isSecureChanged();
    void isCustomDocNameChanged();
    void canStoreColorChanged();
    void isStoredColorChanged();
    void isSecureColorChanged();
    void isCustomDocNameColorChanged();

private:
    QVariant m_printType;
    QVariant m_userName;
    QVariant m_password;
    QVariant m_documentNameType;
    QVariant m_documentName;
    QVariant m_canStore;
    QVariant m_isStored;
    QVariant m_isSecure;
    QVariant m_isCustomDocName;
    QVariant m_canStoreColor;
    QVariant m_isStoredColor;
    QVariant m_isSecureColor;
    QVariant m_isCustomDocNameColor;
};

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
