// SPDX-License-Identifier: MIT
// String-to-integer reading of stored numbers.
#include "plugin/IntegerValue.h"

#include <QString>

#include <algorithm>
#include <climits>

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
        return static_cast<int>(std::clamp(number, static_cast<double>(INT_MIN), static_cast<double>(INT_MAX)));
    }
    case QMetaType::QString:
        break;
    default:
        return 0;
    }

    const QString text = value.toString();
    qsizetype i = 0;
    while (i < text.size() && text[i].isSpace())
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == u'+' || text[i] == u'-')) {
        negative = text[i] == u'-';
        ++i;
    }
    long long magnitude = 0;
    for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i)
        magnitude = std::min(magnitude * 10 + (text[i].unicode() - u'0'), static_cast<long long>(INT_MAX) + 1);
    if (negative)
        return static_cast<int>(-magnitude);
    return static_cast<int>(std::min(magnitude, static_cast<long long>(INT_MAX)));
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
