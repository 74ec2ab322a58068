// The amount fields: whatever is typed or pasted, leaving the field shows an amount from 0 to
// 100 000 that validates to itself.
#include "fuzzcheck.h"
#include "macro/balance.h"

#include <QString>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 256)
        return 0;
    const QString typed =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QString pasted = macro::filterPastedAmount(typed);
    for (const QChar c : pasted)
        FUZZ_CHECK((c >= u'0' && c <= u'9') || c == u',' || c == u'-');
    for (const QString& text : {typed, pasted}) {
        const QString shown = macro::validatedAmountText(text);
        const float value = macro::readAmount(shown);
        FUZZ_CHECK(value >= macro::MinAmount && value <= macro::MaxAmount);
        FUZZ_CHECK(macro::validatedAmountText(shown) == shown);
    }
    return 0;
}
