// Drawing variables: defaults, typed setters, exact bytes and the kept quirks of their tails.
#include "documento/ListaVariables.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "soporte/FicheroTemporal.h"

namespace
{

using Bytes = std::vector<uint8_t>;
using cad::ListaVariables;
using cad::Punto3;
using cad::Vector3D;

Bytes escribe(cad::ObjetoCAD& objeto)
{
    const std::string ruta = cad::prueba::rutaTemporal("variables.bin");
    {
        cad::SerializadorBinarioEscritura w(ruta);
        objeto.escribe(w);
    }
    return cad::prueba::leeFichero(ruta);
}

bool lee(const Bytes& bytes, cad::ObjetoCAD& objeto)
{
    const std::string ruta = cad::prueba::rutaTemporal("variables.bin");
    cad::prueba::escribeFichero(ruta, bytes);
    cad::SerializadorBinarioLectura r(ruta);
    return objeto.lee(r);
}

// Byte images built field by field, for files this version would not write itself. The
// exact-bytes test below pins the same forms literally.
template <class T>
Bytes le(T valor)
{
    Bytes b(sizeof valor);
    std::memcpy(b.data(), &valor, sizeof valor);
    return b;
}

Bytes operator+(Bytes a, const Bytes& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

Bytes cadena(std::string s)
{
    const auto largo = static_cast<uint16_t>(s.size() + s.size() % 2);
    s.resize(largo, '\0');
    return le(largo) + Bytes(s.begin(), s.end());
}

Bytes bloque16(const std::string& tag, const Bytes& cuerpo)
{
    return Bytes(tag.begin(), tag.end()) + Bytes{0} + le(static_cast<uint16_t>(2 + cuerpo.size())) +
           cuerpo;
}

Bytes listaDe(uint64_t cuenta, const Bytes& items)
{
    const char tag[] = "Vbles.1";
    return Bytes(tag, tag + sizeof tag) + le(uint64_t{16 + items.size()}) + le(cuenta) + items;
}

Bytes str(const std::string& nombre, const std::string& valor, const Bytes& cola = {})
{
    return bloque16("VSt", le(uint64_t{0}) + cadena(nombre) + cadena(valor) + cola);
}

Bytes v3d(const std::string& nombre, double z, const Bytes& cola)
{
    return bloque16("V3D", le(uint64_t{0}) + cadena(nombre) + le(0.0) + le(0.0) + le(z) + cola);
}

// creaDefectos installs six variables in a fixed order with their classes and values; run
// again it puts a changed default back in its place instead of adding a second one.
TEST(ListaVariables, DefectosEnOrden)
{
    ListaVariables lista;
    lista.creaDefectos();
    const char* const nombres[6] = {"clayer",    "cecolor", "orgplref",
                                    "normplref", "cview",   "textstyle"};
    const char* const tags[6] = {"VSt", "VSt", "V3D", "V3D", "VSt", "VSt"};
    ASSERT_EQ(lista.size(), 6U);
    for (size_t i = 0; i < 6; ++i)
    {
        EXPECT_EQ(lista[i]->nombre, nombres[i]);
        EXPECT_STREQ(lista[i]->etiqueta(), tags[i]);
    }
    std::string texto;
    EXPECT_TRUE(lista.getValor("cecolor", texto) && texto == "256");
    EXPECT_TRUE(lista.getValor("textstyle", texto) && texto == "standar");
    Punto3<double> normal;
    EXPECT_TRUE(lista.getValor3D("normplref", normal) && normal == Punto3<double>(0, 0, 1));
    lista.setValor("clayer", std::string("Muro"));
    lista.creaDefectos();
    ASSERT_EQ(lista.size(), 6U);
    EXPECT_TRUE(lista.getValor("clayer", texto) && texto == "0");
}

// setValor assigns in place when the class matches (same object), replaces a variable of
// another class by one of the value's class in the same slot, and appends a new name;
// inserta replaces by name in place too. Getters answer only for the class they read.
TEST(ListaVariables, SetValorEInsertaMantienenElSitio)
{
    ListaVariables lista;
    lista.setValor("a", 1);
    lista.setValor("b", 2.5);
    cad::VariableBase* antes = lista[0];
    lista.setValor("a", 7);
    EXPECT_EQ(lista[0], antes);
    lista.setValor("a", std::string("x"));
    lista.setValor("c", Vector3D<double>(1, 2, 3));
    lista.inserta(new cad::VariableInt("b", 4));
    lista.inserta(lista[2]);
    ASSERT_EQ(lista.size(), 3U);
    EXPECT_STREQ(lista[0]->etiqueta(), "VSt");
    EXPECT_EQ(lista[0]->nombre, "a");
    EXPECT_STREQ(lista[1]->etiqueta(), "VIn");

    std::string texto;
    int32_t entero = -5;
    double doble = 0;
    Punto3<double> p;
    EXPECT_TRUE(lista.getValor("a", texto) && texto == "x");
    EXPECT_FALSE(lista.getValor("a", entero));
    EXPECT_EQ(entero, -5);
    EXPECT_FALSE(lista.getValor("b", doble));
    EXPECT_TRUE(lista.getValor3D("c", p) && p == Punto3<double>(1, 2, 3));
    EXPECT_FALSE(lista.getValor("nadie", texto));
}

// The list block: u64 count, then a u16 block per variable holding id, name and value; an
// int goes through the unsigned writer, so -1 is FF FF FF FF, and reads back as -1 behind
// the six defaults.
TEST(ListaVariables, BytesExactos)
{
    ListaVariables lista;
    lista.setValor("n", -1);
    const Bytes esperado = {
        'V',  'b',  'l',  'e',  's',  '.',  '1', 0x00,  // tag
        0x26, 0,    0,    0,    0,    0,    0,   0,     // length 38
        0x01, 0,    0,    0,    0,    0,    0,   0,     // count
        'V',  'I',  'n',  0x00, 0x12, 0x00,             // "VIn", length 18
        0,    0,    0,    0,    0,    0,    0,   0,     // id
        0x02, 0x00, 'n',  0x00,                         // name, padded
        0xFF, 0xFF, 0xFF, 0xFF,                         // value
    };
    const Bytes bytes = escribe(lista);
    ASSERT_EQ(bytes, esperado);
    ASSERT_EQ(listaDe(1, bloque16("VIn", le(uint64_t{0}) + cadena("n") + le(-1))), esperado);
    ListaVariables leida;
    ASSERT_TRUE(lee(bytes, leida));
    int32_t n = 0;
    EXPECT_EQ(leida.size(), 7U);
    EXPECT_TRUE(leida.getValor("n", n) && n == -1);
}

// A variable of an unknown tag gives no object; its whole body lands in the list's buffer,
// and the next save writes that buffer at the end of every variable's block and once more
// at the list's end. Pinned byte for byte: files depend on this behaviour.
TEST(ListaVariables, EtiquetaDesconocidaVaAlBufferDeLaLista)
{
    const Bytes x = {1, 2, 3, 4, 5, 6};
    ListaVariables lista;
    ASSERT_TRUE(lee(listaDe(2, bloque16("VXx", x) + str("k", "v")), lista));
    ASSERT_EQ(lista.size(), 7U);
    ASSERT_EQ(lista.tamanoDatosDesconocidos, 6U);

    const Bytes defectos = str("clayer", "0", x) + str("cecolor", "256", x) +
                           v3d("orgplref", 0, x) + v3d("normplref", 1, x) + str("cview", "", x) +
                           str("textstyle", "standar", x);
    EXPECT_EQ(escribe(lista), listaDe(7, defectos + str("k", "v", x) + x));
}

// Each variable's unknown tail replaces the list's buffer and an empty tail leaves it, so
// the last non-empty one wins.
TEST(ListaVariables, UltimaColaDeVariableGana)
{
    const Bytes fichero =
        listaDe(3, str("a", "1", {0xAA, 0xBB}) + str("b", "2", {0xCC, 0xDD}) + str("c", "3"));
    ListaVariables lista;
    ASSERT_TRUE(lee(fichero, lista));
    ASSERT_EQ(lista.size(), 9U);
    ASSERT_EQ(lista.tamanoDatosDesconocidos, 2U);
    EXPECT_EQ(Bytes(lista.datosDesconocidos, lista.datosDesconocidos + 2), (Bytes{0xCC, 0xDD}));
}

// A read starts from the defaults and appends the file's variables behind them, so lookups
// find the defaults, not the saved state, while a variable without default is found. Each
// save and load cycle adds the six again.
TEST(ListaVariables, LeeDejaDefectosDelante)
{
    ListaVariables lista;
    lista.creaDefectos();
    lista.setValor("clayer", std::string("Muro"));
    lista.setValor("posVista", Vector3D<double>(4, 5, 6));
    ListaVariables leida;
    ASSERT_TRUE(lee(escribe(lista), leida));
    ASSERT_EQ(leida.size(), 13U);
    std::string capa;
    EXPECT_TRUE(leida.getValor("clayer", capa) && capa == "0");
    EXPECT_EQ(static_cast<cad::VariableStr*>(leida[6])->valor, "Muro");
    Punto3<double> p;
    EXPECT_TRUE(leida.getValor3D("posVista", p) && p == Punto3<double>(4, 5, 6));
    ListaVariables otra;
    ASSERT_TRUE(lee(escribe(leida), otra));
    EXPECT_EQ(otra.size(), 19U);
}

// Damaged input: a section of another tag fails with just the defaults; every cut of a
// valid file fails without a crash and adds only whole variables; a count far beyond the
// file ends with the file.
TEST(ListaVariables, SeccionAjenaCorteYCuentaMentirosa)
{
    ListaVariables origen;
    origen.setValor("i", 3);                          // a 22-byte block ending at 46
    origen.setValor("p", Vector3D<double>(1, 2, 3));  // the last field is the value
    const Bytes entero = escribe(origen);
    Bytes mala = entero;
    mala[0] = 'W';
    ListaVariables lista;
    EXPECT_FALSE(lee(mala, lista));
    EXPECT_EQ(lista.size(), 6U);
    for (size_t corte = 0; corte < entero.size(); ++corte)
    {
        ListaVariables leida;
        EXPECT_FALSE(lee(Bytes(entero.begin(), entero.begin() + corte), leida)) << corte;
        EXPECT_EQ(leida.size(), corte >= 46 ? 7U : 6U) << corte;
    }
    mala = entero;
    mala[22] = 0x7F;
    EXPECT_TRUE(lee(mala, lista));
    EXPECT_EQ(lista.size(), 8U);
}

}  // namespace
