// OBJ and MTL input: every real model of the shared data against the reference table, each
// difference named by the rule that makes it; the line forms, materials and offsets that catch
// real faults; the simpler token reader; and the facade.
#include "intercambio/ImportaOBJ.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Fendrix/WrapDibujoCAD.h"
#include "documento/Dibujo.h"
#include "documento/Material.h"
#include "entidades/Policara.h"
#include "intercambio/ExportaDXF.h"
#include "soporte/FicheroTemporal.h"
#include "soporte/TablaReferencia.h"

namespace cad
{
namespace
{

namespace fs = std::filesystem;
const std::string kDatos = CAD_DATOS_COMPARTIDOS;

struct Importado
{
    Dibujo dibujo;
    Policara p;
    informeOBJ_t informe;
};

// Imports OBJ text from memory; `mtl` maps a library's full path to its text.
void importa(Importado& r, const std::string& obj, std::map<std::string, std::string> mtl = {},
             const std::string& ruta = "/carpeta/modelo.obj")
{
    r.dibujo.nuevoDocumento();
    const LeeBibliotecaOBJ lee = [mtl](const std::string& nombre, std::string& bytes)
    {
        const auto it = mtl.find(nombre);
        if (it == mtl.end())
        {
            return false;
        }
        bytes = it->second;
        return true;
    };
    importaObjTexto(r.p, obj, ruta, r.dibujo, lee, &r.informe);
}

std::vector<int32_t> indices(const Policara& p, int32_t inicio, int n)
{
    std::vector<int32_t> v;
    for (int i = 0; i < n; ++i)
    {
        v.push_back(p.esquinas[static_cast<size_t>(inicio + i)].indice);
    }
    return v;
}

// --- the real models ---------------------------------------------------------------------------

struct fila_t
{
    bool ok = false;
    uint64_t v = 0, vt = 0, vn = 0, caras = 0, maxEsquinas = 0, triangulado = 0, materiales = 0;
    std::vector<std::string> mapKd;  // one per material, "-" for none
};

std::map<std::string, fila_t> tablaReferencia()
{
    std::map<std::string, fila_t> tabla;
    for (const prueba::filaTabla_t& c : prueba::leeTablaTSV(kDatos + "/obj_reference.tsv"))
    {
        fila_t r;
        r.ok = c.at("ok") == "ok";
        r.v = prueba::numeroColumna(c, "vertices");
        r.vt = prueba::numeroColumna(c, "texcoords");
        r.vn = prueba::numeroColumna(c, "normals");
        r.caras = prueba::numeroColumna(c, "total_faces");
        r.maxEsquinas = prueba::numeroColumna(c, "max_corners");
        r.triangulado = prueba::numeroColumna(c, "triangles(triangulate=true)");
        r.materiales = prueba::numeroColumna(c, "materials");
        std::stringstream m(c.at("map_Kd_per_material"));
        std::string campo;
        while (std::getline(m, campo, ','))
        {
            r.mapKd.push_back(campo);
        }
        tabla[c.at("file")] = r;
    }
    return tabla;
}

// What our reader must give for a model.
struct esperado_t
{
    uint64_t v, vt, vn, triangulos, cuadrilateros, cortadas, menosDeTres = 0, fueraDeRango = 0;
    uint64_t materiales, texturas;
};

TEST(ImportaOBJReales, CuentasDeLaTablaConLasReglasDelLector)
{
    const auto tabla = tablaReferencia();
    ASSERT_GT(tabla.size(), 30U);
    std::vector<std::string> ficheros;
    for (const auto& e : fs::recursive_directory_iterator(kDatos + "/obj"))
    {
        if (e.path().extension() == ".obj")
        {
            ficheros.push_back(fs::relative(e.path(), kDatos).string());
        }
    }
    std::sort(ficheros.begin(), ficheros.end());
    ASSERT_GE(ficheros.size(), 40U);

    for (const std::string& nombre : ficheros)
    {
        SCOPED_TRACE(nombre);
        ASSERT_EQ(tabla.count(nombre), 1U) << "no reference row";
        const fila_t& r = tabla.at(nombre);
        esperado_t e{};
        e.v = r.v;
        e.vt = r.vt;
        e.vn = r.vn;
        e.materiales = r.materiales;
        e.texturas = static_cast<uint64_t>(
            std::count_if(r.mapKd.begin(), r.mapKd.end(), [](auto& t) { return t != "-"; }));
        if (r.maxEsquinas <= 4)
        {
            // Without n-gons the triangulated count tells quads from triangles.
            e.cuadrilateros = r.triangulado - r.caras;
            e.triangulos = r.caras - e.cuadrilateros;
        }
        const auto ajusta = [&](const char* fichero, const char* regla, auto cambio)
        {
            if (nombre.find(fichero) != std::string::npos)
            {
                SCOPED_TRACE(regla);
                cambio();
            }
        };
        // Faces of more than four corners keep the first four: quads, each counted as cut.
        ajusta("spot_control_mesh", "16 pentagons cut to quads",
               [&] { e = {188, 267, 0, 4, 176, 16, 0, 0, 0, 0}; });
        ajusta("issue-319-002", "3 octagons cut to quads",
               [&] { e.cuadrilateros = e.cortadas = 3; });
        ajusta("issue-319-003", "a 10-gon cut to a quad",
               [&] { e.cuadrilateros = e.cortadas = 1; });
        ajusta("concave_polygon", "a 66-gon cut to a quad",
               [&] { e.cuadrilateros = e.cortadas = 1; });
        ajusta("space_in_material", "a 66-gon cut to a quad",
               [&] { e.cuadrilateros = e.cortadas = 1; });
        ajusta("rabbit.obj", "6 n-gons of up to 16 corners cut to quads",
               [&] { e.triangulos = 176, e.cuadrilateros = 502, e.cortadas = 6; });
        // The reference's weak spots: it fails on these, our scan reads them.
        ajusta("polygonfaces", "'f 1// 2// ...' pentagon: a quad, cut",
               [&] { e = {5, 0, 0, 0, 1, 1, 0, 0, 0, 0}; });
        ajusta("wallhole", "backslash continuation: the first four corners of 13 faces",
               [&] { e = {92, 92, 92, 0, 13, 13, 0, 0, 0, 0}; });
        ajusta("zero-face-idx", "a corner 0 ends the list: 'f 0/0/0 ...' has no corner",
               [&] { e = {4, 4, 1, 1, 0, 0, 1, 0, 1, 0}; });
        // A negative number before any vertex names nothing: the guard drops its face.
        ajusta("invalid-relative-vertex", "negative index out of range",
               [&] { e.triangulos = 0, e.fueraDeRango = 1; });
        ajusta("invalid-face-definition", "two-corner faces dropped", [&] { e.menosDeTres = 2; });
        // Libraries: one per mtllib line, the rest of the line its name; a keyword needs its
        // trailing blank; a record needs a name.
        ajusta("mtllib-multiple", "three names on one mtllib line: one missing library",
               [&] { e.materiales = e.texturas = 0; });
        ajusta("whitespace issue46", "three names on one mtllib line: one missing library",
               [&] { e.materiales = 0; });
        ajusta("fuze", "'newmtl' followed by a tab is no newmtl",
               [&] { e.materiales = e.texturas = 0; });
        ajusta("empty_mat", "'newmtl ' with an empty name stores nothing",
               [&] { e.materiales = 0; });

        Importado i;
        i.dibujo.nuevoDocumento();
        i.p.importaObj(kDatos + "/" + nombre, i.dibujo, &i.informe);
        const informeOBJ_t& n = i.informe;
        EXPECT_TRUE(n.abierto);
        EXPECT_EQ(n.vertices, e.v);
        EXPECT_EQ(n.coordenadasUV, e.vt);
        EXPECT_EQ(n.normales, e.vn);
        if (r.maxEsquinas > 4 && e.cuadrilateros == 0)
        {
            ADD_FAILURE() << "n-gons with no rule";
        }
        EXPECT_EQ(i.p.triangulos.size(), e.triangulos);
        EXPECT_EQ(i.p.cuadrilateros.size(), e.cuadrilateros);
        EXPECT_EQ(n.carasCortadas, e.cortadas);
        EXPECT_EQ(n.carasMenosDeTres, e.menosDeTres);
        EXPECT_EQ(n.carasFueraDeRango, e.fueraDeRango);
        EXPECT_EQ(n.materialesLeidos, e.materiales);
        EXPECT_EQ(n.texturas.size() + n.texturasQueFaltan.size(), e.texturas);
        EXPECT_EQ(i.p.esquinas.size(), 3 * e.triangulos + 4 * e.cuadrilateros);
        // Every face names points that exist; materials are those made in the drawing.
        for (const esquina_t& q : i.p.esquinas)
        {
            EXPECT_TRUE(q.material == 0xFFFF ||
                        i.dibujo.materialId(static_cast<int16_t>(q.material)));
        }
        for (int32_t t : i.p.triangulos)
        {
            ASSERT_TRUE(i.p.caraValida(t, 3));
        }
        for (int32_t q : i.p.cuadrilateros)
        {
            ASSERT_TRUE(i.p.caraValida(q, 4));
        }
    }
}

// The spot checks of the table's models that counts alone would miss.
TEST(ImportaOBJReales, CasosConcretos)
{
    const auto lee = [](const std::string& nombre, Importado& i)
    {
        i.dibujo.nuevoDocumento();
        i.p.importaObj(kDatos + "/obj/" + nombre, i.dibujo, &i.informe);
    };
    {
        // UTF-16 is refused with a reason, not read as garbage.
        Importado i;
        lee("assimp_utf16/box_UTF16BE.obj", i);
        EXPECT_TRUE(i.informe.abierto);
        EXPECT_NE(i.informe.motivo.find("UTF-16"), std::string::npos);
        EXPECT_TRUE(i.p.puntos.empty());
    }
    {
        // Textures beside the library are found; a Windows '.\name' is joined as it is and
        // so is missing here.
        Importado die;
        lee("webglobj_die/die.obj", die);
        EXPECT_EQ(die.informe.texturas.size(), 6U);
        EXPECT_EQ(die.informe.materialesCreados, 6U);
        Importado spider;
        lee("assimp_spider/spider.obj", spider);
        ASSERT_EQ(spider.informe.texturasQueFaltan.size(), 5U);
        EXPECT_EQ(spider.informe.texturasQueFaltan[0],
                  kDatos + "/obj/assimp_spider/.\\wal67ar_small.jpg");
    }
    {
        // Relative numbers of v, vt and vn resolve against the lists read so far.
        Importado i;
        lee("trimesh_negative_indices/negative_indices.obj", i);
        EXPECT_EQ(i.informe.esquinasNegativas, 24U);
        EXPECT_EQ(i.informe.normalesCalculadas, 0U);
        Importado cornell;
        lee("tinyobj_cornell_box/cornell_box.obj", cornell);
        EXPECT_EQ(indices(cornell.p, cornell.p.cuadrilateros[0], 4),
                  (std::vector<int32_t>{0, 1, 2, 3}));
    }
    {
        Importado i;
        lee("trimesh_polygon_faces/wallhole.obj", i);
        EXPECT_EQ(i.informe.lineasContinuadas, 3U);
    }
    {
        Importado i;  // nothing there: the soup stays empty
        lee("no_existe/nada.obj", i);
        EXPECT_FALSE(i.informe.abierto);
        EXPECT_TRUE(i.p.puntos.empty() && i.p.esquinas.empty());
    }
}

// --- line forms -------------------------------------------------------------------------------

TEST(ImportaOBJ, FormasDeCara)
{
    const std::string puntos =
        "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 0 0 1\nvt 0.5 0.25\nvt 0.75 1\n"
        "vn 0 0 2\nvn 0 1 0\n";
    Importado i;
    importa(i, puntos +
                   "f 1 2 3\r\n"            // CRLF
                   "f 1 2 3 4 5\n"          // pentagon: the first four
                   "f 1 2\n"                // two corners
                   "f 1 2 0 3\n"            // a 0 ends the corners
                   "f 1 2 6\n"              // beyond the points
                   "f -5 -4 -3\n"           // relative to the points read
                   "f 1/1/1 2/2/2 3/3/3\n"  // no blank after the last corner
                   "f 1/2 2 3/-2/-1\n"      // uv carried, relative vt and vn
                   "f  2//  3// 4//\n"      // double blanks, empty normal fields
                   "f\t1\t2\t3\n");         // tabs are no blanks: one corner
    const Policara& p = i.p;
    ASSERT_EQ(p.triangulos.size(), 5U);
    ASSERT_EQ(p.cuadrilateros.size(), 1U);
    EXPECT_EQ(indices(p, p.cuadrilateros[0], 4), (std::vector<int32_t>{0, 1, 2, 3}));
    EXPECT_EQ(i.informe.carasCortadas, 1U);
    EXPECT_EQ(i.informe.carasMenosDeTres, 3U);
    EXPECT_EQ(i.informe.carasFueraDeRango, 1U);
    EXPECT_EQ(i.informe.esquinasNegativas, 4U);
    EXPECT_EQ(indices(p, p.triangulos[1], 3), (std::vector<int32_t>{0, 1, 2}));
    EXPECT_EQ(indices(p, p.triangulos[4], 3), (std::vector<int32_t>{1, 2, 3}));

    // Computed normal: (A - P) x (B - P) with A the previous corner and B the next, so a
    // triangle counter-clockwise seen from +Z gets -Z at every corner.
    const esquina_t* t = &p.esquinas[static_cast<size_t>(p.triangulos[0])];
    for (int k = 0; k < 3; ++k)
    {
        EXPECT_FLOAT_EQ(t[k].normal.z, -1.0F);
        EXPECT_EQ(t[k].uv.x, 0.0);
        EXPECT_EQ(t[k].material, 0xFFFF);
    }
    // Given normals are normalised; given uvs taken.
    t = &p.esquinas[static_cast<size_t>(p.triangulos[2])];
    EXPECT_FLOAT_EQ(t[0].normal.z, 1.0F);
    EXPECT_EQ(t[2].uv.x, 0.75);
    // "1/2 2 3/-2/-1": the second corner keeps the first's uv, the third names vt 1 and vn 2.
    t = &p.esquinas[static_cast<size_t>(p.triangulos[3])];
    EXPECT_EQ(t[0].uv.y, 1.0);
    EXPECT_EQ(t[1].uv.y, 1.0);
    EXPECT_EQ(t[2].uv.y, 0.25);
    EXPECT_FLOAT_EQ(t[2].normal.y, 1.0F);
    // "2//" with a blank behind: no normal, computed, rather than vn 3 read across the blank.
    t = &p.esquinas[static_cast<size_t>(p.triangulos[4])];
    EXPECT_FLOAT_EQ(t[0].normal.z, -1.0F);
    EXPECT_EQ(i.informe.normalesCalculadas, 3U + 4U + 3U + 1U + 2U + 3U);
}

TEST(ImportaOBJ, NumerosComoScanf)
{
    Importado i;
    importa(i,
            "v 1 2. 2.e01\n"       // kept
            "v +1e+2 -.5 1E2 7\n"  // kept, a fourth value ignored
            "v 1 2 3.1+e2\n"       // 3.1, the rest ignored: kept
            "v 3.1+e2 1 2\n"       // the second value fails: dropped
            "v 1e 2 3\n"           // an exponent mark with no digits fails
            "v 1 2\n"              // two values: dropped
            "v 0x1p3 +-1 2\n"      // "+-" is no number
            "v\t0x1p3 1e400 1e-400\n"
            "vt 0.5\n"      // one value: dropped
            "vp 1 2 3\n"    // starts with v: "p" is no number
            "vn 0 0 0\n");  // a zero normal stays zero
    ASSERT_EQ(i.p.puntos.size(), 4U);
    EXPECT_EQ(i.p.puntos[0].z, 20.0);
    EXPECT_EQ(i.p.puntos[1].x, 100.0);
    EXPECT_EQ(i.p.puntos[1].y, -0.5);
    EXPECT_EQ(i.p.puntos[2].z, 3.1);
    EXPECT_EQ(i.p.puntos[3].x, 8.0);
    EXPECT_TRUE(std::isinf(i.p.puntos[3].y));
    EXPECT_EQ(i.p.puntos[3].z, 0.0);
    EXPECT_EQ(i.informe.coordenadasUV, 0U);
    EXPECT_EQ(i.informe.normales, 1U);
}

// --- materials --------------------------------------------------------------------------------

TEST(ImportaOBJ, BibliotecasYMateriales)
{
    const std::string mtl =
        "Kd 0.1 0.1 0.1\n"  // before any newmtl: belongs to nothing
        "newmtl primero\r\n"
        "Kd 1 0.5 0.25\n"
        "map_Kd texturas/a b.png\n"
        "newmtl segundo\n"
        "Ks 0.5\n"  // a failed parse gives 1, 1, 1
        "map_Kd /absoluta.png\n"
        "newmtl primero\n"  // a repeated name keeps the first
        "Kd 0 0 0\n"
        "newmtl \n"          // empty: stored nowhere
        "newmtl\tconTab\n";  // no blank behind the keyword
    MaterialesOBJ m;
    m.leeTextoMTL(mtl, "/lib/carpeta/b.mtl");
    ASSERT_EQ(m.materiales.size(), 2U);
    const material_obj_t& a = m.materiales[0];
    const material_obj_t& b = m.materiales[1];
    EXPECT_EQ(a.nombre, "primero");
    // The first record of a library starts from zeros, later ones from the reset values.
    EXPECT_EQ(a.Ka[0], 0.0F);
    EXPECT_EQ(a.Kd[1], 0.5F);
    EXPECT_EQ(a.Ns, 0.0);
    EXPECT_EQ(b.Ka[0], 1.0F);
    EXPECT_EQ(b.Ns, 100.0);
    EXPECT_EQ(b.Ks[2], 1.0F);
    EXPECT_EQ(a.textura, "/lib/carpeta/texturas/a b.png");
    EXPECT_EQ(b.textura, "/lib/carpeta//absoluta.png");
    EXPECT_EQ(m.buscaMaterial("segundo"), &m.materiales[1]);
    EXPECT_EQ(m.buscaMaterial("segundo "), nullptr);

    Importado i;
    importa(i,
            "mtllib libs/b.mtl\n"
            "v 0 0 0\nv 1 0 0\nv 0 1 0\n"
            "f 1 2 3\n"
            "usemtl primero\n"
            "f 1 2 3\n"
            "usemtl primero\n"  // the same: no second pair
            "usemtl nadie\n"    // unknown: the material stays
            "f 1 2 3\n"
            "usemtl segundo\n"
            "f 1 2 3 1\n"
            "usemtl primero\n"  // back: one pair more, no second material
            "f 1 2 3\n",
            {{"/carpeta/libs/b.mtl", mtl}});
    EXPECT_EQ(i.informe.bibliotecas, (std::vector<std::string>{"/carpeta/libs/b.mtl"}));
    EXPECT_EQ(i.informe.materialesCreados, 2U);
    EXPECT_EQ(i.informe.usemtlDesconocidos, 1U);
    EXPECT_EQ(i.informe.texturasQueFaltan.size(), 2U);
    EXPECT_EQ(i.p.cambiosMaterial, (std::vector<int32_t>{1, 0, 3, 0, 3, 1}));
    const uint16_t m1 = i.p.esquinas[3].material;
    EXPECT_EQ(i.p.esquinas[0].material, 0xFFFF);
    EXPECT_EQ(i.p.esquinas[6].material, m1);
    EXPECT_EQ(i.p.esquinas.back().material, m1);
    const Material* creado = i.dibujo.materialId(static_cast<int16_t>(m1));
    ASSERT_NE(creado, nullptr);
    EXPECT_EQ(creado->color(), 0x00FF7F3FU);
    EXPECT_EQ(creado->textura(), "/carpeta/libs/texturas/a b.png");
    EXPECT_EQ(creado->componentes[1].y, 0.5F);
    EXPECT_EQ(creado->componentes[0].x, 0.0F);
}

// --- the "#DX:" offset ---------------------------------------------------------------------------

TEST(ImportaOBJ, DesplazamientoGuardadoYLeido)
{
    Importado i;
    importa(i,
            "v 1 1 1\n"
            "#DX:4000000.1234 DY:300000.5678 DZ:100.25\n"
            "v 0.0001 0.0002 0.5\n"
            "#DX:1 DY:2\n"  // no DZ: changes nothing
            "v 1 2 3\n"
            "f 1 2 3\n");
    ASSERT_EQ(i.p.puntos.size(), 3U);
    EXPECT_EQ(i.p.puntos[0].x, 1.0);
    EXPECT_EQ(i.informe.desplazamientos, 1U);
    const std::string ruta = prueba::rutaTemporal("georreferenciado.cad");
    resultadoFichero_t r;
    auto* s = new Policara();
    s->puntos = i.p.puntos;
    s->esquinas = i.p.esquinas;
    s->triangulos = i.p.triangulos;
    s->asignaCapa(i.dibujo.capas[0]);
    ASSERT_TRUE(i.dibujo.nuevaEntidad(s));
    ASSERT_TRUE(i.dibujo.guardaFichero(ruta, r)) << r.mensaje;
    Dibujo leido;
    ASSERT_TRUE(leido.leeFichero(ruta, r)) << r.mensaje;
    ASSERT_EQ(leido.entidades.size(), 1U);
    const auto* p = dynamic_cast<const Policara*>(*leido.entidades.begin());
    ASSERT_NE(p, nullptr);
    ASSERT_EQ(p->puntos.size(), 3U);
    EXPECT_NEAR(p->puntos[1].x, 4000000.1235, 1e-4);
    EXPECT_NEAR(p->puntos[1].y, 300000.5680, 1e-4);
    EXPECT_NEAR(p->puntos[2].x, 4000001.1234, 1e-4);
    EXPECT_NEAR(p->puntos[2].z, 103.25, 1e-4);
    EXPECT_EQ(p->triangulos.size(), 1U);

    // A polyface writes no DXF entity: the export of the drawing brings nothing back.
    const std::string dxf = prueba::rutaTemporal("georreferenciado.dxf");
    {
        ExportaDXF e(dxf);
        leido.inicializaDocumentoDXF(e);
        leido.exportaDocumentoDFX(e);
        leido.finalizaDocumentoDXF(e);
        ASSERT_TRUE(e.termina()) << e.mensaje();
    }
    Dibujo vuelta;
    vuelta.nuevoDocumento();
    vuelta.importaDocumentoDFX(dxf);
    EXPECT_TRUE(vuelta.entidades.empty());
}

// --- the token reader and the facade ---------------------------------------------------------

TEST(ImportaOBJ, DocumentoYFachada)
{
    const std::string bueno = prueba::rutaTemporal("bueno.obj");
    const std::string cuadro = prueba::rutaTemporal("cuadro.obj");
    prueba::escribeFichero(bueno,
                           "# a comment\nv 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nvn 0 0 1\n"
                           "f 1/1/1 2/1/1 3/1/1\n");
    prueba::escribeFichero(cuadro, "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    Dibujo d;
    d.nuevoDocumento();
    EXPECT_TRUE(d.importaDocumentoOBJ(bueno));
    EXPECT_TRUE(d.hayCambios());
    EXPECT_FALSE(d.importaDocumentoOBJ(cuadro));  // not nine numbers
    EXPECT_FALSE(d.importaDocumentoOBJ(prueba::rutaTemporal("no_existe.obj")));
    EXPECT_EQ(d.entidades.size(), 0U);

    Fendrix::WrapDibujoCAD w(nullptr, nullptr);
    w.nuevoDocumento();
    EXPECT_TRUE(w.importaOBJ(bueno));
    const int64_t h = w.nuevoObjeto3D(kDatos + "/obj/webglobj_die/die.obj");
    ASSERT_NE(h, 0);
    const auto* p = dynamic_cast<const Policara*>(w.mDibujo->buscaEntidad(h));
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->cuadrilateros.size(), 6U);
    for (const esquina_t& q : p->esquinas)
    {
        ASSERT_NE(w.mDibujo->materialId(static_cast<int16_t>(q.material)), nullptr);
    }
    // An unreadable file still inserts its (empty) soup.
    EXPECT_NE(w.nuevoObjeto3D(prueba::rutaTemporal("no_existe.obj")), 0);
}

}  // namespace
}  // namespace cad
