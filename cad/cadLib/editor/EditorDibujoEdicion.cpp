// EditorDibujo: the commands that change entities already in the drawing: delete, move,
// copy, vertex edits and materials.
#include <memory>
#include <mutex>
#include <string>

#include "documento/Dibujo.h"
#include "documento/Material.h"
#include "editor/Comando.h"
#include "editor/EditorDibujo.h"
#include "editor/LineaElastica.h"
#include "entidades/Entidad.h"
#include "entidades/Polilinea.h"
#include "entidades/SistemaLocal.h"
#include "modelo/PuntosCalientes.h"

namespace cad
{

namespace
{

// The edit reactor's bracket around a command's work on one entity.
void anuncia(EditorDibujo& editor, Entidad* e, EditorDibujo::enumEdicionEntidades tipo)
{
    if (editor.reactorEdicionEntidades)
    {
        (void)editor.reactorEdicionEntidades(handleEntidad(e), tipo, -1, 0.0, 0.0, 0.0);
    }
}

// The first entity of one pick; null when the pick was refused.
Entidad* eligeUna(EditorDibujo& editor, const char* prompt)
{
    SeleccionEntidades seleccion(editor.dibujo_);
    if (!editor.seleccionaEntidad(prompt, seleccion) || seleccion.entidades.empty())
    {
        return nullptr;
    }
    return seleccion.entidades.front();
}

// One entity and the vector of a move, as move and copy ask for them: the entity picked and
// highlighted, its marks removed, a base and a destination; the highlight is off again on
// return. Null when the pick was refused. `dado` tells whether both points were given,
// `presente` whether the entity is still in the drawing (an undo run from the pump may have
// taken it away).
Entidad* pideDesplazamiento(EditorDibujo& editor, Vector3D<double>& v, bool& dado, bool& presente)
{
    Entidad* e = eligeUna(editor, editor.texto(11, 1, "Seleccione una entidad:"));
    if (e == nullptr)
    {
        return nullptr;
    }
    editor.resalta(e, true);
    editor.quitaMarcasVerticesEntidad(e);
    Punto3<double> base;
    Punto3<double> destino;
    dado = editor.comandoDosPuntosLinea(
        editor.texto(12, 1, "Seleccione punto base del desplazamiento:"),
        editor.texto(12, 2, "Seleccione punto destino del desplazamiento:"), &base, &destino);
    presente = editor.dibujo_->contieneEntidad(e);
    if (presente)
    {
        editor.resalta(e, false);
    }
    v = destino - base;
    return e;
}

}  // namespace

// -------------------------------------------------------------------------------------------
// Delete, move, copy

int EditorDibujo::comandoBorrar()
{
    iniciaComandoInteractivo(false);
    SeleccionEntidades seleccion = dibujo_->nuevaSeleccion(Dibujo::kSeleccionMarcadas);
    if (seleccion.entidades.empty())
    {
        (void)seleccionaEntidades(texto(11, 2, "Seleccione entidades:"), seleccion);
    }
    std::erase_if(seleccion.entidades, [this](Entidad* e) { return !dibujo_->contieneEntidad(e); });
    // The picking wait highlights what it takes, too: an entity brought back by undo must
    // come back as it was before the pick, not marked.
    for (Entidad* e : seleccion.entidades)
    {
        resalta(e, false);
    }
    int borradas = 0;
    for (Entidad* e : seleccion.entidades)
    {
        // With no active system its name is empty, which an unnamed system must not match.
        if (haySistemaLocal && e->tieneFirma(kFirmaEntidadSistemaLocal) &&
            dynamic_cast<const SistemaLocal&>(*e).nombre == sistemaLocalActivo.nombre)
        {
            quitaSistemaLocal();
        }
        if (borraEntidad(e))
        {
            ++borradas;
        }
    }
    if (borradas > 0)
    {
        actualiza(kPropiedades, false);
        actualiza(kControl, false);
    }
    terminado = true;
    finComandoInteractivo();
    return borradas;
}

bool EditorDibujo::comandoDosPuntosLinea(const char* prompt1, const char* prompt2,
                                         Punto3<double>* a, Punto3<double>* b)
{
    cursor_t cursor;
    if (!getPunto(prompt1, cursor, true))
    {
        return false;
    }
    *a = cursor.get();
    LineaElastica banda(this, 1);
    {
        std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
        banda.nuevaAncla(*a);
    }
    const bool dado = getPunto(prompt2, cursor, true);
    {
        std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
        banda.vaciaAnclas();
    }
    if (dado)
    {
        *b = cursor.get();
    }
    return dado;
}

int EditorDibujo::comandoMover()
{
    iniciaComandoInteractivo(false);
    int movidas = 0;
    for (;;)
    {
        Vector3D<double> v;
        bool dado = false;
        bool presente = false;
        Entidad* e = pideDesplazamiento(*this, v, dado, presente);
        if (e == nullptr)
        {
            break;
        }
        if (dado && presente)
        {
            e->traslada(v);
            dibujo_->edicionHecha();
            ++movidas;
        }
        actualiza(kPropiedades, false);
        actualiza(kPropiedades, true);
        if (!dado)
        {
            break;
        }
    }
    finComandoInteractivo();
    return movidas;
}

int EditorDibujo::comandoMoverXYZ(double dx, double dy, double dz)
{
    const SeleccionEntidades seleccion = dibujo_->nuevaSeleccion(Dibujo::kSeleccionMarcadas);
    if (seleccion.entidades.empty())
    {
        mensaje("%s", texto(11, 3, "No hay entidades seleccionadas"));
        return 0;
    }
    const Vector3D<double> v(dx, dy, dz);
    for (Entidad* e : seleccion.entidades)
    {
        registraComando(new ComandoMoverEntidad(dibujo_, e, v));
    }
    dibujo_->edicionHecha();
    actualiza(kPropiedades, true);
    return static_cast<int>(seleccion.entidades.size());
}

int EditorDibujo::comandoCopiar()
{
    iniciaComandoInteractivo(false);
    int copiadas = 0;
    Vector3D<double> v;
    bool dado = false;
    bool presente = false;
    // Cloned after the source lost its highlight, so the copy does not start marked.
    if (Entidad* e = pideDesplazamiento(*this, v, dado, presente); e != nullptr)
    {
        if (dado && presente)
        {
            std::unique_ptr<Entidad> copia(e->clona());
            copia->traslada(v);
            if (nuevaEntidad(std::move(copia)))
            {
                dibujo_->edicionHecha();
                ++copiadas;
            }
        }
        actualiza(kPropiedades, false);
        actualiza(kPropiedades, true);
    }
    finComandoInteractivo();
    return copiadas;
}

// -------------------------------------------------------------------------------------------
// Vertex edits

bool EditorDibujo::comandoEditar(Entidad* entidad, int indice, bool repite, bool anunciaReactores)
{
    if (entidad == nullptr)
    {
        iniciaComandoInteractivo(false);
        SeleccionEntidades seleccion(dibujo_);
        bool hecho = seleccionaEntidad(texto(11, 1, "Seleccione una entidad:"), seleccion);
        for (Entidad* e : seleccion.entidades)
        {
            if (!hecho)
            {
                break;
            }
            // An earlier edit may have deleted a later entity of the pick through the pump.
            if (dibujo_->contieneEntidad(e))
            {
                hecho = comandoEditar(e, -1, true, true);
            }
        }
        finComandoInteractivo();
        return hecho;
    }

    Entidad* e = entidad;
    if (anunciaReactores)
    {
        anuncia(*this, e, kIniciaEdicion);
    }
    resalta(e, true);
    quitaMarcasVerticesEntidad(e);
    actualiza(kPropiedades, false);

    bool resultado = true;
    bool arrastrar = false;
    elemento_seleccionado_t elemento;
    if (indice >= 0 && indice < e->numCoordenadas())
    {
        elemento.entidad = e;
        elemento.punto = *e->coordenada(indice);
        elemento.tipo = kTipoVertice;
        elemento.indice = indice;
        arrastrar = true;
    }
    for (;;)
    {
        if (arrastrar)
        {
            arrastrar = false;
            const bool movido = editaPunto(elemento);
            if (!dibujo_->contieneEntidad(e))
            {
                // Taken away from inside the drag's wait: nothing left to edit or to unmark.
                return false;
            }
            if (!movido)
            {
                resultado = repite;
                break;
            }
            if (!repite)
            {
                break;
            }
        }
        PuntosCalientes puntos;
        e->puntosCalientes(puntos);
        puntos.numeraPuntos();
        if (pantalla_ != nullptr)
        {
            pantalla_->inicioSuperposicion();
            puntos.dibuja(*pantalla_);
            pantalla_->finSuperposicion();
        }
        cursor_t cursor;
        if (!getPunto(texto(11, 4, "Seleccione entidad/punto caliente, arista o cara:"), cursor,
                      true))
        {
            break;
        }
        if (!dibujo_->contieneEntidad(e))
        {
            // Taken away from inside the wait: nothing left to edit or to unmark.
            return false;
        }
        if (pantalla_ == nullptr)
        {
            continue;
        }
        elemento = puntos.cercano(vista_t::de(*pantalla_), cursor);
        if (elemento.tipo == kTipoVertice && elemento.indice != -1)
        {
            elemento.entidad = e;
            arrastrar = true;
            continue;
        }
        if (elemento.tipo != kTipoNinguno)
        {
            continue;
        }
        SeleccionEntidades bajoPixel(dibujo_);
        if (entidadesBajoPixel(cursor, bajoPixel) && bajoPixel.entidades.front() != e)
        {
            // Moving on to another entity keeps the host's brackets paired per entity.
            resalta(e, false);
            if (anunciaReactores)
            {
                anuncia(*this, e, kTerminaEdicion);
            }
            e = bajoPixel.entidades.front();
            if (anunciaReactores)
            {
                anuncia(*this, e, kIniciaEdicion);
            }
            resalta(e, true);
            quitaMarcasVerticesEntidad(e);
            actualiza(kPropiedades, false);
        }
    }
    if (dibujo_->contieneEntidad(e))
    {
        resalta(e, false);
    }
    actualiza(kPropiedades, false);
    if (anunciaReactores)
    {
        anuncia(*this, e, kTerminaEdicion);
    }
    return resultado;
}

// -------------------------------------------------------------------------------------------
// Materials

int EditorDibujo::comandoAsignaMaterial(const std::string* nombre)
{
    int16_t id = dibujo_->materialActual();
    if (nombre != nullptr)
    {
        const Material* hallado = nullptr;
        for (const Material* m : dibujo_->materiales)
        {
            if (nombreMaterial(*m) == *nombre)
            {
                hallado = m;
                break;
            }
        }
        if (hallado == nullptr)
        {
            return 0;
        }
        id = hallado->id;
    }
    iniciaComandoInteractivo(false);
    SeleccionEntidades seleccion = dibujo_->nuevaSeleccion(Dibujo::kSeleccionMarcadas);
    if (seleccion.entidades.empty())
    {
        (void)seleccionaEntidad(texto(11, 1, "Seleccione una entidad:"), seleccion);
    }
    for (Entidad* e : seleccion.entidades)
    {
        e->setMaterial(static_cast<uint16_t>(id));
    }
    if (!seleccion.entidades.empty())
    {
        dibujo_->edicionHecha();
        actualiza(kPropiedades, true);
    }
    finComandoInteractivo();
    return static_cast<int>(seleccion.entidades.size());
}

}  // namespace cad
