// SPDX-License-Identifier: MIT
// Copying the test bundle, opening fixture PPDs, overriding the preferred languages.
#include "LocalizationTestSupport.h"

#include "pdekit/Bundle.h"
#include "pdekit/PreferredLanguages.h"

#include <QComboBox>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QGroupBox>

#include <cstdlib>

void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace loctest {
namespace {

const QString kSource = QStringLiteral(LOCALIZATION_TEST_DIR "/Localization.plugin");

} // namespace

TestBundle::TestBundle()
{
    QDirIterator files(kSource, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString from = files.next();
        const QString to = m_dir.path() + QStringLiteral("/Localization.plugin") + from.mid(kSource.size());
        // A test without its bundle cannot mean anything.
        if (!QDir().mkpath(QFileInfo(to).absolutePath()) || !QFile::copy(from, to))
            std::abort();
    }
}

pde::Bundle *TestBundle::open() const
{
    return pde::Bundle::open(m_dir.path() + QStringLiteral("/Localization.plugin"));
}

QString shownText(const QWidget *widget)
{
    const char *property = qobject_cast<const QGroupBox *>(widget)   ? "title"
                           : qobject_cast<const QComboBox *>(widget) ? "currentText"
                                                                     : "text";
    return widget->property(property).toString();
}

PreferredLanguagesOverride::PreferredLanguagesOverride(const QStringList &languages)
{
    pde::setPreferredLanguages(languages);
}

PreferredLanguagesOverride::~PreferredLanguagesOverride()
{
    pde::setPreferredLanguages(std::nullopt);
}

} // namespace loctest
