// SPDX-License-Identifier: MIT
// The login name of the user running the process: the user ID the panel
// offers when none is stored.
#pragma once

#include <QString>

#include <optional>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// Returns the login name of the process's real user from the password
// database (getpwuid_r), decoded as UTF-8. Returns nullopt when the database
// has no entry for the user or cannot be read.
std::optional<QString> CopyLoginName();

// Reads the login name; nullopt when there is none.
using LoginNameReader = std::optional<QString> (*)();

// Replaces the login name reader (tests install a fixed name); null restores
// the default, which asks the password database. Returns the previous reader.
LoginNameReader setLoginNameReader(LoginNameReader reader) noexcept;

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
