// SPDX-License-Identifier: MIT
// iconv-backed conversions with one cached descriptor per encoding and
// direction, and an ASCII fast path (ASCII is the same bytes in every
// printer encoding this project supports).
#include "text/StringConversion.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <iconv.h>
#include <memory>
#include <type_traits>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

constexpr const char *kUtf16Native =
    std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE";

constexpr char16_t kYenSign = 0x00A5;
constexpr char16_t kOverline = 0x203E;

// iconv's name for an encoding; null for a value outside the enumeration.
const char *iconvName(StringEncoding encoding) noexcept
{
    switch (encoding) {
    case StringEncoding::UTF8:
        return "UTF-8";
    case StringEncoding::ShiftJIS_X0213:
        return "SHIFT_JISX0213";
    case StringEncoding::ISOLatin1:
        return "ISO-8859-1";
    case StringEncoding::WindowsLatin1:
        return "CP1252";
    case StringEncoding::ASCII:
        return "ASCII";
    }
    return nullptr;
}

int slotOf(StringEncoding encoding) noexcept
{
    switch (encoding) {
    case StringEncoding::UTF8:
        return 0;
    case StringEncoding::ShiftJIS_X0213:
        return 1;
    case StringEncoding::ISOLatin1:
        return 2;
    case StringEncoding::WindowsLatin1:
        return 3;
    case StringEncoding::ASCII:
        return 4;
    }
    return -1;
}

struct IconvClose {
    void operator()(iconv_t cd) const noexcept { iconv_close(cd); }
};
using IconvHandle = std::unique_ptr<std::remove_pointer_t<iconv_t>, IconvClose>;

enum class Direction { Encode, Decode };

// Opening a descriptor costs far more than a short conversion, so each thread
// keeps one per encoding and direction for its lifetime. Returns null when
// iconv cannot convert between the two at all.
iconv_t descriptorFor(StringEncoding encoding, Direction direction) noexcept
{
    thread_local std::array<IconvHandle, 5> encoders;
    thread_local std::array<IconvHandle, 5> decoders;
    thread_local std::array<bool, 5> encoderTried{};
    thread_local std::array<bool, 5> decoderTried{};

    const int slot = slotOf(encoding);
    const char *name = iconvName(encoding);
    if (slot < 0 || name == nullptr)
        return nullptr;

    auto &handles = direction == Direction::Encode ? encoders : decoders;
    auto &tried = direction == Direction::Encode ? encoderTried : decoderTried;
    if (!tried[slot]) {
        tried[slot] = true;
        iconv_t cd = direction == Direction::Encode ? iconv_open(name, kUtf16Native)
                                                    : iconv_open(kUtf16Native, name);
        if (cd != reinterpret_cast<iconv_t>(-1))
            handles[slot].reset(cd);
    }
    iconv_t cd = handles[slot].get();
    if (cd != nullptr)
        iconv(cd, nullptr, nullptr, nullptr, nullptr); // back to the initial state
    return cd;
}

bool isAscii(std::span<const unsigned char> bytes) noexcept
{
    return std::all_of(bytes.begin(), bytes.end(), [](unsigned char b) { return b < 0x80; });
}

} // namespace

EncodedPrefix encodeInto(QStringView text, StringEncoding encoding,
                         std::span<unsigned char> out) noexcept
{
    if (slotOf(encoding) < 0)
        return {};

    // ASCII is the same bytes in every supported encoding: copy it straight,
    // and leave iconv for text that has something else.
    std::size_t n = 0;
    const auto length = static_cast<std::size_t>(text.size());
    const char16_t *units = text.utf16();
    while (n < length && n < out.size() && units[n] < 0x80) {
        out[n] = static_cast<unsigned char>(units[n]);
        ++n;
    }
    if (n == length || encoding == StringEncoding::ASCII)
        return {n, n == length};
    if (n == out.size()) {
        // Full with ASCII alone; what follows cannot fit either.
        return {n, false};
    }

    iconv_t cd = descriptorFor(encoding, Direction::Encode);
    if (cd == nullptr)
        return {};

    // iconv takes non-const pointers but only reads the input.
    char *in = const_cast<char *>(reinterpret_cast<const char *>(text.utf16()));
    std::size_t inLeft = static_cast<std::size_t>(text.size()) * sizeof(char16_t);
    char *outPtr = reinterpret_cast<char *>(out.data());
    std::size_t outLeft = out.size();

    // Stops on EILSEQ (not representable), EINVAL (a lone surrogate at the
    // end) or E2BIG (full); what was converted before the stop stays.
    const bool converted = iconv(cd, &in, &inLeft, &outPtr, &outLeft) != static_cast<std::size_t>(-1);
    // Shift-JIS X0213 holds back a character that might combine with the next
    // one; flushing writes it, or drops it when it no longer fits.
    const bool flushed = iconv(cd, nullptr, nullptr, &outPtr, &outLeft) != static_cast<std::size_t>(-1);

    return {out.size() - outLeft, converted && flushed};
}

std::optional<QString> decodeBytes(std::span<const unsigned char> bytes, StringEncoding encoding)
{
    if (slotOf(encoding) < 0)
        return std::nullopt;

    if (isAscii(bytes)) {
        return QString::fromLatin1(reinterpret_cast<const char *>(bytes.data()),
                                   static_cast<qsizetype>(bytes.size()));
    }
    if (encoding == StringEncoding::ASCII)
        return std::nullopt;

    iconv_t cd = descriptorFor(encoding, Direction::Decode);
    if (cd == nullptr)
        return std::nullopt;

    // No supported encoding yields more UTF-16 units than it had bytes; the
    // loop below still grows the buffer should that ever not hold.
    QString result(static_cast<qsizetype>(bytes.size()) + 2, Qt::Uninitialized);
    char *in = const_cast<char *>(reinterpret_cast<const char *>(bytes.data()));
    std::size_t inLeft = bytes.size();
    std::size_t written = 0;
    for (;;) {
        char *outPtr = reinterpret_cast<char *>(result.data()) + written;
        std::size_t capacity = static_cast<std::size_t>(result.size()) * sizeof(char16_t);
        std::size_t outLeft = capacity - written;
        const std::size_t r = iconv(cd, &in, &inLeft, &outPtr, &outLeft);
        written = capacity - outLeft;
        if (r != static_cast<std::size_t>(-1)) {
            if (iconv(cd, nullptr, nullptr, &outPtr, &outLeft) == static_cast<std::size_t>(-1))
                return std::nullopt;
            written = capacity - outLeft;
            break;
        }
        if (errno != E2BIG)
            return std::nullopt;
        result.resize(result.size() * 2);
    }
    result.truncate(static_cast<qsizetype>(written / sizeof(char16_t)));

    if (encoding == StringEncoding::ShiftJIS_X0213) {
        // iconv reads the single bytes 0x5C and 0x7E as JIS-Roman; this
        // project reads them as ASCII (see encodeInto), so that every stored
        // text reads back as the ASCII it was.
        for (QChar &c : result) {
            if (c.unicode() == kYenSign)
                c = u'\\';
            else if (c.unicode() == kOverline)
                c = u'~';
        }
    }
    return result;
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
