#include <cmath>
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
using prueba::cuadricula;
using prueba::cubo;
using prueba::imagenDe;

std::vector<int32_t> ciclo(const Modelo3D& m, int32_t cara)
{
    std::vector<int32_t> v;
    m.getVerticesCara(cara, v);
    return v;
}

int32_t vivas(const Modelo3D& m)
{
    int32_t n = 0;
    for (const cara_t& c : m.caras())
    {
        n += c.arista != -1 ? 1 : 0;
    }
    return n;
}

// Every edit over every face of a closed and an open mesh: whatever the edit, the records must
// stay a sound mesh, and the edit must have done something (faces or corners changed).
TEST(EdicionMalla, CadaEdicionSobreCadaCaraDejaLaMallaSana)
{
    for (const bool cerrado : {true, false})
    {
        Modelo3D base;
        cerrado ? cubo(base) : cuadricula(base, 2, 2);
        for (int32_t f = 0; f < static_cast<int32_t>(base.caras().size()); ++f)
        {
            SCOPED_TRACE(testing::Message() << (cerrado ? "cubo" : "cuadricula") << " cara " << f);
            const std::vector<int32_t> l = ciclo(base, f);
            std::vector<int32_t> aristas;
            base.getAristasCara(f, aristas);

            Modelo3D m = base;
            m.borraCara(f);
            EXPECT_TRUE(mallaSana(m));
            EXPECT_TRUE(ciclo(m, f).empty());

            m = base;
            m.parteArista(aristas[1], 3);
            EXPECT_TRUE(mallaSana(m));
            EXPECT_EQ(ciclo(m, f).size(), l.size() + 2);

            m = base;
            ASSERT_TRUE(m.uneVertices(l[0], l[2]));
            EXPECT_TRUE(mallaSana(m));
            EXPECT_EQ(ciclo(m, f).size() + ciclo(m, vivas(m) - 1).size(), l.size() + 2);

            m = base;
            m.extruyeCara(f, 2.0F);
            EXPECT_TRUE(mallaSana(m));
            EXPECT_EQ(vivas(m), vivas(base) + 4);

            m = base;
            m.parteCara(f, true);
            EXPECT_TRUE(mallaSana(m));
            EXPECT_EQ(vivas(m), vivas(base) + 4);
        }
    }
}

// A cube's edge in three: two vertices and two edges are appended, the edge keeps its index as
// the piece at vertice[0], and both faces on it show six corners in walking order.
TEST(EdicionMalla, ParteAristaEnTresEnlazaLasDosCaras)
{
    Modelo3D m;
    cubo(m);
    const int32_t e = m.aristas().busca(0, 2, m.getVertice(0).arista, m.getVertice(2).arista);
    ASSERT_EQ(m.aristas()[e].vertice[0], 0);
    const size_t nv = m.vertices().size();
    const int32_t na = m.aristas().size();
    m.parteArista(e, 3);
    ASSERT_TRUE(mallaSana(m));
    EXPECT_EQ(m.vertices().size(), nv + 2);
    EXPECT_EQ(m.aristas().size(), na + 2);
    const auto v1 = static_cast<int32_t>(nv);  // nearest q
    const auto v2 = v1 + 1;
    EXPECT_EQ(m.getVertice(v1).punto, P(0, 1.0 - 1.0 / 3, 0));
    EXPECT_EQ(m.aristas()[e].vertice[1], v2);
    EXPECT_EQ(ciclo(m, 0), (std::vector<int32_t>{0, v2, v1, 2, 3, 1}));
    EXPECT_EQ(ciclo(m, 4), (std::vector<int32_t>{0, 4, 6, 2, v1, v2}));

    const std::vector<uint8_t> antes = imagenDe(m);
    m.parteArista(e, 1);
    EXPECT_EQ(imagenDe(m), antes);
}

// An edge whose only face lies on side 1 (its side-0 face deleted): the new piece takes the face
// in cara[0] with that face's walk order, so the cycle closes through it.
TEST(EdicionMalla, ParteAristaConCaraSoloEnLado1)
{
    Modelo3D m;
    cuadricula(m, 2, 1);
    const int32_t e = m.aristas().busca(1, 4, m.getVertice(1).arista, m.getVertice(4).arista);
    ASSERT_EQ(m.aristas()[e].cara[1], 1);
    m.borraCara(0);
    ASSERT_EQ(m.aristas()[e].cara[0], -1);
    const int32_t v = m.insertaVertice(P(1, 0.5, 0), e);
    ASSERT_TRUE(mallaSana(m));
    const int32_t n = m.aristas().size() - 1;
    EXPECT_EQ(m.aristas()[n].cara[0], 1);
    EXPECT_EQ(m.aristas()[n].siguienteCara0, e);
    EXPECT_EQ(ciclo(m, 1).size(), 5U);
    EXPECT_EQ(m.getVertice(v).arista, n);
}

// Deleting one face of a strip: the edges only it had die in full, the shared edge loses
// that side, and the shared vertices live on although their own edge was among the dead.
TEST(EdicionMalla, BorraCaraMataSoloLoQueEraSuyo)
{
    Modelo3D m;
    cuadricula(m, 2, 1);  // 0 1 2 / 3 4 5
    std::vector<int32_t> aristas;
    m.getAristasCara(1, aristas);
    const int32_t compartida = m.aristas().busca(1, 4, m.getVertice(1).arista, -1);
    ASSERT_EQ(m.getVertice(1).arista, aristas[0]);  // (1,2): the newest edge at 1, about to die
    m.borraCara(1);
    ASSERT_TRUE(mallaSana(m));
    for (const int32_t e : aristas)
    {
        const Arista& a = m.aristas()[e];
        if (e == compartida)
        {
            EXPECT_EQ(a.cara[0], 0);
            EXPECT_EQ(a.cara[1], -1);
            EXPECT_EQ(a.siguienteCara1, -1);
        }
        else
        {
            EXPECT_EQ(a.vertice[0], -1);
            EXPECT_EQ(a.cara[0], -1);
        }
    }
    EXPECT_TRUE(m.getVertice(1).esValido());
    EXPECT_TRUE(m.getVertice(4).esValido());
    EXPECT_FALSE(m.getVertice(2).esValido());
    EXPECT_FALSE(m.getVertice(5).esValido());
    EXPECT_EQ(m.caras()[1].arista, -1);

    m.borraCara(0);
    EXPECT_TRUE(mallaSana(m));
    EXPECT_EQ(m.aristas().aristasValidas(), 0);
    EXPECT_EQ(m.vertices().size(), 6U);
    for (const vertice_t& v : m.vertices())
    {
        EXPECT_EQ(v.arista, -1);
    }
}

// A quad's diagonal: two triangles sharing the new edge, same material and normal; joining
// again, or joining vertices with no common face, changes nothing.
TEST(EdicionMalla, UneVerticesParteLaCaraEnDos)
{
    Modelo3D m;
    cuadricula(m, 2, 1);
    m.setMaterialCara(0, 7);
    const Vector3D<float> normal = m.normalCara(0);
    ASSERT_TRUE(m.uneVertices(0, 4));
    ASSERT_TRUE(mallaSana(m));
    ASSERT_EQ(m.caras().size(), 3U);
    const int32_t nueva = m.aristas().size() - 1;
    EXPECT_EQ(m.aristas()[nueva].vertice[0], 0);
    EXPECT_EQ(m.aristas()[nueva].cara[0], 2);
    EXPECT_EQ(m.aristas()[nueva].cara[1], 0);
    EXPECT_EQ(ciclo(m, 0).size(), 3U);
    EXPECT_EQ(ciclo(m, 2).size(), 3U);
    EXPECT_EQ(m.getMaterialCara(2), 7);
    EXPECT_EQ(m.caras()[2].normal, normal);

    const std::vector<uint8_t> antes = imagenDe(m);
    EXPECT_FALSE(m.uneVertices(0, 4));
    EXPECT_FALSE(m.uneVertices(0, 5));
    EXPECT_FALSE(m.uneVertices(0, 99));
    EXPECT_EQ(imagenDe(m), antes);
}

// A cut from edge to edge through one free point: the ends split the edges, the interior
// vertex is part of the chain but keeps `arista` -1 (the chain calls no hook). An end on an
// edge that runs along x in a flat face is never found (the segment test divides by its zero
// extent in z), so that cut is refused and leaves its vertices bare.
TEST(EdicionMalla, RecortaCaraDeAristaAArista)
{
    Modelo3D m;
    cuadricula(m, 1, 1);  // 0 1 3 2
    ASSERT_TRUE(m.recortaCara({P(0, 0.5, 0), P(0.5, 0.5, 0), P(1, 0.5, 0)}));
    ASSERT_TRUE(mallaSana(m));
    EXPECT_EQ(m.vertices().size(), 7U);
    EXPECT_EQ(ciclo(m, 0), (std::vector<int32_t>{0, 1, 6, 5, 4}));
    EXPECT_EQ(ciclo(m, 1), (std::vector<int32_t>{3, 2, 4, 5, 6}));  // from its first edge record
    EXPECT_FALSE(m.getVertice(5).esValido());
    EXPECT_TRUE(m.getVertice(4).esValido());

    const size_t nv = m.vertices().size();
    const std::vector<uint8_t> aristas = imagenDe(m);
    EXPECT_FALSE(m.recortaCara({P(0.5, 0, 0), P(0.5, 0.5, 0), P(1, 0.25, 0)}));
    EXPECT_TRUE(mallaSana(m));
    EXPECT_EQ(m.vertices().size(), nv + 3);
    EXPECT_EQ(m.buscaArista(P(0.5, 0, 0)), -1);
}

// A chain between two corners that already share an edge: the cut closes a loop with that edge,
// whichever way round the face walks it.
TEST(EdicionMalla, UneCadenaEntreVecinos)
{
    for (const bool alReves : {false, true})
    {
        Modelo3D m;
        cuadricula(m, 1, 1);  // 0 1 3 2
        const int32_t centro = m.nuevoVertice(P(0.5, 0.5, 0));
        ASSERT_TRUE(m.uneCadena(alReves ? std::vector<int32_t>{1, centro, 0}
                                        : std::vector<int32_t>{0, centro, 1}));
        EXPECT_TRUE(mallaSana(m));
        EXPECT_EQ(ciclo(m, 0).size() + ciclo(m, 1).size(), 8U);
    }
}

// Reversing: a face whose edges all carry it on side 0 walks backwards and stays sound; on an
// edge carrying it on side 1 the exchange is anteriorCara0 with siguienteCara1.
TEST(EdicionMalla, InvierteCaraCambiaLasAlas)
{
    Modelo3D m;
    cuadricula(m, 1, 1);
    m.invierteNormales();
    ASSERT_TRUE(mallaSana(m));
    EXPECT_EQ(ciclo(m, 0), (std::vector<int32_t>{1, 0, 2, 3}));

    Modelo3D tira;
    cuadricula(tira, 2, 1);
    const int32_t e = tira.aristas().busca(1, 4, tira.getVertice(1).arista, -1);
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
    EXPECT_EQ(ciclo(m, 4), (std::vector<int32_t>{3, 4, 5}));
    EXPECT_EQ(m.getVertice(4).punto, P(1, 0, -2));  // (P0 - P1) x (P2 - P1) points down
    EXPECT_EQ(m.getMaterialCara(4), 0);

    Modelo3D c;
    cuadricula(c, 2, 1);
    const std::vector<uint8_t> antes = imagenDe(c);
    c.extruyeArista(c.aristas().busca(1, 4, c.getVertice(1).arista, -1), Vector3D<double>(0, 0, 1));
    EXPECT_EQ(imagenDe(c), antes);
    c.extruyeAristaHasta(0, P(0.5, 0, 3));  // edge 0-1
    ASSERT_TRUE(mallaSana(c));
    EXPECT_EQ(ciclo(c, 2), (std::vector<int32_t>{0, 6, 7, 1}));
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
    for (int32_t v = 4; v < 8; ++v)
    {
        std::vector<int32_t> caras;
        m.carasDeVertice(v, caras);
        EXPECT_EQ(caras.size(), 2U);
    }
    int32_t interiores = 0;
    for (const Arista& a : m.aristas())
    {
        if (a.vertice[0] >= 4 && a.vertice[1] >= 4)
        {
            ++interiores;
            EXPECT_TRUE(a.esFrontera());
        }
    }
    EXPECT_EQ(interiores, 4);
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
}

}  // namespace
}  // namespace cad
