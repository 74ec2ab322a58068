#include "platform/cp1252.h"

#include <array>

namespace platform {

namespace {

// Characters of bytes 0x80 to 0x9F; the five bytes Windows leaves undefined map to the C1
// control of the same value. Every other byte is the Unicode code point of the same value.
constexpr std::array<char16_t, 32> HighTable = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, // 80-87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F, // 88-8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, // 90-97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178, // 98-9F
};

char encodeOne(char32_t u) {
    if (u < 0x80 || (u >= 0xA0 && u <= 0xFF))
        return static_cast<char>(u);
    for (std::size_t i = 0; i < HighTable.size(); ++i)
        if (HighTable[i] == u)
            return static_cast<char>(0x80 + i);
    return '?';
}

} // namespace

QByteArray toCp1252(const QString& text) {
    QByteArray out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            out += '?';
            ++i;
            continue;
        }
        out += encodeOne(c.unicode());
    }
    return out;
}

QString fromCp1252(const QByteArray& bytes) {
    QString out;
    out.reserve(bytes.size());
    for (const char b : bytes) {
        const auto u = static_cast<unsigned char>(b);
        out += (u >= 0x80 && u <= 0x9F) ? QChar(HighTable[u - 0x80]) : QChar(u);
    }
    return out;
}

} // namespace platform
