// SPDX-License-Identifier: MIT
// Reading the decimal number at the start of a text the way strtol and atoi
// do (white space, an optional sign, digits), without their overflow: the
// value saturates instead. Stored forms, kernel releases and print-settings
// values are all read with it.
#pragma once

#include <QChar>

#include <climits>
#include <cstddef>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

struct LeadingInteger {
    long long value = 0;    // saturated at the long long range
    std::size_t end = 0;    // just past the number; where reading began when there is none
    bool hasDigits = false;
};

inline char32_t codeOf(char c) { return static_cast<unsigned char>(c); }
inline char32_t codeOf(unsigned char c) { return c; }
inline char32_t codeOf(QChar c) { return c.unicode(); }

// The C locale's white space, as isspace has it there.
inline bool isCSpace(char32_t c)
{
    return c == U' ' || (c >= U'\t' && c <= U'\r');
}

// Reads text[from...] (any indexable text of char, unsigned char or QChar)
// skipping the characters `isSpace` accepts first.
template <typename Text, typename IsSpace>
LeadingInteger parseLeadingInteger(const Text &text, std::size_t from, IsSpace isSpace)
{
    const auto size = static_cast<std::size_t>(text.size());
    std::size_t i = from;
    while (i < size && isSpace(text[i]))
        ++i;
    bool negative = false;
    if (i < size && (codeOf(text[i]) == U'+' || codeOf(text[i]) == U'-')) {
        negative = codeOf(text[i]) == U'-';
        ++i;
    }
    const std::size_t digits = i;
    constexpr unsigned long long kLimit = static_cast<unsigned long long>(LLONG_MAX) + 1;
    unsigned long long magnitude = 0;
    for (; i < size && codeOf(text[i]) >= U'0' && codeOf(text[i]) <= U'9'; ++i) {
        const unsigned long long digit = codeOf(text[i]) - U'0';
        magnitude = magnitude > (kLimit - digit) / 10 ? kLimit : magnitude * 10 + digit;
    }
    if (i == digits)
        return {0, from, false};
    long long value = 0;
    if (negative)
        value = magnitude >= kLimit ? LLONG_MIN : -static_cast<long long>(magnitude);
    else
        value = magnitude >= kLimit ? LLONG_MAX : static_cast<long long>(magnitude);
    return {value, i, true};
}

// The value brought into the int range.
inline int saturatedInt(long long value)
{
    return static_cast<int>(value < INT_MIN ? INT_MIN : value > INT_MAX ? INT_MAX : value);
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
