// SPDX-License-Identifier: MIT
// Storage and defaults of the panel's model.
#include "panel/VmbModel.h"

#include <QApplication>
#include <QColor>
#include <QPalette>

#include <algorithm>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

// Overwrites a string's characters when this is its only copy, so that a
// replaced password does not linger in freed memory.
void wipeIfSoleOwner(QVariant &value)
{
    if (value.typeId() != QMetaType::QString)
        return;
    QString *text = static_cast<QString *>(value.data()); // detaches the variant, not the string
    if (text->isDetached() && !text->isEmpty())
        text->fill(QChar(0));
}

// Overwrites a string's characters in place, in every copy that shares them
// (a field's text shares the password it showed): for the model's last
// moment, when those copies are about to go as well.
void wipeEverywhere(QVariant &value)
{
    if (value.typeId() != QMetaType::QString)
        return;
    QString::DataPointer &data = static_cast<QString *>(value.data())->data_ptr();
    if (data.isMutable()) // heap memory; a literal's is read-only
        std::fill_n(data.data(), data.size, u'\0');
}

} // namespace

VmbModel::VmbModel(QObject *parent) : QObject(parent) {}

VmbModel::~VmbModel()
{
    wipeEverywhere(m_password);
    setPrintType({});
    setUserName({});
    setPassword({});
    setDocumentNameType({});
    setDocumentName({});
    setCanStore({});
    setIsStored({});
    setIsSecure({});
    setIsCustomDocName({});
    setCanStoreColor({});
    setIsStoredColor({});
    setIsSecureColor({});
    setIsCustomDocNameColor({});
}

void VmbModel::awakeFromNib()
{
    setPrintType(0);
    setUserName(QString());
    setPassword(QString());
    setDocumentNameType(1);
    setDocumentName(QString());
    setCanStore(false);
    setIsStored(false);
    setIsSecure(false);
    setIsCustomDocName(true);
    const QColor grey = QApplication::palette().color(QPalette::Disabled, QPalette::WindowText);
    setCanStoreColor(grey);
    setIsStoredColor(grey);
    setIsSecureColor(grey);
    setIsCustomDocNameColor(grey);
}

#define PDE_MODEL_SETTER(Setter, member, Signal) \
    void VmbModel::Setter(const QVariant &value) \
    {                                            \
        member = value;                          \
        Q_EMIT Signal();                         \
    }

PDE_MODEL_SETTER(setPrintType, m_printType, printTypeChanged)
PDE_MODEL_SETTER(setUserName, m_userName, userNameChanged)
PDE_MODEL_SETTER(setDocumentNameType, m_documentNameType, documentNameTypeChanged)
PDE_MODEL_SETTER(setDocumentName, m_documentName, documentNameChanged)
PDE_MODEL_SETTER(setCanStore, m_canStore, canStoreChanged)
PDE_MODEL_SETTER(setIsStored, m_isStored, isStoredChanged)
PDE_MODEL_SETTER(setIsSecure, m_isSecure, isSecureChanged)
PDE_MODEL_SETTER(setIsCustomDocName, m_isCustomDocName, isCustomDocNameChanged)
PDE_MODEL_SETTER(setCanStoreColor, m_canStoreColor, canStoreColorChanged)
PDE_MODEL_SETTER(setIsStoredColor, m_isStoredColor, isStoredColorChanged)
PDE_MODEL_SETTER(setIsSecureColor, m_isSecureColor, isSecureColorChanged)
PDE_MODEL_SETTER(setIsCustomDocNameColor, m_isCustomDocNameColor, isCustomDocNameColorChanged)

#undef PDE_MODEL_SETTER

void VmbModel::setPassword(const QVariant &value)
{
    wipeIfSoleOwner(m_password);
    m_password = value;
    Q_EMIT passwordChanged();
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
