// Number texts (the calculator's display, configuration record 2): any text reads as a number
// or as an overflow, and a number written and read again is the same number.
#include "calculator/numbertext.h"
#include "fuzzcheck.h"

#include <QString>
#include <cmath>
#include <cstdint>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 256)
        return 0;
    const QString text =
        QString::fromLatin1(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    double v = 0;
    try {
        v = calculator::NumberValue(text);
    } catch (const calculator::NumberOverflow&) {
        return 0;
    }
    FUZZ_CHECK(std::isfinite(v));
    const QString written = calculator::NumberText(v);
    FUZZ_CHECK(calculator::NumberText(calculator::NumberValue(written)) == written);

    // Any double, the same bytes taken as one, writes to 15 significant digits; that text reads
    // back to a double that writes the same text again.
    if (size >= sizeof(double)) {
        double d;
        std::memcpy(&d, data, sizeof d);
        if (std::isfinite(d)) {
            const QString t = calculator::NumberText(d);
            FUZZ_CHECK(calculator::NumberText(calculator::NumberValue(t)) == t);
        }
    }
    return 0;
}
