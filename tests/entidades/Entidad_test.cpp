// The entity base (the common body prefix and sheet, colours, type names), then every kind of
// the catalogue through the operations all kinds share.
#include "entidades/Entidad.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "entidades/EntidadDesconocida.h"
#include "entidades/Punto.h"
#include "modelo/PuntosCalientes.h"
#include "soporte/CatalogoEntidades.h"
#include "soporte/CatalogoPiezas.h"
#include "soporte/EntidadPrueba.h"
#include "soporte/FicheroTemporal.h"

namespace
{

using Bytes = std::vector<uint8_t>;
using cad::Capa;
using cad::ColorCapa;
using cad::Prop;
using cad::Punto3;
using cad::TipoProp;

// Nothing but the common fields: its body is the prefix alone.
class EntidadComun : public cad::prueba::EntidadPrueba
{
public:
    const char* etiqueta() const override { return "Zb1"; }
    Entidad* clona() const override { return new EntidadComun(*this); }
    void dibuja(cad::PantallaCAD&) const override {}
};

Bytes cuerpo(cad::Entidad& e)
{
    const std::string ruta = cad::prueba::rutaTemporal("prefijo.bin");
    {
        cad::SerializadorBinarioEscritura w(ruta);
        e.escribe(w);
    }
    return cad::prueba::leeFichero(ruta);
}

bool leeCuerpo(const Bytes& b, cad::Entidad& e)
{
    const std::string ruta = cad::prueba::rutaTemporal("prefijo.bin");
    cad::prueba::escribeFichero(ruta, b);
    cad::SerializadorBinarioLectura r(ruta);
    return e.lee(r);
}

// The prefix is id, layer id, colour (u16 index, then the bytes as they lie in memory:
// alpha, blue, green, red) and line style (f64 width, u16 pattern): 32 bytes. A reference
// with id 0 takes the bound layer's id and keeps it; a stored id wins; no layer writes 0.
// Read back, even over a bound layer, the layer waits as an id and the style is by layer
// again, a flag the file does not hold. Any cut of the 32 bytes reads false.
TEST(EntidadPrefijo, BytesLecturaYCortes)
{
    Capa capa("Ejes", ColorCapa(1), 1);
    capa.id = 0xA1B2C3D4E5F60718ULL;
    EntidadComun e;
    e.id = 0x1122334455667788ULL;
    e.asignaCapa(&capa);
    e.color.setABGR(0x80112233U);
    e.estiloLinea.porCapa = false;
    e.estiloLinea.grosor = 2.5;
    e.estiloLinea.patron = 0xF0F0;
    const Bytes b = cuerpo(e);
    EXPECT_EQ(b, (Bytes{0x88, 0x77, 0x66, 0x55, 0x44, 0x33, 0x22, 0x11, 0x18, 0x07, 0xF6,
                        0xE5, 0xD4, 0xC3, 0xB2, 0xA1, 0x00, 0x02, 0x80, 0x11, 0x22, 0x33,
                        0,    0,    0,    0,    0,    0,    0x04, 0x40, 0xF0, 0xF0}));
    EXPECT_EQ(e.capa.id, capa.id);
    EXPECT_EQ(e.capa.get(), &capa);
    EntidadComun leida;
    leida.asignaCapa(&capa);
    ASSERT_TRUE(leeCuerpo(b, leida));
    EXPECT_EQ(cuerpo(leida), b);
    EXPECT_EQ(leida.capa.objeto, nullptr);
    EXPECT_TRUE(leida.estiloLinea.porCapa);
    for (long corte = 0; corte < 32; ++corte)
    {
        EXPECT_FALSE(leeCuerpo(Bytes(b.begin(), b.begin() + corte), leida)) << corte;
    }

    e.capa.id = 5;
    const Bytes conId = cuerpo(e);
    EXPECT_EQ(Bytes(conId.begin() + 8, conId.begin() + 16), (Bytes{5, 0, 0, 0, 0, 0, 0, 0}));
    EntidadComun sinCapa;  // colour by layer with white bytes, width 1, solid
    EXPECT_EQ(cuerpo(sinCapa),
              (Bytes{0, 0, 0,    0,    0,    0,    0, 0, 0, 0, 0, 0, 0,    0,    0,    0,
                     0, 1, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F, 0xFF, 0xFF}));
}

// The common sheet, one category "General" of four rows: "Entidad" read-only with the type
// name; "Capa" the layer's name; "Color" with the entity's own bytes (white) as decimal
// 0xAARRGGBB, index 256 while by layer and the layer's colour; "Grosor" 0 while by layer.
// Writing it: an index below 256 takes the palette with alpha 255, 256..511 keeps the bytes;
// outside 0..511 the text is a decimal 0xRRGGBB giving index 512, read back as -1. "Grosor"
// stores a width off by-layer; 0 turns by-layer on and keeps the old width. Rows 0 and 1 are
// ignored.
TEST(EntidadHoja, FilasComunesYEscritura)
{
    Capa capa("Ejes", ColorCapa(1), 1);
    EntidadComun comun;
    comun.asignaCapa(&capa);
    EXPECT_EQ(cad::prueba::filasHoja(comun, 0),
              (std::vector<std::string>{
                  "General/Entidad:Cadena!=Desconocida", "General/Capa:CapaEntidad=Ejes",
                  "General/Color:Color=4294967295", "General/Grosor:DoblePositivo=           0"}));
    Prop p;
    ASSERT_TRUE(comun.getPropiedad(0, 2, p));
    EXPECT_EQ(p.indiceColor, 256);
    EXPECT_EQ(p.colorCapa, 0xFFFF0000U);

    cad::Punto e(0, 0, 0);
    e.asignaCapa(&capa);
    const struct
    {
        int indice;
        const char* valor;
        int colorCAD;
        uint32_t abgr;
    } colores[] = {{3, "", 3, 0xFF00FF00U},
                   {300, "", 300, 0xFF00FF00U},  // keeps the bytes index 3 left
                   {512, "255", 512, 0xFFFF0000U},
                   {-1, "1193046", 512, 0xFF563412U}};  // 0x123456
    for (const auto& c : colores)
    {
        p.indiceColor = c.indice;
        p.valor = c.valor;
        e.setPropiedad(0, 2, p);
        EXPECT_EQ(e.color.colorCAD, c.colorCAD) << c.indice;
        EXPECT_EQ(e.color.ABGR(), c.abgr) << c.indice;
    }
    Prop leido;
    ASSERT_TRUE(e.getPropiedad(0, 2, leido));
    EXPECT_EQ(leido.indiceColor, -1);
    EXPECT_EQ(leido.valor, "4279383126");  // 0xFF123456

    p.valor = "2.5";
    e.setPropiedad(0, 3, p);
    EXPECT_FALSE(e.estiloLinea.porCapa);
    EXPECT_EQ(e.estiloLinea.grosor, 2.5);
    p.valor = "0";
    e.setPropiedad(0, 3, p);
    EXPECT_TRUE(e.estiloLinea.porCapa);
    EXPECT_EQ(e.estiloLinea.grosor, 2.5);
    ASSERT_TRUE(e.getPropiedad(0, 3, leido));
    EXPECT_EQ(std::atof(leido.valor.c_str()), 0.0);
    p.valor = "Otra";
    e.setPropiedad(0, 0, p);
    e.setPropiedad(0, 1, p);
    EXPECT_EQ(e.capa.get(), &capa);
    EXPECT_EQ(capa.nombre, "Ejes");
}

// A true colour 0xRRGGBB, alpha 255.
void conRGB(cad::Entidad& e, uint32_t rgb)
{
    e.color.mColor = {255, static_cast<uint8_t>(rgb), static_cast<uint8_t>(rgb >> 8),
                      static_cast<uint8_t>(rgb >> 16)};
    e.color.colorCAD = 512;
}

// Nearest palette index: 256 by layer whatever the bytes; otherwise the first index of least
// squared distance, so duplicates (red 1/10, yellow 2/50, white 7/255) and equidistant pairs
// (3A3A3A between 8 and 250, 818181 between 9 and 253) keep the lower index. The resolved
// colour is the entity's own bytes unless by layer, as 0xAABBGGRR, or in the second form as
// 0xAARRGGBB. (The catalogue paints by-layer samples.)
TEST(EntidadColor, IndiceCercanoYColorResuelto)
{
    cad::Punto e(0, 0, 0);
    conRGB(e, 0xFF0000);
    e.color.colorCAD = 256;
    EXPECT_EQ(e.indiceColorCercano(), 256);
    const uint32_t rgb[] = {0xFF0000, 0xFFFF00, 0x00FF00, 0xFFFFFF, 0x000000,
                            0xFE0101, 0x3A3A3A, 0x818181, 0x9F0000};
    const int indice[] = {1, 2, 3, 7, 0, 1, 8, 9, 12};
    for (size_t i = 0; i < std::size(rgb); ++i)
    {
        conRGB(e, rgb[i]);
        EXPECT_EQ(e.indiceColorCercano(), indice[i]) << std::hex << rgb[i];
    }
    e.color.setIndiceColor(10);  // palette 10 is red again: the bytes decide
    EXPECT_EQ(e.indiceColorCercano(), 1);

    Capa capa("Azul", ColorCapa(5), 1);
    e.asignaCapa(&capa);
    e.color.setABGR(0x80112233U);
    EXPECT_EQ(e.resuelveColorABGR(), 0x80112233U);
    EXPECT_EQ(e.resuelveColorABGR(0), 0x80332211U);
    e.color.setIndiceColor(256);  // back to the layer; the own bytes stay unused
    EXPECT_EQ(e.resuelveColorABGR(), 0xFFFF0000U);
}

// esTipo compares the tag's type name without regard to case, never a prefix of it. The name
// table gives "Desconocida" for any other tag, never "Poligono", and compares tags exactly.
// Without coordinates the box is the inverted default (0,0,0)-(-1,-1,-1).
TEST(EntidadTipo, EsTipoTablaDeNombresYCajaVacia)
{
    EXPECT_FALSE(cad::Punto(0, 0, 0).esTipo("Punt"));
    EXPECT_TRUE(cad::EntidadDesconocida("Np1").esTipo("nubepuntos"));
    EXPECT_TRUE(cad::EntidadDesconocida("Xy1").esTipo("DESCONOCIDA"));
    // clang-format off
    const char* const tabla[] = {
        "Pt1", "Punto", "GrpPnt1", "GrupoPuntos", "Poly3D1", "PoliCara3D", "C3D", "Cara3D",
        "Ln1", "Linea", "Pg1", "Polilinea", "PolyLn1", "Polilinea", "Np1", "NubePuntos",
        "PC1", "PuntoControl", "Cb1", "Cubo", "Cl1", "Cilindro", "Es1", "Esfera", "Pr1", "Prisma",
        "Ob1", "Objeto3D", "MallaRegular002", "Malla", "Superficie3D001", "Superficie",
        "Pn1", "Plano3D", "TC1", "TomaCamara", "Sl1", "Sistema Local", "OF1", "Ortofoto",
        "Tx1", "Desconocida", "F3D", "Desconocida", "pt1", "Desconocida", "", "Desconocida"};
    // clang-format on
    for (size_t i = 0; i < std::size(tabla); i += 2)
    {
        EXPECT_STREQ(cad::nombreTipo(tabla[i]), tabla[i + 1]) << tabla[i];
    }
    const cad::Rect3<double> vacia = cad::EntidadDesconocida("Xq1").extension();
    EXPECT_EQ(vacia.minimo, Punto3<double>(0, 0, 0));
    EXPECT_EQ(vacia.maximo, Punto3<double>(-1, -1, -1));
    EXPECT_FALSE(vacia.esValido());
}

// ---------------------------------------------------------------------------------------
// Every kind of the catalogue through the same checks

using cad::prueba::carga;
using cad::prueba::guarda;
using cad::prueba::operator+;
using cad::prueba::TipoEntidad;
using Puntos = std::vector<Punto3<double>>;

class CatalogoEntidades : public ::testing::TestWithParam<TipoEntidad>
{
};

INSTANTIATE_TEST_SUITE_P(Tipos, CatalogoEntidades,
                         ::testing::ValuesIn(cad::prueba::catalogoEntidades()),
                         [](const auto& caso) { return caso.param.nombre; });

Puntos coordenadas(const cad::Entidad& e)
{
    Puntos v;
    for (int i = 0; i < e.numCoordenadas(); ++i)
    {
        v.push_back(*e.coordenada(i));
    }
    return v;
}

// Claims one byte less than the file holds: a count checked against it fails one vertex
// before the reads themselves would.
class LectorEscaso : public cad::SerializadorBinarioLectura
{
public:
    using SerializadorBinarioLectura::SerializadorBinarioLectura;
    uint64_t bytesDisponibles() override
    {
        const uint64_t n = SerializadorBinarioLectura::bytesDisponibles();
        return n > 0 ? n - 1 : 0;
    }
};

// The sample writes exactly its block. Read into an empty entity it gives its coordinates
// back, the layer waits as an id, nothing is left over and a second save is identical. Bytes
// that trail the known fields (a newer version's) are kept and written back in place. A
// clone is of the same class, saves the same bytes and moves on its own.
TEST_P(CatalogoEntidades, BloqueExactoVueltaColaYClon)
{
    const TipoEntidad& t = GetParam();
    const std::unique_ptr<cad::Entidad> e = t.crea();
    ASSERT_EQ(guarda(*e), t.fichero);
    const std::unique_ptr<cad::Entidad> leida = t.vacia();
    ASSERT_TRUE(carga(t.fichero, *leida));
    EXPECT_EQ(coordenadas(*leida), t.coordenadas);
    EXPECT_EQ(leida->capa.id, 7U);
    EXPECT_TRUE(leida->sinCapa());
    EXPECT_EQ(leida->datosDesconocidos, nullptr);
    EXPECT_EQ(guarda(*leida), t.fichero);
    Bytes conCola = t.fichero + Bytes{0x5A, 0x5B, 0x5C, 0x5D};
    const size_t posLongitud = std::strlen(e->etiqueta()) + 1;
    const int ancho = 2 << e->tamanoBloque();
    cad::prueba::ponNum(conCola, posLongitud, cad::prueba::num(conCola, posLongitud, ancho) + 4,
                        ancho);
    const std::unique_ptr<cad::Entidad> otra = t.vacia();
    ASSERT_TRUE(carga(conCola, *otra));
    EXPECT_EQ(otra->tamanoDatosDesconocidos, 4U);
    EXPECT_EQ(guarda(*otra), conCola);

    const std::unique_ptr<cad::Entidad> clon(e->clona());
    const cad::Entidad& original = *e;
    const cad::Entidad& copia = *clon;
    EXPECT_EQ(typeid(copia), typeid(original));
    EXPECT_EQ(guarda(*clon), t.ficheroClon.value_or(t.fichero));
    clon->traslada({1, 1, 1});
    EXPECT_EQ(guarda(*e), t.fichero);
}

// Cut anywhere, down to an empty file, a block reads false without running past the file
// (the sanitizers watch). A length or count the file cannot hold is refused before anything
// is reserved; a refused vertex count leaves no vertex, even in a filled entity, and is
// checked against the bytes left, not against the reads that would follow.
TEST_P(CatalogoEntidades, BloqueDanadoDaFalso)
{
    const TipoEntidad& t = GetParam();
    for (size_t n = 0; n < t.fichero.size(); ++n)
    {
        const std::unique_ptr<cad::Entidad> e = t.vacia();
        EXPECT_FALSE(carga(Bytes(t.fichero.begin(), t.fichero.begin() + static_cast<long>(n)), *e))
            << n;
    }
    if (t.posCuenta == 0)
    {
        return;
    }
    Bytes mentira = t.fichero;
    cad::prueba::ponNum(mentira, t.posCuenta, ~uint64_t{0}, t.anchoCuenta);
    const std::unique_ptr<cad::Entidad> e = t.crea();
    EXPECT_FALSE(carga(mentira, *e));
    if (t.cuentaVertices)
    {
        EXPECT_EQ(e->numCoordenadas(), 0);
        const std::unique_ptr<cad::Entidad> escasa = t.crea();
        EXPECT_FALSE(carga<LectorEscaso>(t.fichero, *escasa));
        EXPECT_EQ(escasa->numCoordenadas(), 0);
    }
}

// coordenada gives the defining points; the extension is their box, not grown from the
// origin; traslada moves every point.
TEST_P(CatalogoEntidades, CoordenadasExtensionYTraslado)
{
    const TipoEntidad& t = GetParam();
    const std::unique_ptr<cad::Entidad> e = t.crea();
    EXPECT_EQ(coordenadas(*e), t.coordenadas);
    const int n = e->numCoordenadas();
    if (t.cualquierIndice)
    {
        ASSERT_NE(e->coordenada(n + 5), nullptr);
        EXPECT_EQ(*e->coordenada(n + 5), t.coordenadas[0]);
    }
    else if (t.fueraDeRangoLanza)
    {
        EXPECT_THROW(e->coordenada(n), std::out_of_range);
    }
    else
    {
        EXPECT_EQ(e->coordenada(n), nullptr);
        EXPECT_EQ(e->coordenada(-1), nullptr);
    }
    cad::Rect3<double> caja;
    Puntos movidas;
    for (const Punto3<double>& p : t.coordenadas)
    {
        caja.amplia(p);
        movidas.push_back(p + cad::Vector3D<double>(1, -2, 0.5));
    }
    caja = t.extension.value_or(caja);
    EXPECT_EQ(e->extension().minimo, caja.minimo);
    EXPECT_EQ(e->extension().maximo, caja.maximo);
    e->traslada({1, -2, 0.5});
    EXPECT_EQ(coordenadas(*e), t.movidas.value_or(movidas));
}

// Painting makes exactly the recorded calls, and whatever can be picked is the entity. The
// records on the entity's layer are the whole ENTITIES section, exactly.
TEST_P(CatalogoEntidades, DibujoYRegistrosDXFExactos)
{
    const std::unique_ptr<cad::Entidad> e = GetParam().crea();
    cad::prueba::PantallaGrabadora pantalla;
    e->dibuja(pantalla);
    std::string llamadas;
    for (const std::string& l : pantalla.llamadas)
    {
        llamadas += l + "\n";
    }
    EXPECT_EQ(llamadas, GetParam().llamadas);
    for (const cad::primitiva_t& pr : pantalla.escena)
    {
        EXPECT_TRUE(pr.pick == nullptr || pr.pick == static_cast<void*>(e.get()));
    }
    EXPECT_EQ(cad::prueba::registrosDXF(*GetParam().crea()), GetParam().dxf);
}

// One line per hot point ("kind#number(x,y,z)") and per edge.
std::vector<std::string> resumen(const cad::PuntosCalientes& h, const cad::Entidad* e)
{
    std::vector<std::string> r;
    for (const cad::elemento_seleccionado_t& p : h.puntos)
    {
        r.push_back(std::to_string(p.tipo) + "#" + std::to_string(p.indice) +
                    cad::prueba::texto(p.punto) + (p.entidad == e ? "" : " of another entity"));
    }
    for (const auto& [a, b] : h.aristas)
    {
        r.push_back(cad::prueba::texto(a) + "-" + cad::prueba::texto(b));
    }
    return r;
}

void arrastra(cad::Entidad& e, int tipo, int indice, const Puntos& extra,
              const Punto3<double>& punto, const Punto3<double>& posicion)
{
    cad::elemento_arrastrado_t a;
    a.tipo = tipo;
    a.indice = indice;
    a.extra = extra;
    a.punto = punto;
    a.posicion = posicion;
    e.aplicaPuntoCaliente(a);
}

// The hot points are the coordinates, numbered in order and owned by the entity, then the
// edges and the faces; the editing set is the same. A point drag moves that coordinate to the
// drag's position. An edge drag moves both ends rigidly from where they were at the grab, so a
// repeated call moves them no further. Drags of a kind the entity does not offer, past its
// points or edges, or of an edge without both grab ends, change nothing.
TEST_P(CatalogoEntidades, PuntosCalientesYArrastres)
{
    const TipoEntidad& t = GetParam();
    const Puntos& v = t.coordenadas;
    const size_t n = v.size();
    const std::unique_ptr<cad::Entidad> e = t.crea();
    std::vector<std::string> esperado;
    for (size_t i = 0; i < n && t.tipoCaliente != 0; ++i)
    {
        esperado.push_back(std::to_string(t.tipoCaliente) + "#" + std::to_string(i) +
                           cad::prueba::texto(v[i]));
    }
    for (size_t k = 0; k < static_cast<size_t>(t.aristasCalientes); ++k)
    {
        esperado.push_back(cad::prueba::texto(v[k]) + "-" + cad::prueba::texto(v[(k + 1) % n]));
    }
    for (const auto& [a, b] : t.aristasSueltas)
    {
        esperado.push_back(cad::prueba::texto(a) + "-" + cad::prueba::texto(b));
    }
    cad::PuntosCalientes h;
    cad::PuntosCalientes edicion;
    e->puntosCalientes(h);
    e->puntosCalientesEdicion(edicion, 0, 0);
    EXPECT_EQ(resumen(h, e.get()), esperado);
    EXPECT_EQ(resumen(edicion, e.get()), esperado);
    EXPECT_EQ(h.numeroCaras(), t.carasCalientes);
    EXPECT_EQ(edicion.numeroCaras(), t.carasCalientes);

    const cad::Vector3D<double> d(0.5, -0.25, 0);  // within every sample's plane
    for (size_t i = 0; i < n && t.tipoCaliente != 0; ++i)
    {
        const std::unique_ptr<cad::Entidad> x = t.crea();
        arrastra(*x, t.tipoCaliente, static_cast<int>(i), {}, v[i], v[i] + d);
        Puntos movidas = v;
        movidas[i] = v[i] + d;
        EXPECT_EQ(coordenadas(*x), movidas) << "point " << i;
    }
    for (size_t k = 0; k < static_cast<size_t>(t.aristasCalientes); ++k)
    {
        const std::unique_ptr<cad::Entidad> x = t.crea();
        const size_t j = (k + 1) % n;
        const Punto3<double> medio = Punto3<double>::puntoMedio(v[k], v[j]);
        arrastra(*x, cad::kTipoArista, static_cast<int>(k), {v[k], v[j]}, medio, medio + d);
        arrastra(*x, cad::kTipoArista, static_cast<int>(k), {v[k], v[j]}, medio, medio + d);
        Puntos movidas = v;
        movidas[k] = v[k] + d;
        movidas[j] = v[j] + d;
        EXPECT_EQ(coordenadas(*x), movidas) << "edge " << k;
    }

    // An entity with a transformation turns under an azimuth drag: that is its own check.
    const bool gira = dynamic_cast<const cad::EntidadTransformada*>(e.get()) != nullptr;
    const Punto3<double> lejos(9, 9, 9);
    const Punto3<double> desde = n > 0 ? v[0] : Punto3<double>(0, 0, 0);
    for (int tipo = cad::kTipoVertice; tipo <= cad::kTipoAzimut; ++tipo)
    {
        if (tipo != t.tipoCaliente && tipo != cad::kTipoArista &&
            !(gira && tipo == cad::kTipoAzimut))
        {
            arrastra(*e, tipo, 0, {}, desde, lejos);
        }
    }
    if (!t.cualquierIndice)
    {
        arrastra(*e, t.tipoCaliente, static_cast<int>(n), {}, desde, lejos);
    }
    arrastra(*e, cad::kTipoArista, t.aristasCalientes, {desde, n > 0 ? v[1 % n] : desde}, desde,
             lejos);
    arrastra(*e, cad::kTipoArista, 0, {desde}, desde, lejos);
    EXPECT_EQ(guarda(*e), t.fichero);
}

// Under each mask the kind offers what its table gives, the entity being the winner.
TEST_P(CatalogoEntidades, ReferenciaPorMascara)
{
    const std::unique_ptr<cad::Entidad> e = GetParam().crea();
    for (const cad::prueba::CasoReferencia& c : GetParam().referencias)
    {
        cad::prueba::Rayo rayo(c.x, c.y, c.mascara);
        SCOPED_TRACE(cad::prueba::texto({c.x, c.y, 0}) + " mask " + std::to_string(c.mascara));
        ASSERT_EQ(e->getReferenciaEntidades(rayo.r), c.tipo >= 0);
        if (c.tipo >= 0)
        {
            EXPECT_EQ(rayo.r.tipoMejor, c.tipo);
            EXPECT_EQ(rayo.r.puntoMejor, c.punto);
            EXPECT_DOUBLE_EQ(rayo.r.distanciaMejor, c.distancia);
            EXPECT_EQ(rayo.r.entidadMejor, e.get());
        }
    }
}

// The rows after "General", none past the last of each category; "General" names the kind,
// which esTipo takes in any case but never the tag. A vertex list holds the coordinates.
TEST_P(CatalogoEntidades, HojaYTipo)
{
    const TipoEntidad& t = GetParam();
    const std::unique_ptr<cad::Entidad> e = t.crea();
    EXPECT_EQ(cad::prueba::filasHoja(*e), t.hoja);
    const int categorias = e->numeroCategorias();
    EXPECT_EQ(e->nombreCategoria(categorias), "");
    EXPECT_EQ(e->numeroPropiedadesCategoria(categorias), 0);
    Prop p;
    for (int c = 0; c < categorias; ++c)
    {
        EXPECT_FALSE(e->getPropiedad(c, e->numeroPropiedadesCategoria(c), p)) << c;
    }
    ASSERT_TRUE(e->getPropiedad(0, 0, p));
    EXPECT_EQ(p.valor, t.nombreTipo);
    std::string mayusculas = t.nombreTipo;
    std::transform(mayusculas.begin(), mayusculas.end(), mayusculas.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    EXPECT_TRUE(e->esTipo(mayusculas.c_str()));
    EXPECT_FALSE(e->esTipo(e->etiqueta()));

    if (t.hoja.empty() || t.hoja[0].find(":ListaCoordenadas") == std::string::npos)
    {
        return;
    }
    if (t.elementosLista >= 0)
    {
        EXPECT_EQ(e->numeroElementosLista(1, 0), t.elementosLista);
        return;
    }
    const int n = static_cast<int>(t.coordenadas.size());
    ASSERT_EQ(e->numeroElementosLista(1, 0), n);
    Puntos lista(t.coordenadas.size());
    for (int i = 0; i < n; ++i)
    {
        Punto3<double>& q = lista[static_cast<size_t>(i)];
        EXPECT_TRUE(e->getElementoLista(1, 0, i, q.x, q.y, q.z));
    }
    EXPECT_EQ(lista, t.coordenadas);
    double x = 0;
    EXPECT_FALSE(e->getElementoLista(1, 0, -1, x, x, x));
    EXPECT_FALSE(e->getElementoLista(1, 0, n, x, x, x));
    const double xyz[3] = {0, 0, 0};
    EXPECT_FALSE(e->setElementoLista(1, 0, n, xyz));
}

// A document holding every sample of the catalogue, as committed under tests/datos: a change
// of any body's bytes, or of the file around them, shows here. CAD_REGENERA_DORADOS=1 writes
// the committed file anew after a deliberate change of format.
TEST(CatalogoEntidadesDorado, DocumentoConCadaTipo)
{
    cad::Dibujo d;
    d.nuevoDocumento();
    for (const TipoEntidad& t : cad::prueba::catalogoEntidades())
    {
        std::unique_ptr<cad::Entidad> e = t.crea();
        e->asignaCapa(d.capas[0]);
        d.nuevaEntidad(e.release());
    }
    const std::string ruta = cad::prueba::rutaTemporal("todas_las_entidades.cad");
    cad::resultadoFichero_t r;
    ASSERT_TRUE(d.guardaFichero(ruta, r)) << r.mensaje;
    const Bytes escrito = cad::prueba::leeFichero(ruta);
    const std::string dorado = std::string(CAD_TEST_DATOS) + "/todas_las_entidades.cad";
    if (std::getenv("CAD_REGENERA_DORADOS") != nullptr)
    {
        cad::prueba::escribeFichero(dorado, escrito);
    }
    const Bytes guardado = cad::prueba::leeFichero(dorado);
    EXPECT_TRUE(escrito == guardado) << "the file format changed: " << escrito.size()
                                     << " bytes written, " << guardado.size() << " committed";

    // The committed file reads back whole through the list's factory, every entity of its
    // kind's class (the surface only so from a u64 block), and the second save writes each
    // entity's block as it was, save the polygon, which comes back as a polyline (the two
    // share a tag) and gains the closed flag.
    cad::Dibujo leido;
    ASSERT_TRUE(leido.leeFichero(dorado, r)) << r.mensaje;
    ASSERT_EQ(leido.entidades.size(), cad::prueba::catalogoEntidades().size());
    EXPECT_EQ(leido.entidades.danadas, 0U);
    ASSERT_TRUE(leido.guardaFichero(ruta, r)) << r.mensaje;
    const Bytes otraVez = cad::prueba::leeFichero(ruta);
    const auto antes = cad::prueba::items(guardado, "Entid.1");
    const auto despues = cad::prueba::items(otraVez, "Entid.1");
    ASSERT_EQ(despues.size(), antes.size());
    for (size_t i = 0; i < antes.size(); ++i)
    {
        const std::string& nombre = cad::prueba::catalogoEntidades()[i].nombre;
        EXPECT_EQ(despues[i].tag, antes[i].tag) << nombre;
        const cad::Entidad& leida = *leido.entidades[i];
        const std::unique_ptr<cad::Entidad> vacia = cad::prueba::catalogoEntidades()[i].vacia();
        EXPECT_EQ(typeid(leida) == typeid(*vacia), nombre != "Poligono") << nombre;
        EXPECT_EQ(cad::prueba::trozo(otraVez, despues[i]) == cad::prueba::trozo(guardado, antes[i]),
                  nombre != "Poligono")
            << nombre;
    }
}

}  // namespace
