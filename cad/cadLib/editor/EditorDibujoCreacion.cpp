// EditorDibujo: the commands that create points, lines, faces and planes, the conversion to
// free meshes, and the current material.
#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

#include "base/geometria/Polilinea3D.h"
#include "documento/Dibujo.h"
#include "editor/Comando.h"
#include "editor/EditorDibujo.h"
#include "editor/LineaElastica.h"
#include "entidades/AjustePlano.h"
#include "entidades/Linea.h"
#include "entidades/Objeto3D.h"
#include "entidades/Plano.h"
#include "entidades/Policara.h"
#include "entidades/Punto.h"
#include "modelo/Modelo3D.h"

namespace cad
{

namespace
{

// Asks until a pick brings an entity that `admite` takes, and returns that one; null when the
// wait is refused. A pick of another kind asks again rather than ending the command.
Entidad* eligeEntidad(EditorDibujo& editor, const char* prompt,
                      const std::function<bool(const Entidad*)>& admite)
{
    for (;;)
    {
        SeleccionEntidades seleccion(editor.dibujo_);
        if (!editor.seleccionaEntidad(prompt, seleccion))
        {
            return nullptr;
        }
        for (Entidad* e : seleccion.entidades)
        {
            if (admite(e))
            {
                return e;
            }
        }
    }
}

bool esPlano(const Entidad* e)
{
    return e->tieneFirma(kFirmaEntidadPlano);
}

// The segment a plane is cut square along: a line, or an open polyline of two vertices.
bool segmentoDe(const Entidad* e, Linea3D<double>& segmento)
{
    if (const auto* l = dynamic_cast<const Linea3D<double>*>(e))
    {
        segmento = *l;
        return true;
    }
    const auto* p = dynamic_cast<const Polilinea3D<double>*>(e);
    if (p != nullptr && p->numeroVertices() == 2 && !p->esCerrada())
    {
        segmento = Linea3D<double>(p->vertices[0], p->vertices[1]);
        return true;
    }
    return false;
}

// An Objeto3D of one flat face over the corners, on the current material.
Objeto3D* objetoCara(const std::vector<Punto3<double>>& esquinas, int16_t material)
{
    auto modelo = std::make_unique<Modelo3D>();
    modelo->nuevaCara(static_cast<int>(esquinas.size()), esquinas.data(), nullptr, true,
                      static_cast<uint16_t>(material));
    return new Objeto3D(modelo.release());
}

}  // namespace

// -------------------------------------------------------------------------------------------
// Commands

int EditorDibujo::comandoPunto()
{
    iniciaComandoInteractivo(false);
    int creados = 0;
    cursor_t cursor;
    while (getPunto(texto(2, 1, "Seleccione coordenadas del punto:"), cursor, true))
    {
        auto* punto = new Punto(cursor.get());
        if (reactorInsercionEntidades &&
            !reactorInsercionEntidades(handleEntidad(punto), kEntidadInsertada))
        {
            // Refused by the host: nobody else holds it.
            delete punto;
            continue;
        }
        registraComando(new ComandoNuevaEntidad(dibujo_, punto));
        actualiza(kControl, false);
        ++creados;
    }
    finComandoInteractivo();
    return creados;
}

int EditorDibujo::comandoLinea()
{
    iniciaComandoInteractivo(false);
    cursor_t cursor;
    if (!getPunto(texto(3, 1, "Seleccione coordenada inicial de la linea:"), cursor, true))
    {
        finComandoInteractivo();
        return 0;
    }
    int creadas = 0;
    Punto3<double> anterior = cursor.get();
    {
        LineaElastica banda(this, 1);
        banda.nuevaAncla(anterior);
        while (getPunto(texto(3, 2, "Seleccione coordenada final de la linea:"), cursor, true))
        {
            const Punto3<double> punto = cursor.get();
            auto* linea = new Linea(anterior, punto);
            if (nuevaEntidad(std::unique_ptr<Entidad>(linea)))
            {
                ++creadas;
            }
            anterior = punto;
            banda.nuevaAncla(punto);
        }
        banda.vaciaAnclas();
    }
    finComandoInteractivo();
    return creadas;
}

// -------------------------------------------------------------------------------------------
// Faces

int EditorDibujo::comandoCara3D3()
{
    iniciaComandoInteractivo(false);
    cursor_t cursor;
    if (!getPunto(texto(6, 1, "Seleccione coordenada inicial de la cara 3D:"), cursor, true))
    {
        finComandoInteractivo();
        return 0;
    }
    int creadas = 0;
    int triangulos = 0;  // of the strip, made or refused: the winding alternates along it
    Punto3<double> a = cursor.get();
    {
        LineaElastica banda(this, 5);
        banda.nuevaAncla(a);
        if (getPunto(texto(6, 2, "Seleccione la segunda coordenada de la cara 3D:"), cursor, true))
        {
            Punto3<double> b = cursor.get();
            banda.nuevaAncla(b);
            while (getPunto(texto(6, 3, "Seleccione la tercera coordenada de la cara 3D:"), cursor,
                            true))
            {
                const Punto3<double> c = cursor.get();
                // Every other triangle of the strip runs its shared side backwards, so that
                // all of them face the same way.
                Objeto3D* cara = (triangulos++ % 2 == 0)
                                     ? objetoCara({a, b, c}, dibujo_->materialActual())
                                     : objetoCara({b, a, c}, dibujo_->materialActual());
                if (nuevaEntidad(std::unique_ptr<Entidad>(cara)))
                {
                    ++creadas;
                }
                a = b;
                b = c;
                std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
                banda.vaciaAnclas();
                banda.nuevaAncla(a);
                banda.nuevaAncla(b);
            }
        }
        banda.vaciaAnclas();
    }
    finComandoInteractivo();
    return creadas;
}

int EditorDibujo::comandoCara3D4()
{
    iniciaComandoInteractivo(false);
    int creadas = 0;
    cursor_t cursor;
    if (getPunto(texto(6, 1, "Seleccione coordenada inicial de la cara 3D:"), cursor, true))
    {
        const Punto3<double> p1 = cursor.get();
        LineaElastica banda(this, 6);
        banda.nuevaAncla(p1);
        if (getPunto(texto(6, 2, "Seleccione la segunda coordenada de la cara 3D:"), cursor, true))
        {
            const Punto3<double> p2 = cursor.get();
            banda.nuevaAncla(p2);
            if (getPunto(texto(6, 3, "Seleccione la tercera coordenada de la cara 3D:"), cursor,
                         true))
            {
                const Punto3<double> p3 = cursor.get();
                Objeto3D* cara =
                    objetoCara({p1, p2, p3, p3 + (p1 - p2)}, dibujo_->materialActual());
                if (nuevaEntidad(std::unique_ptr<Entidad>(cara)))
                {
                    ++creadas;
                    dibujo_->edicionHecha();
                }
            }
        }
        banda.vaciaAnclas();
    }
    finComandoInteractivo();
    return creadas;
}

int EditorDibujo::comandoCara()
{
    iniciaComandoInteractivo(false);
    std::vector<Punto3<double>> puntos;
    {
        LineaElastica banda(this, 4);
        cursor_t cursor;
        while (getPunto(texto(6, 4, "Seleccione coordenadas de la cara 3D:"), cursor, true))
        {
            puntos.push_back(cursor.get());
            banda.nuevaAncla(puntos.back());
        }
        banda.vaciaAnclas();
    }
    int resultado = 0;
    if (puntos.size() >= 3)
    {
        auto* plano =
            new Plano(ajustaPlano(puntos), static_cast<int>(puntos.size()), puntos.data());
        if (nuevaEntidad(std::unique_ptr<Entidad>(plano)))
        {
            resultado = static_cast<int>(puntos.size());
        }
    }
    finComandoInteractivo();
    return resultado;
}

// -------------------------------------------------------------------------------------------
// Planes

int EditorDibujo::comandoPlano()
{
    iniciaComandoInteractivo(false);
    int planos = 0;
    cursor_t cursor;
    while (getPunto(texto(7, 1, "Seleccione coordenada inicial del plano:"), cursor, true))
    {
        const Punto3<double> primero = cursor.get();
        Plano* plano = nullptr;
        {
            LineaElastica banda(this, 3);
            banda.nuevaAncla(primero);
            while (
                getPunto(texto(7, 2, "Seleccione siguiente coordenada del plano:"), cursor, true))
            {
                const Punto3<double> p = cursor.get();
                if (plano == nullptr)
                {
                    const Punto3<double> dos[2] = {primero, p};
                    plano = new Plano(2, dos);
                    if (!nuevaEntidad(plano))
                    {
                        delete plano;
                        plano = nullptr;
                        break;
                    }
                }
                else if (dibujo_->contieneEntidad(plano))
                {
                    plano->nuevoVertice(p);
                    dibujo_->edicionHecha();
                    actualiza(kControl, false);
                }
                else
                {
                    // Undone or deleted from inside the wait: it is no longer ours to grow.
                    plano = nullptr;
                    break;
                }
                banda.nuevaAncla(p);
            }
            banda.vaciaAnclas();
        }
        if (plano != nullptr && dibujo_->contieneEntidad(plano))
        {
            if (plano->numCoordenadas() < 3)
            {
                destruyeSinDeshacer(plano);
                actualiza(kControl, false);
            }
            else
            {
                ++planos;
            }
        }
    }
    finComandoInteractivo();
    return planos;
}

bool EditorDibujo::comandoContornoPlano()
{
    iniciaComandoInteractivo(false);
    bool hecho = false;
    Entidad* plano = eligeEntidad(*this, texto(7, 3, "Seleccione un plano:"), esPlano);
    if (plano != nullptr)
    {
        resalta(plano, true);
        Entidad* polilinea = eligeEntidad(*this, texto(5, 1, "Seleccione una polilinea:"),
                                          [](const Entidad* e) { return e->esTipo("Polilinea"); });
        // A contour of fewer than three points would leave a plane that paints nothing.
        const auto* cadena = dynamic_cast<const Polilinea3D<double>*>(polilinea);
        if (cadena != nullptr && cadena->numeroVertices() >= 3 && dibujo_->contieneEntidad(plano))
        {
            auto* p = static_cast<Plano*>(plano);
            if (p->normal() == Vector3D<double>())
            {
                // A plane drawn with two points has none yet: the new contour gives it one.
                p->Plano3D<double>::operator=(ajustaPlano(cadena->vertices));
            }
            p->setContorno(*cadena);
            destruyeSinDeshacer(polilinea);
            dibujo_->edicionHecha();
            hecho = true;
        }
        if (dibujo_->contieneEntidad(plano))
        {
            resalta(plano, false);
        }
        actualiza(kControl, false);
    }
    finComandoInteractivo();
    return hecho;
}

int EditorDibujo::comandoParalelaPlano()
{
    iniciaComandoInteractivo(false);
    int creados = 0;
    Entidad* fuente = nullptr;
    while ((fuente = eligeEntidad(*this, texto(7, 3, "Seleccione un plano:"), esPlano)) != nullptr)
    {
        resalta(fuente, true);
        esperaValor = true;
        cursor_t cursor;
        double distanciaTecleada = -1.0;
        const bool respuesta = getPunto(texto(7, 4, "Seleccione <Punto>/<Distancia>:"), cursor,
                                        nullptr, &distanciaTecleada, true);
        // A number typed here is kept in valorValido; a point leaves it false.
        const bool numero = respuesta && valorValido;
        if (!dibujo_->contieneEntidad(fuente))
        {
            break;
        }
        resalta(fuente, false);
        if (!respuesta)
        {
            break;
        }
        const auto* origen = static_cast<const Plano*>(fuente);
        const Vector3D<double> n(origen->a, origen->b, origen->c);
        const double modulo = n.modulo();
        // A plane of fewer than three points has no normal to move along.
        if (modulo == 0.0)
        {
            continue;
        }
        // Measured on the plane itself, not from `referencia`, which a fit may leave off it.
        const Punto3<double> p = cursor.get();
        const double distancia =
            numero ? distanciaTecleada : (n.x * p.x + n.y * p.y + n.z * p.z + origen->d) / modulo;
        auto* copia = static_cast<Plano*>(origen->clona());
        // With a unit normal the move of d is exact.
        copia->a /= modulo;
        copia->b /= modulo;
        copia->c /= modulo;
        copia->d /= modulo;
        copia->paralela(distancia);
        if (copia->referencia != invalido)
        {
            copia->referencia += copia->normal() * distancia;
        }
        if (nuevaEntidad(std::unique_ptr<Entidad>(copia)))
        {
            ++creados;
        }
    }
    finComandoInteractivo();
    return creados;
}

int EditorDibujo::comandoPerpendicularPlano()
{
    iniciaComandoInteractivo(false);
    int creados = 0;
    Entidad* fuente = nullptr;
    while ((fuente = eligeEntidad(*this, texto(7, 3, "Seleccione un plano:"), esPlano)) != nullptr)
    {
        resalta(fuente, true);
        esperaValor = true;
        Linea3D<double> segmento;
        Entidad* linea =
            eligeEntidad(*this, texto(3, 3, "Seleccione una linea:"),
                         [&segmento](const Entidad* e) { return segmentoDe(e, segmento); });
        if (!dibujo_->contieneEntidad(fuente))
        {
            break;
        }
        resalta(fuente, false);
        if (linea == nullptr)
        {
            break;
        }
        Plano* nuevo = static_cast<const Plano*>(fuente)->perpendicular(segmento);
        if (nuevo == nullptr)
        {
            // A line along the plane's normal, or a plane without one: nothing to make.
            continue;
        }
        nuevo->capa = fuente->capa;
        nuevo->color = fuente->color;
        nuevo->estiloLinea = fuente->estiloLinea;
        if (nuevaEntidad(std::unique_ptr<Entidad>(nuevo)))
        {
            ++creados;
        }
    }
    finComandoInteractivo();
    return creados;
}

// -------------------------------------------------------------------------------------------
// Conversion to free meshes

int EditorDibujo::comandoConvierteObjeto3D()
{
    iniciaComandoInteractivo(false);
    SeleccionEntidades seleccion(dibujo_);
    const char* prompt = texto(5, 4, "Seleccione entidades para converirlas a objetos 3D");
    for (;;)
    {
        const size_t antes = seleccion.entidades.size();
        if (!seleccionaEntidad(prompt, seleccion))
        {
            break;
        }
        // Highlighted, a picked entity shows as taken and is not picked twice.
        for (size_t i = antes; i < seleccion.entidades.size(); ++i)
        {
            resalta(seleccion.entidades[i], true);
        }
    }
    int convertidas = 0;
    for (Entidad* fuente : seleccion.entidades)
    {
        if (!dibujo_->contieneEntidad(fuente))
        {
            continue;
        }
        resalta(fuente, false);
        auto modelo = std::make_unique<Modelo3D>();
        if (esPlano(fuente))
        {
            const auto* plano = static_cast<const Plano*>(fuente);
            // Fewer than three points make no face: such a plane stays as it is.
            if (plano->numCoordenadas() < 3)
            {
                continue;
            }
            plano->aModelo(*modelo);
        }
        else if (fuente->tieneFirma(kFirmaEntidadCilindro) ||
                 fuente->tieneFirma(kFirmaEntidadPrisma) || fuente->tieneFirma(kFirmaEntidadEsfera))
        {
            static_cast<const EntidadConVolumen*>(fuente)->generaModelo(*modelo);
        }
        else if (fuente->tieneFirma(kFirmaEntidadPolicara))
        {
            // An imported terrain becomes a mesh that the mesh commands can edit; a soup with
            // no valid face stays as it is.
            static_cast<const Policara*>(fuente)->aModelo(*modelo);
            if (modelo->caras().empty())
            {
                continue;
            }
        }
        else
        {
            continue;
        }
        auto* objeto = new Objeto3D(modelo.release());
        objeto->capa = fuente->capa;
        objeto->color = fuente->color;
        objeto->estiloLinea = fuente->estiloLinea;
        objeto->setMaterial(static_cast<uint16_t>(dibujo_->materialActual()));
        // The new object goes in first: a host that refuses it keeps the source.
        if (!nuevaEntidad(objeto))
        {
            delete objeto;
            continue;
        }
        destruyeSinDeshacer(fuente);
        ++convertidas;
    }
    dibujo_->redibujar = true;
    actualiza(kControl, false);
    finComandoInteractivo();
    return convertidas;
}

// -------------------------------------------------------------------------------------------
// Current material

int16_t EditorDibujo::materialActual() const
{
    return dibujo_->materialActual();
}

void EditorDibujo::setMaterialActual(int16_t id)
{
    // Only "none" or a material of this drawing: faces must not name a missing one.
    if (id == 0 || dibujo_->existeMaterial(id))
    {
        dibujo_->setMaterialActual(id);
    }
}

}  // namespace cad
