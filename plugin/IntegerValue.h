// SPDX-License-Identifier: MIT
// Reading an integer from a print-settings value the way the record always
// has: leading white space, an optional sign, decimal digits; 0 when the text
// does not begin with a number; saturated at the int range.
#pragma once

#include <QVariant>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// A number is taken as it is (saturated); a string is read as above; anything
// else, and no value, gives 0.
int integerValueOf(const QVariant &value);

// The decimal text of value + 1, wrapping at the int range as "%d" of an int
// sum does.
QString oneHigher(int value);

// value - 1, wrapping at the int range.
int oneLower(int value);

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
