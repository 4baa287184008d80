// SPDX-License-Identifier: MIT
// Regular files read whole, with a size limit, through one descriptor.
#include "pdekit/ResourceFile.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pde {
namespace {

struct Descriptor {
    int fd = -1;
    ~Descriptor()
    {
        if (fd >= 0)
            ::close(fd);
    }
};

QString systemError(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

} // namespace

ResourceFile readResourceFile(const QString &path, qint64 maxSize)
{
    ResourceFile file;
    // O_NONBLOCK: opening a FIFO for reading would otherwise wait for a writer.
    Descriptor descriptor{::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)};
    if (descriptor.fd < 0) {
        file.missing = errno == ENOENT;
        file.error = file.missing ? QStringLiteral("does not exist")
                                  : QStringLiteral("cannot be opened: %1").arg(systemError(errno));
        return file;
    }
    struct stat status{};
    if (::fstat(descriptor.fd, &status) != 0) {
        file.error = QStringLiteral("cannot be read: %1").arg(systemError(errno));
        return file;
    }
    if (!S_ISREG(status.st_mode)) {
        file.error = QStringLiteral("is not a regular file");
        return file;
    }
    const auto tooLarge = [&file, maxSize] {
        file.error = QStringLiteral("is larger than %1 bytes").arg(maxSize);
    };
    if (status.st_size > maxSize) {
        tooLarge();
        return file;
    }

    // The file may grow while it is read: one byte past the limit tells.
    QByteArray contents(static_cast<qsizetype>(status.st_size) + 1, Qt::Uninitialized);
    qsizetype length = 0;
    for (;;) {
        if (length == contents.size()) {
            if (length > maxSize) {
                tooLarge();
                return file;
            }
            contents.resize(std::min<qsizetype>(contents.size() * 2 + 1, maxSize + 1));
        }
        const ssize_t got = ::read(descriptor.fd, contents.data() + length, static_cast<std::size_t>(contents.size() - length));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            file.error = QStringLiteral("cannot be read: %1").arg(systemError(errno));
            return file;
        }
        if (got == 0)
            break;
        length += got;
    }
    if (length > maxSize) {
        tooLarge();
        return file;
    }
    contents.truncate(length);
    file.contents = std::move(contents);
    return file;
}

} // namespace pde
