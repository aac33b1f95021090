// Objeto3D: the mesh's body inside the entity's, painting, hot elements, snap, DXF and sheet.
#include "entidades/Objeto3D.h"

#include <array>
#include <memory>
#include <vector>

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

Objeto3D::Objeto3D(Modelo3D* m) : modelo(m) {}

Objeto3D::Objeto3D(const Objeto3D& otro)
    : EntidadConVolumen(otro), modelo(otro.modelo != nullptr ? new Modelo3D(*otro.modelo) : nullptr)
{
}

Objeto3D& Objeto3D::operator=(const Objeto3D& otro)
{
    if (this != &otro)
    {
        // The copy first: if anything throws, this object keeps its own mesh.
        std::unique_ptr<Modelo3D> copia(otro.modelo != nullptr ? new Modelo3D(*otro.modelo)
                                                               : nullptr);
        EntidadConVolumen::operator=(otro);
        delete modelo;
        modelo = copia.release();
    }
    return *this;
}

Objeto3D::Objeto3D(Objeto3D&& otro) : EntidadConVolumen(otro), modelo(otro.modelo)
{
    otro.modelo = nullptr;
}

Objeto3D& Objeto3D::operator=(Objeto3D&& otro)
{
    if (this != &otro)
    {
        EntidadConVolumen::operator=(otro);
        delete modelo;
        modelo = otro.modelo;
        otro.modelo = nullptr;
    }
    return *this;
}

Objeto3D::~Objeto3D()
{
    delete modelo;
}

void Objeto3D::escribe(SerializadorEscrituraBase& w)
{
    Entidad::escribe(w);
    if (modelo != nullptr)
    {
        modelo->escribe(w);
    }
    else
    {
        Modelo3D().escribe(w);
    }
}

bool Objeto3D::lee(SerializadorLecturaBase& r)
{
    bool ok = Entidad::lee(r);
    if (modelo == nullptr)
    {
        modelo = new Modelo3D();
    }
    ok = modelo->lee(r) && ok;
    return ok;
}

void Objeto3D::exportaDXF(ExportaDXF& dxf) const
{
    dxf.setCapa(capaDXFSolido(*this));
    if (modelo != nullptr)
    {
        exportaModeloDXF(*modelo, dxf, indiceColorCercano());
    }
}

void Objeto3D::traslada(const Vector3D<double>& v)
{
    if (modelo == nullptr)
    {
        return;
    }
    for (vertice_t& vertice : modelo->vertices())
    {
        vertice.punto += v;
    }
}

int Objeto3D::numCoordenadas() const
{
    return modelo != nullptr ? static_cast<int>(modelo->vertices().size()) : 0;
}

const Punto3<double>* Objeto3D::coordenada(int i) const
{
    return i >= 0 && i < numCoordenadas() ? &modelo->vertices()[static_cast<size_t>(i)].punto
                                          : nullptr;
}

void Objeto3D::puntosCalientesEdicion(PuntosCalientes& p, int a, int b)
{
    (void)a;
    (void)b;
    puntosCalientes(p);
}

void Objeto3D::puntosCalientes(PuntosCalientes& p)
{
    p.entidad = this;
    if (modelo == nullptr)
    {
        return;
    }
    const std::vector<vertice_t>& vertices = modelo->vertices();
    for (const vertice_t& v : vertices)
    {
        p.nuevoPunto(v.punto);
    }
    for (const Arista& a : modelo->aristas())
    {
        if (a.esValida())
        {
            p.nuevaArista(vertices[static_cast<size_t>(a.vertice[0])].punto,
                          vertices[static_cast<size_t>(a.vertice[1])].punto);
        }
    }
    std::vector<Punto3<double>> esquinas;
    for (size_t c = 0; c < modelo->caras().size(); ++c)
    {
        const auto cara = static_cast<int32_t>(c);
        modelo->getCoordenadasCara(cara, esquinas);
        if (esquinas.empty())
        {
            continue;
        }
        const Vector3D<float> n = modelo->normalCara(cara);
        p.nuevaCara(static_cast<int>(esquinas.size()), esquinas.data(), {n.x, n.y, n.z});
    }
    p.numeraPuntos();
}

void Objeto3D::aplicaPuntoCaliente(const elemento_arrastrado_t& e)
{
    if (e.tipo == kTipoAzimut)
    {
        EntidadTransformada::aplicaPuntoCaliente(e);
        return;
    }
    if (modelo == nullptr || e.indice < 0)
    {
        return;
    }
    if (e.tipo == kTipoVertice)
    {
        if (e.indice < numCoordenadas())
        {
            modelo->setPunto(e.indice, e.posicion);
        }
        return;
    }
    if (e.tipo != kTipoArista || e.extra.size() < 2)
    {
        return;
    }
    // The hot edges skip the records with an invalid end: find the model's edge by counting
    // the kept ones.
    int32_t kept = -1;
    for (const Arista& a : modelo->aristas())
    {
        if (a.esValida() && ++kept == e.indice)
        {
            modelo->setPunto(a.vertice[0], e.posicion + (e.extra[0] - e.punto));
            modelo->setPunto(a.vertice[1], e.posicion + (e.extra[1] - e.punto));
            return;
        }
    }
}

bool Objeto3D::getReferenciaEntidades(ReferenciaEntidades& r) const
{
    if (modelo == nullptr)
    {
        return false;
    }
    bool tomado = false;
    const std::vector<vertice_t>& vertices = modelo->vertices();
    if ((r.mascara & kExtremos) != 0)
    {
        for (const vertice_t& v : vertices)
        {
            if (v.esValido())
            {
                tomado = r.ofrecePunto(this, v.punto, kExtremos) || tomado;
            }
        }
    }
    if ((r.mascara & kPuntosMedios) != 0)
    {
        for (const Arista& a : modelo->aristas())
        {
            if (a.esValida())
            {
                const Punto3<double> medio =
                    Punto3<double>::puntoMedio(vertices[static_cast<size_t>(a.vertice[0])].punto,
                                               vertices[static_cast<size_t>(a.vertice[1])].punto);
                tomado = r.ofrecePunto(this, medio, kPuntosMedios) || tomado;
            }
        }
    }
    return tomado;
}

void Objeto3D::setMaterial(uint16_t m)
{
    if (modelo == nullptr)
    {
        return;
    }
    for (cara_t& c : modelo->caras())
    {
        c.material = m;
    }
}

uint16_t Objeto3D::material() const
{
    return modelo != nullptr && !modelo->caras().empty() ? modelo->caras().front().material : 0;
}

void Objeto3D::dibuja(PantallaCAD& p) const
{
    // The host's switch hides the models; they stay in the list, the extents and the file.
    if (modelo == nullptr || existeVariablePintura(kVarOcultaModelos))
    {
        return;
    }
    modelo->dibuja(p,
                   variableEnteraPintura(kVarRepresentacionModelos, kRepresentacionModelosDefecto),
                   const_cast<Entidad*>(static_cast<const Entidad*>(this)));
}

void Objeto3D::generaModelo(Modelo3D& m) const
{
    if (modelo != nullptr)
    {
        m = *modelo;
    }
}

// ---------------------------------------------------------------------------------------
// Property sheet

int Objeto3D::numeroPropiedadesCategoria(int categoria) const
{
    if (categoria == 1)
    {
        return 2;
    }
    return categoria == 2 ? 1 : Entidad::numeroPropiedadesCategoria(categoria);
}

bool Objeto3D::getPropiedad(int categoria, int indice, Prop& p) const
{
    if (categoria == 2)
    {
        if (indice != 0)
        {
            return false;
        }
        filaMaterial(p, material());
        return true;
    }
    if (categoria != 1)
    {
        return Entidad::getPropiedad(categoria, indice, p);
    }
    if (indice != 0 && indice != 1)
    {
        return false;
    }
    int cuenta = 0;
    if (modelo != nullptr && indice == 0)
    {
        for (const vertice_t& v : modelo->vertices())
        {
            cuenta += v.esValido() ? 1 : 0;
        }
    }
    else if (modelo != nullptr)
    {
        for (const cara_t& c : modelo->caras())
        {
            cuenta += c.arista != -1 ? 1 : 0;
        }
    }
    p.nombre = indice == 0 ? "Vértices" : "Caras";
    p.tipo = TipoProp::Entero;
    p.soloLectura = true;
    p.asignaInt(cuenta);
    return true;
}

bool Objeto3D::setPropiedad(int categoria, int indice, const Prop& p)
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
    // The counts follow from the mesh: there is nothing to write.
    return false;
}

}  // namespace cad
