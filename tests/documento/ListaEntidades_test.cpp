// The entity list: the factory's table, the "Entid.1" section and its entity blocks, unknown
// kinds kept byte for byte, and damaged files.
#include "documento/ListaEntidades.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <typeinfo>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/Dibujo.h"
#include "entidades/Cara3D.h"
#include "entidades/Cilindro.h"
#include "entidades/Cubo.h"
#include "entidades/EntidadDesconocida.h"
#include "entidades/Esfera.h"
#include "entidades/Foto360.h"
#include "entidades/GrupoPuntos.h"
#include "entidades/Linea.h"
#include "entidades/Objeto3D.h"
#include "entidades/Plano.h"
#include "entidades/Policara.h"
#include "entidades/Poligono.h"
#include "entidades/Polilinea.h"
#include "entidades/Prisma.h"
#include "entidades/Punto.h"
#include "entidades/PuntoControl.h"
#include "entidades/SistemaLocal.h"
#include "entidades/Superficie.h"
#include "entidades/Texto.h"
#include "entidades/TomaCamara.h"
#include "modelo/Modelo3D.h"
#include "soporte/BloquesPrueba.h"
#include "soporte/FicheroTemporal.h"
#include "soporte/MallasPrueba.h"

namespace
{

using cad::Dibujo;
using cad::Entidad;
using cad::EntidadDesconocida;
using cad::Polilinea;
using cad::Punto3;
using cad::prueba::anade;
using cad::prueba::Bloque;
using cad::prueba::Bytes;
using cad::prueba::num;
using cad::prueba::ponNum;
using cad::prueba::seccion;
using cad::prueba::trozo;

Bytes guarda(Dibujo& d)
{
    const std::string ruta = cad::prueba::rutaTemporal("lista.tcad");
    {
        cad::SerializadorBinarioEscritura w(ruta);
        d.escribe(w);
    }
    return cad::prueba::leeFichero(ruta);
}

bool carga(Dibujo& d, const Bytes& b, const std::string& ruta = "")
{
    const std::string r = ruta.empty() ? cad::prueba::rutaTemporal("lista.tcad") : ruta;
    cad::prueba::escribeFichero(r, b);
    cad::SerializadorBinarioLectura lector(r);
    return d.lee(lector);
}

// The entity blocks of the "Entid.1" section, in file order.
std::vector<Bloque> bloquesEntidad(const Bytes& b)
{
    return cad::prueba::items(b, "Entid.1");
}

// Runs `cuerpo`, aborting the process if it has not ended in four minutes: a hang fails.
template <class F>
void conPlazo(F cuerpo)
{
    std::promise<void> fin;
    std::thread vigia(
        [f = fin.get_future()]
        {
            if (f.wait_for(std::chrono::minutes(4)) != std::future_status::ready)
            {
                std::fputs("reading a damaged file did not end\n", stderr);
                std::abort();
            }
        });
    cuerpo();
    fin.set_value();
    vigia.join();
}

// Every tag of the factory's table makes an entity answering that tag (an empty polyline
// answers "Pg1" for "PolyLn1"), of the class the table names; "Pg1" gives a Polilinea, never
// a Poligono. The tags the naming table knows without a class, and any other tag (exactly
// compared), are unknown entities keeping the tag, so that their bytes survive.
TEST(ListaEntidadesFabrica, ordenYClases)
{
    const auto crea = [](const char* tag)
    { return std::unique_ptr<Entidad>(cad::ListaEntidades::creaEntidad(tag)); };
    const auto es = [](const Entidad& e) { return std::string(typeid(e).name()); };
    const std::pair<const char*, std::string> clases[] = {
        {"Pt1", es(cad::Punto())},
        {"GrpPnt1", es(cad::GrupoPuntos())},
        {"Ln1", es(cad::Linea())},
        {"Pg1", es(cad::Polilinea())},
        {"PolyLn1", es(cad::Polilinea())},
        {"C3D", es(cad::Cara3D())},
        {"Poly3D1", es(cad::Policara())},
        {"Cb1", es(cad::Cubo())},
        {"Pr1", es(cad::Prisma())},
        {"Cl1", es(cad::Cilindro())},
        {"Es1", es(cad::Esfera())},
        {"PC1", es(cad::PuntoControl())},
        {"Superficie3D001", es(cad::Superficie())},
        {"Ob1", es(cad::Objeto3D())},
        {"Pn1", es(cad::Plano())},
        {"Sl1", es(cad::SistemaLocal())},
        {"TC1", es(cad::TomaCamara())},
        {"F3D", es(cad::Foto360())},
        {"Tx1", es(cad::Texto())}};
    for (const auto& [tag, clase] : clases)
    {
        const auto e = crea(tag);
        EXPECT_EQ(es(*e), clase) << tag;
        EXPECT_STREQ(e->etiqueta(), std::string(tag) == "PolyLn1" ? "Pg1" : tag);
    }
    for (const char* tag : {"Xq1", "pt1", "Np1", "OF1", "MallaRegular002", ""})
    {
        const auto e = crea(tag);
        EXPECT_NE(dynamic_cast<EntidadDesconocida*>(e.get()), nullptr) << tag;
        EXPECT_STREQ(e->etiqueta(), tag);
    }
}

// An empty drawing: the file starts with the magic, the outer length (whole file minus the
// tag) and "Capas.1"; "Entid.1" holds its length 16 and the count 0. The list's extension
// starts from (1,1,1)-(0,0,0) and merges the entity boxes.
TEST(ListaEntidadesFichero, dibujoVacioYExtension)
{
    Dibujo d;
    d.nuevoDocumento();
    const Bytes b = guarda(d);
    ASSERT_GT(b.size(), 40U);
    EXPECT_EQ(std::string(b.begin(), b.begin() + 16), std::string("Tarvelo.CAD.v02", 16));
    EXPECT_EQ(num(b, 16, 8), b.size() - 16);
    EXPECT_EQ(std::string(b.begin() + 24, b.begin() + 32), std::string("Capas.1", 8));
    const Bloque s = seccion(b, "Entid.1");
    EXPECT_EQ(num(b, s.posLongitud, 8), 16U);
    EXPECT_EQ(num(b, s.posLongitud + 8, 8), 0U);
    cad::Rect3<double> caja;
    d.entidades.extension(caja);
    EXPECT_EQ(caja.minimo, Punto3<double>(1, 1, 1));
    EXPECT_EQ(caja.maximo, Punto3<double>(0, 0, 0));
    d.nuevaEntidad(new cad::Punto(1, 2, 3));
    d.nuevaEntidad(new cad::Punto(-1, 5, 0));
    d.entidades.extension(caja);
    EXPECT_EQ(caja.minimo, Punto3<double>(-1, 2, 0));
    EXPECT_EQ(caja.maximo, Punto3<double>(1, 5, 3));
}

// 999 vertices: tag "Pg1" and a u16 length; 1,000: "PolyLn1" and a u32 length. The length is
// its own width plus prefix (32), closed flag (2), count (4) and 24 per vertex, and the block
// ends where the section does. Both load back whole.
TEST(ListaEntidadesFichero, polilineaCortaYLarga)
{
    for (const int n : {999, 1000})
    {
        Dibujo d;
        d.nuevoDocumento();
        std::vector<Punto3<double>> v;
        for (int i = 0; i < n; ++i)
        {
            v.emplace_back(i, 2.0 * i, 0.5);
        }
        d.nuevaEntidad(new Polilinea(n, v.data()));
        const Bytes b = guarda(d);
        const auto bl = bloquesEntidad(b);
        ASSERT_EQ(bl.size(), 1U);
        const bool largo = n >= 1000;
        EXPECT_EQ(bl[0].tag, largo ? "PolyLn1" : "Pg1");
        EXPECT_EQ(bl[0].ancho, largo ? 4 : 2);
        EXPECT_EQ(num(b, bl[0].posLongitud, bl[0].ancho),
                  static_cast<uint64_t>(bl[0].ancho + 38 + 24 * n));
        EXPECT_EQ(bl[0].fin, seccion(b, "Entid.1").fin);
        EXPECT_EQ(num(b, bl[0].cuerpo() + 34, 4), static_cast<uint64_t>(n));
        Dibujo d2;
        ASSERT_TRUE(carga(d2, b));
        ASSERT_EQ(d2.entidades.size(), 1U);
        auto* p = dynamic_cast<Polilinea*>(d2.entidades[0]);
        ASSERT_NE(p, nullptr);
        ASSERT_EQ(p->numeroVertices(), n);
        EXPECT_EQ(p->vertices.back(), v.back());
    }
}

// A polygon writes "Pg1" with its count right behind the prefix, and the polyline's row of
// the factory takes "Pg1" first: it comes back as a closed Polilinea with the polygon's
// vertices, told from a polyline's body by its size, also when 3,000 vertices have wrapped
// the u16 length; the entity behind it reads as well. Saved again it is a polyline's block
// (the closed flag, then the count), which reads back the same.
TEST(ListaEntidadesFichero, poligonoVuelveComoPolilineaCerradaConSusVertices)
{
    Dibujo d;
    d.nuevoDocumento();
    const Punto3<double> pts[] = {{1, 0, 0}, {2, 0, 0}, {2, 1, 0}, {1, 1, 0}};
    d.nuevaEntidad(new cad::Poligono(4, pts));
    std::vector<Punto3<double>> muchos;
    for (int i = 0; i < 3000; ++i)
    {
        muchos.emplace_back(i * 0.5, i % 7, 2.0);
    }
    d.nuevaEntidad(new cad::Poligono(3000, muchos.data()));
    d.nuevaEntidad(new cad::Punto(7, 8, 9));
    const Bytes a = guarda(d);
    // The first block only: the walk by stored lengths cannot pass a wrapped one.
    const auto primerBloque = [](const Bytes& b)
    { return cad::prueba::bloqueEn(b, seccion(b, "Entid.1").posLongitud + 16); };
    const Bloque primero = primerBloque(a);
    EXPECT_EQ(primero.tag, "Pg1");
    EXPECT_EQ(num(a, primero.posLongitud, 2), 2U + 32 + 4 + 96);
    EXPECT_EQ(num(a, primero.cuerpo() + 32, 4), 4U);

    for (int vuelta = 0; vuelta < 2; ++vuelta)
    {
        Dibujo d2;
        ASSERT_TRUE(carga(d2, vuelta == 0 ? a : guarda(d)));
        ASSERT_EQ(d2.entidades.size(), 3U);
        EXPECT_EQ(d2.entidades.danadas, 0U);
        auto* p = dynamic_cast<Polilinea*>(d2.entidades[0]);
        auto* grande = dynamic_cast<Polilinea*>(d2.entidades[1]);
        ASSERT_TRUE(p != nullptr && grande != nullptr);
        EXPECT_TRUE(p->cerrada && grande->cerrada);
        EXPECT_EQ(p->vertices, std::vector<Punto3<double>>(pts, pts + 4));
        EXPECT_EQ(grande->vertices, muchos);
        EXPECT_EQ(p->tamanoDatosDesconocidos + grande->tamanoDatosDesconocidos, 0U);
        EXPECT_EQ(d2.entidades[2]->coordenada(0)->z, 9.0);
        // The next round reads what this one saves: a polyline block of the same tag.
        const Bytes b = guarda(d2);
        const Bloque otro = primerBloque(b);
        EXPECT_EQ(otro.tag, "Pg1");
        EXPECT_EQ(num(b, otro.cuerpo() + 32, 2), 0x0101U);
        EXPECT_EQ(num(b, otro.cuerpo() + 34, 4), 4U);
        for (Entidad* e : d.entidades)
        {
            delete e;
        }
        d.entidades.clear();
        for (Entidad* e : d2.entidades)
        {
            d.entidades.push_back(e->clona());
        }
    }
}

// A hand-made entity block: tag, a length as wide as `ancho`, the common prefix (colour 3,
// width 1.5, pattern 0F0F) and an odd tail.
Bytes bloqueAjeno(const std::string& tag, int ancho, uint64_t idCapa, const Bytes& cola)
{
    Bytes cuerpo;
    anade(cuerpo, 0x0A0B0C0D0E0F1011ULL, 8);
    anade(cuerpo, idCapa, 8);
    cuerpo.insert(cuerpo.end(), {0x03, 0x00, 0xFF, 0x00, 0xFF, 0x00});
    anade(cuerpo, 0x3FF8000000000000ULL, 8);
    anade(cuerpo, 0x0F0F, 2);
    cuerpo.insert(cuerpo.end(), cola.begin(), cola.end());
    Bytes b(tag.begin(), tag.end());
    b.push_back(0);
    anade(b, static_cast<uint64_t>(ancho) + cuerpo.size(), ancho);
    b.insert(b.end(), cuerpo.begin(), cuerpo.end());
    return b;
}

// Blocks of unknown 3-, 7- and 15-character tags spliced into a saved drawing load as unknown
// entities (layer tied up, tail kept) and are saved again with the same tag, the same length
// width (u16, u32, u64) and the same bytes: the whole "Entid.1" section is unchanged; so is a
// block whose tag an unknown entity could not write back readably, kept raw.
TEST(ListaEntidadesFichero, etiquetasDesconocidasSobreviven)
{
    Dibujo d;
    d.nuevoDocumento();
    d.nuevaEntidad(new cad::Punto(1, 2, 3));
    Bytes a = guarda(d);
    const uint64_t idCapa = d.capas[0]->id;
    Bytes extra = bloqueAjeno("Xq1", 2, idCapa, {1, 2, 3, 4, 5});
    // A 5-character tag reads with a u64 length, which an unknown entity would write back as
    // u32: it is kept raw, and written back as it came.
    for (const Bytes& otro : {bloqueAjeno("Xq9Xq91", 4, idCapa, {6, 7}),
                              bloqueAjeno("XqXqXqXqXqXqXq1", 8, idCapa, {8, 9, 10}),
                              bloqueAjeno("Xq5ab", 8, idCapa, {11, 12})})
    {
        extra.insert(extra.end(), otro.begin(), otro.end());
    }
    const Bloque s = seccion(a, "Entid.1");
    a.insert(a.begin() + static_cast<long>(s.fin), extra.begin(), extra.end());
    ponNum(a, s.posLongitud, num(a, s.posLongitud, 8) + extra.size(), 8);
    ponNum(a, s.posLongitud + 8, 5, 8);
    ponNum(a, 16, num(a, 16, 8) + extra.size(), 8);

    Dibujo d2;
    ASSERT_TRUE(carga(d2, a));
    ASSERT_EQ(d2.entidades.size(), 5U);
    EXPECT_EQ(d2.entidades[4]->tamanoBloque(), cad::kBloqueCrudo);
    EXPECT_EQ(d2.entidades.danadas, 1U);
    const char* const tags[] = {"Xq1", "Xq9Xq91", "XqXqXqXqXqXqXq1"};
    const uint32_t colas[] = {5, 2, 3};
    for (int i = 0; i < 3; ++i)
    {
        auto* e = dynamic_cast<EntidadDesconocida*>(d2.entidades[static_cast<size_t>(i) + 1]);
        ASSERT_NE(e, nullptr);
        EXPECT_STREQ(e->etiqueta(), tags[i]);
        EXPECT_EQ(e->tamanoBloque(), i);
        EXPECT_EQ(e->tamanoDatosDesconocidos, colas[i]);
        EXPECT_EQ(e->capa.get(), d2.capas[0]);
    }
    const Bytes b = guarda(d2);
    EXPECT_EQ(trozo(b, seccion(b, "Entid.1")), trozo(a, seccion(a, "Entid.1")));
    const auto bl = bloquesEntidad(b);
    ASSERT_EQ(bl.size(), 5U);
    EXPECT_EQ(bl[4].ancho, 8);
    EXPECT_EQ(bl[1].ancho, 2);
    EXPECT_EQ(bl[2].ancho, 4);
    EXPECT_EQ(bl[3].ancho, 8);
}

// An unknown tag is kept to 19 characters; its block width goes by its length (below 4: u16,
// below 8: u32, else u64); a clone keeps the tag only, not the common fields.
TEST(ListaEntidadesDesconocida, etiquetaCortadaYAnchos)
{
    EntidadDesconocida larga("ABCDEFGHIJKLMNOPQRSTUVWXYZ");
    EXPECT_STREQ(larga.etiqueta(), "ABCDEFGHIJKLMNOPQRS");
    EXPECT_EQ(larga.tamanoBloque(), 2);
    EXPECT_STREQ(EntidadDesconocida("ABCDEFGHIJKLMNOPQRST").etiqueta(), "ABCDEFGHIJKLMNOPQRS");
    const std::unique_ptr<Entidad> fabricada(
        cad::ListaEntidades::creaEntidad("ABCDEFGHIJKLMNOPQRSTUVWXYZ"));
    EXPECT_STREQ(fabricada->etiqueta(), "ABCDEFGHIJKLMNOPQRS");
    const char* const tags[] = {"Ab", "Abc", "Abcd", "Abcdefg", "Abcdefgh"};
    const int anchos[] = {0, 0, 1, 1, 2};
    for (int i = 0; i < 5; ++i)
    {
        EXPECT_EQ(EntidadDesconocida(tags[i]).tamanoBloque(), anchos[i]) << tags[i];
    }
    EntidadDesconocida e("Xq1");
    e.id = 99;
    e.color.setIndiceColor(3);
    const std::unique_ptr<Entidad> copia(e.clona());
    EXPECT_NE(dynamic_cast<EntidadDesconocida*>(copia.get()), nullptr);
    EXPECT_STREQ(copia->etiqueta(), "Xq1");
    EXPECT_EQ(copia->id, 0U);
    EXPECT_EQ(copia->color.colorCAD, 256);
}

// A small drawing with one entity of each kind this build reads.
Bytes dibujoPequeno()
{
    Dibujo d;
    d.nuevoDocumento();
    d.nuevaEntidad(new cad::Punto(1, 2, 3));
    d.nuevaEntidad(new cad::Linea(Punto3<double>(0, 0, 0), Punto3<double>(4, 5, 6)));
    d.nuevaEntidad(new cad::Texto("abc", Punto3<double>(1, 1, 1), 0, 2.0F, 0.0F));
    const Punto3<double> pts[] = {{0, 0, 0}, {3, 0, 1}, {3, 3, 2}};
    d.nuevaEntidad(new Polilinea(3, pts));
    d.nuevaEntidad(new cad::Plano(3, pts));
    d.nuevaEntidad(new cad::PuntoControl("PC", Punto3<double>(7, 7, 7)));
    auto* s = new cad::SistemaLocal();
    s->nombre = "S";
    d.nuevaEntidad(s);
    return guarda(d);
}

// The entities' tags and coordinates, raw ones as "cruda".
std::vector<std::string> describe(const Dibujo& d)
{
    std::vector<std::string> r;
    for (const Entidad* e : d.entidades)
    {
        std::string t = e->tamanoBloque() == cad::kBloqueCrudo ? "cruda" : e->etiqueta();
        for (int i = 0; i < e->numCoordenadas(); ++i)
        {
            const Punto3<double>& p = *e->coordenada(i);
            t += " " + std::to_string(p.x) + "," + std::to_string(p.y) + "," + std::to_string(p.z);
        }
        r.push_back(t);
    }
    return r;
}

// Damage inside one entity's block (a tag's terminator, a lying vertex count, a tag field
// of a form no writer makes) never lets the list read on from the middle of that block: the
// damaged block is kept whole as a raw entity and counted, its neighbours read as they were,
// and the file saved from it is the damaged file again, byte for byte, so that it loads and
// saves the same way for ever.
TEST(ListaEntidadesDanos, bloqueDanadoSeConservaEnteroYSusVecinasSeLeen)
{
    const Bytes sano = dibujoPequeno();
    Dibujo original;
    ASSERT_TRUE(carga(original, sano));
    const std::vector<std::string> antes = describe(original);
    const auto bl = bloquesEntidad(sano);
    ASSERT_EQ(bl.size(), 7U);

    Bytes etiqueta = sano;
    etiqueta[bl[1].inicio + 3] = 'X';  // "Ln1\0" -> "Ln1X": the tag swallows the length
    Bytes cuenta = sano;
    ponNum(cuenta, bl[3].cuerpo() + 34, 0x7FFFFFFF, 4);  // the polyline's vertex count
    Bytes forma = sano;
    forma[bl[0].inicio + 2] = 0;  // "Pt1\0" -> "Pt\0\0": a tag field longer than its tag
    struct caso_t
    {
        const Bytes& bytes;
        size_t danada;
    };
    for (const caso_t& c : {caso_t{etiqueta, 1}, caso_t{cuenta, 3}, caso_t{forma, 0}})
    {
        Dibujo d;
        ASSERT_TRUE(carga(d, c.bytes)) << c.danada;
        EXPECT_EQ(d.entidades.danadas, 1U);
        std::vector<std::string> esperado = antes;
        esperado[c.danada] = "cruda";
        EXPECT_EQ(describe(d), esperado);
        const Bytes otra = guarda(d);
        EXPECT_EQ(trozo(otra, seccion(otra, "Entid.1")),
                  trozo(c.bytes, seccion(c.bytes, "Entid.1")));
        Dibujo releido;
        ASSERT_TRUE(carga(releido, otra));
        EXPECT_EQ(describe(releido), esperado);
        const Bytes tercera = guarda(releido);
        EXPECT_EQ(trozo(tercera, seccion(tercera, "Entid.1")),
                  trozo(otra, seccion(otra, "Entid.1")));
    }
}

// Every cut of a saved drawing, from empty to one byte short, loads false without a fault,
// and the whole file loads true. Random byte changes (fixed seed) load true or false, never
// fault or hang, and what loads saves again; some changes must break the load and some must not.
TEST(ListaEntidadesDanos, ficheroCortadoYBytesAlterados)
{
    const Bytes b = dibujoPequeno();
    const std::string ruta = cad::prueba::rutaTemporal("danado.tcad");
    std::mt19937 azar(20240611U);
    int buenos = 0;
    conPlazo(
        [&]
        {
            for (size_t n = 0; n < b.size(); ++n)
            {
                Dibujo d;
                EXPECT_FALSE(carga(d, Bytes(b.begin(), b.begin() + static_cast<long>(n)), ruta))
                    << n;
            }
            for (int prueba = 0; prueba < 600; ++prueba)
            {
                Bytes c = b;
                for (uint32_t k = 0, cambios = 1 + azar() % 3; k < cambios; ++k)
                {
                    c[azar() % c.size()] ^= static_cast<uint8_t>(1 + azar() % 255);
                }
                Dibujo d;
                if (carga(d, c, ruta))
                {
                    ++buenos;
                    EXPECT_FALSE(guarda(d).empty());
                }
            }
        });
    Dibujo d;
    EXPECT_TRUE(carga(d, b, ruta));
    EXPECT_EQ(d.entidades.size(), 7U);
    EXPECT_GT(buenos, 0);
    EXPECT_LT(buenos, 600);
}

// A body larger than its block's length field: a mesh of 100,000 faces (7 MB) in the u16 block
// of "Ob1", followed by a group of 70,000 points and a point. The list writes the truncated
// length; the reader takes the body as long as it reads, so every entity comes back and the
// second save writes the same entity section, byte for byte.
TEST(ListaEntidadesFichero, cuerposMayoresQueSuBloqueVuelvenEnteros)
{
    Dibujo d;
    d.nuevoDocumento();
    auto* modelo = new cad::Modelo3D();
    cad::prueba::cuadricula(*modelo, 400, 250);
    ASSERT_EQ(modelo->caras().size(), 100000U);
    d.nuevaEntidad(new cad::Objeto3D(modelo));
    std::vector<Punto3<double>> puntos;
    std::vector<uint32_t> colores;
    for (int i = 0; i < 70000; ++i)
    {
        puntos.emplace_back(431000.0 + i * 0.01, 4581000.0 - i * 0.02, 600.0 + (i % 97) * 0.1);
        colores.push_back(0xFF000000U | static_cast<uint32_t>(i * 2654435761U >> 8));
    }
    d.nuevaEntidad(new cad::GrupoPuntos(70000, puntos.data(), colores.data()));
    d.nuevaEntidad(new cad::Punto(1, 2, 3));
    const Bytes a = guarda(d);

    Dibujo d2;
    ASSERT_TRUE(carga(d2, a));
    ASSERT_EQ(d2.entidades.size(), 3U);
    EXPECT_EQ(d2.entidades.danadas, 0U);
    const auto* objeto = dynamic_cast<cad::Objeto3D*>(d2.entidades[0]);
    ASSERT_NE(objeto, nullptr);
    ASSERT_NE(objeto->modelo, nullptr);
    EXPECT_EQ(objeto->modelo->caras().size(), 100000U);
    const auto* grupo = dynamic_cast<cad::GrupoPuntos*>(d2.entidades[1]);
    ASSERT_NE(grupo, nullptr);
    EXPECT_EQ(grupo->puntos, puntos);
    EXPECT_EQ(grupo->colores, colores);
    EXPECT_NE(dynamic_cast<cad::Punto*>(d2.entidades[2]), nullptr);
    // A load puts the default variables ahead of the file's; the entities are written as read.
    const Bytes b = guarda(d2);
    EXPECT_TRUE(trozo(b, seccion(b, "Entid.1")) == trozo(a, seccion(a, "Entid.1")));
}

}  // namespace
