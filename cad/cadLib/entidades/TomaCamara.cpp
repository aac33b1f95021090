// TomaCamara: body, glyph and sheet of a camera shot.
#include "entidades/TomaCamara.h"

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "base/geometria/Matriz4.h"
#include "documento/EstiloTexto.h"
#include "documento/VariablesPintura.h"
#include "entidades/Texto.h"
#include "modelo/PuntosCalientes.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

namespace
{

// The glyph in its own frame: the projection centre, the four image corners one unit ahead
// along +Y, and the up mark above the image's top side.
const Punto3<double> kGlifo[7] = {
    {0, 0, 0},        {-0.4, 1.0, -0.3}, {0.4, 1.0, -0.3}, {0.4, 1.0, 0.3},
    {-0.4, 1.0, 0.3}, {0, 1.0, 0.3},     {0, 1.0, 0.6},
};

// The four sides to the centre, the image's outline, and the up mark.
const uint32_t kAristasGlifo[18] = {0, 1, 0, 2, 0, 3, 0, 4, 1, 2, 2, 3, 3, 4, 4, 1, 5, 6};

// The image's corners 1..4 take the photograph upright: its top row on the upper side.
const float kUVImagen[8] = {0, 1, 1, 1, 1, 0, 0, 0};
const int32_t kCaraImagen[5] = {4, 0, 1, 2, 3};

// The full turn the orientation has always been taken from, as it stands.
constexpr double kVueltaOmega = 6.283185308;

}  // namespace

TomaCamara::TomaCamara(const Punto3<double>& estacion, const Vector3D<double>& omegaPhiKappa,
                       double focal, double anchuraImagen, double alturaImagen)
    : posicion(estacion),
      orientacion(omegaPhiKappa),
      distancia(focal),
      anchura(anchuraImagen),
      altura(alturaImagen)
{
}

void TomaCamara::escribe(SerializadorEscrituraBase& w)
{
    Entidad::escribe(w);
    w.escribePunto3(posicion);
    w.escribeVector3(orientacion);
    w.escribeDoble(distancia);
    w.escribeDoble(anchura);
    w.escribeDoble(altura);
    w.escribeCadena(nombreImagen_);
    w.escribeCortoSinSigno(idImagen_);
    w.escribeLongitud64(idEstilo());
    w.escribePunto3(EntidadConEscalaConstante::posicion);
    w.escribeDoble(escala);
    w.escribeEnteroSinSigno(static_cast<uint32_t>(pixeles));
}

bool TomaCamara::lee(SerializadorLecturaBase& r)
{
    bool ok = Entidad::lee(r);
    ok = r.leePunto3(posicion) && ok;
    ok = r.leeVector3(orientacion) && ok;
    ok = r.leeDoble(distancia) && ok;
    ok = r.leeDoble(anchura) && ok;
    ok = r.leeDoble(altura) && ok;
    ok = r.leeCadena(nombreImagen_) && ok;
    ok = r.leeCortoSinSigno(idImagen_) && ok;
    estilo.objeto = nullptr;
    ok = r.leeLongitud64(estilo.id) && ok;
    uint32_t px = 0;
    ok = r.leePunto3(EntidadConEscalaConstante::posicion) && ok;
    ok = r.leeDoble(escala) && ok;
    ok = r.leeEnteroSinSigno(px) && ok;
    pixeles = static_cast<int32_t>(px);
    return ok;
}

void* TomaCamara::pick() const
{
    // The display hands picks back as Entidad*, so the pointer must be that subobject's.
    return const_cast<Entidad*>(static_cast<const Entidad*>(this));
}

void TomaCamara::exportaDXF(ExportaDXF& dxf) const
{
    (void)dxf;
}

void TomaCamara::traslada(const Vector3D<double>& v)
{
    posicion += v;
}

const Punto3<double>* TomaCamara::coordenada(int i) const
{
    (void)i;
    return &posicion;
}

void TomaCamara::puntosCalientesEdicion(PuntosCalientes& p, int a, int b)
{
    (void)a;
    (void)b;
    puntosCalientes(p);
}

void TomaCamara::puntosCalientes(PuntosCalientes& p)
{
    p.entidad = this;
}

void TomaCamara::aplicaPuntoCaliente(const elemento_arrastrado_t& e)
{
    (void)e;
}

void TomaCamara::dibuja(PantallaCAD& p) const
{
    // The host's switch hides every camera; they stay in the list, the extents and the file.
    if (existeVariablePintura(kVarOcultaCamaras))
    {
        return;
    }
    const Matriz4<double> m = Matriz4<double>::traslacion(posicion) *
                              Matriz4<double>::rotacionZ(-orientacion.z) *
                              Matriz4<double>::rotacionY(orientacion.y) *
                              Matriz4<double>::rotacionX(kVueltaOmega - orientacion.x);
    Punto3<double> v[7];
    for (int i = 0; i < 7; ++i)
    {
        v[i] = m * kGlifo[i];
    }
    const bool constante = escalaConstanteActiva();

    p.iniciaObjeto(resuelveColorABGR(), PantallaCAD::kAlambrica);
    p.vertices(7, v);
    p.aristas(18, kAristasGlifo);
    if (constante)
    {
        p.escalaConstante(posicion, escala, static_cast<double>(pixeles));
    }
    p.finObjeto(pick());

    p.setMaterial(static_cast<int16_t>(idImagen_));
    p.iniciaObjeto(0xFFFFFFFFU, PantallaCAD::kTexturas);
    p.vertices(4, v + 1);
    p.coordenadasUV(4, kUVImagen);
    p.caras(5, kCaraImagen);
    if (constante)
    {
        p.escalaConstante(posicion, escala, static_cast<double>(pixeles));
    }
    p.finObjeto(pick());

    if ((estado & kEstadoEtiquetaOculta) != 0)
    {
        return;
    }
    const EstiloTexto* e = estilo.get();
    p.dibujaTexto(posicion, nombreImagen_.c_str(), 0xFFFFFFFFU,
                  PantallaCAD::kAlineacionHorizontalCen, 1.0F, 0.0F, fuenteEstiloTexto(e),
                  marcasEstiloTexto(e), pick());
}

void TomaCamara::setEstiloTexto(EstiloTexto* e)
{
    estilo.set(e, 0);
}

void TomaCamara::setTextoVisible(bool visible)
{
    setOculta(!visible);
}

// ---------------------------------------------------------------------------------------
// Property sheet

int TomaCamara::numeroPropiedadesCategoria(int categoria) const
{
    return categoria == 1 ? 2 : Entidad::numeroPropiedadesCategoria(categoria);
}

bool TomaCamara::getPropiedad(int categoria, int indice, Prop& p) const
{
    if (categoria != 1)
    {
        return Entidad::getPropiedad(categoria, indice, p);
    }
    switch (indice)
    {
        case 0:
            p.nombre = "Posición";
            p.tipo = TipoProp::Coordenada;
            p.x = posicion.x;
            p.y = posicion.y;
            p.z = posicion.z;
            break;
        case 1:
            p.nombre = "Orientación";
            p.tipo = TipoProp::Orientacion;
            p.x = orientacion.x;
            p.y = orientacion.y;
            p.z = orientacion.z;
            break;
        default:
            return false;
    }
    p.soloLectura = true;
    return true;
}

bool TomaCamara::setPropiedad(int categoria, int indice, const Prop& p)
{
    if (categoria != 1)
    {
        return Entidad::setPropiedad(categoria, indice, p);
    }
    (void)indice;
    return false;
}

}  // namespace cad
