// SPDX-License-Identifier: MIT
// A reader of cupsd.conf's <Policy> blocks that edits JobPrivateValues and
// keeps everything else byte for byte. It reads lines as the scheduler does:
// a directive, white space, its value; "#" starts a comment unless escaped
// with a backslash; "<Name value>" blocks; names compared without case.
#include "host/SchedulerPolicy.h"

#include <algorithm>
#include <cstring>

namespace pdehost {
namespace {

struct Directive {
    QByteArray name;
    QByteArray value;
};

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f';
}

Directive directiveOf(QByteArray line)
{
    if (const qsizetype hash = line.indexOf('#'); hash >= 0) {
        if (hash > 0 && line[hash - 1] == '\\')
            line.remove(hash - 1, 1);
        else
            line.truncate(hash);
    }
    line = line.trimmed();
    qsizetype end = 0;
    while (end < line.size() && !isSpace(line[end]))
        ++end;
    Directive directive{line.left(end), line.mid(end).trimmed()};
    if (directive.name.startsWith('<') && directive.value.endsWith('>')) {
        directive.value.chop(1);
        directive.value = directive.value.trimmed();
    }
    return directive;
}

bool is(const QByteArray &name, const char *wanted)
{
    return name.compare(wanted, Qt::CaseInsensitive) == 0;
}

QList<QByteArray> tokensOf(const QByteArray &value)
{
    QList<QByteArray> tokens;
    for (const QByteArray &token : value.simplified().split(' ')) {
        if (!token.isEmpty())
            tokens.append(token);
    }
    return tokens;
}

QByteArray indentOf(const QByteArray &line)
{
    qsizetype end = 0;
    while (end < line.size() && (line[end] == ' ' || line[end] == '\t'))
        ++end;
    return line.left(end);
}

bool isWritable(const QString &attribute)
{
    if (attribute.isEmpty())
        return false;
    return std::all_of(attribute.begin(), attribute.end(), [](QChar c) {
        return c.unicode() > 0x20 && c.unicode() < 0x7f && c != u'#' && c != u'<' && c != u'>';
    });
}

struct Policy {
    QString name;
    int opening = 0;      // index of the <Policy> line
    int firstInside = -1; // index of the first directive inside it
    QList<int> valueLines; // JobPrivateValues lines outside <Limit>
};

class Editor
{
public:
    Editor(const QByteArray &conf, const QStringList &attributes) : m_attributes(attributes)
    {
        m_lines = conf.split('\n');
        m_crlf = !m_lines.isEmpty() && m_lines.front().endsWith('\r');
    }

    std::optional<PolicyEdit> run(QString *error)
    {
        for (const QString &attribute : m_attributes) {
            if (!isWritable(attribute)) {
                *error = QStringLiteral("the attribute name \"%1\" cannot be written into the scheduler's configuration")
                             .arg(attribute);
                return std::nullopt;
            }
        }
        std::optional<QList<Policy>> policies = read(error);
        if (!policies)
            return std::nullopt;

        PolicyEdit edit;
        // Later policies first, so that the line indices of earlier ones hold.
        for (auto policy = policies->rbegin(); policy != policies->rend(); ++policy) {
            if (std::optional<PolicyChange> change = edited(*policy))
                edit.changes.prepend(*change);
        }
        for (const Policy &policy : *policies)
            edit.policies.append(policy.name);
        edit.text = m_lines.join('\n');
        return edit;
    }

private:
    std::optional<QList<Policy>> read(QString *error)
    {
        QList<Policy> policies;
        std::optional<Policy> open;
        bool inLimit = false;
        for (int i = 0; i < m_lines.size(); ++i) {
            const Directive directive = directiveOf(m_lines[i]);
            if (directive.name.isEmpty())
                continue;
            const QString where = QStringLiteral("line %1: ").arg(i + 1);
            if (is(directive.name, "<Policy") || is(directive.name, "<Policy>")) {
                if (open) {
                    *error = where + QStringLiteral("a <Policy> inside the policy \"%1\"").arg(open->name);
                    return std::nullopt;
                }
                if (directive.value.isEmpty()) {
                    *error = where + QStringLiteral("a <Policy> without a name");
                    return std::nullopt;
                }
                open = Policy{QString::fromUtf8(directive.value), i, -1, {}};
                inLimit = false;
                continue;
            }
            if (!open)
                continue;
            if (is(directive.name, "</Policy>")) {
                policies.append(*open);
                open.reset();
                continue;
            }
            if (open->firstInside < 0)
                open->firstInside = i;
            if (is(directive.name, "<Limit") || is(directive.name, "<LimitExcept"))
                inLimit = true;
            else if (is(directive.name, "</Limit>") || is(directive.name, "</LimitExcept>"))
                inLimit = false;
            else if (!inLimit && is(directive.name, "JobPrivateValues") && !directive.value.isEmpty())
                open->valueLines.append(i);
        }
        if (open) {
            *error = QStringLiteral("line %1: the policy \"%2\" has no </Policy>").arg(open->opening + 1).arg(open->name);
            return std::nullopt;
        }
        return policies;
    }

    QByteArray newLine(const QByteArray &indent, QByteArray values) const
    {
        // The scheduler takes the first "#" of a line for a comment unless a
        // backslash precedes it, and leaves later ones alone.
        if (const qsizetype hash = values.indexOf('#'); hash >= 0)
            values.insert(hash, '\\');
        return indent + "JobPrivateValues " + values + (m_crlf ? "\r" : "");
    }

    static QString shown(const QByteArray &line)
    {
        QByteArray text = line;
        if (text.endsWith('\r'))
            text.chop(1);
        return QString::fromUtf8(text);
    }

    std::optional<PolicyChange> edited(const Policy &policy)
    {
        QList<QByteArray> listed;
        for (const int line : policy.valueLines) {
            for (const QByteArray &token : tokensOf(directiveOf(m_lines[line]).value)) {
                if (is(token, "default")) {
                    for (const QString &value : defaultJobPrivateValues())
                        listed.append(value.toUtf8());
                } else {
                    listed.append(token);
                }
            }
        }
        // The scheduler compares attribute names with their case; "all"
        // anywhere hides everything, "none" as the first name in byte order
        // hides nothing.
        if (listed.contains("all"))
            return std::nullopt;
        QList<QByteArray> missing;
        for (const QString &attribute : m_attributes) {
            const QByteArray name = attribute.toUtf8();
            if (!listed.contains(name) && !missing.contains(name))
                missing.append(name);
        }
        const bool hasNone = std::any_of(listed.begin(), listed.end(), [](const QByteArray &t) { return is(t, "none"); });
        if (missing.isEmpty() && !hasNone)
            return std::nullopt;

        PolicyChange change;
        change.policy = policy.name;
        if (policy.valueLines.isEmpty()) {
            const QByteArray indent = policy.firstInside >= 0 ? indentOf(m_lines[policy.firstInside])
                                                              : indentOf(m_lines[policy.opening]) + "  ";
            const QByteArray line = newLine(indent, "default " + missing.join(' '));
            m_lines.insert(policy.opening + 1, line);
            change.line = policy.opening + 2;
            change.added.append(shown(line));
            return change;
        }

        // Take "none" out of the lines that have it; then add what is missing
        // after the last of the policy's lines.
        const int last = policy.valueLines.back();
        change.line = last + 2; // the added line's, unless a line before it changes
        QList<int> emptied;
        for (const int line : policy.valueLines) {
            const QList<QByteArray> tokens = tokensOf(directiveOf(m_lines[line]).value);
            QList<QByteArray> kept;
            for (const QByteArray &token : tokens) {
                if (!is(token, "none"))
                    kept.append(token);
            }
            if (kept.size() == tokens.size())
                continue;
            change.line = std::min(change.line, line + 1);
            change.removed.append(shown(m_lines[line]));
            if (kept.isEmpty()) {
                emptied.append(line);
            } else {
                m_lines[line] = newLine(indentOf(m_lines[line]), kept.join(' '));
                change.added.append(shown(m_lines[line]));
            }
        }
        if (!missing.isEmpty()) {
            const QByteArray line = newLine(indentOf(m_lines[last]), missing.join(' '));
            m_lines.insert(last + 1, line);
            change.added.append(shown(line));
        }
        for (auto line = emptied.rbegin(); line != emptied.rend(); ++line)
            m_lines.removeAt(*line);
        return change;
    }

    QStringList m_attributes;
    QList<QByteArray> m_lines;
    bool m_crlf = false;
};

} // namespace

QStringList defaultJobPrivateValues()
{
    return {QStringLiteral("job-name"), QStringLiteral("job-originating-host-name"),
            QStringLiteral("job-originating-user-name"), QStringLiteral("phone")};
}

std::optional<PolicyEdit> addJobPrivateValues(const QByteArray &conf, const QStringList &attributes, QString *error)
{
    return Editor(conf, attributes).run(error);
}

QString describeChanges(const QList<PolicyChange> &changes)
{
    QString text;
    for (const PolicyChange &change : changes) {
        text += QStringLiteral("<Policy %1> (line %2):\n").arg(change.policy).arg(change.line);
        for (const QString &line : change.removed)
            text += QStringLiteral("- ") + line + u'\n';
        for (const QString &line : change.added)
            text += QStringLiteral("+ ") + line + u'\n';
    }
    return text;
}

} // namespace pdehost
