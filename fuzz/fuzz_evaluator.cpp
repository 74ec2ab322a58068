// Whatever a student types, the evaluator ends with one of its four codes, in bounded time,
// and a success leaves a text that reads as a number or as the overflow the calculator shows
// as "Dépassement de capacité".
#include "calculator/evaluator.h"
#include "calculator/numbertext.h"
#include "fuzzcheck.h"

#include <QString>
#include <cmath>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0 || size > 512)
        return 0;
    const std::int16_t angle = data[0] & 1 ? calculator::Radians : calculator::Degrees;
    QString text = QString::fromUtf8(reinterpret_cast<const char*>(data) + 1,
                                     static_cast<qsizetype>(size - 1));
    std::int16_t code = -1;
    try {
        calculator::EvaluateExpression(text, code, angle);
    } catch (...) {
        FUZZ_CHECK(!"an exception escaped the evaluator");
    }
    FUZZ_CHECK(code >= 0 && code <= 3);
    if (code == 0) {
        try {
            const double v = calculator::NumberValue(text);
            FUZZ_CHECK(!std::isnan(v));
        } catch (const calculator::NumberOverflow&) {
        }
    }
    return 0;
}
