// SPDX-License-Identifier: MIT
// Feeds arbitrary bytes to the vault decoder. Beyond not crashing: the direct reader never
// accepts what is not JSON, it and the JSON tree reader accept and refuse the same documents
// and read the same records, and a decoded vault survives being written and read again
// unchanged.
#include "FuzzInput.h"

#include "vault/VaultCodec.h"
#include "vault/VaultReader.h"
#include "vault/VaultTreeReader.h"

#include <QJsonDocument>
#include <QJsonParseError>

#include <algorithm>

using namespace Tessaline;

namespace {

bool isValid(const QString& text)
{
    return text.isValidUtf16();
}

bool isValid(const std::optional<QString>& text)
{
    return !text || text->isValidUtf16();
}

// Whether every text of the vault is valid UTF-16. JSON escapes can spell a lone surrogate
// ("\udc00"), which UTF-8 cannot hold: writing stores it as U+FFFD.
bool holdsValidText(const VaultData& data)
{
    const auto itemIsValid = [](const ShortcutItem& item) {
        const QStringList tags = item.tags.value_or(QStringList());
        return isValid(item.name) && isValid(item.chord) && isValid(item.menu) &&
               isValid(item.note) && isValid(item.source) &&
               std::all_of(tags.cbegin(), tags.cend(),
                           [](const QString& tag) { return isValid(tag); });
    };
    return isValid(data.comment) &&
           std::all_of(data.global.cbegin(), data.global.cend(), itemIsValid) &&
           std::all_of(data.apps.cbegin(), data.apps.cend(), [&](const AppShortcutPack& pack) {
               return isValid(pack.name) && isValid(pack.bundleID) &&
                      std::all_of(pack.shortcuts.cbegin(), pack.shortcuts.cend(), itemIsValid);
           });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray json = FuzzInput::bytes(data, size);

    VaultData direct;
    VaultReader reader(json);
    const VaultReader::Outcome outcome = reader.read(direct);

    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    const bool isJson = parseError.error == QJsonParseError::NoError;
    // The direct reader stops at the first wrong key, before it has seen the rest: only a
    // document it reads whole must be JSON.
    if (outcome == VaultReader::Outcome::Ok) {
        FuzzInput::require(isJson, "the direct reader only reads JSON", parseError.errorString());
        const Expected<VaultData> tree = VaultTreeReader::read(document);
        FuzzInput::require(tree.has_value(), "the tree reader reads what the direct one does",
                           tree.has_value() ? QString() : tree.error());
        FuzzInput::require(*tree == direct, "both readers read the same records");
    }
    if (isJson) {
        // A repeated key is where the two part: the tree keeps only the last value, the direct
        // reader checks each. On the document as Qt writes it again, without repeats, both
        // accept and refuse alike (which fault is named first may still differ: the tree
        // reader checks keys in a fixed order, the direct one in the file's order).
        const QByteArray rewritten = document.toJson(QJsonDocument::Compact);
        VaultData fromRewritten;
        VaultReader rewrittenReader(rewritten);
        const VaultReader::Outcome rewrittenOutcome = rewrittenReader.read(fromRewritten);
        FuzzInput::require(rewrittenOutcome != VaultReader::Outcome::SyntaxError,
                           "the direct reader reads the JSON Qt writes",
                           QString::fromUtf8(rewritten));
        const Expected<VaultData> tree = VaultTreeReader::read(document);
        if (tree.has_value())
            FuzzInput::require(rewrittenOutcome == VaultReader::Outcome::Ok &&
                                   fromRewritten == *tree,
                               "both readers read the same records", QString::fromUtf8(rewritten));
        else
            FuzzInput::require(rewrittenOutcome == VaultReader::Outcome::TypeError,
                               "both readers refuse the same documents", tree.error());
    }

    const Expected<VaultData> decoded = VaultCodec::decode(json);
    if (outcome == VaultReader::Outcome::Ok)
        FuzzInput::require(decoded.has_value() && *decoded == direct,
                           "the codec gives the direct reader's records");
    else if (!isJson || outcome == VaultReader::Outcome::TypeError)
        FuzzInput::require(!decoded.has_value(), "the codec refuses what is no vault");
    if (isJson && outcome == VaultReader::Outcome::TypeError)
        FuzzInput::require(decoded.error() == reader.error(), "the codec reports the wrong key");
    if (!decoded)
        return 0;

    const QByteArray written = VaultCodec::encode(*decoded);
    const Expected<VaultData> reread = VaultCodec::decode(written);
    FuzzInput::require(reread.has_value(), "a written vault reads again",
                       reread.has_value() ? QString() : reread.error());
    if (holdsValidText(*decoded))
        FuzzInput::require(*reread == *decoded, "a written vault reads back the same records",
                           QString::fromUtf8(written));
    FuzzInput::require(VaultCodec::encode(*reread) == written, "writing is stable");
    return 0;
}
