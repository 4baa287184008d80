// SPDX-License-Identifier: MIT
// Stored forms and password protection beside one plain iconv conversion of
// the same text: each operation should cost at most three such conversions.
#include "RatioReporter.h"

#include "text/PasswordProtection.h"
#include "text/PrinterLanguageEncoding.h"

#include <QString>

#include <array>
#include <bit>
#include <iconv.h>

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

namespace {

constexpr jt::StringEncoding kEncoding = jt::StringEncoding::ShiftJIS_X0213;

const QString &userId()
{
    static const QString text = QStringLiteral("tanaka01");
    return text;
}

const QString &documentName()
{
    static const QString text = QStringLiteral(u"議事録,2026/11月"); // 12 characters, escaped
    return text;
}

const QString &password()
{
    static const QString text = QStringLiteral("123456789012");
    return text;
}

// The baseline: one conversion of the text to Shift-JIS with a descriptor
// opened beforehand, into a buffer of the size the routines use.
void iconvBaseline(benchmark::State &state, const QString &text)
{
    iconv_t cd = iconv_open("SHIFT_JISX0213",
                            std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE");
    std::array<char, 256> out{};
    for (auto _ : state) {
        iconv(cd, nullptr, nullptr, nullptr, nullptr);
        char *in = const_cast<char *>(reinterpret_cast<const char *>(text.utf16()));
        std::size_t inLeft = static_cast<std::size_t>(text.size()) * 2;
        char *outPtr = out.data();
        std::size_t outLeft = out.size();
        iconv(cd, &in, &inLeft, &outPtr, &outLeft);
        iconv(cd, nullptr, nullptr, &outPtr, &outLeft);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    iconv_close(cd);
}

void BM_Baseline_UserId(benchmark::State &state) { iconvBaseline(state, userId()); }
void BM_Baseline_DocumentName(benchmark::State &state) { iconvBaseline(state, documentName()); }
void BM_Baseline_Password(benchmark::State &state) { iconvBaseline(state, password()); }

void BM_CopyEncodedString_UserId(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(jt::CopyEncodedString(userId(), kEncoding));
}

void BM_CopyDecodedString_UserId(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(jt::CopyDecodedString(userId(), kEncoding));
}

void BM_CopyEncodedString_DocumentName(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(jt::CopyEncodedString(documentName(), kEncoding));
}

void BM_CopyDecodedString_DocumentName(benchmark::State &state)
{
    const QString stored = *jt::CopyEncodedString(documentName(), kEncoding);
    for (auto _ : state)
        benchmark::DoNotOptimize(jt::CopyDecodedString(stored, kEncoding));
}

void BM_CreateEncryptedString_Password(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(jt::CreateEncryptedString(password(), kEncoding));
}

void BM_CreateDecryptedString_Password(benchmark::State &state)
{
    const QString protectedForm = *jt::CreateEncryptedString(password(), kEncoding);
    for (auto _ : state)
        benchmark::DoNotOptimize(jt::CreateDecryptedString(protectedForm, kEncoding));
}

} // namespace

BENCHMARK(BM_Baseline_UserId);
BENCHMARK(BM_CopyEncodedString_UserId);
BENCHMARK(BM_CopyDecodedString_UserId);
BENCHMARK(BM_Baseline_DocumentName);
BENCHMARK(BM_CopyEncodedString_DocumentName);
BENCHMARK(BM_CopyDecodedString_DocumentName);
BENCHMARK(BM_Baseline_Password);
BENCHMARK(BM_CreateEncryptedString_Password);
BENCHMARK(BM_CreateDecryptedString_Password);

int main(int argc, char **argv)
{
    return runWithRatioReport(argc, argv, {
        {"BM_CopyEncodedString_UserId", "BM_Baseline_UserId", 3.0},
        {"BM_CopyDecodedString_UserId", "BM_Baseline_UserId", 3.0},
        {"BM_CopyEncodedString_DocumentName", "BM_Baseline_DocumentName", 3.0},
        {"BM_CopyDecodedString_DocumentName", "BM_Baseline_DocumentName", 3.0},
        {"BM_CreateEncryptedString_Password", "BM_Baseline_Password", 3.0},
        {"BM_CreateDecryptedString_Password", "BM_Baseline_Password", 3.0},
    });
}
