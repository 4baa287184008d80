// SPDX-License-Identifier: MIT
// The formatter of the panel's text fields: it refuses any edit that would
// make the text longer than a maximum, put a character outside a table of
// accepted UTF-16 code units into it, or give it a character that the
// printer's encoding cannot store.
#pragma once

#include "text/StringEncoding.h"

#include <QString>
#include <QValidator>
#include <QVariant>

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// Code range lists: (low, high) pairs of inclusive UTF-16 code unit ranges,
// ended by a pair whose low value is 0.
inline constexpr char16_t kUserNameAcceptableRange[] = {32, 126, 160, 255, 0};
inline constexpr char16_t kPasswordAcceptableRange[] = {48, 57, 0};
inline constexpr char16_t kDocNameAcceptableRange[] = {32, 126, 160, 255, 0};

// The fields' maximum lengths in UTF-16 units.
inline constexpr std::size_t kUserNameMaxLength = 8;
inline constexpr std::size_t kPasswordMaxLength = 12;
inline constexpr std::size_t kDocNameMaxLength = 12;

class InputStringChecker : public QValidator
{
    Q_OBJECT

public:
    explicit InputStringChecker(QObject *parent = nullptr);
    ~InputStringChecker() override;

    // The largest accepted length in UTF-16 units (no limit at first).
    void setMaxLength(std::size_t maxLength) { m_maxLength = maxLength; }
    std::size_t maxLength() const { return m_maxLength; }

    // Replaces the accepted codes by those of a code range list (built once
    // into a 65,536-entry table; a high bound of 65,535 is fine). A null list
    // changes nothing.
    void setAcceptableCodeRange(const char16_t *ranges);
    // The same for a table of refused codes, which the test does not consult.
    void setUnAcceptableCodeRange(const char16_t *ranges);
    // The encoding the text is stored in (the printer's); nullopt, the
    // default, stores nothing and so checks nothing.
    void setStorageEncoding(std::optional<StringEncoding> encoding) { m_storageEncoding = encoding; }
    std::optional<StringEncoding> storageEncoding() const { return m_storageEncoding; }

    // The text itself when `value` holds a string; nullopt otherwise.
    std::optional<QString> stringForObjectValue(const QVariant &value) const;
    // Always true: the object value of a text is the text.
    bool getObjectValue(QVariant *object, const QString &string, QString *errorDescription) const;
    // The acceptance test on the whole text the field would hold: not longer
    // than the maximum, when there is a table every code unit accepted, and
    // when there is a storage encoding the text storable in it.
    // Never proposes a replacement and never writes an error description.
    bool isPartialStringValid(const QString &partialString, QString *newEditingString,
                              QString *errorDescription) const;

    // Invalid exactly when the acceptance test refuses the whole proposed
    // text, Acceptable otherwise: a field keeps its old text on Invalid.
    State validate(QString &input, int &pos) const override;

private:
    using CodeTable = std::array<std::uint8_t, 65536>;
    static void build(std::unique_ptr<CodeTable> &table, const char16_t *ranges);

    std::size_t m_maxLength = std::numeric_limits<std::size_t>::max();
    std::unique_ptr<CodeTable> m_acceptableCodeRange;
    std::unique_ptr<CodeTable> m_unAcceptableCodeRange;
    std::optional<StringEncoding> m_storageEncoding;
};

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
