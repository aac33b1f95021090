// Vista: a named camera (position, target, up, zoom, angle) and the display's last frame.
#pragma once

#include <string>

#include "base/ObjetoCAD.h"
#include "base/geometria/Matriz4.h"
#include "base/geometria/Punto3.h"
#include "base/geometria/Vector3D.h"

namespace cad
{

// Block "Vt1", u16 length: u64 id, nombre, posicion, objetivo, arriba, zoom, angulo, then
// the unknown tail. referencia, direccion, matriz, ancho and alto describe the display's
// present state and are not stored.
class Vista : public ObjetoCAD
{
public:
    Vista() = default;

    const char* etiqueta() const override { return "Vt1"; }
    void escribe(SerializadorEscrituraBase& w) override;
    // False for a block of another tag. Otherwise every field is read even after one fails,
    // and the result is the AND of all of them and of finLectura.
    bool lee(SerializadorLecturaBase& r) override;

    std::string nombre;
    Punto3<double> referencia;               // a point the display gives back
    Punto3<double> posicion{0.0, 0.0, 1.0};  // camera
    Punto3<double> objetivo{0.0, 0.0, 0.0};  // target
    Vector3D<double> direccion;              // view direction
    Vector3D<double> arriba{0.0, 0.0, 1.0};  // up
    double zoom = 1.0;
    double angulo = 0.0;
    Matriz4<double> matriz;  // projection, identity until the display sets it
    double ancho = 0.0;      // viewport size in pixels
    double alto = 0.0;
};

}  // namespace cad
