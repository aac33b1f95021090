// Views and their list: defaults as written, what is and is not stored, damaged files.
#include "documento/Vista.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/ListaVistas.h"
#include "soporte/FicheroTemporal.h"

namespace
{

using Bytes = std::vector<uint8_t>;
using cad::Vista;

Bytes escribe(cad::ObjetoCAD& objeto)
{
    const std::string ruta = cad::prueba::rutaTemporal("vista.bin");
    {
        cad::SerializadorBinarioEscritura w(ruta);
        objeto.escribe(w);
    }
    return cad::prueba::leeFichero(ruta);
}

bool lee(const Bytes& bytes, cad::ObjetoCAD& objeto)
{
    const std::string ruta = cad::prueba::rutaTemporal("vista.bin");
    cad::prueba::escribeFichero(ruta, bytes);
    cad::SerializadorBinarioLectura r(ruta);
    return objeto.lee(r);
}

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
        const auto* crudo = reinterpret_cast<const uint8_t*>(&d);
        esperado.insert(esperado.end(), crudo, crudo + 8);
    }
    EXPECT_EQ(escribe(v), esperado);
    EXPECT_EQ(v.matriz, cad::Matriz4<double>());

    v.nombre = "Planta";
    v.posicion = {10, 20, 30};
    v.arriba = {0, 1, 0};
    v.zoom = 2.5;
    v.angulo = 0.75;
    const Bytes bytes = escribe(v);
    v.direccion = {1, 0, 0};
    v.referencia = {7, 7, 7};
    v.matriz(0, 3) = 9.0;
    v.ancho = 640;
    EXPECT_EQ(escribe(v), bytes);

    Vista leida;
    leida.direccion = {0, 0, -1};
    ASSERT_TRUE(lee(bytes, leida));
    EXPECT_EQ(escribe(leida), bytes);
    EXPECT_EQ(leida.direccion, cad::Vector3D<double>(0, 0, -1));
    EXPECT_EQ(leida.matriz, cad::Matriz4<double>());
}

// A list reads back in order with one view's unknown tail kept and written back in place;
// busca is exact. Every cut of the plain file reads to false without a crash and keeps
// only whole views.
TEST(ListaVistas, VueltaConColaYCortes)
{
    cad::ListaVistas lista;
    lista.push_back(new Vista());
    lista.push_back(new Vista());
    lista[1]->nombre = "Planta";
    const Bytes entero = escribe(lista);
    for (size_t corte = 0; corte < entero.size(); ++corte)
    {
        cad::ListaVistas leida;
        EXPECT_FALSE(lee(Bytes(entero.begin(), entero.begin() + corte), leida)) << corte;
        EXPECT_EQ(leida.size(), corte >= 24 + 104 ? 1U : 0U) << corte;
    }

    Bytes bytes = entero;  // two bytes more at the end of the first view
    bytes.insert(bytes.begin() + 24 + 104, {0x5A, 0xA5});
    bytes[28] += 2;
    bytes[8] += 2;
    cad::ListaVistas leida;
    ASSERT_TRUE(lee(bytes, leida));
    ASSERT_EQ(leida.size(), 2U);
    EXPECT_EQ(leida[0]->tamanoDatosDesconocidos, 2U);
    EXPECT_EQ(leida.busca("Planta"), leida[1]);
    EXPECT_EQ(leida.busca("planta"), nullptr);
    EXPECT_EQ(escribe(leida), bytes);
}

}  // namespace
