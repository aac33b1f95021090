#include "editor/Comando.h"

#include <mutex>
#include <utility>

#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "entidades/Entidad.h"
#include "entidades/Objeto3D.h"

namespace cad
{

Comando::Comando(Dibujo* d) : dibujo(d), generacion(d->entidades.generacion) {}

bool Comando::vigente() const
{
    return dibujo->entidades.generacion == generacion;
}

// --- deletion ------------------------------------------------------------------------------

ComandoBorraEntidad::~ComandoBorraEntidad()
{
    if (propia)
    {
        delete entidad;
    }
}

void ComandoBorraEntidad::deshacer()
{
    if (vigente() && propia)
    {
        dibujo->nuevaEntidad(entidad);
        propia = false;
    }
    hecho = false;
}

void ComandoBorraEntidad::rehacer()
{
    // The entity leaves the drawing but not memory: deshacer gives the same object back.
    if (vigente() && dibujo->borraEntidad(entidad, false))
    {
        propia = true;
    }
    hecho = true;
}

// --- insertion -----------------------------------------------------------------------------

ComandoNuevaEntidad::~ComandoNuevaEntidad()
{
    if (propia)
    {
        delete entidad;
    }
}

void ComandoNuevaEntidad::deshacer()
{
    if (vigente() && dibujo->borraEntidad(entidad, false))
    {
        propia = true;
    }
    hecho = false;
}

void ComandoNuevaEntidad::rehacer()
{
    if (vigente())
    {
        dibujo->nuevaEntidad(entidad);
        propia = false;
    }
    hecho = true;
}

// --- numeric move --------------------------------------------------------------------------

bool ComandoMoverEntidad::presente() const
{
    // The entity may have been deleted by a path that keeps no step.
    return vigente() && dibujo->contieneEntidad(entidad);
}

void ComandoMoverEntidad::deshacer()
{
    if (presente())
    {
        entidad->traslada(-desplazamiento);
        dibujo->edicionHecha();
    }
    hecho = false;
}

void ComandoMoverEntidad::rehacer()
{
    if (presente())
    {
        entidad->traslada(desplazamiento);
        dibujo->edicionHecha();
    }
    hecho = true;
}

// --- layers --------------------------------------------------------------------------------

ComandoCapa* ComandoCapa::borrar(Dibujo* d, Capa* capa)
{
    auto* c = new ComandoCapa(d, kBorrar);
    for (Entidad* e : d->entidades)
    {
        if (e->capa.objeto == capa)
        {
            c->entidades.push_back(e);
        }
    }
    c->nombre = capa->nombre;
    c->color = capa->color;
    return c;
}

ComandoCapa* ComandoCapa::actual(Dibujo* d, const char* nombre)
{
    auto* c = new ComandoCapa(d, kActual);
    c->nombre = nombre;
    if (d->capaActual() != nullptr)
    {
        c->nombreAnterior = d->capaActual()->nombre;
    }
    return c;
}

ComandoCapa* ComandoCapa::renombrar(Dibujo* d, Capa* capa, const char* nombre)
{
    auto* c = new ComandoCapa(d, kRenombrar);
    c->capa = capa;
    c->nombre = nombre;
    c->nombreAnterior = capa->nombre;
    return c;
}

ComandoCapa* ComandoCapa::colorear(Dibujo* d, Capa* capa, const ColorCapa& color)
{
    auto* c = new ComandoCapa(d, kColor);
    c->capa = capa;
    c->color = color;
    c->colorAnterior = capa->color;
    return c;
}

ComandoCapa* ComandoCapa::visibilidad(Dibujo* d, Capa* capa, bool valor)
{
    auto* c = new ComandoCapa(d, kVisibilidad);
    c->capa = capa;
    c->valor = valor;
    return c;
}

ComandoCapa::~ComandoCapa()
{
    if (propias)
    {
        for (Entidad* e : entidades)
        {
            delete e;
        }
    }
}

void ComandoCapa::rehacer()
{
    hecho = true;
    // The layer object of kinds 3 to 5 went with the former contents after a load.
    if (capa != nullptr && !vigente())
    {
        return;
    }
    switch (tipo)
    {
        case kBorrar:
        {
            if (!vigente())
            {
                return;
            }
            std::vector<Entidad*> fuera;
            for (Entidad* e : entidades)
            {
                if (dibujo->borraEntidad(e, false))
                {
                    fuera.push_back(e);
                }
            }
            // Only what really left the drawing is the step's to keep.
            entidades = std::move(fuera);
            propias = true;
            // Destroys whatever else stands on the layer, and retires the layer itself.
            retirada = dibujo->buscaCapa(nombre.c_str());
            dibujo->borraCapa(nombre.c_str());
            dibujo->edicionHecha();
            return;
        }
        case kActual:
            dibujo->capaActual(nombre.c_str());
            return;
        case kRenombrar:
            capa->nombre = nombre;
            return;
        case kColor:
            capa->color = color;
            dibujo->edicionHecha();
            return;
        case kVisibilidad:
            dibujo->visibilidadCapa(capa->nombre.c_str(), valor);
            return;
        default:
            return;
    }
}

void ComandoCapa::deshacer()
{
    hecho = false;
    // The layer object of kinds 3 to 5 went with the former contents after a load.
    if (capa != nullptr && !vigente())
    {
        return;
    }
    switch (tipo)
    {
        case kBorrar:
        {
            if (!vigente() || !propias)
            {
                return;
            }
            auto* nueva = new Capa(nombre, color, 1);
            if (!dibujo->nuevaCapa(nueva))
            {
                // A layer of that name came meanwhile: the entities go back onto it.
                delete nueva;
                nueva = dibujo->buscaCapa(nombre.c_str());
            }
            // The entities still name the retired layer object; they belong to the new one.
            if (retirada != nullptr && dibujo->capaActual_ == retirada)
            {
                dibujo->capaActual_ = nueva;
            }
            for (Entidad* e : entidades)
            {
                e->asignaCapa(nueva);
                dibujo->nuevaEntidad(e);
            }
            propias = false;
            return;
        }
        case kActual:
            dibujo->capaActual(nombreAnterior.c_str());
            return;
        case kRenombrar:
            capa->nombre = nombreAnterior;
            return;
        case kColor:
            capa->color = colorAnterior;
            dibujo->edicionHecha();
            return;
        case kVisibilidad:
            dibujo->visibilidadCapa(capa->nombre.c_str(), !valor);
            return;
        default:
            return;
    }
}

// --- mesh edit -----------------------------------------------------------------------------

ComandoModelo::ComandoModelo(Dibujo* d, Objeto3D* o, std::unique_ptr<Modelo3D> otro)
    : Comando(d), objeto(o), modelo(std::move(otro))
{
}

// Out of line, where Modelo3D is complete.
ComandoModelo::~ComandoModelo() = default;

void ComandoModelo::intercambia()
{
    {
        // The painting thread reads the object's mesh under the drawing's lock.
        std::lock_guard<std::recursive_mutex> guardia(dibujo->lock);
        Modelo3D* entra = modelo.release();
        modelo.reset(objeto->modelo);
        objeto->modelo = entra;
    }
    hecho = !hecho;
    // Nothing of the object is cached from its mesh: its box, points and paint are read from
    // the mesh each time. The mesh's own mark tells that it is not the one built.
    if (objeto->modelo != nullptr)
    {
        objeto->modelo->modificado = 1;
    }
    dibujo->edicionHecha();
}

void ComandoModelo::deshacer()
{
    if (hecho && vigente() && dibujo->contieneEntidad(objeto))
    {
        intercambia();
    }
}

void ComandoModelo::rehacer()
{
    if (!hecho && vigente() && dibujo->contieneEntidad(objeto))
    {
        intercambia();
    }
}

}  // namespace cad
