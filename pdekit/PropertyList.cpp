// SPDX-License-Identifier: MIT
// libplist behind Qt types.
#include "pdekit/PropertyList.h"

#include "pdekit/PropertyListItems.h"
#include "pdekit/ResourceFile.h"

#include <QDateTime>
#include <QTimeZone>
#include <QVariantList>
#include <QVariantMap>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <optional>
#include <plist/plist.h>
#include <utility>
#include <vector>

namespace pde {
namespace {

// Property-list dates count seconds from 2001-01-01 00:00:00 UTC.
constexpr qint64 kPropertyListEpoch = 978307200;

struct CharFree {
    void operator()(char *text) const noexcept { std::free(text); }
};

bool fail(QString *error, const QString &why)
{
    if (error != nullptr)
        *error = why;
    return false;
}

// An XML list has one "<array" or "<dict" for each of its containers, so
// their number bounds the nesting before libplist builds anything.
bool xmlIsBounded(QByteArrayView data, QString *error)
{
    qsizetype containers = 0;
    for (const QByteArrayView tag : {QByteArrayView("<array"), QByteArrayView("<dict")}) {
        for (qsizetype at = data.indexOf(tag); at >= 0; at = data.indexOf(tag, at + 1))
            ++containers;
    }
    if (containers > kMaxPropertyListContainers)
        return fail(error, QStringLiteral("holds more than %1 arrays and dictionaries").arg(kMaxPropertyListContainers));
    return true;
}

// The objects of a binary list ("bplist00", objects, offset table, 32-byte
// trailer) as libplist reads them: containers (arrays, sets, dictionaries)
// refer to other objects by index, so one object may be reached many times.
class BinaryListShape
{
public:
    explicit BinaryListShape(QByteArrayView data) : m_data(data) {}

    // Walks the references from the top object without recursion: refuses a
    // list that is malformed, refers to itself, nests deeper than allowed or
    // expands to too many values.
    bool check(QString *error)
    {
        constexpr qsizetype kTrailer = 32;
        if (m_data.size() < 8 + kTrailer)
            return fail(error, QStringLiteral("is not a property list"));
        const qsizetype trailer = m_data.size() - kTrailer;
        m_offsetSize = byteAt(trailer + 6);
        m_refSize = byteAt(trailer + 7);
        const quint64 objects = number(trailer + 8, 8);
        const quint64 top = number(trailer + 16, 8);
        const quint64 table = number(trailer + 24, 8);
        if (m_offsetSize < 1 || m_offsetSize > 8 || m_refSize < 1 || m_refSize > 8
            || objects > static_cast<quint64>(m_data.size()) || top >= objects
            || table > static_cast<quint64>(trailer) || objects * m_offsetSize > static_cast<quint64>(trailer) - table)
            return fail(error, QStringLiteral("is not a property list"));
        m_table = static_cast<qsizetype>(table);
        m_objects = static_cast<qsizetype>(objects);

        // Per object: depth and number of values below and including it,
        // once known; the walk keeps the path it is on.
        enum class State : unsigned char { New, OnPath, Done };
        std::vector<State> state(static_cast<std::size_t>(m_objects), State::New);
        std::vector<int> depth(static_cast<std::size_t>(m_objects), 0);
        std::vector<qint64> values(static_cast<std::size_t>(m_objects), 0);
        struct Frame {
            qsizetype object;
            bool container;
            std::vector<qsizetype> children;
            std::size_t next = 0;
        };
        std::vector<Frame> path;
        const auto enter = [&](qsizetype object) {
            Frame frame{object, false, {}};
            if (!childrenOf(object, &frame.container, &frame.children))
                return false;
            state[static_cast<std::size_t>(object)] = State::OnPath;
            path.push_back(std::move(frame));
            return true;
        };
        if (!enter(static_cast<qsizetype>(top)))
            return fail(error, QStringLiteral("is not a property list"));
        while (!path.empty()) {
            Frame &frame = path.back();
            if (frame.next < frame.children.size()) {
                const qsizetype child = frame.children[frame.next++];
                switch (state[static_cast<std::size_t>(child)]) {
                case State::OnPath:
                    return fail(error, QStringLiteral("is a binary property list that contains itself"));
                case State::Done:
                    break;
                case State::New:
                    // The path holds containers, and a leaf at its end.
                    if (static_cast<int>(path.size()) > kMaxPropertyListDepth)
                        return tooDeep(error);
                    if (!enter(child))
                        return fail(error, QStringLiteral("is not a property list"));
                    break;
                }
                continue;
            }
            const std::size_t object = static_cast<std::size_t>(frame.object);
            int deepest = 0;
            qint64 count = 1;
            for (const qsizetype child : frame.children) {
                deepest = std::max(deepest, depth[static_cast<std::size_t>(child)]);
                count = std::min(count + values[static_cast<std::size_t>(child)], kMaxPropertyListValues + 1);
            }
            depth[object] = frame.container ? deepest + 1 : 0;
            values[object] = count;
            state[object] = State::Done;
            path.pop_back();
        }
        if (depth[static_cast<std::size_t>(top)] > kMaxPropertyListDepth)
            return tooDeep(error);
        if (values[static_cast<std::size_t>(top)] > kMaxPropertyListValues)
            return fail(error, QStringLiteral("expands to more than %1 values").arg(kMaxPropertyListValues));
        return true;
    }

private:
    static bool tooDeep(QString *error)
    {
        return fail(error, QStringLiteral("nests arrays and dictionaries more than %1 deep").arg(kMaxPropertyListDepth));
    }

    unsigned byteAt(qsizetype at) const { return static_cast<unsigned char>(m_data[at]); }

    // The big-endian number of `size` bytes at `at` (inside the data).
    quint64 number(qsizetype at, unsigned size) const
    {
        quint64 value = 0;
        for (unsigned i = 0; i < size; ++i)
            value = value << 8 | byteAt(at + i);
        return value;
    }

    // Where the object starts; -1 when its offset is outside the data.
    qsizetype offsetOf(qsizetype object) const
    {
        const quint64 offset = number(m_table + object * m_offsetSize, m_offsetSize);
        return offset < static_cast<quint64>(m_table) ? static_cast<qsizetype>(offset) : -1;
    }

    // Whether the object is a container, and the objects it refers to (keys
    // and values of a dictionary). False when the object is malformed.
    // The count of an object whose marker is at `at` (the low four bits of
    // the marker, or an integer object after it when they are all set) and
    // where its contents begin; nullopt when that runs past the objects.
    std::optional<std::pair<quint64, qsizetype>> countOf(qsizetype at) const
    {
        const quint64 count = byteAt(at++) & 0xF;
        if (count != 0xF)
            return std::pair{count, at};
        // 0x1n, then 2^n bytes.
        if (at >= m_table || (byteAt(at) >> 4) != 0x1 || (byteAt(at) & 0xF) > 3)
            return std::nullopt;
        const unsigned size = 1u << (byteAt(at) & 0xF);
        if (at + 1 + size > m_table)
            return std::nullopt;
        return std::pair{number(at + 1, size), at + 1 + size};
    }

    // Whether the object is a container, and the objects it refers to (keys
    // and values of a dictionary). False when the object is malformed.
    bool childrenOf(qsizetype object, bool *container, std::vector<qsizetype> *children) const
    {
        const qsizetype at = offsetOf(object);
        if (at < 0)
            return false;
        const unsigned type = byteAt(at) >> 4;
        *container = type >= 0xA && type <= 0xD;
        if (!*container)
            return true;
        const auto counted = countOf(at);
        if (!counted)
            return false;
        const auto [count, contents] = *counted;
        const quint64 refs = type == 0xD ? count * 2 : count;
        if (count > static_cast<quint64>(m_table) || refs * m_refSize > static_cast<quint64>(m_table - contents))
            return false;
        children->reserve(static_cast<std::size_t>(refs));
        for (quint64 i = 0; i < refs; ++i) {
            const quint64 ref = number(contents + static_cast<qsizetype>(i * m_refSize), m_refSize);
            if (ref >= static_cast<quint64>(m_objects))
                return false;
            // A dictionary's keys come first.
            if (type == 0xD && i < count && !isKey(static_cast<qsizetype>(ref)))
                return false;
            children->push_back(static_cast<qsizetype>(ref));
        }
        return true;
    }

    // A string (ASCII or UTF-16) without a zero character: libplist aborts
    // when it walks a dictionary whose key is anything else.
    bool isKey(qsizetype object) const
    {
        const qsizetype at = offsetOf(object);
        const unsigned type = at >= 0 ? byteAt(at) >> 4 : 0;
        if (type != 0x5 && type != 0x6)
            return false;
        const auto counted = countOf(at);
        const qsizetype unit = type == 0x6 ? 2 : 1;
        if (!counted || counted->first > static_cast<quint64>(m_table - counted->second) / static_cast<quint64>(unit))
            return false;
        for (qsizetype i = 0; i < static_cast<qsizetype>(counted->first); ++i) {
            if (number(counted->second + i * unit, static_cast<unsigned>(unit)) == 0)
                return false;
        }
        return true;
    }

    QByteArrayView m_data;
    unsigned m_offsetSize = 0;
    unsigned m_refSize = 0;
    qsizetype m_table = 0;
    qsizetype m_objects = 0;
};

// The depth of arrays and dictionaries in a parsed tree, walked without
// recursion; stops counting past kMaxPropertyListDepth.
int nestingDepth(plist_t root)
{
    std::vector<std::pair<plist_t, int>> pending{{root, 0}};
    int deepest = 0;
    while (!pending.empty()) {
        const auto [node, above] = pending.back();
        pending.pop_back();
        const plist_type type = plist_get_node_type(node);
        if (type != PLIST_ARRAY && type != PLIST_DICT)
            continue;
        const int depth = above + 1;
        deepest = std::max(deepest, depth);
        if (depth > kMaxPropertyListDepth)
            break;
        if (type == PLIST_ARRAY) {
            for (uint32_t i = 0; i < plist_array_get_size(node); ++i)
                pending.emplace_back(plist_array_get_item(node, i), depth);
            continue;
        }
        forEachDictionaryItem(node, [&pending, depth](const char *, plist_t value) { pending.emplace_back(value, depth); });
    }
    return deepest;
}

QVariant valueOf(plist_t plist);

} // namespace

void PropertyListFree::operator()(void *node) const noexcept
{
    plist_free(static_cast<plist_t>(node));
}

PropertyListNode parsePropertyList(QByteArrayView data, QString *error)
{
    if (data.isEmpty() || data.size() > std::numeric_limits<uint32_t>::max()) {
        fail(error, QStringLiteral("is not a property list"));
        return {};
    }
    if (isBinaryPropertyList(data) ? !BinaryListShape(data).check(error) : !xmlIsBounded(data, error))
        return {};
    plist_t root = nullptr;
    plist_from_memory(data.data(), static_cast<uint32_t>(data.size()), &root);
    PropertyListNode node(root);
    if (!node) {
        fail(error, QStringLiteral("is not a property list"));
        return {};
    }
    if (nestingDepth(root) > kMaxPropertyListDepth) {
        fail(error, QStringLiteral("nests arrays and dictionaries more than %1 deep").arg(kMaxPropertyListDepth));
        return {};
    }
    return node;
}

bool isBinaryPropertyList(QByteArrayView data)
{
    if (data.size() > std::numeric_limits<uint32_t>::max())
        return false;
    return plist_is_binary(data.data(), static_cast<uint32_t>(data.size())) != 0;
}

QVariant propertyListValue(void *node)
{
    if (node == nullptr || nestingDepth(static_cast<plist_t>(node)) > kMaxPropertyListDepth)
        return {};
    return valueOf(static_cast<plist_t>(node));
}

namespace {

// The value of a node whose nesting was checked.
QVariant valueOf(plist_t plist)
{
    switch (plist_get_node_type(plist)) {
    case PLIST_BOOLEAN: {
        uint8_t value = 0;
        plist_get_bool_val(plist, &value);
        return value != 0;
    }
    case PLIST_UINT: {
        uint64_t value = 0;
        plist_get_uint_val(plist, &value);
        return QVariant::fromValue<qulonglong>(value);
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(plist, &value);
        return value;
    }
    case PLIST_STRING:
    case PLIST_KEY: {
        uint64_t length = 0;
        const char *text = plist_get_string_ptr(plist, &length);
        return QString::fromUtf8(text, static_cast<qsizetype>(length));
    }
    case PLIST_ARRAY: {
        QVariantList list;
        const uint32_t size = plist_array_get_size(plist);
        list.reserve(size);
        for (uint32_t i = 0; i < size; ++i)
            list.append(valueOf(plist_array_get_item(plist, i)));
        return list;
    }
    case PLIST_DICT: {
        QVariantMap map;
        forEachDictionaryItem(plist, [&map](const char *key, plist_t value) {
            map.insert(QString::fromUtf8(key), valueOf(value));
        });
        return map;
    }
    case PLIST_DATE: {
        int32_t seconds = 0;
        int32_t microseconds = 0;
        plist_get_date_val(plist, &seconds, &microseconds);
        // libplist truncates the seconds toward zero and gives the fraction
        // without its sign, so before the epoch the fraction counts back.
        const qint64 fraction = (seconds < 0 ? -1 : 1) * static_cast<qint64>(microseconds) / 1000;
        return QDateTime::fromMSecsSinceEpoch((kPropertyListEpoch + seconds) * 1000 + fraction, QTimeZone::utc());
    }
    case PLIST_DATA: {
        uint64_t length = 0;
        const char *data = plist_get_data_ptr(plist, &length);
        return QByteArray(data, static_cast<qsizetype>(length));
    }
    case PLIST_UID: {
        uint64_t value = 0;
        plist_get_uid_val(plist, &value);
        return QVariant::fromValue<qulonglong>(value);
    }
    case PLIST_NONE:
        break;
    }
    return {};
}

} // namespace

QByteArray xmlPropertyList(void *node)
{
    if (node == nullptr)
        return {};
    char *xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(static_cast<plist_t>(node), &xml, &length);
    const std::unique_ptr<char, CharFree> owned(xml);
    return xml != nullptr ? QByteArray(xml, static_cast<qsizetype>(length)) : QByteArray();
}

std::optional<QVariant> readPropertyListFile(const QString &path, QString *error)
{
    const ResourceFile file = readResourceFile(path);
    if (!file.contents) {
        fail(error, file.error);
        return std::nullopt;
    }
    const PropertyListNode root = parsePropertyList(*file.contents, error);
    if (!root)
        return std::nullopt;
    return propertyListValue(root.get());
}

} // namespace pde
