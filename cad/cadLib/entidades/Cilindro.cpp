// Cilindro: body, mesh made on demand, snap, DXF faces and sheet.
#include "entidades/Cilindro.h"

#include <cstdlib>

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

Cilindro::Cilindro(const Punto3<double>& centro, double radio_, double altura_, uint16_t idMaterial)
    : radio(radio_), altura(altura_), material_(idMaterial)
{
    transformacion.setOrigen(centro);
}

void Cilindro::escribe(SerializadorEscrituraBase& w)
{
    EntidadTransformada::escribe(w);
    w.escribeDoble(radio);
    w.escribeDoble(altura);
    w.escribeCortoSinSigno(material_);
}

bool Cilindro::lee(SerializadorLecturaBase& r)
{
    bool ok = EntidadTransformada::lee(r);
    ok = r.leeDoble(radio) && ok;
    ok = r.leeDoble(altura) && ok;
    ok = r.leeCortoSinSigno(material_) && ok;
    sucio = true;
    return ok;
}

void Cilindro::generaModelo(Modelo3D& m) const
{
    m.limpia();
    teselaCilindro(m, material_, radio, altura);
    transformaModelo(m, transformacion);
    if (&m == &modelo)
    {
        sucio = false;
    }
}

void Cilindro::exportaDXF(ExportaDXF& dxf) const
{
    dxf.setCapa(capaDXFSolido(*this));
    Modelo3D temporal;
    generaModelo(temporal);
    exportaModeloDXF(temporal, dxf, indiceColorCercano());
}

void Cilindro::traslada(const Vector3D<double>& v)
{
    transformacion.setOrigen(transformacion.getOrigen() + v);
    sucio = true;
}

int Cilindro::numCoordenadas() const
{
    return static_cast<int>(modelo.vertices().size());
}

const Punto3<double>* Cilindro::coordenada(int i) const
{
    return i >= 0 && i < numCoordenadas() ? &modelo.vertices()[static_cast<size_t>(i)].punto
                                          : nullptr;
}

bool Cilindro::volumen(Rect3<double>& caja) const
{
    (void)caja;
    return true;
}

bool Cilindro::interior(const Punto3<double>& p) const
{
    (void)p;
    return true;
}

void Cilindro::puntosCalientesEdicion(PuntosCalientes& p, int a, int b)
{
    (void)a;
    (void)b;
    puntosCalientes(p);
}

void Cilindro::puntosCalientes(PuntosCalientes& p)
{
    p.entidad = this;
}

void Cilindro::aplicaPuntoCaliente(const elemento_arrastrado_t& e)
{
    if (e.tipo == kTipoAzimut)
    {
        EntidadTransformada::aplicaPuntoCaliente(e);
        sucio = true;
    }
}

bool Cilindro::getReferenciaEntidades(ReferenciaEntidades& r) const
{
    if ((r.mascara & kPuntosInsercion) == 0)
    {
        return false;
    }
    return r.ofrecePunto(this, transformacion.getOrigen(), kPuntosInsercion);
}

void Cilindro::setMaterial(uint16_t m)
{
    material_ = m;
    sucio = true;
}

void Cilindro::dibuja(PantallaCAD& p) const
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

namespace
{

constexpr double kDosPi = 6.283185307179586;
constexpr double kPi = 3.141592653589793;

}  // namespace

int Cilindro::numeroPropiedadesCategoria(int categoria) const
{
    if (categoria == 1)
    {
        return 5;
    }
    return categoria == 2 ? 1 : Entidad::numeroPropiedadesCategoria(categoria);
}

bool Cilindro::getPropiedad(int categoria, int indice, Prop& p) const
{
    if (categoria == 2)
    {
        if (indice != 0)
        {
            return false;
        }
        filaMaterial(p, material_);
        return true;
    }
    if (categoria != 1)
    {
        return Entidad::getPropiedad(categoria, indice, p);
    }
    const auto doble = [&p](const char* nombre, double valor, bool calculado)
    {
        p.nombre = nombre;
        p.tipo = TipoProp::DoblePositivo;
        p.soloLectura = calculado;
        p.asignaDoble(valor);
        return true;
    };
    switch (indice)
    {
        case 0:
        {
            const Punto3<double> centro = transformacion.getOrigen();
            p.nombre = "Centro";
            p.tipo = TipoProp::Coordenada;
            p.x = centro.x;
            p.y = centro.y;
            p.z = centro.z;
            return true;
        }
        case 1:
            return doble("Radio", radio, false);
        case 2:
            return doble("Altura", altura, false);
        case 3:
            // The side alone: the caps are not counted.
            return doble("Área", radio * kDosPi * altura, true);
        case 4:
            return doble("Volumen", radio * kPi * radio * altura, true);
        default:
            return false;
    }
}

bool Cilindro::setPropiedad(int categoria, int indice, const Prop& p)
{
    if (categoria == 2)
    {
        if (indice != 0)
        {
            return false;
        }
        setMaterial(static_cast<uint16_t>(p.material));
        return true;
    }
    if (categoria != 1)
    {
        return Entidad::setPropiedad(categoria, indice, p);
    }
    switch (indice)
    {
        case 0:
            transformacion.setOrigen(Punto3<double>(p.x, p.y, p.z));
            break;
        case 1:
            radio = std::atof(p.valor.c_str());
            break;
        case 2:
            altura = std::atof(p.valor.c_str());
            break;
        default:
            // Area and volume follow from the others: there is nothing to write.
            return false;
    }
    sucio = true;
    return true;
}

}  // namespace cad
