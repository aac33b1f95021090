#include "base/ObjetoCAD.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "soporte/FicheroTemporal.h"

using cad::BloqueSerializacion;
using cad::ObjetoCAD;
using cad::SerializadorBinarioEscritura;
using cad::SerializadorBinarioLectura;
using Bytes = std::vector<uint8_t>;

namespace
{

// A persisted class in two versions: the newer one has a field `extra` behind the others.
class ObjetoPrueba : public ObjetoCAD
{
public:
    explicit ObjetoPrueba(bool version2) : conExtra(version2) {}

    const char* etiqueta() const override { return "prb"; }

    void escribe(cad::SerializadorEscrituraBase& w) override
    {
        BloqueSerializacion* bloque = w.nuevoBloque(etiqueta(), 0);
        w.escribeCadena(nombre);
        if (conExtra)
        {
            w.escribeEntero(extra);
        }
        escribeDatosDesconocidos(w);
        delete bloque;
    }

    bool lee(cad::SerializadorLecturaBase& r) override
    {
        BloqueSerializacion* bloque = r.leeBloque();
        if (!bloque->esTipo(etiqueta()))
        {
            delete bloque;
            return false;
        }
        bool ok = r.leeCadena(nombre);
        if (conExtra)
        {
            ok = r.leeEntero(extra) && ok;
        }
        return finLectura(r, bloque) && ok;
    }

    bool conExtra;
    std::string nombre;
    int32_t extra = 0;
};

// Writes `o` and a marker behind it; returns the file's path.
std::string guarda(ObjetoCAD& o)
{
    const std::string ruta = cad::prueba::rutaTemporal("objeto.bin");
    SerializadorBinarioEscritura w(ruta);
    o.escribe(w);
    w.escribeCortoSinSigno(0x7777);
    return ruta;
}

void ponDatos(ObjetoCAD& o, const Bytes& datos)
{
    o.datosDesconocidos = static_cast<unsigned char*>(std::malloc(datos.size()));
    std::memcpy(o.datosDesconocidos, datos.data(), datos.size());
    o.tamanoDatosDesconocidos = static_cast<uint32_t>(datos.size());
}

Bytes datos(const ObjetoCAD& o)
{
    return o.datosDesconocidos == nullptr
               ? Bytes{}
               : Bytes(o.datosDesconocidos, o.datosDesconocidos + o.tamanoDatosDesconocidos);
}

}  // namespace

// Forward compatibility: an older reader keeps the fields it does not know as raw bytes,
// leaves the stream at the block's end, and writes them back at the block's end so that the
// file is byte-for-byte the newer one and the newer reader gets its field back, with
// nothing left over.
TEST(ObjetoCAD, ColaDesconocidaSeConservaYVuelveAlFinalDelBloque)
{
    ObjetoPrueba nuevo(true);
    nuevo.nombre = "xyz";
    nuevo.extra = 0x0A0B0C0D;
    const std::string rutaNuevo = guarda(nuevo);

    ObjetoPrueba viejo(false);
    SerializadorBinarioLectura r(rutaNuevo);
    ASSERT_TRUE(viejo.lee(r));
    EXPECT_EQ(viejo.nombre, "xyz");
    EXPECT_EQ(datos(viejo), (Bytes{0x0D, 0x0C, 0x0B, 0x0A}));
    uint16_t marca = 0;
    EXPECT_TRUE(r.leeCortoSinSigno(marca));
    EXPECT_EQ(marca, 0x7777);

    const std::string rutaViejo = guarda(viejo);
    EXPECT_EQ(cad::prueba::leeFichero(rutaViejo), cad::prueba::leeFichero(rutaNuevo));
    ObjetoPrueba releido(true);
    SerializadorBinarioLectura r2(rutaViejo);
    ASSERT_TRUE(releido.lee(r2));
    EXPECT_EQ(releido.extra, 0x0A0B0C0D);
    // A body that is exactly what the class reads leaves no unknown bytes.
    EXPECT_EQ(releido.datosDesconocidos, nullptr);
    EXPECT_EQ(releido.tamanoDatosDesconocidos, 0u);
    EXPECT_TRUE(releido.finLectura(r2, nullptr));  // no block: nothing to keep
    EXPECT_TRUE(r2.leeCortoSinSigno(marca));
    EXPECT_EQ(marca, 0x7777);
}

// Only the low 32 bits of what a block has left are kept: a u64 block that claims 4 GiB
// more than its 4 body bytes keeps just those 4 and reads on successfully.
TEST(ObjetoCAD, ColaUsaLos32BitsBajosDeRestante)
{
    const Bytes b{'a', 'b', 'c', 'd', 'e',  'f', 'g', 'h', 'i',  'j', 'k', 'l',
                  'm', 'n', 'o', 0,   0x0C, 0,   0,   0,   0x01, 0,   0,   0,  // length 2^32 + 12
                  1,   2,   3,   4};
    const std::string ruta = cad::prueba::rutaTemporal("cola64.bin");
    cad::prueba::escribeFichero(ruta, b);
    SerializadorBinarioLectura r(ruta);
    ObjetoPrueba o(false);
    EXPECT_TRUE(o.finLectura(r, r.leeBloque()));
    EXPECT_EQ(datos(o), (Bytes{1, 2, 3, 4}));
}

// Damaged length fields: a block that claims more than the file holds makes finLectura fail
// without a crash and without a buffer sized to the claim.
TEST(ObjetoCAD, LongitudMentirosaFallaSinReservar)
{
    const Bytes gigante{'a', 'b', 'c', 'd', 'e', 'f', 'g', 0, 0xF0, 0xFF, 0xFF, 0xFF, 1, 2, 3, 4};
    const Bytes truncado{'a', 'b', 'c', 0, 0x20, 0x00, 1, 2, 3, 4};
    for (const Bytes& b : {gigante, truncado})
    {
        const std::string ruta = cad::prueba::rutaTemporal("mentira.bin");
        cad::prueba::escribeFichero(ruta, b);
        SerializadorBinarioLectura r(ruta);
        ObjetoPrueba o(false);
        EXPECT_FALSE(o.finLectura(r, r.leeBloque()));
        EXPECT_LE(o.tamanoDatosDesconocidos, b.size());
    }
}

// Copies, by construction and by assignment, keep the id and hold their own equal copy of
// the unknown bytes: changing or destroying the source leaves the copy intact.
TEST(ObjetoCAD, CopiaConservaIdYDuplicaLosBytes)
{
    auto* origen = new ObjetoPrueba(false);
    origen->id = 42;
    ponDatos(*origen, {9, 8, 7});
    ObjetoPrueba copia(*origen);
    ObjetoPrueba asignada(false);
    ponDatos(asignada, {1});
    asignada = *origen;
    for (const ObjetoPrueba* o : {&copia, &asignada})
    {
        EXPECT_EQ(o->id, 42u);
        EXPECT_NE(o->datosDesconocidos, origen->datosDesconocidos);
        EXPECT_EQ(datos(*o), (Bytes{9, 8, 7}));
    }
    origen->datosDesconocidos[0] = 0;
    delete origen;
    EXPECT_EQ(datos(copia), (Bytes{9, 8, 7}));
    EXPECT_EQ(datos(asignada), (Bytes{9, 8, 7}));
}

// setId adds n, widened with its sign, to the base.
TEST(ObjetoCAD, SetIdConSigno)
{
    ObjetoPrueba o(false);
    o.setId(1000, 5);
    EXPECT_EQ(o.id, 1005u);
    o.setId(1000, -1);
    EXPECT_EQ(o.id, 999u);
    o.setId(0, -1);
    EXPECT_EQ(o.id, std::numeric_limits<uint64_t>::max());
}
