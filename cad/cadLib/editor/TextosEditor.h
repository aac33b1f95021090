// Texts the editor's waits and its frame both show.
#pragma once

namespace cad
{

inline constexpr const char* kTextoCancelado = "* Cancelado *";
inline constexpr const char* kCoordenadaNoValida = "Coordenada no válida";
inline constexpr const char* kCoordenadaUOpcion = "Se requiere una coordenada u opción";
inline constexpr const char* kEntidadUOpcion = "Se requiere una entidad u opción";

}  // namespace cad
