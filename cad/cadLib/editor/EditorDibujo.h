// The editor over a drawing: host callbacks, interactive scopes, messages, load and save.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "base/Propiedades.h"
#include "base/geometria/Punto3.h"

namespace cad
{

class Capa;
class Dibujo;
class Entidad;
class PantallaCAD;

// So far the editor holds what the facade needs: the callbacks, the notices to the host,
// the text channel, the layer helpers and the document's load and save. Commands, the
// command line, undo and snapping stand on top of this frame.
class EditorDibujo : public Propiedades
{
public:
    enum actualiza_e
    {
        kControl = 0,
        kPropiedades = 1,
        kCapas = 2,
        kCapaActual = 3,
        kDocumento = 4
    };
    enum seleccion_e
    {
        kVentana = 0,
        kPolilinea = 1,
        kEsfera = 2
    };
    enum enumEstadoComandoInteractivo
    {
        kInicio = 0,
        kFin = 1,
        kCancelado = 2
    };
    enum enumEdicionEntidades
    {
        kBorrar = 0,
        kModificarTemporal = 1,
        kModificarDefinitivo = 2,
        kInsertar = 3,
        kCancelar = 4,
        kIniciaEdicion = 5,
        kTerminaEdicion = 6,
        kIniciaBloque = 7,
        kTerminaBloque = 8
    };
    enum enumInsercionEntidades
    {
        kEntidadBorrada = 0,
        kEntidadInsertada = 1
    };

    using FuncionActualiza = std::function<void(actualiza_e)>;
    using FuncionSalidaTexto = std::function<void(const char*)>;
    using FuncionVisorPropiedades = std::function<void()>;
    using ReactorComandoInteractivo = std::function<void(enumEstadoComandoInteractivo)>;
    using ReactorEdicionEntidades =
        std::function<bool(int64_t, enumEdicionEntidades, int, double, double, double)>;
    using ReactorInsercionEntidades = std::function<bool(int64_t, enumInsercionEntidades)>;

    // The display may be null; operations that need it say so.
    EditorDibujo(Dibujo* dibujo, PantallaCAD* pantalla);
    // Clears the update callback first, so the last notice reaches nobody; takes every
    // entity out of the selection and marks the view changed.
    ~EditorDibujo() override;
    EditorDibujo(const EditorDibujo&) = delete;
    EditorDibujo& operator=(const EditorDibujo&) = delete;

    Dibujo* dibujo() const { return dibujo_; }
    PantallaCAD* pantalla() const { return pantalla_; }

    // Store the pointer, nothing else.
    void setActualiza(FuncionActualiza f) { funcionActualiza = std::move(f); }
    void setSalidaTexto(FuncionSalidaTexto f) { funcionSalidaTexto = std::move(f); }
    void setVisorPropiedades(FuncionVisorPropiedades f) { visorPropiedades = std::move(f); }
    void setReactorEdicionEntidades(ReactorEdicionEntidades f)
    {
        reactorEdicionEntidades = std::move(f);
    }
    void setReactorComandoInteractivo(ReactorComandoInteractivo f)
    {
        reactorComandoInteractivo = std::move(f);
    }
    void setReactorInsercionEntidades(ReactorInsercionEntidades f)
    {
        reactorInsercionEntidades = std::move(f);
    }

    // Notifies the host. For kPropiedades and kDocumento the notice goes only when the set
    // of selected or highlighted entities changed since the last one (or `forzar`).
    void actualiza(actualiza_e tipo, bool forzar = false);
    // Reads a document file (UTF-8 path). False when the read failed; the drawing may then
    // be partly replaced. Throws std::logic_error for a path that is not UTF-8.
    bool cargaDocumento(const char* ruta);
    // Writes the state variables and the document; true also when the file didn't open.
    bool guardaDocumento(const char* ruta);

    // printf-style; the text (at most 2047 bytes) becomes the current prompt and goes to
    // the host's text callback and to the display's prompt line.
    void mensaje(const char* formato, ...) __attribute__((format(printf, 2, 3)));
    // A user text by group and number, with its built-in Spanish wording.
    const char* texto(int grupo, int numero, const char* porDefecto) const;

    // The overlay paint pass: snap marker and cursor glyph on top of the scene. The bool is
    // not consulted.
    void dibuja(PantallaCAD& p, bool entidadesDibujadas);

    bool dentroComandoInteractivo() const { return nivelComando > 0; }
    // Keys reach the editor as text and cancels; this is accepted and ignored.
    void teclaPulsada(int codigo, bool shift, bool control, bool alt);
    void deselecciona();

    // Offers the entity to the insertion reactor, whose false is a veto (the entity then stays
    // with the caller), and adds it to the drawing.
    bool nuevaEntidad(Entidad* e);

    // Layer helpers. Each returns false when the layer does not exist.
    bool nuevaCapa(Capa* capa, bool hacerActual);
    bool posicionaCapa(Capa* capa);
    bool capaActual(const char* nombre);
    bool muestraCapa(const char* nombre);
    bool colorCapa(const char* nombre, int32_t rgba);
    bool renombraCapa(const char* nombre, const char* nuevoNombre);
    bool borraCapa(const char* nombre);
    bool setColorActualIndice(int indice);
    void setColorActualRGB(int32_t rgb);

    float getFactorVertical() const { return factorVertical; }
    void setFactorVertical(float f) { factorVertical = f; }

    Dibujo* dibujo_;
    PantallaCAD* pantalla_;
    float factorVertical = 1.0F;
    FuncionActualiza funcionActualiza;
    FuncionSalidaTexto funcionSalidaTexto;
    ReactorComandoInteractivo reactorComandoInteractivo;
    ReactorEdicionEntidades reactorEdicionEntidades;
    ReactorInsercionEntidades reactorInsercionEntidades;
    FuncionVisorPropiedades visorPropiedades;
    bool incluyeOcultas = false;
    std::string ultimoMensaje;
    int32_t nivelComando = 0;
    bool comandoInterrumpido = false;
    std::vector<bool> pilaTransparentes;
    Punto3<double> marcaReferencia;
    int32_t tipoMarcaReferencia = 0;  // 0: no marker
    std::recursive_mutex seccionCritica;
};

}  // namespace cad
