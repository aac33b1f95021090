#include "intercambio/ImportaDXF.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Fendrix/WrapDibujoCAD.h"
#include "base/geometria/Punto3.h"
#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "documento/ListaEntidades.h"
#include "entidades/Firmas.h"
#include "entidades/Linea.h"
#include "entidades/Polilinea.h"
#include "entidades/Punto.h"
#include "intercambio/ExportaDXF.h"
#include "soporte/FicheroTemporal.h"
#include "soporte/TablaReferencia.h"

namespace cad
{
namespace
{

using fila_t = prueba::filaTabla_t;

uint64_t numero(const fila_t& f, const std::string& columna)
{
    return prueba::numeroColumna(f, columna);
}

// "NAME=n" items of the column of other entity kinds.
uint64_t otros(const fila_t& f, const std::string& tipo)
{
    std::stringstream s(f.at("other_types"));
    std::string item;
    while (s >> item)
    {
        if (item.rfind(tipo + "=", 0) == 0)
        {
            return std::stoull(item.substr(tipo.size() + 1));
        }
    }
    return 0;
}

// Counts of what a drawing holds after an import.
struct cuentas_t
{
    uint64_t puntos = 0, lineas = 0, polilineas = 0, vertices = 0;
};

cuentas_t cuenta(const Dibujo& d)
{
    cuentas_t c;
    for (const Entidad* e : d.entidades)
    {
        if (dynamic_cast<const Punto*>(e) != nullptr)
        {
            ++c.puntos;
        }
        else if (dynamic_cast<const Linea*>(e) != nullptr)
        {
            ++c.lineas;
        }
        else if (const auto* p = dynamic_cast<const Polilinea*>(e))
        {
            ++c.polilineas;
            c.vertices += p->vertices.size();
        }
    }
    return c;
}

// Where a count of ours differs from the reference row, and the rule that explains it.
struct ajuste_t
{
    const char* fichero;
    uint64_t lineas, textos, arcos, circulos, polilineas;
    const char* regla;
};

const ajuste_t kAjustes[] = {
    // The reference audited the file and dropped entities whose handles repeat; the same
    // independent reader without its audit gives these, and handles are not read here.
    {"dxf/ezdxf/duplicate_handles.dxf", 111, 19, 0, 0, 0, "handles are not read"},
    // Its geometry lies in paper space; the reference counts model space only, and the
    // group that tells paper space (67) is not read here.
    {"dxf/trimesh/tray-easy1.dxf", 67, 0, 29, 373, 0, "paper space is read"},
    // After a skipped entity each line is a candidate keyword: a group 1 value "POLYLINE"
    // starts a polyline, and two group 3 values "TEXT" of the objects section start texts.
    {"dxf/ezdxf/uncommon.dxf", 19, 2, 1, 1, 9, "a value that spells a keyword"},
};

// Every shared DXF that the reference could read imports with its counts: points, lines,
// polylines (2D, 3D, meshes and lightweight ones with their vertex count), VERTEX and
// lightweight vertices, arcs, circles and texts recognised and dropped, and its layer table.
// A closed polyline ends on a copy of its first vertex. Binary files are refused with nothing
// added; files the reference could not read must simply end.
TEST(ImportaDXFReal, CuentasComoLaReferencia)
{
    const auto filas =
        prueba::leeTablaTSV(std::string(CAD_DATOS_COMPARTIDOS) + "/dxf_reference.tsv");
    ASSERT_GT(filas.size(), 40u);
    int probados = 0;
    for (const fila_t& f : filas)
    {
        const std::string ruta = std::string(CAD_DATOS_COMPARTIDOS) + "/" + f.at("file");
        if (!std::filesystem::exists(ruta))
        {
            continue;
        }
        ++probados;
        SCOPED_TRACE(f.at("file"));
        Dibujo d;
        d.nuevoDocumento();
        const size_t antes = d.entidades.size();
        ImportaDXF lector(&d);
        const bool ok = lector.lee(ruta);
        lector.terminaAbierta();
        const informeDXF_t& i = lector.informe;
        const std::string capasTabla = f.at("table_layers(name:colour)");
        if (capasTabla == "(binary)")
        {
            EXPECT_FALSE(ok);
            EXPECT_TRUE(lector.binario);
            EXPECT_EQ(d.entidades.size(), antes);
            continue;
        }
        EXPECT_TRUE(ok) << lector.motivo;
        EXPECT_EQ(i.verticesSinPolilinea, 0u);
        EXPECT_EQ(i.polilineasSinFin, 0u);
        // Where the reference could not read the file it gives no counts, only its layers.
        if (f.at("load").rfind("FAIL", 0) != 0)
        {
            uint64_t lineas = numero(f, "LINE"), textos = numero(f, "TEXT");
            uint64_t arcos = otros(f, "ARC"), circulos = otros(f, "CIRCLE");
            uint64_t polilineas = numero(f, "POLYLINE_2d") + numero(f, "POLYLINE_3d") +
                                  numero(f, "POLYLINE_mesh") + numero(f, "LWPOLYLINE");
            for (const ajuste_t& a : kAjustes)
            {
                if (f.at("file") == a.fichero)
                {
                    SCOPED_TRACE(a.regla);
                    lineas = a.lineas;
                    textos = a.textos;
                    arcos = a.arcos;
                    circulos = a.circulos;
                    polilineas = a.polilineas != 0 ? a.polilineas : polilineas;
                }
            }
            const cuentas_t c = cuenta(d);
            EXPECT_EQ(c.puntos, numero(f, "POINT"));
            EXPECT_EQ(c.lineas, lineas);
            EXPECT_EQ(c.polilineas, polilineas);
            const uint64_t vertices =
                numero(f, "POLYLINE_vertices") + numero(f, "LWPOLYLINE_vertices");
            EXPECT_EQ(i.vertices, vertices);
            // Each closed one repeats its first vertex; closed 2D polylines are not in the table.
            EXPECT_GE(c.vertices, vertices + numero(f, "LWPOLYLINE_closed"));
            EXPECT_EQ(i.textos, textos);
            EXPECT_EQ(i.arcos, arcos);
            EXPECT_EQ(i.circulos, circulos);
        }
        // Layers of the table, names decoded: each is in the drawing, its colour kept below
        // 256 and 7 otherwise (the comparison is unsigned); layer "0" exists before the
        // import and keeps its own.
        if (capasTabla[0] == '(')
        {
            continue;
        }
        const std::string referencia = dxfAUTF8(capasTabla, codificacionDXF::kUTF8) + " ";
        const std::regex colorCapa(":(-?[0-9]+) ");
        EXPECT_EQ(lector.nombresCapas.size(),
                  static_cast<size_t>(std::distance(
                      std::sregex_iterator(referencia.begin(), referencia.end(), colorCapa),
                      std::sregex_iterator())));
        for (const std::string& nombre : lector.nombresCapas)
        {
            const size_t donde = referencia.find(nombre + ":");
            ASSERT_NE(donde, std::string::npos) << nombre;
            const Capa* capa = d.buscaCapa(nombre.c_str());
            ASSERT_NE(capa, nullptr) << nombre;
            const int color = std::stoi(referencia.substr(donde + nombre.size() + 1));
            if (nombre != "0")
            {
                EXPECT_EQ(capa->color.colorCAD, color >= 0 && color < 256 ? color : 7) << nombre;
            }
        }
    }
    EXPECT_GT(probados, 40);
}

// Records what the token reader tells, to see the fields as it hands them over.
class Grabadora : public ImportacionDXF
{
public:
    void capa(const std::string& n, int32_t c) override
    {
        dice("capa " + n + " " + std::to_string(c));
    }
    void punto(double px, double py, double pz, const std::string& c, int32_t k) override
    {
        dice("punto " + num(px) + " " + num(py) + " " + num(pz) + " " + c + " " +
             std::to_string(k));
    }
    void linea(double, double, double, double, double, double, const std::string& c,
               int32_t) override
    {
        dice("linea " + c);
    }
    void polilinea(const std::string& c, int32_t, bool cerrada) override
    {
        dice("polilinea " + c + (cerrada ? " cerrada" : ""));
    }
    void vertice(double px, double py, double pz, double b, const std::string&, int32_t) override
    {
        dice("vertice " + num(px) + " " + num(py) + " " + num(pz) + " " + num(b));
    }
    void finPolilinea() override { dice("fin"); }
    void arco(double, double, double, double, double, double, const std::string&, int32_t) override
    {
        dice("arco");
    }
    void circulo(double, double, double, double, const std::string&, int32_t) override
    {
        dice("circulo");
    }
    void texto(double, double, double, const std::string& t, double, double, int32_t,
               const std::string&, int32_t) override
    {
        dice("texto " + t);
    }

    std::string registro;

private:
    static std::string num(double v)
    {
        std::ostringstream o;
        o << v;
        return o.str();
    }
    void dice(const std::string& s) { registro += s + "\n"; }
};

std::string graba(const std::string& dxf)
{
    Grabadora g;
    g.lee(dxf.data(), dxf.size());
    return g.registro;
}

// Pairs written as a plain file from "code value;code value;...": "  code\nvalue\n" each.
std::string pares(const std::string& lista, const char* fin = "\n")
{
    std::string s;
    std::stringstream entrada(lista);
    std::string par;
    while (std::getline(entrada, par, ';'))
    {
        const size_t blanco = par.find(' ');
        s += "  " + par.substr(0, blanco) + fin +
             (blanco == std::string::npos ? "" : par.substr(blanco + 1)) + fin;
    }
    return s;
}

TEST(ImportacionDXF, LineasYPalabras)
{
    const std::string plano =
        pares("0 SECTION;2 ENTITIES;0 POINT;8 A;10 1.5;20 +2;30  -3e1;0 POINT;10 x;0 ENDSEC;0 EOF");
    EXPECT_EQ(graba(plano), "punto 1.5 2 -30 A 256\npunto 0 0 0 A 256\n");
    // "\r\n" is one line end: the same file written with CRLF reads the same.
    EXPECT_EQ(
        graba(pares(
            "0 SECTION;2 ENTITIES;0 POINT;8 A;10 1.5;20 +2;30  -3e1;0 POINT;10 x;0 ENDSEC;0 EOF",
            "\r\n")),
        graba(plano));
    // A trailing blank keeps a keyword from matching; the last line loses its last
    // character, whatever it is.
    EXPECT_EQ(graba(pares("0 SECTION;2 ENTITIES;0 POINT ;0 LINE")), "linea \n");
    EXPECT_EQ(graba("0\nSECTION\n2\nENTITIES\n0\nPOINT\n10\n7"), "punto 0 0 0  256\n");
    // Only a tail after unknown sections: it ends at once with nothing.
    EXPECT_EQ(graba(pares("0 SECTION;2 ENTITIES;0 SOLID;10 1;0 EOF;0 POINT")),
              "punto 0 0 0  256\n");
    EXPECT_EQ(graba("  0\nEOF\n"), "");
    // A value of 300 characters is read in pieces; the reader loses step and still ends.
    const std::string largo = pares("0 SECTION;2 ENTITIES;0 TEXT") + "  1\n" +
                              std::string(300, 'a') + "\n" + pares("0 POINT;0 EOF");
    EXPECT_NE(graba(largo).find("punto"), std::string::npos);
}

TEST(ImportacionDXF, CamposDeCadaEntidad)
{
    // Group 8 and group 2 write the same name: the later wins.
    EXPECT_EQ(graba(pares("0 SECTION;2 ENTITIES;0 POINT;8 A;2 B;0 POINT;2 B;8 A;0 EOF")),
              "punto 0 0 0 B 256\npunto 0 0 0 A 256\n");
    // The diameter sign in a text of more than two characters; the text is kept for the
    // next entity that has none.
    EXPECT_EQ(graba(pares("0 SECTION;2 ENTITIES;0 TEXT;1 %%C25;0 TEXT;0 TEXT;1 %%;0 EOF")),
              "texto \xC3\xB8"
              "25\ntexto \xC3\xB8"
              "25\ntexto %%\n");
    // A lightweight polyline: elevation as z, bulge kept by the reader, closed flag; without
    // a vertex count it is dropped.
    EXPECT_EQ(graba(pares("0 SECTION;2 ENTITIES;0 LWPOLYLINE;8 L;90 2;70 1;38 5;10 1;20 2;42 "
                          "0.5;10 3;20 4;0 LWPOLYLINE;10 9;20 9;0 EOF")),
              "polilinea L cerrada\nvertice 1 2 5 0.5\nvertice 3 4 5 0\nfin\n");
    // The LAYER table: each record's name and colour.
    EXPECT_EQ(graba(pares("0 TABLE;2 LAYER;0 LAYER;2 Muro;62 -3;0 LAYER;2 Eje;0 ENDTAB;0 "
                          "ENTITIES;0 ARC;0 CIRCLE;0 EOF")),
              "capa Muro -3\ncapa Eje 256\narco\ncirculo\n");
    // The entities end at a pair whose code is not 0 where a name is due.
    EXPECT_EQ(graba(pares("0 SECTION;2 ENTITIES;5 1F;0 POINT")), "");
}

TEST(ImportacionDXF, CodificacionDeLaCabecera)
{
    const auto capaCon = [](const std::string& cabecera, const std::string& nombre)
    {
        Grabadora g;
        const std::string dxf = cabecera + pares("0 TABLE;2 LAYER;0 LAYER") + "  2\n" + nombre +
                                "\n" + pares("0 ENDTAB");
        g.lee(dxf.data(), dxf.size());
        return g.registro;
    };
    // No header: Windows-1252; escapes decoded in any case.
    EXPECT_EQ(capaCon("", "A\xF1o \x80 \\U+039B"), "capa Año € Λ 256\n");
    EXPECT_EQ(capaCon(pares("9 $ACADVER;1 AC1009;9 $DWGCODEPAGE;3 ANSI_1252"), "A\xF1o"),
              "capa Año 256\n");
    // Another code page by its name; one not known here reads as Windows-1252.
    EXPECT_EQ(capaCon(pares("9 $ACADVER;1 AC1009;9 $DWGCODEPAGE;3 ANSI_1251"), "\xCF\xEB"),
              "capa Пл 256\n");
    EXPECT_EQ(capaCon(pares("9 $DWGCODEPAGE;3 DOS850"), "\xF1"), "capa ñ 256\n");
    // From AC1021 on the file is UTF-8.
    EXPECT_EQ(capaCon(pares("9 $ACADVER;1 AC1021"), "Año"), "capa Año 256\n");
}

// What the drawing gets: layers made on the way, colours, closed polylines as open ones
// ending on their first vertex, the bulge lost, stray VERTEX and SEQEND survived.
TEST(ImportaDXF, EntidadesEnElDibujo)
{
    const std::string dxf = pares(
        "0 TABLE;2 LAYER;0 LAYER;2 Apagada;62 -3;0 ENDTAB;0 SECTION;2 ENTITIES;0 VERTEX;10 9;0 "
        "SEQEND;0 POINT;8 Nueva;62 1;0 POINT;8 PorCapa;0 POINT;8 Apagada;62 300;0 POINT;62 600;0 "
        "LINE;8 ;10 1;11 2;0 LWPOLYLINE;8 P;90 4;70 1;10 0;20 0;42 1;10 1;20 0;10 1;20 1;10 0;20 "
        "1;0 POLYLINE;70 1;0 VERTEX;10 4;0 VERTEX;10 5;0 EOF");
    const std::string ruta = prueba::rutaTemporal("entidades.dxf");
    prueba::escribeFichero(ruta, dxf);
    Dibujo d;
    d.nuevoDocumento();
    ImportaDXF lector(&d);
    ASSERT_TRUE(lector.lee(ruta));
    lector.terminaAbierta();
    EXPECT_EQ(lector.informe.verticesSinPolilinea, 2u);
    EXPECT_EQ(lector.informe.polilineasSinFin, 1u);

    EXPECT_EQ(d.buscaCapa("Apagada")->color.colorCAD, 7);  // -3 is no index below 256
    EXPECT_EQ(d.buscaCapa("Nueva")->color.colorCAD, 1);    // the entity's index
    EXPECT_EQ(d.buscaCapa("PorCapa")->color.colorCAD, 7);  // 256: by layer, colour 7
    ASSERT_EQ(d.entidades.size(), 7u);
    const auto* rojo = dynamic_cast<const Punto*>(d.entidades[0]);
    ASSERT_NE(rojo, nullptr);
    EXPECT_EQ(rojo->color.colorCAD, 1);
    EXPECT_EQ(rojo->color.RGBA(), 0xFF0000FFu);
    EXPECT_EQ(rojo->capaEntidad()->nombre, "Nueva");
    EXPECT_EQ(d.entidades[1]->color.colorCAD, 256);
    EXPECT_EQ(d.entidades[2]->color.colorCAD, 300);  // a bare code
    EXPECT_EQ(d.entidades[3]->color.colorCAD, 256);  // 600: the default stays
    // The group 8 of the point before is kept; an empty one is DXF's layer "0".
    EXPECT_EQ(d.entidades[3]->capaEntidad()->nombre, "Apagada");
    EXPECT_EQ(d.entidades[4]->capaEntidad()->nombre, "0");

    const auto* cuadrado = dynamic_cast<const Polilinea*>(d.entidades[5]);
    ASSERT_NE(cuadrado, nullptr);
    EXPECT_FALSE(cuadrado->esCerrada());
    ASSERT_EQ(cuadrado->vertices.size(), 5u);
    EXPECT_EQ(cuadrado->vertices[4], cuadrado->vertices[0]);
    EXPECT_EQ(cuadrado->vertices[1], Punto3<double>(1, 0, 0));  // straight, bulge or not
    const auto* abierta = dynamic_cast<const Polilinea*>(d.entidades[6]);
    ASSERT_NE(abierta, nullptr);
    EXPECT_EQ(abierta->vertices.size(), 3u);
    EXPECT_EQ(abierta->vertices[2].x, 4);
}

// A plan at survey coordinates keeps 0.1 mm through import, save, reload and DXF export; and
// a real file read and written back passes the independent audit (its files go where that
// test reads them).
TEST(ImportaDXF, CoordenadasDeTopografiaYVueltaAlDXF)
{
    const std::string plano = pares(
        "0 SECTION;2 ENTITIES;0 LINE;8 Parcela;10 4000123.4567;20 4512345.6789;30 612.3456;11 "
        "4000124.0001;21 4512346.0001;31 612.0001;0 EOF");
    const std::string entrada = prueba::rutaTemporal("parcela.dxf");
    prueba::escribeFichero(entrada, plano);
    Dibujo d;
    d.nuevoDocumento();
    ASSERT_TRUE(d.importaDocumentoDFX(entrada));
    EXPECT_TRUE(d.hayCambios());
    const std::string cad = prueba::rutaTemporal("parcela.cad");
    resultadoFichero_t r;
    ASSERT_TRUE(d.guardaFichero(cad, r)) << r.mensaje;
    Dibujo recargado;
    ASSERT_TRUE(recargado.leeFichero(cad, r)) << r.mensaje;
    const std::string salida = prueba::rutaDXF("parcela_reimportada.dxf");
    {
        ExportaDXF dxf(salida);
        recargado.inicializaDocumentoDXF(dxf);
        recargado.exportaDocumentoDFX(dxf);
        recargado.finalizaDocumentoDXF(dxf);
        ASSERT_TRUE(dxf.termina()) << dxf.mensaje();
    }
    Dibujo vuelta;
    vuelta.nuevoDocumento();
    vuelta.importaDocumentoDFX(salida);
    for (const Dibujo* dibujo : {&recargado, &vuelta})
    {
        ASSERT_EQ(dibujo->entidades.size(), 1u);
        const auto* l = dynamic_cast<const Linea*>(dibujo->entidades[0]);
        ASSERT_NE(l, nullptr);
        EXPECT_NEAR(l->origen.x, 4000123.4567, 1e-4);
        EXPECT_NEAR(l->origen.y, 4512345.6789, 1e-4);
        EXPECT_NEAR(l->extremo.z, 612.0001, 1e-4);
        EXPECT_EQ(l->capaEntidad()->nombre, "Parcela");
    }
    // The drawing's extent follows the import.
    EXPECT_NEAR(d.extension.maximo.x, 4000124.0001, 1e-6);

    for (const char* real : {"trimesh/LM2.dxf", "ezdxf/ASCII_R12.dxf", "ezdxf/usa.dxf"})
    {
        Dibujo otro;
        otro.nuevoDocumento();
        otro.importaDocumentoDFX(std::string(CAD_DATOS_COMPARTIDOS) + "/dxf/" + real);
        std::string nombre =
            std::string("reimportado_") + std::filesystem::path(real).filename().string();
        ExportaDXF dxf(prueba::rutaDXF(nombre));
        otro.inicializaDocumentoDXF(dxf);
        otro.exportaDocumentoDFX(dxf);
        otro.finalizaDocumentoDXF(dxf);
        EXPECT_TRUE(dxf.termina()) << real << ": " << dxf.mensaje();
    }
    // A path that cannot be read adds nothing and still answers true.
    EXPECT_TRUE(d.importaDocumentoDFX(prueba::rutaTemporal("no_existe.dxf")));
    EXPECT_EQ(d.entidades.size(), 1u);
}

// The facade adds to the drawing it holds and tells the host: layers, control, document.
TEST(ImportaDXF, DesdeLaFachada)
{
    using Tipo = Fendrix::WrapDibujoCAD::tipoActualizacion;
    std::vector<Tipo> avisos;
    Fendrix::WrapDibujoCAD w(nullptr, [&avisos](Tipo t) { avisos.push_back(t); });
    w.nuevoDocumento();
    w.setActualiza(w.mActualiza);
    const std::string ruta = prueba::rutaTemporal("fachada.dxf");
    prueba::escribeFichero(ruta, pares("0 SECTION;2 ENTITIES;0 POINT;8 Cota;0 LINE;0 EOF"));
    avisos.clear();
    EXPECT_TRUE(w.importaDXF(ruta));
    // The third, the document's, reaches the host only when the selection changed.
    EXPECT_EQ(avisos, (std::vector<Tipo>{Tipo::kCapas, Tipo::kControl}));
    EXPECT_TRUE(w.existeCapa("Cota", false));
    std::vector<int64_t> handles;
    EXPECT_EQ(w.getEntidades(handles), 2);
    EXPECT_TRUE(w.importaDXF(prueba::rutaTemporal("no_existe.dxf")));
    EXPECT_EQ(w.getEntidades(handles), 2);
}

}  // namespace
}  // namespace cad
