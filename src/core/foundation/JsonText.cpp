#include "foundation/JsonText.h"

namespace tagmoor {

namespace {

void appendUnicodeEscape(std::string& out, char16_t unit) {
    static constexpr char kHex[] = "0123456789abcdef";
    const char escape[] = {'\\',
                           'u',
                           kHex[(unit >> 12) & 0xF],
                           kHex[(unit >> 8) & 0xF],
                           kHex[(unit >> 4) & 0xF],
                           kHex[unit & 0xF]};
    out.append(escape, sizeof escape);
}

bool standsAsItIs(char16_t unit) {
    return unit >= 0x20 && unit < 0x80 && unit != u'"' && unit != u'\\';
}

void appendAsciiEscape(std::string& out, char16_t unit) {
    switch (unit) {
    case u'"':
        out += "\\\"";
        return;
    case u'\\':
        out += "\\\\";
        return;
    case u'\b':
        out += "\\b";
        return;
    case u'\f':
        out += "\\f";
        return;
    case u'\n':
        out += "\\n";
        return;
    case u'\r':
        out += "\\r";
        return;
    case u'\t':
        out += "\\t";
        return;
    default:
        appendUnicodeEscape(out, unit);
    }
}

void appendUtf8(std::string& out, char32_t code) {
    char bytes[4];
    int size = 0;
    if (code < 0x800) {
        bytes[size++] = char(0xC0 | (code >> 6));
    } else if (code < 0x10000) {
        bytes[size++] = char(0xE0 | (code >> 12));
        bytes[size++] = char(0x80 | ((code >> 6) & 0x3F));
    } else {
        bytes[size++] = char(0xF0 | (code >> 18));
        bytes[size++] = char(0x80 | ((code >> 12) & 0x3F));
        bytes[size++] = char(0x80 | ((code >> 6) & 0x3F));
    }
    bytes[size++] = char(0x80 | (code & 0x3F));
    out.append(bytes, std::size_t(size));
}

} // namespace

void appendJsonString(std::string& out, QStringView text) {
    const char16_t* unit = text.utf16();
    const char16_t* const end = unit + text.size();
    out += '"';
    while (unit != end) {
        // A run of characters that need no escape goes in one piece.
        const char16_t* run = unit;
        while (run != end && standsAsItIs(*run))
            ++run;
        if (run != unit) {
            const std::size_t at = out.size();
            out.resize(at + std::size_t(run - unit));
            for (char* to = out.data() + at; unit != run; ++unit, ++to)
                *to = char(*unit);
            continue;
        }
        const char16_t c = *unit++;
        if (c < 0x80) {
            appendAsciiEscape(out, c);
        } else if (QChar::isHighSurrogate(c) && unit != end && QChar::isLowSurrogate(*unit)) {
            appendUtf8(out, QChar::surrogateToUcs4(c, *unit));
            ++unit;
        } else if (QChar::isSurrogate(c)) {
            appendUnicodeEscape(out, c);
        } else {
            appendUtf8(out, c);
        }
    }
    out += '"';
}

void appendJsonStrings(std::string& out, const QStringList& texts) {
    out += '[';
    for (qsizetype i = 0; i < texts.size(); ++i) {
        if (i > 0)
            out += ',';
        appendJsonString(out, texts[i]);
    }
    out += ']';
}

} // namespace tagmoor
