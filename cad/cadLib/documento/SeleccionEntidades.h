// A short-lived working set of entity pointers that the drawing owns.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace cad
{

class Dibujo;
class Cara3D;
class Cilindro;
class Entidad;
class Esfera;
class Foto360;
class GrupoPuntos;
class Linea;
class Objeto3D;
class Plano;
class Polilinea;
class Prisma;
class PuntoControl;
class SistemaLocal;
class TomaCamara;

// A plain value: made on the stack or returned by value. It must not outlive an operation
// that deletes entities, as it keeps their addresses.
class SeleccionEntidades
{
public:
    explicit SeleccionEntidades(Dibujo* d = nullptr) : dibujo(d) {}

    // Adds the entity of that handle when it is in the drawing and not in the set yet.
    bool incluyeManejadorEntidad(int64_t handle);
    bool incluyeUltimaEntidad();
    // Adds the entities of that layer, in list order. With `unicos` and a non-empty set,
    // nothing is added while the drawing's last created entity stands in the set: the flag
    // tests that entity, not the candidate, and that stays as it is.
    uint32_t incluyeCapa(const char* capa, bool unicos);
    uint32_t incluyeFiltroEntidad(const std::string& firma, bool unicos);
    void marcaSeleccion();
    void quitaSeleccion();
    uint32_t numeroEntidades() const { return static_cast<uint32_t>(entidades.size()); }
    void quitaEntidad(uint32_t i);
    void quitaNubes();
    // Throws std::out_of_range for a bad index, as do the typed getters.
    Entidad* getEntidad(uint32_t i) const;
    SeleccionEntidades getEntidadesLinea() const;

    Linea* getEntidadLinea(uint32_t i) const;
    Polilinea* getEntidadPolilinea(uint32_t i) const;
    Plano* getEntidadPlano(uint32_t i) const;
    SistemaLocal* getEntidadSistemaLocal(uint32_t i) const;
    PuntoControl* getEntidadPuntoControl(uint32_t i) const;
    Entidad* getEntidadNube(uint32_t i) const;
    GrupoPuntos* getEntidadGrupoPuntos(uint32_t i) const;
    Cara3D* getEntidadCara3D(uint32_t i) const;
    Objeto3D* getEntidadObjeto3D(uint32_t i) const;
    Cilindro* getEntidadCilindro(uint32_t i) const;
    Prisma* getEntidadPrisma(uint32_t i) const;
    Esfera* getEntidadEsfera(uint32_t i) const;
    TomaCamara* getEntidadTomaCamara(uint32_t i) const;
    Foto360* getEntidadFoto360(uint32_t i) const;

    Dibujo* dibujo;
    std::vector<Entidad*> entidades;

private:
    bool contiene(const Entidad* e) const;
    // The entity at i when its tag is `firma`, else null.
    Entidad* conFirma(uint32_t i, const char* firma) const;
};

}  // namespace cad
