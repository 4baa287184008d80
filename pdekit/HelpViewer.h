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

class QTextBrowser;

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

    // Opens the page: through the installed handler, else in a help window
    // when there is a display, else by logging its location. Returns false,
    // logging which, for an unknown book or page; nothing opens then.
    bool gotoPage(const QString &bookName, const std::optional<QString> &pagePath,
                  const std::optional<QString> &anchor);

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
