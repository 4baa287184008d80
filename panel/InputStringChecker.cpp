// SPDX-License-Identifier: MIT
// Length and code-table checking of proposed field texts.
#include "panel/InputStringChecker.h"

#include "text/PrinterLanguageEncoding.h"

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

InputStringChecker::InputStringChecker(QObject *parent) : QValidator(parent) {}

InputStringChecker::~InputStringChecker() = default;

void InputStringChecker::build(std::unique_ptr<CodeTable> &table, const char16_t *ranges)
{
    if (ranges == nullptr)
        return;
    if (!table)
        table = std::make_unique<CodeTable>();
    table->fill(0);
    for (const char16_t *pair = ranges; pair[0] != 0; pair += 2) {
        // A 32-bit counter, so that a high bound of 65,535 ends the loop.
        for (std::uint32_t code = pair[0]; code <= pair[1]; ++code)
            (*table)[code] = 1;
    }
}

void InputStringChecker::setAcceptableCodeRange(const char16_t *ranges)
{
    build(m_acceptableCodeRange, ranges);
}

void InputStringChecker::setUnAcceptableCodeRange(const char16_t *ranges)
{
    build(m_unAcceptableCodeRange, ranges);
}

std::optional<QString> InputStringChecker::stringForObjectValue(const QVariant &value) const
{
    if (value.typeId() != QMetaType::QString)
        return std::nullopt;
    return value.toString();
}

bool InputStringChecker::getObjectValue(QVariant *object, const QString &string, QString *) const
{
    if (object != nullptr)
        *object = QString(string);
    return true;
}

bool InputStringChecker::isPartialStringValid(const QString &partialString, QString *, QString *) const
{
    if (static_cast<std::size_t>(partialString.size()) > m_maxLength)
        return false;
    if (partialString.isEmpty())
        return true;
    if (m_acceptableCodeRange) {
        const CodeTable &table = *m_acceptableCodeRange;
        for (const QChar unit : partialString) {
            if (table[unit.unicode()] != 1)
                return false;
        }
    }
    return !m_storageEncoding || CanStoreText(partialString, *m_storageEncoding);
}

QValidator::State InputStringChecker::validate(QString &input, int &) const
{
    return isPartialStringValid(input, nullptr, nullptr) ? Acceptable : Invalid;
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
