// Plano, what the catalogue does not cover: plane fitting, contour edits, the lost closed
// flag, the painted object, projected drags, refitting through the sheet, and cuts.
#include "entidades/Plano.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "modelo/PuntosCalientes.h"
#include "soporte/BloquesPrueba.h"
#include "soporte/CatalogoEntidades.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::Plano;
using P = cad::Punto3<double>;
using V = cad::Vector3D<double>;
using Puntos = std::vector<P>;

double residuo(const Plano& pl, const P& p)
{
    return pl.a * p.x + pl.b * p.y + pl.c * p.z + pl.d;
}

bool todosEnPlano(const Plano& pl, double tol = 1e-9)
{
    for (const auto& p : pl.contorno.vertices)
    {
        if (std::abs(residuo(pl, p)) > tol)
        {
            return false;
        }
    }
    return true;
}

const Puntos kCuadrado = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};

// The floor z = 0 reaching past x = 6, with an extra point on its far side.
const Puntos kSuelo = {{0, 0, 0}, {7, 0, 0}, {7, 2, 0}, {7, 4, 0}, {0, 4, 0}};

}  // namespace

// The solver on known matrices: eigenvalues come out in rising order, each column is a unit
// eigenvector (A v = l v) and the columns are orthogonal; a diagonal, a repeated and a zero
// matrix need no rounds and still sort. Points of the known plane 2x - 3y + 6z + 7 = 0 give
// it back up to sign and scale, as a unit normal; moved to survey coordinates the fit still
// holds them, thanks to the centroid. No points give the all-zero plane.
TEST(PlanoAjuste, AutovaloresYPlanoConocido)
{
    const double matrices[][3][3] = {{{2, 1, 0}, {1, 2, 0}, {0, 0, 5}},
                                     {{4, -2, 1}, {-2, 3, 0.5}, {1, 0.5, 7}},
                                     {{9, 0, 0}, {0, -1, 0}, {0, 0, 4}},
                                     {{1, 1, 1}, {1, 1, 1}, {1, 1, 1}},
                                     {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}};
    for (const auto& m : matrices)
    {
        double l[3];
        double v[3][3];
        ASSERT_TRUE(cad::autovaloresSimetricos(m, l, v));
        EXPECT_LE(l[0], l[1]);
        EXPECT_LE(l[1], l[2]);
        for (int k = 0; k < 3; ++k)
        {
            for (int i = 0; i < 3; ++i)
            {
                const double av = m[i][0] * v[0][k] + m[i][1] * v[1][k] + m[i][2] * v[2][k];
                EXPECT_NEAR(av, l[k] * v[i][k], 1e-12);
            }
            for (int j = 0; j < 3; ++j)
            {
                const double vv = v[0][k] * v[0][j] + v[1][k] * v[1][j] + v[2][k] * v[2][j];
                EXPECT_NEAR(vv, k == j ? 1.0 : 0.0, 1e-12);
            }
        }
    }

    for (const double desplazamiento : {0.0, 4581320.0})
    {
        Puntos puntos;
        for (int i = -3; i <= 3; ++i)
        {
            for (int j = -2; j <= 4; j += 2)
            {
                const double x = i + 0.25 * j;
                const double y = j - 0.5 * i;
                puntos.emplace_back(x + desplazamiento, y, -(7 + 2 * x - 3 * y) / 6);
            }
        }
        const cad::Plano3D<double> pl = cad::ajustaPlano(puntos);
        const double s = pl.a > 0 ? 1.0 : -1.0;
        EXPECT_NEAR(s * pl.a, 2.0 / 7, 1e-12);
        EXPECT_NEAR(s * pl.b, -3.0 / 7, 1e-12);
        EXPECT_NEAR(s * pl.c, 6.0 / 7, 1e-12);
        EXPECT_NEAR(s * pl.d, 1.0 - 2.0 / 7 * desplazamiento, 1e-6);
    }
    EXPECT_EQ(cad::ajustaPlano({}), cad::Plano3D<double>());
}

// Both constructors: the given plane keeps points off it unprojected and an empty contour's
// reference is invalido; the fitting form leaves two points with a zero plane, starts an
// empty one at the origin and fits three or more. nuevoVertice on two points fits the plane
// for the first time; a fourth point off that plane refits and every point is reprojected.
// traslada leaves the coefficients and the reference behind, and the next nuevoVertice puts
// the contour back on a fitted plane.
TEST(PlanoContorno, ConstruccionNuevoVerticeYTraslada)
{
    const Puntos fuera = {{0, 0, 5}, {1, 0, 5}, {0, 1, 5}};
    const Plano dado(cad::Plano3D<double>(0, 0, 1, 0), 3, fuera.data());
    EXPECT_EQ(dado.contorno.vertices, fuera);
    EXPECT_EQ(dado.referencia, fuera[0]);
    EXPECT_EQ(Plano(cad::Plano3D<double>(0, 0, 1, 0), 0, nullptr).referencia, cad::invalido);

    const Plano dos(2, fuera.data());
    EXPECT_EQ(static_cast<const cad::Plano3D<double>&>(dos), cad::Plano3D<double>());
    EXPECT_EQ(dos.referencia, fuera[0]);
    EXPECT_EQ(Plano(0, nullptr).referencia, P(0, 0, 0));
    const Plano tres(3, fuera.data());
    EXPECT_NEAR(std::abs(tres.c), 1.0, 1e-15);
    EXPECT_TRUE(todosEnPlano(tres));

    Plano pl(2, kCuadrado.data());
    pl.nuevoVertice(kCuadrado[2]);
    EXPECT_NEAR(std::abs(pl.c), 1.0, 1e-15);
    EXPECT_TRUE(todosEnPlano(pl));
    pl.nuevoVertice(P(0, 1, 0.4));
    EXPECT_GT(std::abs(pl.a) + std::abs(pl.b), 0.01);
    EXPECT_TRUE(todosEnPlano(pl));

    Plano cuadrado(4, kCuadrado.data());
    const cad::Plano3D<double> antes = cuadrado;
    cuadrado.traslada(V(0, 0, 3));
    EXPECT_EQ(static_cast<const cad::Plano3D<double>&>(cuadrado), antes);
    EXPECT_EQ(cuadrado.referencia, kCuadrado[0]);
    EXPECT_FALSE(todosEnPlano(cuadrado));
    cuadrado.nuevoVertice(P(0.5, 2, 3));
    EXPECT_NEAR(cuadrado.d / cuadrado.c, -3.0, 1e-12);
    EXPECT_TRUE(todosEnPlano(cuadrado));
}

// paralela(0) changes nothing at all; with a unit normal the contour and d move together;
// with a longer normal d is offset unscaled, so the points leave the plane. setContorno takes
// the flag and reprojects, and given its own contour it keeps it.
TEST(PlanoContorno, ParalelaYSetContorno)
{
    Plano pl(4, kCuadrado.data());
    const Plano copia = pl;
    pl.paralela(0.0);
    EXPECT_EQ(static_cast<const cad::Plano3D<double>&>(pl), copia);
    EXPECT_EQ(pl.contorno.vertices, copia.contorno.vertices);
    pl.paralela(2.0);
    EXPECT_EQ(pl.contorno.vertices[1], kCuadrado[1] + pl.normal() * 2.0);
    EXPECT_TRUE(todosEnPlano(pl));
    Plano largo(cad::Plano3D<double>(0, 0, 2, -2), 1, &kCuadrado[0]);
    largo.paralela(1.0);
    EXPECT_EQ(largo.d, -3.0);
    EXPECT_EQ(largo.contorno.vertices[0], P(0, 0, 1));

    Plano z1(cad::Plano3D<double>(0, 0, 1, -1), 0, nullptr);
    z1.setContorno(cad::Polilinea3D<double>(kCuadrado, true));
    EXPECT_TRUE(z1.contorno.cerrada);
    EXPECT_EQ(z1.contorno.vertices[2], P(1, 1, 1));
    z1.setContorno(z1.contorno);
    EXPECT_EQ(z1.contorno.numeroVertices(), 4);
}

// The closed flag is not in the file: read back, even over a closed plane, the contour is
// open; a clone keeps it. A plane of two contour points paints nothing.
TEST(PlanoFichero, CerradaSePierdeYDosPuntosNoPintan)
{
    Plano pl(3, kCuadrado.data());
    pl.contorno.cerrada = true;
    Plano leido;
    leido.contorno.cerrada = true;
    ASSERT_TRUE(cad::prueba::carga(cad::prueba::guarda(pl), leido));
    EXPECT_FALSE(leido.contorno.cerrada);
    std::unique_ptr<cad::Entidad> clon(pl.clona());
    EXPECT_TRUE(dynamic_cast<Plano&>(*clon).contorno.cerrada);

    cad::prueba::PantallaGrabadora pantalla;
    Plano(2, kCuadrado.data()).dibuja(pantalla);
    EXPECT_TRUE(pantalla.llamadas.empty());
}

// The painted object of a square: a normal per vertex, the four sides, two fan triangles
// (full shine and half opacity are in the catalogue's calls). A non-convex L contour, either
// way round: ear clipping gives n - 2 triangles that all turn like the contour and together
// cover exactly its area.
TEST(PlanoDibujo, ObjetoDelCuadradoYTriangulacion)
{
    const std::unique_ptr<cad::Entidad> pl = cad::prueba::tipoEntidad("Plano").crea();
    cad::prueba::PantallaGrabadora pantalla;
    pl->dibuja(pantalla);
    ASSERT_EQ(pantalla.escena.size(), 2U);
    const cad::primitiva_t& objeto = pantalla.escena[1];
    EXPECT_EQ(objeto.caras, (std::vector<int32_t>{3, 0, 1, 2, 3, 0, 2, 3}));
    EXPECT_EQ(objeto.aristas, (std::vector<uint32_t>{0, 1, 1, 2, 2, 3, 3, 0}));
    EXPECT_EQ(objeto.normales, std::vector<cad::Vector3D<float>>(4, {0, 0, 1}));

    Puntos ele = {{0, 0, 0}, {2, 0, 0}, {2, 1, 0}, {1, 1, 0}, {1, 2, 0}, {0, 2, 0}};
    for (int vuelta = 0; vuelta < 2; ++vuelta)
    {
        const std::vector<int> t = Plano(static_cast<int>(ele.size()), ele.data()).triangula();
        ASSERT_EQ(t.size(), 3 * (ele.size() - 2));
        const double sentido = vuelta == 0 ? 1.0 : -1.0;
        double area = 0.0;
        for (std::size_t k = 0; k < t.size(); k += 3)
        {
            const V u =
                ele[static_cast<std::size_t>(t[k + 1])] - ele[static_cast<std::size_t>(t[k])];
            const V w =
                ele[static_cast<std::size_t>(t[k + 2])] - ele[static_cast<std::size_t>(t[k])];
            const double doble = sentido * u.cross(w).z;
            EXPECT_GT(doble, 0.0);
            area += doble / 2;
        }
        EXPECT_DOUBLE_EQ(area, 3.0);
        std::reverse(ele.begin(), ele.end());
    }
}

// A contour point's drag lands projected on the plane; a side's drag moves its two ends
// rigidly off the plane, unprojected. Writing a point of the "Vértice" list of a four-point
// contour refits and reprojects it all, while a two-point contour just takes the value.
TEST(PlanoEdicion, ArrastresYListaDeVertices)
{
    Plano pl(4, kCuadrado.data());
    cad::elemento_arrastrado_t e;
    e.tipo = cad::kTipoAuxiliar;
    e.indice = 1;
    e.posicion = P(2, 0, 5);
    pl.aplicaPuntoCaliente(e);
    EXPECT_EQ(pl.contorno.vertices[1], P(2, 0, 0));
    e.tipo = cad::kTipoArista;
    e.indice = 3;
    e.extra = {kCuadrado[3], kCuadrado[0]};
    e.punto = P(0, 0.5, 0);
    e.posicion = P(-1, 0.5, 2);
    pl.aplicaPuntoCaliente(e);
    EXPECT_EQ(pl.contorno.vertices[3], P(-1, 1, 2));
    EXPECT_EQ(pl.contorno.vertices[0], P(-1, 0, 2));

    Plano lista(4, kCuadrado.data());
    const double alto[3] = {1, 1, 0.5};
    ASSERT_TRUE(lista.setElementoLista(1, 0, 2, alto));
    EXPECT_GT(std::abs(lista.a) + std::abs(lista.b), 0.01);
    EXPECT_TRUE(todosEnPlano(lista));

    Plano dos(2, kCuadrado.data());
    ASSERT_TRUE(dos.setElementoLista(1, 0, 1, alto));
    EXPECT_EQ(dos.contorno.vertices[1], P(1, 1, 0.5));
}

// The cut of the floor with a wall at x = 6 is the stretch both contours cover along their
// common line; parallel planes, and contours whose stretches do not meet, give no cut and
// leave the outputs alone.
TEST(PlanoCortes, Interseccion)
{
    const Plano suelo(static_cast<int>(kSuelo.size()), kSuelo.data());
    const Puntos muro = {{6, 1, 0}, {6, 5, 0}, {6, 5, 3}, {6, 1, 3}};
    P a = cad::invalido;
    P b = cad::invalido;
    ASSERT_TRUE(suelo.interseccion(Plano(4, muro.data()), &a, &b));
    if (a.y > b.y)
    {
        std::swap(a, b);
    }
    EXPECT_LT(a.distancia(P(6, 1, 0)), 1e-12);
    EXPECT_LT(b.distancia(P(6, 4, 0)), 1e-12);

    const Puntos lejos = {{6, 5, 0}, {6, 8, 0}, {6, 8, 3}};
    const Puntos techo = {{0, 0, 3}, {1, 0, 3}, {0, 1, 3}};
    a = cad::invalido;
    EXPECT_FALSE(suelo.interseccion(Plano(3, lejos.data()), &a, nullptr));
    EXPECT_FALSE(suelo.interseccion(Plano(3, techo.data()), &a, nullptr));
    EXPECT_EQ(a, cad::invalido);
}

// Extending the floor toward a wall, leaning away or upright, clamps the points past x = 6
// onto the common line and drops the one left collinear there. Toward a parallel plane there
// is no line and the contour stays exactly as it was.
TEST(PlanoCortes, ExtiendeYParalelo)
{
    const Puntos inclinado = {{6, 0, 0}, {6, 4, 0}, {7, 4, 3}, {7, 0, 3}};
    const Puntos vertical = {{6, 0, 0}, {6, 4, 0}, {6, 4, 3}, {6, 0, 3}};
    const Puntos esperado = {{0, 0, 0}, {6, 0, 0}, {6, 4, 0}, {0, 4, 0}};
    for (const Puntos* muro : {&inclinado, &vertical})
    {
        Plano suelo(static_cast<int>(kSuelo.size()), kSuelo.data());
        ASSERT_TRUE(suelo.extiende(Plano(4, muro->data())));
        ASSERT_EQ(suelo.contorno.numeroVertices(), 4);
        for (std::size_t i = 0; i < 4; ++i)
        {
            EXPECT_LT(suelo.contorno.vertices[i].distancia(esperado[i]), 1e-12) << i;
        }
    }
    Plano suelo(static_cast<int>(kSuelo.size()), kSuelo.data());
    const Puntos techo = {{0, 0, 3}, {1, 0, 3}, {0, 1, 3}};
    EXPECT_FALSE(suelo.extiende(Plano(3, techo.data())));
    EXPECT_EQ(suelo.contorno.vertices, kSuelo);
}

// une runs both ways: the floor is cut back to the leaning wall, whose contour does not cross
// the floor and stays; with an empty plane une does nothing and says so.
TEST(PlanoCortes, Une)
{
    Plano suelo(static_cast<int>(kSuelo.size()), kSuelo.data());
    const Puntos inclinado = {{6, 0, 0}, {6, 4, 0}, {7, 4, 3}, {7, 0, 3}};
    Plano muro(4, inclinado.data());
    Plano vacio;
    EXPECT_FALSE(suelo.une(vacio));
    EXPECT_EQ(suelo.contorno.vertices, kSuelo);
    ASSERT_TRUE(suelo.une(muro));
    EXPECT_EQ(suelo.contorno.numeroVertices(), 4);
    ASSERT_EQ(muro.contorno.numeroVertices(), 4);
    for (std::size_t i = 0; i < 4; ++i)
    {
        EXPECT_LT(muro.contorno.vertices[i].distancia(inclinado[i]), 1e-12) << i;
    }
}

// perpendicular of a line lying on the plane: a new plane through the line's midpoint whose
// normal is square to the line and to the old normal, holding the contour turned about the
// line (distances to it kept); a line above the plane still gets its plane through its
// midpoint. A line along the normal, or a point, gives none.
TEST(PlanoCortes, Perpendicular)
{
    const Puntos cuadro = {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}};
    const Plano pl(4, cuadro.data());
    std::unique_ptr<Plano> nuevo(pl.perpendicular(cad::Linea3D<double>(P(0, 1, 0), P(2, 1, 0))));
    ASSERT_NE(nuevo, nullptr);
    EXPECT_NEAR(std::abs(nuevo->b), 1.0, 1e-12);
    EXPECT_NEAR(residuo(*nuevo, P(1, 1, 0)), 0.0, 1e-12);
    ASSERT_EQ(nuevo->contorno.numeroVertices(), 4);
    for (std::size_t i = 0; i < 4; ++i)
    {
        const P& q = nuevo->contorno.vertices[i];
        EXPECT_NEAR(q.x, cuadro[i].x, 1e-12);
        EXPECT_NEAR(q.y, 1.0, 1e-12);
        EXPECT_NEAR(std::abs(q.z), 1.0, 1e-12);
    }
    std::unique_ptr<Plano> alto(pl.perpendicular(cad::Linea3D<double>(P(0, 1, 2), P(2, 1, 2))));
    ASSERT_NE(alto, nullptr);
    EXPECT_NEAR(residuo(*alto, P(1, 1, 2)), 0.0, 1e-12);
    EXPECT_NEAR(alto->contorno.vertices[0].y, 1.0, 1e-12);
    EXPECT_EQ(pl.perpendicular(cad::Linea3D<double>(P(0, 0, 0), P(0, 0, 1))), nullptr);
    EXPECT_EQ(pl.perpendicular(cad::Linea3D<double>(P(1, 1, 0), P(1, 1, 0))), nullptr);
}
