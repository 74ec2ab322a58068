#pragma once

#include <cstdint>
#include <stdexcept>

namespace platform {

// The old runtime's 16-bit integers raise an error on overflow instead of wrapping.
class OverflowError : public std::overflow_error {
public:
    OverflowError() : std::overflow_error("Dépassement de capacité") {}
};

// Integer division by zero is its own run-time error there.
class DivisionByZeroError : public std::domain_error {
public:
    DivisionByZeroError() : std::domain_error("Division par zéro") {}
};

// Narrows to a signed 16-bit integer or throws OverflowError.
std::int16_t toInt16(long long value);
// Rounds half to even, as the old runtime's integer conversion does, then narrows.
// 2.5 -> 2, 3.5 -> 4, -2.5 -> -2, -32768.5 -> -32768; 32767.5 and NaN throw OverflowError.
std::int16_t roundToInt16(double value);

std::int16_t add16(std::int16_t a, std::int16_t b);
std::int16_t sub16(std::int16_t a, std::int16_t b);
std::int16_t mul16(std::int16_t a, std::int16_t b);

// -(-32768) and Abs(-32768) do not fit and throw OverflowError.
std::int16_t neg16(std::int16_t a);
std::int16_t abs16(std::int16_t a);
// Integer division truncated towards zero ("\") and its remainder ("Mod", sign of the
// dividend). A zero divisor throws DivisionByZeroError; -32768 \ -1 throws OverflowError.
std::int16_t div16(std::int16_t a, std::int16_t b);
std::int16_t mod16(std::int16_t a, std::int16_t b);

} // namespace platform
