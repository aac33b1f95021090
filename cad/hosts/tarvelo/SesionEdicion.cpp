// The session's editing orders: moving, copying and deleting entities, polyline vertices and
// mesh edits, each through the facade's command of the same purpose.
#include <charconv>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "Sesion.h"
#include "documento/Dibujo.h"
#include "documento/Material.h"
#include "editor/EditorDibujo.h"

namespace tarvelo
{

bool Sesion::real(const std::string& texto, double& valor)
{
    const char* fin = texto.data() + texto.size();
    const auto [resto, error] = std::from_chars(texto.data(), fin, valor);
    return error == std::errc() && resto == fin && std::isfinite(valor);
}

void Sesion::creaOrdenesEdicion()
{
    using args_t = std::vector<std::string>;
    // A command with no arguments that answers whether it ended well. A false answer is the
    // user's refusal or the kernel's, not a failed order: a script goes on after it.
    const auto logico =
        [this](const char* nombre, const char* ayuda, auto ejecuta, const char* si, const char* no)
    {
        return orden_t{nombre, "", ayuda, 0, 0, false, [this, ejecuta, si, no](const args_t&) {
                           return informaSiNo(ejecuta(), si, no);
                       }};
    };
    agregaGrupo(
        "Modificar",
        {
            ordenCuenta(
                "borra", "borra la selección, o las entidades que se elijan",
                [this]() { return dibujo.comandoBorrar(); }, "entidad borrada",
                "entidades borradas"),
            ordenCuenta(
                "mueve", "mueve entidades de un punto base a un destino",
                [this]() { return dibujo.comandoMover(); }, "entidad movida", "entidades movidas"),
            {"muevexyz", "DX DY DZ", "mueve la selección por el vector dado", 3, 3, false,
             [this](const args_t& a) { return ordenMueveXYZ(a); }},
            ordenCuenta(
                "duplica", "una copia de una entidad, de un punto base a un destino",
                [this]() { return dibujo.comandoCopiar(); }, "copia creada", "copias creadas"),
            logico(
                "edita", "arrastra los vértices de una entidad",
                [this]() { return dibujo.comandoEditar(); }, "Edición terminada",
                "Edición cancelada"),
            {"asignamaterial", "[NOMBRE]",
             "da a la selección, o a una entidad, un material (por defecto, el actual)", 0, 1,
             false, [this](const args_t& a) { return ordenAsignaMaterial(a); }},
        });
    agregaGrupo("Vértices de polilíneas",
                {
                    logico(
                        "editapol", "recorre los vértices de una polilínea y los cambia",
                        [this]() { return dibujo.comandoEditPol(); }, "Polilínea modificada",
                        "Polilínea sin cambios"),
                    logico(
                        "insertavertice", "inserta un vértice donde se pulsa y lo arrastra",
                        [this]() { return dibujo.comandoInsertaVertsPol(); }, "Vértice insertado",
                        "Ningún vértice insertado"),
                    logico(
                        "insertaverticeperfil", "inserta un vértice en un perfil (en X y Z)",
                        [this]() { return dibujo.comandoInsertaVertsPolPerfil(); },
                        "Vértice insertado", "Ningún vértice insertado"),
                    logico(
                        "editaperfil", "arrastra los vértices de un perfil hasta Intro",
                        [this]() { return dibujo.comandoEditarVertsPolPerfil(0); },
                        "Perfil editado", "Edición del perfil cancelada"),
                    logico(
                        "borravertices", "borra vértices de una polilínea uno a uno",
                        [this]() { return dibujo.comandoBorrarVertsPol(); }, "Vértices borrados",
                        "Ningún vértice borrado"),
                    logico(
                        "borrarango", "borra los vértices entre dos de una polilínea",
                        [this]() { return dibujo.comandoBorrarRangoVertsPol(); },
                        "Vértices borrados", "Ningún vértice borrado"),
                    logico(
                        "borraventana", "borra los vértices de una polilínea dentro de una ventana",
                        [this]() { return dibujo.comandoBorrarVentanaVertsPol(); },
                        "Vértices borrados", "Ningún vértice borrado"),
                });
    agregaGrupo(
        "Mallas",
        {
            logico(
                "extrusion", "estira un vértice, una arista o una cara de una malla",
                [this]() { return dibujo.comandoExtrusion(false); }, "Malla extruida",
                "Malla sin cambios"),
            {"partearista", "N", "parte una arista de una malla en N trozos iguales", 1, 1, false,
             [this](const args_t& a) { return ordenParteArista(a); }},
            logico(
                "partecara", "parte una cara en un anillo alrededor de otra menor",
                [this]() { return dibujo.comandoParteCara(); }, "Cara partida", "Cara sin partir"),
            logico(
                "hueco", "abre un hueco en el centro de una cara",
                [this]() { return dibujo.comandoHueco(); }, "Hueco abierto",
                "Ningún hueco abierto"),
            logico(
                "huecopolilinea", "abre en una cara el hueco de una polilínea cerrada",
                [this]() { return dibujo.comandoHuecoPolilinea(); }, "Hueco abierto",
                "Ningún hueco abierto"),
            logico(
                "borracara", "borra una cara de una malla",
                [this]() { return dibujo.comandoBorraCaraModelo(); }, "Cara borrada",
                "Ninguna cara borrada"),
            logico(
                "unevertices", "une dos vértices de una cara con una arista",
                [this]() { return dibujo.comandoUneVertices(); }, "Vértices unidos",
                "Vértices sin unir"),
            logico(
                "recortacara", "corta una cara de una arista a otra",
                [this]() { return dibujo.comandoRecortaCara(); }, "Cara recortada",
                "Cara sin recortar"),
            logico(
                "rellenahueco", "recorre el borde de un hueco, sin cambiar la malla",
                [this]() { return dibujo.comandoRellenaHueco(); },
                "Borde del hueco recorrido; la malla no cambia", "Ningún borde elegido"),
            logico(
                "invierte", "invierte las normales de una malla",
                [this]() { return dibujo.comandoInvierteNormales(); }, "Normales invertidas",
                "Normales sin cambios"),
        });
    agregaGrupo(
        "Modelos y planos",
        {
            logico(
                "extruye", "objetos 3D barridos por polilíneas a lo largo de un vector",
                [this]() { return dibujo.comandoExtrusionEntidad(); }, "Extrusión creada",
                "Ninguna extrusión creada"),
            {"isolineas", "", "curvas de nivel de una malla, como polilíneas", 0, 0, false,
             [this](const args_t&)
             {
                 const int n = dibujo.comandoIsolineas();
                 if (n < 0)
                 {
                     salida << "Ninguna isolínea: cancelada, o el incremento no es positivo\n";
                     return true;
                 }
                 return informa(n, "polilínea creada", "polilíneas creadas");
             }},
            logico(
                "unemodelos", "une dos objetos 3D en uno nuevo",
                [this]() { return dibujo.uneModelos(); }, "Modelos unidos", "Modelos sin unir"),
            logico(
                "uneplanos", "extiende dos planos uno hacia el otro",
                [this]() { return dibujo.unePlanos(); }, "Planos unidos", "Planos sin unir"),
            logico(
                "extiendeplanos", "extiende un plano hasta otro",
                [this]() { return dibujo.extiendePlanos(); }, "Plano extendido",
                "Plano sin extender"),
        });
}

Sesion::orden_t Sesion::ordenCuenta(const char* nombre, const char* ayuda,
                                    std::function<long()> ejecuta, const char* singular,
                                    const char* plural)
{
    return orden_t{
        nombre,
        "",
        ayuda,
        0,
        0,
        false,
        [this, ejecuta = std::move(ejecuta), singular, plural](const std::vector<std::string>&)
        { return informa(ejecuta(), singular, plural); }};
}

bool Sesion::informaSiNo(bool hecho, const char* si, const char* no)
{
    salida << (hecho ? si : no) << '\n';
    return true;
}

bool Sesion::ordenMueveXYZ(const std::vector<std::string>& argumentos)
{
    double v[3] = {};
    if (!numeros("muevexyz", argumentos, 0, v))
    {
        return false;
    }
    return informa(dibujo.comandoMoverXYZ(v[0], v[1], v[2]), "entidad movida", "entidades movidas");
}

bool Sesion::ordenParteArista(const std::vector<std::string>& argumentos)
{
    // A bound keeps a slip of the finger from filling the mesh with vertices.
    constexpr long kMaximo = 1000;
    long partes = 0;
    if (!entero(argumentos[0], partes) || partes < 2 || partes > kMaximo)
    {
        salida << "partearista: las partes son un entero de 2 a " << kMaximo << '\n';
        return false;
    }
    return informaSiNo(dibujo.comandoParteArista(static_cast<int32_t>(partes)), "Arista partida",
                       "Arista sin partir");
}

bool Sesion::ordenAsignaMaterial(const std::vector<std::string>& argumentos)
{
    // The kernel gives an unknown name no answer of its own: it would read as "0 entities".
    std::string nombre = argumentos.empty() ? "" : argumentos[0];
    if (!nombre.empty())
    {
        bool existe = false;
        for (const cad::Material* m : dibujo.mDibujo->materiales)
        {
            existe = existe || cad::nombreMaterial(*m) == nombre;
        }
        if (!existe)
        {
            salida << "asignamaterial: el dibujo no tiene el material " << nombre
                   << " (materiales los lista)\n";
            return false;
        }
    }
    else
    {
        const int32_t actual = dibujo.materialActual();
        nombre = actual == 0 ? "ninguno" : std::to_string(actual);
    }
    const int n = dibujo.comandoAsignaMaterial(argumentos.empty() ? "" : argumentos[0]);
    salida << "Material " << nombre << " dado a " << n << (n == 1 ? " entidad" : " entidades")
           << '\n';
    return true;
}

}  // namespace tarvelo
