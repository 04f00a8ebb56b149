// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1StringView>
#include <QString>

class QJsonParseError;

namespace Tessaline {

/// Where in a vault document a reader is, as a key path such as "apps[2].shortcuts[0].chord",
/// and the texts of the errors it reports there. A path lives on the stack while reading (each
/// level points at its parent) and becomes text only when an error is reported, so a large
/// vault reads without building a path string per item.
struct VaultKeyPath
{
    const VaultKeyPath* parent = nullptr;
    QLatin1StringView key;
    qsizetype index = -1;

    VaultKeyPath field(QLatin1StringView name) const { return VaultKeyPath{this, name, -1}; }
    VaultKeyPath element(qsizetype i) const { return VaultKeyPath{this, {}, i}; }

    /// The path as text: keys joined with ".", array indices in brackets; empty at the root.
    QString toString() const;
    /// The error text for a problem found here: "apps[2].name: expected a string", or "the
    /// document: ..." at the root.
    QString problem(const char* problem) const;

    /// The error text for a document that is not JSON, with the byte offset of the fault.
    static QString syntaxError(const QJsonParseError& error);
};

} // namespace Tessaline
