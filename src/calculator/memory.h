#pragma once

namespace calculator {

// The calculator memory (M+, M-, RM, CM), shared by every window of the program.
inline double Memory = 0;

} // namespace calculator
