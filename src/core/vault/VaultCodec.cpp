// SPDX-License-Identifier: MIT
#include "vault/VaultCodec.h"

#include "vault/VaultKeyPath.h"
#include "vault/VaultReader.h"
#include "vault/VaultTreeReader.h"
#include "vault/VaultWriter.h"

#include <QJsonDocument>
#include <QJsonParseError>

namespace Tessaline::VaultCodec {

Expected<VaultData> decode(const QByteArray& json)
{
    VaultData data;
    VaultReader reader(json);
    const VaultReader::Outcome outcome = reader.read(data);
    if (outcome == VaultReader::Outcome::Ok)
        return data;

    // Something is wrong. A syntax error anywhere in the document is reported as such, with
    // the offset QJsonDocument gives; otherwise the wrong key found above is.
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return Unexpected(VaultKeyPath::syntaxError(parseError));
    if (outcome == VaultReader::Outcome::TypeError)
        return Unexpected(reader.error());
    // The fast reader refused what QJsonDocument accepts: read the document tree instead.
    return VaultTreeReader::read(document);
}

QByteArray encode(const VaultData& data)
{
    return VaultWriter::write(data);
}

} // namespace Tessaline::VaultCodec
