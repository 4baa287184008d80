// SPDX-License-Identifier: MIT
// Shared helpers of the text tests: stderr capture, readable output, row names.
#pragma once

#include <QString>

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {}
namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

// Readable failure output for QString (and so for std::optional<QString>).
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace text_tests {

// Runs `call` and returns its result with everything it wrote to stderr, so
// the messages can be compared whole.
template <typename Call>
auto withStderr(Call &&call)
{
    testing::internal::CaptureStderr();
    auto result = std::forward<Call>(call)();
    return std::pair{std::move(result), testing::internal::GetCapturedStderr()};
}

// Names a value-parameterized case after the row's `name` field.
struct RowName {
    template <typename Row>
    std::string operator()(const testing::TestParamInfo<Row> &info) const
    {
        return info.param.name;
    }
};

} // namespace text_tests
