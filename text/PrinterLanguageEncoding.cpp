// SPDX-License-Identifier: MIT
// Printer language encoding choice and the byte-escaped stored form.
#include "text/PrinterLanguageEncoding.h"

#include "text/LeadingInteger.h"
#include "text/PpdAttribute.h"
#include "text/StringConversion.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdio>
#include <cstring>
#include <span>
#include <string_view>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

// A zero-terminated byte string of at most 255 bytes, as the driver's
// protocol has always bounded the user texts.
constexpr std::size_t kCStringCapacity = 255;

// The escaped form stops taking bytes at this many characters...
constexpr std::size_t kEscapedMark = 1023;
// ...but keeps the entry that crossed it whole; "/-128" is the longest entry.
constexpr std::size_t kLongestEntry = 5;
constexpr std::size_t kEscapedCapacity = kEscapedMark - 1 + kLongestEntry;

constexpr std::string_view kSignificantCharacters = ",'\\/";

// The escaped entry of every byte value ("/" and the byte read as a signed
// 8-bit number in decimal), made once at compile time.
struct EscapedEntry {
    std::array<char, kLongestEntry> text{};
    std::size_t length = 0;
};

constexpr std::array<EscapedEntry, 256> kEscapedEntries = [] {
    std::array<EscapedEntry, 256> entries{};
    for (int byte = 0; byte < 256; ++byte) {
        EscapedEntry &entry = entries[static_cast<std::size_t>(byte)];
        const int value = byte < 128 ? byte : byte - 256;
        entry.text[entry.length++] = '/';
        if (value < 0)
            entry.text[entry.length++] = '-';
        const int magnitude = value < 0 ? -value : value;
        if (magnitude >= 100)
            entry.text[entry.length++] = static_cast<char>('0' + magnitude / 100);
        if (magnitude >= 10)
            entry.text[entry.length++] = static_cast<char>('0' + magnitude / 10 % 10);
        entry.text[entry.length++] = static_cast<char>('0' + magnitude % 10);
    }
    return entries;
}();

struct EncodingName {
    std::string_view ppdValue;
    StringEncoding encoding;
};

constexpr std::array<EncodingName, 4> kEncodingNames{{
    {"UTF-8", StringEncoding::UTF8},
    {"JIS83-RKSJ", StringEncoding::ShiftJIS_X0213},
    {"ISOLatin1", StringEncoding::ISOLatin1},
    {"WindowsANSI", StringEncoding::WindowsLatin1},
}};

constexpr std::array<bool, 256> kSignificant = [] {
    std::array<bool, 256> table{};
    for (const char c : kSignificantCharacters)
        table[static_cast<unsigned char>(c)] = true;
    return table;
}();

bool isSignificant(unsigned char byte) noexcept
{
    return kSignificant[byte];
}

struct ParsedEntry {
    int value = 0;
    std::size_t end = 0; // where the number stopped
};

// atoi's reading of the entry at text[from] (leading white space, an
// optional sign, decimal digits, 0 when there are none), saturating where
// atoi would overflow. A "/" stops it like any other non-digit.
ParsedEntry parseEntry(std::span<const unsigned char> text, std::size_t from) noexcept
{
    // What the encoder writes: an optional minus and one to three digits,
    // then the separator or the end. Read directly; anything else (white
    // space, a plus sign, long or stray digits) takes the general reading.
    std::size_t i = from;
    const bool negative = i < text.size() && text[i] == '-';
    if (negative)
        ++i;
    int value = 0;
    const std::size_t digits = i;
    while (i < text.size() && i - digits < 3 && text[i] >= '0' && text[i] <= '9')
        value = value * 10 + (text[i++] - '0');
    if (i > digits && (i == text.size() || text[i] == '/'))
        return {negative ? -value : value, i};

    const LeadingInteger number =
        parseLeadingInteger(text, from, [](unsigned char c) { return isCSpace(codeOf(c)); });
    return {saturatedInt(number.value), number.end};
}

// Length of the zero-terminated string at the start of `bytes`.
std::size_t cStringLength(std::span<const unsigned char> bytes) noexcept
{
    return ::strnlen(reinterpret_cast<const char *>(bytes.data()), bytes.size());
}

} // namespace

StringEncoding GetEncodingInfoFromPPD(ppd_file_t *ppd) noexcept
{
    const ppd_attr_t *attr = ppdFindAttr_ALT(ppd, "NVPrinterLanguageEncoding");
    if (attr == nullptr || attr->value == nullptr)
        return StringEncoding::ShiftJIS_X0213;

    // The value is read as ASCII: anything else cannot equal one of the names.
    const std::string_view value(attr->value);
    for (const EncodingName &name : kEncodingNames) {
        if (value == name.ppdValue)
            return name.encoding;
    }
    return StringEncoding::ShiftJIS_X0213;
}

std::optional<QString> CopyEncodedString(const std::optional<QString> &text,
                                         StringEncoding encoding)
{
    if (!text)
        return std::nullopt;

    std::array<unsigned char, kCStringCapacity + 1> buffer{};
    const EncodedPrefix encoded =
        encodeInto(*text, encoding, std::span(buffer).first(kCStringCapacity));
    if (!encoded.complete) {
        std::fputs("CopyEncodedString : CFStringGetCString failed.\n", stderr);
        return std::nullopt;
    }

    const auto bytes = std::span(buffer).first(cStringLength(std::span(buffer).first(encoded.length)));
    if (std::none_of(bytes.begin(), bytes.end(), isSignificant))
        return text;

    std::array<char, kEscapedCapacity> escaped;
    std::size_t length = 0;
    for (const unsigned char byte : bytes) {
        if (length >= kEscapedMark)
            break;
        // length < kEscapedMark here, so even the longest entry fits; copying
        // a fixed size lets the compiler do it in one move.
        const EscapedEntry &entry = kEscapedEntries[byte];
        std::memcpy(escaped.data() + length, entry.text.data(), kLongestEntry);
        length += entry.length;
    }
    return QString::fromLatin1(escaped.data(), static_cast<qsizetype>(length));
}

bool CanStoreText(QStringView text, StringEncoding encoding) noexcept
{
    std::array<unsigned char, kCStringCapacity> buffer{};
    return encodeInto(text, encoding, buffer).complete;
}

std::optional<QString> CopyDecodedString(const std::optional<QString> &text,
                                         StringEncoding encoding)
{
    if (!text) {
        std::fputs("CopyDecodedString : an argument is NULL.\n", stderr);
        return std::nullopt;
    }
    if (text->isEmpty() || text->front() != u'/')
        return text;

    std::array<unsigned char, kCStringCapacity + 1> buffer{};
    const EncodedPrefix encoded =
        encodeInto(*text, encoding, std::span(buffer).first(kCStringCapacity));
    if (!encoded.complete) {
        std::fputs("CopyDecodedString : CFStringGetCString failed.\n", stderr);
        return std::nullopt;
    }
    const std::size_t length = cStringLength(std::span(buffer).first(encoded.length));
    if (length < 2)
        return decodeBytes(std::span(buffer).first(length), encoding);

    // Decoded in place: every entry takes at least its separator, so the
    // output position never passes the start of the entry still to be read.
    // The decoded text ends at its first zero byte (an empty entry, or one
    // worth 0 modulo 256).
    const auto stored = std::span(buffer).first(length);
    std::size_t start = 1;
    std::size_t out = 0;
    for (;;) {
        const ParsedEntry entry = parseEntry(stored, start);
        std::size_t separator = entry.end;
        while (separator < length && stored[separator] != '/')
            ++separator;
        buffer[out++] = static_cast<unsigned char>(std::min(entry.value, 255) & 0xFF);
        start = separator + 1;
        if (start >= length)
            break;
    }

    return decodeBytes(std::span(buffer).first(cStringLength(std::span(buffer).first(out))),
                       encoding);
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
