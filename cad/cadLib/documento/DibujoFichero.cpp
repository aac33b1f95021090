// The drawing's file: its state kept in variables, the DXF export's three steps, and the
// document file itself (writing, reading, checked forms, tying up references).
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/ReferenciaObjetoCAD.h"
#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "documento/Dibujo.h"
#include "documento/Variables.h"
#include "entidades/Entidad.h"
#include "entidades/PuntoControl.h"
#include "entidades/Texto.h"
#include "entidades/TomaCamara.h"
#include "intercambio/ExportaDXF.h"

namespace cad
{

namespace
{

// Persistent ids for one family, in list order. A new id is one above every id the family
// holds, so it never meets a stored one: ids stay unique, and two saves of the same drawing
// write the same bytes, which an address would not give.
template <class Lista>
void asignaIdsFamilia(Lista& lista)
{
    std::vector<ReferenciaObjetoCAD> instantanea;
    instantanea.reserve(lista.size());
    uint64_t maximo = 0;
    for (ObjetoCAD* o : lista)
    {
        instantanea.emplace_back(o, o->id);
        maximo = std::max(maximo, o->id);
    }
    for (ObjetoCAD* o : lista)
    {
        if (o->id != 0)
        {
            continue;
        }
        o->setId(maximo + 1, 0);
        maximo = o->id;
        instantanea.emplace_back(o, o->id);
    }
}

}  // namespace

// ---------------------------------------------------------------------------------------
// Document state in variables

void Dibujo::guardaEstado()
{
    if (capaActual_ != nullptr)
    {
        variables.setValor("clayer", capaActual_->nombre);
    }
    char texto[32];
    if (colorActual.colorCAD == 512)
    {
        std::snprintf(texto, sizeof texto, "RGB:%d", static_cast<int>(colorActual.RGBA()));
    }
    else
    {
        std::snprintf(texto, sizeof texto, "%d", static_cast<int>(colorActual.colorCAD));
    }
    variables.setValor("cecolor", std::string(texto));
    variables.setValor("orgplref", Vector3D<double>(origenPlano.x, origenPlano.y, origenPlano.z));
    variables.setValor("normplref", normalPlano);
    if (estiloTextoActual_ != nullptr)
    {
        variables.setValor("textstyle", estiloTextoActual_->nombre);
    }
    if (vistaActual != nullptr)
    {
        const Vista& v = *vistaActual;
        variables.setValor("posVista", Vector3D<double>(v.posicion.x, v.posicion.y, v.posicion.z));
        variables.setValor("objVista", Vector3D<double>(v.objetivo.x, v.objetivo.y, v.objetivo.z));
        variables.setValor("upVista", v.arriba);
        variables.setValor("zoomVista", v.zoom);
        variables.setValor("angVista", v.angulo);
    }
}

void Dibujo::cargaEstado()
{
    if (auto* v = comoVariable<VariableStr>(variables.busca("clayer"), "VSt"))
    {
        Capa* c = buscaCapa(v->valor.c_str());
        if (c == nullptr)
        {
            c = buscaCapa("0");
        }
        if (c != nullptr)
        {
            capaActual_ = c;
        }
    }
    if (auto* v = comoVariable<VariableStr>(variables.busca("cecolor"), "VSt"))
    {
        if (v->valor.compare(0, 4, "RGB:") == 0)
        {
            // Split as blue, green, red from low to high with alpha 255: the save wrote the
            // value alpha lowest, so the two forms differ by a byte, and that is kept.
            colorActual.setRGB(static_cast<uint32_t>(std::atoi(v->valor.c_str() + 4)));
        }
        else
        {
            colorActual.setIndiceColor(std::atoi(v->valor.c_str()));
        }
    }
    Punto3<double> origen;
    Punto3<double> normal;
    if (variables.getValor3D("orgplref", origen) && variables.getValor3D("normplref", normal))
    {
        setPlanoReferencia(origen, Vector3D<double>(normal.x, normal.y, normal.z));
    }
    ultimaEntidad = nullptr;
    if (auto* v = comoVariable<VariableStr>(variables.busca("textstyle"), "VSt"))
    {
        EstiloTexto* e = buscaEstiloTexto(v->valor.c_str());
        if (e == nullptr)
        {
            e = buscaEstiloTexto("standar");
        }
        if (e != nullptr)
        {
            estiloTextoActual_ = e;
        }
    }
    delete vistaActual;
    vistaActual = new Vista();
    // A variable that is missing leaves the new view's default in place.
    Punto3<double> arriba(vistaActual->arriba.x, vistaActual->arriba.y, vistaActual->arriba.z);
    auto* zoom = comoVariable<VariableDob>(variables.busca("zoomVista"), "VDb");
    auto* angulo = comoVariable<VariableDob>(variables.busca("angVista"), "VDb");
    // Every variable is looked up, so that the view takes whatever is there.
    const bool hayPosicion = variables.getValor3D("posVista", vistaActual->posicion);
    const bool hayObjetivo = variables.getValor3D("objVista", vistaActual->objetivo);
    const bool hayArriba = variables.getValor3D("upVista", arriba);
    const bool completa =
        hayPosicion && hayObjetivo && hayArriba && zoom != nullptr && angulo != nullptr;
    vistaActual->arriba = Vector3D<double>(arriba.x, arriba.y, arriba.z);
    if (zoom != nullptr)
    {
        vistaActual->zoom = zoom->valor;
    }
    if (angulo != nullptr)
    {
        vistaActual->angulo = angulo->valor;
    }
    // Without a whole stored view the display keeps its present camera.
    vistaAplicada = !completa;
}

// ---------------------------------------------------------------------------------------
// DXF output

void Dibujo::inicializaDocumentoDXF(ExportaDXF& dxf)
{
    for (const Capa* c : capas)
    {
        dxf.nuevaCapaRGBA(c->nombre, c->color);
    }
    dxf.inicioEntidades();
}

bool Dibujo::exportaDocumentoDFX(ExportaDXF& dxf)
{
    for (const Entidad* e : entidades)
    {
        e->exportaDXF(dxf);
    }
    return true;
}

void Dibujo::finalizaDocumentoDXF(ExportaDXF& dxf)
{
    dxf.finEntidades();
}

// ---------------------------------------------------------------------------------------
// The document file

void Dibujo::asignaIds()
{
    asignaIdsFamilia(capas);
    asignaIdsFamilia(materiales);
    asignaIdsFamilia(estilosTexto);
}

void Dibujo::escribe(SerializadorEscrituraBase& w)
{
    std::lock_guard<std::recursive_mutex> guardia(lock);
    documentoListo = false;
    asignaIds();
    {
        std::unique_ptr<BloqueSerializacion> bloque(w.nuevoBloque64(etiqueta()));
        capas.escribe(w);
        materiales.escribe(w);
        estilosTexto.escribe(w);
        entidades.escribe(w);
        variables.escribe(w);
        vistas.escribe(w);
        escribeDatosDesconocidos(w);
    }
    documentoListo = true;
}

bool Dibujo::lee(SerializadorLecturaBase& r)
{
    std::lock_guard<std::recursive_mutex> guardia(lock);
    documentoListo = false;
    BloqueSerializacion* bloque = r.leeBloque64();
    if (!bloque->esTipo(etiqueta()))
    {
        finLectura(r, bloque);
        return false;
    }
    std::unique_ptr<BloqueSerializacion> exterior(bloque);
    // From here the lists are replaced, layers first: whatever pointed into the former
    // contents (undo steps) must know, even if the read stops before the entities.
    ++entidades.generacion;
    // The current material is a choice of the session, not of the file.
    materialActual_ = 0;
    // However the read ends, the current layer and style point into the lists that stand
    // then, never at items the read deleted.
    struct Reparacion
    {
        Dibujo& d;
        ~Reparacion() { d.reparaActuales(); }
    } reparacion{*this};
    if (!capas.lee(r) || !materiales.lee(r) || !estilosTexto.lee(r))
    {
        return false;
    }
    std::vector<int16_t> ids;
    ids.reserve(materiales.size());
    for (const Material* m : materiales)
    {
        ids.push_back(m->id);
    }
    generadorId.reinicia(kFamiliaMateriales, ids);
    if (!entidades.lee(r))
    {
        return false;
    }
    ataReferencias();
    recalculaExtension();
    variables.creaDefectos();
    if (!variables.lee(r) || !vistas.lee(r))
    {
        return false;
    }
    cargaEstado();
    const bool ok = finLectura(r, exterior.release());
    if (ok)
    {
        documentoListo = true;
    }
    return ok;
}

bool Dibujo::guardaFichero(const std::string& ruta, resultadoFichero_t& resultado)
{
    resultado = resultadoFichero_t();
    SerializadorBinarioEscritura escritor(ruta);
    if (escritor.abierto())
    {
        escribe(escritor);
    }
    resultado.ok = escritor.cierra();
    resultado.codigoError = escritor.codigoError();
    resultado.mensaje = escritor.mensaje();
    return resultado.ok;
}

bool Dibujo::leeFichero(const std::string& ruta, resultadoFichero_t& resultado)
{
    resultado = resultadoFichero_t();
    const FicheroLeido fichero(ruta);
    if (!fichero.ok())
    {
        resultado.codigoError = fichero.codigoError();
        resultado.mensaje = fichero.mensaje();
        return false;
    }
    if (fichero.tamano() == 0)
    {
        resultado.mensaje = ruta + " está vacío";
        return false;
    }
    const std::string magia(etiqueta());
    const std::string cabeza(reinterpret_cast<const char*>(fichero.datos()),
                             std::min(fichero.tamano(), magia.size() + 1));
    if (cabeza != std::string(magia.c_str(), magia.size() + 1))
    {
        // The magic's last characters are the version: one version is read.
        const bool otraVersion =
            cabeza.compare(0, magia.size() - 2, magia, 0, magia.size() - 2) == 0;
        resultado.mensaje = otraVersion ? ruta + " es de otra versión del formato de dibujo"
                                        : ruta + " no es un dibujo de Tarvelo";
        return false;
    }
    {
        Dibujo prueba;
        prueba.nuevoDocumento();
        SerializadorBinarioLectura lector(fichero.datos(), fichero.tamano());
        if (!prueba.lee(lector))
        {
            resultado.mensaje = ruta + " está dañado y no se puede leer";
            return false;
        }
    }
    // A load marks the drawing as an edit does: changed, to repaint, its view not applied.
    edicionHecha();
    SerializadorBinarioLectura lector(fichero.datos(), fichero.tamano());
    resultado.ok = lee(lector);
    if (!resultado.ok)
    {
        // The same bytes read on the scratch drawing: only exhausted memory gets here.
        resultado.mensaje = ruta + " no se pudo leer";
        return false;
    }
    resultado.entidadesDanadas = entidades.danadas;
    if (entidades.danadas > 0)
    {
        resultado.mensaje = ruta + " está dañado: " + std::to_string(entidades.danadas) +
                            (entidades.danadas == 1
                                 ? " entidad no se pudo leer y se conserva tal como venía"
                                 : " entidades no se pudieron leer y se conservan tal como venían");
    }
    return true;
}

void Dibujo::reparaActuales()
{
    // A file without the layer "0" or the style "standar" (the state's fallbacks) would
    // leave the former pointers; the first item stands in for them.
    if (std::find(capas.begin(), capas.end(), capaActual_) == capas.end())
    {
        Capa* cero = buscaCapa("0");
        capaActual_ = cero != nullptr ? cero : (capas.empty() ? nullptr : capas.front());
    }
    if (std::find(estilosTexto.begin(), estilosTexto.end(), estiloTextoActual_) ==
        estilosTexto.end())
    {
        EstiloTexto* e = buscaEstiloTexto("standar");
        estiloTextoActual_ =
            e != nullptr ? e : (estilosTexto.empty() ? nullptr : estilosTexto.front());
    }
}

namespace
{

// Id to object over a list. A damaged file may repeat an id: the first object keeps it, as
// emplace leaves a present key alone.
template <class Lista>
std::unordered_map<uint64_t, ObjetoCAD*> indicePorId(Lista& lista)
{
    std::unordered_map<uint64_t, ObjetoCAD*> indice;
    indice.reserve(lista.size());
    for (ObjetoCAD* o : lista)
    {
        indice.emplace(o->id, o);
    }
    return indice;
}

ObjetoCAD* buscaPorId(const std::unordered_map<uint64_t, ObjetoCAD*>& indice, uint64_t id)
{
    const auto it = indice.find(id);
    return it != indice.end() ? it->second : nullptr;
}

}  // namespace

void Dibujo::ataReferencias()
{
    const auto deCapas = indicePorId(capas);
    const auto deEstilos = indicePorId(estilosTexto);
    // Neighbours mostly share their layer: the last answer is kept.
    uint64_t ultimoId = 0;
    ObjetoCAD* ultimaCapa = buscaPorId(deCapas, 0);
    for (size_t i = 0; i < entidades.size(); ++i)
    {
        entidades.anticipa(i);
        Entidad* e = entidades[i];
        if (e->capa.id != ultimoId)
        {
            ultimoId = e->capa.id;
            ultimaCapa = buscaPorId(deCapas, ultimoId);
        }
        e->capa.objeto = ultimaCapa;
        ReferenciaEstiloTexto* estilo = nullptr;
        if (e->tieneFirma(kFirmaEntidadTexto))
        {
            estilo = &static_cast<Texto*>(e)->referenciaEstilo();
        }
        else if (e->tieneFirma(kFirmaEntidadPuntoControl))
        {
            estilo = &static_cast<PuntoControl*>(e)->referenciaEstilo();
        }
        else if (e->tieneFirma(kFirmaEntidadTomaCamara))
        {
            estilo = &static_cast<TomaCamara*>(e)->referenciaEstilo();
        }
        if (estilo != nullptr)
        {
            estilo->objeto = buscaPorId(deEstilos, estilo->id);
        }
    }
}

void Dibujo::recalculaExtension()
{
    extension = Rect3<double>();
    for (size_t i = 0; i < entidades.size(); ++i)
    {
        entidades.anticipa(i);
        extension.une(entidades[i]->extension());
    }
}

}  // namespace cad
