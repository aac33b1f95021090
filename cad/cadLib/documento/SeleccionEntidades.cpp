#include "documento/SeleccionEntidades.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "documento/Dibujo.h"
#include "entidades/Cara3D.h"
#include "entidades/Cilindro.h"
#include "entidades/Entidad.h"
#include "entidades/Esfera.h"
#include "entidades/Firmas.h"
#include "entidades/Foto360.h"
#include "entidades/GrupoPuntos.h"
#include "entidades/Linea.h"
#include "entidades/Objeto3D.h"
#include "entidades/Plano.h"
#include "entidades/Polilinea.h"
#include "entidades/Prisma.h"
#include "entidades/PuntoControl.h"
#include "entidades/SistemaLocal.h"
#include "entidades/TomaCamara.h"

namespace cad
{

bool SeleccionEntidades::contiene(const Entidad* e) const
{
    return std::find(entidades.begin(), entidades.end(), e) != entidades.end();
}

bool SeleccionEntidades::incluyeManejadorEntidad(int64_t handle)
{
    if (dibujo == nullptr)
    {
        return false;
    }
    Entidad* e = dibujo->buscaEntidad(handle);
    if (e == nullptr || contiene(e))
    {
        return false;
    }
    entidades.push_back(e);
    return true;
}

bool SeleccionEntidades::incluyeUltimaEntidad()
{
    if (dibujo == nullptr || dibujo->ultimaEntidad == nullptr || contiene(dibujo->ultimaEntidad))
    {
        return false;
    }
    entidades.push_back(dibujo->ultimaEntidad);
    return true;
}

uint32_t SeleccionEntidades::incluyeCapa(const char* capa, bool unicos)
{
    uint32_t cuenta = 0;
    if (dibujo == nullptr)
    {
        return 0;
    }
    for (Entidad* e : dibujo->entidades)
    {
        if (!e->enCapa(capa))
        {
            continue;
        }
        if (unicos && !entidades.empty() && contiene(dibujo->ultimaEntidad))
        {
            continue;
        }
        entidades.push_back(e);
        ++cuenta;
    }
    return cuenta;
}

uint32_t SeleccionEntidades::incluyeFiltroEntidad(const std::string& firma, bool unicos)
{
    uint32_t cuenta = 0;
    if (dibujo == nullptr)
    {
        return 0;
    }
    for (Entidad* e : dibujo->entidades)
    {
        if (firma != e->etiqueta())
        {
            continue;
        }
        if (unicos && !entidades.empty() && contiene(dibujo->ultimaEntidad))
        {
            continue;
        }
        entidades.push_back(e);
        ++cuenta;
    }
    return cuenta;
}

void SeleccionEntidades::marcaSeleccion()
{
    bool cambio = false;
    for (Entidad* e : entidades)
    {
        cambio = cambio || (e->estado & kEstadoSeleccionada) == 0;
        e->setSeleccionada(true);
    }
    if (cambio && dibujo != nullptr)
    {
        dibujo->redibujar = true;
    }
}

void SeleccionEntidades::quitaSeleccion()
{
    bool cambio = false;
    for (Entidad* e : entidades)
    {
        cambio = cambio || (e->estado & kEstadoSeleccionada) != 0;
        e->setSeleccionada(false);
    }
    if (cambio && dibujo != nullptr)
    {
        dibujo->redibujar = true;
    }
}

void SeleccionEntidades::quitaEntidad(uint32_t i)
{
    if (i < entidades.size())
    {
        entidades.erase(entidades.begin() + i);
    }
}

void SeleccionEntidades::quitaNubes()
{
    entidades.erase(
        std::remove_if(entidades.begin(), entidades.end(),
                       [](const Entidad* e) { return e->tieneFirma(kFirmaEntidadNube); }),
        entidades.end());
}

Entidad* SeleccionEntidades::getEntidad(uint32_t i) const
{
    return entidades.at(i);
}

Entidad* SeleccionEntidades::conFirma(uint32_t i, const char* firma) const
{
    Entidad* e = entidades.at(i);
    return e->tieneFirma(firma) ? e : nullptr;
}

SeleccionEntidades SeleccionEntidades::getEntidadesLinea() const
{
    SeleccionEntidades s(dibujo);
    for (Entidad* e : entidades)
    {
        if (e->tieneFirma(kFirmaEntidadLinea))
        {
            s.entidades.push_back(e);
        }
    }
    return s;
}

Linea* SeleccionEntidades::getEntidadLinea(uint32_t i) const
{
    return static_cast<Linea*>(conFirma(i, kFirmaEntidadLinea));
}

Polilinea* SeleccionEntidades::getEntidadPolilinea(uint32_t i) const
{
    Entidad* e = entidades.at(i);
    if (std::strcmp(nombreTipo(e->etiqueta()), "Polilinea") != 0)
    {
        return nullptr;
    }
    // A polygon answers with the polyline's tag but is no Polilinea: the type test keeps
    // the cast honest where the tag alone would not.
    return dynamic_cast<Polilinea*>(e);
}

Plano* SeleccionEntidades::getEntidadPlano(uint32_t i) const
{
    return static_cast<Plano*>(conFirma(i, kFirmaEntidadPlano));
}

SistemaLocal* SeleccionEntidades::getEntidadSistemaLocal(uint32_t i) const
{
    return static_cast<SistemaLocal*>(conFirma(i, kFirmaEntidadSistemaLocal));
}

PuntoControl* SeleccionEntidades::getEntidadPuntoControl(uint32_t i) const
{
    return static_cast<PuntoControl*>(conFirma(i, kFirmaEntidadPuntoControl));
}

Entidad* SeleccionEntidades::getEntidadNube(uint32_t i) const
{
    return conFirma(i, kFirmaEntidadNube);
}

GrupoPuntos* SeleccionEntidades::getEntidadGrupoPuntos(uint32_t i) const
{
    return static_cast<GrupoPuntos*>(conFirma(i, kFirmaEntidadGrupoPuntos));
}

Cara3D* SeleccionEntidades::getEntidadCara3D(uint32_t i) const
{
    return static_cast<Cara3D*>(conFirma(i, kFirmaEntidadCara3D));
}

Objeto3D* SeleccionEntidades::getEntidadObjeto3D(uint32_t i) const
{
    return static_cast<Objeto3D*>(conFirma(i, kFirmaEntidadObjeto3D));
}

Cilindro* SeleccionEntidades::getEntidadCilindro(uint32_t i) const
{
    return static_cast<Cilindro*>(conFirma(i, kFirmaEntidadCilindro));
}

Prisma* SeleccionEntidades::getEntidadPrisma(uint32_t i) const
{
    return static_cast<Prisma*>(conFirma(i, kFirmaEntidadPrisma));
}

Esfera* SeleccionEntidades::getEntidadEsfera(uint32_t i) const
{
    return static_cast<Esfera*>(conFirma(i, kFirmaEntidadEsfera));
}

TomaCamara* SeleccionEntidades::getEntidadTomaCamara(uint32_t i) const
{
    return static_cast<TomaCamara*>(conFirma(i, kFirmaEntidadTomaCamara));
}

Foto360* SeleccionEntidades::getEntidadFoto360(uint32_t i) const
{
    return static_cast<Foto360*>(conFirma(i, kFirmaEntidadFoto360));
}

}  // namespace cad
