// SPDX-License-Identifier: MIT
// The real user's login name from the password database.
#include "platform/LoginName.h"

#include <cerrno>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

constexpr std::size_t kInitialBuffer = 1024;
constexpr std::size_t kLargestBuffer = 1 << 20;

std::optional<QString> readFromPasswordDatabase()
{
    std::vector<char> buffer(kInitialBuffer);
    for (;;) {
        passwd entry{};
        passwd *result = nullptr;
        const int error = getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &result);
        if (error == ERANGE && buffer.size() < kLargestBuffer) {
            buffer.resize(buffer.size() * 2);
            continue;
        }
        if (result == nullptr || result->pw_name == nullptr)
            return std::nullopt;
        return QString::fromUtf8(result->pw_name);
    }
}

LoginNameReader &currentReader()
{
    static LoginNameReader reader = &readFromPasswordDatabase;
    return reader;
}

} // namespace

std::optional<QString> CopyLoginName()
{
    return currentReader()();
}

LoginNameReader setLoginNameReader(LoginNameReader reader) noexcept
{
    LoginNameReader &current = currentReader();
    const LoginNameReader previous = current;
    current = reader != nullptr ? reader : &readFromPasswordDatabase;
    return previous;
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
