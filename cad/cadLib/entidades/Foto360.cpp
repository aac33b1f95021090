// Foto360: body, tessellation and painting of a 360-degree photograph.
#include "entidades/Foto360.h"

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "base/geometria/Matriz4.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

Foto360::Foto360()
{
    // The factory's empty entity, about to be read: its mesh waits for the read parameters.
    modo = PantallaCAD::kTexturas;
    sucio = true;
}

Foto360::Foto360(const Punto3<double>& centroFoto, double radioFoto, int32_t meridianos,
                 int32_t paralelos, double rollFoto, double pitchFoto, double yawFoto)
    : Esfera(centroFoto, radioFoto),
      anchura(meridianos),
      altura(paralelos),
      roll(rollFoto),
      pitch(pitchFoto),
      yaw(yawFoto)
{
    modo = PantallaCAD::kTexturas;
    sucio = true;
    teselaEsfera(modelo);
}

void Foto360::escribe(SerializadorEscrituraBase& w)
{
    EntidadTransformada::escribe(w);
    escribeCampos(w);
    w.escribeEnteroSinSigno(static_cast<uint32_t>(anchura));
    w.escribeEnteroSinSigno(static_cast<uint32_t>(altura));
    w.escribeDoble(roll);
    w.escribeDoble(pitch);
    w.escribeDoble(yaw);
}

bool Foto360::lee(SerializadorLecturaBase& r)
{
    bool ok = EntidadTransformada::lee(r);
    ok = leeCampos(r) && ok;
    uint32_t meridianos = 0;
    uint32_t paralelos = 0;
    ok = r.leeEnteroSinSigno(meridianos) && ok;
    ok = r.leeEnteroSinSigno(paralelos) && ok;
    anchura = static_cast<int32_t>(meridianos);
    altura = static_cast<int32_t>(paralelos);
    ok = r.leeDoble(roll) && ok;
    ok = r.leeDoble(pitch) && ok;
    ok = r.leeDoble(yaw) && ok;
    // The mesh is made when it is first needed, not here: a few bytes of file must not cost
    // the reader a mesh of any size.
    sucio = true;
    return ok;
}

int Foto360::numCoordenadas() const
{
    actualizaModelo();
    return Esfera::numCoordenadas();
}

const Punto3<double>* Foto360::coordenada(int i) const
{
    actualizaModelo();
    return Esfera::coordenada(i);
}

void Foto360::teselaEsfera(Modelo3D& m) const
{
    teselaDivisiones(m, anchura, altura);
    const Matriz4<double> giro =
        Matriz4<double>::traslacion(centro) * Matriz4<double>::rotacionZ(yaw) *
        Matriz4<double>::rotacionY(3.1415926535897 - pitch) * Matriz4<double>::rotacionX(roll) *
        Matriz4<double>::traslacion(-centro);
    for (size_t v = 0; v < m.vertices().size(); ++v)
    {
        const auto i = static_cast<int32_t>(v);
        m.setPunto(i, giro * m.getVertice(i).punto);
    }
}

void Foto360::dibuja(PantallaCAD& p) const
{
    actualizaModelo();
    modelo.coloresVertices.clear();
    modelo.dibuja(p, modo, static_cast<Entidad*>(pick()));
}

}  // namespace cad
