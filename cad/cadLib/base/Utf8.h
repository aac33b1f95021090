// Conversions between UTF-8 and UTF-16, and the file opener that validates a UTF-8 path first.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace cad
{

// Decodes UTF-8 into UTF-16, code points above 0xFFFF as surrogate pairs.
// Throws std::logic_error("not a UTF-8 string") on a stray continuation byte, a lead byte
// above 0xF7, a truncated sequence, a surrogate code point or one above 0x10FFFF.
std::u16string utf8AUtf16(const std::string& texto);

// Appends one code point (below 0x110000) as UTF-8.
void anadeUTF8(std::string& salida, uint32_t codigo);

// Encodes UTF-16 as UTF-8; an unpaired surrogate is written as U+FFFD.
std::string utf16AUtf8(const std::u16string& texto);

// Opens a file named by a UTF-8 path. The path is validated (and may throw, see utf8AUtf16)
// before any file is touched. Returns null when the file can't be opened.
std::FILE* abreFicheroUtf8(const std::string& ruta, const char* modo);

}  // namespace cad
