// SPDX-License-Identifier: MIT
// The help book registry and its help window.
#include "pdekit/HelpViewer.h"

#include "pdekit/Bundle.h"
#include "pdekit/GuiAvailability.h"
#include "pdekit/PdeKitLogging.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHash>
#include <QPointer>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace pde {

struct HelpViewer::Private {
    struct Book {
        Bundle *bundle = nullptr;
        QString folder;
    };
    QHash<QString, Book> books;
    PageHandler handler;
    // Deleted when the user closes it, with the dialog it belongs to, or by
    // the application's clean-up.
    QPointer<QDialog> window;
    QPointer<QTextBrowser> browser;
    QString bookName; // of the page shown
    void showTitle()
    {
        const QString title = browser->documentTitle();
        window->setWindowTitle(title.isEmpty() ? bookName : title);
    }
};

HelpViewer::HelpViewer() : d(std::make_unique<Private>()) {}

HelpViewer::~HelpViewer() = default;

HelpViewer &HelpViewer::instance()
{
    static HelpViewer viewer;
    return viewer;
}

bool HelpViewer::registerHelpBook(const QUrl &bundleURL)
{
    Bundle *bundle = bundleURL.isLocalFile() ? Bundle::open(bundleURL.toLocalFile()) : nullptr;
    if (bundle == nullptr) {
        qCWarning(lcPdeHelp, "cannot register the help book of %s: not a bundle",
                  qUtf8Printable(bundleURL.toString()));
        return false;
    }
    const QVariant name = bundle->objectForInfoDictionaryKey(QStringLiteral("CFBundleHelpBookName"));
    if (name.typeId() != QMetaType::QString || name.toString().isEmpty()) {
        qCWarning(lcPdeHelp, "%s declares no help book (CFBundleHelpBookName)",
                  qUtf8Printable(bundle->bundlePath()));
        return false;
    }
    QString folder = bundle->objectForInfoDictionaryKey(QStringLiteral("CFBundleHelpBookFolder")).toString();
    if (folder.isEmpty())
        folder = name.toString();
    d->books.insert(name.toString(), Private::Book{bundle, folder});
    return true;
}

std::optional<QUrl> HelpViewer::resolvePage(const QString &bookName,
                                            const std::optional<QString> &pagePath,
                                            const std::optional<QString> &anchor) const
{
    const auto book = d->books.constFind(bookName);
    if (book == d->books.cend())
        return std::nullopt;
    const QString page = pagePath && !pagePath->isEmpty() ? *pagePath : QStringLiteral("index.html");
    const std::optional<QString> path =
        book->bundle->pathForResource(page, {}, book->folder, Bundle::Search::LocalizedFirst);
    if (!path)
        return std::nullopt;
    QUrl url = QUrl::fromLocalFile(*path);
    if (anchor && !anchor->isEmpty())
        url.setFragment(*anchor);
    return url;
}

bool HelpViewer::gotoPage(const QString &bookName, const std::optional<QString> &pagePath,
                          const std::optional<QString> &anchor)
{
    if (!d->books.contains(bookName)) {
        qCWarning(lcPdeHelp, "help book \"%s\" is not registered", qUtf8Printable(bookName));
        return false;
    }
    const std::optional<QUrl> page = resolvePage(bookName, pagePath, anchor);
    if (!page) {
        qCWarning(lcPdeHelp, "help book \"%s\" has no page \"%s\"", qUtf8Printable(bookName),
                  qUtf8Printable(pagePath.value_or(QStringLiteral("index.html"))));
        return false;
    }
    if (d->handler) {
        d->handler(bookName, *page);
    } else if (hasInteractiveDisplay()) {
        showPageInWindow(bookName, *page);
    } else {
        qCInfo(lcPdeHelp, "help page: %s", qUtf8Printable(page->toString()));
    }
    return true;
}

QWidget *HelpViewer::showPageInWindow(const QString &bookName, const QUrl &page)
{
    // A window of the dialog that waits for the user is not blocked by it;
    // one of another window would be, and could not be scrolled or closed.
    QWidget *owner = QApplication::activeModalWidget();
    if (owner == nullptr)
        owner = QApplication::activeWindow();
    if (d->window && d->window->parentWidget() != owner)
        delete d->window.data();
    if (!d->window) {
        auto *window = new QDialog(owner);
        window->setAttribute(Qt::WA_DeleteOnClose);
        window->setModal(false);
        window->setSizeGripEnabled(true);
        auto *layout = new QVBoxLayout(window);
        auto *browser = new QTextBrowser(window);
        browser->setOpenExternalLinks(true);
        layout->addWidget(browser);
        auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, window);
        QObject::connect(buttons, &QDialogButtonBox::rejected, window, &QDialog::close);
        layout->addWidget(buttons);
        QObject::connect(browser, &QTextBrowser::sourceChanged, window, [this] { d->showTitle(); });
        window->resize(640, 560);
        static const bool cleanedUp = (qAddPostRoutine([] { delete HelpViewer::instance().d->window.data(); }), true);
        Q_UNUSED(cleanedUp);
        d->window = window;
        d->browser = browser;
    }
    d->bookName = bookName;
    d->browser->setSource(page);
    d->showTitle();
    d->window->show();
    d->window->raise();
    d->window->activateWindow();
    return d->window;
}

HelpViewer::PageHandler HelpViewer::setPageHandler(PageHandler handler)
{
    PageHandler previous = std::move(d->handler);
    d->handler = std::move(handler);
    return previous;
}

QStringList HelpViewer::registeredBooks() const
{
    return d->books.keys();
}

} // namespace pde
