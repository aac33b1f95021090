#include "editor/ModificadorVertice.h"

#include <algorithm>
#include <cmath>

#include "base/Configuracion.h"
#include "base/geometria/Linea3D.h"
#include "base/geometria/Plano3D.h"
#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "entidades/Entidad.h"
#include "entidades/Plano.h"

namespace cad
{

namespace
{

// The marker the display draws for a dragged or marked vertex.
constexpr int kEstiloMarca = 1;

}  // namespace

ModificadorVertice::ModificadorVertice(EditorDibujo* e, const elemento_seleccionado_t& el)
    : elemento(el), inicio(el.punto), editor(e)
{
}

bool ModificadorVertice::vigente() const
{
    Entidad* e = elemento.entidad;
    if (e == nullptr)
    {
        return false;
    }
    if (editor == nullptr || editor->dibujo() == nullptr)
    {
        return true;
    }
    return editor->dibujo()->contieneEntidad(e);
}

// --- ModificadorVerticeEntidad ----------------------------------------------------------------

void ModificadorVerticeEntidad::dibuja(PantallaCAD& p, uint32_t color)
{
    p.dibujaMarca(elemento.posicion, kEstiloMarca, color);
}

void ModificadorVerticeEntidad::mueve(const cursor_t& cursor, int tipoReactor)
{
    elemento.posicion = cursor.get();
    if (editor != nullptr && editor->reactorEdicionEntidades)
    {
        const Punto3<double>& p = elemento.posicion;
        if (!editor->reactorEdicionEntidades(
                handleEntidad(elemento.entidad),
                static_cast<EditorDibujo::enumEdicionEntidades>(tipoReactor), elemento.indice, p.x,
                p.y, p.z) ||
            cancelado)
        {
            return;
        }
    }
    elemento.entidad->aplicaPuntoCaliente(elemento);
}

void ModificadorVerticeEntidad::modificaTemporal(const cursor_t& cursor)
{
    mueve(cursor, EditorDibujo::kModificarTemporal);
}

void ModificadorVerticeEntidad::modificaDefinitivo(const cursor_t& cursor)
{
    mueve(cursor, EditorDibujo::kModificarDefinitivo);
}

void ModificadorVerticeEntidad::cancela()
{
    cancelado = true;
    elemento.posicion = inicio;
    elemento.entidad->aplicaPuntoCaliente(elemento);
    if (editor != nullptr && editor->reactorEdicionEntidades)
    {
        editor->reactorEdicionEntidades(handleEntidad(elemento.entidad), EditorDibujo::kCancelar,
                                        elemento.indice, inicio.x, inicio.y, inicio.z);
    }
}

// --- ModificadorVerticePlano ------------------------------------------------------------------

void ModificadorVerticePlano::dibuja(PantallaCAD& p, uint32_t color)
{
    p.dibujaMarca(elemento.posicion, kEstiloMarca, color);
}

void ModificadorVerticePlano::modificaTemporal(const cursor_t& cursor)
{
    elemento.posicion = inicio;
    // Only a plane has a plane to slide on; any other owner of a kind-2 point stays put.
    Entidad* e = elemento.entidad;
    if (e->tieneFirma(kFirmaEntidadPlano) && cursor.posicion != invalido)
    {
        const Plano3D<double>& plano = *static_cast<Plano*>(e);
        const Linea3D<double> rayo(cursor.posicion, cursor.direccion);
        Punto3<double> corte;
        // A hit behind the eye would fling the point through the viewer. The test is written
        // so that a NaN (from an absurd ray) counts as behind.
        if (plano.interseccionLineaPlano(rayo, corte) &&
            (corte - cursor.posicion).dot(cursor.direccion) >= 0.0 && std::isfinite(corte.x) &&
            std::isfinite(corte.y) && std::isfinite(corte.z))
        {
            elemento.posicion = corte;
        }
    }
    e->aplicaPuntoCaliente(elemento);
}

void ModificadorVerticePlano::cancela()
{
    elemento.posicion = inicio;
    elemento.entidad->aplicaPuntoCaliente(elemento);
}

// --- ModificadorVerticeDimension and ModificadorVerticeRadio ----------------------------------

void ModificadorVerticeDimension::dibuja(PantallaCAD& p, uint32_t color)
{
    p.dibujaMarca(elemento.posicion, kEstiloMarca, color);
}

Punto3<double> ModificadorVerticeDimension::enPlanoVista(const cursor_t& cursor,
                                                         const Punto3<double>& base) const
{
    // Without a direction the plane has no normal and the projection would land on the
    // drawing's origin; without a point there is nothing to project.
    const Punto3<double>& p = cursor.get();
    if (p == invalido || !(cursor.direccion.modulo() > 0.0))
    {
        return inicio;
    }
    const Plano3D<double> plano(base, cursor.direccion);
    return plano.proyecta(p);
}

void ModificadorVerticeDimension::modificaTemporal(const cursor_t& cursor)
{
    elemento.posicion = enPlanoVista(cursor, elemento.origen);
    elemento.entidad->aplicaPuntoCaliente(elemento);
}

void ModificadorVerticeDimension::cancela()
{
    elemento.posicion = inicio;
    elemento.entidad->aplicaPuntoCaliente(elemento);
}

void ModificadorVerticeRadio::modificaTemporal(const cursor_t& cursor)
{
    elemento.posicion = enPlanoVista(cursor, elemento.punto);
    elemento.entidad->aplicaPuntoCaliente(elemento);
}

// --- ModificadorNuloVerticeEntidad ------------------------------------------------------------

void ModificadorNuloVerticeEntidad::dibuja(PantallaCAD& p, uint32_t color)
{
    // The coordinate as it stands now, so the mark follows later edits of the entity.
    const Punto3<double>* c =
        elemento.entidad != nullptr ? elemento.entidad->coordenada(elemento.indice) : nullptr;
    if (c != nullptr)
    {
        p.dibujaMarca(*c, kEstiloMarca, color);
    }
}

// --- factories and the list -------------------------------------------------------------------

std::unique_ptr<ModificadorVertice> creaModificador(EditorDibujo* editor,
                                                    const elemento_seleccionado_t& elemento)
{
    switch (elemento.tipo)
    {
        case kTipoVertice:
            return std::make_unique<ModificadorVerticeEntidad>(editor, elemento);
        case kTipoAuxiliar:
            return std::make_unique<ModificadorVerticePlano>(editor, elemento);
        case kTipoVector:
        case kTipoAzimut:
            return std::make_unique<ModificadorVerticeDimension>(editor, elemento);
        default:
            return nullptr;
    }
}

std::unique_ptr<ModificadorVertice> creaModificadorNulo(EditorDibujo* editor,
                                                        const elemento_seleccionado_t& elemento)
{
    if (elemento.tipo != kTipoVertice)
    {
        return nullptr;
    }
    return std::make_unique<ModificadorNuloVerticeEntidad>(editor, elemento);
}

void ListaModificadores::nuevo(std::unique_ptr<ModificadorVertice> m)
{
    if (m != nullptr)
    {
        modificadores.push_back(std::move(m));
    }
}

void ListaModificadores::dibuja(PantallaCAD& p) const
{
    const uint32_t color = Configuracion::instancia().color(Configuracion::kSeleccionado).ABGR();
    for (const auto& m : modificadores)
    {
        m->dibuja(p, color);
    }
}

void ListaModificadores::cancela()
{
    // Taken out first: the kCancelar reactor may come back here.
    std::vector<std::shared_ptr<ModificadorVertice>> cancelados;
    cancelados.swap(modificadores);
    for (const auto& m : cancelados)
    {
        if (m->vigente())
        {
            m->cancela();
        }
    }
}

}  // namespace cad
