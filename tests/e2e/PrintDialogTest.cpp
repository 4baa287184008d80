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
#include <QSpinBox>
#include <QStandardPaths>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>

#include <functional>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace e2e;
using pdehost::PdePrintDialog;

const QString kColour = QStringLiteral("e2e-colour");
const QString kColourPpd = QStringLiteral(PDE_SOURCE_DIR "/tests/data/dialog-colour-mfp.ppd");
const QString kTitle = QFileInfo(kDocument).fileName();

class PrintDialog : public EndToEnd
{
protected:
    // The second queue holds every job by default, as a panel printer's
    // queue does for a session agent.
    static void SetUpTestSuite()
    {
        EndToEnd::SetUpTestSuite();
        if (cupsd->running())
            colourQueued = cupsd->addQueue(kColour, kColourPpd, {QStringLiteral("job-hold-until-default=indefinite")});
    }
    void SetUp() override
    {
        EndToEnd::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        ASSERT_TRUE(colourQueued) << qPrintable(cupsd->problem());
        QFile::remove(pdehost::userLpOptionsPath());
    }

    static std::unique_ptr<PdePrintDialog> openDialog(QPrinter &printer, const QString &queue)
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
    static void clickTabOf(QWidget *widget)
    {
        for (QWidget *page = widget; page != nullptr; page = page->parentWidget()) {
            auto *tabs = page->parentWidget() != nullptr ? qobject_cast<QTabWidget *>(page->parentWidget()->parentWidget()) : nullptr;
            if (tabs != nullptr && tabs->indexOf(page) >= 0) {
                QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, {}, tabs->tabBar()->tabRect(tabs->indexOf(page)).center());
                return;
            }
        }
    }

    static void typeInto(QWidget *field, const QString &text)
    {
        clickTabOf(field);
        QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, text);
    }

    static QPushButton *okButtonOf(QWidget *dialog)
    {
        return dialog->findChild<QDialogButtonBox *>(QString(), Qt::FindDirectChildrenOnly)->button(QDialogButtonBox::Ok);
    }

    static bool clickPrint(PdePrintDialog &dialog)
    {
        QTest::mouseClick(okButtonOf(&dialog), Qt::LeftButton);
        return dialog.result() == QDialog::Accepted;
    }

    // The job's attributes as the scheduler keeps them, "name=value".
    static QStringList jobAttributes(int job)
    {
        QStringList seen;
        ipp_t *request = ippNewRequest(IPP_OP_GET_JOB_ATTRIBUTES);
        ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "job-uri", nullptr,
                     QStringLiteral("ipp://localhost/jobs/%1").arg(job).toUtf8().constData());
        ipp_t *response = cupsDoRequest(CUPS_HTTP_DEFAULT, request, "/");
        for (ipp_attribute_t *attribute = ippFirstAttribute(response); attribute != nullptr; attribute = ippNextAttribute(response)) {
            char value[1024];
            if (ippGetGroupTag(attribute) == IPP_TAG_JOB && ippGetName(attribute) != nullptr) {
                ippAttributeString(attribute, value, sizeof value);
                seen.append(QString::fromUtf8(ippGetName(attribute)) + u'=' + QString::fromUtf8(value));
            }
        }
        ippDelete(response);
        return seen;
    }

    // The options the filter saw for `job`, as "name=value".
    static QStringList optionsSeenByFilter(int job)
    {
        const std::optional<QByteArray> options = cupsd->optionsOfJob(job);
        if (!options)
            return {QStringLiteral("<the filter never ran>")};
        cups_option_t *parsed = nullptr;
        const int count = cupsParseOptions(options->constData(), 0, &parsed);
        QStringList seen;
        for (int i = 0; i < count; ++i)
            seen.append(QString::fromUtf8(parsed[i].name) + u'=' + QString::fromUtf8(parsed[i].value));
        cupsFreeOptions(count, parsed);
        return seen;
    }

    static inline bool colourQueued = false;
};

struct SettingRow {
    const char *name;
    std::function<void(PdePrintDialog &)> inDialog;
    std::function<void(QDialog &)> inProperties;
    std::vector<const char *> expected; // "name=value" the filter or the scheduler has
};

QComboBox *comboWithItem(QWidget *parent, const QString &text)
{
    for (QComboBox *combo : parent->findChildren<QComboBox *>()) {
        if (combo->findText(text) >= 0)
            return combo;
    }
    return nullptr;
}

void chooseItem(QComboBox *combo, const QString &text)
{
    while (combo->currentText() != text && combo->currentIndex() + 1 < combo->count())
        QTest::keyClick(combo, Qt::Key_Down);
}

TEST_F(PrintDialog, EverySettingReachesTheFilterAsQtsCupsPrintingSendsIt)
{
    const auto click = [](const char *name) {
        return [name](QWidget &dialog) {
            auto *button = dialog.findChild<QAbstractButton *>(QLatin1StringView(name));
            PrintDialog::clickTabOf(button);
            QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(4, button->height() / 2));
        };
    };
    const auto choose = [](const char *name, const char *item) {
        return [name, item](QWidget &dialog) {
            auto *combo = *name != '\0' ? dialog.findChild<QComboBox *>(QLatin1StringView(name))
                                        : comboWithItem(&dialog, QString::fromUtf8(item));
            PrintDialog::clickTabOf(combo);
            chooseItem(combo, QString::fromUtf8(item));
        };
    };
    const auto type = [](const char *name, const char *text) {
        return [name, text](QWidget &dialog) {
            PrintDialog::typeInto(dialog.findChild<QWidget *>(QLatin1StringView(name)), QString::fromUtf8(text));
        };
    };
    const SettingRow rows[] = {
        {"nothing chosen: not held although the queue holds jobs", {}, {},
         {"job-hold-until=no-hold", "media=A4", "orientation-requested=3", "copies=1", "sides=one-sided",
          "outputorder=normal", "print-color-mode=color"}},
        {"three collated copies", [&](PdePrintDialog &d) { type("copies", "3")(d); if (!d.findChild<QCheckBox *>(QStringLiteral("collate"))->isChecked()) click("collate")(d); },
         {}, {"copies=3", "Collate=true"}},
        {"pages 2 to 4", [&](PdePrintDialog &d) { click("printRange")(d); type("from", "2")(d); type("to", "4")(d); },
         {}, {"page-ranges=2-4"}},
        {"two-sided, short edge", click("duplexShort"), {}, {"sides=two-sided-short-edge"}},
        {"reverse order", click("reverse"), {}, {"outputorder=reverse"}},
        {"landscape", {}, click("landscape"), {"orientation-requested=4"}},
        {"US Letter", {}, choose("pageSizeCombo", "US Letter"), {"media=Letter"}},
        {"four pages per sheet", {}, choose("pagesPerSheetCombo", "4 (2x2)"), {"number-up=4", "number-up-layout=lrtb"}},
        {"grayscale from the PPD's colour model", {}, choose("", "Grayscale"), {"ColorModel=Gray", "print-color-mode=monochrome"}},
        {"paper from tray 2", {}, choose("", "Tray 2"), {"InputSlot=Tray2"}},
        {"billing information", {}, type("jobBillingLineEdit", "dept-7"), {"job-billing=dept-7"}},
        {"job priority", {}, type("jobPrioritySpinBox", "80"), {"job-priority=80"}},
        {"hold indefinitely", {}, choose("jobHoldComboBox", "Hold Indefinitely"),
         {"job-hold-until=indefinite", "job-state=pending-held"}},
    };
    for (const SettingRow &row : rows) {
        QPrinter printer;
        const std::unique_ptr<PdePrintDialog> dialog = openDialog(printer, kColour);
        if (row.inDialog)
            row.inDialog(*dialog);
        if (row.inProperties) {
            // Qt's Properties dialog is modal: it is driven once it shows.
            QTimer::singleShot(0, [&row] {
                auto *properties = qobject_cast<QDialog *>(QApplication::activeModalWidget());
                ASSERT_NE(properties, nullptr);
                row.inProperties(*properties);
                QTest::mouseClick(okButtonOf(properties), Qt::LeftButton);
            });
            QTest::mouseClick(dialog->findChild<QAbstractButton *>(QStringLiteral("properties")), Qt::LeftButton);
        }
        ASSERT_TRUE(clickPrint(*dialog)) << row.name;
        const pdehost::PrintOutcome outcome = dialog->printFiles({kDocument}, kTitle);
        ASSERT_EQ(outcome.error, QString()) << row.name;
        // The scheduler hands the filter the copies on their own and keeps
        // the priority and the hold to itself.
        const QStringList kept = jobAttributes(outcome.job);
        std::optional<QStringList> seen;
        for (const char *option : row.expected) {
            const QString expected = QString::fromUtf8(option);
            const bool scheduler = QStringList{QStringLiteral("copies"), QStringLiteral("job-priority"),
                                               QStringLiteral("job-hold-until"), QStringLiteral("job-state")}
                                       .contains(expected.section(u'=', 0, 0));
            if (!scheduler && !seen)
                seen = optionsSeenByFilter(outcome.job);
            const QStringList &where = scheduler ? kept : *seen;
            EXPECT_TRUE(where.contains(expected)) << row.name << ": " << option << " not in " << qPrintable(where.join(u' '));
        }
    }
}

TEST_F(PrintDialog, TheJobGoesToThePrinterOrFileChosen)
{
    QString error;
    pde::PrintSettings saved;
    saved.setValue(kPrefix + QStringLiteral("PrintType"), QStringLiteral("4"));
    saved.setValue(kPrefix + QStringLiteral("PrintTypeUserName"), QStringLiteral("saved-user"));
    ASSERT_TRUE(pdehost::updateLpOptions(pdehost::userLpOptionsPath(), kColour, saved, {}, &error)) << qPrintable(error);

    // Another printer under Name: its own panels with its saved settings.
    {
        QPrinter printer;
        const std::unique_ptr<PdePrintDialog> dialog = openDialog(printer, QStringLiteral("e2e"));
        QTest::keyClicks(dialog->findChild<QComboBox *>(QStringLiteral("printers")), kColour);
        ASSERT_NE(dialog->panels(), nullptr) << qPrintable(dialog->problem());
        EXPECT_EQ(dialog->panels()->session().destinationName(), kColour);
        ASSERT_NE(dialog->panelTab(0), nullptr);
        EXPECT_EQ(dialog->panelTab(0)->findChild<QLineEdit *>(QStringLiteral("userNameTextField"))->text(),
                  QStringLiteral("saved-user"));
        EXPECT_TRUE(dialog->summaryLines().contains(QStringLiteral("Printer: ") + kColour));
        ASSERT_TRUE(clickPrint(*dialog));
        const pdehost::PrintOutcome outcome = dialog->printFiles({kDocument}, kTitle);
        ASSERT_EQ(outcome.error, QString());
        EXPECT_TRUE(jobAttributes(outcome.job).filter(QStringLiteral("job-printer-uri=")).value(0).endsWith(QStringLiteral("/printers/") + kColour));
        EXPECT_EQ(recordSeenByFilter(outcome.job).value(2), QStringLiteral("saved-user"));
    }

    // Print to File: the text laid out into a PDF, then that PDF copied as
    // it is; no job either time.
    const auto jobCount = [] {
        cups_job_t *jobs = nullptr;
        const int count = cupsGetJobs2(CUPS_HTTP_DEFAULT, &jobs, nullptr, 0, CUPS_WHICHJOBS_ALL);
        cupsFreeJobs(count, jobs);
        return count;
    };
    const int jobsBefore = jobCount();
    QTemporaryDir folder;
    const QString rendered = folder.filePath(QStringLiteral("rendered.pdf"));
    const QString copied = folder.filePath(QStringLiteral("copied.pdf"));
    for (const auto &[input, output] : {std::pair{kDocument, rendered}, std::pair{rendered, copied}}) {
        QPrinter printer;
        const std::unique_ptr<PdePrintDialog> dialog = openDialog(printer, QStringLiteral("e2e"));
        auto *printers = dialog->findChild<QComboBox *>(QStringLiteral("printers"));
        chooseItem(printers, printers->itemText(printers->count() - 1));
        EXPECT_EQ(dialog->panelTab(0), nullptr) << "a file has no panels";
        typeInto(dialog->findChild<QLineEdit *>(QStringLiteral("filename")), output);
        ASSERT_TRUE(clickPrint(*dialog));
        const pdehost::PrintOutcome outcome = dialog->printFiles({input}, QFileInfo(input).fileName());
        EXPECT_EQ(outcome.error, QString()) << qPrintable(output);
        EXPECT_EQ(outcome.job, 0);
        QFile written(output);
        ASSERT_TRUE(written.open(QIODevice::ReadOnly)) << qPrintable(output);
        EXPECT_TRUE(written.read(5) == "%PDF-") << qPrintable(output);
    }
    QFile first(rendered);
    QFile second(copied);
    ASSERT_TRUE(first.open(QIODevice::ReadOnly) && second.open(QIODevice::ReadOnly));
    EXPECT_TRUE(first.readAll() == second.readAll()) << "a PDF is copied as it is";
    EXPECT_EQ(jobCount(), jobsBefore);
}

TEST_F(PrintDialog, SavedDefaultsStayPrivateKeepEmptyValuesAndCanBeCleared)
{
    QList<pde::Alert> alerts;
    const pde::AlertHandler previous = pde::setAlertHandler([&alerts](const pde::Alert &alert) { alerts.append(alert); });
    const QString systemFile = pdehost::systemLpOptionsPath();
    const bool systemFileExisted = QFileInfo::exists(systemFile);
    {
        QPrinter printer;
        const std::unique_ptr<PdePrintDialog> dialog = openDialog(printer, QStringLiteral("e2e"));
        QWidget *view = dialog->panels()->panels().front().panel->panelView();
        pdehost::PanelDriver driver(view);
        ASSERT_EQ(driver.enter(QStringLiteral("printType"), QStringLiteral("1")), std::nullopt);
        ASSERT_EQ(driver.enter(QStringLiteral("userName"), QString()), std::nullopt);

        // No user ID: the panel refuses, the dialog stays open on its tab
        // with the focus in the user ID.
        EXPECT_FALSE(clickPrint(*dialog));
        EXPECT_TRUE(dialog->isVisible());
        ASSERT_EQ(alerts.size(), 1);
        EXPECT_EQ(dialog->focusWidget(), view->findChild<QLineEdit *>(QStringLiteral("userNameTextField")));

        ASSERT_EQ(driver.enter(QStringLiteral("userName"), QStringLiteral("hanako")), std::nullopt);
        ASSERT_EQ(driver.enter(QStringLiteral("password"), QStringLiteral("9753")), std::nullopt);
        ASSERT_EQ(driver.enter(QStringLiteral("documentNameType"), QStringLiteral("1")), std::nullopt);
        ASSERT_EQ(driver.enter(QStringLiteral("documentName"), QString()), std::nullopt);
        auto *save = dialog->findChild<QCheckBox *>();
        QTest::mouseClick(save, Qt::LeftButton, {}, QPoint(4, save->height() / 2));
        EXPECT_TRUE(dialog->saveAsPrinterDefaults());
        ASSERT_TRUE(clickPrint(*dialog));
        const pdehost::PrintOutcome outcome = dialog->printFiles({kDocument}, kTitle);
        ASSERT_EQ(outcome.error, QString());
        EXPECT_EQ(recordSeenByFilter(outcome.job).value(2), QStringLiteral("hanako"));
    }
    pde::setAlertHandler(previous);

    // The user's own file, private; the system-wide one untouched.
    EXPECT_EQ(QFile::permissions(pdehost::userLpOptionsPath()) & 0x7077, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    EXPECT_EQ(QFileInfo::exists(systemFile), systemFileExisted);
    // The next dialog starts from them, the empty name still empty.
    QString error;
    EXPECT_FALSE(pdehost::PrinterSession::fromDestination(QStringLiteral("absent"), {}, &error));
    EXPECT_EQ(error, QStringLiteral("absent: no such printer")) << "nothing but what is wrong";
    std::unique_ptr<pdehost::PrinterSession> next = pdehost::PrinterSession::fromDestination(QStringLiteral("e2e"), {}, &error);
    ASSERT_TRUE(next) << qPrintable(error);
    EXPECT_EQ(next->printSettings()->value(kPrefix + QStringLiteral("PrintTypeUserName")), QVariant(QStringLiteral("hanako")));
    EXPECT_EQ(next->printSettings()->value(kPrefix + QStringLiteral("DocumentName")), QVariant(QString()));

    // Cleared from the Summary tab: the record leaves the file, whose mode
    // the user chose stays.
    ASSERT_TRUE(QFile::setPermissions(pdehost::userLpOptionsPath(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup));
    {
        QPrinter printer;
        const std::unique_ptr<PdePrintDialog> dialog = openDialog(printer, QStringLiteral("e2e"));
        clickTabOf(dialog->summaryTab());
        auto *clear = dialog->summaryTab()->findChild<QPushButton *>();
        QTest::mouseClick(clear, Qt::LeftButton);
        // With no user ID saved, the field starts with the login name again.
        EXPECT_EQ(dialog->panels()->panels().front().panel->panelView()->findChild<QLineEdit *>(QStringLiteral("userNameTextField"))->text(),
                  QString::fromLocal8Bit(::getpwuid(::getuid())->pw_name).left(8));
    }
    EXPECT_EQ(pdehost::lpOptionsFor(pdehost::userLpOptionsPath(), QStringLiteral("e2e")).keys(), QStringList());
    EXPECT_EQ(QFile::permissions(pdehost::userLpOptionsPath()) & 0x7077,
              QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup);
}

TEST_F(PrintDialog, OpensOnThePanelInTheUsersLanguageWithHelpAtHand)
{
    ASSERT_EQ(pdehost::installTranslations(QStringLiteral("ja")).missing, QStringList());
    QStringList helpPages;
    pde::HelpViewer &viewer = pde::HelpViewer::instance();
    const pde::HelpViewer::PageHandler previous = viewer.setPageHandler([&](const QString &book, const QUrl &page) {
        helpPages.append(page.fileName());
        viewer.showPageInWindow(book, page);
    });
    {
        QPrinter printer;
        const std::unique_ptr<PdePrintDialog> dialog = openDialog(printer, QStringLiteral("e2e"));
        dialog->hide();
        dialog->setWindowModality(Qt::ApplicationModal);
        dialog->show();
        QWidget *tab = dialog->panelTab(0);
        auto *tabs = qobject_cast<QTabWidget *>(dialog->summaryTab()->parentWidget()->parentWidget());
        EXPECT_TRUE(tab->isVisible()) << "the options are shown, the panel's tab in front";
        EXPECT_EQ(tabs->currentWidget(), tab);
        // Every tab's title fits in the tab bar at the dialog's size.
        for (int i = 0; i < tabs->count(); ++i)
            EXPECT_TRUE(tabs->tabBar()->rect().contains(tabs->tabBar()->tabRect(i))) << qPrintable(tabs->tabText(i));
        EXPECT_EQ(tabs->tabText(tabs->indexOf(dialog->summaryTab())), QStringLiteral(u"概要"));
        EXPECT_EQ(okButtonOf(dialog.get())->text(), QCoreApplication::translate("QPrintDialog", "&Print"));
        EXPECT_NE(QCoreApplication::translate("QPrintDialog", "&Print"), QStringLiteral("&Print"));
        EXPECT_TRUE(dialog->summaryLines().contains(QStringLiteral(u"部数: 1")));

        // One Help on the panel: its own, which opens its page above the
        // waiting dialog, usable, titled with the page's title.
        const QList<QPushButton *> buttons = tab->findChildren<QPushButton *>();
        EXPECT_EQ(buttons.size(), 2) << "the panel's Help and Defaults, nothing of the host's";
        QTest::mouseClick(tab->findChild<QPushButton *>(QStringLiteral("helpButton")), Qt::LeftButton);
        ASSERT_EQ(helpPages, QStringList{QStringLiteral("SecureJobType.html")});
        auto *window = dialog->findChild<QDialog *>(QString(), Qt::FindDirectChildrenOnly);
        ASSERT_NE(window, nullptr) << "the help window belongs to the waiting dialog";
        EXPECT_TRUE(window->isVisible());
        EXPECT_FALSE(window->isModal());
        EXPECT_EQ(window->windowTitle(), QStringLiteral(u"ジョブタイプ"));
        EXPECT_NE(window->findChild<QTextBrowser *>()->toPlainText(), QString());
        QTest::keyClick(window, Qt::Key_Escape);
        EXPECT_FALSE(window->isVisible());
    }
    viewer.setPageHandler(previous);
    pdehost::installTranslations(QStringLiteral("en"));
    pde::setPreferredLanguages(std::nullopt);
    QLocale::setDefault(QLocale::system());
}

TEST_F(PrintDialog, ARealXWindowShowsTheJobTypeTabWhole)
{
    const QString xvfb = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
    if (xvfb.isEmpty())
        GTEST_SKIP() << "Xvfb is not installed (Debian package xvfb; scripts/setup-deps installs it)";
    QProcess server;
    server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    server.start(xvfb, {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"), QStringLiteral("0"),
                        QStringLiteral("1280x1024x24"), QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    ASSERT_TRUE(server.waitForReadyRead(15000)) << "Xvfb did not start";
    const QString display = u':' + QString::fromLatin1(server.readLine().trimmed());

    QTemporaryDir folder;
    const QString picturePath = folder.filePath(QStringLiteral("dialog.png"));
    QProcess print;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), display);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    // Under AddressSanitizer: libxkbcommon-x11 copies the X server's
    // unterminated names with strndup, which the strict string check takes
    // for an overflow.
    if (environment.contains(QStringLiteral("ASAN_OPTIONS")))
        environment.insert(QStringLiteral("ASAN_OPTIONS"), environment.value(QStringLiteral("ASAN_OPTIONS")) + QStringLiteral(":strict_string_checks=0"));
    print.setProcessEnvironment(environment);
    print.start(QStringLiteral(PDE_PRINT_BINARY), {QStringLiteral("--bundle"), kBundle, QStringLiteral("--printer"),
                                                   QStringLiteral("e2e"), QStringLiteral("--lang"), QStringLiteral("ja"),
                                                   QStringLiteral("--screenshot"), picturePath, kDocument});
    const bool finished = print.waitForFinished(60000);
    server.terminate();
    server.waitForFinished(10000);
    ASSERT_TRUE(finished);
    ASSERT_EQ(print.exitCode(), 0) << print.readAllStandardError().constData();

    const QImage picture(picturePath);
    ASSERT_FALSE(picture.isNull());
    const auto rect = [](const QString &place) {
        const QStringList n = place.split(u',');
        return n.size() == 4 ? QRect(n[0].toInt(), n[1].toInt(), n[2].toInt(), n[3].toInt()) : QRect();
    };
    const QRect bar = rect(picture.text(QStringLiteral("Tab bar")));
    ASSERT_TRUE(picture.rect().contains(bar)) << "the tab bar is on screen";
    QRect jobType;
    for (int i = 0; !picture.text(QStringLiteral("Tab %1").arg(i)).isEmpty(); ++i) {
        const QString entry = picture.text(QStringLiteral("Tab %1").arg(i));
        EXPECT_TRUE(bar.contains(rect(entry.section(u'|', 1)))) << qPrintable(entry) << " is clipped";
        if (entry.startsWith(QStringLiteral(u"ジョブタイプ")))
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
