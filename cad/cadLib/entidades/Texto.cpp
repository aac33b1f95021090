// Texto: body, painting, DXF record and sheet of a text entity.
#include "entidades/Texto.h"

#include "base/Admisible.h"
#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "documento/EstiloTexto.h"
#include "intercambio/ExportaDXF.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

int marcasEstiloTexto(const EstiloTexto* e)
{
    if (e == nullptr)
    {
        return 0;
    }
    return (e->negrita ? 1 : 0) | (e->cursiva ? 2 : 0);
}

const char* fuenteEstiloTexto(const EstiloTexto* e)
{
    return e != nullptr ? e->fuente.c_str() : "";
}

Texto::Texto(const std::string& cadena, const Punto3<double>& posicion, uint16_t alineacionTexto,
             float alturaTexto, float rotacionTexto)
    : Punto(posicion),
      texto(cadena),
      alineacion(alineacionTexto),
      altura(alturaTexto),
      rotacion(rotacionTexto)
{
}

void Texto::escribe(SerializadorEscrituraBase& w)
{
    Punto::escribe(w);
    w.escribeCadena(texto);
    w.escribeCortoSinSigno(alineacion);
    w.escribeFlotante(altura);
    w.escribeFlotante(rotacion);
    w.escribeLongitud64(idEstilo());
}

bool Texto::lee(SerializadorLecturaBase& r)
{
    bool ok = Punto::lee(r);
    ok = r.leeCadena(texto) && ok;
    ok = r.leeCortoSinSigno(alineacion) && ok;
    ok = r.leeFlotante(altura) && ok;
    ok = r.leeFlotante(rotacion) && ok;
    estilo.objeto = nullptr;
    ok = r.leeLongitud64(estilo.id) && ok;
    return ok;
}

void Texto::exportaDXF(ExportaDXF& dxf) const
{
    dxf.setCapa(capaDXF());
    // The constant is the one the format's files were always written with; keep it.
    dxf.texto(texto, alineacion & 3, x, y, z, altura,
              static_cast<double>(rotacion) * 180.0 / 3.141592654);
}

void Texto::dibuja(PantallaCAD& p) const
{
    if ((estado & kEstadoEtiquetaOculta) != 0)
    {
        return;
    }
    const EstiloTexto* e = estilo.get();
    p.dibujaTexto(*this, texto.c_str(), resuelveColorABGR(), alineacion, altura, rotacion,
                  fuenteEstiloTexto(e), marcasEstiloTexto(e), pick());
}

void Texto::setEstiloTexto(EstiloTexto* e)
{
    estilo.set(e, 0);
}

void Texto::setTextoVisible(bool visible)
{
    setOculta(!visible);
}

// ---------------------------------------------------------------------------------------
// Property sheet

int Texto::numeroPropiedadesCategoria(int categoria) const
{
    return categoria == 2 ? 2 : Punto::numeroPropiedadesCategoria(categoria);
}

bool Texto::getPropiedad(int categoria, int indice, Prop& p) const
{
    if (categoria != 2)
    {
        return Punto::getPropiedad(categoria, indice, p);
    }
    switch (indice)
    {
        case 0:
            p.nombre = "Texto";
            p.tipo = TipoProp::Cadena;
            p.valor = texto;
            return true;
        case 1:
            // The sheet has always shown this blank row; hosts count on two rows here.
            p.nombre.clear();
            p.tipo = TipoProp::Cadena;
            p.valor.clear();
            return true;
        default:
            return false;
    }
}

bool Texto::setPropiedad(int categoria, int indice, const Prop& p)
{
    if (categoria != 2)
    {
        return Punto::setPropiedad(categoria, indice, p);
    }
    // A text the file cannot hold is refused here rather than lost at the next save.
    if (indice != 0 || !cadenaAdmisible(p.valor))
    {
        return false;
    }
    texto = p.valor;
    return true;
}

}  // namespace cad
