#include "platform/numberformat.h"

#include <charconv>
#include <cmath>
#include <string>
#include <vector>

namespace platform {

namespace {

// ---------------------------------------------------------------------------------------------
// Pattern reading

enum class Kind { Zero, Hash, Literal };

struct Token {
    Kind kind;
    QString text; // literals only
};

struct Pattern {
    std::vector<Token> integer;
    std::vector<Token> fraction;
    std::vector<Token> exponent;
    bool hasPoint = false;
    bool hasExponent = false;
    QChar exponentLetter;
    bool exponentSignAlways = false;
};

void appendLiteral(std::vector<Token>& tokens, const QString& text) {
    if (!tokens.empty() && tokens.back().kind == Kind::Literal)
        tokens.back().text += text;
    else
        tokens.push_back({Kind::Literal, text});
}

Pattern readPattern(const QString& p) {
    Pattern pat;
    std::vector<Token>* current = &pat.integer;
    for (qsizetype i = 0; i < p.size(); ++i) {
        const QChar c = p[i];
        if (c == u'\\') {
            if (i + 1 < p.size())
                appendLiteral(*current, QString(p[++i]));
        } else if (c == u'"') {
            const qsizetype end = p.indexOf(u'"', i + 1);
            const qsizetype stop = end < 0 ? p.size() : end;
            appendLiteral(*current, p.mid(i + 1, stop - i - 1));
            i = stop;
        } else if (c == u'0') {
            current->push_back({Kind::Zero, {}});
        } else if (c == u'#') {
            current->push_back({Kind::Hash, {}});
        } else if (c == u'.' && !pat.hasPoint && !pat.hasExponent) {
            pat.hasPoint = true;
            current = &pat.fraction;
        } else if ((c == u'E' || c == u'e') && !pat.hasExponent && i + 1 < p.size() &&
                   (p[i + 1] == u'+' || p[i + 1] == u'-')) {
            pat.hasExponent = true;
            pat.exponentLetter = c;
            pat.exponentSignAlways = p[i + 1] == u'+';
            ++i;
            current = &pat.exponent;
        } else {
            appendLiteral(*current, QString(c));
        }
    }
    return pat;
}

int countPlaceholders(const std::vector<Token>& tokens) {
    int n = 0;
    for (const Token& t : tokens)
        if (t.kind != Kind::Literal)
            ++n;
    return n;
}

// ---------------------------------------------------------------------------------------------
// Decimal digits of the value

// |value| as 15 significant decimal digits d1..d15 with value = d1.d2...d15 × 10^exp10.
struct Digits {
    std::string digits;
    int exp10 = 0;
};

Digits significantDigits(double magnitude) {
    char buf[64];
    const auto res =
        std::to_chars(buf, buf + sizeof buf, magnitude, std::chars_format::scientific, 14);
    const std::string s(buf, res.ptr);
    Digits d;
    const auto e = s.find('e');
    for (std::size_t i = 0; i < e; ++i)
        if (s[i] != '.')
            d.digits += s[i];
    d.exp10 = std::stoi(s.substr(e + 1));
    return d;
}

// Adds one unit in the last place; returns true when a new leading digit appeared.
bool incrementDigits(std::string& n) {
    for (auto it = n.rbegin(); it != n.rend(); ++it) {
        if (*it != '9') {
            ++*it;
            return false;
        }
        *it = '0';
    }
    n.insert(n.begin(), '1');
    return true;
}

// The first `keep` digits, rounded half-up on the next one; missing digits are zeros.
std::string roundedPrefix(const Digits& d, long long keep) {
    const long long have = static_cast<long long>(d.digits.size());
    if (keep < 0)
        return {};
    if (keep == 0)
        return d.digits[0] >= '5' ? std::string("1") : std::string();
    if (keep >= have)
        return d.digits + std::string(static_cast<std::size_t>(keep - have), '0');
    std::string n = d.digits.substr(0, static_cast<std::size_t>(keep));
    if (d.digits[static_cast<std::size_t>(keep)] >= '5')
        incrementDigits(n);
    return n;
}

std::string stripLeadingZeros(const std::string& s) {
    const auto first = s.find_first_not_of('0');
    return first == std::string::npos ? std::string() : s.substr(first);
}

// ---------------------------------------------------------------------------------------------
// Emission

// Integer digits (empty for zero) right-aligned into the placeholders, surplus into the first
// one; `sign` goes right before the first printed digit.
QString emitInteger(const std::vector<Token>& tokens, std::string digits, const QString& sign) {
    const int places = countPlaceholders(tokens);
    int firstZero = -1;
    for (int j = 0, k = 0; j < static_cast<int>(tokens.size()); ++j) {
        if (tokens[static_cast<std::size_t>(j)].kind == Kind::Literal)
            continue;
        if (tokens[static_cast<std::size_t>(j)].kind == Kind::Zero) {
            firstZero = k;
            break;
        }
        ++k;
    }
    if (firstZero >= 0) {
        const std::size_t minDigits = static_cast<std::size_t>(places - firstZero);
        if (digits.size() < minDigits)
            digits.insert(0, minDigits - digits.size(), '0');
    }

    const int len = static_cast<int>(digits.size());
    const int offset = places - len; // placeholder index of digits[0]
    QString out;
    bool signDone = sign.isEmpty();
    auto put = [&](const std::string& s) {
        if (s.empty())
            return;
        if (!signDone) {
            out += sign;
            signDone = true;
        }
        out += QString::fromLatin1(s.data(), static_cast<qsizetype>(s.size()));
    };

    int j = 0;
    for (const Token& t : tokens) {
        if (t.kind == Kind::Literal) {
            out += t.text;
            continue;
        }
        if (j == 0 && offset < 0)
            put(digits.substr(0, static_cast<std::size_t>(-offset)));
        const int idx = j - offset;
        if (idx >= 0 && idx < len)
            put(std::string(1, digits[static_cast<std::size_t>(idx)]));
        ++j;
    }
    if (places == 0)
        put(digits);
    if (!signDone)
        out += sign;
    return out;
}

// Fraction digits (exactly one per placeholder); trailing zeros vanish under "#".
QString emitFraction(const std::vector<Token>& tokens, const std::string& digits) {
    int lastNeeded = -1;
    int j = 0;
    for (const Token& t : tokens) {
        if (t.kind == Kind::Literal)
            continue;
        if (t.kind == Kind::Zero || digits[static_cast<std::size_t>(j)] != '0')
            lastNeeded = j;
        ++j;
    }
    QString out;
    j = 0;
    for (const Token& t : tokens) {
        if (t.kind == Kind::Literal) {
            out += t.text;
            continue;
        }
        if (j <= lastNeeded)
            out += QLatin1Char(digits[static_cast<std::size_t>(j)]);
        ++j;
    }
    return out;
}

QString formatFixed(double value, const Pattern& pat) {
    const int places = countPlaceholders(pat.fraction);
    const Digits d = significantDigits(std::fabs(value));
    const std::string n =
        stripLeadingZeros(roundedPrefix(d, static_cast<long long>(d.exp10) + 1 + places));

    std::string integer;
    std::string fraction(static_cast<std::size_t>(places), '0');
    if (n.size() > static_cast<std::size_t>(places)) {
        integer = n.substr(0, n.size() - static_cast<std::size_t>(places));
        fraction = n.substr(integer.size());
    } else {
        fraction.replace(fraction.size() - n.size(), n.size(), n);
    }

    const QString sign = (value < 0 && !n.empty()) ? QStringLiteral("-") : QString();
    QString out = emitInteger(pat.integer, integer, sign);
    if (pat.hasPoint)
        out += QLatin1Char(',');
    out += emitFraction(pat.fraction, fraction);
    return out;
}

QString formatExponent(double value, const Pattern& pat) {
    const int intPlaces = std::max(1, countPlaceholders(pat.integer));
    const int fracPlaces = countPlaceholders(pat.fraction);
    const int width = intPlaces + fracPlaces;

    std::string n(static_cast<std::size_t>(width), '0');
    int exponent = 0;
    if (value != 0) {
        const Digits d = significantDigits(std::fabs(value));
        n = roundedPrefix(d, width);
        int exp10 = d.exp10;
        if (n.size() > static_cast<std::size_t>(width)) { // 9.99… rounded up to 10.0…
            n.pop_back();
            ++exp10;
        }
        exponent = exp10 - (intPlaces - 1);
    }

    const std::string integer = stripLeadingZeros(n.substr(0, static_cast<std::size_t>(intPlaces)));
    const QString sign = value < 0 ? QStringLiteral("-") : QString();
    QString out = emitInteger(pat.integer, integer, sign);
    if (pat.hasPoint)
        out += QLatin1Char(',');
    out += emitFraction(pat.fraction, n.substr(static_cast<std::size_t>(intPlaces)));

    out += pat.exponentLetter;
    if (exponent < 0)
        out += QLatin1Char('-');
    else if (pat.exponentSignAlways)
        out += QLatin1Char('+');
    out += emitInteger(pat.exponent, stripLeadingZeros(std::to_string(std::abs(exponent))), {});
    return out;
}

bool isBlank(QChar c) {
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n' || c == QChar(0x00A0) ||
           c == QChar(0x202F);
}

} // namespace

QString formatNumber(double value, const QString& pattern) {
    if (!std::isfinite(value))
        return {};
    const Pattern pat = readPattern(pattern);
    return pat.hasExponent ? formatExponent(value, pat) : formatFixed(value, pat);
}

QString formatTrimmed(double value, const QString& pattern) {
    return formatNumber(value, pattern).trimmed();
}

bool parseFrench(const QString& text, double* value) {
    *value = 0;

    // Collapse to plain ASCII in C conventions, refusing anything foreign on the way.
    std::string s;
    s.reserve(static_cast<std::size_t>(text.size()));
    for (const QChar c : text) {
        if (isBlank(c))
            continue;
        if (c == u',')
            s += '.';
        else if ((c >= u'0' && c <= u'9') || c == u'+' || c == u'-' || c == u'e' || c == u'E')
            s += static_cast<char>(c.unicode());
        else
            return false;
    }

    // sign? digits* (. digits*)? ((e|E) sign? digits+)?  with at least one mantissa digit
    std::size_t i = 0;
    bool negative = false;
    if (i < s.size() && (s[i] == '+' || s[i] == '-'))
        negative = s[i++] == '-';
    const std::size_t mantissaStart = i;
    long long intDigits = 0; // significant integer digits (leading zeros left out)
    long long leadingFracZeros = 0;
    bool anyDigit = false;
    bool nonZeroSeen = false;
    while (i < s.size() && s[i] >= '0' && s[i] <= '9') {
        nonZeroSeen = nonZeroSeen || s[i] != '0';
        if (nonZeroSeen)
            ++intDigits;
        anyDigit = true;
        ++i;
    }
    if (i < s.size() && s[i] == '.') {
        ++i;
        while (i < s.size() && s[i] >= '0' && s[i] <= '9') {
            if (!nonZeroSeen && s[i] == '0')
                ++leadingFracZeros;
            nonZeroSeen = nonZeroSeen || s[i] != '0';
            anyDigit = true;
            ++i;
        }
    }
    if (!anyDigit)
        return false;
    const std::size_t mantissaEnd = i;
    long long exponent = 0;
    if (i < s.size() && (s[i] == 'e' || s[i] == 'E')) {
        ++i;
        bool expNegative = false;
        if (i < s.size() && (s[i] == '+' || s[i] == '-'))
            expNegative = s[i++] == '-';
        if (i >= s.size())
            return false;
        while (i < s.size() && s[i] >= '0' && s[i] <= '9') {
            if (exponent < 100000)
                exponent = exponent * 10 + (s[i] - '0');
            ++i;
        }
        if (expNegative)
            exponent = -exponent;
    }
    if (i != s.size())
        return false;
    if (!nonZeroSeen)
        return true; // a written zero, whatever its exponent

    // Decide overflow versus underflow from the order of magnitude, then let the library do
    // the correctly rounded conversion.
    const long long order = intDigits > 0 ? intDigits + exponent : exponent - leadingFracZeros;
    if (order > 310)
        return false;
    if (order < -330)
        return true;

    std::string c = s.substr(mantissaStart, mantissaEnd - mantissaStart);
    c += 'e';
    c += std::to_string(exponent);
    double v = 0;
    const auto res = std::from_chars(c.data(), c.data() + c.size(), v);
    if (res.ec == std::errc::result_out_of_range)
        return order < 0;
    if (res.ec != std::errc() || !std::isfinite(v))
        return false;
    *value = negative ? -v : v;
    return true;
}

} // namespace platform
