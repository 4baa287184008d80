// SPDX-License-Identifier: MIT
// Keeping the record's private values (password, user ID, document name) to
// their owner at the scheduler. The scheduler stores every job option as a
// job attribute and shows job attributes to any local user unless its policy
// lists them in JobPrivateValues. Each bundle names its private keys in its
// Info.plist (PDEPrivateSettingsKeys); an administrator adds them to every
// policy with `pde-host protect-record`, and the hosts warn when a job's
// private values are still shown to others.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace pde {
class Bundle;
}

namespace pdehost {

// The Info.plist key under which a bundle lists the print-settings keys that
// must stay private: an array of strings.
inline constexpr char kPrivateSettingsKeysKey[] = "PDEPrivateSettingsKeys";

// The private keys `bundle` declares; entries that are not strings are
// skipped. Empty when it declares none.
QStringList privateSettingsKeys(const pde::Bundle &bundle);

// The private keys of every bundle in `explicitBundles` and of every bundle
// installed in the bundle search folders, each key once, in the order found.
// Bundles that cannot be opened are named in `problems`.
QStringList installedPrivateSettingsKeys(const QStringList &explicitBundles, QStringList *problems);

// Asks the scheduler for job `jobId` (0: the newest of the current user's
// jobs that carries any of `keys`) first as its owner, then as another user
// would, and returns those of `keys` that the job carries and the scheduler
// shows to that other user: empty when it hides them all. Returns nullopt
// and sets `error` when the scheduler cannot be asked or the job carries
// none of the keys (there is nothing to judge by).
std::optional<QStringList> recordKeysShownToOthers(int jobId, const QStringList &keys, QString *error);

// The one-line warning a host gives when `shownKeys` is not empty.
QString recordPrivacyWarning(const QStringList &shownKeys);

// pde-host protect-record: reads the scheduler's configuration through its
// own interface (GET /admin/conf/cupsd.conf, authenticating as the
// scheduler asks), adds `keys` to JobPrivateValues of every policy and, unless
// `dryRun`, writes it back (PUT), which makes the scheduler restart with it.
// Returns the lines to print (the change, or that there is none), or nullopt
// with `error` when the configuration cannot be read, edited or written.
std::optional<QStringList> protectRecord(const QStringList &keys, bool dryRun, QString *error);

} // namespace pdehost
