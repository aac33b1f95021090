// Text encoding of DXF files. Inside the kernel every text is UTF-8; a DXF of the R12 kind
// carries its texts in the code page its header names, Windows-1252 when it names none, and
// files of version AC1021 and later carry UTF-8. Characters a code page lacks travel as
// "\U+XXXX" escapes, which every DXF reader decodes.
#pragma once

#include <string>
#include <string_view>

namespace cad
{

enum class codificacionDXF
{
    kWindows1252,
    kUTF8
};

// UTF-8 to Windows-1252 for a text or a layer name of the writer. A character outside the
// code page becomes "\U+XXXX" (two escapes, a surrogate pair, beyond U+FFFF). A byte that does
// not start a valid UTF-8 sequence is written as it is. ASCII passes unchanged, but for a
// backslash that starts what reads as an escape ("\U+0041" typed in a text), which becomes
// "\U+005C" so that the text comes back as it was.
std::string utf8ADXF(std::string_view texto);

// A value of the file to UTF-8: decoded from `codificacion`, then "\U+XXXX" escapes (either
// case of the U) are replaced by their character; a surrogate pair of escapes joins into one.
// An escape that is not four hex digits, or names a lone surrogate, stays as it is. In UTF-8
// mode, bytes that are not valid UTF-8 are taken as Windows-1252, so nothing is dropped.
// `altos`, when given, are the code points of bytes 0x80 to 0xFF of another narrow code page
// (altosPagina), used instead of Windows-1252 outside UTF-8 mode.
std::string dxfAUTF8(std::string_view valor, codificacionDXF codificacion,
                     const char16_t* altos = nullptr);

// True when `valor` needs no change to be UTF-8 under `codificacion` (all ASCII, no escape):
// the reader's fast path.
bool dxfSinCambios(std::string_view valor);

// The encoding of a file from its header's $ACADVER ("AC1021" and later: UTF-8) and
// $DWGCODEPAGE (otherwise a narrow code page; which one, altosPagina tells).
codificacionDXF codificacionDeCabecera(std::string_view version, std::string_view paginaCodigos);

}  // namespace cad
