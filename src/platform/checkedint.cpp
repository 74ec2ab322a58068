#include "platform/checkedint.h"

#include <cmath>
#include <limits>

namespace platform {
std::int16_t toInt16(long long v) {
    if (v < std::numeric_limits<std::int16_t>::min() || v > std::numeric_limits<std::int16_t>::max())
        throw OverflowError();
    return static_cast<std::int16_t>(v);
}
std::int16_t roundToInt16(double v) {
    if (!std::isfinite(v) || v < -32768.5 || v > 32767.5) throw OverflowError();
    return toInt16(static_cast<long long>(std::nearbyint(v)));
}
std::int16_t add16(std::int16_t a, std::int16_t b) { return toInt16(static_cast<long long>(a) + b); }
std::int16_t sub16(std::int16_t a, std::int16_t b) { return toInt16(static_cast<long long>(a) - b); }
std::int16_t mul16(std::int16_t a, std::int16_t b) { return toInt16(static_cast<long long>(a) * b); }
} // namespace platform
