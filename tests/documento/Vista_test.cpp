// Views and their list: defaults as written, what is and is not stored, and the checks every
// owned list passes.
#include "documento/Vista.h"

#include <cstdint>
#include <memory>

#include <gtest/gtest.h>

#include "documento/ListaVistas.h"
#include "soporte/ListaPropiaPrueba.h"

namespace
{

using cad::Vista;
using cad::prueba::Bytes;
using cad::prueba::bytesDe;
using cad::prueba::operator+;

// A view whose every stored field differs from a new view's.
Vista* planta()
{
    auto* v = new Vista();
    v->id = 9;
    v->nombre = "Planta";
    v->posicion = {10, 20, 30};
    v->objetivo = {1, 2, 3};
    v->arriba = {0, 1, 0};
    v->zoom = 2.5;
    v->angulo = 0.75;
    return v;
}

struct CasoVistas
{
    using Lista = cad::ListaVistas;
    static constexpr const char* kSeccion = "Vstas.1";
    static constexpr const char* kOtraCaja = "planta";
    static void llena(Lista& lista)
    {
        lista.push_back(new Vista());
        lista.push_back(planta());
    }
};

// A default view writes, behind its id and empty name, camera (0,0,1), target origin, up
// (0,0,1), zoom 1 and angle 0: 104 bytes. Direction, reference point, matrix and viewport
// size are not stored: changing them leaves the bytes alone, and a read (which gives the
// same bytes back on saving) leaves them as the target had them.
TEST(Vista, BytesYCamposNoPersistidos)
{
    Vista v;
    Bytes esperado = {'V', 't', '1', 0, 0x64, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    for (double d : {0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 0.0, 1.0, 1.0, 0.0})
    {
        esperado = esperado + cad::prueba::le(d);
    }
    EXPECT_EQ(bytesDe(v), esperado);
    EXPECT_EQ(v.matriz, cad::Matriz4<double>());

    const std::unique_ptr<Vista> p(planta());
    const Bytes bytes = bytesDe(*p);
    p->direccion = {1, 0, 0};
    p->referencia = {7, 7, 7};
    p->matriz(0, 3) = 9.0;
    p->ancho = 640;
    p->alto = 480;
    EXPECT_EQ(bytesDe(*p), bytes);

    Vista leida;
    leida.direccion = {0, 0, -1};
    ASSERT_TRUE(cad::prueba::leeDe(bytes, leida));
    EXPECT_EQ(bytesDe(leida), bytes);
    EXPECT_EQ(leida.direccion, cad::Vector3D<double>(0, 0, -1));
    EXPECT_EQ(leida.matriz, cad::Matriz4<double>());
}

}  // namespace

namespace cad::prueba
{
INSTANTIATE_TYPED_TEST_SUITE_P(Vistas, ListaPropia, ::testing::Types<CasoVistas>);
}  // namespace cad::prueba
