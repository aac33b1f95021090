// Drawing variables: defaults, typed setters, exact bytes and the kept quirks of their tails.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/ListaVariables.h"
#include "documento/Variables.h"
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

// Little-endian byte images, to build files that this version would not write itself.
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

Bytes cadena(const std::string& s)
{
    Bytes b = le(static_cast<uint16_t>(s.size() + (s.size() & 1)));
    b.insert(b.end(), s.begin(), s.end());
    if (s.size() % 2 == 1)
    {
        b.push_back(0);
    }
    return b;
}

Bytes bloque(const std::string& tag, const Bytes& cuerpo, bool ancho64)
{
    Bytes b(tag.begin(), tag.end());
    b.push_back(0);
    return ancho64 ? b + le(static_cast<uint64_t>(8 + cuerpo.size())) + cuerpo
                   : b + le(static_cast<uint16_t>(2 + cuerpo.size())) + cuerpo;
}

Bytes cuerpoStr(const std::string& nombre, const std::string& valor)
{
    return le(uint64_t{0}) + cadena(nombre) + cadena(valor);
}

Bytes cuerpo3D(const std::string& nombre, double x, double y, double z)
{
    return le(uint64_t{0}) + cadena(nombre) + le(x) + le(y) + le(z);
}

// The six defaults' blocks, each closed with `cola`.
Bytes defectos(const Bytes& cola)
{
    return bloque("VSt", cuerpoStr("clayer", "0") + cola, false) +
           bloque("VSt", cuerpoStr("cecolor", "256") + cola, false) +
           bloque("V3D", cuerpo3D("orgplref", 0, 0, 0) + cola, false) +
           bloque("V3D", cuerpo3D("normplref", 0, 0, 1) + cola, false) +
           bloque("VSt", cuerpoStr("cview", "") + cola, false) +
           bloque("VSt", cuerpoStr("textstyle", "standar") + cola, false);
}

// creaDefectos installs six variables in a fixed order with their classes and values; run
// again it puts a changed default back in its place instead of adding a second one.
TEST(ListaVariables, DefectosEnOrden)
{
    ListaVariables lista;
    lista.creaDefectos();
    const char* const nombres[6] = {"clayer", "cecolor", "orgplref", "normplref", "cview",
                                    "textstyle"};
    const char* const tags[6] = {"VSt", "VSt", "V3D", "V3D", "VSt", "VSt"};
    ASSERT_EQ(lista.size(), 6U);
    for (size_t i = 0; i < 6; ++i)
    {
        EXPECT_EQ(lista[i]->nombre, nombres[i]);
        EXPECT_STREQ(lista[i]->etiqueta(), tags[i]);
    }
    std::string texto;
    ASSERT_TRUE(lista.getValor("cecolor", texto));
    EXPECT_EQ(texto, "256");
    ASSERT_TRUE(lista.getValor("textstyle", texto));
    EXPECT_EQ(texto, "standar");
    Punto3<double> normal;
    ASSERT_TRUE(lista.getValor3D("normplref", normal));
    EXPECT_EQ(normal, Punto3<double>(0, 0, 1));

    lista.setValor("clayer", std::string("Muro"));
    lista.creaDefectos();
    ASSERT_EQ(lista.size(), 6U);
    ASSERT_TRUE(lista.getValor("clayer", texto));
    EXPECT_EQ(texto, "0");
}

// setValor assigns in place when the class matches (same object), replaces a variable of
// another class by one of the value's class in the same slot, and appends a new name. The
// getters answer only for the class they read.
TEST(ListaVariables, SetValorCambiaClaseEnSuSitio)
{
    ListaVariables lista;
    lista.setValor("a", 1);
    lista.setValor("b", 2.5);
    cad::VariableBase* antes = lista[0];
    lista.setValor("a", 7);
    EXPECT_EQ(lista[0], antes);
    lista.setValor("a", std::string("x"));
    lista.setValor("c", Vector3D<double>(1, 2, 3));
    ASSERT_EQ(lista.size(), 3U);
    EXPECT_STREQ(lista[0]->etiqueta(), "VSt");
    EXPECT_EQ(lista[0]->nombre, "a");
    EXPECT_EQ(lista[1]->nombre, "b");

    std::string texto;
    int32_t entero = -5;
    double doble = 0;
    Punto3<double> p;
    EXPECT_TRUE(lista.getValor("a", texto));
    EXPECT_EQ(texto, "x");
    EXPECT_FALSE(lista.getValor("a", entero));
    EXPECT_EQ(entero, -5);
    EXPECT_TRUE(lista.getValor("b", doble));
    EXPECT_EQ(doble, 2.5);
    EXPECT_TRUE(lista.getValor3D("c", p));
    EXPECT_EQ(p, Punto3<double>(1, 2, 3));
    EXPECT_FALSE(lista.getValor3D("b", p));
    EXPECT_FALSE(lista.getValor("nadie", texto));
}

// inserta replaces the first variable of the same name in its slot (the old one is deleted,
// which the sanitizer build checks), appends a new name, and survives re-inserting an owned
// variable.
TEST(ListaVariables, InsertaReemplazaOAnade)
{
    ListaVariables lista;
    lista.inserta(new cad::VariableInt("a", 1));
    lista.inserta(new cad::VariableInt("b", 2));
    lista.inserta(new cad::VariableDob("a", 3.0));
    lista.inserta(lista[1]);
    lista.inserta(nullptr);
    ASSERT_EQ(lista.size(), 2U);
    double doble = 0;
    EXPECT_TRUE(lista.getValor("a", doble));
    EXPECT_EQ(doble, 3.0);
    EXPECT_EQ(lista.busca("b"), lista[1]);
}

// The list block: u64 count, then a u16 block per variable holding id, name and value; an
// int goes through the unsigned writer, so -1 is FF FF FF FF, and reads back as -1.
TEST(ListaVariables, BytesExactos)
{
    ListaVariables lista;
    lista.setValor("n", -1);
    const Bytes esperado = {
        'V',  'b',  'l',  'e',  's',  '.',  '1',  0x00,  // tag
        0x26, 0,    0,    0,    0,    0,    0,    0,     // length 38
        0x01, 0,    0,    0,    0,    0,    0,    0,     // count
        'V',  'I',  'n',  0x00, 0x12, 0x00,              // "VIn", length 18
        0,    0,    0,    0,    0,    0,    0,    0,     // id
        0x02, 0x00, 'n',  0x00,                          // name, padded
        0xFF, 0xFF, 0xFF, 0xFF,                          // value
    };
    const Bytes bytes = escribe(lista);
    ASSERT_EQ(bytes, esperado);

    ListaVariables leida;
    ASSERT_TRUE(lee(bytes, leida));
    ASSERT_EQ(leida.size(), 7U);
    int32_t n = 0;
    ASSERT_TRUE(leida.getValor("n", n));
    EXPECT_EQ(n, -1);
}

// A variable of an unknown tag gives no object; its whole body lands in the list's buffer,
// and the next save writes that buffer at the end of every variable's block and once more
// at the list's end. Pinned byte for byte: files depend on this behaviour.
TEST(ListaVariables, EtiquetaDesconocidaVaAlBufferDeLaLista)
{
    const Bytes extrano = {1, 2, 3, 4, 5, 6};
    const Bytes fichero =
        bloque("Vbles.1",
               le(uint64_t{2}) + bloque("VXx", extrano, false) +
                   bloque("VSt", cuerpoStr("k", "v"), false),
               true);
    ListaVariables lista;
    ASSERT_TRUE(lee(fichero, lista));
    ASSERT_EQ(lista.size(), 7U);
    EXPECT_EQ(lista[6]->nombre, "k");
    ASSERT_EQ(lista.tamanoDatosDesconocidos, 6U);

    const Bytes esperado =
        bloque("Vbles.1",
               le(uint64_t{7}) + defectos(extrano) +
                   bloque("VSt", cuerpoStr("k", "v") + extrano, false) + extrano,
               true);
    EXPECT_EQ(escribe(lista), esperado);
}

// Each variable's unknown tail replaces the list's buffer; an empty tail leaves it, so the
// last non-empty one wins.
TEST(ListaVariables, UltimaColaDeVariableGana)
{
    const Bytes fichero =
        bloque("Vbles.1",
               le(uint64_t{3}) +
                   bloque("VSt", cuerpoStr("a", "1") + Bytes{0xAA, 0xBB}, false) +
                   bloque("VSt", cuerpoStr("b", "2") + Bytes{0xCC, 0xDD}, false) +
                   bloque("VSt", cuerpoStr("c", "3"), false),
               true);
    ListaVariables lista;
    ASSERT_TRUE(lee(fichero, lista));
    ASSERT_EQ(lista.size(), 9U);
    ASSERT_EQ(lista.tamanoDatosDesconocidos, 2U);
    EXPECT_EQ(Bytes(lista.datosDesconocidos, lista.datosDesconocidos + 2), (Bytes{0xCC, 0xDD}));
}

// A read starts from the defaults and appends the file's variables behind them, so lookups
// find the defaults, not the saved state; a variable without default is found. Each save and
// load cycle adds the six again.
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
    ASSERT_TRUE(leida.getValor("clayer", capa));
    EXPECT_EQ(capa, "0");
    EXPECT_EQ(leida[6]->nombre, "clayer");
    EXPECT_EQ(static_cast<cad::VariableStr*>(leida[6])->valor, "Muro");
    Punto3<double> p;
    ASSERT_TRUE(leida.getValor3D("posVista", p));
    EXPECT_EQ(p, Punto3<double>(4, 5, 6));

    ListaVariables otra;
    ASSERT_TRUE(lee(escribe(leida), otra));
    EXPECT_EQ(otra.size(), 19U);
}

// Damaged input: a section of another tag fails with just the defaults; every cut of a
// valid file fails without a crash; a count far beyond the file ends with the file.
TEST(ListaVariables, SeccionAjenaCorteYCuentaMentirosa)
{
    ListaVariables origen;
    origen.setValor("i", 3);
    origen.setValor("d", 0.5);
    origen.setValor("s", std::string("texto"));
    const Bytes entero = escribe(origen);

    Bytes ajena = entero;
    ajena[0] = 'W';
    ListaVariables lista;
    EXPECT_FALSE(lee(ajena, lista));
    EXPECT_EQ(lista.size(), 6U);

    for (size_t corte = 0; corte < entero.size(); ++corte)
    {
        ListaVariables leida;
        EXPECT_FALSE(lee(Bytes(entero.begin(), entero.begin() + corte), leida)) << corte;
        EXPECT_LE(leida.size(), 8U) << corte;
    }

    Bytes mentirosa = entero;
    mentirosa[22] = 0x7F;
    EXPECT_TRUE(lee(mentirosa, lista));
    EXPECT_EQ(lista.size(), 9U);
}

}  // namespace
