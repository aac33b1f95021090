#include "modelo/Modelo3D.h"

#include <cmath>
#include <random>
#include <set>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "PantallaReferencia.h"
#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "entidades/Punto.h"
#include "soporte/ComprobadorMalla.h"
#include "soporte/MallasPrueba.h"

namespace cad
{
namespace
{

using P = Punto3<double>;
using prueba::cuadricula;
using prueba::cubo;
using prueba::cuerpoDe;
using prueba::leeCuerpo;

std::vector<int32_t> ciclo(const Modelo3D& m, int32_t cara)
{
    std::vector<int32_t> v;
    m.getVerticesCara(cara, v);
    return v;
}

// The edge star and edge lookup exactly as a plain depth-first search with a set: what the
// kernel's faster search must give, order and repeats included.
std::vector<int32_t> incidentesLlano(const Aristas& a, int32_t v, int32_t inicial)
{
    std::vector<int32_t> pila;
    std::vector<int32_t> out;
    std::set<int32_t> vistas;
    if (inicial != -1)
    {
        pila.push_back(inicial);
    }
    while (!pila.empty())
    {
        const int32_t e = pila.back();
        pila.pop_back();
        if (e < 0 || e >= a.size() || !a[e].esValida() || !a[e].toca(v))
        {
            continue;
        }
        vistas.insert(e);
        out.push_back(e);
        for (int32_t w :
             {a[e].siguienteCara0, a[e].anteriorCara0, a[e].siguienteCara1, a[e].anteriorCara1})
        {
            if (w != -1 && vistas.count(w) == 0)
            {
                pila.push_back(w);
            }
        }
    }
    return out;
}

int32_t buscaLlano(const Aristas& a, int32_t v1, int32_t v2, int32_t a1, int32_t a2)
{
    const int32_t desde = a1 != -1 ? v1 : v2;
    const int32_t otro = a1 != -1 ? v2 : v1;
    for (int32_t e : incidentesLlano(a, desde, a1 != -1 ? a1 : a2))
    {
        if (a[e].toca(otro))
        {
            return e;
        }
    }
    return -1;
}

TEST(Modelo3D, CarasCompartenAristasYGuardanSuCiclo)
{
    Modelo3D m;
    cuadricula(m, 2, 1);
    EXPECT_TRUE(mallaSana(m));
    ASSERT_EQ(m.vertices().size(), 6U);
    ASSERT_EQ(m.aristas().size(), 7);
    ASSERT_EQ(m.caras().size(), 2U);
    EXPECT_EQ(ciclo(m, 0), (std::vector<int32_t>{0, 1, 4, 3}));
    EXPECT_EQ(ciclo(m, 1), (std::vector<int32_t>{1, 2, 5, 4}));
    // The shared edge 1-4 was made by face 0 and taken by face 1 on its other side.
    const Arista& comun = m.aristas()[1];
    EXPECT_EQ(std::tuple(comun.vertice[0], comun.vertice[1], comun.cara[0], comun.cara[1]),
              std::tuple(1, 4, 0, 1));
    EXPECT_TRUE(comun.tieneDosCaras());
    EXPECT_EQ(m.aristas().aristasValidas(), 7);
    Modelo3D raros(m);
    raros.aristas()[0].vertice[0] = -3;  // counted: only -1 and -2 are invalid ends
    raros.aristas()[1].vertice[1] = -2;
    EXPECT_EQ(raros.aristas().aristasValidas(), 6);
    // A vertex's edge is the latest made on it.
    EXPECT_EQ(m.getVertice(4).arista, 6);
    EXPECT_EQ(m.modificado, 1);

    std::vector<int32_t> aristas;
    m.getAristasCara(1, aristas);
    EXPECT_EQ(aristas, (std::vector<int32_t>{4, 5, 6, 1}));
    std::vector<handle_arista_t> handles;
    m.getHandlesCara(1, handles);
    ASSERT_EQ(handles.size(), 4U);
    EXPECT_EQ(handles[3].indice, 1);
    EXPECT_EQ(handles[3].aristas, &m.aristas());
    int32_t a = 0;
    int32_t b = 0;
    int32_t c = 0;
    m.primerosVertices(1, a, b, c);
    EXPECT_EQ((std::vector<int32_t>{a, b, c}), (std::vector<int32_t>{1, 2, 5}));

    // A deleted face has no cycle, and its material still counts.
    m.setMaterialCara(1, 9);
    m.caras()[1].arista = -1;
    EXPECT_TRUE(ciclo(m, 1).empty());
    std::vector<uint16_t> materiales = {9, 3};
    m.getMaterialesCaras(materiales);
    EXPECT_EQ(materiales, (std::vector<uint16_t>{9, 3, 0}));
    m.remapeaMateriales({{9, 2}, {4, 5}});
    EXPECT_EQ(m.getMaterialCara(0), 0);
    EXPECT_EQ(m.getMaterialCara(1), 2);
}

// A third face on an edge writes only anteriorCara1; a split star misses the other fan's edge.
TEST(Modelo3D, RarezasDeLaBusquedaDeAristas)
{
    Modelo3D m;
    for (const P& p : {P(0, 0, 0), P(1, 0, 0), P(0, 1, 0), P(0, -1, 0), P(0, 0, 1)})
    {
        m.nuevoVertice(p);
    }
    const int32_t t[5][3] = {{0, 1, 2}, {1, 0, 3}, {0, 1, 4}, {0, 3, 4}, {0, 2, 3}};
    m.nuevaCara(3, t[0], false, 0);
    m.nuevaCara(3, t[1], false, 0);
    EXPECT_TRUE(mallaSana(m));
    const Arista antes = m.aristas()[0];
    EXPECT_EQ(m.nuevaCara(3, t[2], false, 0), 2);
    const Arista& d = m.aristas()[0];
    EXPECT_EQ(std::tuple(d.siguienteCara0, d.anteriorCara0, d.siguienteCara1, d.cara[0], d.cara[1]),
              std::tuple(antes.siguienteCara0, antes.anteriorCara0, antes.siguienteCara1, 0, 1));
    EXPECT_EQ(d.anteriorCara1, 2);  // the face's number, in an edge field
    EXPECT_EQ(ciclo(m, 0), (std::vector<int32_t>{0, 1, 2}));
    EXPECT_FALSE(mallaSana(m));

    // A split star: vertex 0's faces 0-1-2 and 0-3-4 share no edge; the face 0-2-3 looks for
    // 0-2 from 0's latest edge, in the other fan, and makes a second 0-2.
    Modelo3D e;
    for (int i = 0; i < 5; ++i)
    {
        e.nuevoVertice(P(std::cos(i * 1.2), std::sin(i * 1.2), 0));
    }
    for (const auto& c : {t[0], t[3], t[4]})
    {
        e.nuevaCara(3, c, false, 0);
    }
    const Aristas& a = e.aristas();
    ASSERT_EQ(a.size(), 8);
    EXPECT_EQ(std::tuple(a[2].vertice[0], a[2].vertice[1], a[6].vertice[0], a[6].vertice[1]),
              std::tuple(2, 0, 0, 2));
    EXPECT_TRUE(a[2].esFrontera() && a[6].esFrontera());
    EXPECT_EQ(a[3].cara[1], 2);  // 0-3 was found: it is in the fan searched
    EXPECT_TRUE(mallaSana(e));
}

TEST(Modelo3D, BusquedaRapidaIgualALaLlana)
{
    std::mt19937 azar(7);
    for (int ronda = 0; ronda < 20; ++ronda)
    {
        Modelo3D m;
        constexpr int kLado = 8;
        for (int j = 0; j < kLado; ++j)
        {
            for (int i = 0; i < kLado; ++i)
            {
                m.nuevoVertice(P(i, j, 0));
            }
        }
        std::uniform_int_distribution<int> celda(0, kLado - 2);
        for (int k = 0; k < 60; ++k)
        {
            const int32_t a = celda(azar) * kLado + celda(azar);
            std::vector<int32_t> c = {a, a + 1, a + kLado + 1, a + kLado};
            if (azar() % 3 == 0)
            {
                c.pop_back();  // triangles among the quads
            }
            if (azar() % 4 == 0)
            {
                std::reverse(c.begin(), c.end());  // against the neighbours' winding
            }
            // Cells drawn twice or three times put third faces on edges.
            m.nuevaCara(static_cast<int>(c.size()), c.data(), false, 0);
        }
        // Dead edges and deleted faces, as the edits leave them.
        for (int k = 0; k < 5 && m.aristas().size() > 0; ++k)
        {
            Arista& e = m.aristas()[static_cast<int32_t>(azar() % m.aristas().size())];
            e = Arista();
            m.caras()[azar() % m.caras().size()].arista = -1;
        }
        const Aristas& ar = m.aristas();
        std::uniform_int_distribution<int32_t> vertice(0, kLado * kLado - 1);
        std::uniform_int_distribution<int32_t> arista(-1, ar.size() - 1);
        for (int k = 0; k < 400; ++k)
        {
            const int32_t v1 = vertice(azar);
            const int32_t v2 = k % 5 == 0 ? v1 : vertice(azar);
            const int32_t a1 = k % 2 == 0 ? m.getVertice(v1).arista : arista(azar);
            const int32_t a2 = k % 3 == 0 ? m.getVertice(v2).arista : arista(azar);
            ASSERT_EQ(ar.busca(v1, v2, a1, a2), buscaLlano(ar, v1, v2, a1, a2))
                << "ronda " << ronda << " v " << v1 << "," << v2 << " a " << a1 << "," << a2;
            std::vector<int32_t> rapido;
            ar.incidentes(rapido, v1, a1);
            ASSERT_EQ(rapido, incidentesLlano(ar, v1, a1));
        }
    }
}

TEST(Modelo3D, NormalesConSuCache)
{
    Modelo3D m;
    cuadricula(m, 1, 1);
    // (P0 - P1) x (P2 - P1): a face turning anticlockwise from above looks down.
    EXPECT_EQ(m.normalCara(0), Vector3D<float>(0, 0, -1));
    // Moving a vertex keeps the cached normal until recalculaNormales.
    m.setPunto(1, P(1, 0, 1));
    EXPECT_EQ(m.normalCara(0), Vector3D<float>(0, 0, -1));
    m.recalculaNormales();
    const float r = static_cast<float>(1.0 / std::sqrt(3.0));
    EXPECT_EQ(m.normalCara(0), Vector3D<float>(r, -r, -r));

    // A degenerate face stays uncached and is computed again once it is not degenerate.
    Modelo3D d;
    const P linea[3] = {P(0, 0, 0), P(1, 0, 0), P(2, 0, 0)};
    d.nuevaCara(3, linea, nullptr, false, 0);
    EXPECT_EQ(d.normalCara(0), Vector3D<float>());
    d.setPunto(2, P(0, 1, 0));
    EXPECT_EQ(d.normalCara(0), Vector3D<float>(0, 0, -1));

    // A deleted face answers its cached value.
    d.caras()[0].arista = -1;
    d.caras()[0].normal = Vector3D<float>();
    EXPECT_EQ(d.normalCara(0), Vector3D<float>());

    // Vertex normals: a corner of the cube, wound anticlockwise from outside, looks in along
    // its diagonal; a lone vertex gets +z.
    Modelo3D c;
    cubo(c);
    c.nuevoVertice(P(5, 5, 5));
    std::vector<Vector3D<float>> n;
    c.normalesVertices(n);
    ASSERT_EQ(n.size(), 9U);
    EXPECT_NEAR(n[7].x, -r, 1e-6);
    EXPECT_NEAR(n[7].y, -r, 1e-6);
    EXPECT_NEAR(n[0].z, r, 1e-6);
    EXPECT_EQ(n[8], Vector3D<float>(0, 0, 1));
    EXPECT_TRUE(mallaSana(m) && mallaSana(c));
}

double areaTriangulos(const Modelo3D& m, const std::vector<int32_t>& t)
{
    double area = 0.0;
    for (size_t i = 0; i + 2 < t.size(); i += 3)
    {
        const P& a = m.getVertice(t[i]).punto;
        area += 0.5 *
                (m.getVertice(t[i + 1]).punto - a).cross(m.getVertice(t[i + 2]).punto - a).modulo();
    }
    return area;
}

TEST(Modelo3D, TriangulaPorOrejasConLaDiagonalMasCorta)
{
    std::vector<int32_t> t;
    Modelo3D m;
    const P tri[3] = {P(0, 0, 0), P(2, 0, 0), P(0, 1, 0)};
    m.nuevaCara(3, tri, nullptr, false, 0);
    m.triangulaCara(0, t);
    EXPECT_EQ(t, (std::vector<int32_t>{0, 1, 2}));

    // A square: both diagonals tie and the earlier corner is cut.
    const P cuadrado[4] = {P(0, 0, 0), P(1, 0, 0), P(1, 1, 0), P(0, 1, 0)};
    m.nuevaCara(4, cuadrado, nullptr, false, 0);
    m.triangulaCara(1, t);
    EXPECT_EQ(t, (std::vector<int32_t>{6, 3, 4, 4, 5, 6}));

    // A dart: the diagonal between its wings runs outside, over the reflex corner 9, so the
    // cut goes from the tip to that corner.
    const P dardo[4] = {P(0, 0, 0), P(4, 0, 0), P(1, 1, 0), P(0, 4, 0)};
    m.nuevaCara(4, dardo, nullptr, false, 0);
    m.triangulaCara(2, t);
    EXPECT_EQ(t, (std::vector<int32_t>{7, 8, 9, 7, 9, 10}));
    EXPECT_DOUBLE_EQ(areaTriangulos(m, t), 4.0);

    // An octagon gives six triangles covering its area.
    std::vector<P> octo;
    for (int i = 0; i < 8; ++i)
    {
        const double ang = i * M_PI / 4.0;
        octo.emplace_back(3.0 + std::cos(ang), std::sin(ang) * 2.0, 1.0);
    }
    const int32_t c8 = m.nuevaCara(8, octo.data(), nullptr, false, 0);
    m.triangulaCara(c8, t);
    EXPECT_EQ(t.size(), 18U);
    EXPECT_NEAR(areaTriangulos(m, t), 2.0 * 2.0 * std::sqrt(2.0), 1e-12);

    // All corners on a line: no corner is convex, yet the clipping ends.
    const P recta[5] = {P(0, 0, 0), P(1, 0, 0), P(2, 0, 0), P(3, 0, 0), P(4, 0, 0)};
    const int32_t cr = m.nuevaCara(5, recta, nullptr, false, 0);
    m.triangulaCara(cr, t);
    EXPECT_EQ(t.size(), 9U);
    EXPECT_TRUE(mallaSana(m));
}

TEST(Modelo3D, ModeloVacioYCopias)
{
    Modelo3D vacio;
    EXPECT_EQ(vacio.caja(), Rect3<double>(P(0, 0, 0), P(-1, -1, -1)));
    EXPECT_TRUE(std::isnan(vacio.centroide().x));

    Modelo3D m;
    cubo(m);
    m.vertices()[3].arista = -1;  // a dead vertex still counts for the box and the mean
    m.coloresCaras = {1, 2};
    EXPECT_EQ(m.caja(), Rect3<double>(P(0, 0, 0), P(1, 1, 1)));
    EXPECT_EQ(m.centroide(), P(0.5, 0.5, 0.5));
    m.transformable = 0;
    const Modelo3D copia(m);
    EXPECT_EQ(std::tuple(copia.modificado, copia.transformable, copia.aristas().size()),
              std::tuple(0, 1, 12));
    EXPECT_EQ(copia.coloresCaras, m.coloresCaras);
    Modelo3D asignado;
    asignado = m;
    asignado = asignado;
    EXPECT_EQ(std::tuple(asignado.vertices().size(), asignado.modificado), std::tuple(8U, 0));
    EXPECT_TRUE(mallaSana(asignado));
}

TEST(Modelo3D, EdicionesAnidadasYModeloActual)
{
    Modelo3D a;
    Modelo3D b;
    EXPECT_EQ(Modelo3D::actual(), nullptr);
    a.iniciaEdicion();
    b.iniciaEdicion();
    EXPECT_EQ(Modelo3D::actual(), &b);
    // A face built inside b's own edit keeps the hooks on for what follows in the edit.
    const P tri[3] = {P(0, 0, 0), P(1, 0, 0), P(0, 1, 0)};
    b.nuevaCara(3, tri, nullptr, false, 0);
    Arista suelta;
    suelta.vertice[0] = 0;
    suelta.vertice[1] = 2;
    b.aristas().alNuevaArista(b.aristas().nueva(suelta));
    EXPECT_EQ(b.getVertice(0).arista, 3);
    b.terminaEdicion();
    EXPECT_EQ(Modelo3D::actual(), &a);
    a.terminaEdicion();
    EXPECT_EQ(Modelo3D::actual(), nullptr);
    // Outside an edit the hooks do nothing.
    b.aristas().alNuevaArista(0);
    EXPECT_EQ(b.getVertice(0).arista, 3);

    TIteradorAristas it(b.aristas());
    EXPECT_EQ(it.siguiente().indice, 0);
    EXPECT_EQ(it.actual().indice, 1);
    EXPECT_EQ(it.anterior().indice, 0);
    EXPECT_EQ(it.anterior().aristas, nullptr);
    EXPECT_TRUE(mallaSana(b));
}

TEST(Modelo3D, CuerpoDeUnTrianguloByteAByte)
{
    Modelo3D m;
    const P tri[3] = {P(1, 2, 3), P(4, 5, 6), P(7, 8, 9)};
    const Vector2D<float> uv[3] = {{0.5F, 0.25F}, {1, 0}, {0, 1}};
    m.nuevaCara(3, tri, uv, true, 7);
    SerializadorBinarioEscritura w;
    w.escribeEnteroSinSigno(3);
    const uint32_t aristaDe[3] = {2, 1, 2};
    for (int i = 0; i < 3; ++i)
    {
        w.escribePunto3(tri[i]);
        w.escribeVector2Simple(uv[i]);
        w.escribeEnteroSinSigno(aristaDe[i]);
    }
    w.escribeEnteroSinSigno(3);
    const uint32_t nada = 0xFFFFFFFFU;
    for (uint32_t i = 0; i < 3; ++i)
    {
        // `viva` is not kept: the stored edge is never sharp.
        for (uint32_t c : {i, (i + 1) % 3, (i + 1) % 3, (i + 2) % 3, nada, nada, 0U, nada, 0U})
        {
            w.escribeEnteroSinSigno(c);
        }
    }
    w.escribeEnteroSinSigno(1);
    w.escribeEnteroSinSigno(0);
    w.escribeCortoSinSigno(7);
    const std::vector<uint8_t> esperado = w.bytes();
    EXPECT_EQ(esperado.size(), 234U);
    EXPECT_EQ(cuerpoDe(m), esperado);
    Modelo3D leido;
    ASSERT_TRUE(leeCuerpo(esperado, leido));
    EXPECT_TRUE(mallaSana(leido));
    EXPECT_EQ(leido.getVertice(0).uv.x, 0.5F);
    EXPECT_EQ(leido.aristas()[0].viva, 0);
}

// What the compact copy is by definition: each live face rebuilt by nuevaCara on private
// vertices, its records as they stand.
std::vector<uint8_t> cuerpoLiteral(const Modelo3D& m)
{
    Modelo3D copia;
    std::vector<int32_t> c;
    for (size_t f = 0; f < m.caras().size(); ++f)
    {
        m.getVerticesCara(static_cast<int32_t>(f), c);
        if (m.caras()[f].arista == -1 || c.empty())
        {
            continue;
        }
        std::vector<int32_t> propios;
        for (int32_t v : c)
        {
            propios.push_back(copia.nuevoVertice(m.getVertice(v).punto, m.getVertice(v).uv));
        }
        copia.nuevaCara(static_cast<int>(c.size()), propios.data(), false, m.caras()[f].material);
    }
    return prueba::imagenDe(copia);
}

TEST(Modelo3D, ElCuerpoEsLaCopiaCompactaYVuelveSinVecinos)
{
    Modelo3D m;
    cubo(m);
    m.setMaterialCara(2, 4);
    EXPECT_TRUE(mallaSana(m));
    const std::vector<uint8_t> b = cuerpoDe(m);
    EXPECT_EQ(b, cuerpoLiteral(m));

    Modelo3D leido;
    leido.nuevoVertice(P(9, 9, 9));  // whatever it held goes
    ASSERT_TRUE(leeCuerpo(b, leido));
    EXPECT_EQ(std::tuple(leido.vertices().size(), leido.aristas().size(), leido.caras().size()),
              std::tuple(24U, 24, 6U));
    EXPECT_TRUE(mallaSana(leido));
    for (const Arista& a : leido.aristas())
    {
        EXPECT_TRUE(a.esFrontera());
    }
    std::vector<P> antes;
    std::vector<P> despues;
    for (int32_t f = 0; f < 6; ++f)
    {
        m.getCoordenadasCara(f, antes);
        leido.getCoordenadasCara(f, despues);
        EXPECT_EQ(antes, despues);
        EXPECT_EQ(leido.getMaterialCara(f), m.getMaterialCara(f));
    }
    // Stored again, the reloaded model gives the same bytes: the copy of a copy is itself.
    EXPECT_EQ(cuerpoDe(leido), b);

    // Deleted faces and odd cycles: the body still equals the literal copy.
    Modelo3D g;
    cuadricula(g, 3, 2);
    const P par[2] = {P(7, 7, 0), P(8, 7, 0)};
    g.nuevaCara(2, par, nullptr, true, 3);
    EXPECT_TRUE(mallaSana(g));
    g.caras()[4].arista = -1;
    EXPECT_EQ(cuerpoDe(g), cuerpoLiteral(g));
    ASSERT_TRUE(leeCuerpo(cuerpoDe(g), leido));
    EXPECT_EQ(leido.caras().size(), 6U);
    EXPECT_TRUE(mallaSana(leido));

    // A cut body or a lying count reads as a failure and leaves nothing behind.
    Modelo3D corto;
    EXPECT_FALSE(leeCuerpo(std::vector<uint8_t>(b.begin(), b.end() - 1), corto));
    EXPECT_TRUE(corto.vertices().empty());
    std::vector<uint8_t> enorme = b;
    enorme[0] = enorme[1] = enorme[2] = enorme[3] = 0xFF;
    EXPECT_FALSE(leeCuerpo(enorme, corto));
}

// Two faces of material 2 (one of them flat) after a face of material 5.
Modelo3D dosMateriales()
{
    Modelo3D m;
    cuadricula(m, 3, 1);
    m.setMaterialCara(0, 5);
    m.setMaterialCara(1, 2);
    m.setMaterialCara(2, 2);
    m.aristas()[m.caras()[2].arista].viva = 1;
    m.coloresVertices.assign(8, 0xFF00FF00U);
    EXPECT_TRUE(mallaSana(m));
    return m;
}

TEST(Modelo3D, PinturaPorRepresentacion)
{
    Punto entidad(P(0, 0, 0));
    const uint32_t color = entidad.resuelveColorABGR();
    const auto pinta = [&](Modelo3D m, int modo)
    {
        PantallaReferencia p;
        m.dibuja(p, modo, &entidad);
        return p;
    };
    char abgr[16];
    std::snprintf(abgr, sizeof abgr, "%08X", color);
    const std::string abre = std::string("iniciaObjeto ") + abgr + " ";

    // Realistic: materials from the last seen to the first; the flat face brings four
    // private corners with its own normal.
    {
        PantallaReferencia p = pinta(dosMateriales(), PantallaCAD::kRealista);
        const std::vector<std::string> esperado = {
            "setMaterial 2", abre + "3",      "vertices 12",       "coloresVertices 8",
            "normales 12",   "caras 10",      "finObjeto pick",    "setMaterial 5",
            abre + "3",      "vertices 8",    "coloresVertices 8", "normales 8",
            "caras 5",       "finObjeto pick"};
        EXPECT_EQ(p.llamadas, esperado);
        const primitiva_t& plana = p.escena[0];
        EXPECT_EQ(plana.caras, (std::vector<int32_t>{4, 1, 2, 6, 5, 4, 8, 9, 10, 11}));
        EXPECT_EQ(plana.normales[9], Vector3D<float>(0, 0, -1));
        EXPECT_EQ(plana.puntos[8], P(2, 0, 0));
        EXPECT_EQ(p.escena[1].caras, (std::vector<int32_t>{4, 0, 1, 5, 4}));
    }
    // Wireframe: the edge list of every edge record and the vertex colours.
    {
        PantallaReferencia p = pinta(dosMateriales(), PantallaCAD::kAlambrica);
        EXPECT_EQ(p.llamadas[0], abre + "0");
        EXPECT_EQ(p.llamadas[2], "aristas 20");
        EXPECT_EQ(p.llamadas[3], "coloresVertices 8");
        EXPECT_EQ(p.llamadasDe("caras").size(), 0U);
        EXPECT_EQ(p.llamadasDe("setMaterial").size(), 0U);
    }
    // Hidden lines and x-ray: edges, colours and polygons.
    for (int modo : {PantallaCAD::kOculto, PantallaCAD::kRayosX})
    {
        PantallaReferencia p = pinta(dosMateriales(), modo);
        EXPECT_EQ(std::vector<std::string>(p.llamadas.begin() + 2, p.llamadas.begin() + 5),
                  (std::vector<std::string>{"aristas 20", "coloresVertices 8", "caras 10"}));
    }
    // Conceptual: one colour with red and blue swapped, or each face's own colour per corner.
    {
        PantallaReferencia p = pinta(dosMateriales(), PantallaCAD::kConceptual);
        char linea[64];
        std::snprintf(linea, sizeof linea, "setColorMaterial %08X 0.8 1",
                      entidad.resuelveColorABGR(3));
        EXPECT_EQ(p.llamadas[2], linea);
        Modelo3D m = dosMateriales();
        m.coloresCaras = {0x11111111U, 0x22222222U, 0x33333333U};
        p = pinta(m, PantallaCAD::kConceptual);
        EXPECT_EQ(p.llamadas[1], "vertices 8");
        EXPECT_EQ(p.llamadas[2], "coloresVertices 8");
        EXPECT_EQ(p.escena[0].colores[0], 0x22222222U);
        EXPECT_EQ(p.escena[0].colores[7], 0x33333333U);
        EXPECT_EQ(p.escena[1].colores, std::vector<uint32_t>(4, 0x11111111U));
    }
    // Textures: the UV pairs and the polygons; the closing call drops the pick when the
    // model is not transformable.
    {
        Modelo3D m = dosMateriales();
        m.transformable = 0;  // set on the model painted: a copy starts transformable
        PantallaReferencia p;
        m.dibuja(p, PantallaCAD::kTexturas, &entidad);
        EXPECT_EQ(std::vector<std::string>(p.llamadas.begin() + 3, p.llamadas.begin() + 5),
                  (std::vector<std::string>{"coordenadasUV 12", "caras 10"}));
        EXPECT_EQ(p.escena[0].pick, nullptr);
        EXPECT_EQ(pinta(dosMateriales(), PantallaCAD::kTexturas).escena[0].pick,
                  static_cast<void*>(static_cast<Entidad*>(&entidad)));
    }
    // An empty model paints nothing.
    EXPECT_TRUE(pinta(Modelo3D(), PantallaCAD::kRealista).llamadas.empty());
}

}  // namespace
}  // namespace cad
