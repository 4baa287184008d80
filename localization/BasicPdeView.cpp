// SPDX-License-Identifier: MIT
// Control localization and PPD-bound controls of the panel's root view.
#include "localization/BasicPdeView.h"

#include "localization/LocalizedString.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMetaProperty>
#include <QAbstractButton>
#include <QTabWidget>
#include <QTableWidget>

#include <algorithm>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

template <typename T>
bool isExactly(const QWidget *widget)
{
    return widget->metaObject() == &T::staticMetaObject;
}

// The writable "title" property of a widget (a group box has one), if any.
std::optional<QMetaProperty> titleProperty(const QWidget *widget)
{
    const int index = widget->metaObject()->indexOfProperty("title");
    if (index < 0)
        return std::nullopt;
    const QMetaProperty property = widget->metaObject()->property(index);
    if (!property.isWritable() || property.metaType() != QMetaType::fromType<QString>())
        return std::nullopt;
    return property;
}

QList<QWidget *> childWidgets(const QWidget *widget)
{
    return widget->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
}

} // namespace

BasicPdeView::BasicPdeView(QWidget *parent) : QWidget(parent) {}

BasicPdeView::~BasicPdeView() = default;

void BasicPdeView::setBundle(pde::Bundle *bundle)
{
    m_bundle = bundle;
}

void BasicPdeView::setPPD(ppd_file_t *ppd)
{
    m_ppd = ppd;
    m_ppdBindings.emplace();
    if (ppd != nullptr) {
        if (std::optional<QString> table = localizedTableNameForPPD(ppd))
            m_localizedFileName = std::move(table);
    }
}

QString BasicPdeView::translate(const QString &text) const
{
    return nvktraLocalizedStringForKey(m_bundle, text, std::nullopt, m_localizedFileName).value_or(QString());
}

void BasicPdeView::localizeAllControls()
{
    localizeWindowTitle(this);
    for (QWidget *child : childWidgets(this))
        localizeControl(child);
}

void BasicPdeView::localizeWindowTitle(QWidget *view)
{
    if (view == nullptr)
        return;
    QWidget *window = view->window();
    // A widget without a parent is its own window; a panel view that has not
    // been placed in a dialog yet has no window title of its own to translate.
    if (window == view)
        return;
    window->setWindowTitle(translate(window->windowTitle()));
}

void BasicPdeView::localizeControl(QWidget *control)
{
    if (control == nullptr)
        return;
    localizeHelpTexts(control);
    if (isExactly<QComboBox>(control) && !static_cast<QComboBox *>(control)->isEditable()) {
        // An editable combo box is a text field with a list, not a pop-up:
        // retitling its current item would overwrite what the user typed.
        localizePopup(static_cast<QComboBox *>(control));
    } else if (isExactly<QLabel>(control)) {
        localizeTextField(control);
    } else if (isExactly<QLineEdit>(control) && static_cast<QLineEdit *>(control)->echoMode() == QLineEdit::Normal) {
        // A secret field stands for the secure kind of text field, which
        // takes the last path like any subclass.
        if (static_cast<QLineEdit *>(control)->isReadOnly())
            localizeTextField(control);
    } else if (auto *button = qobject_cast<QAbstractButton *>(control)) {
        // Every kind of button shows its text: tool buttons and a panel's own
        // button classes too.
        localizeButton(button);
    } else if (isExactly<QTableWidget>(control)) {
        localizeTableView(static_cast<QTableWidget *>(control));
    } else if (isExactly<QTabWidget>(control)) {
        localizeTabView(static_cast<QTabWidget *>(control));
    } else {
        localizeGeneralControl(control);
        for (QWidget *child : childWidgets(control))
            localizeControl(child);
    }
}

void BasicPdeView::localizeHelpTexts(QWidget *control)
{
    if (control == nullptr)
        return;
    if (!control->toolTip().isEmpty())
        control->setToolTip(translate(control->toolTip()));
    if (auto *edit = qobject_cast<QLineEdit *>(control); edit != nullptr && !edit->placeholderText().isEmpty())
        edit->setPlaceholderText(translate(edit->placeholderText()));
}

void BasicPdeView::localizeTextField(QWidget *field)
{
    if (auto *label = qobject_cast<QLabel *>(field))
        label->setText(translate(label->text()));
    else if (auto *edit = qobject_cast<QLineEdit *>(field))
        edit->setText(translate(edit->text()));
}

void BasicPdeView::localizeButton(QAbstractButton *button)
{
    if (button != nullptr)
        button->setText(translate(button->text()));
}

void BasicPdeView::localizePopup(QComboBox *popup)
{
    if (popup == nullptr)
        return;
    // Retitled in place, so the selection stays where it was.
    for (int i = 0; i < popup->count(); ++i)
        popup->setItemText(i, translate(popup->itemText(i)));
}

void BasicPdeView::localizeTableView(QTableWidget *table)
{
    if (table == nullptr)
        return;
    for (int column = 0; column < table->columnCount(); ++column) {
        if (QTableWidgetItem *header = table->horizontalHeaderItem(column))
            header->setText(translate(header->text()));
    }
}

void BasicPdeView::localizeTabView(QTabWidget *tabs)
{
    if (tabs == nullptr)
        return;
    for (int i = 0; i < tabs->count(); ++i) {
        tabs->setTabText(i, translate(tabs->tabText(i)));
        localizeControl(tabs->widget(i));
    }
}

void BasicPdeView::localizeGeneralControl(QWidget *control)
{
    if (control == nullptr)
        return;
    if (const std::optional<QMetaProperty> title = titleProperty(control))
        title->write(control, translate(title->read(control).toString()));
}

void BasicPdeView::localizePPDControl(QWidget *control, const char *keyword)
{
    if (control == nullptr)
        return;
    if (isExactly<QComboBox>(control))
        localizePPDPopup(static_cast<QComboBox *>(control), keyword);
    else if (isExactly<QLabel>(control) || isExactly<QLineEdit>(control))
        localizePPDTextField(control, keyword);
}

void BasicPdeView::localizePPDPopup(QComboBox *popup, const char *keyword)
{
    if (m_ppd == nullptr || popup == nullptr || keyword == nullptr)
        return;
    const ppd_option_t *option = ppdFindOption(m_ppd, keyword);
    if (option == nullptr)
        return;

    const QString key = QString::fromLatin1(keyword);
    auto &bindings = *m_ppdBindings;
    const auto bound = std::find_if(bindings.begin(), bindings.end(),
                                    [&key](const auto &binding) { return binding.first == key; });
    if (bound != bindings.end())
        bound->second = popup;
    else
        bindings.emplace_back(key, popup);

    popup->clear();
    for (int i = 0; i < option->num_choices; ++i) {
        const ppd_choice_t &choice = option->choices[i];
        const QString title = QString::fromUtf8(choice.text);
        // A title that is already there gives way to the later choice.
        const int existing = popup->findText(title, Qt::MatchExactly | Qt::MatchCaseSensitive);
        if (existing >= 0)
            popup->removeItem(existing);
        popup->addItem(title, QString::fromLatin1(choice.choice));
    }
}

void BasicPdeView::localizePPDTextField(QWidget *field, const char *keyword)
{
    if (m_ppd == nullptr || field == nullptr || keyword == nullptr)
        return;
    const ppd_option_t *option = ppdFindOption(m_ppd, keyword);
    if (option == nullptr)
        return;
    const QString text = QString::fromUtf8(option->text);
    if (auto *label = qobject_cast<QLabel *>(field))
        label->setText(text);
    else if (auto *edit = qobject_cast<QLineEdit *>(field))
        edit->setText(text);
}

std::optional<QString> BasicPdeView::ppdKeywordForObject(const QWidget *control) const
{
    if (!m_ppdBindings || control == nullptr)
        return std::nullopt;
    for (const auto &[keyword, bound] : *m_ppdBindings) {
        if (bound == control)
            return keyword;
    }
    return std::nullopt;
}

QWidget *BasicPdeView::boundControl(const QString &keyword) const
{
    if (!m_ppdBindings)
        return nullptr;
    for (const auto &[key, bound] : *m_ppdBindings) {
        if (key == keyword)
            return bound.data();
    }
    return nullptr;
}

void BasicPdeView::setValueForPPDKeyword(const QString &value, const QString &keyword)
{
    QWidget *control = boundControl(keyword);
    if (control == nullptr)
        return;
    if (auto *popup = qobject_cast<QComboBox *>(control)) {
        popup->setCurrentIndex(popup->findText(value, Qt::MatchExactly | Qt::MatchCaseSensitive));
    } else if (const std::optional<QMetaProperty> title = titleProperty(control)) {
        title->write(control, value);
    } else if (auto *button = qobject_cast<QAbstractButton *>(control)) {
        button->setText(value);
    }
}

void BasicPdeView::setEnabledForPPDKeyword(bool flag, const QString &keyword)
{
    if (QWidget *control = boundControl(keyword))
        control->setEnabled(flag);
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
