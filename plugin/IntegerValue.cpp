// SPDX-License-Identifier: MIT
// String-to-integer reading of stored numbers.
#include "plugin/IntegerValue.h"

#include "text/LeadingInteger.h"

#include <QString>

#include <algorithm>
#include <climits>
#include <cmath>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

int integerValueOf(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool() ? 1 : 0;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float: {
        const double number = value.toDouble();
        // A NaN has no integer value; clamping it would be undefined.
        if (std::isnan(number))
            return 0;
        return static_cast<int>(std::clamp(number, static_cast<double>(INT_MIN), static_cast<double>(INT_MAX)));
    }
    case QMetaType::QString:
        break;
    default:
        return 0;
    }

    // The platform's string reading: any white space, then as strtol.
    const QString text = value.toString();
    return saturatedInt(parseLeadingInteger(text, 0, [](QChar c) { return c.isSpace(); }).value);
}

QString oneHigher(int value)
{
    return QString::number(static_cast<int>(static_cast<unsigned int>(value) + 1u));
}

int oneLower(int value)
{
    return static_cast<int>(static_cast<unsigned int>(value) - 1u);
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
