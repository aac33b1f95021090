// Prisma: body, mesh made on demand, hot edges, snap, DXF faces and sheet.
#include "entidades/Prisma.h"

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "documento/ReferenciaEntidades.h"
#include "documento/VariablesPintura.h"
#include "entidades/Teselado.h"
#include "intercambio/ExportaDXF.h"
#include "modelo/PuntosCalientes.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

Prisma::Prisma(const Punto3<double>& minimo_, const Punto3<double>& maximo_, uint16_t idMaterial)
    : minimo(minimo_), maximo(maximo_), material_(idMaterial)
{
    cambiado();
}

Matriz4<double> Prisma::colocacion() const
{
    Matriz4<double> t = transformacion;
    t.setOrigen(Punto3<double>::puntoMedio(minimo, maximo));
    return t;
}

void Prisma::cambiado()
{
    transformacion.setOrigen(Punto3<double>::puntoMedio(minimo, maximo));
    sucio = true;
}

void Prisma::escribe(SerializadorEscrituraBase& w)
{
    EntidadTransformada::escribe(w);
    w.escribePunto3(minimo);
    w.escribePunto3(maximo);
    w.escribeCortoSinSigno(material_);
}

bool Prisma::lee(SerializadorLecturaBase& r)
{
    bool ok = EntidadTransformada::lee(r);
    ok = r.leePunto3(minimo) && ok;
    ok = r.leePunto3(maximo) && ok;
    ok = r.leeCortoSinSigno(material_) && ok;
    sucio = true;
    return ok;
}

void Prisma::generaModelo(Modelo3D& m) const
{
    m.limpia();
    const Vector3D<double> tamano = maximo - minimo;
    teselaCubo(m, Punto3<double>() - tamano * 0.5, tamano, material_);
    transformaModelo(m, colocacion());
    if (&m == &modelo)
    {
        sucio = false;
    }
}

void Prisma::exportaDXF(ExportaDXF& dxf) const
{
    dxf.setCapa(capaDXFSolido(*this));
    Modelo3D temporal;
    generaModelo(temporal);
    exportaModeloDXF(temporal, dxf, indiceColorCercano());
}

void Prisma::traslada(const Vector3D<double>& v)
{
    minimo += v;
    maximo += v;
    cambiado();
}

int Prisma::numCoordenadas() const
{
    return static_cast<int>(modelo.vertices().size());
}

const Punto3<double>* Prisma::coordenada(int i) const
{
    return i >= 0 && i < numCoordenadas() ? &modelo.vertices()[static_cast<size_t>(i)].punto
                                          : nullptr;
}

bool Prisma::volumen(Rect3<double>& caja) const
{
    (void)caja;
    return true;
}

bool Prisma::interior(const Punto3<double>& p) const
{
    (void)p;
    return true;
}

void Prisma::puntosCalientesEdicion(PuntosCalientes& p, int a, int b)
{
    (void)a;
    (void)b;
    puntosCalientes(p);
}

void Prisma::puntosCalientes(PuntosCalientes& p)
{
    p.entidad = this;
    const Matriz4<double> t = colocacion();
    const Vector3D<double> mitad = (maximo - minimo) * 0.5;
    Punto3<double> v[8];
    for (int k = 0; k < 8; ++k)
    {
        v[k] =
            t * Punto3<double>((k & 1) != 0 ? mitad.x : -mitad.x, (k & 2) != 0 ? mitad.y : -mitad.y,
                               (k & 4) != 0 ? mitad.z : -mitad.z);
    }
    // Corners that differ in one bit share an edge: x edges, then y, then z.
    for (int bit = 1; bit < 8; bit <<= 1)
    {
        for (int k = 0; k < 8; ++k)
        {
            if ((k & bit) == 0)
            {
                p.nuevaArista(v[k], v[k | bit]);
            }
        }
    }
    p.numeraPuntos();
}

void Prisma::aplicaPuntoCaliente(const elemento_arrastrado_t& e)
{
    if (e.tipo == kTipoAzimut)
    {
        EntidadTransformada::aplicaPuntoCaliente(e);
        sucio = true;
    }
}

bool Prisma::getReferenciaEntidades(ReferenciaEntidades& r) const
{
    if ((r.mascara & kPuntosInsercion) == 0)
    {
        return false;
    }
    const Vector3D<double> mitad = (maximo - minimo) * 0.5;
    return r.ofrecePunto(this, colocacion() * (Punto3<double>() - mitad), kPuntosInsercion);
}

void Prisma::setMaterial(uint16_t m)
{
    material_ = m;
    sucio = true;
}

void Prisma::dibuja(PantallaCAD& p) const
{
    if (sucio)
    {
        generaModelo(modelo);
    }
    modelo.dibuja(p,
                  variableEnteraPintura(kVarRepresentacionModelos, kRepresentacionModelosDefecto),
                  const_cast<Entidad*>(static_cast<const Entidad*>(this)));
}

// ---------------------------------------------------------------------------------------
// Property sheet

int Prisma::numeroPropiedadesCategoria(int categoria) const
{
    if (categoria == 1)
    {
        return kFilasCaja;
    }
    return categoria == 2 ? 1 : Entidad::numeroPropiedadesCategoria(categoria);
}

bool Prisma::getPropiedad(int categoria, int indice, Prop& p) const
{
    if (categoria == 1)
    {
        return filaCaja(indice, minimo, maximo, p);
    }
    if (categoria == 2)
    {
        if (indice != 0)
        {
            return false;
        }
        filaMaterial(p, material_);
        return true;
    }
    return Entidad::getPropiedad(categoria, indice, p);
}

bool Prisma::setPropiedad(int categoria, int indice, const Prop& p)
{
    if (categoria == 1)
    {
        if (!escribeFilaCaja(indice, p, minimo, maximo))
        {
            return false;
        }
        cambiado();
        return true;
    }
    if (categoria == 2)
    {
        if (indice != 0)
        {
            return false;
        }
        setMaterial(static_cast<uint16_t>(p.material));
        return true;
    }
    return Entidad::setPropiedad(categoria, indice, p);
}

}  // namespace cad
