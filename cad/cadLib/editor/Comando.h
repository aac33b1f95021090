// Undo steps. Five things are undoable: an entity's appearance, its deletion, a numeric move,
// layer changes and the edits of an Objeto3D's mesh; every other edit goes straight into the
// entities.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/Color.h"
#include "base/geometria/Vector3D.h"

namespace cad
{

class Capa;
class Dibujo;
class Entidad;
class Modelo3D;
class Objeto3D;

// A step performs its action through rehacer (registraComando runs it) and reverts it through
// deshacer. Ownership: while a step has an entity out of the drawing, the step owns it, so
// that undoing a deletion gives back the very same entity (same handle) and dropping the
// step frees what nobody else holds. A step made before the drawing's entities were
// replaced (a load, a new document) no longer acts: its pointers name entities of the old
// contents.
class Comando
{
public:
    explicit Comando(Dibujo* dibujo);
    virtual ~Comando() = default;
    Comando(const Comando&) = delete;
    Comando& operator=(const Comando&) = delete;

    virtual void deshacer() = 0;
    virtual void rehacer() = 0;

    Dibujo* dibujo;

protected:
    // False when the drawing's entities were replaced since the step was made.
    bool vigente() const;

private:
    uint64_t generacion;
};

class ComandoBorraEntidad : public Comando
{
public:
    ComandoBorraEntidad(Dibujo* d, Entidad* e) : Comando(d), entidad(e) {}
    // Frees the entity while the step holds it (deletion done, not undone).
    ~ComandoBorraEntidad() override;
    void deshacer() override;
    void rehacer() override;

    Entidad* entidad;
    bool hecho = false;

private:
    bool propia = false;  // the entity is out of the drawing and belongs to the step
};

class ComandoNuevaEntidad : public Comando
{
public:
    ComandoNuevaEntidad(Dibujo* d, Entidad* e) : Comando(d), entidad(e) {}
    // Frees the entity when the insertion was undone and the step is dropped.
    ~ComandoNuevaEntidad() override;
    void deshacer() override;
    void rehacer() override;

    Entidad* entidad;
    bool hecho = false;

private:
    bool propia = false;
};

class ComandoMoverEntidad : public Comando
{
public:
    ComandoMoverEntidad(Dibujo* d, Entidad* e, const Vector3D<double>& v)
        : Comando(d), entidad(e), desplazamiento(v)
    {
    }
    void deshacer() override;
    void rehacer() override;

    Entidad* entidad;
    Vector3D<double> desplazamiento;
    bool hecho = false;

private:
    // Moves only an entity that is still in the drawing.
    bool presente() const;
};

// Layer changes, by kind: 1 delete, 2 current layer, 3 rename, 4 colour, 5 visibility.
class ComandoCapa : public Comando
{
public:
    enum tipo_e
    {
        kBorrar = 1,
        kActual = 2,
        kRenombrar = 3,
        kColor = 4,
        kVisibilidad = 5
    };

    // Kind 1: records the layer's entities, name and colour, and forgets the layer.
    static ComandoCapa* borrar(Dibujo* d, Capa* capa);
    // Kind 2: from the current layer's name to `nombre`.
    static ComandoCapa* actual(Dibujo* d, const char* nombre);
    // Kind 3: the old name is copied from the layer.
    static ComandoCapa* renombrar(Dibujo* d, Capa* capa, const char* nombre);
    // Kind 4: the layer's colour is kept as the old one.
    static ComandoCapa* colorear(Dibujo* d, Capa* capa, const ColorCapa& color);
    // Kind 5.
    static ComandoCapa* visibilidad(Dibujo* d, Capa* capa, bool valor);

    // Kind 1 done and not undone holds its entities out of the drawing: they go with it.
    ~ComandoCapa() override;
    void deshacer() override;
    void rehacer() override;

    int tipo;
    Capa* capa = nullptr;
    bool hecho = false;
    std::string nombre;
    std::string nombreAnterior;
    ColorCapa color;
    ColorCapa colorAnterior;
    bool valor = false;
    std::vector<Entidad*> entidades;

private:
    ComandoCapa(Dibujo* d, int t) : Comando(d), tipo(t) {}
    bool propias = false;
    Capa* retirada = nullptr;  // kind 1: the layer object the deletion took out
};

// One edit of an object's mesh. The step holds the mesh the object does not: the one from
// before the edit while it is done, the edited one while it is undone. Undo and redo exchange
// the two pointers, so the records come back exactly as they were and nothing is copied.
// The step owns only the mesh it holds; the object keeps owning (and deleting) its own.
class ComandoModelo : public Comando
{
public:
    // Made with the edit already run: `otro` is the mesh from before it, and the step starts
    // done, so that registraComando's rehacer leaves the edit in place.
    ComandoModelo(Dibujo* d, Objeto3D* o, std::unique_ptr<Modelo3D> otro);
    ~ComandoModelo() override;
    void deshacer() override;
    void rehacer() override;

    Objeto3D* objeto;
    // Whether the object holds the edited mesh. Changes only with an exchange, so that a
    // skipped exchange (object out of the drawing) never pairs the wrong meshes later.
    bool hecho = true;

private:
    void intercambia();

    std::unique_ptr<Modelo3D> modelo;
};

}  // namespace cad
