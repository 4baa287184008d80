// SPDX-License-Identifier: MIT
// Reading and rewriting lpoptions files line by line.
#include "host/LpOptions.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

#include <algorithm>
#include <utility>

namespace pdehost {
namespace {

struct Line {
    QString text;         // as read, without its line break
    bool matches = false; // a Dest or Default line of the destination
    QString keyword;      // of a matching line: Dest or Default, as written
    QString name;         // of a matching line: the destination as written
    QString options;      // of a matching line: its options
};

// Splits "Dest NAME[/INSTANCE] options" into its three parts; false for any
// other line (comments, blank lines, unknown keywords).
bool splitDestLine(const QString &text, QString *destination, QString *options, QString *keywordFound = nullptr)
{
    static const QRegularExpression space(QStringLiteral("\\s"));
    const QString trimmed = text.trimmed();
    if (trimmed.startsWith(u'#'))
        return false;
    const qsizetype keywordEnd = trimmed.indexOf(space);
    const QString keyword = trimmed.left(keywordEnd);
    if (keywordEnd < 0 || (keyword.compare(u"Dest", Qt::CaseInsensitive) != 0
                           && keyword.compare(u"Default", Qt::CaseInsensitive) != 0))
        return false;
    const QString rest = trimmed.mid(keywordEnd).trimmed();
    const qsizetype nameEnd = rest.indexOf(space);
    *destination = rest.left(nameEnd);
    *options = nameEnd < 0 ? QString() : rest.mid(nameEnd).trimmed();
    if (keywordFound != nullptr)
        *keywordFound = keyword;
    return true;
}

bool sameDestination(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

} // namespace

QString userLpOptionsPath()
{
    return QDir::homePath() + QStringLiteral("/.cups/lpoptions");
}

QString systemLpOptionsPath()
{
    const QString root = qEnvironmentVariable("CUPS_SERVERROOT", QStringLiteral("/etc/cups"));
    return root + QStringLiteral("/lpoptions");
}

pde::PrintSettings lpOptionsFor(const QString &path, const QString &destination)
{
    pde::PrintSettings found;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return found;
    const QString printer = destination.section(u'/', 0, 0);
    // The printer's own line first, then the instance's, as CUPS reads them.
    QList<QString> printerLines;
    QList<QString> instanceLines;
    while (!file.atEnd()) {
        QString name;
        QString options;
        if (!splitDestLine(QString::fromUtf8(file.readLine()), &name, &options))
            continue;
        if (sameDestination(name, destination))
            (destination == printer ? printerLines : instanceLines).append(options);
        else if (sameDestination(name, printer))
            printerLines.append(options);
    }
    for (const QString &options : printerLines + instanceLines) {
        const pde::PrintSettings parsed = pde::PrintSettings::fromOptionString(options);
        for (const QString &key : parsed.keys())
            found.setValue(key, *parsed.value(key));
    }
    return found;
}

bool updateLpOptions(const QString &path, const QString &destination, const pde::PrintSettings &set,
                     const QStringList &removed, QString *error)
{
    QList<Line> lines;
    pde::PrintSettings options;
    QFile existing(path);
    const bool exists = existing.exists();
    if (exists) {
        if (!existing.open(QIODevice::ReadOnly | QIODevice::Text)) {
            *error = QCoreApplication::translate("pdehost::LpOptions", "%1: cannot be read: %2")
                         .arg(path, existing.errorString());
            return false;
        }
        while (!existing.atEnd()) {
            Line line;
            line.text = QString::fromUtf8(existing.readLine());
            line.text.chop(line.text.endsWith(u'\n') ? 1 : 0);
            line.matches = splitDestLine(line.text, &line.name, &line.options, &line.keyword)
                           && sameDestination(line.name, destination);
            if (line.matches) {
                const pde::PrintSettings parsed = pde::PrintSettings::fromOptionString(line.options);
                for (const QString &key : parsed.keys())
                    options.setValue(key, *parsed.value(key));
            }
            lines.append(line);
        }
        existing.close();
    }
    for (const QString &key : set.keys())
        options.setValue(key, *set.value(key));
    for (const QString &key : removed)
        options.remove(key);

    // The destination's options go into its first line, its other lines go;
    // a Default line among them keeps it the user's default printer.
    const auto isDefault = [](const Line &line) {
        return line.matches && line.keyword.compare(u"Default", Qt::CaseInsensitive) == 0;
    };
    const auto defaultLine = std::find_if(lines.cbegin(), lines.cend(), isDefault);
    QByteArray content;
    bool written = false;
    for (const Line &line : lines) {
        if (!line.matches) {
            content += line.text.toUtf8() + '\n';
            continue;
        }
        if (std::exchange(written, true))
            continue;
        const QString keyword = defaultLine != lines.cend() ? defaultLine->keyword : line.keyword;
        if (!options.isEmpty() || defaultLine != lines.cend())
            content += (keyword + u' ' + line.name + (options.isEmpty() ? QString() : u' ' + options.toOptionString()))
                           .toUtf8()
                       + '\n';
    }
    if (!written && !options.isEmpty())
        content += (QStringLiteral("Dest ") + destination + u' ' + options.toOptionString()).toUtf8() + '\n';

    // A new folder is the user's alone, like the file.
    const QString folder = QFileInfo(path).absolutePath();
    if (!QFileInfo::exists(folder)
        && (!QDir().mkpath(folder)
            || !QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner))) {
        *error = QCoreApplication::translate("pdehost::LpOptions", "%1: its folder cannot be made").arg(path);
        return false;
    }
    const QFileDevice::Permissions mode =
        exists ? QFile::permissions(path) : QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(mode) || file.write(content) != content.size()
        || !file.commit()) {
        *error = QCoreApplication::translate("pdehost::LpOptions", "%1: cannot be written: %2")
                     .arg(path, file.errorString());
        return false;
    }
    return true;
}

} // namespace pdehost
