// SPDX-License-Identifier: MIT
// Numeric equality over QVariant numbers.
#include "panel/NumberValue.h"

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

bool numberEquals(const QVariant &value, long long n)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return (value.toBool() ? 1 : 0) == n;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return value.toLongLong() == n;
    case QMetaType::ULongLong:
        return n >= 0 && value.toULongLong() == static_cast<unsigned long long>(n);
    case QMetaType::Double:
    case QMetaType::Float:
        return value.toDouble() == static_cast<double>(n);
    default:
        return false;
    }
}

QVariant choiceOrDefault(const QVariant &value, int count, int defaultChoice)
{
    if (!value.isValid())
        return value;
    for (int choice = 0; choice < count; ++choice) {
        if (numberEquals(value, choice))
            return choice;
    }
    return defaultChoice;
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
