#include "platform/checkedint.h"

#include <cmath>
#include <limits>

namespace platform {

std::int16_t toInt16(long long v) {
    if (v < std::numeric_limits<std::int16_t>::min() ||
        v > std::numeric_limits<std::int16_t>::max())
        throw OverflowError();
    return static_cast<std::int16_t>(v);
}

std::int16_t roundToInt16(double v) {
    // Written without nearbyint so that the result does not depend on the FPU rounding mode.
    // The negated comparison also sends NaN to the error.
    if (!(v >= -32768.5 && v <= 32767.5))
        throw OverflowError();
    double r = std::floor(v);
    const double rest = v - r; // exact for this range
    if (rest > 0.5 || (rest == 0.5 && std::fmod(r, 2.0) != 0.0))
        r += 1.0;
    return toInt16(static_cast<long long>(r));
}

std::int16_t add16(std::int16_t a, std::int16_t b) {
    return toInt16(static_cast<long long>(a) + b);
}
std::int16_t sub16(std::int16_t a, std::int16_t b) {
    return toInt16(static_cast<long long>(a) - b);
}
std::int16_t mul16(std::int16_t a, std::int16_t b) {
    return toInt16(static_cast<long long>(a) * b);
}
std::int16_t neg16(std::int16_t a) {
    return toInt16(-static_cast<long long>(a));
}
std::int16_t abs16(std::int16_t a) {
    return toInt16(std::llabs(a));
}

std::int16_t div16(std::int16_t a, std::int16_t b) {
    if (b == 0)
        throw DivisionByZeroError();
    return toInt16(static_cast<long long>(a) / b);
}
std::int16_t mod16(std::int16_t a, std::int16_t b) {
    if (b == 0)
        throw DivisionByZeroError();
    return toInt16(static_cast<long long>(a) % b);
}

} // namespace platform
