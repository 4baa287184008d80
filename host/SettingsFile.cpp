// SPDX-License-Identifier: MIT
// Reading and writing pde-host's settings file.
#include "host/SettingsFile.h"

#include <QFile>
#include <QSaveFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pdehost {
namespace {

QString systemError(int code)
{
    return QString::fromLocal8Bit(std::strerror(code));
}

// The whole file, when it is a regular file of at most `limit` bytes. Opened
// without blocking, so that a FIFO is refused instead of waited on.
std::optional<QByteArray> readRegularFile(const QString &path, qint64 limit, QString *error)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) {
        *error = systemError(errno);
        return std::nullopt;
    }
    struct stat info {};
    std::optional<QByteArray> content;
    if (::fstat(fd, &info) != 0) {
        *error = systemError(errno);
    } else if (!S_ISREG(info.st_mode)) {
        *error = S_ISDIR(info.st_mode) ? QStringLiteral("a folder, not a file") : QStringLiteral("not a regular file");
    } else if (info.st_size > limit) {
        *error = QStringLiteral("larger than %1 MiB").arg(limit / (1024 * 1024));
    } else {
        // The file may grow while it is read: stop one chunk past the limit.
        QByteArray bytes;
        char chunk[64 * 1024];
        for (;;) {
            const ssize_t got = ::read(fd, chunk, sizeof chunk);
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0) {
                *error = systemError(errno);
                break;
            }
            if (got == 0) {
                content = std::move(bytes);
                break;
            }
            bytes.append(chunk, got);
            if (bytes.size() > limit) {
                *error = QStringLiteral("larger than %1 MiB").arg(limit / (1024 * 1024));
                break;
            }
        }
    }
    ::close(fd);
    return content;
}

} // namespace

std::optional<OrderedStrings> readSettingsFile(const QString &path, QString *error)
{
    struct stat info {};
    if (::stat(QFile::encodeName(path).constData(), &info) != 0 && errno == ENOENT)
        return OrderedStrings{};
    QString problem;
    const std::optional<QByteArray> bytes = readRegularFile(path, kSettingsFileLimit, &problem);
    if (!bytes) {
        *error = QStringLiteral("%1: %2").arg(path, problem);
        return std::nullopt;
    }
    std::optional<OrderedStrings> entries = parseStringObject(*bytes, &problem);
    if (!entries)
        *error = QStringLiteral("%1: not a JSON object of strings: %2").arg(path, problem);
    return entries;
}

bool writeSettingsFile(const QString &path, const OrderedStrings &entries, QString *error)
{
    const bool existed = QFile::exists(path);
    QSaveFile file(path);
    // QSaveFile carries an existing file's permissions over; a new one
    // would get the umask's, readable by everyone.
    const bool written = file.open(QIODevice::WriteOnly)
                         && (existed || file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner))
                         && file.write(formatStringObject(entries)) >= 0 && file.commit();
    if (!written)
        *error = QStringLiteral("%1: cannot be written: %2").arg(path, file.errorString());
    return written;
}

} // namespace pdehost
