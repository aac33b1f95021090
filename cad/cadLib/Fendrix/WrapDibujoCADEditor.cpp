// The facade's editor family: undo, the command line, user input and the commands.
#include <cmath>

#include "Fendrix/WrapDibujoCAD.h"
#include "base/Configuracion.h"
#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "entidades/Entidad.h"
#include "pantalla/PantallaCAD.h"

namespace Fendrix
{

using cad::Configuracion;
using cad::cursor_t;
using cad::EditorDibujo;
using cad::Punto3;

bool WrapDibujoCAD::puedeDeshacer()
{
    return mEditor != nullptr && mEditor->puedeDeshacer();
}

bool WrapDibujoCAD::puedeRehacer()
{
    return mEditor != nullptr && mEditor->puedeRehacer();
}

void WrapDibujoCAD::deshacer()
{
    if (mEditor != nullptr && mEditor->puedeDeshacer())
    {
        mEditor->deshacer();
    }
}

void WrapDibujoCAD::rehacer()
{
    if (mEditor != nullptr && mEditor->puedeRehacer())
    {
        mEditor->rehacer();
    }
}

void WrapDibujoCAD::cancelaComando()
{
    if (mEditor != nullptr)
    {
        mEditor->cancelaComando();
    }
}

void WrapDibujoCAD::introPulsado(const std::string& texto)
{
    if (mEditor != nullptr)
    {
        mEditor->introPulsado(texto.c_str());
    }
}

std::vector<std::string> WrapDibujoCAD::listaOpciones()
{
    return mEditor != nullptr ? mEditor->listaOpciones() : std::vector<std::string>();
}

bool WrapDibujoCAD::lineaComandosEsperaCoordenada()
{
    return mEditor != nullptr && mEditor->esperaRecibirCoordenadas();
}

bool WrapDibujoCAD::lineaComandosEsperaValor()
{
    return mEditor != nullptr && mEditor->esperaRecibirValor();
}

void WrapDibujoCAD::lineaComandosLimpiaEntrada()
{
    if (mEditor != nullptr)
    {
        mEditor->borraEntradaLineaComandos();
    }
}

bool WrapDibujoCAD::getCursor(double& x, double& y, int32_t& faltaComponte)
{
    if (mEditor == nullptr || mPantalla == nullptr)
    {
        return false;
    }
    const cursor_t cursor = mEditor->posicionCursor();
    const Punto3<double>& g = cursor.get();
    if (mPantalla->es2D())
    {
        x = g.x;
        y = g.y;
        faltaComponte = 2;
        return false;
    }
    // The third row of the view's rotation is the axis that points at the viewer: the
    // drawing axis nearest to it is the one the screen cannot show.
    cad::Matriz4<double> vista;
    mPantalla->getVista(vista);
    const double ax = vista.col[0].z;
    const double ay = vista.col[1].z;
    const double az = vista.col[2].z;
    if (std::fabs(az) > 0.5)
    {
        x = g.x;
        y = g.y;
        faltaComponte = 2;
    }
    else if (std::fabs(ay) > 0.5)
    {
        x = g.x;
        y = g.z;
        faltaComponte = 1;
    }
    else if (std::fabs(ax) > 0.5)
    {
        x = g.y;
        y = g.z;
        faltaComponte = 0;
    }
    return true;
}

bool WrapDibujoCAD::getCursor3d(double& x, double& y, double& z)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    const cursor_t cursor = mEditor->posicionCursor();
    const Punto3<double>& g = cursor.get();
    x = g.x;
    y = g.y;
    z = g.z;
    return g != cad::invalido;
}

bool WrapDibujoCAD::getValor(const std::string& mensaje, std::string& valor,
                             const std::string& valDefecto)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    valor = valDefecto;
    return mEditor->entradaString(mensaje.c_str(), true, &valor);
}

bool WrapDibujoCAD::getValor(const std::string& mensaje, double& valor, double valDefecto)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    valor = valDefecto;
    return mEditor->entradaDoble(mensaje.c_str(), true, &valor);
}

bool WrapDibujoCAD::getValor(const std::string& mensaje, int32_t& valor, int32_t valDefecto)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    int v = valDefecto;
    const bool ok = mEditor->entradaInt(mensaje.c_str(), true, &v);
    valor = v;
    return ok;
}

bool WrapDibujoCAD::getValor(const std::string& mensaje, bool& valor, bool valDefecto)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    valor = valDefecto;
    return mEditor->entradaBool(mensaje.c_str(), true, &valor);
}

bool WrapDibujoCAD::getPunto(const std::string& mensaje, double& x, double& y, double& z)
{
    int32_t opcion = -1;
    return getPunto(mensaje, {}, opcion, x, y, z);
}

bool WrapDibujoCAD::getPunto(const std::string& mensaje, const std::vector<std::string>& opciones,
                             int32_t& opcion, double& x, double& y, double& z)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    mEditor->opciones.clear();
    for (const std::string& o : opciones)
    {
        mEditor->nuevaOpcion(o.c_str());
    }
    int elegida = -1;
    cursor_t cursor;
    const bool ok = mEditor->getPunto(mensaje.c_str(), cursor,
                                      opciones.empty() ? nullptr : &elegida, nullptr, true);
    mEditor->opciones.clear();
    opcion = elegida;
    if (ok && elegida < 0)
    {
        const Punto3<double>& p = cursor.get();
        x = p.x;
        y = p.y;
        z = p.z;
    }
    return ok;
}

bool WrapDibujoCAD::getVentana(const std::string& mensaje1, const std::string& mensaje2,
                               int32_t& x1, int32_t& y1, int32_t& x2, int32_t& y2)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    int a[2] = {0, 0};
    int b[2] = {0, 0};
    const bool ok = mEditor->getVentana(mensaje1.c_str(), mensaje2.c_str(), a, b);
    x1 = a[0];
    y1 = a[1];
    x2 = b[0];
    y2 = b[1];
    return ok;
}

bool WrapDibujoCAD::getVentana(const std::string& mensaje1, const std::string& mensaje2, double& x1,
                               double& y1, double& z1, double& x2, double& y2, double& z2)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    Punto3<double> a;
    Punto3<double> b;
    const bool ok = mEditor->getVentana(mensaje1.c_str(), mensaje2.c_str(), &a, &b);
    if (ok)
    {
        x1 = a.x;
        y1 = a.y;
        z1 = a.z;
        x2 = b.x;
        y2 = b.y;
        z2 = b.z;
    }
    return ok;
}

bool WrapDibujoCAD::getCirculo(const std::string& mensaje1, const std::string& mensaje2, double& x,
                               double& y, double& z, double& radio)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    Punto3<double> centro;
    double r = 0.0;
    const bool ok = mEditor->getCirculo(mensaje1.c_str(), mensaje2.c_str(), &centro, &r);
    if (ok)
    {
        x = centro.x;
        y = centro.y;
        z = centro.z;
        radio = r;
    }
    return ok;
}

bool WrapDibujoCAD::getCirculo(const std::string& mensaje1, const std::string& mensaje2, double& x,
                               double& y, double& z, double& xBorde, double& yBorde, double& zBorde)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    Punto3<double> centro;
    Punto3<double> borde;
    const bool ok = mEditor->getCirculo(mensaje1.c_str(), mensaje2.c_str(), &centro, &borde);
    if (ok)
    {
        x = centro.x;
        y = centro.y;
        z = centro.z;
        xBorde = borde.x;
        yBorde = borde.y;
        zBorde = borde.z;
    }
    return ok;
}

bool WrapDibujoCAD::comandoSeleccionaEntidades(const std::string& mensaje1,
                                               const std::string& mensaje2, tipoSeleccion tipo)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    return mEditor->comandoSeleccionaEntidades(mensaje1.c_str(), mensaje2.c_str(),
                                               static_cast<EditorDibujo::seleccion_e>(tipo));
}

int32_t WrapDibujoCAD::getEntidadesBajoPixel(int32_t x, int32_t y, std::vector<int64_t>& handles)
{
    handles.clear();
    if (mDibujo == nullptr || mPantalla == nullptr)
    {
        return 0;
    }
    const int t = Configuracion::instancia().valor(Configuracion::kVentanaReferencia) / 2;
    for (const cad::Entidad* e : mDibujo->entidadesCercaPixel(*mPantalla, x, y, t, false))
    {
        handles.push_back(cad::handleEntidad(e));
    }
    return static_cast<int32_t>(handles.size());
}

int64_t WrapDibujoCAD::getEntidadBajoPixel(int32_t x, int32_t y)
{
    std::vector<int64_t> handles;
    return getEntidadesBajoPixel(x, y, handles) > 0 ? handles.front() : 0;
}

}  // namespace Fendrix
