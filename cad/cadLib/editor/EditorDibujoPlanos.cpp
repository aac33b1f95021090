// EditorDibujo: commands that join and extend planes.
#include <cstddef>

#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "entidades/Plano.h"

namespace cad
{

namespace
{

// A prompt of the catalogue, read only when its wait starts: the host may reload the
// catalogue while an earlier wait runs.
struct pregunta_t
{
    int grupo;
    int numero;
    const char* porDefecto;
};

// One more plane into the selection. Null when the pick was refused, brought another kind of
// entity, or named one already in the selection (it then adds nothing).
Plano* otroPlano(EditorDibujo& editor, const pregunta_t& p, SeleccionEntidades& seleccion)
{
    const size_t antes = seleccion.entidades.size();
    if (!editor.seleccionaEntidadTipo(kFirmaEntidadPlano,
                                      editor.texto(p.grupo, p.numero, p.porDefecto), seleccion) ||
        seleccion.entidades.size() == antes)
    {
        return nullptr;
    }
    return seleccion.getEntidadPlano(seleccion.numeroEntidades() - 1);
}

// The two planes of a command, picked into one selection. The first stays highlighted while
// the second is asked for, so the pick passes it over and it cannot be taken twice. False
// when a pick was refused or either plane left the drawing meanwhile (an undo run from
// inside a wait); a plane that left is not touched, not even to take its highlight off.
bool dosPlanos(EditorDibujo& editor, const pregunta_t& p1, const pregunta_t& p2, Plano*& primero,
               Plano*& segundo)
{
    SeleccionEntidades seleccion(editor.dibujo_);
    primero = otroPlano(editor, p1, seleccion);
    if (primero == nullptr)
    {
        return false;
    }
    editor.resalta(primero, true);
    segundo = otroPlano(editor, p2, seleccion);
    const bool presente = editor.dibujo_->contieneEntidad(primero);
    if (presente)
    {
        editor.resalta(primero, false);
    }
    return presente && segundo != nullptr && segundo != primero &&
           editor.dibujo_->contieneEntidad(segundo);
}

}  // namespace

bool EditorDibujo::comandoUnePlanos()
{
    iniciaComandoInteractivo(false);
    Plano* primero = nullptr;
    Plano* segundo = nullptr;
    const bool dados = dosPlanos(*this, {11, 15, "Selecciona el primer plano"},
                                 {11, 16, "Selecciona el segundo plano"}, primero, segundo);
    if (dados)
    {
        if (primero->une(*segundo))
        {
            dibujo_->edicionHecha();
        }
        actualiza(kPropiedades, false);
    }
    finComandoInteractivo();
    return dados;
}

bool EditorDibujo::comandoExtiendePlanos()
{
    iniciaComandoInteractivo(false);
    Plano* origen = nullptr;
    Plano* destino = nullptr;
    const bool dados = dosPlanos(*this, {22, 1, "Selecciona el plano a extender"},
                                 {22, 2, "Selecciona el plano destino"}, origen, destino);
    if (dados)
    {
        // With fewer points a plane has no fitted normal to measure the sides by.
        if (origen->numCoordenadas() >= 3 && destino->numCoordenadas() >= 3 &&
            origen->extiende(*destino))
        {
            dibujo_->edicionHecha();
        }
        actualiza(kPropiedades, false);
    }
    finComandoInteractivo();
    return dados;
}

}  // namespace cad
