// SPDX-License-Identifier: MIT
// The checked-in test bundle, fixture PPDs and the language override that the localization tests share.
#pragma once

#include "FixturePpd.h"

#include "text/CupsPpd.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <ostream>

class QWidget;

namespace pde {
class Bundle;
}

// Readable QString values in GoogleTest's failure messages.
void PrintTo(const QString &text, std::ostream *out);

namespace loctest {

// A fresh copy of Localization.plugin in a temporary folder. Bundles are
// registered by path for the life of the process, so each copy is a new
// bundle whose class registry no earlier test has filled.
class TestBundle
{
public:
    TestBundle();
    pde::Bundle *open() const;

private:
    QTemporaryDir m_dir;
};

using testsupport::Ppd;

// The text a widget shows: a group box's title, a pop-up's current item,
// the text of a label, field or button.
QString shownText(const QWidget *widget);

inline Ppd openPpd(const char *name)
{
    return testsupport::openFixturePpd(name);
}

// The language list is process-wide: each test sets its own and gives the
// environment's back, so that no test depends on the order tests run in.
class PreferredLanguagesOverride
{
public:
    explicit PreferredLanguagesOverride(const QStringList &languages);
    ~PreferredLanguagesOverride();
    PreferredLanguagesOverride(const PreferredLanguagesOverride &) = delete;
    PreferredLanguagesOverride &operator=(const PreferredLanguagesOverride &) = delete;
};

} // namespace loctest
