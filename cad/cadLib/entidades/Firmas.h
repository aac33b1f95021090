// The entity tags (firmas) of the file, named once: the factory, the naming table, the
// selection's typed getters and the classes' own etiqueta all use these.
#pragma once

namespace cad
{

inline constexpr const char* kFirmaEntidadPunto = "Pt1";
inline constexpr const char* kFirmaEntidadGrupoPuntos = "GrpPnt1";
inline constexpr const char* kFirmaEntidadLinea = "Ln1";
// Polygons write the polyline's short tag too: the reader takes both as polylines.
inline constexpr const char* kFirmaEntidadPolilinea = "Pg1";
inline constexpr const char* kFirmaEntidadPolilineaLarga = "PolyLn1";
inline constexpr const char* kFirmaEntidadCara3D = "C3D";
inline constexpr const char* kFirmaEntidadPolicara = "Poly3D1";
inline constexpr const char* kFirmaEntidadCubo = "Cb1";
inline constexpr const char* kFirmaEntidadPrisma = "Pr1";
inline constexpr const char* kFirmaEntidadCilindro = "Cl1";
inline constexpr const char* kFirmaEntidadEsfera = "Es1";
inline constexpr const char* kFirmaEntidadPuntoControl = "PC1";
inline constexpr const char* kFirmaEntidadSuperficie = "Superficie3D001";
inline constexpr const char* kFirmaEntidadObjeto3D = "Ob1";
inline constexpr const char* kFirmaEntidadPlano = "Pn1";
inline constexpr const char* kFirmaEntidadSistemaLocal = "Sl1";
inline constexpr const char* kFirmaEntidadTomaCamara = "TC1";
inline constexpr const char* kFirmaEntidadFoto360 = "F3D";
inline constexpr const char* kFirmaEntidadTexto = "Tx1";
// Known by name only: no class reads them, and they come back as unknown entities.
inline constexpr const char* kFirmaEntidadNube = "Np1";
inline constexpr const char* kFirmaEntidadMallaRegular = "MallaRegular001";
inline constexpr const char* kFirmaEntidadMalla = "MallaRegular002";
inline constexpr const char* kFirmaEntidadOrtofoto = "OF1";

}  // namespace cad
