// The named entity tags (firmas) that code compares with; other classes use the literal.
#pragma once

namespace cad
{

inline constexpr const char* kFirmaEntidadLinea = "Ln1";
inline constexpr const char* kFirmaEntidadPolilinea = "Pg1";
inline constexpr const char* kFirmaEntidadTomaCamara = "TC1";
inline constexpr const char* kFirmaEntidadObjeto3D = "Ob1";

}  // namespace cad
