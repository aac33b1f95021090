// EditorDibujo: the property front, by entity and by handle.
#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <string>

#include <strings.h>

#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "documento/Material.h"
#include "editor/Comando.h"
#include "editor/EditorDibujo.h"
#include "editor/ModificadorVertice.h"
#include "entidades/Entidad.h"
#include "modelo/PuntosCalientes.h"

namespace cad
{

namespace
{

bool esFilaCapa(int categoria, int indice)
{
    return categoria == 0 && indice == 1;
}

// The pointer when it names an entity of the drawing, else null: the host may hand in an
// entity that was deleted since it was shown.
Entidad* enDibujo(const Dibujo& d, Entidad* e)
{
    return d.contieneEntidad(e) ? e : nullptr;
}

int indiceCapa(const Dibujo& d, const Capa* c)
{
    const auto it = std::find(d.capas.begin(), d.capas.end(), c);
    return c != nullptr && it != d.capas.end() ? static_cast<int>(it - d.capas.begin()) : -1;
}

// The layer of one entity, as an undo step. Layers are kept by object and by name: undoing a
// layer's deletion brings back a new object of the same name, and a rename keeps the object.
class ComandoCapaEntidad : public Comando
{
public:
    ComandoCapaEntidad(Dibujo* d, Entidad* e, Capa* nueva)
        : Comando(d),
          entidad(e),
          capa(nueva),
          nombre(nueva->nombre),
          anterior(e->capaEntidad()),
          nombreAnterior(anterior != nullptr ? anterior->nombre : std::string())
    {
    }
    void deshacer() override { aplica(anterior, nombreAnterior); }
    void rehacer() override { aplica(capa, nombre); }

private:
    // Touches the entity only while it is in the drawing: a step outlives deletions that
    // no longer stand on the undo stack.
    void aplica(Capa* c, const std::string& n)
    {
        if (!vigente() || enDibujo(*dibujo, entidad) == nullptr)
        {
            return;
        }
        Capa* destino = indiceCapa(*dibujo, c) >= 0 ? c : dibujo->buscaCapa(n.c_str());
        if (destino != nullptr)
        {
            entidad->asignaCapa(destino);
            dibujo->edicionHecha();
        }
    }

    Entidad* entidad;
    Capa* capa;
    std::string nombre;
    Capa* anterior;
    std::string nombreAnterior;
};

// The undoable move of `e` to the layer of that name; false, and nothing done, for a name
// the drawing does not have.
bool cambiaCapa(EditorDibujo& editor, Entidad* e, const std::string& nombre)
{
    Capa* c = editor.dibujo()->buscaCapa(nombre.c_str());
    if (c == nullptr)
    {
        return false;
    }
    if (c != e->capaEntidad())
    {
        editor.registraComando(new ComandoCapaEntidad(editor.dibujo(), e, c));
    }
    return true;
}

// A row written into an entity of the drawing, the layer row through the layer list. No
// marks and no notices: the callers differ in those. What the file could not hold (a text
// past its length, a coordinate that is not finite) is refused, and the user told why.
bool escribeFila(EditorDibujo& editor, Entidad* e, int categoria, int indice, const Prop& p)
{
    if (esFilaCapa(categoria, indice))
    {
        return cambiaCapa(editor, e, p.valor);
    }
    if (!editor.admiteCadena(p.valor))
    {
        return false;
    }
    Prop fila;
    const bool xyz = e->getPropiedad(categoria, indice, fila) &&
                     (fila.tipo == TipoProp::Coordenada || fila.tipo == TipoProp::Vector ||
                      fila.tipo == TipoProp::Orientacion);
    const double punto[3] = {p.x, p.y, p.z};
    if (xyz && !editor.admiteCoordenadas(punto, 3))
    {
        return false;
    }
    return e->setPropiedad(categoria, indice, p);
}

// The first row of the sheet whose name matches, ASCII case aside.
bool buscaFila(const Entidad& e, const std::string& nombre, int& categoria, int& indice, Prop& p)
{
    for (int c = 0; c < e.numeroCategorias(); ++c)
    {
        for (int i = 0; i < e.numeroPropiedadesCategoria(c); ++i)
        {
            Prop fila;
            if (e.getPropiedad(c, i, fila) && strcasecmp(fila.nombre.c_str(), nombre.c_str()) == 0)
            {
                categoria = c;
                indice = i;
                p = fila;
                return true;
            }
        }
    }
    return false;
}

}  // namespace

// Materials carry no name of their own: the sheet and the material command know one by its
// texture's file name, or by its id when there is no texture.
std::string nombreMaterial(const Material& m)
{
    const std::string& ruta = m.textura();
    const size_t barra = ruta.find_last_of("/\\");
    const std::string fichero = barra == std::string::npos ? ruta : ruta.substr(barra + 1);
    return fichero.empty() ? std::to_string(m.id) : fichero;
}

// -------------------------------------------------------------------------------------------
// The editor's own sheet

int EditorDibujo::numeroCategorias() const
{
    return 1;
}

std::string EditorDibujo::nombreCategoria(int categoria) const
{
    return categoria == 0 ? "General" : "";
}

int EditorDibujo::numeroPropiedadesCategoria(int categoria) const
{
    return categoria == 0 ? 2 : 0;
}

bool EditorDibujo::getPropiedad(int categoria, int indice, Prop& p) const
{
    if (categoria != 0 || (indice != 0 && indice != 1))
    {
        return false;
    }
    Prop fila;
    if (indice == 0)
    {
        fila.nombre = "Entidad";
        fila.tipo = TipoProp::Cadena;
        fila.soloLectura = true;
        fila.valor = texto(23, 1, "Sin selección");
    }
    else
    {
        fila.nombre = "Capa";
        fila.tipo = TipoProp::Enumerado;
        const Capa* actual = dibujo_->capaActual();
        fila.valor = actual != nullptr ? actual->nombre : "";
    }
    p = fila;
    return true;
}

bool EditorDibujo::setPropiedad(int categoria, int indice, const Prop& p)
{
    return esFilaCapa(categoria, indice) && capaActual(p.valor.c_str());
}

int EditorDibujo::numeroValoresEnumerados(int categoria, int indice) const
{
    return esFilaCapa(categoria, indice) ? dibujo_->numeroCapas() : 0;
}

bool EditorDibujo::valorEnumerado(int categoria, int indice, int i, std::string& dato) const
{
    const char* nombre = esFilaCapa(categoria, indice) ? dibujo_->capa(i) : nullptr;
    if (nombre == nullptr)
    {
        return false;
    }
    dato = nombre;
    return true;
}

bool EditorDibujo::getEnumerado(int categoria, int indice, int& i) const
{
    const int actual =
        esFilaCapa(categoria, indice) ? indiceCapa(*dibujo_, dibujo_->capaActual()) : -1;
    if (actual < 0)
    {
        return false;
    }
    i = actual;
    return true;
}

bool EditorDibujo::setEnumerado(int categoria, int indice, int i)
{
    const char* nombre = esFilaCapa(categoria, indice) ? dibujo_->capa(i) : nullptr;
    return nombre != nullptr && capaActual(nombre);
}

int EditorDibujo::numeroElementosLista(int, int) const
{
    return 0;
}

bool EditorDibujo::getElementoLista(int, int, int, double&, double&, double&) const
{
    return false;
}

bool EditorDibujo::setElementoLista(int, int, int, const double*)
{
    return false;
}

// -------------------------------------------------------------------------------------------
// By entity

int EditorDibujo::numeroCategorias(Entidad* e) const
{
    Entidad* ent = enDibujo(*dibujo_, e);
    return ent != nullptr ? ent->numeroCategorias() : numeroCategorias();
}

std::string EditorDibujo::nombreCategoria(Entidad* e, int categoria) const
{
    Entidad* ent = enDibujo(*dibujo_, e);
    return ent != nullptr ? ent->nombreCategoria(categoria) : nombreCategoria(categoria);
}

int EditorDibujo::numeroPropiedadesCategoria(Entidad* e, int categoria) const
{
    Entidad* ent = enDibujo(*dibujo_, e);
    return ent != nullptr ? ent->numeroPropiedadesCategoria(categoria)
                          : numeroPropiedadesCategoria(categoria);
}

bool EditorDibujo::getPropiedad(Entidad* e, int categoria, int indice, Prop& p) const
{
    Entidad* ent = enDibujo(*dibujo_, e);
    if (ent == nullptr)
    {
        return getPropiedad(categoria, indice, p);
    }
    // A fresh record: a host that reuses one must not see a flag of the previous row.
    Prop fila;
    if (!ent->getPropiedad(categoria, indice, fila))
    {
        return false;
    }
    if (fila.tipo == TipoProp::Material)
    {
        if (const Material* m = dibujo_->materialId(fila.material))
        {
            fila.valor = nombreMaterial(*m);
        }
    }
    p = fila;
    return true;
}

bool EditorDibujo::setPropiedad(Entidad* e, int categoria, int indice, const Prop& p)
{
    Entidad* ent = enDibujo(*dibujo_, e);
    if (ent == nullptr || !escribeFila(*this, ent, categoria, indice, p))
    {
        return false;
    }
    dibujo_->edicionHecha();
    actualiza(kControl, false);
    return true;
}

int EditorDibujo::numeroValoresEnumerados(Entidad* e, int categoria, int indice) const
{
    Entidad* ent = enDibujo(*dibujo_, e);
    if (ent == nullptr || esFilaCapa(categoria, indice))
    {
        return numeroValoresEnumerados(categoria, indice);
    }
    return ent->numeroValoresEnumerados(categoria, indice);
}

bool EditorDibujo::valorEnumerado(Entidad* e, int categoria, int indice, int i,
                                  std::string& dato) const
{
    Entidad* ent = enDibujo(*dibujo_, e);
    if (ent == nullptr || esFilaCapa(categoria, indice))
    {
        return valorEnumerado(categoria, indice, i, dato);
    }
    return ent->valorEnumerado(categoria, indice, i, dato);
}

bool EditorDibujo::getEnumerado(Entidad* e, int categoria, int indice, int& i) const
{
    Entidad* ent = enDibujo(*dibujo_, e);
    if (ent == nullptr)
    {
        return getEnumerado(categoria, indice, i);
    }
    if (!esFilaCapa(categoria, indice))
    {
        return ent->getEnumerado(categoria, indice, i);
    }
    const int k = indiceCapa(*dibujo_, ent->capaEntidad());
    if (k < 0)
    {
        return false;
    }
    i = k;
    return true;
}

bool EditorDibujo::setEnumerado(Entidad* e, int categoria, int indice, int i)
{
    Entidad* ent = enDibujo(*dibujo_, e);
    if (ent == nullptr)
    {
        return false;
    }
    bool hecho = false;
    if (esFilaCapa(categoria, indice))
    {
        const char* nombre = dibujo_->capa(i);
        hecho = nombre != nullptr && cambiaCapa(*this, ent, nombre);
    }
    else
    {
        hecho = ent->setEnumerado(categoria, indice, i);
    }
    if (!hecho)
    {
        return false;
    }
    dibujo_->edicionHecha();
    actualiza(kControl, false);
    return true;
}

int EditorDibujo::numeroElementosLista(Entidad* e, int categoria, int indice) const
{
    Entidad* ent = enDibujo(*dibujo_, e);
    return ent != nullptr ? ent->numeroElementosLista(categoria, indice)
                          : numeroElementosLista(categoria, indice);
}

bool EditorDibujo::getElementoLista(Entidad* e, int categoria, int indice, int i, double& x,
                                    double& y, double& z) const
{
    Entidad* ent = enDibujo(*dibujo_, e);
    return ent != nullptr ? ent->getElementoLista(categoria, indice, i, x, y, z)
                          : getElementoLista(categoria, indice, i, x, y, z);
}

bool EditorDibujo::setElementoLista(Entidad* e, int categoria, int indice, int i, const double* xyz)
{
    Entidad* ent = enDibujo(*dibujo_, e);
    if (ent == nullptr || xyz == nullptr || !admiteCoordenadas(xyz, 3) ||
        !ent->setElementoLista(categoria, indice, i, xyz))
    {
        return false;
    }
    Prop fila;
    if (ent->getPropiedad(categoria, indice, fila) && fila.tipo == TipoProp::ListaCoordenadas)
    {
        elemento_seleccionado_t vertice;
        vertice.entidad = ent;
        vertice.tipo = kTipoVertice;
        vertice.indice = i;
        vertice.punto = Punto3<double>(xyz[0], xyz[1], xyz[2]);
        // A mark, not a drag: every paint runs the drag list's modifiers with the pointer,
        // and a drag modifier would carry the vertex just typed off to wherever the pointer
        // happens to be.
        std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
        modificadores.vacia();
        modificadores.nuevo(creaModificadorNulo(this, vertice));
    }
    dibujo_->edicionHecha();
    actualiza(kControl, false);
    return true;
}

// -------------------------------------------------------------------------------------------
// By handle

int EditorDibujo::numeroCategorias(int64_t handle) const
{
    return numeroCategorias(dibujo_->buscaEntidad(handle));
}

std::string EditorDibujo::nombreCategoria(int64_t handle, int categoria) const
{
    return nombreCategoria(dibujo_->buscaEntidad(handle), categoria);
}

int EditorDibujo::numeroPropiedadesCategoria(int64_t handle, int categoria) const
{
    return numeroPropiedadesCategoria(dibujo_->buscaEntidad(handle), categoria);
}

bool EditorDibujo::getPropiedad(int64_t handle, int categoria, int indice, Prop& p) const
{
    Entidad* e = dibujo_->buscaEntidad(handle);
    if (e == nullptr)
    {
        return getPropiedad(categoria, indice, p);
    }
    if (!getPropiedad(e, categoria, indice, p))
    {
        return false;
    }
    if (const Material* m = dibujo_->materialId(p.material))
    {
        p.idExterno = m->idExterno;
    }
    if (esFilaCapa(categoria, indice))
    {
        p.tipo = TipoProp::Enumerado;
    }
    return true;
}

bool EditorDibujo::setPropiedad(int64_t handle, int categoria, int indice, const Prop& p)
{
    bool hecho = false;
    if (Material* m = dibujo_->materialId(p.material); m != nullptr && m->idExterno != p.idExterno)
    {
        m->idExterno = p.idExterno;
        hecho = true;
    }
    if (Entidad* e = dibujo_->buscaEntidad(handle))
    {
        hecho = escribeFila(*this, e, categoria, indice, p) || hecho;
    }
    // The sheet's layer is also the layer of what is drawn next, with or without an entity.
    if (esFilaCapa(categoria, indice))
    {
        hecho = capaActual(p.valor.c_str()) || hecho;
    }
    // A refused write marks nothing, but the host still hears of it to show the row again.
    if (hecho)
    {
        dibujo_->edicionHecha();
    }
    actualiza(kControl, false);
    return hecho;
}

int EditorDibujo::numeroValoresEnumerados(int64_t handle, int categoria, int indice) const
{
    return numeroValoresEnumerados(dibujo_->buscaEntidad(handle), categoria, indice);
}

bool EditorDibujo::valorEnumerado(int64_t handle, int categoria, int indice, int i,
                                  std::string& dato) const
{
    return valorEnumerado(dibujo_->buscaEntidad(handle), categoria, indice, i, dato);
}

bool EditorDibujo::getEnumerado(int64_t handle, int categoria, int indice, int& i) const
{
    return getEnumerado(dibujo_->buscaEntidad(handle), categoria, indice, i);
}

bool EditorDibujo::setEnumerado(int64_t handle, int categoria, int indice, int i)
{
    if (esFilaCapa(categoria, indice))
    {
        const char* nombre = dibujo_->capa(i);
        if (nombre == nullptr)
        {
            return false;
        }
        Prop p;
        p.valor = nombre;
        return setPropiedad(handle, categoria, indice, p);
    }
    return setEnumerado(dibujo_->buscaEntidad(handle), categoria, indice, i);
}

int EditorDibujo::numeroElementosLista(int64_t handle, int categoria, int indice) const
{
    return numeroElementosLista(dibujo_->buscaEntidad(handle), categoria, indice);
}

bool EditorDibujo::getElementoLista(int64_t handle, int categoria, int indice, int i, double& x,
                                    double& y, double& z) const
{
    return getElementoLista(dibujo_->buscaEntidad(handle), categoria, indice, i, x, y, z);
}

bool EditorDibujo::setElementoLista(int64_t handle, int categoria, int indice, int i,
                                    const double* xyz)
{
    return setElementoLista(dibujo_->buscaEntidad(handle), categoria, indice, i, xyz);
}

// -------------------------------------------------------------------------------------------
// By name

bool EditorDibujo::getPropiedad(int64_t handle, const std::string& nombre, double& dato) const
{
    std::string texto;
    if (!getPropiedad(handle, nombre, texto))
    {
        return false;
    }
    dato = std::atof(texto.c_str());
    return true;
}

bool EditorDibujo::getPropiedad(int64_t handle, const std::string& nombre, int& dato) const
{
    std::string texto;
    if (!getPropiedad(handle, nombre, texto))
    {
        return false;
    }
    dato = std::atoi(texto.c_str());
    return true;
}

bool EditorDibujo::getPropiedad(int64_t handle, const std::string& nombre, std::string& dato) const
{
    const Entidad* e = dibujo_->buscaEntidad(handle);
    int categoria = 0;
    int indice = 0;
    Prop fila;
    if (e == nullptr || !buscaFila(*e, nombre, categoria, indice, fila))
    {
        return false;
    }
    dato = fila.valor;
    return true;
}

bool EditorDibujo::setPropiedad(int64_t handle, const std::string& nombre, double dato)
{
    Prop p;
    p.asignaDoble(dato);
    return setPropiedad(handle, nombre, p.valor);
}

bool EditorDibujo::setPropiedad(int64_t handle, const std::string& nombre, int dato)
{
    Prop p;
    p.asignaInt(dato);
    return setPropiedad(handle, nombre, p.valor);
}

bool EditorDibujo::setPropiedad(int64_t handle, const std::string& nombre, const std::string& dato)
{
    Entidad* e = dibujo_->buscaEntidad(handle);
    int categoria = 0;
    int indice = 0;
    Prop fila;
    if (e == nullptr || !buscaFila(*e, nombre, categoria, indice, fila))
    {
        return false;
    }
    fila.valor = dato;
    // The row as read holds the colour's index, which the entity would take over the text;
    // a value by name is the colour itself.
    if (fila.tipo == TipoProp::Color)
    {
        fila.indiceColor = -1;
    }
    if (escribeFila(*this, e, categoria, indice, fila))
    {
        dibujo_->edicionHecha();
        actualiza(kControl, false);
    }
    return true;
}

// -------------------------------------------------------------------------------------------
// The command

bool EditorDibujo::comandoPropiedades()
{
    iniciaComandoInteractivo(false);
    SeleccionEntidades seleccion(dibujo_);
    const bool elegida = seleccionaEntidad(texto(11, 1, "Seleccione una entidad:"), seleccion) &&
                         !seleccion.entidades.empty();
    if (elegida)
    {
        Entidad* e = seleccion.entidades.front();
        const bool resaltada = (e->estado & kEstadoResaltada) != 0;
        e->setResaltada(true);
        dibujo_->redibujar = true;
        if (visorPropiedades)
        {
            visorPropiedades();
        }
        // The viewer may have deleted it.
        if (enDibujo(*dibujo_, e) != nullptr)
        {
            e->setResaltada(resaltada);
        }
        dibujo_->redibujar = true;
    }
    finComandoInteractivo();
    return elegida;
}

}  // namespace cad
