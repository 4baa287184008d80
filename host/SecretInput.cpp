// SPDX-License-Identifier: MIT
// Reading the password line and wiping host-owned copies.
#include "host/SecretInput.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace pdehost {
namespace {

// Writes through a volatile pointer, so that the compiler does not drop the
// stores to a buffer that is about to die.
void wipeBytes(void *data, std::size_t size)
{
    auto *bytes = static_cast<volatile unsigned char *>(data);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = 0;
}

} // namespace

bool standardInputWasOpen()
{
    static const bool open = ::fcntl(STDIN_FILENO, F_GETFD) != -1;
    return open;
}

std::optional<QString> readSecretLine(QString *error)
{
    if (!standardInputWasOpen()) {
        *error = QStringLiteral("standard input is closed; the password is read from there");
        return std::nullopt;
    }
    std::array<char, kSecretLineLimit + 2> line{}; // the line, a '\r', and one byte to notice a longer one
    std::size_t length = 0;
    bool ended = false;
    while (length < line.size()) {
        const ssize_t got = ::read(STDIN_FILENO, &line[length], 1);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            *error = QStringLiteral("standard input cannot be read: %1").arg(QString::fromLocal8Bit(std::strerror(errno)));
            wipeBytes(line.data(), line.size());
            return std::nullopt;
        }
        if (got == 0 || line[length] == '\n') {
            ended = got != 0 || length > 0;
            break;
        }
        ++length;
    }
    if (!ended && length == 0) {
        *error = QStringLiteral("standard input ended before the password line");
        return std::nullopt;
    }
    if (length > 0 && line[length - 1] == '\r')
        --length;
    if (length > static_cast<std::size_t>(kSecretLineLimit)) {
        wipeBytes(line.data(), line.size());
        *error = QStringLiteral("the password line on standard input is longer than %1 bytes").arg(kSecretLineLimit);
        return std::nullopt;
    }
    QString text = QString::fromUtf8(line.data(), static_cast<qsizetype>(length));
    wipeBytes(line.data(), line.size());
    return text;
}

void wipe(QString &text)
{
    if (text.isEmpty() || !text.isDetached()) {
        text.clear();
        return;
    }
    wipeBytes(text.data(), static_cast<std::size_t>(text.size()) * sizeof(QChar));
    text.clear();
}

} // namespace pdehost
