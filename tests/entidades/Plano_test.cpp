// Plano: plane fitting, contour edits, cuts, file body, paint, hot points, snap, DXF, sheet.
#include "entidades/Plano.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/Capa.h"
#include "documento/ReferenciaEntidades.h"
#include "intercambio/ExportaDXF.h"
#include "modelo/PuntosCalientes.h"
#include "soporte/FicheroTemporal.h"
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

// Writes the body in its block as the entity list does; returns the file's path.
std::string guarda(Plano& e, bool conCola = false)
{
    const std::string ruta = cad::prueba::rutaTemporal("plano.bin");
    cad::SerializadorBinarioEscritura w(ruta);
    std::unique_ptr<cad::BloqueSerializacion> bloque(w.nuevoBloque(e.etiqueta(), e.tamanoBloque()));
    e.escribe(w);
    if (conCola)
    {
        w.escribeEntero(0x5A5A5A5A);  // a field of some newer version
    }
    e.escribeDatosDesconocidos(w);
    return ruta;
}

// Reads one block as the entity list does: a failed lee leaves the block unclosed.
bool carga(const std::string& ruta, Plano& e)
{
    cad::SerializadorBinarioLectura r(ruta);
    cad::BloqueSerializacion* bloque = r.leeBloque();
    if (!bloque->esTipo("Pn1") || !e.lee(r))
    {
        delete bloque;
        return false;
    }
    return e.finLectura(r, bloque);
}

const Puntos kCuadrado = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};

// The floor z = 0 reaching past x = 6, with an extra point on its far side.
const Puntos kSuelo = {{0, 0, 0}, {7, 0, 0}, {7, 2, 0}, {7, 4, 0}, {0, 4, 0}};

}  // namespace

// The solver on known matrices: eigenvalues come out in rising order, each column is a unit
// eigenvector (A v = l v) and the columns are orthogonal; a diagonal, a repeated and a zero
// matrix need no rounds and still sort.
TEST(PlanoAjuste, AutovaloresOrdenadosYVectores)
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
    double l[3];
    double v[3][3];
    cad::autovaloresSimetricos(matrices[0], l, v);
    EXPECT_NEAR(l[0], 1.0, 1e-14);
    EXPECT_NEAR(l[1], 3.0, 1e-14);
    EXPECT_NEAR(l[2], 5.0, 1e-14);
}

// Points of the known plane 2x - 3y + 6z + 7 = 0 give it back up to sign and scale, as a unit
// normal; moved to survey coordinates the fit still holds them, thanks to the centroid. No
// points give the all-zero plane.
TEST(PlanoAjuste, RecuperaPlanoConocido)
{
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
// empty one at the origin and fits three or more.
TEST(PlanoConstruccion, DosFormas)
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
    EXPECT_STREQ(tres.etiqueta(), "Pn1");
    EXPECT_TRUE(tres.esTipo("plano3d"));
}

// nuevoVertice on two points fits the plane for the first time; a fourth point off that plane
// refits and every point is reprojected. traslada leaves the coefficients and the reference
// behind, and the next nuevoVertice puts the contour back on a fitted plane.
TEST(PlanoContorno, NuevoVerticeYTraslada)
{
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
    EXPECT_EQ(cuadrado.contorno.vertices[2], P(1, 1, 3));
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

// A closed contour with an unknown tail goes through a file: every field comes back, the tail
// is kept for the next save, the body has its exact length, and the cerrada flag is lost,
// even over a closed plane read into.
// clona copies every field and owns its contour.
TEST(PlanoFichero, VueltaPierdeCerradaYClona)
{
    Plano pl(3, kCuadrado.data());
    pl.contorno.cerrada = true;
    pl.id = 77;
    pl.color = cad::ColorEntidad(3);
    const std::string ruta = guarda(pl, true);
    EXPECT_EQ(cad::prueba::leeFichero(ruta).size(), 6U + 32 + 32 + 24 + 4 + 3 * 24 + 4);
    Plano leido;
    leido.contorno.cerrada = true;
    ASSERT_TRUE(carga(ruta, leido));
    EXPECT_EQ(static_cast<const cad::Plano3D<double>&>(leido),
              static_cast<const cad::Plano3D<double>&>(pl));
    EXPECT_EQ(leido.referencia, pl.referencia);
    EXPECT_EQ(leido.contorno.vertices, pl.contorno.vertices);
    EXPECT_FALSE(leido.contorno.cerrada);
    EXPECT_EQ(leido.id, 77U);
    EXPECT_EQ(leido.tamanoDatosDesconocidos, 4U);

    std::unique_ptr<cad::Entidad> clon(pl.clona());
    auto* copia = dynamic_cast<Plano*>(clon.get());
    ASSERT_NE(copia, nullptr);
    EXPECT_TRUE(copia->contorno.cerrada);
    EXPECT_EQ(copia->id, 77U);
    EXPECT_EQ(copia->color.colorCAD, 3);
    copia->traslada(V(1, 1, 1));
    EXPECT_EQ(pl.contorno.vertices[0], kCuadrado[0]);
}

// A plane of two contour points exists, saves, loads, and paints nothing at all.
TEST(PlanoFichero, DosPuntosGuardaCargaYNoPinta)
{
    Plano pl(2, kCuadrado.data());
    Plano leido;
    ASSERT_TRUE(carga(guarda(pl), leido));
    EXPECT_EQ(leido.contorno.vertices, Puntos(kCuadrado.begin(), kCuadrado.begin() + 2));
    cad::prueba::PantallaGrabadora pantalla;
    leido.dibuja(pantalla);
    EXPECT_TRUE(pantalla.llamadas.empty());
}

// Damaged input: cut at every length the read fails without crashing, and a count that the
// file cannot hold is refused before anything is reserved, leaving the contour empty.
TEST(PlanoFichero, EntradaDanada)
{
    Plano pl(4, kCuadrado.data());
    const auto bytes = cad::prueba::leeFichero(guarda(pl));
    for (std::size_t n = 0; n < bytes.size(); ++n)
    {
        const std::string ruta = cad::prueba::rutaTemporal("cortado.bin");
        cad::prueba::escribeFichero(ruta, std::vector<uint8_t>(bytes.begin(), bytes.begin() + n));
        Plano leido;
        EXPECT_FALSE(carga(ruta, leido)) << n;
    }
    auto mentira = bytes;
    const std::size_t cuenta = 6 + 32 + 32 + 24;
    for (std::size_t i = 0; i < 4; ++i)
    {
        mentira[cuenta + i] = 0xFF;
    }
    const std::string ruta = cad::prueba::rutaTemporal("cuenta.bin");
    cad::prueba::escribeFichero(ruta, mentira);
    Plano leido(4, kCuadrado.data());
    EXPECT_FALSE(carga(ruta, leido));
    EXPECT_TRUE(leido.contorno.vertices.empty());
}

// The exact display calls of a square on a red layer: the dashed closed outline with no pick,
// then one object with the two colour forms, a normal per vertex, the four sides, two fan
// triangles, and the entity's own address as the pick.
TEST(PlanoDibujo, SecuenciaExacta)
{
    cad::Capa capa("Muros", cad::ColorCapa(1), 1);
    Plano pl(4, kCuadrado.data());
    pl.asignaCapa(&capa);
    cad::prueba::PantallaGrabadora pantalla;
    pl.dibuja(pantalla);
    const std::vector<std::string> esperado = {
        "setModoLinea F0F0",
        "dibujaPolilinea 4 cerrada (0,0,0) (1,0,0) (1,1,0) (0,1,0) FFFFFFFF null",
        "setModoLinea FFFF",
        "setColorMaterial FF0000FF 1 0.5",
        "iniciaObjeto FFFF0000 0",
        "vertices 4",
        "normales 4",
        "aristas 8",
        "caras 8",
        "finObjeto pick"};
    EXPECT_EQ(pantalla.llamadas, esperado);
    ASSERT_EQ(pantalla.escena.size(), 2U);
    const cad::primitiva_t& objeto = pantalla.escena[1];
    EXPECT_EQ(objeto.caras, (std::vector<int32_t>{3, 0, 1, 2, 3, 0, 2, 3}));
    EXPECT_EQ(objeto.aristas, (std::vector<uint32_t>{0, 1, 1, 2, 2, 3, 3, 0}));
    EXPECT_EQ(std::abs(objeto.normales[3].z), 1.0F);
    EXPECT_EQ(objeto.brillo, 1.0F);
    EXPECT_EQ(objeto.opacidad, 0.5F);
    EXPECT_EQ(objeto.pick, static_cast<cad::Entidad*>(&pl));
}

// A non-convex L contour, either way round: ear clipping gives n - 2 triangles that all turn
// like the contour and together cover exactly its area.
TEST(PlanoDibujo, TriangulaContornoNoConvexo)
{
    Puntos ele = {{0, 0, 0}, {2, 0, 0}, {2, 1, 0}, {1, 1, 0}, {1, 2, 0}, {0, 2, 0}};
    for (int vuelta = 0; vuelta < 2; ++vuelta)
    {
        const Plano pl(static_cast<int>(ele.size()), ele.data());
        const std::vector<int> t = pl.triangula();
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

// Hot elements: the points as kind 2 numbered 0..n-1, one edge per side with the closing one.
// A kind-2 drag lands projected on the plane; a kind-3 drag of the closing side moves its two
// ends rigidly off the plane; other kinds and bad indices do nothing.
TEST(PlanoCalientes, PuntosAristasYArrastres)
{
    Plano pl(4, kCuadrado.data());
    cad::PuntosCalientes pc;
    pl.puntosCalientes(pc);
    ASSERT_EQ(pc.puntos.size(), 4U);
    for (int i = 0; i < 4; ++i)
    {
        EXPECT_EQ(pc.punto(i).tipo, cad::kTipoAuxiliar);
        EXPECT_EQ(pc.punto(i).indice, i);
        EXPECT_EQ(pc.punto(i).entidad, &pl);
    }
    ASSERT_EQ(pc.aristas.size(), 4U);
    EXPECT_EQ(pc.arista(3), std::make_pair(kCuadrado[3], kCuadrado[0]));

    cad::elemento_arrastrado_t e(pc.punto(1));
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
    const Puntos antes = pl.contorno.vertices;
    e.tipo = cad::kTipoVertice;
    pl.aplicaPuntoCaliente(e);
    e.tipo = cad::kTipoAuxiliar;
    e.indice = 4;
    pl.aplicaPuntoCaliente(e);
    EXPECT_EQ(pl.contorno.vertices, antes);
}

// Snap over the closing side's midpoint: bit 2 offers only the other sides' midpoints (a tie
// goes to the first), bit 1 the nearest corner, bit 16 the plane hit at distance 0 and kind 0
// that beats every point; a mask with none of these offers nothing.
TEST(PlanoReferencia, MascarasDeSnap)
{
    const Puntos centrado = {{-0.5, -0.5, 0}, {0.5, -0.5, 0}, {0.5, 0.5, 0}, {-0.5, 0.5, 0}};
    const Plano pl(4, centrado.data());
    cad::prueba::PantallaGrabadora pantalla;
    auto snap = [&](int mascara)
    {
        cad::ReferenciaEntidades r(&pantalla, P(-0.5, 0, 5), V(0, 0, -1), mascara, 1.0);
        const bool tomado = pl.getReferenciaEntidades(r);
        return std::make_tuple(tomado, r.puntoMejor, r.tipoMejor, r.distanciaMejor);
    };
    EXPECT_EQ(snap(cad::kPuntosMedios), std::make_tuple(true, P(0, -0.5, 0), 2, std::sqrt(0.5)));
    EXPECT_EQ(snap(cad::kExtremos), std::make_tuple(true, centrado[0], 1, 0.5));
    EXPECT_EQ(snap(cad::kExtremos | cad::kCercano | cad::kPuntosMedios),
              std::make_tuple(true, P(-0.5, 0, 0), 0, 0.0));
    EXPECT_FALSE(std::get<0>(snap(cad::kPuntosInsercion)));
}

// The DXF hook: the entity's layer, a POLYLINE with flags 8, one VERTEX per contour point in
// order with no repeat of the first, and SEQEND.
TEST(PlanoDXF, PolilineaFlags8)
{
    const std::string ruta = cad::prueba::rutaTemporal("plano.dxf");
    {
        cad::ExportaDXF dxf(ruta);
        dxf.nuevaCapa("Muros", 1);
        dxf.inicioEntidades();
        cad::Capa capa("Muros", cad::ColorCapa(1), 1);
        Plano pl(3, kCuadrado.data());
        pl.asignaCapa(&capa);
        pl.exportaDXF(dxf);
        dxf.finEntidades();
    }
    const auto bytes = cad::prueba::leeFichero(ruta);
    const std::string texto(bytes.begin(), bytes.end());
    const std::string vertice = "  0\nVERTEX\n 70\n    32\n  8\nMuros\n";
    const std::string esperado = "  0\nPOLYLINE\n  8\nMuros\n 66\n     1\n 70\n     8\n" + vertice +
                                 " 10\n0.0000\n 20\n0.0000\n 30\n0.0000\n" + vertice +
                                 " 10\n1.0000\n 20\n0.0000\n 30\n0.0000\n" + vertice +
                                 " 10\n1.0000\n 20\n1.0000\n 30\n0.0000\n" +
                                 "  0\nSEQEND\n  0\nENDSEC\n";
    EXPECT_NE(texto.find(esperado), std::string::npos) << texto;
}

// Category 1 "Geometría" holds "Vértice" as a coordinate list over the contour; writing a
// point of a four-point contour refits and reprojects it all, while a two-point contour just
// takes the value; a bad index is refused.
TEST(PlanoPropiedades, ListaVertices)
{
    Plano pl(4, kCuadrado.data());
    EXPECT_EQ(pl.numeroCategorias(), 2);
    EXPECT_EQ(pl.nombreCategoria(1), "Geometría");
    cad::Prop p;
    ASSERT_TRUE(pl.getPropiedad(1, 0, p));
    EXPECT_EQ(p.nombre, "Vértice");
    EXPECT_EQ(p.tipo, cad::TipoProp::ListaCoordenadas);
    EXPECT_EQ(pl.numeroElementosLista(1, 0), 4);
    double x = 0, y = 0, z = 0;
    ASSERT_TRUE(pl.getElementoLista(1, 0, 2, x, y, z));
    EXPECT_EQ(P(x, y, z), kCuadrado[2]);
    const double alto[3] = {1, 1, 0.5};
    ASSERT_TRUE(pl.setElementoLista(1, 0, 2, alto));
    EXPECT_GT(std::abs(pl.a) + std::abs(pl.b), 0.01);
    EXPECT_TRUE(todosEnPlano(pl));
    EXPECT_FALSE(pl.setElementoLista(1, 0, 4, alto));

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
