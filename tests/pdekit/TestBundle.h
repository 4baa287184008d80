// SPDX-License-Identifier: MIT
// Bundle directories made in a temporary folder, for tests of the platform
// layer: Info.plist in XML or binary form, resources, strings tables.
#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <QVariantMap>

namespace pde {
class Bundle;
}

namespace testsupport {

enum class PlistFormat { Xml, Binary };
enum class TextEncoding { Utf8, Utf8WithBom, Utf16LE, Utf16BE };

// The property list of a Qt value (maps, lists, strings, integers, reals,
// booleans, byte arrays) in the given format.
QByteArray propertyListData(const QVariant &value, PlistFormat format);

// Text in the given encoding, with a byte-order mark for the UTF-16 forms.
QByteArray encodeText(const QString &text, TextEncoding encoding);

class TestBundle
{
public:
    // A bundle folder `name` (e.g. "Sample.plugin") in a new temporary folder.
    explicit TestBundle(const QString &name = QStringLiteral("Sample.plugin"));

    // Writes Contents/Info.plist.
    TestBundle &info(const QVariantMap &info, PlistFormat format = PlistFormat::Xml);
    // Writes Contents/Resources/<relativePath>, making folders as needed.
    TestBundle &resource(const QString &relativePath, const QByteArray &content);
    // Writes Contents/Resources/<localization>.lproj/<table>.strings.
    TestBundle &strings(const QString &localization, const QString &table, const QString &text,
                        TextEncoding encoding = TextEncoding::Utf8);

    QString path() const { return m_path; }
    // Opens (and registers) the bundle.
    pde::Bundle *open() const;

private:
    QTemporaryDir m_dir;
    QString m_path;
};

} // namespace testsupport
