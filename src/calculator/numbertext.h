#pragma once

#include <QString>
#include <stdexcept>

namespace calculator {

// Raised when a number does not fit in a double (reading "1E400", writing an infinity).
class NumberOverflow : public std::overflow_error {
public:
    NumberOverflow() : std::overflow_error("Dépassement de capacité") {}
};

// Locale-independent number to text: 15 significant digits, "." as decimal point, no "0"
// before the point, one leading blank for values >= 0 and "-" otherwise. Plain digits for
// 0.1 <= |x| < 1E15 and for smaller values that need at most 15 decimal places; otherwise
// mantissa, "E", sign and at least two exponent digits (" 1E+15", "-1.5E-16").
// The text reads back through NumberValue to the double nearest to it, and writing that
// double again gives the same text. Throws NumberOverflow for an infinity or a NaN.
QString NumberText(double value);

// Locale-independent text to number: the longest numeric prefix, blanks (space, tab, CR, LF)
// skipped wherever they stand; optional sign, digits with at most one ".", optional exponent
// introduced by "E", "e", "D" or "d" with an optional sign. A text with no digits reads 0,
// so do magnitudes too small for a double. Throws NumberOverflow when the magnitude is too
// large for a double.
double NumberValue(const QString& text);

} // namespace calculator
