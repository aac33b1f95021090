// EditorDibujo: the commands that edit the mesh of an Objeto3D, and the extrusions. Every
// edit of a mesh goes through editaModelo and is one undo step.
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "documento/Dibujo.h"
#include "editor/Comando.h"
#include "editor/EditorDibujo.h"
#include "editor/LineaElastica.h"
#include "entidades/Objeto3D.h"
#include "entidades/Polilinea.h"
#include "modelo/OperacionesModelo.h"
#include "modelo/PuntosCalientes.h"

namespace cad
{

namespace
{

// The pick of a mesh command: entities that are not a mesh object are passed over and the
// wait is asked again. Null when the pick was refused.
Objeto3D* eligeObjeto3D(EditorDibujo& editor)
{
    for (;;)
    {
        SeleccionEntidades seleccion(editor.dibujo_);
        if (!editor.seleccionaEntidad(editor.texto(11, 1, "Seleccione una entidad:"), seleccion))
        {
            return nullptr;
        }
        for (Entidad* e : seleccion.entidades)
        {
            auto* o = e->tieneFirma(kFirmaEntidadObjeto3D) ? dynamic_cast<Objeto3D*>(e) : nullptr;
            if (o != nullptr && o->modelo != nullptr)
            {
                return o;
            }
        }
    }
}

// One click ranked among the object's hot elements, repeated until it finds one of the kinds
// that `acepta` takes. False when the wait was refused or the object went away meanwhile.
bool esperaElemento(EditorDibujo& editor, Objeto3D& o, const char* prompt,
                    const std::function<bool(const elemento_seleccionado_t&)>& acepta,
                    PuntosCalientes& puntos, elemento_seleccionado_t& elemento)
{
    for (;;)
    {
        // A wait before this one may have let the host take the object away.
        if (!editor.dibujo_->contieneEntidad(&o) || o.modelo == nullptr)
        {
            return false;
        }
        puntos = PuntosCalientes();
        o.puntosCalientes(puntos);
        if (editor.pantalla_ != nullptr)
        {
            editor.pantalla_->inicioSuperposicion();
            puntos.dibuja(*editor.pantalla_);
            puntos.dibujaAristasYCaras(*editor.pantalla_);
            editor.pantalla_->finSuperposicion();
        }
        cursor_t cursor;
        if (!editor.getPunto(prompt, cursor, true))
        {
            return false;
        }
        if (!editor.dibujo_->contieneEntidad(&o))
        {
            return false;
        }
        if (editor.pantalla_ == nullptr)
        {
            continue;
        }
        elemento = puntos.cercano(vista_t::de(*editor.pantalla_), cursor);
        elemento.entidad = &o;
        if (elemento.indice != -1 && acepta(elemento))
        {
            return true;
        }
    }
}

bool deTipo(const elemento_seleccionado_t& e, int32_t tipo)
{
    return e.tipo == tipo;
}

// The frame every mesh command shares. `trabajo` waits for its elements and runs the edit; it
// answers whether the edit ran (`hecho`) and the command's result.
bool comandoMalla(EditorDibujo& editor, const std::function<bool(Objeto3D&, bool& hecho)>& trabajo)
{
    editor.iniciaComandoInteractivo(false);
    bool resultado = false;
    Objeto3D* o = eligeObjeto3D(editor);
    if (o != nullptr)
    {
        o->marcaSeleccion();
        editor.dibujo_->vistaAplicada = false;
        editor.dibujo_->redibujar = true;
        editor.quitaMarcasVerticesEntidad(o);
        editor.actualiza(EditorDibujo::kPropiedades, false);
        bool hecho = false;
        resultado = trabajo(*o, hecho);
        const bool presente = editor.dibujo_->contieneEntidad(o);
        if (hecho && presente)
        {
            editor.dibujo_->edicionHecha();
        }
        // The pick only takes entities that are not marked yet, so unmarking it whole gives
        // back its state from before and lets the next command pick it again.
        if (presente)
        {
            o->quitaSeleccion();
            editor.dibujo_->redibujar = true;
        }
        editor.actualiza(EditorDibujo::kPropiedades, false);
    }
    editor.finComandoInteractivo();
    return resultado;
}

// A mesh command on one element of one kind, as one undo step. `edicion` answers whether it
// changed the mesh; the command ends true once the element was taken, whatever the mesh made
// of it.
bool comandoElemento(EditorDibujo& editor, const char* prompt, int32_t tipo,
                     const std::function<bool(Modelo3D&, int32_t)>& edicion)
{
    return comandoMalla(editor,
                        [&](Objeto3D& o, bool& hecho)
                        {
                            PuntosCalientes puntos;
                            elemento_seleccionado_t elemento;
                            const auto acepta = [tipo](const elemento_seleccionado_t& e)
                            { return deTipo(e, tipo); };
                            if (!esperaElemento(editor, o, prompt, acepta, puntos, elemento))
                            {
                                return false;
                            }
                            hecho = true;
                            editor.editaModelo(
                                o, [&](Modelo3D& m) { return edicion(m, elemento.indice); });
                            return true;
                        });
}

}  // namespace

bool EditorDibujo::comandoBorraCaraModelo()
{
    return comandoElemento(*this, texto(11, 9, "Seleccione cara caliente:"), kTipoCara,
                           [](Modelo3D& m, int32_t cara)
                           {
                               m.borraCara(cara);
                               return true;
                           });
}

bool EditorDibujo::comandoInvierteNormales()
{
    return comandoMalla(*this,
                        [this](Objeto3D& o, bool& hecho)
                        {
                            editaModelo(o,
                                        [](Modelo3D& m)
                                        {
                                            m.invierteNormales();
                                            return true;
                                        });
                            hecho = true;
                            return true;
                        });
}

bool EditorDibujo::comandoParteArista(int partes)
{
    return comandoElemento(*this, texto(11, 8, "Seleccione una arista:"), kTipoArista,
                           [partes](Modelo3D& m, int32_t arista)
                           {
                               m.parteArista(arista, partes);
                               // Below two parts the mesh is left alone: no step to undo.
                               return partes >= 2;
                           });
}

bool EditorDibujo::comandoUneVertices()
{
    return comandoMalla(
        *this,
        [this](Objeto3D& o, bool& hecho)
        {
            const char* prompt = texto(11, 10, "Seleccione punto caliente:");
            PuntosCalientes puntos;
            elemento_seleccionado_t a;
            elemento_seleccionado_t b;
            if (!esperaElemento(
                    *this, o, prompt,
                    [](const elemento_seleccionado_t& e) { return deTipo(e, kTipoVertice); },
                    puntos, a))
            {
                return false;
            }
            // The same vertex twice would ask the mesh for an edge from a point to itself.
            const int32_t primero = a.indice;
            if (!esperaElemento(
                    *this, o, prompt,
                    [primero](const elemento_seleccionado_t& e)
                    { return deTipo(e, kTipoVertice) && e.indice != primero; },
                    puntos, b))
            {
                return false;
            }
            hecho = true;
            return editaModelo(o, [&](Modelo3D& m) { return m.uneVertices(a.indice, b.indice); });
        });
}

bool EditorDibujo::comandoParteCara()
{
    return comandoElemento(*this, texto(11, 9, "Seleccione cara caliente:"), kTipoCara,
                           [](Modelo3D& m, int32_t cara)
                           {
                               m.parteCara(cara, true);
                               return true;
                           });
}

bool EditorDibujo::comandoHueco()
{
    return comandoElemento(*this, texto(11, 9, "Seleccione cara caliente:"), kTipoCara,
                           [](Modelo3D& m, int32_t cara)
                           {
                               m.parteCara(cara, false);
                               return true;
                           });
}

bool EditorDibujo::comandoRecortaCara()
{
    return comandoMalla(
        *this,
        [this](Objeto3D& o, bool& hecho)
        {
            PuntosCalientes puntos;
            elemento_seleccionado_t elemento;
            if (!esperaElemento(
                    *this, o, texto(11, 8, "Seleccione una arista:"),
                    [](const elemento_seleccionado_t& e) { return deTipo(e, kTipoArista); }, puntos,
                    elemento))
            {
                return false;
            }
            // The mesh finds the ends again by position, so only points that a pick put on an
            // edge or a vertex may end the cut; anything else would split no edge.
            std::vector<Punto3<double>> corte{elemento.punto};
            const char* prompt =
                texto(11, 11, "Seleccione puntos dentro de una cara o una arista:");
            for (;;)
            {
                if (!esperaElemento(
                        *this, o, prompt,
                        [](const elemento_seleccionado_t& e) {
                            return deTipo(e, kTipoCara) || deTipo(e, kTipoArista) ||
                                   deTipo(e, kTipoVertice);
                        },
                        puntos, elemento))
                {
                    return false;
                }
                corte.push_back(elemento.punto);
                if (elemento.tipo != kTipoCara)
                {
                    break;
                }
            }
            hecho = true;
            return editaModelo(o, [&](Modelo3D& m) { return m.recortaCara(corte); });
        });
}

bool EditorDibujo::comandoRellenaHueco()
{
    return comandoMalla(
        *this,
        [this](Objeto3D& o, bool& hecho)
        {
            // The edges are read after the wait: an undo run from inside it may have given
            // the object another mesh.
            const auto frontera = [&o](const elemento_seleccionado_t& e)
            {
                const Aristas& aristas = o.modelo->aristas();
                return deTipo(e, kTipoArista) && aristas.enRango(e.indice) &&
                       aristas[e.indice].esValida() && aristas[e.indice].esFrontera();
            };
            PuntosCalientes puntos;
            elemento_seleccionado_t elemento;
            if (!esperaElemento(*this, o, texto(11, 12, "Seleccione una arista frontera:"),
                                frontera, puntos, elemento))
            {
                return false;
            }
            const Aristas& aristas = o.modelo->aristas();
            // The walk around the hole. Its points make no face: the mesh is left as it was.
            // No edit fills a wing on an empty side, so the walk usually stops at once on -1;
            // the step limit guards a cycle that never comes back to the start.
            std::vector<int32_t> contorno;
            const int32_t inicio = elemento.indice;
            int32_t previa = aristas[inicio].cara[0] != -1 ? aristas[inicio].anteriorCara1
                                                           : aristas[inicio].anteriorCara0;
            int32_t actual = inicio;
            for (int32_t paso = 0; paso < aristas.size(); ++paso)
            {
                if (!aristas.enRango(previa) || !aristas.enRango(actual))
                {
                    break;
                }
                const Arista& a = aristas[actual];
                contorno.push_back(aristas[previa].toca(a.vertice[0]) ? a.vertice[0]
                                                                      : a.vertice[1]);
                const int32_t siguiente =
                    a.cara[0] == -1 ? a.siguienteCara0 : (a.cara[1] == -1 ? a.siguienteCara1 : -1);
                previa = actual;
                actual = siguiente;
                if (actual == inicio)
                {
                    break;
                }
            }
            hecho = true;
            return true;
        });
}

bool EditorDibujo::comandoExtrusion(bool cierra)
{
    (void)cierra;
    return comandoMalla(
        *this,
        [this](Objeto3D& o, bool& hecho)
        {
            PuntosCalientes puntos;
            elemento_seleccionado_t elemento;
            if (!esperaElemento(
                    *this, o, texto(11, 7, "Seleccione punto caliente, arista o cara:"),
                    [](const elemento_seleccionado_t& e) {
                        return deTipo(e, kTipoVertice) || deTipo(e, kTipoArista) ||
                               deTipo(e, kTipoCara);
                    },
                    puntos, elemento))
            {
                return false;
            }
            if (elemento.tipo == kTipoVertice)
            {
                // A dragged vertex is a mesh edit too, undone with the others.
                hecho = editaModelo(o, [&](Modelo3D&) { return editaPunto(elemento); });
                return hecho;
            }
            const char* prompt = texto(11, 5, "Seleccione nueva coordenada");
            const bool arista = elemento.tipo == kTipoArista;
            // The band draws the element moved by the vector from its last anchor, the grab.
            LineaElastica banda(this, arista ? 11 : 12);
            {
                std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
                if (arista)
                {
                    const auto extremos = puntos.arista(elemento.indice);
                    banda.nuevaAncla(extremos.first);
                    banda.nuevaAncla(extremos.second);
                }
                else
                {
                    for (const Punto3<double>& p :
                         puntos.caras[static_cast<size_t>(elemento.indice)])
                    {
                        banda.nuevaAncla(p);
                    }
                }
                banda.nuevaAncla(elemento.punto);
            }
            cursor_t cursor;
            const bool dado = arista ? getPuntoEnPlano(prompt, elemento.punto, cursor)
                                     : getPunto(prompt, cursor, true);
            {
                std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
                banda.vaciaAnclas();
            }
            if (!dado || !dibujo_->contieneEntidad(&o))
            {
                return false;
            }
            hecho = true;
            editaModelo(o,
                        [&](Modelo3D& m)
                        {
                            if (arista)
                            {
                                m.extruyeAristaHasta(elemento.indice, cursor.get());
                            }
                            else
                            {
                                // A length, not a projection on the normal: the prism always
                                // grows outwards.
                                const double distancia = elemento.punto.distancia(cursor.get());
                                m.extruyeCara(elemento.indice, static_cast<float>(distancia));
                            }
                            return true;
                        });
            return true;
        });
}

bool EditorDibujo::comandoExtrusionEntidad()
{
    iniciaComandoInteractivo(false);
    bool hecho = false;
    for (;;)
    {
        SeleccionEntidades seleccion(dibujo_);
        if (!seleccionaEntidadTipo("Polilinea", texto(5, 1, "Seleccione una polilinea:"),
                                   seleccion) ||
            seleccion.entidades.empty())
        {
            break;
        }
        // A Poligono shares the tag but not the class.
        Polilinea* polilinea = seleccion.getEntidadPolilinea(seleccion.numeroEntidades() - 1);
        if (polilinea == nullptr)
        {
            continue;
        }
        Punto3<double> base;
        Punto3<double> destino;
        if (!comandoDosPuntosLinea(texto(15, 1, "Seleccione punto base de la extrusion:"),
                                   texto(15, 2, "Seleccione punto destino de la extrusion:"), &base,
                                   &destino))
        {
            break;
        }
        if (!dibujo_->contieneEntidad(polilinea))
        {
            continue;
        }
        auto objeto = std::make_unique<Objeto3D>(
            new Modelo3D(polilinea->vertices, polilinea->esCerrada(), destino - base));
        objeto->setMaterial(static_cast<uint16_t>(materialActual()));
        if (nuevaEntidad(std::move(objeto)))
        {
            dibujo_->edicionHecha();
            actualiza(kPropiedades, true);
            hecho = true;
        }
    }
    finComandoInteractivo();
    return hecho;
}

// The edit runs on the object's own mesh, so that the mesh an edit works on is the one the
// object shows and anything that looked it up meanwhile stays valid; the copy made first is
// the step's "before", and the step is made done, so registering it leaves the edit as it is.
// A refused edit may have changed records before refusing (a cut splits its end edges
// first), and no step could take that back: the object gets the copy again.
bool EditorDibujo::editaModelo(Objeto3D& objeto, const std::function<bool(Modelo3D&)>& edicion)
{
    if (objeto.modelo == nullptr)
    {
        return false;
    }
    if (!dibujo_->contieneEntidad(&objeto))
    {
        // No step can name an object out of the drawing: its steps would never act.
        return edicion(*objeto.modelo);
    }
    auto antes = std::make_unique<Modelo3D>(*objeto.modelo);
    antes->transformable = objeto.modelo->transformable;
    const auto devuelve = [&]
    {
        std::lock_guard<std::recursive_mutex> guardia(dibujo_->lock);
        delete std::exchange(objeto.modelo, antes.release());
    };
    Modelo3D* const editado = objeto.modelo;
    bool hecha = false;
    try
    {
        hecha = edicion(*objeto.modelo);
    }
    catch (...)
    {
        devuelve();
        throw;
    }
    // An edit that waits (a vertex drag) may see the host undo or delete meanwhile: the object
    // may be gone or hold another model, and neither the copy nor a step can stand for it.
    if (!dibujo_->contieneEntidad(&objeto) || objeto.modelo != editado)
    {
        return hecha;
    }
    if (!hecha)
    {
        devuelve();
        return false;
    }
    registraComando(new ComandoModelo(dibujo_, &objeto, std::move(antes)));
    dibujo_->edicionHecha();
    actualiza(kControl, false);
    return true;
}

bool EditorDibujo::comandoHuecoPolilinea()
{
    return comandoMalla(
        *this,
        [this](Objeto3D& o, bool& hecho)
        {
            Polilinea* p = nullptr;
            while (p == nullptr)
            {
                SeleccionEntidades seleccion(dibujo_);
                if (!seleccionaEntidad(texto(11, 13, "Seleccione una polilinea cerrada:"),
                                       seleccion))
                {
                    return false;
                }
                for (Entidad* e : seleccion.entidades)
                {
                    auto* candidata = dynamic_cast<Polilinea*>(e);
                    if (candidata != nullptr && candidata->esCerrada() && p == nullptr)
                    {
                        p = candidata;
                    }
                    else
                    {
                        e->quitaSeleccion();
                    }
                }
            }
            PuntosCalientes puntos;
            elemento_seleccionado_t elemento;
            const bool cara = esperaElemento(
                *this, o, texto(11, 9, "Seleccione cara caliente:"),
                [](const elemento_seleccionado_t& e) { return deTipo(e, kTipoCara); }, puntos,
                elemento);
            // The host may have deleted the polyline from inside a wait.
            const bool presente = dibujo_->contieneEntidad(p);
            if (presente)
            {
                p->quitaSeleccion();
                dibujo_->redibujar = true;
            }
            if (!cara || !presente)
            {
                return false;
            }
            hecho = editaModelo(o, [&](Modelo3D& m)
                                { return huecoPolilinea(m, elemento.indice, p->vertices, true); });
            return hecho;
        });
}

}  // namespace cad
