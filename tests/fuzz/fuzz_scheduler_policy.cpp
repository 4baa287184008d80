// SPDX-License-Identifier: MIT
// Fuzzes the cupsd.conf policy editor: any bytes as the configuration. An
// edit must keep every line it does not report, and a second edit of its
// result must change nothing.
#include "host/SchedulerPolicy.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray conf(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QStringList keys{QStringLiteral("com.example.Password"), QStringLiteral("com.example.UserName")};
    QString error;
    const std::optional<pdehost::PolicyEdit> edit = pdehost::addJobPrivateValues(conf, keys, &error);
    if (!edit) {
        if (error.isEmpty())
            std::abort(); // a refusal says why
        return 0;
    }
    qsizetype lines = conf.count('\n');
    for (const pdehost::PolicyChange &change : edit->changes)
        lines += change.added.size() - change.removed.size();
    if (edit->text.count('\n') != lines || edit->changes.isEmpty() != (edit->text == conf))
        std::abort();
    pdehost::describeChanges(edit->changes);
    const std::optional<pdehost::PolicyEdit> again = pdehost::addJobPrivateValues(edit->text, keys, &error);
    if (!again || !again->changes.isEmpty() || again->text != edit->text)
        std::abort();
    return 0;
}
