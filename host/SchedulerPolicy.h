// SPDX-License-Identifier: MIT
// Editing the scheduler's configuration (cupsd.conf) so that its policies
// keep chosen job attributes private: JobPrivateValues of every <Policy>
// gains the attributes it does not list yet, with the scheduler's own rules
// for what a policy hides kept as they were.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace pdehost {

// What the scheduler hides from other users when a policy has no
// JobPrivateValues line, and what the value "default" stands for.
QStringList defaultJobPrivateValues();

struct PolicyChange {
    QString policy;      // the policy's name
    int line = 0;        // where the change is, counting lines from 1
    QStringList removed; // lines taken out, as they were
    QStringList added;   // lines put in
};

struct PolicyEdit {
    QByteArray text;             // the whole configuration after the change
    QList<PolicyChange> changes; // empty when every policy already hides the attributes
    QStringList policies;        // the names of all policies, in file order
};

// Adds `attributes` to JobPrivateValues of every <Policy> in `conf`. A
// policy without the directive hides the default list, so it gets
// "JobPrivateValues default ATTRIBUTES"; one that lists values gets a line
// with those it lacks; one that hides everything ("all") is left alone; a
// "none" is taken out, as it would otherwise make the policy hide nothing.
// Every other byte of `conf` is kept, so a second run changes nothing.
// Returns nullopt and sets `error` (with the line) when `conf` is not a
// configuration the scheduler would read the same way (a <Policy> without a
// name, nested or unclosed), or an attribute name cannot be written into it.
std::optional<PolicyEdit> addJobPrivateValues(const QByteArray &conf, const QStringList &attributes, QString *error);

// The changes as a listing for people: per change the policy and line, then
// the removed lines with "-" and the added ones with "+".
QString describeChanges(const QList<PolicyChange> &changes);

} // namespace pdehost
