// SPDX-License-Identifier: MIT
#include "vault/VaultWriter.h"

namespace Tessaline {

QByteArray VaultWriter::write(const VaultData& data)
{
    VaultWriter writer;
    writer.root(data);
    return QByteArray(writer.m_out.data(), static_cast<qsizetype>(writer.m_out.size()));
}

void VaultWriter::newline()
{
    m_out += '\n';
    m_out.append(m_depth * 2, ' ');
}

void VaultWriter::openObject()
{
    m_out += '{';
    ++m_depth;
    m_first = true;
}
void VaultWriter::closeObject()
{
    --m_depth;
    newline();
    m_out += '}';
    m_first = false;
}
void VaultWriter::key(const char* name)
{
    if (!m_first)
        m_out += ',';
    m_first = false;
    newline();
    m_out += '"';
    m_out += name;
    m_out += "\" : ";
}
void VaultWriter::openArray(bool empty)
{
    m_out += empty ? "[]" : "[";
    if (!empty)
        ++m_depth;
    // An empty array is complete: whatever follows it needs a comma.
    m_first = !empty;
}
void VaultWriter::closeArray()
{
    --m_depth;
    newline();
    m_out += ']';
    m_first = false;
}
void VaultWriter::element()
{
    if (!m_first)
        m_out += ',';
    m_first = false;
    newline();
}

void VaultWriter::boolean(bool value)
{
    m_out += value ? "true" : "false";
}

void VaultWriter::string(const QString& text)
{
    static const char hex[] = "0123456789abcdef";
    // The text's UTF-8 goes through one reused buffer rather than a new array per string.
    const qsizetype room = m_encoder.requiredSpace(text.size());
    if (m_utf8.size() < room)
        m_utf8.resize(std::max(room, 2 * m_utf8.size()));
    char* const begin = m_utf8.data();
    const char* const end = m_encoder.appendToBuffer(begin, text);
    const char* run = begin;
    m_out += '"';
    // Runs of bytes that need no escape are copied whole.
    for (const char* p = run; p < end; ++p) {
        const auto byte = static_cast<unsigned char>(*p);
        if (byte >= 0x20 && byte != '"' && byte != '\\' && byte != '/')
            continue;
        m_out.append(run, p - run);
        run = p + 1;
        switch (byte) {
        case '"':
            m_out += "\\\"";
            break;
        case '\\':
            m_out += "\\\\";
            break;
        case '/':
            m_out += "\\/";
            break;
        case '\b':
            m_out += "\\b";
            break;
        case '\f':
            m_out += "\\f";
            break;
        case '\n':
            m_out += "\\n";
            break;
        case '\r':
            m_out += "\\r";
            break;
        case '\t':
            m_out += "\\t";
            break;
        default:
            m_out += "\\u00";
            m_out += hex[byte >> 4];
            m_out += hex[byte & 0xF];
        }
    }
    m_out.append(run, end - run);
    m_out += '"';
}

void VaultWriter::optionalString(const char* name, const std::optional<QString>& value)
{
    if (value) {
        key(name);
        string(*value);
    }
}

void VaultWriter::item(const ShortcutItem& item)
{
    openObject();
    key("chord");
    string(item.chord);
    if (item.favorite) {
        key("favorite");
        boolean(*item.favorite);
    }
    optionalString("menu", item.menu);
    key("name");
    string(item.name);
    optionalString("note", item.note);
    optionalString("source", item.source);
    if (item.tags) {
        key("tags");
        openArray(item.tags->isEmpty());
        if (!item.tags->isEmpty()) {
            for (const QString& tag : *item.tags) {
                element();
                string(tag);
            }
            closeArray();
        }
    }
    closeObject();
}

void VaultWriter::items(const QList<ShortcutItem>& list)
{
    openArray(list.isEmpty());
    if (list.isEmpty())
        return;
    for (const ShortcutItem& entry : list) {
        element();
        item(entry);
    }
    closeArray();
}

void VaultWriter::pack(const AppShortcutPack& pack)
{
    openObject();
    optionalString("bundleID", pack.bundleID);
    key("name");
    string(pack.name);
    key("shortcuts");
    items(pack.shortcuts);
    closeObject();
}

void VaultWriter::root(const VaultData& data)
{
    qsizetype itemCount = data.global.size();
    for (const AppShortcutPack& pack : data.apps)
        itemCount += pack.shortcuts.size();
    m_out.reserve(static_cast<std::size_t>(itemCount) * 200 + 1024);
    openObject();
    optionalString("_comment", data.comment);
    key("apps");
    openArray(data.apps.isEmpty());
    if (!data.apps.isEmpty()) {
        for (const AppShortcutPack& entry : data.apps) {
            element();
            pack(entry);
        }
        closeArray();
    }
    key("global");
    items(data.global);
    closeObject();
    m_out += '\n';
}

} // namespace Tessaline
