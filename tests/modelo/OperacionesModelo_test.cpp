// Union of models, a hole by a polyline, and contour lines: exact records and exact chains.
#include "modelo/OperacionesModelo.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "documento/Dibujo.h"
#include "entidades/Policara.h"
#include "entidades/Polilinea.h"
#include "intercambio/ExportaDXF.h"
#include "soporte/ComprobadorMalla.h"
#include "soporte/FicheroTemporal.h"
#include "soporte/MallasPrueba.h"

namespace cad
{
namespace
{

using P = Punto3<double>;

// A chain is sound when no two points in a row (the closing pair included) coincide.
::testing::AssertionResult cadenaSana(const cadena_t& c)
{
    for (size_t k = 0; k + 1 < c.puntos.size() + (c.cerrada ? 1 : 0); ++k)
    {
        if (c.puntos[k] == c.puntos[(k + 1) % c.puntos.size()])
        {
            return ::testing::AssertionFailure() << "point " << k << " repeated";
        }
    }
    return ::testing::AssertionSuccess();
}

// Every level of the model chained exactly; the chains of all levels.
std::vector<cadena_t> curvas(const Modelo3D& m, double intervalo)
{
    std::vector<std::vector<P>> normales;
    std::vector<std::vector<P>> maestras;
    isolineas(m, Vector3D<double>(0, 0, 1), normales, maestras, intervalo);
    std::vector<cadena_t> cadenas;
    for (const auto* niveles : {&maestras, &normales})
    {
        for (const std::vector<P>& nivel : *niveles)
        {
            encadena(nivel, cadenas, 0);
        }
    }
    return cadenas;
}

// The chains as closed or open polylines in a DXF file, left for the audit to read back.
void exportaCurvas(const std::string& nombre, const std::vector<cadena_t>& cadenas)
{
    const std::string ruta = prueba::rutaDXF(nombre);
    {
        ExportaDXF dxf(ruta);
        dxf.inicioEntidades();
        dxf.setCapa("0");
        for (const cadena_t& c : cadenas)
        {
            Polilinea p(static_cast<int>(c.puntos.size()), c.puntos.data());
            p.cerrada = c.cerrada;
            p.exportaDXF(dxf);
        }
        dxf.finEntidades();
    }
    std::ifstream f(ruta, std::ios::binary);
    const std::string texto((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
    EXPECT_NE(texto.find("POLYLINE"), std::string::npos) << nombre;
    EXPECT_NE(texto.find("  0\nEOF\n"), std::string::npos) << nombre;
}

// A 20 x 20 grid of quads with a hill in the middle, its border at height 0. With `enCotas`
// every inner vertex is moved to the level just below it, so that levels run through vertices
// and along edges; the box (and so every level) stays the same since the top stays.
Modelo3D colina(bool enCotas)
{
    Modelo3D m;
    prueba::cuadricula(m, 20, 20);
    for (int32_t v = 0; v < static_cast<int32_t>(m.vertices().size()); ++v)
    {
        const P p = m.getVertice(v).punto;
        const double r = std::hypot(p.x - 10, p.y - 10);
        m.setPunto(v, P(p.x, p.y, std::max(0.0, 9.0 - r) * 0.7));
    }
    if (enCotas)
    {
        const std::vector<double> cotas = cotasIsolineas(m, Vector3D<double>(0, 0, 1), 0.5);
        for (int32_t v = 0; v < static_cast<int32_t>(m.vertices().size()); ++v)
        {
            P p = m.getVertice(v).punto;
            if (p.z > 0 && p.z < 6.3)
            {
                const auto c = std::upper_bound(cotas.begin(), cotas.end(), p.z);
                p.z = std::max(0.0, *(c - 1));
                m.setPunto(v, p);
            }
        }
    }
    return m;
}

TEST(Isolineas, CadenasCerradasExactasAunaPasandoPorVerticesYAristas)
{
    for (const bool enCotas : {false, true})
    {
        const Modelo3D m = colina(enCotas);
        const std::vector<cadena_t> cadenas = curvas(m, 0.5);
        ASSERT_GT(cadenas.size(), 8U);
        for (const cadena_t& c : cadenas)
        {
            // The hill stands inside the grid and every level lies above its border, so each
            // chain must close, with tolerance 0.
            EXPECT_TRUE(c.cerrada) << enCotas << " " << c.puntos.size();
            EXPECT_TRUE(cadenaSana(c));
        }
    }
    // On levels through vertices a chain passes a vertex exactly, not near it.
    const Modelo3D m = colina(true);
    size_t enVertice = 0;
    for (const cadena_t& c : curvas(m, 0.5))
    {
        for (const P& p : c.puntos)
        {
            enVertice += m.buscaVertice(p) != -1 ? 1 : 0;
        }
    }
    EXPECT_GT(enVertice, 50U);
}

TEST(Isolineas, NivelesDelBarridoYMaestras)
{
    // The unit cube: 2r is its diagonal; level i at t = i * intervalo while t < 2r.
    Modelo3D m;
    prueba::cubo(m);
    const double dosR = std::sqrt(3.0);
    std::vector<std::vector<P>> normales;
    std::vector<std::vector<P>> maestras;
    isolineas(m, Vector3D<double>(0, 0, 1), normales, maestras, 0.25);
    // t = 0, 0.25 ... 1.5: seven levels, 0 and 5 master ones.
    EXPECT_EQ(maestras.size(), 2U);
    EXPECT_EQ(normales.size(), 5U);
    // The sweep starts half a diagonal below the centre: level 3 is at 0.5 - r + 0.75.
    const double z3 = 0.5 - dosR / 2 + 0.75;
    ASSERT_EQ(normales[2].size(), 8U);  // four side faces, two hits each
    for (const P& p : normales[2])
    {
        EXPECT_DOUBLE_EQ(p.z, z3);
    }
    // A side crossing a level within 1e-7 along the normal still has its hit, or the face
    // would give one hit and its pairs would cross over to the next face.
    Modelo3D fino;
    const P esquinas[] = {P(0, 0, -4e-8), P(1, 0, 4e-8), P(0, 1, 1)};
    fino.nuevaCara(3, esquinas, nullptr, false, 0);
    std::vector<P> corte;
    cortaPlano(fino, Plano3D<double>(P(0, 0, 0), Vector3D<double>(0, 0, 1)), corte);
    ASSERT_EQ(corte.size(), 2U);
    EXPECT_EQ(corte[0], P(0.5, 0, 0));
    std::vector<cadena_t> cadenas;
    encadena(normales[2], cadenas, 0);
    ASSERT_EQ(cadenas.size(), 1U);
    EXPECT_TRUE(cadenas[0].cerrada);
    EXPECT_EQ(cadenas[0].puntos.size(), 4U);
    // A step of 0 or less appends nothing instead of sweeping for ever.
    isolineas(m, Vector3D<double>(0, 0, 1), normales, maestras, 0);
    EXPECT_EQ(normales.size() + maestras.size(), 7U);
    // A flat 6 x 8 face: 2r = 10 exactly, four steps of 2.5 fit and t = 10 is not cut.
    Modelo3D plano;
    prueba::cuadricula(plano, 1, 1);
    for (vertice_t& v : plano.vertices())
    {
        v.punto = P(v.punto.x * 6, v.punto.y * 8, 0);
    }
    EXPECT_EQ(cotasIsolineas(plano, Vector3D<double>(0, 0, 1), 2.5),
              (std::vector<double>{-5, -2.5, 0, 2.5}));
}

TEST(Isolineas, EncadenaExactaComoLaBusquedaSimple)
{
    // Pairs out of order and reversed, pairs of one point, and a side given twice (by the two
    // faces below it): a ring f-g-h and an open chain.
    const P a(0, 0, 0), b(1, 0, 0), c(2, 0, 0), d(1, 1, 0), e(0, 2, 0), f(3, 3, 0), g(4, 3, 0),
        h(4, 4, 0);
    const std::vector<P> puntos = {f, g, a, b, d, e, g, h, b, a, c,
                                   b, b, d, a, a, e, a, h, f, d, d};
    std::vector<cadena_t> exacta;
    std::vector<cadena_t> simple;
    encadena(puntos, exacta, 0);
    encadena(puntos, simple, 1e-300);
    ASSERT_EQ(exacta.size(), 2U);
    ASSERT_EQ(simple.size(), 2U);
    for (size_t k = 0; k < 2; ++k)
    {
        EXPECT_EQ(exacta[k].puntos, simple[k].puntos);
        EXPECT_EQ(exacta[k].cerrada, simple[k].cerrada);
        EXPECT_TRUE(cadenaSana(exacta[k]));
    }
    EXPECT_TRUE(exacta[0].cerrada);
    EXPECT_EQ(exacta[0].puntos, (std::vector<P>{f, g, h}));
    EXPECT_FALSE(exacta[1].cerrada);
    // a-b taken once although given twice; the chain grew at its end by c-b, then at its
    // start by e-a, d-e and b-d, and passes b twice, never twice in a row.
    EXPECT_EQ(exacta[1].puntos, (std::vector<P>{b, d, e, a, b, c}));
}

// An imported polyface: the soup's shared points become shared vertices, so a level runs
// across neighbouring faces as one chain; its isolines export to a DXF the audit reads.
TEST(Isolineas, PolicaraEnUnaMallaConVerticesCompartidos)
{
    Policara s;
    s.puntos = {P(0, 0, 0), P(2, 0, 0), P(2, 2, 4), P(0, 2, 4), P(1, 3, 6)};
    const int32_t caras[][3] = {{0, 1, 2}, {0, 2, 3}, {3, 2, 4}, {2, 3, 4}, {0, 0, 1}};
    for (const auto& t : caras)
    {
        s.triangulos.push_back(static_cast<int32_t>(s.esquinas.size()));
        for (const int32_t i : t)
        {
            esquina_t e;
            e.indice = i;
            e.material = 0xFFFF;
            s.esquinas.push_back(e);
        }
    }
    Modelo3D m;
    s.aModelo(m);
    EXPECT_TRUE(mallaSana(m));
    // Into a model that already has a vertex: the same mesh, one place further on.
    Modelo3D conUno;
    conUno.nuevoVertice(P(9, 9, 9));
    s.aModelo(conUno);
    EXPECT_TRUE(mallaSana(conUno));
    EXPECT_EQ(conUno.caras().size(), 4U);
    // Three faces on the five points; the fourth would walk 3-2 the way the third does and
    // takes three vertices of its own; the last repeats a point and is left out.
    EXPECT_EQ(m.vertices().size(), 8U);
    EXPECT_EQ(m.caras().size(), 4U);
    std::vector<P> corte;
    cortaPlano(m, Plano3D<double>(P(0, 0, 1), Vector3D<double>(0, 0, 1)), corte);
    std::vector<cadena_t> cadenas;
    encadena(corte, cadenas, 0);
    ASSERT_EQ(cadenas.size(), 1U);
    EXPECT_EQ(cadenas[0].puntos, (std::vector<P>{P(2, 0.5, 1), P(0.5, 0.5, 1), P(0, 0.5, 1)}));

    // A real closed model read from OBJ, triangles and quads: every level closes exactly.
    for (const char* obj : {"spot_triangulated.obj", "spot_quadrangulated.obj"})
    {
        Dibujo d;
        Policara vaca;
        vaca.importaObj(std::string(CAD_DATOS_COMPARTIDOS) + "/obj/spot_cow/" + obj, d);
        Modelo3D mv;
        vaca.aModelo(mv);
        ASSERT_GT(mv.caras().size(), 2000U) << obj;
        EXPECT_EQ(mv.vertices().size(), vaca.puntos.size()) << obj;
        const std::vector<cadena_t> deLaVaca = curvas(mv, 0.05);
        EXPECT_GT(deLaVaca.size(), 20U);
        for (const cadena_t& c : deLaVaca)
        {
            EXPECT_TRUE(c.cerrada) << obj;
            EXPECT_TRUE(cadenaSana(c)) << obj;
        }
        if (std::string(obj) == "spot_triangulated.obj")
        {
            exportaCurvas("isolineas_vaca.dxf", deLaVaca);
        }
    }
    exportaCurvas("isolineas_colina.dxf", curvas(colina(true), 0.5));
}

TEST(UnionModelos, AgregaDesplazaYUneConSusRarezas)
{
    Modelo3D a;
    prueba::cubo(a);
    Modelo3D b;
    prueba::cuadricula(b, 2, 1);
    b.borraCara(0);  // a deleted face and dead edges on the appended side
    const auto nv = static_cast<int32_t>(a.vertices().size());
    const int32_t na = a.aristas().size();
    const auto nc = static_cast<int32_t>(a.caras().size());
    Modelo3D u(a);
    u.agrega(b);
    ASSERT_EQ(u.aristas().size(), na + b.aristas().size());
    for (int32_t e = 0; e < b.aristas().size(); ++e)
    {
        const Arista& antes = b.aristas()[e];
        const Arista& ahora = u.aristas()[na + e];
        EXPECT_EQ(ahora.vertice[0], antes.vertice[0] == -1 ? -1 : antes.vertice[0] + nv);
        EXPECT_EQ(ahora.cara[1], antes.cara[1] == -1 ? -1 : antes.cara[1] + nc);
        EXPECT_EQ(ahora.siguienteCara0,
                  antes.siguienteCara0 == -1 ? -1 : antes.siguienteCara0 + na);
    }
    // The vertices keep their edge; the deleted face comes back naming edge na - 1. Both are
    // kept as the union always behaved, so the checker objects to the appended part.
    EXPECT_EQ(u.getVertice(nv + 1).arista, b.getVertice(1).arista);
    EXPECT_FALSE(defectosMalla(u).empty());
    // Turning the union's faces leaves the first model's part as turning that model alone
    // does: the revived face reaches an edge of the first part and must not bend it.
    Modelo3D sola(a);
    sola.invierteNormales();
    u.invierteNormales();
    EXPECT_TRUE(std::equal(sola.aristas().begin(), sola.aristas().end(), u.aristas().begin(),
                           [](const Arista& x, const Arista& y)
                           { return std::memcmp(&x, &y, sizeof x) == 0; }));
    // With an empty model there is no centroid to measure from: nothing moves, nothing NaN.
    Modelo3D vacio;
    Modelo3D conVacio;
    uneExtension(vacio, b, conVacio);
    EXPECT_EQ(conVacio.getVertice(0).punto, b.getVertice(0).punto);
    EXPECT_EQ(u.caras()[static_cast<size_t>(nc)].arista, na - 1);

    // Two closed skins move nothing: the union merely holds both.
    Modelo3D c;
    prueba::cubo(c);
    for (vertice_t& v : c.vertices())
    {
        v.punto.x += 5;
    }
    Modelo3D salida;
    uneExtension(a, c, salida);
    EXPECT_EQ(salida.getVertice(0).punto, a.getVertice(0).punto);
    EXPECT_EQ(salida.getVertice(nv).punto, c.getVertice(0).punto);
    // Read back from a file every edge has one face, so every vertex moves: 5 away from the
    // centroid (the distance between the two centroids).
    Modelo3D leido;
    ASSERT_TRUE(prueba::leeCuerpo(prueba::cuerpoDe(a), leido));
    Modelo3D salida2;
    uneExtension(leido, c, salida2);
    const P p = leido.getVertice(0).punto;
    const Vector3D<double> hacia = (p - leido.centroide()).unit();
    EXPECT_EQ(salida2.getVertice(0).punto, p + hacia * 5.0);
    EXPECT_EQ(leido.getVertice(0).punto, p);  // inputs untouched
}

TEST(HuecoPolilinea, UnaCaraEnOjoDeCerraduraQueGiraAlReves)
{
    Modelo3D m;
    prueba::cuadricula(m, 1, 1);
    for (vertice_t& v : m.vertices())
    {
        v.punto = P(v.punto.x * 10, v.punto.y * 10, 0);
    }
    // Anticlockwise like the face, above it: projected, turned, bridged from corner 0.
    const std::vector<P> h = {P(2, 2, 3), P(4, 2, 3), P(4, 4, 3), P(2, 4, 3)};
    EXPECT_FALSE(huecoPolilinea(m, 0, h, false));
    // A face whose first three corners lie in a line has no normal to project on: refused.
    Modelo3D recta;
    const P enLinea[] = {P(0, 0, 0), P(5, 0, 0), P(10, 0, 0), P(10, 10, 0), P(0, 10, 0)};
    recta.nuevaCara(5, enLinea, nullptr, false, 0);
    const auto antes = prueba::imagenDe(recta);
    EXPECT_FALSE(huecoPolilinea(recta, 0, h, true));
    EXPECT_EQ(prueba::imagenDe(recta), antes);
    EXPECT_EQ(m.caras()[0].arista != -1, true);
    ASSERT_TRUE(huecoPolilinea(m, 0, h, true));
    EXPECT_EQ(m.caras()[0].arista, -1);
    ASSERT_EQ(m.caras().size(), 2U);
    // The quad's four sides died with it (their records stay): all ten sides of the new face
    // are new records, the bridge twice, since nuevaCara looks every side up before it makes
    // any and so finds none for the bridge's second use.
    EXPECT_EQ(m.aristas().size(), 4 + 10);
    EXPECT_TRUE(mallaSana(m));
    std::vector<P> ciclo;
    m.getCoordenadasCara(1, ciclo);
    // 4 + 1 + n + 1 corners: the face from its corner nearest the hole, back to it, the
    // hole from its point nearest that corner (reversed), and back to that point.
    const std::vector<P> esperado = {P(0, 0, 0), P(10, 0, 0), P(10, 10, 0), P(0, 10, 0),
                                     P(0, 0, 0), P(2, 2, 0),  P(2, 4, 0),   P(4, 4, 0),
                                     P(4, 2, 0), P(2, 2, 0)};
    EXPECT_EQ(ciclo, esperado);
    EXPECT_EQ(m.getMaterialCara(1), 0);
}

}  // namespace
}  // namespace cad
