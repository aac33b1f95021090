// EditorDibujo: the undo stacks, the undoable insertion and deletion, and the layer
// helpers that record their steps.
#include <memory>

#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "editor/Comando.h"
#include "editor/EditorDibujo.h"
#include "entidades/Entidad.h"
#include "entidades/Objeto3D.h"

namespace cad
{

namespace
{

// The undo steps that name `e` go, so that no step keeps the address of an entity that is
// destroyed without undo (an address a later entity may reuse). Steps that name it hold it
// in the drawing, never as its owner, so dropping them frees nothing.
void olvidaEnPasos(std::vector<Comando*>& pila, const Entidad* e)
{
    for (auto it = pila.begin(); it != pila.end();)
    {
        Comando* c = *it;
        bool nombra = false;
        if (auto* n = dynamic_cast<ComandoNuevaEntidad*>(c))
        {
            nombra = n->entidad == e;
        }
        else if (auto* b = dynamic_cast<ComandoBorraEntidad*>(c))
        {
            nombra = b->entidad == e;
        }
        else if (auto* m = dynamic_cast<ComandoMoverEntidad*>(c))
        {
            nombra = m->entidad == e;
        }
        else if (auto* o = dynamic_cast<ComandoModelo*>(c))
        {
            nombra = o->objeto == e;
        }
        else if (auto* k = dynamic_cast<ComandoCapa*>(c))
        {
            std::erase(k->entidades, e);
        }
        if (nombra)
        {
            delete c;
            it = pila.erase(it);
        }
        else
        {
            ++it;
        }
    }
}

}  // namespace

// -------------------------------------------------------------------------------------------
// Undo

void EditorDibujo::deshacer()
{
    if (comandosDeshacer.empty())
    {
        return;
    }
    Comando* c = comandosDeshacer.back();
    comandosDeshacer.pop_back();
    c->deshacer();
    comandosRehacer.push_back(c);
    actualiza(kControl, false);
}

void EditorDibujo::rehacer()
{
    if (comandosRehacer.empty())
    {
        return;
    }
    Comando* c = comandosRehacer.back();
    comandosRehacer.pop_back();
    c->rehacer();
    comandosDeshacer.push_back(c);
    actualiza(kControl, false);
}

void EditorDibujo::registraComando(Comando* comando)
{
    comandosDeshacer.push_back(comando);
    while (!comandosRehacer.empty())
    {
        delete comandosRehacer.back();
        comandosRehacer.pop_back();
    }
    comando->rehacer();
}

void EditorDibujo::vaciaComandos()
{
    // Newest first, so that a step's entity is freed by the step that holds it last.
    while (!comandosRehacer.empty())
    {
        delete comandosRehacer.back();
        comandosRehacer.pop_back();
    }
    while (!comandosDeshacer.empty())
    {
        delete comandosDeshacer.back();
        comandosDeshacer.pop_back();
    }
}

bool EditorDibujo::nuevaEntidad(Entidad* e)
{
    if (e == nullptr)
    {
        return false;
    }
    if (reactorInsercionEntidades &&
        !reactorInsercionEntidades(handleEntidad(e), kEntidadInsertada))
    {
        return false;
    }
    registraComando(new ComandoNuevaEntidad(dibujo_, e));
    actualiza(kControl, false);
    return true;
}

bool EditorDibujo::nuevaEntidad(std::unique_ptr<Entidad> e)
{
    if (!nuevaEntidad(e.get()))
    {
        return false;
    }
    e.release();
    return true;
}

void EditorDibujo::destruyeSinDeshacer(Entidad* e)
{
    olvidaEnPasos(comandosDeshacer, e);
    olvidaEnPasos(comandosRehacer, e);
    quitaMarcasVerticesEntidad(e);
    dibujo_->borraEntidad(e, true);
}

bool EditorDibujo::borraEntidad(Entidad* e)
{
    if (e == nullptr)
    {
        return false;
    }
    if (reactorInsercionEntidades && !reactorInsercionEntidades(handleEntidad(e), kEntidadBorrada))
    {
        return false;
    }
    registraComando(new ComandoBorraEntidad(dibujo_, e));
    return true;
}

// -------------------------------------------------------------------------------------------
// Layers

bool EditorDibujo::nuevaCapa(Capa* capa, bool hacerActual)
{
    if (!admiteCadena(capa->nombre) || !dibujo_->nuevaCapa(capa))
    {
        return false;
    }
    if (hacerActual)
    {
        dibujo_->capaActual(capa->nombre.c_str());
        actualiza(kCapaActual, false);
    }
    actualiza(kCapas, false);
    return true;
}

bool EditorDibujo::posicionaCapa(Capa* capa)
{
    if (!admiteCadena(capa->nombre))
    {
        return false;
    }
    if (Capa* existente = dibujo_->buscaCapa(capa->nombre.c_str()))
    {
        registraComando(ComandoCapa::visibilidad(dibujo_, existente, true));
        actualiza(kCapas, false);
        actualiza(kControl, false);
        dibujo_->capaActual(existente->nombre.c_str());
        actualiza(kCapaActual, false);
        return true;
    }
    dibujo_->nuevaCapa(capa);
    actualiza(kCapas, false);
    return true;
}

bool EditorDibujo::capaActual(const char* nombre)
{
    const bool ok = dibujo_->capaActual(nombre);
    actualiza(kCapaActual, false);
    return ok;
}

bool EditorDibujo::muestraCapa(const char* nombre)
{
    Capa* capa = dibujo_->buscaCapa(nombre);
    if (capa == nullptr)
    {
        return false;
    }
    registraComando(ComandoCapa::visibilidad(dibujo_, capa, true));
    actualiza(kCapas, false);
    actualiza(kControl, false);
    return true;
}

bool EditorDibujo::colorCapa(const char* nombre, int32_t rgba)
{
    Capa* capa = dibujo_->buscaCapa(nombre);
    if (capa == nullptr)
    {
        return false;
    }
    const auto v = static_cast<uint32_t>(rgba);
    ColorCapa color;
    color.mColor.rojo = static_cast<uint8_t>(v >> 24);
    color.mColor.verde = static_cast<uint8_t>(v >> 16);
    color.mColor.azul = static_cast<uint8_t>(v >> 8);
    color.mColor.alfa = static_cast<uint8_t>(v);
    color.colorCAD = 512;
    registraComando(ComandoCapa::colorear(dibujo_, capa, color));
    actualiza(kCapas, false);
    return true;
}

bool EditorDibujo::renombraCapa(const char* nombre, const char* nuevoNombre)
{
    Capa* capa = dibujo_->buscaCapa(nombre);
    // Names are unique within a drawing.
    if (capa == nullptr || nuevoNombre == nullptr || dibujo_->buscaCapa(nuevoNombre) != nullptr ||
        !admiteCadena(nuevoNombre))
    {
        return false;
    }
    registraComando(ComandoCapa::renombrar(dibujo_, capa, nuevoNombre));
    actualiza(kCapas, false);
    return true;
}

bool EditorDibujo::borraCapa(const char* nombre)
{
    Capa* capa = dibujo_->buscaCapa(nombre);
    if (capa == nullptr)
    {
        return false;
    }
    registraComando(ComandoCapa::borrar(dibujo_, capa));
    actualiza(kCapas, false);
    return true;
}

bool EditorDibujo::setColorActualIndice(int indice)
{
    return dibujo_->setColorActualIndice(indice);
}

void EditorDibujo::setColorActualRGB(int32_t rgb)
{
    dibujo_->setColorActualRGB(static_cast<uint32_t>(rgb));
}

}  // namespace cad
