// Superficie: body, painting and sheet of a placed mesh model.
#include "entidades/Superficie.h"

#include <algorithm>
#include <cstddef>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "documento/ReferenciaEntidades.h"
#include "documento/VariablesPintura.h"
#include "modelo/PuntosCalientes.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

void Superficie::escribe(SerializadorEscrituraBase& w)
{
    EntidadConSuperficie::escribe(w);
    modelo_.escribe(w);
}

bool Superficie::lee(SerializadorLecturaBase& r)
{
    if (!EntidadConSuperficie::lee(r))
    {
        modelo_.limpia();
        return false;
    }
    return modelo_.lee(r);
}

Entidad* Superficie::clona() const
{
    auto* copia = new Superficie;
    static_cast<Propiedades&>(*copia) = *this;
    copia->id = id;
    copia->color = color;
    copia->estiloLinea = estiloLinea;
    copia->estado = estado;
    copia->capa = capa;
    return copia;
}

void Superficie::exportaDXF(ExportaDXF& dxf) const
{
    (void)dxf;
}

void Superficie::traslada(const Vector3D<double>& v)
{
    transformacion(0, 3) += v.x;
    transformacion(1, 3) += v.y;
    transformacion(2, 3) += v.z;
}

int Superficie::numCoordenadas() const
{
    return static_cast<int>(modelo_.vertices().size());
}

const Punto3<double>* Superficie::coordenada(int i) const
{
    const auto& v = modelo_.vertices();
    return i >= 0 && static_cast<size_t>(i) < v.size() ? &v[static_cast<size_t>(i)].punto : nullptr;
}

Rect3<double> Superficie::extension() const
{
    return Rect3<double>(Punto3<double>(0, 0, 0), Punto3<double>(-1, -1, -1));
}

void Superficie::puntosCalientesEdicion(PuntosCalientes& p, int a, int b)
{
    (void)a;
    (void)b;
    puntosCalientes(p);
}

void Superficie::puntosCalientes(PuntosCalientes& p)
{
    (void)p;
}

bool Superficie::getReferenciaEntidades(ReferenciaEntidades& r) const
{
    return (r.mascara & kExtremos) != 0;
}

void Superficie::dibuja(PantallaCAD& p) const
{
    // The host's switch hides the models; they stay in the list, the extents and the file.
    if (existeVariablePintura(kVarOcultaModelos))
    {
        return;
    }
    const int modo =
        variableEnteraPintura(kVarRepresentacionModelos, kRepresentacionModelosDefecto);
    modelo_.dibuja(p, modo, const_cast<Entidad*>(static_cast<const Entidad*>(this)));
}

// ---------------------------------------------------------------------------------------
// Property sheet

std::string Superficie::nombreCategoria(int categoria) const
{
    switch (categoria)
    {
        case 1:
            return "Varios";
        case 2:
            return "Leyenda";
        default:
            return Entidad::nombreCategoria(categoria);
    }
}

int Superficie::numeroPropiedadesCategoria(int categoria) const
{
    switch (categoria)
    {
        case 1:
            return 2;
        case 2:
            return 9;
        default:
            return Entidad::numeroPropiedadesCategoria(categoria);
    }
}

bool Superficie::getPropiedad(int categoria, int indice, Prop& p) const
{
    if (categoria != 1 && categoria != 2)
    {
        return Entidad::getPropiedad(categoria, indice, p);
    }
    if (indice < 0 || indice >= numeroPropiedadesCategoria(categoria))
    {
        return false;
    }
    p.soloLectura = true;
    const auto entero = [&p](const char* nombre, size_t valor)
    {
        p.nombre = nombre;
        p.tipo = TipoProp::Entero;
        p.asignaInt(static_cast<int>(valor));
        return true;
    };
    const auto& caras = modelo_.caras();
    if (categoria == 1)
    {
        if (indice == 0)
        {
            return entero("Vértices", modelo_.vertices().size());
        }
        return entero("Caras", static_cast<size_t>(std::count_if(caras.begin(), caras.end(),
                                                                 [](const cara_t& c)
                                                                 { return c.arista != -1; })));
    }
    if (indice == 7)
    {
        return entero("Aristas", static_cast<size_t>(modelo_.aristas().aristasValidas()));
    }
    if (indice == 8)
    {
        std::vector<uint16_t> materiales;
        modelo_.getMaterialesCaras(materiales);
        return entero("Materiales", materiales.size());
    }
    const Matriz4<double>& m = transformacion;
    if (indice == 6)
    {
        double area = 0.0;
        std::vector<int32_t> triangulos;
        for (size_t f = 0; f < caras.size(); ++f)
        {
            if (caras[f].arista == -1)
            {
                continue;
            }
            triangulos.clear();
            modelo_.triangulaCara(static_cast<int32_t>(f), triangulos);
            for (size_t t = 0; t + 2 < triangulos.size(); t += 3)
            {
                const Punto3<double> a = m * modelo_.getVertice(triangulos[t]).punto;
                const Punto3<double> b = m * modelo_.getVertice(triangulos[t + 1]).punto;
                const Punto3<double> c = m * modelo_.getVertice(triangulos[t + 2]).punto;
                area += 0.5 * (b - a).cross(c - a).modulo();
            }
        }
        p.nombre = "Área";
        p.tipo = TipoProp::DoblePositivo;
        p.asignaDoble(area);
        return true;
    }
    // The box, minimum then maximum of each axis in turn.
    static const char* const kNombres[6] = {"X mínima", "X máxima", "Y mínima",
                                            "Y máxima", "Z mínima", "Z máxima"};
    Rect3<double> caja;
    for (const vertice_t& v : modelo_.vertices())
    {
        caja.amplia(m * v.punto);
    }
    const bool vacia = modelo_.vertices().empty();
    const Punto3<double>& extremo = indice % 2 == 0 ? caja.minimo : caja.maximo;
    const double valores[3] = {extremo.x, extremo.y, extremo.z};
    p.nombre = kNombres[indice];
    p.tipo = TipoProp::Doble;
    p.asignaDoble(vacia ? 0.0 : valores[indice / 2]);
    return true;
}

bool Superficie::setPropiedad(int categoria, int indice, const Prop& p)
{
    // Everything past "General" is derived from the model.
    return categoria == 0 && Entidad::setPropiedad(categoria, indice, p);
}

}  // namespace cad
