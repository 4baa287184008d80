// SPDX-License-Identifier: MIT
// The desktop dialog as a user drives it, through the private scheduler with
// two queues: every setting reaches the filter, the job goes to the printer
// or file chosen, saved defaults stay private and empty values stay empty,
// the dialog opens on the panel in the user's language, and a real X window
// shows every tab.
#include "EndToEndFixture.h"

#include "host/HostTranslations.h"
#include "host/LpOptions.h"
#include "host/PanelDriver.h"
#include "host/PdePrintDialog.h"
#include "host/PrinterPanels.h"
#include "pdekit/Alert.h"
#include "pdekit/HelpViewer.h"
#include "pdekit/PreferredLanguages.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QImage>
#include <QLineEdit>
#include <QPrinter>
#include <QPushButton>
#include <QStandardPaths>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>

#include <pwd.h>
#include <vector>

namespace {

using namespace e2e;
using pdehost::PdePrintDialog;
using pdehost::PrintOutcome;

std::unique_ptr<PdePrintDialog> openDialog(QPrinter &printer, const QString &queue = u"e2e"_s)
{
    QString error;
    std::unique_ptr<pdehost::PrinterPanels> panels = pdehost::PrinterPanels::open({{}, queue}, {}, {kBundle}, &error);
    EXPECT_TRUE(panels) << qPrintable(error);
    printer.setPrinterName(queue);
    auto dialog = std::make_unique<PdePrintDialog>(&printer, std::move(panels), QStringList{kBundle});
    dialog->show();
    return dialog;
}

// Brings the tab holding `widget` to the front with a click on its title.
void clickTabOf(QWidget *widget)
{
    for (QWidget *page = widget; page->parentWidget() != nullptr; page = page->parentWidget()) {
        if (auto *tabs = qobject_cast<QTabWidget *>(page->parentWidget()->parentWidget());
            tabs != nullptr && tabs->indexOf(page) >= 0) {
            const QPoint title = tabs->tabBar()->tabRect(tabs->indexOf(page)).center();
            QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, {}, title);
            return;
        }
    }
}

void typeInto(QWidget *field, const QString &text)
{
    clickTabOf(field);
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
}

void chooseItem(QComboBox *combo, const QString &text)
{
    while (combo->currentText() != text && combo->currentIndex() + 1 < combo->count())
        QTest::keyClick(combo, Qt::Key_Down);
}

// Does with the control `name` in `window` what a user does: turns a button
// on, chooses the item `value` in a list (in the one that has it when `name`
// is empty), types `value` into a field.
void use(QWidget &window, const char *name, const char *value)
{
    const QString text = QString::fromUtf8(value);
    QWidget *control = window.findChild<QWidget *>(QLatin1StringView(name));
    for (QComboBox *combo : window.findChildren<QComboBox *>()) {
        if (*name == '\0' && combo->findText(text) >= 0)
            control = combo;
    }
    clickTabOf(control);
    if (auto *button = qobject_cast<QAbstractButton *>(control); button != nullptr && !button->isChecked())
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(4, button->height() / 2));
    else if (auto *combo = qobject_cast<QComboBox *>(control))
        chooseItem(combo, text);
    else if (button == nullptr)
        typeInto(control, text);
}

QPushButton *okButtonOf(QWidget *dialog)
{
    return dialog->findChild<QDialogButtonBox *>(QString(), Qt::FindDirectChildrenOnly)->button(QDialogButtonBox::Ok);
}

// Print clicked: what became of `file`; an error when the dialog stays open.
PrintOutcome clickPrint(PdePrintDialog &dialog, const QString &file = kDocument)
{
    QTest::mouseClick(okButtonOf(&dialog), Qt::LeftButton);
    if (dialog.result() != QDialog::Accepted)
        return {0, {}, u"<the dialog stayed open>"_s};
    return dialog.printFiles({file}, QFileInfo(file).fileName());
}

using PrintDialog = EndToEnd;

struct SettingRow {
    const char *name;
    bool inProperties; // in Qt's Properties dialog, else in the print dialog
    std::vector<std::pair<const char *, const char *>> controls; // used in this order
    std::vector<const char *> expected;                          // "name=value" the filter or the scheduler has
};

TEST_F(PrintDialog, EverySettingReachesTheFilterAsQtsCupsPrintingSendsIt)
{
    const SettingRow rows[] = {
        {"nothing chosen: not held although the queue holds jobs", false, {},
         {"job-hold-until=no-hold", "media=A4", "orientation-requested=3", "copies=1", "sides=one-sided",
          "outputorder=normal", "print-color-mode=color"}},
        {"three collated copies", false, {{"copies", "3"}, {"collate", ""}}, {"copies=3", "Collate=true"}},
        {"pages 2 to 4", false, {{"printRange", ""}, {"from", "2"}, {"to", "4"}}, {"page-ranges=2-4"}},
        {"two-sided, short edge", false, {{"duplexShort", ""}}, {"sides=two-sided-short-edge"}},
        {"reverse order", false, {{"reverse", ""}}, {"outputorder=reverse"}},
        {"landscape", true, {{"landscape", ""}}, {"orientation-requested=4"}},
        {"US Letter", true, {{"pageSizeCombo", "US Letter"}}, {"media=Letter"}},
        {"grayscale from the PPD's colour model", true, {{"", "Grayscale"}},
         {"ColorModel=Gray", "print-color-mode=monochrome"}},
        // What Qt's dialogs keep as CUPS options (pages per sheet, billing,
        // priority, the PPD's options) is passed on as one list, so one of
        // them stands for all; the scheduler would make the colour model from
        // the colour mode itself.
        {"paper from tray 2", true, {{"", "Tray 2"}}, {"InputSlot=Tray2"}},
        {"hold indefinitely", true, {{"jobHoldComboBox", "Hold Indefinitely"}},
         {"job-hold-until=indefinite", "job-state=pending-held"}},
    };
    for (const SettingRow &row : rows) {
        QPrinter printer;
        const std::unique_ptr<PdePrintDialog> dialog = openDialog(printer, kColour);
        const auto useControls = [&row](QWidget &window) {
            for (const auto &[name, value] : row.controls)
                use(window, name, value);
        };
        if (!row.inProperties) {
            useControls(*dialog);
        } else {
            // Qt's Properties dialog is modal: it is driven once it shows.
            QTimer::singleShot(0, [&useControls] {
                auto *properties = qobject_cast<QDialog *>(QApplication::activeModalWidget());
                ASSERT_NE(properties, nullptr);
                useControls(*properties);
                QTest::mouseClick(okButtonOf(properties), Qt::LeftButton);
            });
            QTest::mouseClick(dialog->findChild<QAbstractButton *>(u"properties"_s), Qt::LeftButton);
        }
        const PrintOutcome outcome = clickPrint(*dialog);
        ASSERT_EQ(outcome.error, QString()) << row.name;
        // The scheduler hands the filter the copies on their own and keeps
        // the hold to itself; a held job has no filter yet.
        const QStringList kept = jobAttributes(outcome.job);
        const QStringList seen =
            kept.contains(u"job-state=pending-held"_s) ? QStringList() : optionsSeenByFilter(outcome.job);
        for (const char *option : row.expected) {
            const QString expected = QString::fromUtf8(option);
            const bool scheduler = QStringList{u"copies"_s, u"job-hold-until"_s, u"job-state"_s}
                                       .contains(expected.section(u'=', 0, 0));
            EXPECT_TRUE((scheduler ? kept : seen).contains(expected))
                << row.name << ": " << option << " not in " << qPrintable((scheduler ? kept : seen).join(u' '));
        }
    }
}

TEST_F(PrintDialog, PrintToFileLaysOutTextAndCopiesAPdfAsItIsWithoutAJob)
{
    QTemporaryDir folder;
    const QString rendered = folder.filePath(u"rendered.pdf"_s);
    const QString copied = folder.filePath(u"copied.pdf"_s);
    for (const auto &[input, output] : {std::pair{kDocument, rendered}, std::pair{rendered, copied}}) {
        QPrinter printer;
        const std::unique_ptr<PdePrintDialog> dialog = openDialog(printer);
        auto *printers = dialog->findChild<QComboBox *>(u"printers"_s);
        chooseItem(printers, printers->itemText(printers->count() - 1));
        EXPECT_EQ(dialog->panelTab(0), nullptr) << "a file has no panels";
        typeInto(dialog->findChild<QLineEdit *>(u"filename"_s), output);
        const PrintOutcome outcome = clickPrint(*dialog, input);
        EXPECT_EQ(outcome.error, QString()) << qPrintable(output);
        EXPECT_EQ(outcome.job, 0) << "no job";
        EXPECT_TRUE(readFile(output).startsWith("%PDF-")) << qPrintable(output);
    }
    EXPECT_TRUE(readFile(rendered) == readFile(copied)) << "a PDF is copied as it is";
}

TEST_F(PrintDialog, SavedDefaultsStayPrivateComeBackWithTheirPrinterAndCanBeCleared)
{
    QList<pde::Alert> alerts;
    const pde::AlertHandler previous =
        pde::setAlertHandler([&alerts](const pde::Alert &alert) { alerts.append(alert); });
    const QString systemFile = pdehost::systemLpOptionsPath();
    const bool systemFileExisted = QFileInfo::exists(systemFile);
    const auto driver = [](PdePrintDialog &dialog) {
        return pdehost::PanelDriver(dialog.panels()->panels().front().panel->panelView());
    };
    const auto userNameField = [](PdePrintDialog &dialog) {
        return dialog.panelTab(0)->findChild<QLineEdit *>(u"userNameTextField"_s);
    };
    {
        QPrinter printer;
        const std::unique_ptr<PdePrintDialog> dialog = openDialog(printer, kColour);
        ASSERT_EQ(driver(*dialog).enter(u"printType"_s, u"1"_s), std::nullopt);
        ASSERT_EQ(driver(*dialog).enter(u"userName"_s, QString()), std::nullopt);

        // No user ID: the panel refuses, the dialog stays open on its tab
        // with the focus in the user ID.
        EXPECT_NE(clickPrint(*dialog).error, QString());
        EXPECT_TRUE(dialog->isVisible());
        ASSERT_EQ(alerts.size(), 1);
        EXPECT_EQ(dialog->focusWidget(), userNameField(*dialog));

        for (const auto &[key, value] : {std::pair{"userName", "hanako"}, {"password", "9753"},
                                         {"documentNameType", "1"}, {"documentName", ""}})
            ASSERT_EQ(driver(*dialog).enter(QString::fromUtf8(key), QString::fromUtf8(value)), std::nullopt) << key;
        auto *save = dialog->findChild<QCheckBox *>();
        QTest::mouseClick(save, Qt::LeftButton, {}, QPoint(4, save->height() / 2));
        ASSERT_EQ(clickPrint(*dialog).error, QString());
    }
    pde::setAlertHandler(previous);

    // The user's own file, private; the system-wide one untouched.
    const auto mode = [] { return QFile::permissions(pdehost::userLpOptionsPath()) & 0x7077; };
    EXPECT_EQ(mode(), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    EXPECT_EQ(QFileInfo::exists(systemFile), systemFileExisted);
    // Read back, the empty name is still empty (the user ID comes back in the
    // next job below).
    QString error;
    EXPECT_FALSE(pdehost::PrinterSession::fromDestination(u"absent"_s, {}, &error));
    EXPECT_EQ(error, u"absent: no such printer"_s) << "nothing but what is wrong";
    std::unique_ptr<pdehost::PrinterSession> next = pdehost::PrinterSession::fromDestination(kColour, {}, &error);
    ASSERT_TRUE(next) << qPrintable(error);
    EXPECT_EQ(next->printSettings()->value(kPrefix + u"DocumentName"_s), QVariant(QString()));

    // The printer chosen under Name brings its own panels with its saved
    // settings, and the job goes to it.
    {
        QPrinter printer;
        const std::unique_ptr<PdePrintDialog> dialog = openDialog(printer);
        QTest::keyClicks(dialog->findChild<QComboBox *>(u"printers"_s), kColour);
        ASSERT_NE(dialog->panelTab(0), nullptr) << qPrintable(dialog->problem());
        EXPECT_TRUE(dialog->summaryLines().contains(u"Printer: "_s + kColour));
        ASSERT_EQ(driver(*dialog).enter(u"password"_s, u"9753"_s), std::nullopt);
        const PrintOutcome outcome = clickPrint(*dialog);
        ASSERT_EQ(outcome.error, QString());
        EXPECT_TRUE(jobAttribute(outcome.job, u"job-printer-uri"_s).endsWith(u"/printers/"_s + kColour));
        EXPECT_EQ(recordSeenByFilter(outcome.job).value(2), u"hanako"_s);
    }

    // Cleared from the Summary tab: the record leaves the file, whose mode
    // the user chose stays.
    const QFileDevice::Permissions chosen = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup;
    ASSERT_TRUE(QFile::setPermissions(pdehost::userLpOptionsPath(), chosen));
    {
        QPrinter printer;
        const std::unique_ptr<PdePrintDialog> dialog = openDialog(printer, kColour);
        clickTabOf(dialog->summaryTab());
        QTest::mouseClick(dialog->summaryTab()->findChild<QPushButton *>(), Qt::LeftButton);
        // With no user ID saved, the field starts with the login name again.
        EXPECT_EQ(userNameField(*dialog)->text(), QString::fromLocal8Bit(::getpwuid(::getuid())->pw_name).left(8));
    }
    EXPECT_EQ(pdehost::lpOptionsFor(pdehost::userLpOptionsPath(), kColour).keys(), QStringList());
    EXPECT_EQ(mode(), chosen);
}

TEST_F(PrintDialog, OpensOnThePanelInTheUsersLanguageWithHelpAtHand)
{
    ASSERT_EQ(pdehost::installTranslations(u"ja"_s).missing, QStringList());
    QStringList helpPages;
    pde::HelpViewer &viewer = pde::HelpViewer::instance();
    const pde::HelpViewer::PageHandler previous = viewer.setPageHandler([&](const QString &book, const QUrl &page) {
        helpPages.append(page.fileName());
        viewer.showPageInWindow(book, page);
    });
    {
        QPrinter printer;
        const std::unique_ptr<PdePrintDialog> dialog = openDialog(printer);
        dialog->hide();
        dialog->setWindowModality(Qt::ApplicationModal);
        dialog->show();
        QWidget *tab = dialog->panelTab(0);
        auto *tabs = qobject_cast<QTabWidget *>(dialog->summaryTab()->parentWidget()->parentWidget());
        EXPECT_TRUE(tab->isVisible()) << "the options are shown, the panel's tab in front";
        EXPECT_EQ(tabs->currentWidget(), tab);
        EXPECT_EQ(tabs->tabText(tabs->indexOf(dialog->summaryTab())), u"概要"_s);
        EXPECT_EQ(okButtonOf(dialog.get())->text(), QCoreApplication::translate("QPrintDialog", "&Print"));
        EXPECT_NE(QCoreApplication::translate("QPrintDialog", "&Print"), u"&Print"_s);
        EXPECT_TRUE(dialog->summaryLines().contains(u"部数: 1"_s));

        // One Help on the panel: its own, which opens its page above the
        // waiting dialog, usable, titled with the page's title.
        EXPECT_EQ(tab->findChildren<QPushButton *>().size(), 2) << "the panel's Help and Defaults, none of the host's";
        QTest::mouseClick(tab->findChild<QPushButton *>(u"helpButton"_s), Qt::LeftButton);
        ASSERT_EQ(helpPages, QStringList{u"SecureJobType.html"_s});
        auto *window = dialog->findChild<QDialog *>(QString(), Qt::FindDirectChildrenOnly);
        ASSERT_NE(window, nullptr) << "the help window belongs to the waiting dialog";
        EXPECT_TRUE(window->isVisible());
        EXPECT_FALSE(window->isModal());
        EXPECT_EQ(window->windowTitle(), u"ジョブタイプ"_s);
        EXPECT_NE(window->findChild<QTextBrowser *>()->toPlainText(), QString());
        QTest::keyClick(window, Qt::Key_Escape);
        EXPECT_FALSE(window->isVisible());
    }
    viewer.setPageHandler(previous);
    pdehost::installTranslations(u"en"_s);
    pde::setPreferredLanguages(std::nullopt);
    QLocale::setDefault(QLocale::system());
}

TEST_F(PrintDialog, ARealXWindowShowsTheJobTypeTabWhole)
{
    const QString xvfb = QStandardPaths::findExecutable(u"Xvfb"_s);
    if (xvfb.isEmpty())
        GTEST_SKIP() << "Xvfb is not installed (Debian package xvfb; scripts/setup-deps installs it)";
    QProcess server;
    server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    server.start(xvfb, words("-displayfd 1 -screen 0 1280x1024x24 -nolisten tcp"));
    ASSERT_TRUE(server.waitForReadyRead(15000)) << "Xvfb did not start";

    QTemporaryDir folder;
    const QString picturePath = folder.filePath(u"dialog.png"_s);
    QStringList environment{u"DISPLAY=:"_s + QString::fromLatin1(server.readLine().trimmed()),
                            u"QT_QPA_PLATFORM=xcb"_s};
    // Under AddressSanitizer: libxkbcommon-x11 copies the X server's
    // unterminated names with strndup, which the strict string check takes
    // for an overflow.
    if (qEnvironmentVariableIsSet("ASAN_OPTIONS"))
        environment.append(u"ASAN_OPTIONS="_s + qEnvironmentVariable("ASAN_OPTIONS") + u":strict_string_checks=0"_s);
    const HostRun print =
        runHost(forPrinter(u"e2e"_s, words("--lang ja --screenshot") + QStringList{picturePath, kDocument}), {},
                environment, {}, kPrint);
    server.terminate();
    server.waitForFinished(10000);
    ASSERT_EQ(print.exitCode, 0) << qPrintable(print.err);

    const QImage picture(picturePath);
    ASSERT_FALSE(picture.isNull());
    const auto rect = [](const QString &place) {
        const QStringList n = place.split(u',');
        return n.size() == 4 ? QRect(n[0].toInt(), n[1].toInt(), n[2].toInt(), n[3].toInt()) : QRect();
    };
    const QRect bar = rect(picture.text(u"Tab bar"_s));
    ASSERT_TRUE(picture.rect().contains(bar)) << "the tab bar is on screen";
    QRect jobType;
    for (int i = 0; !picture.text(u"Tab %1"_s.arg(i)).isEmpty(); ++i) {
        const QString entry = picture.text(u"Tab %1"_s.arg(i));
        EXPECT_TRUE(bar.contains(rect(entry.section(u'|', 1)))) << qPrintable(entry) << " is clipped";
        if (entry.startsWith(u"ジョブタイプ"_s))
            jobType = rect(entry.section(u'|', 1));
    }
    ASSERT_TRUE(jobType.isValid()) << "no Job Type tab";
    // The screen shows its title: the tab is not of one colour.
    const QImage shown = picture.copy(jobType);
    QImage blank(shown.size(), shown.format());
    blank.fill(shown.pixel(0, 0));
    EXPECT_NE(shown, blank);
}

} // namespace
