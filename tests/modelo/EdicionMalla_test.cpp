#include <algorithm>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "modelo/Modelo3D.h"
#include "soporte/ComprobadorMalla.h"
#include "soporte/MallasPrueba.h"

namespace cad
{
namespace
{

using P = Punto3<double>;
using V = std::vector<int32_t>;
using prueba::cuadricula;
using prueba::cubo;
using prueba::imagenDe;

V ciclo(const Modelo3D& m, int32_t cara)
{
    V v;
    m.getVerticesCara(cara, v);
    return v;
}

int32_t vivas(const Modelo3D& m)
{
    return std::count_if(m.caras().begin(), m.caras().end(),
                         [](const cara_t& c) { return c.arista != -1; });
}

int32_t arista(const Modelo3D& m, int32_t a, int32_t b)
{
    return m.aristas().busca(a, b, m.getVertice(a).arista, m.getVertice(b).arista);
}

// Every edit over every face of a closed and an open mesh does something (faces or corners
// change) and leaves the mesh sound.
TEST(EdicionMalla, CadaEdicionSobreCadaCaraHaceAlgo)
{
    for (const bool cerrado : {true, false})
    {
        Modelo3D base;
        cerrado ? cubo(base) : cuadricula(base, 2, 2);
        for (int32_t f = 0; f < static_cast<int32_t>(base.caras().size()); ++f)
        {
            SCOPED_TRACE(testing::Message() << (cerrado ? "cubo" : "cuadricula") << " cara " << f);
            const V l = ciclo(base, f);
            V aristas;
            base.getAristasCara(f, aristas);
            Modelo3D m[5] = {base, base, base, base, base};
            m[0].borraCara(f);
            m[1].parteArista(aristas[1], 3);
            ASSERT_TRUE(m[2].uneVertices(l[0], l[2]));
            m[3].extruyeCara(f, 2.0F);
            m[4].parteCara(f, true);
            EXPECT_TRUE(ciclo(m[0], f).empty());
            EXPECT_EQ(ciclo(m[1], f).size(), l.size() + 2);
            EXPECT_EQ(ciclo(m[2], f).size() + ciclo(m[2], vivas(m[2]) - 1).size(), l.size() + 2);
            EXPECT_EQ(vivas(m[3]), vivas(base) + 4);
            EXPECT_EQ(vivas(m[4]), vivas(base) + 4);
            for (const Modelo3D& editado : m)
            {
                EXPECT_TRUE(mallaSana(editado));
            }
        }
    }
}

// A cube's edge in three: the edge keeps its index as the piece at vertice[0], both faces on
// it gain the two new corners in walking order; n = 1 changes nothing. On an edge whose only
// face lies on side 1 the new piece takes that face in cara[0], so the cycle closes through it.
TEST(EdicionMalla, ParteArista)
{
    Modelo3D m;
    cubo(m);
    const int32_t e = arista(m, 0, 2);
    ASSERT_EQ(m.aristas()[e].vertice[0], 0);
    m.parteArista(e, 3);
    ASSERT_TRUE(mallaSana(m));
    EXPECT_EQ(m.vertices().size(), 10U);
    EXPECT_EQ(m.aristas().size(), 14);
    EXPECT_EQ(m.getVertice(8).punto, P(0, 1.0 - 1.0 / 3, 0));  // the first, nearest q
    EXPECT_EQ(m.aristas()[e].vertice[1], 9);
    EXPECT_EQ(ciclo(m, 0), (V{0, 9, 8, 2, 3, 1}));
    EXPECT_EQ(ciclo(m, 4), (V{0, 4, 6, 2, 8, 9}));
    const std::vector<uint8_t> antes = imagenDe(m);
    m.parteArista(e, 1);
    EXPECT_EQ(imagenDe(m), antes);
    EXPECT_TRUE(mallaSana(m));

    Modelo3D t;
    cuadricula(t, 2, 1);
    const int32_t l = arista(t, 1, 4);
    ASSERT_EQ(t.aristas()[l].cara[1], 1);
    t.borraCara(0);
    ASSERT_TRUE(mallaSana(t));
    ASSERT_EQ(t.aristas()[l].cara[0], -1);
    const int32_t v = t.insertaVertice(P(1, 0.5, 0), l);
    ASSERT_TRUE(mallaSana(t));
    const int32_t n = t.aristas().size() - 1;
    EXPECT_EQ(std::tuple(t.aristas()[n].cara[0], t.aristas()[n].siguienteCara0), std::tuple(1, l));
    EXPECT_EQ(ciclo(t, 1).size(), 5U);
    EXPECT_EQ(t.getVertice(v).arista, n);
}

// Deleting one face of a strip: the edges only it had die in full, the shared edge loses that
// side, and the shared vertices live on although their own edge was among the dead.
TEST(EdicionMalla, BorraCaraMataSoloLoQueEraSuyo)
{
    Modelo3D m;
    cuadricula(m, 2, 1);  // 0 1 2 / 3 4 5
    V aristas;
    m.getAristasCara(1, aristas);
    const int32_t compartida = arista(m, 1, 4);
    ASSERT_EQ(m.getVertice(1).arista, aristas[0]);  // (1,2): the newest edge at 1, about to die
    m.borraCara(1);
    ASSERT_TRUE(mallaSana(m));
    const Arista& c = m.aristas()[compartida];
    EXPECT_EQ(std::tuple(c.cara[0], c.cara[1], c.siguienteCara1), std::tuple(0, -1, -1));
    for (const int32_t e : aristas)
    {
        const Arista& a = m.aristas()[e];
        EXPECT_TRUE(e == compartida || (a.vertice[0] == -1 && a.cara[0] == -1)) << e;
    }
    EXPECT_TRUE(m.getVertice(1).esValido() && m.getVertice(4).esValido());
    EXPECT_FALSE(m.getVertice(2).esValido() || m.getVertice(5).esValido());
    EXPECT_EQ(m.caras()[1].arista, -1);

    m.borraCara(0);
    EXPECT_TRUE(mallaSana(m));
    EXPECT_EQ(m.aristas().aristasValidas(), 0);
    EXPECT_EQ(m.vertices().size(), 6U);
    EXPECT_TRUE(std::none_of(m.vertices().begin(), m.vertices().end(),
                             [](const vertice_t& v) { return v.esValido(); }));
}

// A quad's diagonal: two triangles sharing the new edge, same material and normal; joining
// again, or joining vertices with no common face, changes nothing. A chain between two corners
// that already share an edge closes a loop with it, whichever way round the face walks it.
TEST(EdicionMalla, UneVerticesYCadena)
{
    Modelo3D m;
    cuadricula(m, 2, 1);
    m.setMaterialCara(0, 7);
    const Vector3D<float> normal = m.normalCara(0);
    ASSERT_TRUE(m.uneVertices(0, 4));
    ASSERT_TRUE(mallaSana(m));
    ASSERT_EQ(m.caras().size(), 3U);
    const Arista& nueva = m.aristas()[m.aristas().size() - 1];
    EXPECT_EQ(std::tuple(nueva.vertice[0], nueva.cara[0], nueva.cara[1]), std::tuple(0, 2, 0));
    EXPECT_EQ(ciclo(m, 0).size(), 3U);
    EXPECT_EQ(ciclo(m, 2).size(), 3U);
    EXPECT_EQ(m.getMaterialCara(2), 7);
    EXPECT_EQ(m.caras()[2].normal, normal);
    const std::vector<uint8_t> antes = imagenDe(m);
    EXPECT_FALSE(m.uneVertices(0, 4));
    EXPECT_FALSE(m.uneVertices(0, 5));
    EXPECT_FALSE(m.uneVertices(0, 99));
    EXPECT_EQ(imagenDe(m), antes);

    for (const bool alReves : {false, true})
    {
        Modelo3D q;
        cuadricula(q, 1, 1);  // 0 1 3 2
        const int32_t centro = q.nuevoVertice(P(0.5, 0.5, 0));
        ASSERT_TRUE(q.uneCadena(alReves ? V{1, centro, 0} : V{0, centro, 1}));
        EXPECT_TRUE(mallaSana(q));
        EXPECT_EQ(ciclo(q, 0).size() + ciclo(q, 1).size(), 8U);
    }
}

// A cut from edge to edge through one free point: the interior vertex keeps `arista` -1 (the
// chain calls no hook). An end on an edge along x in a flat face is never found (the segment
// test divides by its zero extent in z): that cut is refused and leaves its vertices bare.
TEST(EdicionMalla, RecortaCaraDeAristaAArista)
{
    Modelo3D m;
    cuadricula(m, 1, 1);  // 0 1 3 2
    ASSERT_TRUE(m.recortaCara({P(0, 0.5, 0), P(0.5, 0.5, 0), P(1, 0.5, 0)}));
    ASSERT_TRUE(mallaSana(m));
    EXPECT_EQ(m.vertices().size(), 7U);
    EXPECT_EQ(ciclo(m, 0), (V{0, 1, 6, 5, 4}));
    EXPECT_EQ(ciclo(m, 1), (V{3, 2, 4, 5, 6}));  // from its first edge record
    EXPECT_FALSE(m.getVertice(5).esValido());
    EXPECT_TRUE(m.getVertice(4).esValido());

    EXPECT_FALSE(m.recortaCara({P(0.5, 0, 0), P(0.5, 0.5, 0), P(1, 0.25, 0)}));
    EXPECT_TRUE(mallaSana(m));
    EXPECT_EQ(m.vertices().size(), 10U);
    EXPECT_EQ(m.buscaArista(P(0.5, 0, 0)), -1);
}

// Reversing: a face whose edges all carry it on side 0 walks backwards and stays sound; on an
// edge carrying it on side 1 the exchange is anteriorCara0 with siguienteCara1.
TEST(EdicionMalla, InvierteCaraCambiaLasAlas)
{
    Modelo3D m;
    cuadricula(m, 1, 1);
    m.invierteNormales();
    ASSERT_TRUE(mallaSana(m));
    EXPECT_EQ(ciclo(m, 0), (V{1, 0, 2, 3}));

    Modelo3D tira;
    cuadricula(tira, 2, 1);
    const int32_t e = arista(tira, 1, 4);
    const Arista antes = tira.aristas()[e];
    tira.invierteCara(1);
    const Arista& a = tira.aristas()[e];
    EXPECT_EQ(a.anteriorCara0, antes.siguienteCara1);
    EXPECT_EQ(a.siguienteCara1, antes.anteriorCara0);
    EXPECT_EQ(a.anteriorCara1, antes.anteriorCara1);
    EXPECT_FALSE(defectosMalla(tira).empty());
    // The walks are bounded: a bent cycle is read, never spun forever.
    EXPECT_LE(ciclo(tira, 0).size(), static_cast<size_t>(tira.aristas().size()));
}

// Extrusion of a triangle: three side quads and a top moved along the normal; the old face
// stays as a deleted record. A boundary edge extrudes, an interior one does not.
TEST(EdicionMalla, ExtruyeCaraYArista)
{
    Modelo3D m;
    const P t[3] = {P(0, 0, 0), P(1, 0, 0), P(0, 1, 0)};
    m.nuevaCara(3, t, nullptr, false, 5);
    m.extruyeCara(0, 2.0F);
    ASSERT_TRUE(mallaSana(m));
    EXPECT_EQ(m.caras()[0].arista, -1);
    EXPECT_EQ(vivas(m), 4);
    EXPECT_EQ(ciclo(m, 4), (V{3, 4, 5}));
    EXPECT_EQ(m.getVertice(4).punto, P(1, 0, -2));  // (P0 - P1) x (P2 - P1) points down
    EXPECT_EQ(m.getMaterialCara(4), 0);

    Modelo3D c;
    cuadricula(c, 2, 1);
    const std::vector<uint8_t> antes = imagenDe(c);
    c.extruyeArista(arista(c, 1, 4), Vector3D<double>(0, 0, 1));
    EXPECT_EQ(imagenDe(c), antes);
    EXPECT_TRUE(mallaSana(c));
    c.extruyeAristaHasta(0, P(0.5, 0, 3));  // edge 0-1
    ASSERT_TRUE(mallaSana(c));
    EXPECT_EQ(ciclo(c, 2), (V{0, 6, 7, 1}));
    EXPECT_EQ(c.getVertice(7).punto, P(1, 0, 3));
}

// An inset without its middle is a hole: four quads whose inner edges each have one face.
TEST(EdicionMalla, ParteCaraAbiertaDejaUnHueco)
{
    Modelo3D m;
    cuadricula(m, 1, 1);
    m.parteCara(0, false);
    ASSERT_TRUE(mallaSana(m));
    EXPECT_EQ(vivas(m), 4);
    EXPECT_EQ(m.getVertice(4).punto, P(0.25, 0.25, 0));
    V caras;
    for (int32_t v = 4; v < 8; ++v)
    {
        m.carasDeVertice(v, caras);
        EXPECT_EQ(caras.size(), 2U) << v;
    }
    const auto interior = [](const Arista& a) { return a.vertice[0] >= 4 && a.vertice[1] >= 4; };
    EXPECT_EQ(std::count_if(m.aristas().begin(), m.aristas().end(), interior), 4);
    EXPECT_TRUE(std::all_of(m.aristas().begin(), m.aristas().end(),
                            [&](const Arista& a) { return !interior(a) || a.esFrontera(); }));
}

// Indices a host may pass that name nothing leave the model as it was.
TEST(EdicionMalla, IndicesFueraDeRangoNoCambianNada)
{
    Modelo3D m;
    cubo(m);
    m.borraCara(2);
    const std::vector<uint8_t> antes = imagenDe(m);
    for (const int32_t i : {-1, 2, 999})
    {
        m.borraCara(i);
        m.invierteCara(i);
        m.extruyeCara(i, 1.0F);
        m.parteCara(i, true);
        m.parteArista(i == 2 ? 1000 : i, 3);
        m.extruyeArista(i == 2 ? 1000 : i, Vector3D<double>(0, 0, 1));
        m.aristas().parte(0, i == 2 ? 1000 : i);
    }
    EXPECT_EQ(imagenDe(m), antes);
    EXPECT_TRUE(mallaSana(m));
}

}  // namespace
}  // namespace cad
