// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace Tessaline::FuzzInput {

/// The fuzzer's bytes as they are.
inline QByteArray bytes(const std::uint8_t* data, std::size_t size)
{
    return QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
}

/// The fuzzer's bytes cut at every NUL into UTF-8 texts; invalid sequences read as U+FFFD, as
/// they do everywhere Qt decodes UTF-8. Always `count` texts: missing ones are empty, and the
/// last one keeps any further NULs.
inline QList<QString> fields(const std::uint8_t* data, std::size_t size, int count)
{
    const QByteArray all = bytes(data, size);
    QList<QString> out;
    qsizetype start = 0;
    while (out.size() < count - 1) {
        const qsizetype end = all.indexOf('\0', start);
        if (end < 0)
            break;
        out.append(QString::fromUtf8(all.mid(start, end - start)));
        start = end + 1;
    }
    out.append(QString::fromUtf8(all.mid(qMin(start, all.size()))));
    while (out.size() < count)
        out.append(QString());
    return out;
}

/// Stops the run as a crash when an invariant does not hold, saying which one; libFuzzer then
/// keeps the input that broke it.
inline void require(bool holds, const char* invariant, const QString& detail = QString())
{
    if (holds)
        return;
    std::fprintf(stderr, "Invariant broken: %s\n%s\n", invariant, qUtf8Printable(detail));
    std::abort();
}

} // namespace Tessaline::FuzzInput
