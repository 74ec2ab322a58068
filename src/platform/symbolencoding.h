#pragma once

namespace platform {

// Unicode character of a byte of the Adobe Symbol encoding, the layout of the "Symbol" font of
// old documents ('D' is Δ, 'p' is π, 0xAE is →). Bytes without a character (controls, 0x7F to
// 0x9F, 0xF0, 0xFF) give 0.
char16_t symbolCharacter(unsigned char byte);

// Wingdings and other picture fonts also declare the symbol character set. Their bytes have
// no Unicode text; the bullets documents use are mapped, anything else becomes a bullet.
char16_t dingbatCharacter(unsigned char byte);

} // namespace platform
