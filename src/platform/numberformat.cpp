#include "platform/numberformat.h"

namespace platform {
// Placeholder until the formatter lands.
QString formatNumber(double value, const QString&) { return QString::number(value); }
QString formatTrimmed(double value, const QString& pattern) { return formatNumber(value, pattern).trimmed(); }
bool parseFrench(const QString& text, double* value) {
    bool ok = false;
    *value = QString(text).remove(' ').replace(',', '.').toDouble(&ok);
    if (!ok) *value = 0;
    return ok;
}
} // namespace platform
