// Test support: one sample of every entity kind with what it must give through the operations
// all kinds share, so that one run of checks covers them all.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "base/geometria/Punto3.h"
#include "base/geometria/Rect3.h"
#include "documento/Capa.h"
#include "documento/ReferenciaEntidades.h"
#include "entidades/Entidad.h"
#include "soporte/BloquesPrueba.h"
#include "soporte/PantallaGrabadora.h"

namespace cad::prueba
{

// A snap down the vertical ray through (x, y): the kind, point and distance that win, or
// tipo -1 when the entity offers nothing.
struct CasoReferencia
{
    double x, y;
    int mascara;
    int tipo;
    Punto3<double> punto;
    double distancia;
};

using Fabrica = std::function<std::unique_ptr<Entidad>()>;

struct TipoEntidad
{
    std::string nombre;      // names the test instance
    const char* nombreTipo;  // the sheet's "Entidad" row
    // The sample: id 0x0102030405060708, on capaCatalogo(), every field away from its default.
    Fabrica crea;
    Fabrica vacia;    // default-constructed, for the reader to fill
    Bytes fichero{};  // the list's block holding the sample, exactly
    // A length or count read from the file (0 for none), its width, and whether it counts
    // the vertices that coordenada gives.
    size_t posCuenta = 0;
    int anchoCuenta = 0;
    bool cuentaVertices = false;
    // coordenada(i) for i below numCoordenadas; a point-like kind answers its position for
    // any index, the others null outside the list.
    std::vector<Punto3<double>> coordenadas{};
    bool cualquierIndice = false;
    // coordenada past the end raises std::out_of_range instead of giving null.
    bool fueraDeRangoLanza = false;
    // Elements of a "Vértice" list on the sheet; -1, one per coordinate.
    int elementosLista = -1;
    // coordenada after traslada({1, -2, 0.5}); unset, every coordinate moved by it.
    std::optional<std::vector<Punto3<double>>> movidas{};
    // The extent; unset, the box of the coordinates (the inverted box with none).
    std::optional<Rect3<double>> extension{};
    // The block a clone writes; unset, the sample's own.
    std::optional<Bytes> ficheroClon{};
    // The hot points are the coordinates, of this kind (0: none); edge k joins point k to the
    // next, the last wrapping round.
    int tipoCaliente = 0;
    int aristasCalientes = 0;
    // Hot edges that join no two coordinates (a solid's box), after the others; not dragged.
    std::vector<std::pair<Punto3<double>, Punto3<double>>> aristasSueltas{};
    int carasCalientes = 0;  // hot faces, in both sets
    std::string llamadas{};  // painting, as the display records it, a line per call
    std::string dxf{};       // the records between ENTITIES and ENDSEC
    std::vector<CasoReferencia> referencias{};
    // Rows of the categories after "General": "Categoría/Nombre:Tipo=valor", "!" after the
    // type when read-only, the coordinates as the value of Coordenada and Vector rows.
    std::vector<std::string> hoja{};
};

// Names the kind in a failure message.
inline void PrintTo(const TipoEntidad& t, std::ostream* os)
{
    *os << t.nombre;
}

const std::vector<TipoEntidad>& catalogoEntidades();
// The kinds of each family, one source file each.
std::vector<TipoEntidad> tiposPuntosCaras();  // GrupoPuntos, Cara3D
std::vector<TipoEntidad> tiposSuperficies();  // Policara, Superficie
std::vector<TipoEntidad> tiposSolidos();      // Cubo, Prisma, Cilindro, Objeto3D
std::vector<TipoEntidad> tiposCamaras();      // Esfera, Foto360, TomaCamara
const TipoEntidad& tipoEntidad(const std::string& nombre);
// "Ejes", blue (palette 5), id 7.
Capa& capaCatalogo();
// The sheet's rows from category `desde` on, in the form of TipoEntidad::hoja.
std::vector<std::string> filasHoja(const Entidad& e, int desde = 1);

// A vertical ray down through (x, y), seen through a clip cube of -10..10 drawing units.
struct Rayo
{
    Rayo(double x, double y, int mascara)
        : r(amplia(pantalla), Punto3<double>(x, y, 5), Vector3D<double>(0, 0, -1), mascara, 1.0)
    {
    }
    static PantallaGrabadora* amplia(PantallaGrabadora& p)
    {
        p.proyeccion(0, 0) = p.proyeccion(1, 1) = p.proyeccion(2, 2) = 0.1;
        return &p;
    }
    PantallaGrabadora pantalla;  // before r: r reads its matrices
    ReferenciaEntidades r;
};

}  // namespace cad::prueba
