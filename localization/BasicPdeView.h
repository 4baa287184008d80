// SPDX-License-Identifier: MIT
// The panel's root view: it translates the texts of its controls from the
// bundle's strings tables, and binds pop-ups to PPD options.
#pragma once

#include "text/CupsPpd.h"

#include <QPointer>
#include <QString>
#include <QWidget>

#include <optional>
#include <utility>
#include <vector>

class QAbstractButton;
class QComboBox;
class QTabWidget;
class QTableWidget;

namespace pde {
class Bundle;
}

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// Translating a text t means: nvktraLocalizedStringForKey(bundle, t, none,
// the view's table), which leaves a text that no table holds as it is. The
// walk visits widgets in the order of their parent's child list, which is
// the order in which they were created (the .ui document order) and, as a
// stacking order, back to front.
class BasicPdeView : public QWidget
{
    Q_OBJECT

public:
    explicit BasicPdeView(QWidget *parent = nullptr);
    ~BasicPdeView() override;

    // The bundle whose tables are read (not owned: bundles live as long as the
    // process). Without one, every translation is empty.
    void setBundle(pde::Bundle *bundle);
    pde::Bundle *bundle() const { return m_bundle; }

    // The printer's PPD (borrowed, may be null). Forgets every PPD binding; a
    // PPD that names a model-specific table ("NVLocalizableFileIndex") makes
    // it the view's table, one that does not leaves the table as it was.
    void setPPD(ppd_file_t *ppd);
    ppd_file_t *ppd() const { return m_ppd; }
    // The table translations come from; nullopt for "Localizable".
    const std::optional<QString> &localizedFileName() const { return m_localizedFileName; }

    // Translates the title of the window the view lives in (when that window
    // is not the view itself), then each child widget through localizeControl.
    void localizeAllControls();

    // Every control's tooltip and a text field's placeholder first (a rule
    // or a hint, whatever the field holds); then by exact class (a subclass
    // takes the last path): QComboBox items, when it is not editable (an
    // editable one takes the last path); QLabel, and QLineEdit when
    // read-only, texts (an editable QLineEdit is left alone, and one that
    // hides its text takes the last path); QTableWidget column headers;
    // QTabWidget tab labels and pages. Every button, of any class, its text.
    // Any other widget: its "title" property when it has a writable one,
    // then its child widgets.
    void localizeControl(QWidget *control);
    void localizeHelpTexts(QWidget *control);
    void localizeTextField(QWidget *field);
    void localizeButton(QAbstractButton *button);
    void localizePopup(QComboBox *popup);
    void localizeTableView(QTableWidget *table);
    void localizeTabView(QTabWidget *tabs);
    void localizeGeneralControl(QWidget *control);
    void localizeWindowTitle(QWidget *view);

    // By exact class: a QComboBox is filled from the PPD option `keyword`
    // (localizePPDPopup), a QLabel or QLineEdit shows the option's text
    // (localizePPDTextField); anything else is left alone.
    void localizePPDControl(QWidget *control, const char *keyword);
    // Binds the pop-up to the option `keyword` and refills it: one item per
    // choice in PPD order, the choice's text (UTF-8) as title and its keyword
    // (ASCII) as item data; an item whose title is already there replaces the
    // earlier one. Without a PPD, or for an option the PPD lacks, nothing.
    void localizePPDPopup(QComboBox *popup, const char *keyword);
    // Shows the option's text in the field, without binding it. Without a PPD,
    // or for an option the PPD lacks, nothing.
    void localizePPDTextField(QWidget *field, const char *keyword);

    // The first keyword the control was bound under; nullopt when none.
    std::optional<QString> ppdKeywordForObject(const QWidget *control) const;
    // Selects the item titled `value` in the pop-up bound to `keyword` (no
    // selection when no item has that title), or sets the title of another
    // bound control. Nothing when no control is bound under the keyword.
    void setValueForPPDKeyword(const QString &value, const QString &keyword);
    // Enables or disables the control bound under `keyword`, if any.
    void setEnabledForPPDKeyword(bool flag, const QString &keyword);

private:
    QString translate(const QString &text) const;
    QWidget *boundControl(const QString &keyword) const;

    pde::Bundle *m_bundle = nullptr;
    ppd_file_t *m_ppd = nullptr;
    // Keyword -> control, in the order of binding; nullopt until setPPD.
    std::optional<std::vector<std::pair<QString, QPointer<QWidget>>>> m_ppdBindings;
    std::optional<QString> m_localizedFileName;
};

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
