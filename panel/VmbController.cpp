// SPDX-License-Identifier: MIT
// Gating, conversion and derived state of the panel's controls.
#include "panel/VmbController.h"

#include "localization/LocalizedString.h"
#include "panel/InputStringChecker.h"
#include "panel/NumberValue.h"
#include "pdekit/Bundle.h"
#include "platform/HelpBook.h"
#include "text/PasswordProtection.h"
#include "text/PrinterLanguageEncoding.h"

#include <QApplication>
#include <QColor>
#include <QEvent>
#include <QFontMetrics>
#include <QPalette>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QToolTip>

#include <algorithm>
#include <cstring>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

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

// How long a refused keystroke shows the field's rule.
constexpr int kRuleDisplayMilliseconds = 3000;

// A caption is greyed as a disabled text is while its control does not
// apply, in the text colour otherwise.
QColor captionColor(const QPalette &palette, const QVariant &applies)
{
    if (numberEquals(applies, 0))
        return palette.color(QPalette::Disabled, QPalette::WindowText);
    return palette.color(QPalette::Active, QPalette::WindowText);
}

// The marked choice of the first of the storage options that has one.
std::optional<std::pair<const ppd_option_t *, const ppd_choice_t *>> storageChoice(ppd_file_t *ppd)
{
    for (const char *keyword : {"Option2", "NVHardDisk"}) {
        if (const ppd_choice_t *choice = ppdFindMarkedChoice(ppd, keyword))
            return std::pair{ppdFindOption(ppd, keyword), choice};
    }
    return std::nullopt;
}

// The width a field needs to show `length` of its widest character (the
// echo character when it hides its text) without scrolling.
int widthForLongestContent(const QLineEdit &field, const char16_t *ranges, std::size_t length)
{
    const QFontMetrics metrics = field.fontMetrics();
    int widest = 0;
    if (field.echoMode() != QLineEdit::Normal) {
        widest = metrics.horizontalAdvance(
            QChar(field.style()->styleHint(QStyle::SH_LineEdit_PasswordCharacter, nullptr, &field)));
    } else {
        for (const char16_t *pair = ranges; pair[0] != 0; pair += 2) {
            for (std::uint32_t code = pair[0]; code <= pair[1]; ++code)
                widest = std::max(widest, metrics.horizontalAdvance(QChar(static_cast<char16_t>(code))));
        }
    }
    // QLineEdit keeps two pixels on each side of its text and one for the
    // cursor; the style adds the frame.
    const QMargins margins = field.textMargins();
    const int contents = widest * static_cast<int>(length) + 2 * 2 + 1 + margins.left() + margins.right();
    QStyleOptionFrame option;
    option.initFrom(&field);
    option.lineWidth = field.hasFrame() ? field.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &field) : 0;
    option.state |= QStyle::State_Sunken;
    return field.style()
        ->sizeFromContents(QStyle::CT_LineEdit, &option, QSize(contents, field.sizeHint().height()), &field)
        .width();
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
    for (QLineEdit *field : {m_userNameTextField.data(), m_passwordTextField.data(), m_docNameTextField.data()}) {
        if (field != nullptr)
            connect(field, &QLineEdit::inputRejected, this, [this, field] { showRule(field); });
    }
    if (m_view)
        m_view->installEventFilter(this);
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
    sizeFieldsForLongestContent();
    updateStorageNote();
}

void VmbController::sizeFieldsForLongestContent()
{
    const struct {
        QLineEdit *field;
        const char16_t *ranges;
        std::size_t length;
    } fields[] = {{m_userNameTextField, kUserNameAcceptableRange, kUserNameMaxLength},
                  {m_passwordTextField, kPasswordAcceptableRange, kPasswordMaxLength},
                  {m_docNameTextField, kDocNameAcceptableRange, kDocNameMaxLength}};
    for (const auto &[field, ranges, length] : fields) {
        if (field != nullptr)
            field->setMinimumWidth(widthForLongestContent(*field, ranges, length));
    }
}

void VmbController::showRule(QLineEdit *field)
{
    if (field->toolTip().isEmpty())
        return;
    QToolTip::showText(field->mapToGlobal(QPoint(0, field->height())), field->toolTip(), field, QRect(),
                       kRuleDisplayMilliseconds);
}

void VmbController::updateStorageNote()
{
    if (!m_storageNoteLabel)
        return;
    const bool noStorage = !m_model || numberEquals(m_model->canStore(), 0);
    if (noStorage) {
        const auto localized = [this](const char *key) {
            return nvktraLocalizedStringForKey(m_bundle, QString::fromLatin1(key), std::nullopt, std::nullopt)
                .value_or(QString());
        };
        m_storageNoteLabel->setText(m_missingStorage ? localized("No Job Storage Option")
                                                           .arg(m_missingStorage->first, m_missingStorage->second)
                                                     : localized("No Job Storage"));
    }
    m_storageNoteLabel->setVisible(noStorage);
}

void VmbController::setPPD(ppd_file_t *ppd)
{
    if (ppd == nullptr)
        return;
    m_ppd = ppd;
    setStorageEncoding(GetEncodingInfoFromPPD(ppd));
    const auto storage = storageChoice(ppd);
    if (storage && std::strcmp(storage->second->choice, "False") != 0
        && std::strcmp(storage->second->choice, "None") != 0) {
        if (m_model)
            m_model->setCanStore(true);
        m_missingStorage.reset();
    } else if (storage && storage->first != nullptr) {
        m_missingStorage.emplace(QString::fromUtf8(storage->first->text), QString::fromUtf8(storage->second->text));
    }
    updateStorageNote();
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
    refreshCaptionColors();
}

void VmbController::refreshCaptionColors()
{
    if (!m_model)
        return;
    VmbModel &model = *m_model;
    const QPalette palette = m_view ? m_view->palette() : QApplication::palette();
    model.setCanStoreColor(captionColor(palette, model.canStore()));
    model.setIsStoredColor(captionColor(palette, model.isStored()));
    model.setIsSecureColor(captionColor(palette, model.isSecure()));
    model.setIsCustomDocNameColor(captionColor(palette, model.isCustomDocName()));
}

bool VmbController::eventFilter(QObject *watched, QEvent *event)
{
    // The type first: the view also sends events while it is destroyed, when
    // it is no longer a view to compare with.
    if (event->type() == QEvent::PaletteChange && watched == m_view)
        refreshCaptionColors();
    return QObject::eventFilter(watched, event);
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
