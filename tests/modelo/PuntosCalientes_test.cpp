#include "modelo/PuntosCalientes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "PantallaReferencia.h"
#include "base/Configuracion.h"
#include "entidades/Plano.h"
#include "modelo/Modelo3D.h"
#include "soporte/ComprobadorMalla.h"

namespace cad
{
namespace
{

using P = Punto3<double>;

// A top view of 200 by 100 pixels at 100 pixels per unit: world (x, y) is pixel
// (100 + 100 x, 50 + 100 y), with the default window of 10 pixels.
struct VistaSuperior : ::testing::Test
{
    void SetUp() override
    {
        Configuracion::instancia().setValor(Configuracion::kVentanaReferencia, 10);
        pantalla.setTamano(200, 100);
        pantalla.setCamara(P(0, 0, 50), P(0, 0, 0), Vector3D<double>(0, 1, 0), 100.0, 0.0);
        vista = vista_t::de(pantalla);
    }

    // A vertical ray down through pixel (x, y).
    cursor_t pixel(int x, int y) const
    {
        cursor_t c;
        c.x = x;
        c.y = y;
        c.posicion = P((x - 100) / 100.0, (y - 50) / 100.0, 20);
        c.direccion = Vector3D<double>(0, 0, -1);
        return c;
    }

    PantallaReferencia pantalla;
    vista_t vista;
    PuntosCalientes h;
};

TEST_F(VistaSuperior, LaVentanaEsUnCuadradoQueIncluyeSuBorde)
{
    ASSERT_EQ(pantalla.proyecta(P(1, 0, 0)).x, 200.0);
    const P puntos[2] = {P(0.5, 0.05, 0), P(0.5, -0.05, 0)};  // pixels (150, 55), (150, 45)
    h.nuevosPuntos(2, puntos);
    h.numeraPuntos();
    // Exactly T pixels away on both axes is in; one more is out.
    elemento_seleccionado_t e = h.cercano(vista, pixel(160, 65));
    EXPECT_EQ(e.tipo, kTipoVertice);
    EXPECT_EQ(e.punto, puntos[0]);
    EXPECT_EQ(h.cercano(vista, pixel(161, 55)).tipo, kTipoNinguno);
    // Two points equally far from the ray: the first one wins.
    e = h.cercano(vista, pixel(150, 50));
    EXPECT_EQ(e.tipo, kTipoVertice);
    EXPECT_EQ(e.indice, 0);
    EXPECT_EQ(h.cercanoRayo(vista, pixel(150, 40)).indice, 1);
    EXPECT_EQ(h.cercanoRayo(vista, pixel(190, 5)).indice, 1);  // no window for the ray form
}

TEST_F(VistaSuperior, SinPuntosElOrigenEnLaVentanaTerminaLaBusqueda)
{
    h.nuevaArista(P(-1, -0.2, 0), P(1, 0.2, 0.5));
    // No hot point: the empty result sits at the world origin, pixel (100, 50). A cursor
    // there ends the search with nothing, though the edge runs under it.
    elemento_seleccionado_t e = h.cercano(vista, pixel(100, 50));
    EXPECT_EQ(e.tipo, kTipoNinguno);
    EXPECT_EQ(e.indice, -1);
    // The same with the origin at the screen's corner, pixel (0, 0) of the projection.
    pantalla.setCamara(P(1, 0.5, 50), P(1, 0.5, 0), Vector3D<double>(0, 1, 0), 100.0, 0.0);
    const vista_t esquina = vista_t::de(pantalla);
    h.nuevaArista(P(-0.5, -0.1, 0), P(0.5, 0.1, 0.5));
    cursor_t c = pixel(100, 50);
    c.x = 0;
    c.y = 0;
    c.posicion = P(0, 0, 20);
    EXPECT_EQ(h.cercano(esquina, c).tipo, kTipoNinguno);
    h.aristas.pop_back();
    // Away from the origin the same edge is found, at its point nearest the ray.
    e = h.cercano(vista, pixel(150, 60));
    EXPECT_EQ(e.tipo, kTipoArista);
    EXPECT_EQ(e.indice, 0);
    EXPECT_NEAR(e.punto.x, 0.5, 1e-12);
    EXPECT_NEAR(e.punto.y, 0.1, 1e-12);
    EXPECT_NEAR(e.punto.z, 0.375, 1e-12);
}

TEST_F(VistaSuperior, UnaAristaMasLejosQueUnPuntoFueraDeVentanaCedeALaCara)
{
    // A slanted ray through the origin: the hot point beside it is 30 pixels off-screen but
    // 0.21 from the ray; the edge 5 below passes under the cursor yet 3.5 from the ray.
    cursor_t c = pixel(100, 50);
    c.posicion = P(0, 0, 0);
    c.direccion = Vector3D<double>(1, 0, -1);
    h.nuevoPunto(P(0.3, 0, 0));
    h.nuevaArista(P(0, -1, -5), P(0, 1, -5));
    const P cara[4] = {P(9, -1, -10), P(11, -1, -10), P(11, 1, -10), P(9, 1, -10)};
    h.nuevaCara(4, cara, {0, 0, 1});
    h.numeraPuntos();
    elemento_seleccionado_t e = h.cercano(vista, c);
    EXPECT_EQ(e.tipo, kTipoCara);
    EXPECT_EQ(e.indice, 0);
    EXPECT_NEAR(e.punto.x, 10.0, 1e-9);
    EXPECT_NEAR(e.punto.z, -10.0, 1e-9);
    EXPECT_EQ(e.origen, P(0, 0, 0));

    // Seen from below the face is a back face, and with no front face it is the answer.
    c.posicion = P(10, 0, -20);
    c.direccion = Vector3D<double>(0, 0, 1);
    e = h.cercano(vista, c);
    EXPECT_EQ(e.tipo, kTipoCara);
    EXPECT_EQ(e.punto, P(10, 0, -10));
    // A front face, when the ray meets one, wins over every back face.
    const P debajo[3] = {P(9, -1, -15), P(11, -1, -15), P(10, 1, -15)};
    h.nuevaCara(3, debajo, {0, 0, -1});
    EXPECT_EQ(h.cercano(vista, c).indice, 1);
}

TEST(PuntosCalientes, PintaCadaClaseConSuColor)
{
    const Configuracion& c = Configuracion::instancia();
    const uint32_t puntos = c.color(Configuracion::kPuntosCalientes).ABGR();
    const uint32_t vectores = c.color(Configuracion::kVectoresCalientes).ABGR();
    const uint32_t azimuts = c.color(Configuracion::kAzimutsCalientes).ABGR();
    PuntosCalientes h;
    h.nuevoPunto(P(1, 0, 0));
    h.nuevoVector(P(0, 0, 0), P(0, 2, 0));
    h.nuevoAzimut(P(0, 0, 0), P(3, 0, 0));
    h.nuevaArista(P(1, 0, 0), P(0, 2, 0));
    const P tri[3] = {P(0, 0, 0), P(1, 0, 0), P(0, 1, 0)};
    h.nuevaCara(3, tri, {0, 0, 1});
    PantallaReferencia p;
    h.dibuja(p);
    h.dibujaAristasYCaras(p);
    struct Esperada
    {
        primitiva_t::tipo_primitiva tipo;
        uint32_t color;
        int modo;
        size_t puntos;
    };
    const uint32_t aristas = c.color(Configuracion::kAristasCalientes).ABGR();
    const uint32_t caras = c.color(Configuracion::kCarasCalientes).ABGR();
    const Esperada esperadas[] = {
        {primitiva_t::kMarca, puntos, 0, 1},   {primitiva_t::kLinea, puntos, 0, 2},
        {primitiva_t::kMarca, vectores, 5, 1}, {primitiva_t::kLinea, vectores, 0, 2},
        {primitiva_t::kMarca, azimuts, 0, 1},  {primitiva_t::kLinea, aristas, 0, 2},
        {primitiva_t::kPoligono, caras, 0, 3}};
    ASSERT_EQ(p.escena.size(), std::size(esperadas));
    for (size_t i = 0; i < p.escena.size(); ++i)
    {
        SCOPED_TRACE(i);
        EXPECT_EQ(p.escena[i].tipo, esperadas[i].tipo);
        EXPECT_EQ(p.escena[i].color, esperadas[i].color);
        EXPECT_EQ(p.escena[i].puntos.size(), esperadas[i].puntos);
        if (esperadas[i].tipo == primitiva_t::kMarca)
        {
            EXPECT_EQ(p.escena[i].modo, esperadas[i].modo);
        }
    }
    EXPECT_EQ(p.escena[4].puntos[0], P(3, 0, 0));
}

TEST(IntersecaCara, RayosParalelosPoligonosSinOrejaYMuescas)
{
    Punto3<double> punto;
    double d = 0.0;
    const std::vector<P> cuadrado = {P(0, 0, 0), P(2, 0, 0), P(2, 2, 0), P(0, 2, 0)};
    EXPECT_FALSE(intersecaCara(cuadrado, P(1, 1, 1), Vector3D<double>(1, 0, 0), punto, d));
    ASSERT_TRUE(intersecaCara(cuadrado, P(1.5, 0.5, 3), Vector3D<double>(0, 0, -2), punto, d));
    EXPECT_EQ(punto, P(1.5, 0.5, 0));
    EXPECT_DOUBLE_EQ(d, 3.0);
    // Within the tolerance of a corner counts, just outside an edge does not.
    EXPECT_TRUE(intersecaCara(cuadrado, P(2.000005, 2, 1), Vector3D<double>(0, 0, -1), punto, d));
    EXPECT_FALSE(intersecaCara(cuadrado, P(1, 2.001, 1), Vector3D<double>(0, 0, -1), punto, d));
    // A notch: the ray through the missing part of an L misses.
    const std::vector<P> ele = {P(0, 0, 0), P(2, 0, 0), P(2, 1, 0),
                                P(1, 1, 0), P(1, 2, 0), P(0, 2, 0)};
    EXPECT_FALSE(intersecaCara(ele, P(1.5, 1.5, 1), Vector3D<double>(0, 0, -1), punto, d));
    EXPECT_TRUE(intersecaCara(ele, P(0.5, 1.5, 1), Vector3D<double>(0, 0, -1), punto, d));
    // Corners zigzagging on a line: every corner's triangle holds another corner, so no ear
    // exists and the clipping of the polygon stops there.
    std::vector<P> zigzag;
    for (double x : {0, 3, 1, 4, 2, 5})
    {
        zigzag.emplace_back(x, 0, 0);
    }
    EXPECT_FALSE(intersecaCara(zigzag, P(1, 0, 1), Vector3D<double>(0, 0, -1), punto, d));
}

// The face hit computed plainly, every triangle tested: what the kernel's version, which
// first skips polygons the line passes far from, must give bit for bit.
bool dentroLlano(const P& w, const P& p, const P& q, const P& r, double vuelta)
{
    const auto ang = [&](const P& a, const P& b)
    { return std::acos(std::clamp((a - w).unit().dot((b - w).unit()), -1.0, 1.0)); };
    return ang(p, q) + ang(q, r) + ang(r, p) >= vuelta;
}

bool intersecaLlano(std::vector<P> l, const P& o, const Vector3D<double>& d, P& punto,
                    double& distancia)
{
    std::vector<P> t;
    while (l.size() > 3)
    {
        const size_t n = l.size();
        size_t i = 0;
        for (; i < n; ++i)
        {
            const P& a = l[(i + n - 1) % n];
            const P& b = l[i];
            const P& c = l[(i + 1) % n];
            if (std::none_of(l.begin(), l.end(),
                             [&](const P& w) {
                                 return !(w == a || w == b || w == c) &&
                                        dentroLlano(w, a, b, c, 6.283175307179587);
                             }))
            {
                break;
            }
        }
        if (i == n)
        {
            break;
        }
        t.insert(t.end(), {l[(i + n - 1) % n], l[i], l[(i + 1) % n]});
        l.erase(l.begin() + static_cast<long>(i));
    }
    if (l.size() == 3)
    {
        t.insert(t.end(), l.begin(), l.end());
    }
    distancia = std::numeric_limits<double>::max();
    bool tocada = false;
    for (size_t k = t.size(); k >= 3; k -= 3)
    {
        const P& a = t[k - 3];
        const P& b = t[k - 2];
        const P& c = t[k - 1];
        const Vector3D<double> n = (b - a).cross(c - a).unit();
        const double off = -Vector3D<double>(a).dot(n);
        const double den = n.dot(d);
        if (std::abs(den) <= 0.0000001)
        {
            continue;
        }
        const P h = o + d * (-(n.dot(Vector3D<double>(o)) + off) / den);
        const bool dentro = h.distancia(a) < 1e-5 || h.distancia(b) < 1e-5 ||
                            h.distancia(c) < 1e-5 ||
                            (dentroLlano(h, a, b, c, 6.283185307179586 - 1e-5) &&
                             std::abs(off + Vector3D<double>(h).dot(n)) < 1e-5);
        if (dentro && (h - o).modulo() < distancia)
        {
            distancia = (h - o).modulo();
            punto = h;
            tocada = true;
        }
    }
    return tocada;
}

TEST(IntersecaCara, ElDescarteRapidoNoCambiaNingunResultado)
{
    std::mt19937 azar(3);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    int tocadas = 0;
    for (int k = 0; k < 4000; ++k)
    {
        // Small and survey-sized polygons, some far from the origin.
        const double escala = k % 3 == 0 ? 1e-4 : (k % 3 == 1 ? 1.0 : 300.0);
        const P base = k % 4 == 0 ? P(4581320.0, 512000.0, 100.0) : P(0, 0, 0);
        std::vector<P> poligono;
        const int n = 3 + static_cast<int>(azar() % 5);
        for (int i = 0; i < n; ++i)
        {
            poligono.push_back(base + Vector3D<double>(u(azar), u(azar), 0.05 * u(azar)) * escala);
        }
        // Aim at a corner, a point of a side or anywhere, from a point above, give or take
        // a few tolerances.
        const P& a = poligono[azar() % n];
        const P& b = poligono[azar() % n];
        const double f = (azar() % 4) / 3.0;
        const P objetivo =
            a + (b - a) * f +
            Vector3D<double>(u(azar), u(azar), u(azar)) * (k % 2 == 0 ? 3e-5 : 0.02 * escala);
        const P origen = objetivo + Vector3D<double>(u(azar), u(azar), 1.0 + u(azar)) * escala;
        const Vector3D<double> d = objetivo - origen;
        P h1;
        P h2;
        double d1 = 0.0;
        double d2 = 0.0;
        const bool t1 = intersecaCara(poligono, origen, d, h1, d1);
        const bool t2 = intersecaLlano(poligono, origen, d, h2, d2);
        ASSERT_EQ(t1, t2) << "caso " << k;
        if (t1)
        {
            ++tocadas;
            ASSERT_EQ(h1, h2) << "caso " << k;
            ASSERT_EQ(d1, d2) << "caso " << k;
        }
    }
    EXPECT_GT(tocadas, 500);
    EXPECT_LT(tocadas, 3500);
}

TEST(PuntoEnSegmento, UnSegmentoPlanoEnYoZNuncaCoincide)
{
    EXPECT_TRUE(puntoEnSegmento(P(0, 0, 0), P(1, 1, 1), P(0.5, 0.5, 0.5), 0.001));
    EXPECT_FALSE(puntoEnSegmento(P(0, 0, 0), P(1, 1, 1), P(0.5, 0.6, 0.5), 0.001));
    // Extent in x but none in y: the parameter of y is a division by zero.
    EXPECT_FALSE(puntoEnSegmento(P(0, 0, 0), P(1, 0, 1), P(0.5, 0, 0.5), 0.001));
    EXPECT_FALSE(puntoEnSegmento(P(0, 0, 0), P(1, 1, 0), P(0.5, 0.5, 0), 0.001));
    // No extent in x: only the box decides, widened by the tolerance in x and y, 0.001 in z.
    EXPECT_TRUE(puntoEnSegmento(P(0, 0, 0), P(0, 1, 0), P(0, 0.5, 0.0009), 1e-6));
    EXPECT_TRUE(puntoEnSegmento(P(0, 0, 0), P(0, 1, 1), P(0, 0.9, 0.1), 0.001));
    EXPECT_FALSE(puntoEnSegmento(P(0, 0, 0), P(0, 1, 0), P(0, 1.01, 0), 0.001));
}

TEST(Plano, AModeloAnadeElContornoComoUnaCara)
{
    const P contorno[4] = {P(0, 0, 1), P(2, 0, 1), P(2, 1, 1), P(0, 1, 1)};
    Plano plano(4, contorno);
    Modelo3D m;
    m.nuevoVertice(P(9, 9, 9));
    plano.aModelo(m);
    ASSERT_EQ(m.vertices().size(), 5U);
    EXPECT_EQ(m.aristas().size(), 4);
    ASSERT_EQ(m.caras().size(), 1U);
    std::vector<int32_t> ciclo;
    m.getVerticesCara(0, ciclo);
    EXPECT_EQ(ciclo, (std::vector<int32_t>{1, 2, 3, 4}));
    EXPECT_EQ(m.getVertice(3).punto, P(2, 1, 1));
    EXPECT_TRUE(mallaSana(m));
}

}  // namespace
}  // namespace cad
