#pragma once

#include <cstdint>
#include <stdexcept>

namespace platform {

// The old runtime's 16-bit integers raise an error on overflow instead of wrapping.
class OverflowError : public std::overflow_error {
public:
    OverflowError() : std::overflow_error("Dépassement de capacité") {}
};

// Narrows to a signed 16-bit integer or throws OverflowError.
std::int16_t toInt16(long long value);
// Rounds half to even, as the old runtime's integer conversion does, then narrows.
std::int16_t roundToInt16(double value);

std::int16_t add16(std::int16_t a, std::int16_t b);
std::int16_t sub16(std::int16_t a, std::int16_t b);
std::int16_t mul16(std::int16_t a, std::int16_t b);

} // namespace platform
