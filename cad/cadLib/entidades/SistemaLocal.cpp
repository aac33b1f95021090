// SistemaLocal: the local frame's own block, its painting and its move.
#include "entidades/SistemaLocal.h"

#include <cstdlib>
#include <memory>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "base/geometria/Linea3D.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

void SistemaLocal::escribe(SerializadorEscrituraBase& w)
{
    std::unique_ptr<BloqueSerializacion> bloque(w.nuevoBloque16(etiqueta()));
    Entidad::escribe(w);
    w.escribeCadena(nombre);
    w.escribePunto3(origen);
    w.escribeVector3(ejeX);
    w.escribeVector3(ejeY);
    w.escribeVector3(ejeZ);
    if (!datosDesconocidosSistema.empty())
    {
        w.escribeBytes(datosDesconocidosSistema.data(),
                       static_cast<uint32_t>(datosDesconocidosSistema.size()));
    }
}

bool SistemaLocal::lee(SerializadorLecturaBase& r)
{
    std::unique_ptr<BloqueSerializacion> bloque(r.leeBloque16());
    if (!bloque->esTipo(etiqueta()))
    {
        return false;
    }
    if (!Entidad::lee(r))
    {
        return false;
    }
    std::string n;
    Vector3D<double> o;
    Vector3D<double> ex;
    Vector3D<double> ey;
    Vector3D<double> ez;
    if (!r.leeCadena(n) || !r.leeVector3(o) || !r.leeVector3(ex) || !r.leeVector3(ey) ||
        !r.leeVector3(ez))
    {
        return false;
    }
    nombre = n;
    setVectoresXYZ(ex, ey, ez);
    setOrigen(Punto3<double>(o.x, o.y, o.z));

    // finLectura keeps the tail in ObjetoCAD's buffer, which belongs to the list's level:
    // set that buffer aside while the inner tail passes through it.
    unsigned char* exterior = datosDesconocidos;
    const uint32_t tamanoExterior = tamanoDatosDesconocidos;
    datosDesconocidos = nullptr;
    tamanoDatosDesconocidos = 0;
    const bool ok = finLectura(r, bloque.release());
    datosDesconocidosSistema.clear();
    if (ok && datosDesconocidos != nullptr)
    {
        datosDesconocidosSistema.assign(datosDesconocidos,
                                        datosDesconocidos + tamanoDatosDesconocidos);
    }
    std::free(datosDesconocidos);
    datosDesconocidos = exterior;
    tamanoDatosDesconocidos = tamanoExterior;
    return ok;
}

void SistemaLocal::traslada(const Vector3D<double>& v)
{
    origen += v;
}

const Punto3<double>* SistemaLocal::coordenada(int i) const
{
    (void)i;
    return &origen;
}

void SistemaLocal::dibuja(PantallaCAD& p) const
{
    void* yo = const_cast<Entidad*>(static_cast<const Entidad*>(this));
    p.dibujaLinea(Linea3D<double>(origen, origen + ejeX), 0xFF0000FFU, yo);
    p.dibujaLinea(Linea3D<double>(origen, origen + ejeY), 0xFF00FF00U, yo);
    p.dibujaLinea(Linea3D<double>(origen, origen + ejeZ), 0xFFFF0000U, yo);
    p.dibujaTexto(origen, nombre.c_str(), 0xFFFFFFFFU, PantallaCAD::kAlineacionHorizontalIzq, 1.0F,
                  0.0F, "", 0, nullptr);
}

}  // namespace cad
