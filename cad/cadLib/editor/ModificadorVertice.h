// Vertex modifiers: what drags one hot element of an entity, and the lists that hold them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "base/geometria/Punto3.h"
#include "modelo/PuntosCalientes.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

class EditorDibujo;
class Entidad;

// Drags one hot element. While it sits in the editor's `modificadores`, every overlay paint
// runs modificaTemporal with the display's cursor, so the entity follows the pointer; the
// command that made it then commits (modificaDefinitivo) or gives the old value back
// (cancela). It keeps a copy of the element, never a pointer into a PuntosCalientes, so it
// stays usable after the set that produced it is gone.
class ModificadorVertice
{
public:
    // `inicio` is the element's `punto`: where cancela puts it back.
    ModificadorVertice(EditorDibujo* editor, const elemento_seleccionado_t& elemento);
    virtual ~ModificadorVertice() = default;
    ModificadorVertice(const ModificadorVertice&) = delete;
    ModificadorVertice& operator=(const ModificadorVertice&) = delete;

    // Paints the handle in `color` (alpha, blue, green, red from high to low).
    virtual void dibuja(PantallaCAD& p, uint32_t color) = 0;
    // The dragged value follows the cursor.
    virtual void modificaTemporal(const cursor_t& cursor) = 0;
    // Places the value for good.
    virtual void modificaDefinitivo(const cursor_t& cursor) = 0;
    // Puts the value from before the drag back.
    virtual void cancela() = 0;

    Entidad* entidad() const { return elemento.entidad; }
    // The entity is set and, when the editor has a drawing, still in it: an entity deleted
    // while the drag waited must not be touched.
    bool vigente() const;

    elemento_arrastrado_t elemento;
    Punto3<double> inicio;
    EditorDibujo* editor;
};

// A point of the entity (kind 1). The one modifier that announces its moves to the host
// through the edit reactor, whose false vetoes that one move.
class ModificadorVerticeEntidad : public ModificadorVertice
{
public:
    using ModificadorVertice::ModificadorVertice;
    // Marker of style 1 at `posicion`.
    void dibuja(PantallaCAD& p, uint32_t color) override;
    // `posicion` = cursor.get(); kModificarTemporal; the entity moves unless vetoed. A cursor
    // with no point hands `invalido` on as it stands.
    void modificaTemporal(const cursor_t& cursor) override;
    // As modificaTemporal, announced as kModificarDefinitivo.
    void modificaDefinitivo(const cursor_t& cursor) override;
    // Back to `inicio`, then kCancelar (which cannot veto).
    void cancela() override;

private:
    void mueve(const cursor_t& cursor, int tipoReactor);

    // Set by cancela: a reactor that cancelled the command from inside a move must not see
    // the entity moved again when it returns.
    bool cancelado = false;
};

// A contour point of a plane (kind 2): it slides on the entity's own plane, where the
// cursor's ray meets it ahead of its start; elsewhere it snaps back to `inicio`.
class ModificadorVerticePlano : public ModificadorVertice
{
public:
    using ModificadorVertice::ModificadorVertice;
    void dibuja(PantallaCAD& p, uint32_t color) override;
    void modificaTemporal(const cursor_t& cursor) override;
    void modificaDefinitivo(const cursor_t& cursor) override { modificaTemporal(cursor); }
    void cancela() override;
};

// A vector or azimuth handle (kinds 5 and 6): it moves in the plane that faces the view
// through the handle's base (`origen`). No reactor hears of it.
class ModificadorVerticeDimension : public ModificadorVertice
{
public:
    using ModificadorVertice::ModificadorVertice;
    void dibuja(PantallaCAD& p, uint32_t color) override;
    void modificaTemporal(const cursor_t& cursor) override;
    void modificaDefinitivo(const cursor_t& cursor) override { modificaTemporal(cursor); }
    void cancela() override;

protected:
    // The cursor's point projected on the plane through `base` square to the view; `inicio`
    // when the cursor has no point or no direction.
    Punto3<double> enPlanoVista(const cursor_t& cursor, const Punto3<double>& base) const;
};

// As ModificadorVerticeDimension, the plane going through the handle's own point. No
// factory makes it.
class ModificadorVerticeRadio : public ModificadorVerticeDimension
{
public:
    using ModificadorVerticeDimension::ModificadorVerticeDimension;
    void modificaTemporal(const cursor_t& cursor) override;
};

// A mark only: a marker on coordinate `indice` of the entity, wherever that now is; it moves
// nothing.
class ModificadorNuloVerticeEntidad : public ModificadorVertice
{
public:
    using ModificadorVertice::ModificadorVertice;
    void dibuja(PantallaCAD& p, uint32_t color) override;
    void modificaTemporal(const cursor_t&) override {}
    void modificaDefinitivo(const cursor_t&) override {}
    void cancela() override {}
};

// Kind 1 a ModificadorVerticeEntidad, 2 a ModificadorVerticePlano, 5 and 6 a
// ModificadorVerticeDimension; null for any other kind (edges and faces have none).
std::unique_ptr<ModificadorVertice> creaModificador(EditorDibujo* editor,
                                                    const elemento_seleccionado_t& elemento);
// Kind 1 a ModificadorNuloVerticeEntidad (a vertex mark); null for any other kind.
std::unique_ptr<ModificadorVertice> creaModificadorNulo(EditorDibujo* editor,
                                                        const elemento_seleccionado_t& elemento);

// The modifiers of one drag, or the marks of one entity. The paint pass walks it on the
// display's thread, so callers change it under the editor's seccionCritica. Ownership is
// shared only so that whoever runs a modifier can hold it (a copy of `modificadores`) while
// the host's reactor, called from inside, empties the list.
class ListaModificadores
{
public:
    // Appends; a null modifier is not kept.
    void nuevo(std::unique_ptr<ModificadorVertice> m);
    // Every modifier's handle, in the configured kSeleccionado colour.
    void dibuja(PantallaCAD& p) const;
    // Destroys the modifiers without running them: the entities stay where they are.
    void vacia() { modificadores.clear(); }
    // Each modifier whose entity is still there runs cancela; then all are destroyed.
    void cancela();

    bool empty() const { return modificadores.empty(); }
    size_t size() const { return modificadores.size(); }
    ModificadorVertice* operator[](size_t i) const { return modificadores[i].get(); }

    std::vector<std::shared_ptr<ModificadorVertice>> modificadores;
};

}  // namespace cad
