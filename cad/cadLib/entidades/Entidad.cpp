#include "entidades/Entidad.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <strings.h>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "base/geometria/Matriz4.h"
#include "documento/Capa.h"
#include "documento/EstiloTexto.h"
#include "modelo/PuntosCalientes.h"

namespace cad
{

const char* nombreTipo(const char* tag)
{
    struct fila_t
    {
        const char* tag;
        const char* nombre;
    };
    // Searched in this order; the second "Pg1" row is never reached, as the file format has
    // polygons and polylines share the tag.
    static const fila_t kTabla[] = {
        {kFirmaEntidadPunto, "Punto"},
        {kFirmaEntidadGrupoPuntos, "GrupoPuntos"},
        {kFirmaEntidadPolicara, "PoliCara3D"},
        {kFirmaEntidadCara3D, "Cara3D"},
        {kFirmaEntidadLinea, "Linea"},
        {kFirmaEntidadPolilinea, "Polilinea"},
        {kFirmaEntidadPolilineaLarga, "Polilinea"},
        {kFirmaEntidadPolilinea, "Poligono"},
        {kFirmaEntidadNube, "NubePuntos"},
        {kFirmaEntidadPuntoControl, "PuntoControl"},
        {kFirmaEntidadCubo, "Cubo"},
        {kFirmaEntidadCilindro, "Cilindro"},
        {kFirmaEntidadEsfera, "Esfera"},
        {kFirmaEntidadPrisma, "Prisma"},
        {kFirmaEntidadObjeto3D, "Objeto3D"},
        {kFirmaEntidadMalla, "Malla"},
        {kFirmaEntidadSuperficie, "Superficie"},
        {kFirmaEntidadPlano, "Plano3D"},
        {kFirmaEntidadTomaCamara, "TomaCamara"},
        {kFirmaEntidadSistemaLocal, "Sistema Local"},
        {kFirmaEntidadOrtofoto, "Ortofoto"},
    };
    if (tag != nullptr)
    {
        for (const auto& f : kTabla)
        {
            if (std::strcmp(f.tag, tag) == 0)
            {
                return f.nombre;
            }
        }
    }
    return "Desconocida";
}

void Entidad::escribe(SerializadorEscrituraBase& w)
{
    w.escribeLongitud64(id);
    w.escribeLongitud64(capa.idParaEscribir());
    color.escribe(w);
    estiloLinea.escribe(w);
}

bool Entidad::lee(SerializadorLecturaBase& r)
{
    bool ok = r.leeLongitud64(id);
    ok = r.leeLongitud64(capa.id) && ok;
    capa.objeto = nullptr;
    ok = color.lee(r) && ok;
    ok = estiloLinea.lee(r) && ok;
    return ok;
}

void Entidad::marcaSeleccion()
{
    estado |= kEstadoSeleccionada | kEstadoResaltada;
}

void Entidad::quitaSeleccion()
{
    estado &= ~static_cast<uint32_t>(kEstadoSeleccionada | kEstadoResaltada);
}

void Entidad::setSeleccionada(bool si)
{
    estado = si ? (estado | kEstadoSeleccionada)
                : (estado & ~static_cast<uint32_t>(kEstadoSeleccionada));
}

void Entidad::setResaltada(bool si)
{
    estado = si ? (estado | kEstadoResaltada) : (estado & ~static_cast<uint32_t>(kEstadoResaltada));
}

void Entidad::setOculta(bool si)
{
    estado = si ? (estado | kEstadoEtiquetaOculta)
                : (estado & ~static_cast<uint32_t>(kEstadoEtiquetaOculta));
}

bool Entidad::esTipo(const char* nombre) const
{
    return nombre != nullptr && strcasecmp(nombreTipo(etiqueta()), nombre) == 0;
}

Rect3<double> Entidad::extension() const
{
    Rect3<double> caja;
    for (int i = 0; i < numCoordenadas(); ++i)
    {
        caja.amplia(*coordenada(i));
    }
    return caja;
}

bool Entidad::volumen(Rect3<double>& caja) const
{
    (void)caja;
    return false;
}

bool Entidad::interior(const Punto3<double>& p) const
{
    (void)p;
    return false;
}

bool Entidad::getReferenciaEntidades(ReferenciaEntidades& r) const
{
    (void)r;
    return false;
}

void Entidad::setMaterial(uint16_t m)
{
    (void)m;
}

void Entidad::setEstiloTexto(EstiloTexto* estilo)
{
    (void)estilo;
}

// ---------------------------------------------------------------------------------------
// Common property sheet

std::string Entidad::nombreCategoria(int categoria) const
{
    // Every kind names its categories alike: 1 "Geometría", 2 "Varios"; past its last, none.
    static const char* const kNombres[] = {"General", "Geometría", "Varios"};
    return categoria >= 0 && categoria < std::min(numeroCategorias(), 3) ? kNombres[categoria] : "";
}

int Entidad::numeroPropiedadesCategoria(int categoria) const
{
    return categoria == 0 ? 4 : 0;
}

bool Entidad::getPropiedad(int categoria, int indice, Prop& p) const
{
    if (categoria != 0)
    {
        return false;
    }
    const Capa* c = capa.get();
    switch (indice)
    {
        case 0:
            p.nombre = "Entidad";
            p.tipo = TipoProp::Cadena;
            p.soloLectura = true;
            p.valor = nombreTipo(etiqueta());
            return true;
        case 1:
            p.nombre = "Capa";
            p.tipo = TipoProp::kCapaEntidad;
            p.valor = c != nullptr ? c->nombre : "";
            return true;
        case 2:
        {
            p.nombre = "Color";
            p.tipo = TipoProp::Color;
            const uint32_t argb = (static_cast<uint32_t>(color.alfa()) << 24) |
                                  (static_cast<uint32_t>(color.rojo()) << 16) |
                                  (static_cast<uint32_t>(color.verde()) << 8) | color.azul();
            p.valor = std::to_string(argb);
            p.indiceColor = color.colorCAD == 512 ? -1 : color.colorCAD;
            if (c != nullptr)
            {
                p.colorCapa = (static_cast<uint32_t>(c->color.alfa()) << 24) |
                              (static_cast<uint32_t>(c->color.rojo()) << 16) |
                              (static_cast<uint32_t>(c->color.verde()) << 8) | c->color.azul();
            }
            return true;
        }
        case 3:
            p.nombre = "Grosor";
            p.tipo = TipoProp::DoblePositivo;
            p.asignaDoble(estiloLinea.porCapa ? 0.0 : estiloLinea.grosor);
            return true;
        default:
            return false;
    }
}

bool Entidad::setPropiedad(int categoria, int indice, const Prop& p)
{
    if (categoria != 0)
    {
        return false;
    }
    if (indice == 2)
    {
        if (p.indiceColor < 0 || p.indiceColor > 511)
        {
            color.setRGB(static_cast<uint32_t>(std::atoi(p.valor.c_str())));
        }
        else
        {
            color.setIndiceColor(p.indiceColor);
        }
        return true;
    }
    if (indice == 3)
    {
        const double grosor = std::atof(p.valor.c_str());
        if (grosor == 0.0)
        {
            estiloLinea.porCapa = true;
        }
        else
        {
            estiloLinea.porCapa = false;
            estiloLinea.grosor = grosor;
        }
        return true;
    }
    return false;
}

// ---------------------------------------------------------------------------------------
// Plain operations

uint32_t Entidad::resuelveColorABGR() const
{
    const Capa* c = capa.get();
    if (color.colorCAD == 256 && c != nullptr)
    {
        return c->color.ABGR();
    }
    return color.ABGR();
}

uint32_t Entidad::resuelveColorABGR(int forma) const
{
    (void)forma;
    const uint32_t abgr = resuelveColorABGR();
    // Swap the red and blue bytes: 0xAABBGGRR becomes 0xAARRGGBB.
    return (abgr & 0xFF00FF00U) | ((abgr & 0xFFU) << 16) | ((abgr >> 16) & 0xFFU);
}

int Entidad::indiceColorCercano() const
{
    if (color.colorCAD == 256)
    {
        return 256;
    }
    int mejor = 0;
    long distancia = std::numeric_limits<long>::max();
    for (int i = 0; i < 256; ++i)
    {
        const uint32_t rgb = Color::paletaRGB(i);
        const long dr = static_cast<long>((rgb >> 16) & 0xFF) - color.rojo();
        const long dg = static_cast<long>((rgb >> 8) & 0xFF) - color.verde();
        const long db = static_cast<long>(rgb & 0xFF) - color.azul();
        const long d = dr * dr + dg * dg + db * db;
        if (d < distancia)
        {
            distancia = d;
            mejor = i;
        }
    }
    return mejor;
}

bool Entidad::capaVisible() const
{
    const Capa* c = capa.get();
    return c != nullptr && (c->flags & 1) != 0;
}

bool Entidad::enCapa(const char* nombre) const
{
    const Capa* c = capa.get();
    return c != nullptr && nombre != nullptr && c->nombre == nombre;
}

void Entidad::asignaCapa(Capa* c)
{
    capa.set(c, 0);
}

Capa* Entidad::capaEntidad() const
{
    return capa.get();
}

void Entidad::coordenadas(std::vector<Punto3<double>>& v) const
{
    for (int i = 0; i < numCoordenadas(); ++i)
    {
        v.push_back(*coordenada(i));
    }
}

// ---------------------------------------------------------------------------------------
// Intermediate classes

void EntidadTransformada::escribe(SerializadorEscrituraBase& w)
{
    Entidad::escribe(w);
    const Matriz4<double>& m = transformacion;
    w.escribeVector3(Vector3D<double>(m(0, 0), m(0, 1), m(0, 2)));
    w.escribeVector3(Vector3D<double>(m(1, 0), m(1, 1), m(1, 2)));
    w.escribeVector3(Vector3D<double>(m(2, 0), m(2, 1), m(2, 2)));
    w.escribeVector3(Vector3D<double>(m(0, 3), m(1, 3), m(2, 3)));
}

bool EntidadTransformada::lee(SerializadorLecturaBase& r)
{
    bool ok = Entidad::lee(r);
    Vector3D<double> filas[3];
    Vector3D<double> traslacion;
    for (auto& f : filas)
    {
        ok = r.leeVector3(f) && ok;
    }
    ok = r.leeVector3(traslacion) && ok;
    // Three rows read into a zero matrix; the fourth row stays (0, 0, 0, 1).
    Matriz4<double> m;
    for (int fila = 0; fila < 3; ++fila)
    {
        m(fila, 0) = filas[fila].x;
        m(fila, 1) = filas[fila].y;
        m(fila, 2) = filas[fila].z;
    }
    m(0, 3) = traslacion.x;
    m(1, 3) = traslacion.y;
    m(2, 3) = traslacion.z;
    m(3, 0) = m(3, 1) = m(3, 2) = 0.0;
    m(3, 3) = 1.0;
    transformacion = m;
    return ok;
}

void EntidadTransformada::aplicaPuntoCaliente(const elemento_arrastrado_t& e)
{
    if (e.tipo != kTipoAzimut)
    {
        return;
    }
    const Vector3D<double> d = e.punto - e.posicion;
    double a = d.modulo();
    if (d.z < 0.0)
    {
        a = -a;
    }
    const int eje = ((e.indice % 3) + 3) % 3;
    const Matriz4<double> r = eje == 0   ? Matriz4<double>::rotacionX(a)
                              : eje == 1 ? Matriz4<double>::rotacionY(a)
                                         : Matriz4<double>::rotacionZ(a);
    transformacion = transformacion * r;
}

void EntidadConSuperficie::escribe(SerializadorEscrituraBase& w)
{
    EntidadTransformada::escribe(w);
    w.escribeLongitud16(materialMapeo);
    w.escribeLongitud32(static_cast<uint32_t>(mapeos.size()));
    for (const auto& m : mapeos)
    {
        w.escribeEntero(m.cara);
        w.escribeFlotante(m.u);
        w.escribeFlotante(m.v);
    }
}

bool EntidadConSuperficie::lee(SerializadorLecturaBase& r)
{
    bool ok = EntidadTransformada::lee(r);
    mapeos.clear();
    ok = r.leeLongitud16(materialMapeo) && ok;
    uint32_t cuenta = 0;
    if (!r.leeLongitud32(cuenta))
    {
        return false;
    }
    // Items one by one: a lying count ends at the first failed read.
    for (uint32_t i = 0; i < cuenta; ++i)
    {
        mapeo_t m;
        if (!r.leeEntero(m.cara) || !r.leeFlotante(m.u) || !r.leeFlotante(m.v))
        {
            return false;
        }
        mapeos.push_back(m);
    }
    return ok;
}

uint64_t EntidadConTexto::idEstilo()
{
    if (estilo.id == 0 && estilo.objeto != nullptr)
    {
        estilo.id = estilo.objeto->id;
    }
    return estilo.id;
}

}  // namespace cad
