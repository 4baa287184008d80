// SPDX-License-Identifier: MIT
// Numbers that may be absent, held in QVariant: the one numeric equality the
// panel's rules use (a boolean true equals 1, an absent number equals none).
#pragma once

#include <QVariant>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// True when `value` holds a number (or a boolean, as 0 or 1) equal to `n`;
// false for an invalid (absent) value and for anything that is not a number.
bool numberEquals(const QVariant &value, long long n);

// The choice `value` stands for among 0 to count - 1, as an int; a number
// outside them, or anything that is not a number, gives `defaultChoice`. An
// absent value stays absent.
QVariant choiceOrDefault(const QVariant &value, int count, int defaultChoice);

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
