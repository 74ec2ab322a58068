#pragma once

#include <QString>

namespace platform {

// Format patterns as the old runtime read them: "0" compulsory digit, "#" optional digit,
// first "." the decimal point (shown as a French comma), every other character a literal
// that is emitted where it stands. Examples: "### ### ##0.0##", "### ##0.0", "#.#######E+00".
// The value is taken to 15 significant digits and rounded half-up in decimal.
// A minus sign goes right before the first printed digit, after any leading literal blanks.
//
// Details that callers can rely on:
// - Integer digits are right-aligned into the placeholders; digits that do not fit go into the
//   first run ("### ##0.0" shows 1234567 as "1234 567,0"). A "0" placeholder forces the digits
//   to its right as well; a zero integer part under "#" placeholders shows no digit at all
//   ("#.##" gives ",5" for 0.5).
// - Trailing fraction zeros are dropped where "#" stands, but the decimal comma always stays,
//   as the old runtime did ("#.##" gives "5," for 5 and "#.#######E+00" gives "1,E+03" for 1000).
// - "E+" or "e+" (or "E-", "e-") starts an exponent: "E+" always shows the exponent's sign,
//   "E-" only a minus. The mantissa has as many integer digits as integer placeholders (at
//   least one), and the exponent at least as many digits as its "0" placeholders.
// - A value that rounds to zero shows no minus sign (x = 0 times a negative energy is -0.0).
// - A backslash makes the next character a literal; text between double quotes is literal.
// - Infinities and NaN, which the old runtime could not hold, give an empty text.
QString formatNumber(double value, const QString& pattern);

// formatNumber() then trimmed of surrounding blanks.
QString formatTrimmed(double value, const QString& pattern);

// Reads a text written in the French conventions: blanks ignored, comma as decimal separator
// ("100 000,0" reads 100000). Returns false (and leaves *value 0) when the text is not a number.
//
// Blanks are spaces, tabs, line breaks and the no-break spaces U+00A0 and U+202F, skipped
// anywhere. An optional "+" or "-" may lead, at most one comma separates the decimals, and an
// optional exponent "E"/"e" with an optional sign may follow ("1,5E3" reads 1500). A point is
// not a decimal separator: the amount fields turn a typed point into a comma, so a point can
// only come from a text written under other conventions, and "2.5" is refused rather than
// misread. Values beyond the double range are refused; values too small for it read as 0.
// Callers that hold single precision convert the result themselves.
bool parseFrench(const QString& text, double* value);

} // namespace platform
