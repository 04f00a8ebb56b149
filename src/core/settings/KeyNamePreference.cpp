// SPDX-License-Identifier: MIT
#include "KeyNamePreference.h"

#include "DefaultsStore.h"

namespace Tessaline {

namespace {

const QString kSymbols = QStringLiteral("symbols");
const QString kWords = QStringLiteral("words");

} // namespace

KeyNamePreference::KeyNamePreference(DefaultsStore& defaults, QObject* parent)
    : QObject(parent), m_defaults(defaults), m_style(read(defaults))
{}

KeyNameStyle KeyNamePreference::read(const DefaultsStore& defaults)
{
    return defaults.stringValue(QString::fromLatin1(defaultsKey)) == kSymbols
               ? KeyNameStyle::Symbols
               : KeyNameStyle::Words;
}

void KeyNamePreference::setStyle(KeyNameStyle style)
{
    if (style == m_style)
        return;
    m_style = style;
    m_defaults.setString(QString::fromLatin1(defaultsKey),
                         style == KeyNameStyle::Symbols ? kSymbols : kWords);
    Q_EMIT styleChanged();
}

} // namespace Tessaline
