// Esfera: tessellation, body, painting, snap, DXF records and sheet of the parametric sphere.
#include "entidades/Esfera.h"

#include <cmath>
#include <cstdlib>
#include <string>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "documento/Capa.h"
#include "documento/ReferenciaEntidades.h"
#include "entidades/Teselado.h"
#include "intercambio/ExportaDXF.h"
#include "modelo/PuntosCalientes.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

namespace
{

// Pi and its half as the tessellation has always used them: thirteen decimals, so that a
// mesh made here is the mesh made anywhere else from the same parameters.
constexpr double kPiTeselado = 3.1415926535897;
constexpr double kMedioPiTeselado = 1.57079632679485;

// 4 pi, for the area and the volume.
constexpr double kCuatroPi = 12.566370614359172;

}  // namespace

bool divisionesAdmisibles(int meridianos, int paralelos)
{
    return meridianos >= 3 && meridianos <= kMaximoMeridianos && paralelos >= 2 &&
           static_cast<int64_t>(meridianos) * paralelos <= kMaximoCarasEsfera;
}

Esfera::Esfera(const Punto3<double>& centroEsfera, double radioEsfera, uint16_t materialEsfera)
    : centro(centroEsfera), radio(radioEsfera), material_(materialEsfera)
{
}

void Esfera::escribeCampos(SerializadorEscrituraBase& w) const
{
    w.escribePunto3(centro);
    w.escribeDoble(radio);
    w.escribeCortoSinSigno(material_);
}

bool Esfera::leeCampos(SerializadorLecturaBase& r)
{
    bool ok = r.leePunto3(centro);
    ok = r.leeDoble(radio) && ok;
    ok = r.leeCortoSinSigno(material_) && ok;
    return ok;
}

void Esfera::escribe(SerializadorEscrituraBase& w)
{
    Entidad::escribe(w);
    escribeCampos(w);
}

bool Esfera::lee(SerializadorLecturaBase& r)
{
    bool ok = Entidad::lee(r);
    ok = leeCampos(r) && ok;
    sucio = true;
    return ok;
}

void* Esfera::pick() const
{
    // The display hands picks back as Entidad*, so the pointer must be that subobject's.
    return const_cast<Entidad*>(static_cast<const Entidad*>(this));
}

// ---------------------------------------------------------------------------------------
// Tessellation

void Esfera::teselaDivisiones(Modelo3D& m, int meridianos, int paralelos) const
{
    m.vertices().clear();
    m.aristas().lista.clear();
    m.caras().clear();
    if (!divisionesAdmisibles(meridianos, paralelos))
    {
        return;
    }
    const auto anillos = static_cast<size_t>(paralelos - 1);
    const auto husos = static_cast<size_t>(meridianos);
    m.reserva(2 + (husos + 1) * anillos, 2 * husos * static_cast<size_t>(paralelos),
              husos * static_cast<size_t>(paralelos));

    m.nuevoVertice(centro + Vector3D<double>(0, 0, radio), Vector2D<float>(0.5F, 0.0F));
    m.nuevoVertice(centro + Vector3D<double>(0, 0, -radio), Vector2D<float>(0.5F, 1.0F));
    for (int i = 0; i <= meridianos; ++i)
    {
        const double a = i * kPiTeselado / meridianos - kMedioPiTeselado;
        const auto u = static_cast<float>(static_cast<double>(i) / meridianos);
        for (int j = 1; j < paralelos; ++j)
        {
            const double b = j * kPiTeselado / paralelos;
            const auto v = static_cast<float>(static_cast<double>(j) / paralelos);
            const Vector3D<double> unitario(std::sin(b) * std::cos(a), std::sin(b) * std::sin(a),
                                            std::cos(b));
            m.nuevoVertice(centro + unitario * radio, Vector2D<float>(u, v));
        }
    }

    // Vertex of meridian i on ring j (1 .. paralelos - 1).
    const auto en = [paralelos](int i, int j) { return 2 + i * (paralelos - 1) + (j - 1); };
    // Every face runs round the same way, so each edge is walked once in each sense and the
    // faces share it.
    m.iniciaEdicion();
    const int ultimo = paralelos - 1;
    for (int i = 0; i < meridianos; ++i)
    {
        const int32_t t[3] = {0, en(i, 1), en(i + 1, 1)};
        m.nuevaCara(3, t, false, material_);
    }
    for (int j = 1; j < ultimo; ++j)
    {
        for (int i = 0; i < meridianos; ++i)
        {
            const int32_t q[4] = {en(i, j), en(i, j + 1), en(i + 1, j + 1), en(i + 1, j)};
            m.nuevaCara(4, q, false, material_);
        }
    }
    for (int i = 0; i < meridianos; ++i)
    {
        const int32_t t[3] = {1, en(i + 1, ultimo), en(i, ultimo)};
        m.nuevaCara(3, t, false, material_);
    }
    m.terminaEdicion();
}

void Esfera::teselaEsfera(Modelo3D& m) const
{
    teselaDivisiones(m, 60, 20);
}

void Esfera::generaModelo(Modelo3D& m) const
{
    teselaEsfera(m);
}

void Esfera::actualizaModelo() const
{
    if (sucio)
    {
        teselaEsfera(modelo);
        sucio = false;
    }
}

// ---------------------------------------------------------------------------------------
// Operations of the entity

void Esfera::exportaDXF(ExportaDXF& dxf) const
{
    const Capa* c = capa.get();
    dxf.setCapa(c != nullptr ? c->nombre : "0");
    // A fresh mesh: the kept one may be stale or not made yet.
    Modelo3D temporal;
    generaModelo(temporal);
    exportaModeloDXF(temporal, dxf, indiceColorCercano());
}

void Esfera::traslada(const Vector3D<double>& v)
{
    centro += v;
    sucio = true;
}

int Esfera::numCoordenadas() const
{
    return static_cast<int>(modelo.vertices().size());
}

const Punto3<double>* Esfera::coordenada(int i) const
{
    if (i < 0 || i >= numCoordenadas())
    {
        return nullptr;
    }
    return &modelo.vertices()[static_cast<size_t>(i)].punto;
}

bool Esfera::volumen(Rect3<double>& caja) const
{
    (void)caja;
    return true;
}

bool Esfera::interior(const Punto3<double>& p) const
{
    (void)p;
    return true;
}

void Esfera::puntosCalientesEdicion(PuntosCalientes& p, int a, int b)
{
    (void)a;
    (void)b;
    puntosCalientes(p);
}

void Esfera::puntosCalientes(PuntosCalientes& p)
{
    p.entidad = this;
}

bool Esfera::getReferenciaEntidades(ReferenciaEntidades& r) const
{
    if ((r.mascara & kPuntosInsercion) == 0)
    {
        return false;
    }
    return r.ofrecePunto(this, centro, kPuntosInsercion);
}

void Esfera::setMaterial(uint16_t m)
{
    material_ = m;
    sucio = true;
}

void Esfera::dibuja(PantallaCAD& p) const
{
    actualizaModelo();
    modelo.dibuja(p, modo, static_cast<Entidad*>(pick()));
}

// ---------------------------------------------------------------------------------------
// Property sheet

int Esfera::numeroPropiedadesCategoria(int categoria) const
{
    switch (categoria)
    {
        case 1:
            return 4;
        case 2:
            return 1;
        default:
            return Entidad::numeroPropiedadesCategoria(categoria);
    }
}

bool Esfera::getPropiedad(int categoria, int indice, Prop& p) const
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
    switch (indice)
    {
        case 0:
            p.nombre = "Centro";
            p.tipo = TipoProp::Coordenada;
            p.x = centro.x;
            p.y = centro.y;
            p.z = centro.z;
            return true;
        case 1:
            p.nombre = "Radio";
            p.tipo = TipoProp::DoblePositivo;
            p.asignaDoble(radio);
            return true;
        case 2:
            p.nombre = "Área";
            p.tipo = TipoProp::DoblePositivo;
            p.soloLectura = true;
            p.asignaDoble(radio * kCuatroPi * radio);
            return true;
        case 3:
            p.nombre = "Volumen";
            p.tipo = TipoProp::DoblePositivo;
            p.soloLectura = true;
            p.asignaDoble(radio * kCuatroPi * radio * radio / 3.0);
            return true;
        default:
            return false;
    }
}

bool Esfera::setPropiedad(int categoria, int indice, const Prop& p)
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
            centro = Punto3<double>(p.x, p.y, p.z);
            break;
        case 1:
            radio = std::atof(p.valor.c_str());
            break;
        default:
            return false;  // computed rows
    }
    sucio = true;
    return true;
}

}  // namespace cad
