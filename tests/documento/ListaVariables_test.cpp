// Drawing variables: defaults, typed setters, exact bytes and the kept quirks of their tails.
#include "documento/ListaVariables.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "soporte/BloquesPrueba.h"
#include "soporte/ObjetoEnMemoria.h"

namespace
{

using cad::ListaVariables;
using cad::Punto3;
using cad::Vector3D;
using cad::prueba::Bytes;
using cad::prueba::bytesDe;
using cad::prueba::le;
using cad::prueba::leeDe;
using cad::prueba::operator+;

// Byte images built field by field, for files this version would not write itself. The
// exact-bytes test below pins the same forms literally.
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

Bytes v3d(const std::string& nombre, double z, const Bytes& cola = {})
{
    return bloque16("V3D", le(uint64_t{0}) + cadena(nombre) + le(0.0) + le(0.0) + le(z) + cola);
}

// The six defaults in their order, each followed by `cola`.
Bytes defectos(const Bytes& cola = {})
{
    return str("clayer", "0", cola) + str("cecolor", "256", cola) + v3d("orgplref", 0, cola) +
           v3d("normplref", 1, cola) + str("cview", "", cola) + str("textstyle", "standar", cola);
}

// creaDefectos installs six variables in a fixed order with their classes and values; run
// again it puts a changed default back in its place instead of adding a second one.
TEST(ListaVariables, DefectosEnOrden)
{
    ListaVariables lista;
    lista.creaDefectos();
    lista.setValor("clayer", std::string("Muro"));
    lista.creaDefectos();
    EXPECT_EQ(bytesDe(lista), listaDe(6, defectos()));
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
    EXPECT_EQ(lista[0]->nombre + lista[0]->etiqueta() + lista[1]->etiqueta(), "aVStVIn");

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
    const Bytes bytes = bytesDe(lista);
    ASSERT_EQ(bytes, esperado);
    ASSERT_EQ(listaDe(1, bloque16("VIn", le(uint64_t{0}) + cadena("n") + le(-1))), esperado);
    ListaVariables leida;
    ASSERT_TRUE(leeDe(bytes, leida));
    int32_t n = 0;
    EXPECT_EQ(leida.size(), 7U);
    EXPECT_TRUE(leida.getValor("n", n) && n == -1);
}

// A variable of an unknown tag gives no object; its whole body lands in the list's buffer,
// and the next save writes that buffer at the end of every variable's block and once more
// at the list's end. Each variable's tail replaces the buffer and an empty tail leaves it,
// so the last non-empty one wins. Pinned byte for byte: files depend on this behaviour.
TEST(ListaVariables, ColasVanAlBufferDeLaLista)
{
    const Bytes x = {1, 2, 3, 4, 5, 6};
    ListaVariables lista;
    ASSERT_TRUE(leeDe(listaDe(2, bloque16("VXx", x) + str("k", "v")), lista));
    ASSERT_EQ(lista.size(), 7U);
    EXPECT_EQ(bytesDe(lista), listaDe(7, defectos(x) + str("k", "v", x) + x));

    const Bytes fichero =
        listaDe(3, str("a", "1", {0xAA, 0xBB}) + str("b", "2", {0xCC, 0xDD}) + str("c", "3"));
    ASSERT_TRUE(leeDe(fichero, lista));
    ASSERT_EQ(lista.size(), 9U);
    EXPECT_EQ(cad::prueba::colaDe(lista), (Bytes{0xCC, 0xDD}));
}

// Damaged input: a section of another tag fails with just the defaults; every cut of a
// valid file fails without a fault and adds only whole variables; a count far beyond the
// file ends with the file.
TEST(ListaVariables, SeccionAjenaCorteYCuentaMentirosa)
{
    ListaVariables origen;
    origen.setValor("i", 3);                          // a 22-byte block ending at 46
    origen.setValor("p", Vector3D<double>(1, 2, 3));  // the last field is the value
    const Bytes entero = bytesDe(origen);
    Bytes mala = entero;
    mala[0] = 'W';
    ListaVariables lista;
    EXPECT_FALSE(leeDe(mala, lista));
    EXPECT_EQ(lista.size(), 6U);
    for (size_t corte = 0; corte < entero.size(); ++corte)
    {
        ListaVariables leida;
        EXPECT_FALSE(leeDe(entero, leida, corte)) << corte;
        EXPECT_EQ(leida.size(), corte >= 46 ? 7U : 6U) << corte;
    }
    mala = entero;
    mala[22] = 0x7F;
    EXPECT_TRUE(leeDe(mala, lista));
    EXPECT_EQ(lista.size(), 8U);
}

}  // namespace
