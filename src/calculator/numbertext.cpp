#include "calculator/numbertext.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>

namespace calculator {

namespace {

constexpr int SignificantDigits = 15;

bool isBlank(QChar c) {
    const char16_t u = c.unicode();
    return u == u' ' || u == u'\t' || u == u'\r' || u == u'\n';
}

bool isAsciiDigit(QChar c) {
    return c.unicode() >= u'0' && c.unicode() <= u'9';
}

// The 15 significant digits of |value| and the decimal exponent of the first one, rounded to
// nearest from the exact binary value.
struct Decimal {
    std::string digits; // exactly 15 characters, first one non-zero
    int exponent = 0;
};

Decimal toDecimal(double magnitude) {
    std::array<char, 64> buf{};
    const auto res = std::to_chars(buf.data(), buf.data() + buf.size(), magnitude,
                                   std::chars_format::scientific, SignificantDigits - 1);
    const std::string text(buf.data(), res.ptr);
    // d.dddddddddddddde[+-]xx
    Decimal d;
    const auto e = text.find('e');
    d.digits = text.substr(0, 1) + text.substr(2, e - 2);
    d.exponent = std::atoi(text.c_str() + e + 1);
    return d;
}

bool fitsDouble(const Decimal& d) {
    const std::string s = d.digits + "e" + std::to_string(d.exponent - (SignificantDigits - 1));
    double v = 0;
    const auto res = std::from_chars(s.data(), s.data() + s.size(), v);
    return res.ec == std::errc();
}

} // namespace

QString NumberText(double value) {
    if (!std::isfinite(value))
        throw NumberOverflow();
    if (value == 0)
        return QStringLiteral(" 0");

    Decimal d = toDecimal(std::fabs(value));
    // Just below the largest double, rounding to 15 digits would step past it and the text
    // would no longer read back; the nearest 15-digit value below is kept instead.
    if (!fitsDouble(d)) {
        long long n = std::stoll(d.digits) - 1;
        d.digits = std::to_string(n);
    }

    std::string digits = d.digits;
    while (digits.size() > 1 && digits.back() == '0')
        digits.pop_back();
    const int count = static_cast<int>(digits.size());
    const int e = d.exponent;

    bool plain = false;
    if (e >= 15)
        plain = false;
    else if (e >= -1)
        plain = true;
    else
        plain = (count - 1 - e) <= 15; // decimal places the plain form needs

    std::string out = value < 0 ? "-" : " ";
    if (plain) {
        if (e >= 0) {
            if (count <= e + 1) {
                out += digits;
                out.append(static_cast<size_t>(e + 1 - count), '0');
            } else {
                out += digits.substr(0, static_cast<size_t>(e + 1));
                out += '.';
                out += digits.substr(static_cast<size_t>(e + 1));
            }
        } else {
            out += '.';
            out.append(static_cast<size_t>(-e - 1), '0');
            out += digits;
        }
    } else {
        out += digits.substr(0, 1);
        if (count > 1) {
            out += '.';
            out += digits.substr(1);
        }
        out += e < 0 ? "E-" : "E+";
        const int a = std::abs(e);
        if (a < 10)
            out += '0';
        out += std::to_string(a);
    }
    return QString::fromLatin1(out.data(), static_cast<qsizetype>(out.size()));
}

double NumberValue(const QString& text) {
    const qsizetype n = text.size();
    qsizetype i = 0;
    auto skipBlanks = [&] {
        while (i < n && isBlank(text[i]))
            ++i;
    };

    skipBlanks();
    bool negative = false;
    if (i < n && (text[i] == u'+' || text[i] == u'-')) {
        negative = text[i] == u'-';
        ++i;
    }

    std::string mantissa;
    bool point = false;
    bool anyDigit = false;
    for (;;) {
        skipBlanks();
        if (i >= n)
            break;
        const QChar c = text[i];
        if (isAsciiDigit(c)) {
            mantissa += static_cast<char>(c.unicode());
            anyDigit = true;
        } else if (c == u'.' && !point) {
            mantissa += '.';
            point = true;
        } else {
            break;
        }
        ++i;
    }
    if (!anyDigit)
        return 0.0;

    long long exponent = 0;
    if (i < n) {
        const char16_t c = text[i].unicode();
        if (c == u'E' || c == u'e' || c == u'D' || c == u'd') {
            ++i;
            skipBlanks();
            bool expNegative = false;
            if (i < n && (text[i] == u'+' || text[i] == u'-')) {
                expNegative = text[i] == u'-';
                ++i;
            }
            for (;;) {
                skipBlanks();
                if (i >= n || !isAsciiDigit(text[i]))
                    break;
                // Saturate: far beyond any double, the value is decided already.
                if (exponent < 100000)
                    exponent = exponent * 10 + (text[i].unicode() - u'0');
                ++i;
            }
            if (expNegative)
                exponent = -exponent;
        }
    }

    const std::string s = mantissa + "e" + std::to_string(exponent);
    double v = 0;
    const auto res = std::from_chars(s.data(), s.data() + s.size(), v);
    if (res.ec == std::errc::result_out_of_range) {
        // Out of range either way: decide by the position of the first significant digit.
        const auto firstNonZero = mantissa.find_first_not_of("0.");
        if (firstNonZero == std::string::npos)
            return 0.0;
        const auto pointPos = point ? mantissa.find('.') : mantissa.size();
        const long long magnitude =
            static_cast<long long>(pointPos) - static_cast<long long>(firstNonZero) + exponent;
        if (magnitude > 0)
            throw NumberOverflow();
        return 0.0;
    }
    if (v == 0)
        return 0.0;
    return negative ? -v : v;
}

} // namespace calculator
