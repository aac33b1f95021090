// The DXF writer: the assembled file line for line, colour and layer rules, and every misuse.
#include "intercambio/ExportaDXF.h"

#include <bit>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <memory>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Fendrix/WrapDibujoCAD.h"
#include "base/Color.h"
#include "base/Excepcion.h"
#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "entidades/Plano.h"
#include "entidades/Punto.h"
#include "soporte/CatalogoEntidades.h"
#include "soporte/EntidadPrueba.h"
#include "soporte/FicheroTemporal.h"

namespace
{

using cad::Excepcion;
using cad::ExportaDXF;
using cad::Punto3;
using cad::prueba::existeFichero;
using cad::prueba::restosTemporales;
using cad::prueba::rutaDXF;
using cad::prueba::rutaTemporal;

std::string leeTexto(const std::string& ruta)
{
    const std::vector<uint8_t> bytes = cad::prueba::leeFichero(ruta);
    return std::string(bytes.begin(), bytes.end());
}

std::vector<std::string> lineas(const std::string& texto)
{
    std::vector<std::string> resultado;
    std::istringstream entrada(texto);
    for (std::string l; std::getline(entrada, l);)
    {
        resultado.push_back(l);
    }
    return resultado;
}

// The first differing line is named; the whole text then checks the final newline too.
void compruebaFichero(const std::string& ruta, const std::string& esperado)
{
    const std::string real = leeTexto(ruta);
    const std::vector<std::string> a = lineas(real);
    const std::vector<std::string> b = lineas(esperado);
    for (size_t i = 0; i < a.size() && i < b.size(); ++i)
    {
        ASSERT_EQ(a[i], b[i]) << ruta << ", line " << i + 1;
    }
    EXPECT_EQ(a.size(), b.size()) << ruta;
    EXPECT_EQ(real, esperado) << ruta;
    EXPECT_TRUE(restosTemporales().empty()) << "temporary file left behind";
}

const std::string kCabecera =
    "  0\nSECTION\n"
    "  2\nHEADER\n"
    "  9\n$ACADVER\n"
    "  1\nAC1009\n"
    "  0\nENDSEC\n"
    "  0\nSECTION\n"
    "  2\nTABLES\n"
    "  0\nTABLE\n"
    "  2\nLAYER\n"
    " 70\n     1\n"
    "  0\nLAYER\n  2\n0\n 70\n    0\n 62\n    7\n  6\nCONTINUOUS\n";

// Head with layer "0", then further layers, the entities and the closing lines.
std::string esperado(const std::string& capas, const std::string& entidades)
{
    return kCabecera + capas + "  0\nENDTAB\n  0\nENDSEC\n" + "  0\nSECTION\n  2\nENTITIES\n" +
           entidades + "  0\nENDSEC\n  0\nEOF\n";
}

// A writer of one audited file, inside its ENTITIES section and on layer "0" until changed.
class Escritor
{
public:
    explicit Escritor(const std::string& nombre)
        : ruta_(rutaDXF(nombre)), dxf_(std::make_unique<ExportaDXF>(ruta_))
    {
        dxf_->inicioEntidades();
        dxf_->setCapa("0");
    }
    ExportaDXF* operator->() { return dxf_.get(); }
    ExportaDXF& operator*() { return *dxf_; }
    // Ends the section and the writer, which assembles the file; returns its path.
    std::string cierra()
    {
        dxf_->finEntidades();
        dxf_.reset();
        return ruta_;
    }

private:
    std::string ruta_;
    std::unique_ptr<ExportaDXF> dxf_;
};

// A point bound to a layer by name: enough to see the drawing hand each entity the writer.
class PuntoDXF : public cad::prueba::EntidadPrueba
{
public:
    const char* etiqueta() const override { return "tDX"; }
    void escribe(cad::SerializadorEscrituraBase&) override {}
    bool lee(cad::SerializadorLecturaBase&) override { return false; }
    Entidad* clona() const override { return new PuntoDXF(*this); }
    void dibuja(cad::PantallaCAD&) const override {}
    void exportaDXF(ExportaDXF& dxf) const override
    {
        dxf.setCapa(nombreCapa);
        dxf.punto(indiceColorCercano(), 1.0, 2.0, 3.0);
    }
    std::string nombreCapa;
};

// A drawing driven by its three operations. A new one without entities is the head, layer "0"
// in white (7), an empty ENTITIES section and EOF; no temporary file stays. A drawing's layers
// go to the table in list order with their colour index (a true colour by its nearest entry),
// and each entity writes itself on its normalised layer.
TEST(ExportaDXF, Dibujo)
{
    const auto exporta = [](cad::Dibujo& dibujo, const char* nombre)
    {
        const std::string ruta = rutaDXF(nombre);
        ExportaDXF dxf(ruta);
        dibujo.inicializaDocumentoDXF(dxf);
        EXPECT_TRUE(dibujo.exportaDocumentoDFX(dxf));
        dibujo.finalizaDocumentoDXF(dxf);
        return ruta;
    };
    cad::Dibujo vacio;
    vacio.nuevoDocumento();
    compruebaFichero(exporta(vacio, "dibujo_vacio.dxf"), esperado("", ""));

    cad::Dibujo dibujo;
    dibujo.nuevoDocumento();
    cad::ColorCapa rojo;
    rojo.setABGR(0xFF0000FEU);
    dibujo.nuevaCapa(new cad::Capa("mi capa.1", rojo, 1));
    dibujo.nuevaCapa(new cad::Capa("Ejes", cad::ColorCapa(5), 1));
    auto* p = new PuntoDXF();
    p->nombreCapa = "mi capa.1";
    p->color.setIndiceColor(3);
    dibujo.nuevaEntidad(p);
    compruebaFichero(
        exporta(dibujo, "dibujo_capas.dxf"),
        esperado("  0\nLAYER\n  2\nmi_capa_1\n 70\n    0\n 62\n    1\n  6\nCONTINUOUS\n"
                 "  0\nLAYER\n  2\nEjes\n 70\n    0\n 62\n    5\n  6\nCONTINUOUS\n",
                 "  0\nPOINT\n  8\nmi_capa_1\n 62\n3\n"
                 " 10\n1.0000\n 20\n2.0000\n 30\n3.0000\n"));
}

// Every record kind in one file, checked line for line.
TEST(ExportaDXF, RegistrosDeCadaTipo)
{
    Escritor dxf("registros.dxf");
    // POINT with a colour, with colour 0 and by layer (no group 62); reals are rounded to four
    // decimals; the running extents follow every written coordinate.
    EXPECT_EQ(dxf->minimo.x, std::numeric_limits<double>::max());
    EXPECT_EQ(dxf->maximo.z, -std::numeric_limits<double>::max());
    dxf->punto(1, 1.23456, -2.5, 0.0);
    dxf->punto(0, 1000000.0, 0.00004, -0.00006);
    dxf->punto(256, -3.0, 4.0, 5.0);
    EXPECT_EQ(dxf->minimo, Punto3<double>(-3.0, -2.5, -0.00006));
    EXPECT_EQ(dxf->maximo, Punto3<double>(1000000.0, 4.0, 5.0));
    const std::string puntos =
        "  0\nPOINT\n  8\n0\n 62\n1\n"
        " 10\n1.2346\n 20\n-2.5000\n 30\n0.0000\n"
        "  0\nPOINT\n  8\n0\n 62\n0\n"
        " 10\n1000000.0000\n 20\n0.0000\n 30\n-0.0001\n"
        "  0\nPOINT\n  8\n0\n"
        " 10\n-3.0000\n 20\n4.0000\n 30\n5.0000\n";

    // LINE: the first point in 10/20/30, the second in 11/21/31.
    dxf->linea(5, 0.0, 0.0, 0.0, 10.0, 20.0, 30.0);
    const std::string linea =
        "  0\nLINE\n  8\n0\n 62\n5\n"
        " 10\n0.0000\n 20\n0.0000\n 30\n0.0000\n"
        " 11\n10.0000\n 21\n20.0000\n 31\n30.0000\n";

    // 3DFACE: a triangle has four corners in the file, the last two equal; a quadrilateral
    // its own four; both end with group 70 as 0.
    const Punto3<double> esquinas[4] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 2}, {0, 1, 2}};
    dxf->cara(3, esquinas, 2);
    dxf->cara(4, esquinas, 256);
    const std::string caras =
        "  0\n3DFACE\n  8\n0\n 62\n2\n"
        " 10\n0.0000\n 20\n0.0000\n 30\n0.0000\n"
        " 11\n1.0000\n 21\n0.0000\n 31\n0.0000\n"
        " 12\n1.0000\n 22\n1.0000\n 32\n2.0000\n"
        " 13\n1.0000\n 23\n1.0000\n 33\n2.0000\n"
        " 70\n0\n"
        "  0\n3DFACE\n  8\n0\n"
        " 10\n0.0000\n 20\n0.0000\n 30\n0.0000\n"
        " 11\n1.0000\n 21\n0.0000\n 31\n0.0000\n"
        " 12\n1.0000\n 22\n1.0000\n 32\n2.0000\n"
        " 13\n0.0000\n 23\n1.0000\n 33\n2.0000\n"
        " 70\n0\n";

    // POLYLINE with its flags, VERTEX records (flag 32, layer, no colour) and SEQEND; closing
    // the polyline clears its flag and the group 70 bits, leaving the section flag alone.
    dxf->inicioPolilinea(9, 4);
    EXPECT_EQ(dxf->estado, 0x400U | 0x100U | 9U);
    dxf->verticePolilinea(0.0, 0.0, 1.0);
    dxf->verticePolilinea(2.0, 0.0, 1.0);
    dxf->verticePolilinea(2.0, 3.0, 1.0);
    dxf->finPolilinea();
    EXPECT_EQ(dxf->estado, 0x400U);
    dxf->inicioPolilinea(8, 256);
    dxf->verticePolilinea(5.0, 5.0, 0.0);
    dxf->verticePolilinea(6.0, 5.0, 0.0);
    dxf->finPolilinea();
    const std::string polilineas =
        "  0\nPOLYLINE\n  8\n0\n 62\n4\n 66\n     1\n 70\n     9\n"
        "  0\nVERTEX\n 70\n    32\n  8\n0\n"
        " 10\n0.0000\n 20\n0.0000\n 30\n1.0000\n"
        "  0\nVERTEX\n 70\n    32\n  8\n0\n"
        " 10\n2.0000\n 20\n0.0000\n 30\n1.0000\n"
        "  0\nVERTEX\n 70\n    32\n  8\n0\n"
        " 10\n2.0000\n 20\n3.0000\n 30\n1.0000\n"
        "  0\nSEQEND\n"
        "  0\nPOLYLINE\n  8\n0\n 66\n     1\n 70\n     8\n"
        "  0\nVERTEX\n 70\n    32\n  8\n0\n"
        " 10\n5.0000\n 20\n5.0000\n 30\n0.0000\n"
        "  0\nVERTEX\n 70\n    32\n  8\n0\n"
        " 10\n6.0000\n 20\n5.0000\n 30\n0.0000\n"
        "  0\nSEQEND\n";

    // TEXT: left and unrotated has neither group 11 nor 50; right justified at 180 degrees
    // has the alignment point one unit along a = 180/180*3.1415 (so y moves by 0.0001) and
    // group 50.
    dxf->texto("Hola", cad::kJustificarIzquierda, 1.0, 2.0, 3.0, 2.5, 0.0);
    dxf->texto("Cota 12", cad::kJustificarDerecha, 10.0, 20.0, 0.0, 0.5, 180.0);
    const std::string textos =
        "  0\nTEXT\n  8\n0\n"
        " 10\n1.0000\n 20\n2.0000\n 30\n3.0000\n"
        " 40\n2.5000\n 72\n0\n  1\nHola\n"
        "  0\nTEXT\n  8\n0\n"
        " 10\n10.0000\n 20\n20.0000\n 30\n0.0000\n"
        " 11\n9.0000\n 21\n20.0001\n 31\n0.0000\n"
        " 40\n0.5000\n 72\n2\n 50\n180.0000\n  1\nCota 12\n";

    // Multi-line text: the first line sits altura * k above the point, the next ones one unit
    // lower each. An empty line writes nothing but keeps its place, and so does an empty text.
    dxf->texto("uno\ndos", cad::kJustificarIzquierda, 1.0, 1.0, 0.0, 2.0, 0.0);
    dxf->texto("a\n\nc", cad::kJustificarIzquierda, 5.0, 0.0, 1.0, 1.0, 90.0);
    dxf->texto("", cad::kJustificarCentro, 0.0, 0.0, 0.0, 1.0, 0.0);
    const std::string variasLineas =
        "  0\nTEXT\n  8\n0\n"
        " 10\n1.0000\n 20\n3.0000\n 30\n0.0000\n"
        " 40\n2.0000\n 72\n0\n  1\nuno\n"
        "  0\nTEXT\n  8\n0\n"
        " 10\n1.0000\n 20\n2.0000\n 30\n0.0000\n"
        " 40\n2.0000\n 72\n0\n  1\ndos\n"
        "  0\nTEXT\n  8\n0\n"
        " 10\n7.0000\n 20\n0.0001\n 30\n1.0000\n"
        " 40\n1.0000\n 72\n0\n 50\n90.0000\n  1\na\n"
        "  0\nTEXT\n  8\n0\n"
        " 10\n5.0000\n 20\n0.0000\n 30\n1.0000\n"
        " 40\n1.0000\n 72\n0\n 50\n90.0000\n  1\nc\n";
    compruebaFichero(dxf.cierra(),
                     esperado("", puntos + linea + caras + polilineas + textos + variasLineas));
}

// Every kind of the catalogue in a file of its own, for the audit to read back: the records a
// kind writes (3DFACEs of a tessellated solid, a point group's POINTs, TEXT) must make a file
// an independent reader accepts.
TEST(ExportaDXF, CadaTipoDelCatalogoParaLaAuditoria)
{
    for (const cad::prueba::TipoEntidad& t : cad::prueba::catalogoEntidades())
    {
        const std::string ruta = rutaDXF("catalogo_" + t.nombre + ".dxf");
        {
            ExportaDXF dxf(ruta);
            dxf.nuevaCapa("Ejes", 5);
            dxf.inicioEntidades();
            t.crea()->exportaDXF(dxf);
            dxf.finEntidades();
        }
        EXPECT_NE(leeTexto(ruta).find("  0\nEOF\n"), std::string::npos) << t.nombre;
    }
}

// Blanks, then points, become '_' in the table and in group 8; a layer is added once per
// normalised name (the first colour stays), and either spelling makes it current.
TEST(ExportaDXF, CapaNormalizada)
{
    EXPECT_EQ(ExportaDXF::normalizaCapa("a b.c  d.."), "a_b_c__d__");
    Escritor dxf("capas.dxf");
    dxf->nuevaCapa("mi capa.1", 3);
    dxf->nuevaCapa("mi_capa_1", 5);
    dxf->nuevaCapa("0", 1);
    dxf->nuevaCapa("Sin Color", 256);
    dxf->setCapa("mi capa.1");
    dxf->punto(256, 0.0, 0.0, 0.0);
    dxf->setCapa("mi_capa_1");
    dxf->linea(256, 0.0, 0.0, 0.0, 1.0, 1.0, 1.0);
    compruebaFichero(
        dxf.cierra(),
        esperado("  0\nLAYER\n  2\nmi_capa_1\n 70\n    0\n 62\n    3\n  6\nCONTINUOUS\n"
                 "  0\nLAYER\n  2\nSin_Color\n 70\n    0\n 62\n    256\n  6\nCONTINUOUS\n",
                 "  0\nPOINT\n  8\nmi_capa_1\n"
                 " 10\n0.0000\n 20\n0.0000\n 30\n0.0000\n"
                 "  0\nLINE\n  8\nmi_capa_1\n"
                 " 10\n0.0000\n 20\n0.0000\n 30\n0.0000\n"
                 " 11\n1.0000\n 21\n1.0000\n 31\n1.0000\n"));
}

// Nearest palette entry by squared distance; on a tie the lower index wins (grey 58 lies as
// near 8 as 250, grey 129 as near 9 as 253, white is both 7 and 255). A layer colour that is a
// palette index is kept as it is (even 254, whose bytes are white); by layer and a true colour
// take the nearest entry of their bytes.
TEST(ExportaDXF, IndiceColorYCapaRGBA)
{
    // clang-format off
    const int casos[][4] = {{0, 0, 0, 0}, {255, 0, 0, 1}, {0x81, 0x56, 0x56, 15}, {128, 0, 0, 14},
                            {1, 0, 1, 0}, {58, 58, 58, 8}, {129, 129, 129, 9},
                            {160, 160, 160, 33}, {255, 255, 255, 7}};
    // clang-format on
    for (const auto& c : casos)
    {
        EXPECT_EQ(ExportaDXF::indiceColor(c[0], c[1], c[2]), c[3])
            << c[0] << "," << c[1] << "," << c[2];
    }

    ExportaDXF dxf(rutaTemporal("capa_rgba.dxf"));
    cad::Color verdoso;
    verdoso.setABGR(0xFF00FE01U);
    dxf.nuevaCapaRGBA("indice", cad::Color(254));
    dxf.nuevaCapaRGBA("por capa", cad::Color(256));
    dxf.nuevaCapaRGBA("verdoso", verdoso);
    ASSERT_EQ(dxf.capas.size(), 4U);
    EXPECT_EQ(dxf.capas[0].nombre, "0");
    EXPECT_EQ(dxf.capas[0].color, 7);
    EXPECT_EQ(dxf.capas[1].color, 254);
    EXPECT_EQ(dxf.capas[2].nombre, "por_capa");
    EXPECT_EQ(dxf.capas[2].color, 7);
    EXPECT_EQ(dxf.capas[3].color, 3);
}

// More entities than one copy block (0x40000 bytes) holds: the copy loop goes round more than
// once and the file still ends in the section's end and EOF, nothing lost or doubled.
TEST(ExportaDXF, FicheroMayorQueUnBloque)
{
    const int n = 4000;
    Escritor dxf("grande.dxf");
    std::string entidades;
    for (int i = 0; i < n; ++i)
    {
        dxf->linea(1, i, 0.0, 0.0, i, 1.0, 0.0);
        const std::string x = std::to_string(i) + ".0000";
        entidades += "  0\nLINE\n  8\n0\n 62\n1\n 10\n" + x + "\n 20\n0.0000\n 30\n0.0000\n" +
                     " 11\n" + x + "\n 21\n1.0000\n 31\n0.0000\n";
    }
    const std::string ruta = dxf.cierra();
    ASSERT_GT(entidades.size(), 0x40000U);
    compruebaFichero(ruta, esperado("", entidades));
}

// Reals come out exactly as printf's "%0.4lf" writes them: halves at the fourth decimal
// (exact binary ties such as 1/32 go to even, near ones by their true value), tiny and
// negative values that round to "-0.0000", negative zero (which only a text height keeps:
// coordinates get the origin added), denormals, the largest double, both sides of the
// bounds of the writer's integer path (2^-15 and 2^48), and a few hundred thousand random
// values of every magnitude and of every bit pattern.
TEST(ExportaDXF, RealesComoPrintf)
{
    // clang-format off
    std::vector<double> valores = {
        0.00005, 1.00015, 2.50025, -0.00004, -0.00005, 0.00004999999999999999, 0.03125, 0.09375,
        -0.15625, 1234567.96875, 4503599627370495.5, 0.99995, 9.99995, -9999.99995, 1e15, -1e15,
        1e15 + 0.5, 9007199254740993.0, 1e22, 1e23, 1e300, 5e-324, -5e-324,
        2.2250738585072014e-308, std::numeric_limits<double>::max(),
        -std::numeric_limits<double>::max(), std::numeric_limits<double>::epsilon(), 0.0, 1.0,
        -7.0, 4000000.0, 123456789012.0, std::ldexp(1.0, 48),
        -std::nextafter(std::ldexp(1.0, 48), 0.0), std::ldexp(1.0, -15),
        std::nextafter(std::ldexp(1.0, -15), 0.0)};
    // clang-format on
    std::mt19937_64 azar(11);
    std::uniform_real_distribution<double> mantisa(1.0, 10.0);
    std::uniform_int_distribution<int> decada(-9, 17);
    while (valores.size() < 300000)
    {
        const double signo = (azar() & 1) != 0 ? -1.0 : 1.0;
        if (valores.size() % 4 == 0)
        {
            double cualquiera = std::bit_cast<double>(azar());
            valores.push_back(std::isfinite(cualquiera) ? cualquiera : 1.5);
        }
        else if (valores.size() % 4 == 1)
        {
            // A tie at the fourth decimal as near as a double gets to it.
            valores.push_back(signo * (static_cast<double>(azar() % 100000000) * 1e-4 + 5e-5));
        }
        else
        {
            valores.push_back(signo * mantisa(azar) * std::pow(10.0, decada(azar)));
        }
    }
    const std::string ruta = rutaTemporal("reales.dxf");
    {
        ExportaDXF dxf(ruta);
        dxf.inicioEntidades();
        dxf.setCapa("0");
        for (size_t i = 0; i + 2 < valores.size(); i += 3)
        {
            dxf.punto(256, valores[i], valores[i + 1], valores[i + 2]);
        }
        dxf.texto("t", 0, 0.0, 0.0, 0.0, -0.0, 0.0);
        dxf.finEntidades();
        ASSERT_TRUE(dxf.termina()) << dxf.mensaje();
    }
    valores.resize(valores.size() / 3 * 3);
    for (const double v : {0.0, 0.0, 0.0, -0.0})
    {
        valores.push_back(v);
    }
    const std::vector<std::string> l = lineas(leeTexto(ruta));
    size_t n = 0;
    for (size_t i = 0; i + 1 < l.size(); ++i)
    {
        if (l[i] == " 10" || l[i] == " 20" || l[i] == " 30" || l[i] == " 40")
        {
            ASSERT_LT(n, valores.size());
            char esperado[400];
            std::snprintf(esperado, sizeof esperado, "%0.4lf", valores[n]);
            ASSERT_EQ(l[i + 1], esperado) << "value " << n << " = " << valores[n];
            ++n;
        }
    }
    EXPECT_EQ(n, valores.size());
    EXPECT_EQ(l[l.size() - 9], "-0.0000");
}

// Layer names and texts go out in Windows-1252, characters it lacks as "\U+XXXX": a name's
// blanks become '_' before it is encoded, so "Polígono 1" is "Pol\xEDgono_1" in the table and
// in group 8 alike. Names that meet once encoded (a stray Latin-1 byte and the character it
// stands for) share one entry. The file is left for the audit, which reads every name and
// text back spelled as here.
TEST(ExportaDXF, CapasYTextosEnLaPaginaDeCodigos)
{
    Escritor dxf("acentos.dxf");
    dxf->nuevaCapa("Polígono 1", 1);
    dxf->nuevaCapa("Cañada", 2);
    dxf->nuevaCapa("Δέλτα", 3);
    dxf->nuevaCapa("caf\xE9", 4);
    dxf->nuevaCapa("café", 5);
    EXPECT_EQ(dxf->capas.size(), 6U);
    dxf->setCapa("Polígono 1");
    dxf->texto("Año €", 0, 1.0, 2.0, 0.0, 1.0, 0.0);
    dxf->setCapa("Cañada");
    dxf->texto("Polígono\nΔέλτα 😀", 0, 1.0, 2.0, 0.0, 1.0, 0.0);
    dxf->setCapa("café");
    dxf->punto(256, 0.0, 0.0, 0.0);
    dxf->setCapa("0");
    dxf->texto("\\U+0041 \\ é\r", 0, 0.0, 0.0, 0.0, 1.0, 0.0);
    const auto texto = [](const std::string& capa, const std::string& y, const std::string& t)
    {
        return "  0\nTEXT\n  8\n" + capa + "\n 10\n1.0000\n 20\n" + y +
               "\n 30\n0.0000\n 40\n1.0000\n 72\n0\n  1\n" + t + "\n";
    };
    const auto capa = [](const std::string& nombre, int color)
    {
        return "  0\nLAYER\n  2\n" + nombre + "\n 70\n    0\n 62\n    " + std::to_string(color) +
               "\n  6\nCONTINUOUS\n";
    };
    // Split so that the hex escape does not swallow the "a" after it.
    const std::string canada =
        "Ca\xF1"
        "ada";
    const std::string delta = "\\U+0394\\U+03AD\\U+03BB\\U+03C4\\U+03B1";
    compruebaFichero(
        dxf.cierra(),
        esperado(capa("Pol\xEDgono_1", 1) + capa(canada, 2) + capa(delta, 3) + capa("caf\xE9", 4),
                 texto("Pol\xEDgono_1", "2.0000", "A\xF1o \x80") +
                     texto(canada, "3.0000", "Pol\xEDgono") +
                     texto(canada, "2.0000", delta + " \\U+D83D\\U+DE00") +
                     "  0\nPOINT\n  8\ncaf\xE9\n 10\n0.0000\n 20\n0.0000\n 30\n0.0000\n" +
                     "  0\nTEXT\n  8\n0\n 10\n0.0000\n 20\n0.0000\n 30\n0.0000\n 40\n1.0000\n"
                     " 72\n0\n  1\n\\U+005CU+0041 \\ \xE9 \n"));
}

// ---------------------------------------------------------------------------------------
// Misuse: each raises Excepcion; writers are closed properly afterwards so that their own
// destructor stays quiet.

// Every record writer, each to be refused without writing anything. An empty text writes
// nothing anyway, so only an open polyline refuses it.
void rechazaCadaRegistro(ExportaDXF& dxf, bool textoVacio)
{
    const Punto3<double> esquinas[3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}};
    EXPECT_THROW(dxf.punto(1, 0.0, 0.0, 0.0), Excepcion);
    EXPECT_THROW(dxf.linea(1, 0.0, 0.0, 0.0, 1.0, 1.0, 1.0), Excepcion);
    EXPECT_THROW(dxf.cara(3, esquinas, 1), Excepcion);
    EXPECT_THROW(dxf.texto("t", 0, 0.0, 0.0, 0.0, 1.0, 0.0), Excepcion);
    if (textoVacio)
    {
        EXPECT_THROW(dxf.texto("", 0, 0.0, 0.0, 0.0, 1.0, 0.0), Excepcion);
    }
    EXPECT_THROW(dxf.inicioPolilinea(8, 256), Excepcion);
}

TEST(ExportaDXF, UsoIndebido)
{
    {
        SCOPED_TRACE("setCapa with a name the table lacks once normalised: the layer stays");
        ExportaDXF dxf(rutaTemporal("capa_desconocida.dxf"));
        dxf.nuevaCapa("a b", 1);
        dxf.setCapa("a_b");
        EXPECT_THROW(dxf.setCapa("otra"), Excepcion);
        EXPECT_THROW(dxf.setCapa("a-b"), Excepcion);
        EXPECT_EQ(dxf.capaActual, "a_b");
    }
    {
        SCOPED_TRACE("one ENTITIES section, no end without a start (before or after it)");
        ExportaDXF dxf(rutaTemporal("seccion.dxf"));
        EXPECT_THROW(dxf.finEntidades(), Excepcion);
        dxf.inicioEntidades();
        EXPECT_THROW(dxf.inicioEntidades(), Excepcion);
        dxf.finEntidades();
        EXPECT_THROW(dxf.finEntidades(), Excepcion);
    }
    {
        // A 3D vertex needs bit 8 in the flags, and a new polyline must not inherit the bits of
        // the one closed before.
        SCOPED_TRACE("vertex or end without a polyline, 3D vertex without bit 8");
        ExportaDXF dxf(rutaTemporal("sin_crear.dxf"));
        dxf.setCapa("0");
        dxf.inicioEntidades();
        EXPECT_THROW(dxf.verticePolilinea(0.0, 0.0, 0.0), Excepcion);
        EXPECT_THROW(dxf.finPolilinea(), Excepcion);
        dxf.inicioPolilinea(9, 1);
        dxf.finPolilinea();
        dxf.inicioPolilinea(1, 1);
        EXPECT_THROW(dxf.verticePolilinea(0.0, 0.0, 0.0), Excepcion);
        dxf.finPolilinea();
        dxf.finEntidades();
    }
}

// While a polyline is open, and before any setCapa, every record writer is refused; a refused
// record leaves nothing half written, and the polyline can still be closed.
TEST(ExportaDXF, RegistrosRechazados)
{
    Escritor abierta("polilinea_abierta.dxf");
    abierta->inicioPolilinea(8, 256);
    rechazaCadaRegistro(*abierta, true);
    abierta->verticePolilinea(1.0, 2.0, 3.0);
    abierta->finPolilinea();
    compruebaFichero(abierta.cierra(), esperado("",
                                                "  0\nPOLYLINE\n  8\n0\n 66\n     1\n 70\n     8\n"
                                                "  0\nVERTEX\n 70\n    32\n  8\n0\n"
                                                " 10\n1.0000\n 20\n2.0000\n 30\n3.0000\n"
                                                "  0\nSEQEND\n"));

    const std::string ruta = rutaDXF("sin_capa.dxf");
    {
        ExportaDXF dxf(ruta);
        dxf.inicioEntidades();
        rechazaCadaRegistro(dxf, false);
        EXPECT_EQ(dxf.estado, 0x400U);
        dxf.setCapa("0");
        dxf.punto(256, 1.0, 1.0, 1.0);
        dxf.finEntidades();
    }
    compruebaFichero(ruta, esperado("",
                                    "  0\nPOINT\n  8\n0\n"
                                    " 10\n1.0000\n 20\n1.0000\n 30\n1.0000\n"));
}

// A writer destroyed with a polyline, or with the ENTITIES section, still open raises; both
// handles are released first and the temporary file removed (checked under ASan). While
// another exception unwinds it does not raise (that would end the process): the first
// exception is the one that arrives.
TEST(ExportaDXF, DestructorSinTerminar)
{
    const std::string ruta1 = rutaTemporal("polilinea_al_final.dxf");
    auto* dxf = new ExportaDXF(ruta1);
    dxf->setCapa("0");
    dxf->inicioEntidades();
    dxf->inicioPolilinea(8, 256);
    dxf->finEntidades();
    EXPECT_THROW(delete dxf, Excepcion);
    EXPECT_FALSE(existeFichero(ruta1));

    const std::string ruta2 = rutaTemporal("seccion_al_final.dxf");
    dxf = new ExportaDXF(ruta2);
    dxf->inicioEntidades();
    EXPECT_THROW(delete dxf, Excepcion);
    EXPECT_FALSE(existeFichero(ruta2));

    const std::string ruta3 = rutaTemporal("desenrollado.dxf");
    EXPECT_THROW(
        {
            ExportaDXF otro(ruta3);
            otro.inicioEntidades();
            throw std::runtime_error("entidad");
        },
        std::runtime_error);
    EXPECT_FALSE(existeFichero(ruta3));
    EXPECT_TRUE(restosTemporales().empty());
}

// A file that cannot be written crashes nothing and leaves nothing behind: the writer says
// why, writes are dropped, misuse still raises, and nothing is assembled (an open section is
// not checked then). A folder as the name is refused before any scratch file is made.
TEST(ExportaDXF, FicheroNoSePuedeAbrir)
{
    const std::string ruta = rutaTemporal("no/existe/plano.dxf");
    {
        ExportaDXF dxf(ruta);
        EXPECT_FALSE(dxf.abierto());
        EXPECT_EQ(dxf.temporal, nullptr);
        EXPECT_EQ(dxf.mensaje(),
                  "no existe la carpeta " + std::filesystem::path(ruta).parent_path().string());
        dxf.setCapa("0");
        dxf.inicioEntidades();
        dxf.punto(1, 0.0, 0.0, 0.0);
        dxf.texto("a\nb", 1, 0.0, 0.0, 0.0, 1.0, 30.0);
        EXPECT_THROW(dxf.inicioEntidades(), Excepcion);
        EXPECT_FALSE(dxf.termina());
    }
    EXPECT_FALSE(existeFichero(ruta));

    const std::string carpeta = rutaTemporal("carpeta");
    std::filesystem::create_directories(carpeta);
    {
        ExportaDXF dxf(carpeta);
        EXPECT_FALSE(dxf.abierto());
        EXPECT_EQ(dxf.mensaje(), carpeta + " es una carpeta");
        dxf.inicioEntidades();
        dxf.setCapa("0");
        dxf.linea(1, 0.0, 0.0, 0.0, 1.0, 1.0, 1.0);
        dxf.finEntidades();
    }
    EXPECT_TRUE(std::filesystem::is_empty(carpeta));
}

// A drawing with a point, a line, a closed polyline, a polygon, a plane and a two-line text
// on the layer "mi capa.1", written through the facade: every record stands in the file as
// the layout gives it, line for line (the layer named "mi_capa_1" in the table and in
// group 8, no group 62 for colour by layer, the text's lines one unit apart downwards).
TEST(ExportaDXFDibujo, entidadesDeCadaTipoEnUnaCapaConBlancoYPunto)
{
    Fendrix::WrapDibujoCAD dibujo(nullptr, nullptr);
    dibujo.nuevoDocumento();
    ASSERT_TRUE(dibujo.nuevaCapa("mi capa.1", true));
    dibujo.nuevoPunto(1.0, 2.0, 3.0);
    const int64_t linea = dibujo.nuevaLinea(0.0, 0.0, 0.0, 10.0, 0.0, 0.5);
    dibujo.mDibujo->buscaEntidad(linea)->color.setIndiceColor(1);
    dibujo.nuevaPolilinea3D({0.0, 0.0, 0.0, 5.0, 0.0, 0.0, 5.0, 5.0, 0.0}, true);
    dibujo.nuevoPoligono({1.0, 1.0, 0.0, 2.0, 1.0, 0.0, 1.5, 2.0, 0.0});
    const Punto3<double> contorno[3] = {{0, 0, 0}, {4, 0, 0}, {4, 3, 0}};
    ASSERT_TRUE(dibujo.insertaEntidad(
        new cad::Plano(cad::Plano3D<double>(0.0, 0.0, 1.0, 0.0), 3, contorno)));
    dibujo.nuevoTexto("uno\ndos", 1.0, 1.0, 0.0,
                      Fendrix::WrapDibujoCAD::alineacionTexto::kAlineacionInfIzq, 2.0, 0.0);

    const std::string ruta = rutaDXF("entidades_de_cada_tipo.dxf");
    ASSERT_TRUE(dibujo.exportaDXF(ruta));

    const std::string capa = "  8\nmi_capa_1\n";
    const auto xyz = [](const char* x, const char* y, const char* z)
    { return std::string(" 10\n") + x + "\n 20\n" + y + "\n 30\n" + z + "\n"; };
    const auto vertice = [&](const char* x, const char* y, const char* z)
    { return "  0\nVERTEX\n 70\n    32\n" + capa + xyz(x, y, z); };
    const std::string entidades =
        // the point, by layer: no group 62
        "  0\nPOINT\n" + capa + xyz("1.0000", "2.0000", "3.0000") +
        // the line in red
        "  0\nLINE\n" + capa + " 62\n1\n" + xyz("0.0000", "0.0000", "0.0000") +
        " 11\n10.0000\n 21\n0.0000\n 31\n0.5000\n"
        // the closed polyline: flags 9, its first vertex not repeated
        "  0\nPOLYLINE\n" +
        capa + " 66\n     1\n 70\n     9\n" + vertice("0.0000", "0.0000", "0.0000") +
        vertice("5.0000", "0.0000", "0.0000") + vertice("5.0000", "5.0000", "0.0000") +
        "  0\nSEQEND\n"
        // the polygon: flags 9 as well
        "  0\nPOLYLINE\n" +
        capa + " 66\n     1\n 70\n     9\n" + vertice("1.0000", "1.0000", "0.0000") +
        vertice("2.0000", "1.0000", "0.0000") + vertice("1.5000", "2.0000", "0.0000") +
        "  0\nSEQEND\n"
        // the plane: an open polyline (flags 8) over its contour
        "  0\nPOLYLINE\n" +
        capa + " 66\n     1\n 70\n     8\n" + vertice("0.0000", "0.0000", "0.0000") +
        vertice("4.0000", "0.0000", "0.0000") + vertice("4.0000", "3.0000", "0.0000") +
        "  0\nSEQEND\n"
        // the text's first line one height-step up (2 * cos 0 * 1 newline), the second one
        // unit below it, not one height
        "  0\nTEXT\n" +
        capa + xyz("1.0000", "3.0000", "0.0000") +
        " 40\n2.0000\n 72\n0\n  1\nuno\n"
        "  0\nTEXT\n" +
        capa + xyz("1.0000", "2.0000", "0.0000") + " 40\n2.0000\n 72\n0\n  1\ndos\n";
    compruebaFichero(ruta, esperado("  0\nLAYER\n  2\nmi_capa_1\n 70\n    0\n 62\n    7\n  6\n"
                                    "CONTINUOUS\n",
                                    entidades));
}

// The checked export never raises and never touches the previous file when it fails: a
// layer without a name (the writer's misuse, which the plain form raises), a coordinate that
// is not a finite number, a device as the target. Names with line breaks and texts with a
// carriage return cannot inject records: they come out as one line each, and the file passes
// the audit. A user's file named like the old scratch file ("NAME.1") is never touched, and a
// link to the target keeps pointing at the file it names, now updated.
TEST(ExportaDXFDibujo, comprobadaDiceElMotivoYNoTocaNadaMas)
{
    const std::string ruta = rutaTemporal("plano.dxf");
    cad::prueba::escribeFichero(ruta, std::string("anterior"));
    cad::prueba::escribeFichero(ruta + ".1", std::string("del usuario"));
    std::string mensaje;
    {
        Fendrix::WrapDibujoCAD sinNombre(nullptr, nullptr);
        sinNombre.nuevoDocumento();
        ASSERT_TRUE(sinNombre.nuevaCapa("", true));
        ASSERT_NE(sinNombre.nuevoPunto(1, 2, 3), 0);
        EXPECT_FALSE(sinNombre.exportaDXFComprobado(ruta, mensaje));
        EXPECT_EQ(mensaje,
                  "una capa sin nombre no se puede escribir en un DXF; póngale nombre "
                  "antes de exportar");
        EXPECT_THROW(sinNombre.exportaDXF(ruta), Excepcion);
    }
    {
        Fendrix::WrapDibujoCAD noFinito(nullptr, nullptr);
        noFinito.nuevoDocumento();
        ASSERT_TRUE(noFinito.insertaEntidad(
            new cad::Punto(std::numeric_limits<double>::quiet_NaN(), 0, 0)));
        EXPECT_FALSE(noFinito.exportaDXFComprobado(ruta, mensaje));
        EXPECT_EQ(mensaje,
                  "1 valor no finito (nan o inf) en las coordenadas: el DXF no se escribe");
        EXPECT_FALSE(noFinito.exportaDXFComprobado("/dev/full", mensaje));
        EXPECT_EQ(mensaje, "/dev/full no es un fichero regular");
    }
    EXPECT_EQ(leeTexto(ruta), "anterior");
    // A child whose files may not pass 64 KiB, as on a full disk: the scratch file of the
    // entities fails first, the export says why and the target stays.
    const pid_t hijo = ::fork();
    ASSERT_GE(hijo, 0);
    if (hijo == 0)
    {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limite{65536, 65536};
        ::setrlimit(RLIMIT_FSIZE, &limite);
        Fendrix::WrapDibujoCAD grande(nullptr, nullptr);
        grande.nuevoDocumento();
        for (int i = 0; i < 5000; ++i)
        {
            grande.nuevoPunto(i, i, 0);
        }
        std::string motivo;
        const bool ok = grande.exportaDXFComprobado(ruta, motivo);
        std::_Exit(!ok && motivo == "el fichero " + ruta + " supera el tamaño que admite el sistema"
                       ? 0
                       : 1);
    }
    int estado = 0;
    ASSERT_EQ(::waitpid(hijo, &estado, 0), hijo);
    EXPECT_TRUE(WIFEXITED(estado) && WEXITSTATUS(estado) == 0);
    EXPECT_EQ(leeTexto(ruta), "anterior");

    Fendrix::WrapDibujoCAD dibujo(nullptr, nullptr);
    dibujo.nuevoDocumento();
    ASSERT_TRUE(dibujo.nuevaCapa("a\n  0\nLINE", true));
    ASSERT_NE(dibujo.nuevoTexto("uno\r  0\rPOINT", 1, 1, 0,
                                Fendrix::WrapDibujoCAD::alineacionTexto::kAlineacionInfIzq, 2, 0),
              0);
    const std::string auditado = rutaDXF("nombres_con_saltos.dxf");
    const std::string enlace = rutaTemporal("enlace.dxf");
    std::filesystem::remove(auditado);
    std::filesystem::create_symlink(auditado, enlace);
    ASSERT_TRUE(dibujo.exportaDXFComprobado(enlace, mensaje)) << mensaje;
    EXPECT_TRUE(std::filesystem::is_symlink(enlace));
    const std::string capa = "  8\na___0_LINE\n";
    compruebaFichero(auditado, esperado("  0\nLAYER\n  2\na___0_LINE\n 70\n    0\n 62\n    7\n"
                                        "  6\nCONTINUOUS\n",
                                        "  0\nTEXT\n" + capa +
                                            " 10\n1.0000\n 20\n1.0000\n 30\n0.0000\n"
                                            " 40\n2.0000\n 72\n0\n  1\nuno   0 POINT\n"));
    EXPECT_EQ(leeTexto(ruta + ".1"), "del usuario");
}

}  // namespace
