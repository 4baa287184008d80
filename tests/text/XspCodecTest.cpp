// SPDX-License-Identifier: MIT
// The XOR cipher and base64 codec under the password protection, byte level.
#include "TextTestSupport.h"

#include "text/XspCodec.h"

#include <QByteArray>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

using Routine = int (*)(const unsigned char *, int, unsigned char *, unsigned int *, int);
constexpr char kSentinel = '\xA5';

const unsigned char *bytesOf(std::string_view text)
{
    return reinterpret_cast<const unsigned char *>(text.data());
}

// A call's status and output length, with its whole output buffer, which
// starts as sentinels so that stray writes (a terminator, say) show.
struct Call {
    int status;
    unsigned int outLen;
    std::string raw;

    std::string out() const { return raw.substr(0, outLen); }
    bool untouchedFrom(std::size_t from) const { return raw.find_first_not_of(kSentinel, from) == std::string::npos; }
};

Call call(Routine routine, std::string_view in, int cap, int inLen = -1)
{
    std::string raw(400, kSentinel);
    unsigned int outLen = 12345;
    const int status = routine(bytesOf(in), inLen < 0 ? static_cast<int>(in.size()) : inLen,
                               reinterpret_cast<unsigned char *>(raw.data()), &outLen, cap);
    return {status, outLen, std::move(raw)};
}

TEST(XspCodec, EncryptIsRestartingKeyXorAndItsOwnInverse)
{
    // Lengths of every remainder by 4 reach the tail loop's three cases.
    const std::string plain = "\x01\x7F\x80\xFFpassword"s;
    for (std::size_t length = 1; length <= plain.size(); ++length) {
        const std::string_view in = std::string_view(plain).substr(0, length);
        const Call once = call(jt::XspEncrypt, in, 255);
        ASSERT_EQ(once.status, jt::kXspOK);
        ASSERT_EQ(once.outLen, length);
        for (std::size_t i = 0; i < length; ++i)
            EXPECT_EQ(once.raw[i], static_cast<char>(in[i] ^ "qvkm"[i % 4])) << length << ':' << i;
        EXPECT_EQ(call(jt::XspEncrypt, once.out(), 255).out(), in);
    }
}

TEST(XspCodec, EncryptOutOfRoomKeepsWhatItWrote)
{
    struct Row { std::size_t inLen; int cap; unsigned int kept; };
    for (const Row row : {Row{4, 3, 0}, Row{6, 5, 4}, Row{8, 5, 4}, Row{9, 8, 8}}) {
        const Call r = call(jt::XspEncrypt, "ABCDEFGHI"sv.substr(0, row.inLen), row.cap);
        EXPECT_EQ(r.status, jt::kXspBufferTooSmall) << row.inLen;
        EXPECT_EQ(r.outLen, row.kept) << row.inLen;
        EXPECT_EQ(r.raw.substr(0, row.kept), "04()40,%8"sv.substr(0, row.kept)); // "ABCDEFGHI" ^ key
        EXPECT_TRUE(r.untouchedFrom(row.kept)) << row.inLen;
    }
}

enum Null { kNone, kIn, kOut, kOutLen };

struct StatusRow {
    std::string name;
    Routine routine;
    Null null;
    int inLen;
    int cap;
    int status;
    unsigned int needed = 0; // reported with kXspBufferTooSmall
};

class XspCodecStatus : public testing::TestWithParam<StatusRow> {};

TEST_P(XspCodecStatus, WritesNothingUnlessOk)
{
    const StatusRow &row = GetParam();
    std::string out(16, kSentinel);
    unsigned int outLen = 12345;
    EXPECT_EQ(row.routine(row.null == kIn ? nullptr : bytesOf("Zm9vYg=="), row.inLen,
                          row.null == kOut ? nullptr : reinterpret_cast<unsigned char *>(out.data()),
                          row.null == kOutLen ? nullptr : &outLen, row.cap),
              row.status);
    EXPECT_EQ(out, std::string(16, kSentinel));
    if (row.status == jt::kXspBufferTooSmall) {
        EXPECT_EQ(outLen, row.needed);
    }
}

constexpr int kPtr = jt::kXspInvalidPointer;
constexpr int kLen = jt::kXspInvalidLength;
constexpr int kSmall = jt::kXspBufferTooSmall;

INSTANTIATE_TEST_SUITE_P(
    XspCodec, XspCodecStatus,
    testing::Values(StatusRow{"EncryptNullIn", jt::XspEncrypt, kIn, 8, 16, kPtr},
                    StatusRow{"EncryptNullOutNoRoom", jt::XspEncrypt, kOut, 8, 0, kPtr},
                    StatusRow{"EncryptNullOutLen", jt::XspEncrypt, kOutLen, 8, 16, kPtr},
                    StatusRow{"EncryptEmpty", jt::XspEncrypt, kNone, 0, 16, kLen},
                    StatusRow{"EncryptNoRoom", jt::XspEncrypt, kNone, 8, 0, kLen},
                    StatusRow{"ToB64NullIn", jt::XspBinToB64, kIn, 6, 16, kPtr},
                    StatusRow{"ToB64NullOut", jt::XspBinToB64, kOut, 6, 16, kPtr},
                    StatusRow{"ToB64Empty", jt::XspBinToB64, kNone, 0, 16, kLen},
                    StatusRow{"ToB64NegativeCap", jt::XspBinToB64, kNone, 6, -1, kLen},
                    StatusRow{"ToB64SizeQuery", jt::XspBinToB64, kOut, 6, 0, kSmall, 8},
                    StatusRow{"ToB64NoRoom", jt::XspBinToB64, kNone, 6, 0, kSmall, 8},
                    StatusRow{"ToB64TooSmall", jt::XspBinToB64, kNone, 7, 11, kSmall, 12},
                    StatusRow{"ToBinEmpty", jt::XspB64ToBin, kNone, 0, 16, kLen},
                    StatusRow{"ToBinNotQuartets", jt::XspB64ToBin, kNone, 6, 16, kLen},
                    StatusRow{"ToBinNegativeCap", jt::XspB64ToBin, kNone, 8, -1, kLen},
                    StatusRow{"ToBinSizeQuery", jt::XspB64ToBin, kOut, 8, 0, kSmall, 4},
                    StatusRow{"ToBinTooSmall", jt::XspB64ToBin, kNone, 8, 3, kSmall, 4}),
    text_tests::RowName{});

TEST(XspCodec, MatchesStandardBase64BothWays)
{
    std::string all; // every byte value
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    for (const std::string_view plain : {"f"sv, "fo"sv, "foo"sv, "foob"sv, "fooba"sv, "foobar"sv, std::string_view(all)}) {
        const std::string base64 =
            QByteArray(plain.data(), static_cast<qsizetype>(plain.size())).toBase64().toStdString();
        // Capacity exactly as needed, so an off-by-one in the size check shows.
        const Call encoded = call(jt::XspBinToB64, plain, static_cast<int>(base64.size()));
        EXPECT_EQ(encoded.status, jt::kXspOK);
        EXPECT_EQ(encoded.out(), base64);
        EXPECT_TRUE(encoded.untouchedFrom(base64.size())) << base64; // no terminator
        const Call decoded = call(jt::XspB64ToBin, base64, static_cast<int>(plain.size()));
        EXPECT_EQ(decoded.status, jt::kXspOK);
        EXPECT_EQ(decoded.out(), plain);
        EXPECT_TRUE(decoded.untouchedFrom(plain.size())) << base64;
    }
    EXPECT_EQ(call(jt::XspBinToB64, "foobar", 255).out(), "Zm9vYmFy"); // the reference itself
}

struct LenientRow {
    std::string name;
    std::string_view base64;
    std::string_view bytes;
};

class XspCodecLenientDecode : public testing::TestWithParam<LenientRow> {};

TEST_P(XspCodecLenientDecode, DecodesWhatItCan)
{
    const Call decoded = call(jt::XspB64ToBin, GetParam().base64, 255);
    EXPECT_EQ(decoded.status, jt::kXspOK);
    EXPECT_EQ(decoded.out(), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(
    XspCodec, XspCodecLenientDecode,
    testing::Values(LenientRow{"WhiteSpaceInside", "Zm 9v YmFy  "sv, "foobar"sv},
                    LenientRow{"WhiteSpaceAround", "  Zm9vYg==\n\t"sv, "foob"sv},
                    LenientRow{"TwoCharactersBeforeTerminator", "Zm9vZg\0\0"sv, "foo"sv},
                    LenientRow{"PaddingEndsData", "Zg==Zm9v"sv, "f"sv},
                    LenientRow{"OutsideAlphabet", "A!AA"sv, "\x0F\xF0\0"sv},
                    LenientRow{"HighByte", "\xC3" "AAA"sv, "\xFC\0\0"sv}),
    text_tests::RowName{});

TEST(XspCodec, DecodeTakesNoMoreThanInputLength)
{
    // Exactly sized: a read of in[inLen] is an overflow that ASan reports.
    const std::vector<unsigned char> exact{'Z', 'm', '9', 'v'};
    unsigned char out[8];
    unsigned int outLen = 0;
    EXPECT_EQ(jt::XspB64ToBin(exact.data(), 4, out, &outLen, 8), jt::kXspOK);
    EXPECT_EQ(outLen, 3U);
    EXPECT_EQ(call(jt::XspB64ToBin, "Zm9vYmFy", 8, 4).out(), "foo");
}

TEST(XspCodec, DecodeBeyondCapacityStopsThere)
{
    // Four "=" make the needed length 2 while the first quartet yields 3.
    const Call r = call(jt::XspB64ToBin, "Zm9v====", 2);
    EXPECT_EQ(r.status, jt::kXspBufferTooSmall);
    EXPECT_EQ(r.outLen, 2U);
    EXPECT_EQ(r.raw.substr(0, 2), "fo");
    EXPECT_TRUE(r.untouchedFrom(2));
}

} // namespace
