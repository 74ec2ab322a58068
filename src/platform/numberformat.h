#pragma once

#include <QString>

namespace platform {

// Format patterns as the old runtime read them: "0" compulsory digit, "#" optional digit,
// first "." the decimal point (shown as a French comma), every other character a literal
// that is emitted where it stands. Examples: "### ### ##0.0##", "### ##0.0", "#.#######E+00".
// The value is taken to 15 significant digits and rounded half-up in decimal.
// A minus sign goes right before the first printed digit, after any leading literal blanks.
QString formatNumber(double value, const QString& pattern);

// formatNumber() then trimmed of surrounding blanks.
QString formatTrimmed(double value, const QString& pattern);

// Reads a text written in the French conventions: blanks ignored, comma as decimal separator
// ("100 000,0" reads 100000). Returns false (and leaves *value 0) when the text is not a number.
bool parseFrench(const QString& text, double* value);

} // namespace platform
