// PuntoControl: body, painting, DXF records and sheet of a surveying control point.
#include "entidades/PuntoControl.h"

#include <cmath>
#include <cstdlib>
#include <string>

#include "base/Admisible.h"
#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "documento/EstiloTexto.h"
#include "documento/VariablesPintura.h"
#include "entidades/Texto.h"
#include "intercambio/ExportaDXF.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

PuntoControl::PuntoControl(const std::string& nombreControl, const Punto3<double>& punto)
    : Punto(punto), nombre_(nombreControl)
{
}

void PuntoControl::escribe(SerializadorEscrituraBase& w)
{
    Punto::escribe(w);
    w.escribeCadena(nombre_);
    w.escribeCadena(codigo);
    w.escribeDoble(-std::fabs(tamano));
    w.escribeLongitud64(idEstilo());
    w.escribePunto3(posicion);
    w.escribeDoble(escala);
    w.escribeEnteroSinSigno(static_cast<uint32_t>(pixeles));
}

bool PuntoControl::lee(SerializadorLecturaBase& r)
{
    bool ok = Punto::lee(r);
    ok = r.leeCadena(nombre_) && ok;
    ok = r.leeCadena(codigo) && ok;
    const bool leido = r.leeDoble(tamano);
    ok = leido && ok;
    estilo.objeto = nullptr;
    ok = r.leeLongitud64(estilo.id) && ok;
    // The marker is the sign bit rather than "below zero": a zero size is written as -0.0,
    // which compares equal to zero, and its three fields must still be read.
    if (leido && std::signbit(tamano))
    {
        uint32_t px = 0;
        ok = r.leePunto3(posicion) && ok;
        ok = r.leeDoble(escala) && ok;
        ok = r.leeEnteroSinSigno(px) && ok;
        pixeles = static_cast<int32_t>(px);
    }
    return ok;
}

void PuntoControl::exportaDXF(ExportaDXF& dxf) const
{
    dxf.setCapa(capaDXF());
    dxf.punto(indiceColorCercano(), x, y, z);
    dxf.texto(nombre_, kJustificarIzquierda, x, y, z, 1.0, 0.0);
}

void PuntoControl::dibuja(PantallaCAD& p) const
{
    // The host's switch hides every control point; they stay in the list, the extents and
    // the file.
    if (existeVariablePintura(kVarOcultaPuntosControl))
    {
        return;
    }
    const uint32_t c = resuelveColorABGR();
    const Punto3<double>& centro = *this;
    p.dibujaPunto(centro, c, pick());

    const bool constante = escalaConstanteActiva();
    const double s = constante ? escala : tamano;
    const Punto3<double> v[6] = {
        centro + Vector3D<double>(s, 0, 0), centro - Vector3D<double>(s, 0, 0),
        centro + Vector3D<double>(0, s, 0), centro - Vector3D<double>(0, s, 0),
        centro + Vector3D<double>(0, 0, s), centro - Vector3D<double>(0, 0, s),
    };
    const uint32_t aristas[6] = {0, 1, 2, 3, 4, 5};
    p.iniciaObjeto(c, 0);
    p.vertices(6, v);
    p.aristas(6, aristas);
    if (constante)
    {
        p.escalaConstante(centro, escala, static_cast<double>(pixeles));
    }
    p.finObjeto(pick());

    if ((estado & kEstadoEtiquetaOculta) != 0)
    {
        return;
    }
    // Byte by byte, unsigned: the name's bytes reach the display as code points 0 to 255.
    std::wstring ancho;
    ancho.reserve(nombre_.size());
    for (const char b : nombre_)
    {
        ancho.push_back(static_cast<wchar_t>(static_cast<unsigned char>(b)));
    }
    const EstiloTexto* e = estilo.get();
    p.dibujaTextoAncho(centro, ancho.c_str(), c, PantallaCAD::kAlineacionHorizontalCen, 1.0F, 0.0F,
                       fuenteEstiloTexto(e), marcasEstiloTexto(e), pick());
}

void PuntoControl::setEstiloTexto(EstiloTexto* e)
{
    estilo.set(e, 0);
}

void PuntoControl::setTextoVisible(bool visible)
{
    setOculta(!visible);
}

// ---------------------------------------------------------------------------------------
// Property sheet

int PuntoControl::numeroPropiedadesCategoria(int categoria) const
{
    return categoria == 2 ? 2 : Punto::numeroPropiedadesCategoria(categoria);
}

bool PuntoControl::getPropiedad(int categoria, int indice, Prop& p) const
{
    if (categoria != 2)
    {
        return Punto::getPropiedad(categoria, indice, p);
    }
    switch (indice)
    {
        case 0:
            p.nombre = "Nombre";
            p.tipo = TipoProp::Cadena;
            p.valor = nombre_;
            return true;
        case 1:
            p.nombre = "Código";
            p.tipo = TipoProp::Cadena;
            p.valor = codigo;
            return true;
        default:
            return false;
    }
}

bool PuntoControl::setPropiedad(int categoria, int indice, const Prop& p)
{
    if (categoria != 2)
    {
        return Punto::setPropiedad(categoria, indice, p);
    }
    if ((indice == 0 || indice == 1) && !cadenaAdmisible(p.valor))
    {
        return false;  // the file could not hold it
    }
    switch (indice)
    {
        case 0:
            nombre_ = p.valor;
            return true;
        case 1:
            codigo = p.valor;
            return true;
        default:
            // A hidden row for scripts: the size, always stored positive.
            if (indice < 0)
            {
                return false;
            }
            tamano = std::fabs(std::atof(p.valor.c_str()));
            return true;
    }
}

}  // namespace cad
