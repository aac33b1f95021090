// EditorDibujo: polylines and their merges.
#include <algorithm>
#include <memory>
#include <string>

#include "documento/Dibujo.h"
#include "editor/Comando.h"
#include "editor/EditorDibujo.h"
#include "editor/FusionPolilineas.h"
#include "editor/LineaElastica.h"
#include "entidades/Polilinea.h"

namespace cad
{

namespace
{

// One polyline from its first point, until Enter, a cancel, "Cerrar", or "Borrar" with nothing
// left to take back. The polyline kept, or null. `abandona` tells that the wait ended by
// anything but Enter (a cancel, a command that displaced this one): no further polyline then.
Polilinea* unaPolilinea(EditorDibujo& ed, const Punto3<double>& inicial, bool unaSola, bool cerrada,
                        bool& abandona)
{
    abandona = false;
    LineaElastica banda(&ed, cerrada ? 4 : 3);
    banda.nuevaAncla(inicial);
    // The points given while the host refuses the polyline: the next try takes them all.
    CadenaPuntos puntos{inicial};
    Polilinea* p = nullptr;
    cursor_t cursor;
    for (;;)
    {
        ed.opciones.clear();
        const int borrar = ed.nuevaOpcion(ed.texto(4, 2, "Borrar"));
        int cerrar = -1;
        // A copy: the catalogue may be reloaded by the host while the wait runs.
        std::string prompt = ed.texto(4, 3, "Otro vértice/Borrar:");
        if (p != nullptr && p->numeroVertices() > 2)
        {
            cerrar = ed.nuevaOpcion(ed.texto(4, 4, "Cerrar"));
            prompt = ed.texto(4, 5, "Otro vértice/Borrar/Cerrar:");
        }
        int opcion = -1;
        const bool respondida = ed.getPunto(prompt.c_str(), cursor, &opcion, nullptr, true);
        // Enter leaves its empty line behind; a cancel clears the input.
        abandona = !respondida && !(ed.entradaRecibida && ed.entradaVacia);
        if (p != nullptr && !ed.dibujo_->contieneEntidad(p))
        {
            // The host took it away meanwhile (an undo): it is no longer ours to edit.
            return nullptr;
        }
        if (!respondida)
        {
            break;
        }
        if (opcion >= 0 && opcion == borrar)
        {
            if (p == nullptr)
            {
                break;
            }
            if (p->numeroVertices() > 1)
            {
                p->vertices.pop_back();
                banda.quitaUltimaAncla();
                ed.dibujo_->edicionHecha();
                ed.actualiza(EditorDibujo::kControl, false);
            }
            else if (!unaSola)
            {
                ed.destruyeSinDeshacer(p);
                ed.actualiza(EditorDibujo::kControl, false);
                return nullptr;
            }
            continue;
        }
        if (opcion >= 0 && opcion == cerrar)
        {
            p->cerrada = true;
            ed.dibujo_->edicionHecha();
            break;
        }
        const Punto3<double> punto = cursor.get();
        if (p == nullptr)
        {
            puntos.push_back(punto);
            auto nueva =
                std::make_unique<Polilinea>(static_cast<int>(puntos.size()), puntos.data());
            if (ed.nuevaEntidad(nueva.get()))
            {
                p = nueva.release();
            }
        }
        else
        {
            // Later vertices go straight in: the polyline is one undo step, not one per vertex.
            p->vertices.push_back(punto);
            ed.actualiza(EditorDibujo::kControl, false);
        }
        banda.nuevaAncla(punto);
        ed.dibujo_->edicionHecha();
    }
    if (p != nullptr && cerrada && !p->cerrada)
    {
        p->cerrada = true;
        ed.dibujo_->edicionHecha();
    }
    return p;
}

// The polyline under a click, or null (a miss, a refusal, or an entity of another kind).
Polilinea* eligePolilinea(EditorDibujo& ed, const char* prompt, SeleccionEntidades& seleccion)
{
    if (!ed.seleccionaEntidadTipo("Polilinea", prompt, seleccion) || seleccion.entidades.empty())
    {
        return nullptr;
    }
    // A Poligono shares the tag but not the class.
    return seleccion.getEntidadPolilinea(seleccion.numeroEntidades() - 1);
}

}  // namespace

int EditorDibujo::comandoPolilinea(bool unaSola, bool cerrada, Polilinea** resultado)
{
    iniciaComandoInteractivo(false);
    if (resultado != nullptr)
    {
        *resultado = nullptr;
    }
    int creadas = 0;
    polilineaAbandonada = false;
    cursor_t cursor;
    for (;;)
    {
        // The first point takes no option.
        opciones.clear();
        if (!getPunto(texto(4, 1, "Punto inicial:"), cursor, true))
        {
            break;
        }
        bool abandona = false;
        Polilinea* p = unaPolilinea(*this, cursor.get(), unaSola, cerrada, abandona);
        if (p != nullptr)
        {
            ++creadas;
            if (resultado != nullptr)
            {
                *resultado = p;
            }
        }
        if (unaSola || abandona)
        {
            polilineaAbandonada = abandona;
            break;
        }
    }
    // Options left behind would answer the next command's waits.
    opciones.clear();
    opcion = -1;
    finComandoInteractivo();
    return creadas;
}

int EditorDibujo::comandoPolilinea(bool unaSola, bool cerrada)
{
    return comandoPolilinea(unaSola, cerrada, nullptr);
}

bool EditorDibujo::comandoFusionPolilineas(Polilinea* destino, Polilinea* origen, bool borraOrigen)
{
    iniciaComandoInteractivo(false);
    if (destino == nullptr || origen == nullptr)
    {
        const bool eligeDestino = destino == nullptr;
        SeleccionEntidades seleccion(dibujo_);
        Polilinea* elegida = eligePolilinea(
            *this,
            eligeDestino ? texto(5, 2, "Seleccione la polilinea a modificar:")
                         : texto(5, 3, "Seleccione la polilinea con la que fusionar:"),
            seleccion);
        bool hecho = false;
        if (elegida != nullptr)
        {
            resalta(elegida, true);
            hecho = eligeDestino ? comandoFusionPolilineas(elegida, origen, borraOrigen)
                                 : comandoFusionPolilineas(destino, elegida, borraOrigen);
            // A deleted origin is left alone: its step holds it now.
            if (!borraOrigen)
            {
                resalta(elegida, false);
                seleccion.quitaSeleccion();
            }
            else if (eligeDestino)
            {
                resalta(elegida, false);
            }
        }
        finComandoInteractivo();
        return hecho;
    }

    const auto quitaResaltes = [&]()
    {
        resalta(destino, false);
        resalta(origen, false);
    };
    const CadenaPuntos tramo = origen->vertices;
    const bool abierto = !origen->cerrada && tramo.size() >= 2 && !(tramo.back() == tramo.front());
    if (destino == origen || !abierto || cadenaSeCruza(tramo) || destino->numeroVertices() < 2)
    {
        quitaResaltes();
        finComandoInteractivo();
        return false;
    }

    resalta(origen, true);
    const int64_t handle = handleEntidad(destino);
    const auto avisa = [&](enumEdicionEntidades tipo, int indice, const Punto3<double>& p)
    {
        return !reactorEdicionEntidades ||
               reactorEdicionEntidades(handle, tipo, indice, p.x, p.y, p.z);
    };
    const Punto3<double> cero(0, 0, 0);
    avisa(kIniciaEdicion, -1, cero);
    avisa(kIniciaBloque, -1, cero);
    if (destino->cerrada)
    {
        CadenaPuntos nuevo;
        if (fusionaPoligono(destino->vertices, tramo, nuevo))
        {
            // The whole list is replaced: announced from the last vertex down, so that each
            // index is right for a host that removes them one by one.
            for (int i = destino->numeroVertices() - 1; i >= 0; --i)
            {
                avisa(kBorrar, i, destino->vertices[i]);
            }
            destino->vertices = std::move(nuevo);
            for (int i = 0; i < destino->numeroVertices(); ++i)
            {
                avisa(kInsertar, i, destino->vertices[i]);
            }
        }
    }
    else
    {
        fusionaCadena(destino->vertices, tramo,
                      [&](bool insertar, int indice, const Punto3<double>& p)
                      { return avisa(insertar ? kInsertar : kBorrar, indice, p); });
    }
    quitaResaltes();
    dibujo_->edicionHecha();
    actualiza(kControl, false);
    avisa(kTerminaBloque, -1, cero);
    avisa(kTerminaEdicion, -1, cero);
    if (borraOrigen && borraEntidad(origen))
    {
        actualiza(kControl, false);
    }
    finComandoInteractivo();
    return true;
}

bool EditorDibujo::comandoFusionPolilineasNueva(Polilinea* destino, bool borraOrigen)
{
    iniciaComandoInteractivo(false);
    bool hecho = false;
    if (destino == nullptr)
    {
        SeleccionEntidades seleccion(dibujo_);
        Polilinea* elegida =
            eligePolilinea(*this, texto(5, 1, "Seleccione una polilinea:"), seleccion);
        if (elegida != nullptr)
        {
            hecho = comandoFusionPolilineasNueva(elegida, borraOrigen);
        }
        finComandoInteractivo();
        return hecho;
    }
    // The polyline being changed stays marked while the user draws the new one.
    resalta(destino, true);
    Polilinea* nueva = nullptr;
    if (comandoPolilinea(true, false, &nueva) > 0 && nueva != nullptr)
    {
        hecho = comandoFusionPolilineas(destino, nueva, borraOrigen);
    }
    resalta(destino, false);
    finComandoInteractivo();
    return hecho;
}

}  // namespace cad
