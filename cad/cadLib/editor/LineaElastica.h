// The rubber band: the preview a command keeps on the display while it waits for a point.
#pragma once

#include <cstdint>
#include <vector>

#include "base/geometria/Matriz4.h"
#include "base/geometria/Punto3.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

class EditorDibujo;

// Lives on the stack of the command that makes it. The constructor registers it as the
// editor's lineaElastica and the destructor removes it, both under the editor's
// seccionCritica; anchors change under that lock too, since the paint pass may run on the
// display's thread.
//
// Kinds: 1 line from the last anchor; 2 lines from the first and the second anchor;
// 3 open polyline; 4 closed polyline; 5 triangle; 6 four-sided face; 7 box; 8 cylinder;
// 9 circle; 10 rectangle (in pixels when `pixeles`); 11 edge extrusion; 12 face extrusion;
// 13 local-system axes; 14 slope. The moving end is the cursor (its pixel for a pixel band),
// or `origen` when `usaOrigen`.
class LineaElastica
{
public:
    LineaElastica(EditorDibujo* editor, int32_t tipo, bool pixeles = false);
    ~LineaElastica();
    LineaElastica(const LineaElastica&) = delete;
    LineaElastica& operator=(const LineaElastica&) = delete;

    // Anchor changes, each under the editor's lock.
    void nuevaAncla(const Punto3<double>& p);
    void quitaUltimaAncla();
    void vaciaAnclas();

    // The paint pass; the caller holds the lock and has copied cursor, view and colour in.
    // Nothing is drawn while there is no anchor.
    void dibuja(PantallaCAD& p);
    // The length of segment a-b as a text at its middle, with `formato`, font "Arial",
    // height `alturaTexto`, turned along the segment so that it reads left to right on
    // screen; `marca` is the text's alignment (quadrant) on the segment.
    void etiquetaLongitud(PantallaCAD& p, const Punto3<double>& a, const Punto3<double>& b,
                          int marca);

    EditorDibujo* editor;
    bool pixeles;
    bool usaOrigen = false;
    Punto3<double> origen;
    uint32_t color = 0xFFFFFFFF;
    float grosor = 2.0F;
    float alturaTexto = 14.0F;
    char formato[21] = "%0.3lf";
    int32_t tipo;
    cursor_t cursor;
    std::vector<Punto3<double>> anclas;

    // View data copied by the paint pass: model view and projection, for turning labels.
    Matriz4<double> vista;
    Matriz4<double> proyeccion;

private:
    // The end that follows the user.
    Punto3<double> extremoMovil() const;
    // One segment, or the polyline through `puntos`, in the band's colour and not pickable.
    void linea(PantallaCAD& p, const Punto3<double>& a, const Punto3<double>& b);
    void polilinea(PantallaCAD& p, const std::vector<Punto3<double>>& puntos, bool cerrada);
    // A label of `valor` along segment a-b; etiquetaLongitud passes the segment's length.
    void etiqueta(PantallaCAD& p, const Punto3<double>& a, const Punto3<double>& b, double valor,
                  int marca);
    // The on-screen angle of a-b in radians, folded into (-pi/2, pi/2] so text reads left
    // to right; 0 when the segment has no direction on screen.
    double anguloLectura(const Punto3<double>& a, const Punto3<double>& b) const;
    // The kinds that take more than a line or two.
    void dibujaCaja(PantallaCAD& p, const Punto3<double>& movil);
    void dibujaCilindro(PantallaCAD& p, const Punto3<double>& movil);
    void dibujaPendiente(PantallaCAD& p, const Punto3<double>& movil);
};

}  // namespace cad
