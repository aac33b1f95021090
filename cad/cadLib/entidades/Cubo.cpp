// Cubo: body, painting through a temporary mesh, box and inside test, hot point and sheet.
#include "entidades/Cubo.h"

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "documento/ReferenciaEntidades.h"
#include "entidades/Teselado.h"
#include "modelo/Modelo3D.h"
#include "modelo/PuntosCalientes.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

Cubo::Cubo(const Punto3<double>& minimo_, const Punto3<double>& maximo_)
    : minimo(minimo_), maximo(maximo_)
{
}

void Cubo::escribe(SerializadorEscrituraBase& w)
{
    Entidad::escribe(w);
    w.escribePunto3(minimo);
    w.escribePunto3(maximo);
}

bool Cubo::lee(SerializadorLecturaBase& r)
{
    bool ok = Entidad::lee(r);
    ok = r.leePunto3(minimo) && ok;
    ok = r.leePunto3(maximo) && ok;
    return ok;
}

void Cubo::exportaDXF(ExportaDXF& dxf) const
{
    (void)dxf;
}

void Cubo::traslada(const Vector3D<double>& v)
{
    minimo += v;
    maximo += v;
}

const Punto3<double>* Cubo::coordenada(int i) const
{
    (void)i;
    return &minimo;
}

void Cubo::esquinas(Punto3<double> (&v)[8]) const
{
    for (int k = 0; k < 8; ++k)
    {
        v[k] = transformacion * Punto3<double>((k & 1) != 0 ? maximo.x : minimo.x,
                                               (k & 2) != 0 ? maximo.y : minimo.y,
                                               (k & 4) != 0 ? maximo.z : minimo.z);
    }
}

bool Cubo::volumen(Rect3<double>& caja) const
{
    Punto3<double> v[8];
    esquinas(v);
    caja = Rect3<double>();
    for (const Punto3<double>& p : v)
    {
        caja.amplia(p);
    }
    return true;
}

bool Cubo::interior(const Punto3<double>& p) const
{
    Punto3<double> v[8];
    esquinas(v);
    // Each face as a corner on it, the two edges leaving that corner, and a corner of the
    // opposite face, which tells the inner side whatever way the box is turned or flipped.
    struct plano_t
    {
        int origen, a, b, opuesta;
    };
    static const plano_t kCaras[6] = {{0, 1, 2, 4}, {4, 5, 6, 0}, {0, 1, 4, 2},
                                      {2, 3, 6, 0}, {0, 2, 4, 1}, {1, 3, 5, 0}};
    for (const plano_t& c : kCaras)
    {
        const Vector3D<double> n = (v[c.a] - v[c.origen]).cross(v[c.b] - v[c.origen]);
        const double dentro = n.dot(v[c.opuesta] - v[c.origen]);
        const double punto = n.dot(p - v[c.origen]);
        if (dentro == 0.0 || (dentro > 0.0 ? punto < 0.0 : punto > 0.0))
        {
            return false;
        }
    }
    return true;
}

void Cubo::puntosCalientesEdicion(PuntosCalientes& p, int a, int b)
{
    (void)a;
    (void)b;
    puntosCalientes(p);
}

void Cubo::puntosCalientes(PuntosCalientes& p)
{
    p.entidad = this;
    p.nuevoPunto(transformacion * minimo);
    p.numeraPuntos();
}

void Cubo::aplicaPuntoCaliente(const elemento_arrastrado_t& e)
{
    if (e.tipo == kTipoVertice && e.indice == 0)
    {
        traslada(e.posicion - transformacion * minimo);
        return;
    }
    EntidadTransformada::aplicaPuntoCaliente(e);
}

bool Cubo::getReferenciaEntidades(ReferenciaEntidades& r) const
{
    if ((r.mascara & kPuntosInsercion) == 0)
    {
        return false;
    }
    return r.ofrecePunto(this, transformacion * minimo, kPuntosInsercion);
}

void Cubo::generaModelo(Modelo3D& m) const
{
    m.limpia();
    teselaCubo(m, minimo, maximo - minimo, 0);
    transformaModelo(m, transformacion);
}

void Cubo::dibuja(PantallaCAD& p) const
{
    Modelo3D modelo;
    generaModelo(modelo);
    modelo.dibuja(p, PantallaCAD::kConceptual,
                  const_cast<Entidad*>(static_cast<const Entidad*>(this)));
}

// ---------------------------------------------------------------------------------------
// Property sheet

int Cubo::numeroPropiedadesCategoria(int categoria) const
{
    return categoria == 1 ? kFilasCaja : Entidad::numeroPropiedadesCategoria(categoria);
}

bool Cubo::getPropiedad(int categoria, int indice, Prop& p) const
{
    if (categoria != 1)
    {
        return Entidad::getPropiedad(categoria, indice, p);
    }
    return filaCaja(indice, minimo, maximo, p);
}

bool Cubo::setPropiedad(int categoria, int indice, const Prop& p)
{
    if (categoria != 1)
    {
        return Entidad::setPropiedad(categoria, indice, p);
    }
    return escribeFilaCaja(indice, p, minimo, maximo);
}

}  // namespace cad
