// The command-line host's creation orders played as `tarvelo guion` plays a script: each
// script under cad/hosts/tarvelo/pruebas must give its transcript exactly (prompts, option
// markers, counts, Enter and esc), leave in the files it saves the entities its commands
// describe, and undo and redo them byte for byte.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "Fendrix/Fendrix.h"
#include "Sesion.h"
#include "documento/Dibujo.h"
#include "entidades/Cilindro.h"
#include "entidades/Cubo.h"
#include "entidades/Entidad.h"
#include "entidades/Esfera.h"
#include "entidades/Objeto3D.h"
#include "entidades/Plano.h"
#include "entidades/Polilinea.h"
#include "entidades/Prisma.h"
#include "entidades/SistemaLocal.h"
#include "entidades/Texto.h"
#include "modelo/Modelo3D.h"
#include "soporte/FicheroTemporal.h"
#include "soporte/ObjetoEnMemoria.h"

namespace
{

namespace fs = std::filesystem;
using cad::Punto3;
using puntos_t = std::vector<Punto3<double>>;

std::string leeTexto(const fs::path& ruta)
{
    std::ifstream f(ruta, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(f), {});
}

// Puts the working directory back however the test ends.
struct CarpetaDeTrabajo
{
    explicit CarpetaDeTrabajo(const fs::path& carpeta) : anterior(fs::current_path())
    {
        fs::current_path(carpeta);
    }
    ~CarpetaDeTrabajo() { fs::current_path(anterior); }
    CarpetaDeTrabajo(const CarpetaDeTrabajo&) = delete;
    CarpetaDeTrabajo& operator=(const CarpetaDeTrabajo&) = delete;
    fs::path anterior;
};

// Plays pruebas/NOMBRE.txt as `tarvelo guion` does, in a fresh working folder that it
// returns, and checks the transcript against pruebas/NOMBRE.esperado; on a difference the
// transcript it gave is left in that folder as NOMBRE.obtenido.
fs::path juega(const std::string& nombre)
{
    const fs::path carpeta = cad::prueba::rutaTemporal("guion-" + nombre);
    fs::create_directories(carpeta);
    const fs::path pruebas = CAD_TARVELO_PRUEBAS;
    // The files a script reads (NOMBRE_*.dxf, .obj, .mtl) go into its working folder.
    for (const auto& f : fs::directory_iterator(pruebas))
    {
        const std::string n = f.path().filename().string();
        if (n.rfind(nombre + "_", 0) == 0 && f.path().extension() != ".txt" &&
            f.path().extension() != ".esperado")
        {
            fs::copy_file(f.path(), carpeta / n, fs::copy_options::overwrite_existing);
        }
    }
    std::ifstream guion(pruebas / (nombre + ".txt"));
    EXPECT_TRUE(guion.good()) << nombre << ".txt";
    std::ostringstream salida;
    int codigo = -1;
    {
        const CarpetaDeTrabajo enCarpeta(carpeta);
        tarvelo::Sesion::opciones_t opciones;
        opciones.eco = true;
        opciones.detieneAlFallar = true;
        tarvelo::Sesion sesion(guion, salida, opciones);
        codigo = sesion.ejecuta();
    }
    EXPECT_EQ(codigo, 0);
    const std::string esperado = leeTexto(pruebas / (nombre + ".esperado"));
    EXPECT_EQ(salida.str(), esperado) << "transcript left in " << carpeta / (nombre + ".obtenido");
    if (salida.str() != esperado)
    {
        std::ofstream(carpeta / (nombre + ".obtenido"), std::ios::binary) << salida.str();
    }
    return carpeta;
}

// Two files' bytes, told apart by their sizes and first differing offset.
::testing::AssertionResult mismosBytes(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b)
{
    if (a == b)
    {
        return ::testing::AssertionSuccess();
    }
    const auto d = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return ::testing::AssertionFailure() << a.size() << " and " << b.size()
                                         << " bytes, differing from byte " << (d.first - a.begin());
}

// The undo of one command, saved by the script around it as PREFIJO_antes (when the
// command only adds), _hecho, _deshecho and _rehecho: undo gives back the bytes from before
// it, redo the bytes from after it.
void compruebaDeshacer(const fs::path& p, const std::string& prefijo)
{
    const auto bytes = [&](const char* cual)
    {
        const fs::path ruta = p / (prefijo + "_" + cual + ".cad");
        EXPECT_TRUE(fs::exists(ruta)) << ruta;
        return cad::prueba::leeFichero(ruta.string());
    };
    const auto hecho = bytes("hecho");
    EXPECT_TRUE(mismosBytes(hecho, bytes("rehecho"))) << prefijo << ": redo differs";
    const auto deshecho = bytes("deshecho");
    EXPECT_FALSE(mismosBytes(hecho, deshecho)) << prefijo << ": undo changed nothing";
    if (fs::exists(p / (prefijo + "_antes.cad")))
    {
        EXPECT_TRUE(mismosBytes(bytes("antes"), deshecho)) << prefijo << ": undo left a trace";
    }
}

// A saved drawing read back by the kernel.
struct Leido
{
    explicit Leido(const fs::path& ruta) : fachada(nullptr, nullptr)
    {
        fachada.nuevoDocumento();
        EXPECT_TRUE(fachada.lee(ruta.string())) << ruta;
    }
    // The entities of one file tag, in list order.
    template <typename T>
    std::vector<const T*> de(const char* tag) const
    {
        std::vector<const T*> v;
        for (const cad::Entidad* e : fachada.mDibujo->entidades)
        {
            if (std::string(e->etiqueta()) == tag)
            {
                v.push_back(dynamic_cast<const T*>(e));
                EXPECT_NE(v.back(), nullptr) << tag;
            }
        }
        return v;
    }
    size_t cuantas() const { return fachada.mDibujo->entidades.size(); }
    Fendrix::WrapDibujoCAD fachada;
};

puntos_t puntos(const cad::Entidad* e)
{
    puntos_t v;
    if (e != nullptr)
    {
        e->coordenadas(v);
    }
    return v;
}

// Typed coordinates come back exactly; the kernel's winding of a face is its own choice, so
// faces and contours compare as sets where the order is not the command's to keep.
::testing::AssertionResult mismosPuntos(puntos_t a, puntos_t b, bool enOrden)
{
    const auto menor = [](const Punto3<double>& p, const Punto3<double>& q)
    { return std::tie(p.x, p.y, p.z) < std::tie(q.x, q.y, q.z); };
    if (!enOrden)
    {
        std::sort(a.begin(), a.end(), menor);
        std::sort(b.begin(), b.end(), menor);
    }
    const auto texto = [](const puntos_t& v)
    {
        std::ostringstream s;
        for (const auto& p : v)
        {
            s << "(" << p.x << "," << p.y << "," << p.z << ")";
        }
        return s.str();
    };
    if (a == b)
    {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << texto(a) << " vs " << texto(b);
}

// Polyline: Borrar down to nothing drops the entity, Cerrar shows from the third vertex,
// both by their capitals; `una` stops after one, `cerrada` closes it, and a cancel keeps
// what was drawn. Undo takes the closed polyline away and redo brings it back.
TEST(GuionCreacion, polilineaConSusOpciones)
{
    const fs::path p = juega("creacion_polilinea");
    compruebaDeshacer(p, "polilinea");
    const Leido hecho(p / "polilinea_hecho.cad");
    const auto hechas = hecho.de<cad::Polilinea>("Pg1");
    ASSERT_EQ(hechas.size(), 1U);
    EXPECT_TRUE(hechas[0]->cerrada);
    EXPECT_TRUE(mismosPuntos(puntos(hechas[0]), {{0, 100, 0}, {10, 100, 0}, {20, 110, 0}}, true));

    const Leido final(p / "final.cad");
    const auto todas = final.de<cad::Polilinea>("Pg1");
    ASSERT_EQ(todas.size(), 3U);
    EXPECT_TRUE(todas[1]->cerrada);
    EXPECT_TRUE(mismosPuntos(puntos(todas[1]), {{0, 200, 0}, {50, 200, 0}, {50, 250, 0}}, true));
    EXPECT_FALSE(todas[2]->cerrada);
    EXPECT_TRUE(mismosPuntos(puntos(todas[2]), {{0, 300, 0}, {10, 300, 0}}, true));
}

// Merge: a bump that crosses an open polyline twice replaces the stretch between the
// crossings; a polyline merged with itself is refused; a drawn source merged and deleted
// comes back with undo.
TEST(GuionCreacion, fusionDePolilineas)
{
    const fs::path p = juega("creacion_fusiona");
    const Leido fusion(p / "fusion.cad");
    const auto lineas = fusion.de<cad::Polilinea>("Pg1");
    ASSERT_EQ(lineas.size(), 2U);
    EXPECT_TRUE(mismosPuntos(
        puntos(lineas[0]),
        {{0, 100, 0}, {100, 100, 0}, {100, 150, 0}, {300, 150, 0}, {300, 100, 0}, {400, 100, 0}},
        true));
    const Leido nueva(p / "nueva.cad");
    const auto conNueva = nueva.de<cad::Polilinea>("Pg1");
    ASSERT_EQ(conNueva.size(), 3U);  // the drawn source is gone
    EXPECT_TRUE(mismosPuntos(
        puntos(conNueva[2]),
        {{0, 300, 0}, {100, 300, 0}, {100, 320, 0}, {200, 320, 0}, {200, 300, 0}, {400, 300, 0}},
        true));
}

// Triangle strip: four points give two faces, the second over the last three points; Enter
// at the first prompt and a cancel after two points give none.
TEST(GuionCreacion, cara3dEnTira)
{
    const fs::path p = juega("creacion_cara3d");
    compruebaDeshacer(p, "cara3d");
    const Leido hecho(p / "cara3d_hecho.cad");
    const auto caras = hecho.de<cad::Objeto3D>("Ob1");
    ASSERT_EQ(caras.size(), 2U);
    EXPECT_TRUE(mismosPuntos(puntos(caras[0]), {{0, 0, 0}, {100, 0, 0}, {0, 100, 0}}, false));
    EXPECT_TRUE(mismosPuntos(puntos(caras[1]), {{100, 0, 0}, {0, 100, 0}, {100, 100, 5}}, false));
    for (const cad::Objeto3D* o : caras)
    {
        EXPECT_EQ(o->modelo->caras().size(), 1U);
    }
}

// Parallelogram by three corners, the fourth at P3 + (P1 - P2), with the current material.
TEST(GuionCreacion, cara3d4ConElMaterialActual)
{
    const fs::path p = juega("creacion_cara3d4");
    compruebaDeshacer(p, "cara3d4");
    const Leido hecho(p / "cara3d4_hecho.cad");
    const auto caras = hecho.de<cad::Objeto3D>("Ob1");
    ASSERT_EQ(caras.size(), 1U);
    EXPECT_TRUE(
        mismosPuntos(puntos(caras[0]), {{0, 0, 0}, {100, 0, 0}, {120, 50, 0}, {20, 50, 0}}, false));
    EXPECT_EQ(caras[0]->material(), 1);
}

// A plane fitted to the given points, which become its contour; two points make nothing.
TEST(GuionCreacion, caraAjustaUnPlano)
{
    const fs::path p = juega("creacion_cara");
    compruebaDeshacer(p, "cara");
    const Leido hecho(p / "cara_hecho.cad");
    const auto planos = hecho.de<cad::Plano>("Pn1");
    ASSERT_EQ(planos.size(), 1U);
    EXPECT_TRUE(mismosPuntos(puntos(planos[0]),
                             {{0, 0, 0}, {100, 0, 0}, {100, 100, 10}, {0, 100, 10}}, true));
}

// Planes by their contour: one of three points kept, one of two dropped.
TEST(GuionCreacion, planoPorSuContorno)
{
    const fs::path p = juega("creacion_plano");
    compruebaDeshacer(p, "plano");
    const Leido hecho(p / "plano_hecho.cad");
    const auto planos = hecho.de<cad::Plano>("Pn1");
    ASSERT_EQ(planos.size(), 1U);
    EXPECT_EQ(hecho.cuantas(), 1U);
    EXPECT_TRUE(mismosPuntos(puntos(planos[0]), {{0, 0, 0}, {100, 0, 0}, {100, 100, 0}}, true));
}

// The polyline's points become the plane's contour and the polyline goes.
TEST(GuionCreacion, contornoPlanoDeUnaPolilinea)
{
    const fs::path p = juega("creacion_contornoplano");
    const Leido final(p / "final.cad");
    EXPECT_TRUE(final.de<cad::Polilinea>("Pg1").empty());
    const auto planos = final.de<cad::Plano>("Pn1");
    ASSERT_EQ(planos.size(), 1U);
    EXPECT_TRUE(mismosPuntos(puntos(planos[0]),
                             {{200, 200, 0}, {300, 200, 0}, {300, 300, 0}, {200, 300, 0}}, true));
}

// Copies along the normal: by a typed distance, and by a point's distance from the plane.
TEST(GuionCreacion, paralelaPlanoPorDistanciaYPorPunto)
{
    const fs::path p = juega("creacion_paralelaplano");
    compruebaDeshacer(p, "paralelaplano");
    const Leido hecho(p / "paralelaplano_hecho.cad");
    const auto planos = hecho.de<cad::Plano>("Pn1");
    ASSERT_EQ(planos.size(), 4U);
    EXPECT_TRUE(mismosPuntos(puntos(planos[2]), {{0, 0, 10}, {100, 0, 10}, {100, 100, 10}}, true));
    EXPECT_TRUE(
        mismosPuntos(puntos(planos[3]), {{200, 0, -5}, {300, 0, -5}, {300, 100, -5}}, true));
}

// A plane through a line's midpoint, perpendicular to the picked plane: here y = 20.
TEST(GuionCreacion, perpendicularPlanoPorUnaLinea)
{
    const fs::path p = juega("creacion_perpendicularplano");
    compruebaDeshacer(p, "perpendicularplano");
    const Leido hecho(p / "perpendicularplano_hecho.cad");
    const auto planos = hecho.de<cad::Plano>("Pn1");
    ASSERT_EQ(planos.size(), 2U);
    const puntos_t contorno = puntos(planos[1]);
    ASSERT_FALSE(contorno.empty());
    for (const auto& q : contorno)
    {
        EXPECT_NEAR(q.y, 20.0, 1e-9);
    }
    EXPECT_NEAR(std::abs(planos[1]->a) + std::abs(planos[1]->c), 0.0, 1e-9);
}

// Box by two corners and a height point; a cancel before the height makes none.
TEST(GuionCreacion, cuboPorEsquinasYAltura)
{
    const fs::path p = juega("creacion_cubo");
    compruebaDeshacer(p, "cubo");
    const Leido hecho(p / "cubo_hecho.cad");
    const auto cubos = hecho.de<cad::Cubo>("Cb1");
    ASSERT_EQ(cubos.size(), 1U);
    EXPECT_EQ(cubos[0]->minimo, Punto3<double>(0, 0, 0));
    EXPECT_EQ(cubos[0]->maximo, Punto3<double>(100, 50, 30));
}

// The model solids take a typed number for a radius or a height, and the current material.
TEST(GuionCreacion, solidosConNumerosYMaterial)
{
    const fs::path p = juega("creacion_solidos");
    for (const char* prefijo : {"modelocubo", "modelocilindro", "modeloesfera"})
    {
        compruebaDeshacer(p, prefijo);
    }
    const Leido final(p / "final.cad");
    const auto prismas = final.de<cad::Prisma>("Pr1");
    ASSERT_EQ(prismas.size(), 1U);
    EXPECT_EQ(prismas[0]->minimo, Punto3<double>(0, 0, 0));
    EXPECT_EQ(prismas[0]->maximo, Punto3<double>(100, 50, 30));
    EXPECT_EQ(prismas[0]->material(), 1);
    const auto cilindros = final.de<cad::Cilindro>("Cl1");
    ASSERT_EQ(cilindros.size(), 1U);
    EXPECT_EQ(cilindros[0]->transformacion.getOrigen(), Punto3<double>(200, 50, 0));
    EXPECT_EQ(cilindros[0]->radio, 20.0);
    EXPECT_EQ(cilindros[0]->altura, 40.0);
    const auto esferas = final.de<cad::Esfera>("Es1");
    ASSERT_EQ(esferas.size(), 2U);
    EXPECT_EQ(esferas[0]->centro, Punto3<double>(300, 50, 10));
    EXPECT_EQ(esferas[0]->radio, 15.0);
    EXPECT_EQ(esferas[1]->centro, Punto3<double>(400, 50, 0));
    EXPECT_EQ(esferas[1]->radio, 30.0);
}

// A plane turned into an object of its own mesh: the plane goes without undo, so undo
// leaves neither; redo gives the object back.
TEST(GuionCreacion, convierteUnPlanoEnObjeto3D)
{
    const fs::path p = juega("creacion_convierte");
    compruebaDeshacer(p, "convierte");
    const Leido hecho(p / "convierte_hecho.cad");
    EXPECT_TRUE(hecho.de<cad::Plano>("Pn1").empty());
    const auto objetos = hecho.de<cad::Objeto3D>("Ob1");
    ASSERT_EQ(objetos.size(), 1U);
    EXPECT_TRUE(mismosPuntos(puntos(objetos[0]), {{0, 0, 0}, {100, 0, 0}, {100, 100, 0}}, false));
    EXPECT_EQ(Leido(p / "convierte_deshecho.cad").cuantas(), 0U);
}

// Copy and paste twice give two more of the selection; cut takes the selection away and
// undo brings it back.
TEST(GuionCreacion, portapapeles)
{
    const fs::path p = juega("portapapeles");
    compruebaDeshacer(p, "pega");
    const Leido pegado(p / "pega_hecho.cad");
    const auto lineas = pegado.de<cad::Entidad>("Ln1");
    ASSERT_EQ(lineas.size(), 2U);
    EXPECT_TRUE(mismosPuntos(puntos(lineas[0]), puntos(lineas[1]), true));
    const Leido cortado(p / "cortado.cad");
    EXPECT_TRUE(cortado.de<cad::Entidad>("Ln1").empty());
    EXPECT_EQ(cortado.de<cad::Entidad>("Pt1").size(), 1U);
}

// The faces a mesh still has: a deleted face keeps its record, with no edge.
size_t carasVivas(const cad::Objeto3D* o)
{
    const auto& caras = o->modelo->caras();
    return static_cast<size_t>(std::count_if(caras.begin(), caras.end(),
                                             [](const cad::cara_t& c) { return c.arista != -1; }));
}

// Delete, move by two points (no undo step), move the selection by a vector and duplicate;
// all but the move by two points undone and redone around their saves.
TEST(GuionEdicion, modificar)
{
    const fs::path p = juega("edicion_modificar");
    for (const char* prefijo : {"borra", "muevexyz", "duplica"})
    {
        compruebaDeshacer(p, prefijo);
    }
    const Leido movido(p / "muevexyz_antes.cad");
    const auto lineas = movido.de<cad::Entidad>("Ln1");
    ASSERT_EQ(lineas.size(), 1U);
    EXPECT_TRUE(mismosPuntos(puntos(lineas[0]), {{0, 110, 0}, {100, 110, 0}}, true));
    const Leido xyz(p / "muevexyz_hecho.cad");
    const auto desplazadas = xyz.de<cad::Entidad>("Ln1");
    ASSERT_EQ(desplazadas.size(), 1U);
    EXPECT_TRUE(mismosPuntos(puntos(desplazadas[0]), {{10, 105, 2.5}, {110, 105, 2.5}}, true));
    const Leido duplicado(p / "duplica_hecho.cad");
    const auto puntosDibujo = duplicado.de<cad::Entidad>("Pt1");
    ASSERT_EQ(puntosDibujo.size(), 2U);
    EXPECT_TRUE(mismosPuntos(puntos(puntosDibujo[0]), {{60, 60, 0}}, true));
    EXPECT_TRUE(mismosPuntos(puntos(puntosDibujo[1]), {{160, 60, 0}}, true));
}

// The polyline vertex editors, each on the polyline it picks: what is left of both.
TEST(GuionEdicion, verticesDePolilineas)
{
    const fs::path p = juega("edicion_vertices");
    const Leido final(p / "final.cad");
    const auto lineas = final.de<cad::Polilinea>("Pg1");
    ASSERT_EQ(lineas.size(), 2U);
    EXPECT_TRUE(lineas[0]->cerrada);
    EXPECT_TRUE(mismosPuntos(
        puntos(lineas[0]),
        {{0, 100, 0}, {200, 100, 0}, {400, 100, 0}, {450, 120, 0}, {600, 100, 0}}, true));
    EXPECT_FALSE(lineas[1]->cerrada);
    EXPECT_TRUE(mismosPuntos(puntos(lineas[1]), {{0, 300, 0}, {600, 300, 0}}, true));
}

// Mesh edits on faces drawn by the script, told by the live faces each mesh is left with.
TEST(GuionEdicion, mallas)
{
    const fs::path p = juega("edicion_mallas");
    compruebaDeshacer(p, "partecara");
    const Leido final(p / "final.cad");
    const auto objetos = final.de<cad::Objeto3D>("Ob1");
    ASSERT_EQ(objetos.size(), 5U);
    EXPECT_EQ(carasVivas(objetos[0]), 2U);  // split edge, then joined across
    EXPECT_EQ(carasVivas(objetos[1]), 5U);  // a ring of four around the inner face
    EXPECT_EQ(carasVivas(objetos[2]), 4U);  // the ring alone
    EXPECT_EQ(carasVivas(objetos[3]), 0U);  // deleted
    EXPECT_EQ(carasVivas(objetos[4]), 5U);  // the face moved out and four sides
    // The face's normal points down here, and the prism grows along it, 30 deep.
    const auto& prisma = objetos[4]->modelo->vertices();
    const auto abajo = [](const cad::vertice_t& v) { return v.punto.z == -30.0; };
    EXPECT_TRUE(std::any_of(prisma.begin(), prisma.end(), abajo));
    EXPECT_TRUE(std::all_of(prisma.begin(), prisma.end(),
                            [&](const cad::vertice_t& v) { return v.punto.z == 0.0 || abajo(v); }));
}

// A hole cut by a closed polyline, contour lines and the union of two models.
TEST(GuionEdicion, modelos)
{
    const fs::path p = juega("edicion_modelos");
    compruebaDeshacer(p, "hueco");
    const Leido final(p / "final.cad");
    const auto objetos = final.de<cad::Objeto3D>("Ob1");
    ASSERT_EQ(objetos.size(), 1U);
    // The keyhole face (4 + 1 + 4 + 1 corners) and the sloping face, in one model.
    EXPECT_EQ(carasVivas(objetos[0]), 2U);
    size_t esquinas = 0;
    std::vector<int32_t> ciclo;
    for (int32_t f = 0; f < static_cast<int32_t>(objetos[0]->modelo->caras().size()); ++f)
    {
        objetos[0]->modelo->getVerticesCara(f, ciclo);
        esquinas = std::max(esquinas, ciclo.size());
    }
    EXPECT_EQ(esquinas, 10U);
    // The hole's polyline stays; three of the four contours of the slope are left, each
    // level at one height.
    const auto lineas = final.de<cad::Polilinea>("Pg1");
    ASSERT_EQ(lineas.size(), 4U);
    EXPECT_TRUE(lineas[0]->esCerrada());
    for (size_t k = 1; k < lineas.size(); ++k)
    {
        EXPECT_FALSE(lineas[k]->esCerrada());
        EXPECT_EQ(lineas[k]->vertices.front().z, lineas[k]->vertices.back().z);
    }
}

// A vertex drag, a polyline swept into a strip (undone and redone around its saves), a face
// cut through a point inside it, and the hole walk that changes nothing.
TEST(GuionEdicion, varios)
{
    const fs::path p = juega("edicion_varios");
    compruebaDeshacer(p, "extruye");
    const Leido final(p / "final.cad");
    const auto lineas = final.de<cad::Polilinea>("Pg1");
    ASSERT_EQ(lineas.size(), 1U);
    EXPECT_EQ(lineas[0]->vertices[0], cad::Punto3<double>(200, 50, 0));
    const auto objetos = final.de<cad::Objeto3D>("Ob1");
    ASSERT_EQ(objetos.size(), 2U);
    EXPECT_EQ(carasVivas(objetos[0]), 2U);  // cut in two through the clicked point
    const auto& v = objetos[0]->modelo->vertices();
    EXPECT_TRUE(std::any_of(v.begin(), v.end(),
                            [](const cad::vertice_t& x)
                            { return x.punto.distancia(cad::Punto3<double>(50, 60, 0)) < 1e-6; }));
    EXPECT_EQ(carasVivas(objetos[1]), 1U);  // the strip: one quad
}

// Refused arguments: each order says why and runs nothing.
TEST(GuionEdicion, argumentosRechazados)
{
    std::istringstream guion(
        "muevexyz 1 x 2\nmuevexyz 1 2 inf\npartearista 1\npartearista dos\n"
        "asignamaterial madera\n");
    std::ostringstream salida;
    tarvelo::Sesion::opciones_t opciones;
    opciones.eco = true;
    tarvelo::Sesion sesion(guion, salida, opciones);
    EXPECT_EQ(sesion.ejecuta(), 0);
    EXPECT_EQ(salida.str(),
              "> muevexyz 1 x 2\n"
              "muevexyz: x no es un número\n"
              "> muevexyz 1 2 inf\n"
              "muevexyz: inf no es un número\n"
              "> partearista 1\n"
              "partearista: las partes son un entero de 2 a 1000\n"
              "> partearista dos\n"
              "partearista: las partes son un entero de 2 a 1000\n"
              "> asignamaterial madera\n"
              "asignamaterial: el dibujo no tiene el material madera (materiales los lista)\n");
}

// The measure orders: prompts, the figures printed, and the sides and texts left on the
// drawing, listed with their strings; four undos take a distance's four entities.
TEST(GuionMedidas, distanciasAreaYAngulos)
{
    juega("medidas");
}

// The view orders report where the view looks; the reference plane by plan, line and a
// refused point; three planes' common point; a local system typed; the view from a shot.
TEST(GuionVistas, zoomsPlanosSistemaLocalYCamara)
{
    juega("vistas");
}

// A surveyor's day: a DXF plan and a georeferenced OBJ model imported, a local system at the
// site, control points, the ground plane fitted to them, measures, contours of the model;
// saved, read back and saved again to the same bytes, and exported to DXF for the office (the
// audit reads that file after this test).
TEST(GuionLevantamiento, planoModeloMedidasEIsolineasHastaElDXF)
{
    const fs::path p = juega("levantamiento");
    // Read back and saved again, the drawing is the same, block for block: entities, layers,
    // materials, text styles. The variables are not: each load puts the defaults of the
    // state variables ahead of the file's copies, and the next save writes both.
    {
        const Leido guardado(p / "levantamiento.cad");
        const Leido recargado(p / "recargado.cad");
        const auto bloques = [](const cad::Dibujo& d)
        {
            std::vector<std::vector<uint8_t>> b;
            const auto agrega = [&b](const auto& lista)
            {
                for (auto* objeto : lista)
                {
                    b.push_back(cad::prueba::bytesDe(*objeto));
                }
            };
            agrega(d.entidades);
            agrega(d.capas);
            agrega(d.materiales);
            agrega(d.estilosTexto);
            return b;
        };
        const auto a = bloques(*guardado.fachada.mDibujo);
        EXPECT_EQ(a.size(), 26U + 5U + 2U + 2U);
        EXPECT_TRUE(a == bloques(*recargado.fachada.mDibujo));
    }
    ASSERT_TRUE(fs::exists(p / "levantamiento.dxf"));
    fs::copy_file(p / "levantamiento.dxf", cad::prueba::rutaDXF("levantamiento_sesion.dxf"),
                  fs::copy_options::overwrite_existing);

    const Leido d(p / "levantamiento.cad");
    const auto sistemas = d.de<cad::SistemaLocal>("Sl1");
    ASSERT_EQ(sistemas.size(), 1U);
    EXPECT_EQ(sistemas[0]->nombre, "obra");
    EXPECT_EQ(sistemas[0]->origen, Punto3<double>(450000, 4200000, 0));
    // Typed local coordinates land on the control points exactly.
    const puntos_t control = {{450010, 4200010, 100.412},
                              {450090, 4200010, 100.415},
                              {450090, 4200090, 100.419},
                              {450010, 4200090, 100.409}};
    const auto planos = d.de<cad::Plano>("Pn1");
    ASSERT_EQ(planos.size(), 1U);
    EXPECT_TRUE(mismosPuntos(puntos(planos[0]), control, false));
    EXPECT_EQ(d.de<cad::Entidad>("PC1").size(), 4U);
    EXPECT_EQ(d.de<cad::Entidad>(cad::kFirmaEntidadPolicara).size(), 1U);  // the terrain
    // The distance B1-B3 and its labels; the area of the square between the control points
    // is reported doubled, as the measure does.
    std::vector<std::string> rotulos;
    for (const cad::Texto* t : d.de<cad::Texto>("Tx1"))
    {
        rotulos.push_back(t->texto);
    }
    EXPECT_EQ(rotulos, std::vector<std::string>({"113.137", "113.137", "0.007", "80.000", "80.000",
                                                 "80.000", "80.000", "12800.000"}));
    // Every contour of the hill closes at one height, an even number of metres.
    size_t curvas = 0;
    double primera = 0.0;
    for (const cad::Polilinea* l : d.de<cad::Polilinea>("Pg1"))
    {
        const auto& v = l->vertices;
        if (v.empty() || v.front().z == 0.0 || v.front().z != v.back().z || v.size() < 8)
        {
            continue;
        }
        // The levels run every 2 m from the lowest vertex of the model.
        if (curvas++ == 0)
        {
            primera = v.front().z;
        }
        const double pasos = (v.front().z - primera) / 2.0;
        EXPECT_NEAR(pasos, std::round(pasos), 1e-9);
        EXPECT_TRUE(std::all_of(v.begin(), v.end(),
                                [&](const Punto3<double>& q) { return q.z == v.front().z; }));
    }
    EXPECT_GE(curvas, 3U);
}

}  // namespace
