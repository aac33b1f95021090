// Random edits of a mesh through the editor, mixed with undos and redos, from fixed seeds:
// after every step the records stay sound, an undo gives back exactly the records from before
// its edit and a redo those after it, a refused edit leaves neither a step nor a change, and
// the saved drawing comes back byte for byte once everything is undone or redone.
//
// invierteCara and invierteNormales are left out: where a face shares an edge they bend the
// neighbour's cycle (a behaviour kept on purpose), so the checker would fail on no fault.
#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "entidades/Objeto3D.h"
#include "soporte/ComprobadorMalla.h"
#include "soporte/FicheroTemporal.h"
#include "soporte/MallaObjPrueba.h"
#include "soporte/MallasPrueba.h"

#if defined(__SANITIZE_ADDRESS__)
#define CAD_BAJO_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CAD_BAJO_ASAN 1
#endif
#endif

namespace cad
{
namespace
{

using Bytes = std::vector<uint8_t>;

#ifdef CAD_BAJO_ASAN
constexpr int kPasos = 600;
#else
constexpr int kPasos = 2500;
#endif
// Above this many edits not undone only undos are drawn, so that the meshes, the steps'
// copies and the images stay small over thousands of steps.
constexpr size_t kProfundidad = 40;

struct Recorrido
{
    Recorrido(Modelo3D* modelo, uint32_t semilla, const std::string& nombre)
        : azar(semilla), ruta(prueba::rutaTemporal(nombre + ".tcad"))
    {
        dibujo.nuevoDocumento();
        editor = std::make_unique<EditorDibujo>(&dibujo, nullptr);
        objeto = new Objeto3D(modelo);
        // Straight into the drawing: the only steps on the stack are the mesh edits.
        dibujo.nuevaEntidad(objeto);
        imagenes.push_back(prueba::imagenDe(*modelo));
    }

    // An undo, a redo or a random edit as `tirada` (0-2, 3-4, 5-9) says; the edit when there
    // is nothing to undo or redo. Then the mesh sound, the undo stack as deep as the edits not
    // undone and the records those of this depth. False, with a failure, at the first fault.
    bool paso(int n, uint32_t tirada)
    {
        ultimaFueEdicion = false;
        const bool atras = (tirada < 3 && profundidad > 0) || profundidad >= kProfundidad;
        if (atras || (tirada < 5 && profundidad + 1 < imagenes.size()))
        {
            atras ? editor->deshacer() : editor->rehacer();
            profundidad = atras ? profundidad - 1 : profundidad + 1;
            que = atras ? "deshacer" : "rehacer";
        }
        else
        {
            const uint32_t tipo = azar() % 8;
            que = "edicion " + std::to_string(tipo);
            ultimaFueEdicion =
                editor->editaModelo(*objeto, [&](Modelo3D& m) { return edita(m, tipo); });
            // A refused edit keeps no step and gives the records back: the checks below hold.
            rechazos += ultimaFueEdicion ? 0 : 1;
            if (ultimaFueEdicion)
            {
                imagenes.resize(++profundidad);
                imagenes.push_back(prueba::imagenDe(*objeto->modelo));
            }
        }
        const auto sana = mallaSana(*objeto->modelo);
        const bool pila = editor->comandosDeshacer.size() == profundidad;
        const bool igual = prueba::imagenDe(*objeto->modelo) == imagenes[profundidad];
        EXPECT_TRUE(sana && pila && igual) << "paso " << n << " (" << que << "): " << sana.message()
                                           << " pila " << pila << ", registros " << igual;
        return sana && pila && igual;
    }

    // A random index below n among those `vale` takes; -1 when it takes none.
    template <class F>
    int32_t alAzar(size_t n, F&& vale)
    {
        std::vector<int32_t> vivos;
        for (size_t i = 0; i < n; ++i)
        {
            if (vale(i))
            {
                vivos.push_back(static_cast<int32_t>(i));
            }
        }
        return vivos.empty() ? -1 : vivos[azar() % vivos.size()];
    }

    // Each edit on a random live record; false when there is none or the mesh refused.
    bool edita(Modelo3D& m, uint32_t tipo)
    {
        const Aristas& aristas = m.aristas();
        const int32_t cara =
            alAzar(m.caras().size(), [&](size_t i) { return m.caras()[i].arista != -1; });
        const int32_t borde = alAzar(static_cast<size_t>(aristas.size()), [&](size_t i)
                                     { return aristas[i].esValida() && aristas[i].esFrontera(); });
        std::vector<int32_t> ciclo;  // the face's corners for a diagonal, else its edges
        tipo == 2 ? m.getVerticesCara(cara, ciclo) : m.getAristasCara(cara, ciclo);
        // An edge whose ends another edge joins too is left alone by the edits that build
        // quads on it: a quad may take the other edge, and a third face on an edge breaks its
        // wings (a kept behaviour of nuevaCara).
        const auto gemela = [&](int32_t e)
        {
            const auto junta = [&](const Arista& a) {
                return a.esValida() && a.toca(aristas[e].vertice[0]) &&
                       a.toca(aristas[e].vertice[1]);
            };
            return std::count_if(aristas.begin(), aristas.end(), junta) > 1;
        };
        if (ciclo.size() < 2 || (tipo == 5 && (borde == -1 || gemela(borde))) ||
            (tipo >= 6 && std::any_of(ciclo.begin(), ciclo.end(), gemela)))
        {
            return false;
        }
        const size_t i = azar() % ciclo.size();
        const size_t j = (i + 1 + azar() % (ciclo.size() - 1)) % ciclo.size();
        const auto c = [this] { return static_cast<double>(azar() % 2001) / 1000.0 - 1.0; };
        const auto medio = [&m](int32_t a)
        {
            return Punto3<double>::puntoMedio(m.getVertice(m.aristas()[a].vertice[0]).punto,
                                              m.getVertice(m.aristas()[a].vertice[1]).punto);
        };
        switch (tipo)
        {
            case 0:
                return m.parteArista(ciclo[i], 2 + static_cast<int>(azar() % 3)), true;
            case 1:
                return m.insertaVertice(medio(ciclo[i]), ciclo[i]), true;
            case 2:
                return m.uneVertices(ciclo[i], ciclo[j]);
            case 3:
                return m.recortaCara({medio(ciclo[i]), medio(ciclo[j])});
            case 4:
                return m.borraCara(cara), true;
            case 5:
                return m.extruyeArista(borde, Vector3D<double>(c(), c(), c())), true;
            case 6:
                return m.extruyeCara(cara, 0.1F + static_cast<float>(azar() % 10) / 10.0F), true;
            default:
                return m.parteCara(cara, azar() % 2 == 0), true;
        }
    }

    std::mt19937 azar;
    const std::string ruta;
    Dibujo dibujo;
    std::unique_ptr<EditorDibujo> editor;
    Objeto3D* objeto = nullptr;
    std::vector<Bytes> imagenes;  // the records at each depth, the redo side included
    size_t profundidad = 0;
    bool ultimaFueEdicion = false;
    int rechazos = 0;
    std::string que;  // the last step, for the failure's message
};

// kPasos random steps and on up to an edit, then everything undone and everything redone.
void recorre(Modelo3D* modelo, uint32_t semilla, const std::string& nombre)
{
    SCOPED_TRACE("semilla " + std::to_string(semilla));
    Recorrido r(modelo, semilla, nombre);
    const auto guarda = [&r]
    {
        EXPECT_TRUE(r.editor->guardaDocumento(r.ruta.c_str()));
        return prueba::leeFichero(r.ruta);
    };
    ASSERT_TRUE(mallaSana(*modelo));
    const Bytes inicial = guarda();
    for (int n = 0; n < kPasos || !r.ultimaFueEdicion; ++n)
    {
        ASSERT_TRUE(r.paso(n, r.azar() % 10));
    }
    EXPECT_GT(r.rechazos, 0);  // a diagonal between neighbouring corners, for one
    const Bytes ultima = guarda();
    while (r.profundidad > 0)
    {
        ASSERT_TRUE(r.paso(kPasos, 0));
    }
    EXPECT_EQ(guarda(), inicial);
    while (r.profundidad + 1 < r.imagenes.size())
    {
        ASSERT_TRUE(r.paso(kPasos, 3));
    }
    EXPECT_FALSE(r.editor->puedeRehacer());
    EXPECT_EQ(guarda(), ultima);
}

// The closed cube, and a grid whose inner face was deleted: a hole to extrude from.
TEST(MallaAleatoria, cuboYCuadriculaConHueco)
{
    auto* cubo = new Modelo3D();
    prueba::cubo(*cubo);
    recorre(cubo, 17, "aleatoriaCubo");
    auto* cuadricula = new Modelo3D();
    prueba::cuadricula(*cuadricula, 4, 3);
    cuadricula->borraCara(5);
    recorre(cuadricula, 29, "aleatoriaCuadricula");
}

// A quad mesh of 180 faces that another tool wrote.
TEST(MallaAleatoria, modeloDeOtraHerramienta)
{
    const std::string ruta =
        std::string(CAD_DATOS_COMPARTIDOS) + "/obj/spot_cow/spot_control_mesh.obj";
    if (!prueba::existeFichero(ruta))
    {
        GTEST_SKIP() << "no shared data at " << ruta;
    }
    prueba::MallaObj malla;
    ASSERT_TRUE(prueba::leeMallaObj(ruta, malla));
    recorre(new Modelo3D(malla.modelo), 43, "aleatoriaObj");
}

}  // namespace
}  // namespace cad
