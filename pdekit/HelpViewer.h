// SPDX-License-Identifier: MIT
// Help books carried in bundles: registration by bundle location, and pages
// opened by book name, page path and anchor.
#pragma once

#include "pdekit/PdeKitExport.h"

#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

class QWidget;

namespace pde {

class PDEKIT_EXPORT HelpViewer
{
public:
    // Shows a resolved page; a host or a test installs one to take pages over.
    using PageHandler = std::function<void(const QString &bookName, const QUrl &page)>;

    static HelpViewer &instance();

    // Registers the help book of the bundle at `bundleURL`: its name from the
    // (localized) information dictionary key "CFBundleHelpBookName", its
    // folder in the resources from "CFBundleHelpBookFolder" (the book name
    // when missing). Registering again replaces the earlier entry. Returns
    // false, logging why, when the bundle or its book name is missing.
    bool registerHelpBook(const QUrl &bundleURL);

    // The page `pagePath` (index.html when nullopt or empty) of the book, in
    // the user's language where the book has it, with `anchor` as fragment;
    // nullopt when the book is not registered or has no such page.
    std::optional<QUrl> resolvePage(const QString &bookName, const std::optional<QString> &pagePath,
                                    const std::optional<QString> &anchor) const;

    // Opens the page: through the installed handler, else in the help window
    // when there is a display, else by logging its location. Returns false,
    // logging which, for an unknown book or page; nothing opens then.
    bool gotoPage(const QString &bookName, const std::optional<QString> &pagePath,
                  const std::optional<QString> &anchor);

    // Shows `page` in the help window and returns it: a window of the dialog
    // that is modal now (or of the active window), so that it stays above it
    // and takes input while that dialog waits, without being modal itself;
    // it scrolls, follows links, closes with Close or Escape, and is titled
    // with the page's title (the book name when the page has none). One
    // window serves every page; it goes when closed or with its dialog.
    QWidget *showPageInWindow(const QString &bookName, const QUrl &page);

    // Installs the page handler; an empty one restores the default. Returns
    // the previous handler.
    PageHandler setPageHandler(PageHandler handler);

    QStringList registeredBooks() const;

private:
    HelpViewer();
    ~HelpViewer();
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace pde
