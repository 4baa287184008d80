// SPDX-License-Identifier: MIT
// Writing test bundles with libplist.
#include "TestBundle.h"

#include "pdekit/Bundle.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringEncoder>

#include <cstdlib>
#include <memory>
#include <plist/plist.h>

namespace testsupport {
namespace {

plist_t toPlist(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QVariantMap: {
        plist_t dict = plist_new_dict();
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            plist_dict_set_item(dict, it.key().toUtf8().constData(), toPlist(it.value()));
        return dict;
    }
    case QMetaType::QVariantList:
    case QMetaType::QStringList: {
        plist_t array = plist_new_array();
        for (const QVariant &item : value.toList())
            plist_array_append_item(array, toPlist(item));
        return array;
    }
    case QMetaType::Bool:
        return plist_new_bool(value.toBool() ? 1 : 0);
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        return plist_new_uint(value.toULongLong());
    case QMetaType::Double:
        return plist_new_real(value.toDouble());
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return plist_new_data(bytes.constData(), static_cast<uint64_t>(bytes.size()));
    }
    default:
        return plist_new_string(value.toString().toUtf8().constData());
    }
}

void writeFile(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        std::abort(); // a test that cannot write its fixture cannot mean anything
}

} // namespace

QByteArray propertyListData(const QVariant &value, PlistFormat format)
{
    plist_t root = toPlist(value);
    char *data = nullptr;
    uint32_t length = 0;
    if (format == PlistFormat::Xml)
        plist_to_xml(root, &data, &length);
    else
        plist_to_bin(root, &data, &length);
    QByteArray bytes(data, static_cast<qsizetype>(length));
    std::free(data);
    plist_free(root);
    return bytes;
}

QByteArray encodeText(const QString &text, TextEncoding encoding)
{
    switch (encoding) {
    case TextEncoding::Utf8:
        return text.toUtf8();
    case TextEncoding::Utf8WithBom:
        return QByteArray("\xEF\xBB\xBF") + text.toUtf8();
    case TextEncoding::Utf16LE: {
        QStringEncoder encoder(QStringEncoder::Utf16LE, QStringEncoder::Flag::WriteBom);
        return encoder(text);
    }
    case TextEncoding::Utf16BE: {
        QStringEncoder encoder(QStringEncoder::Utf16BE, QStringEncoder::Flag::WriteBom);
        return encoder(text);
    }
    }
    return {};
}

TestBundle::TestBundle(const QString &name) : m_path(m_dir.path() + u'/' + name)
{
    QDir().mkpath(m_path + QStringLiteral("/Contents/Resources"));
}

TestBundle &TestBundle::info(const QVariantMap &info, PlistFormat format)
{
    writeFile(m_path + QStringLiteral("/Contents/Info.plist"), propertyListData(info, format));
    return *this;
}

TestBundle &TestBundle::resource(const QString &relativePath, const QByteArray &content)
{
    writeFile(m_path + QStringLiteral("/Contents/Resources/") + relativePath, content);
    return *this;
}

TestBundle &TestBundle::strings(const QString &localization, const QString &table, const QString &text,
                                TextEncoding encoding)
{
    return resource(localization + QStringLiteral(".lproj/") + table + QStringLiteral(".strings"),
                    encodeText(text, encoding));
}

pde::Bundle *TestBundle::open() const
{
    return pde::Bundle::open(m_path);
}

} // namespace testsupport
