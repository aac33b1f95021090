// The Windows code pages that a DXF file's header may name for its texts.
#pragma once

#include <string_view>

namespace cad
{

// The code points of bytes 0x80 to 0xFF under the code page that $DWGCODEPAGE names
// ("ANSI_1250" to "ANSI_1258", "ANSI_874"), or null for a name not known here.
const char16_t* altosPagina(std::string_view nombre);

}  // namespace cad
