#include "editor/EditorDibujo.h"

#include <cstdarg>
#include <cstdio>

#include "base/Configuracion.h"
#include "base/GestorMensajes.h"
#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/Dibujo.h"
#include "entidades/Entidad.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

EditorDibujo::EditorDibujo(Dibujo* dibujo, PantallaCAD* pantalla)
    : dibujo_(dibujo), pantalla_(pantalla)
{
}

EditorDibujo::~EditorDibujo()
{
    funcionActualiza = nullptr;
    if (dibujo_ != nullptr)
    {
        for (Entidad* e : dibujo_->entidades)
        {
            e->quitaSeleccion();
        }
        dibujo_->vistaAplicada = false;
    }
    actualiza(kPropiedades, false);
}

void EditorDibujo::actualiza(actualiza_e tipo, bool forzar)
{
    // One record for the process, not per editor: the selection last announced.
    struct registro_t
    {
        Dibujo* dibujo = nullptr;
        std::vector<Entidad*> entidades;
    };
    static registro_t ultimo;

    if (!funcionActualiza)
    {
        return;
    }
    if (tipo != kPropiedades && tipo != kDocumento)
    {
        funcionActualiza(tipo);
        return;
    }
    std::vector<Entidad*> seleccion;
    for (Entidad* e : dibujo_->entidades)
    {
        if ((e->estado & (kEstadoSeleccionada | kEstadoResaltada)) != 0)
        {
            seleccion.push_back(e);
        }
    }
    if (forzar || ultimo.dibujo != dibujo_ || seleccion != ultimo.entidades)
    {
        ultimo.dibujo = dibujo_;
        ultimo.entidades = std::move(seleccion);
        funcionActualiza(tipo);
    }
}

bool EditorDibujo::cargaDocumento(const char* ruta)
{
    dibujo_->hayCambios_ = true;
    dibujo_->redibujar = true;
    dibujo_->vistaAplicada = false;
    bool ok = false;
    {
        SerializadorBinarioLectura lector(ruta);
        ok = dibujo_->lee(lector);
    }
    if (!ok)
    {
        return false;
    }
    ultimoMensaje.clear();
    actualiza(kCapas, false);
    actualiza(kControl, false);
    actualiza(kDocumento, false);
    return true;
}

bool EditorDibujo::guardaDocumento(const char* ruta)
{
    dibujo_->guardaEstado();
    SerializadorBinarioEscritura escritor(ruta);
    dibujo_->escribe(escritor);
    escritor.cierra();
    return true;
}

void EditorDibujo::mensaje(const char* formato, ...)
{
    char buffer[2048];
    va_list args;
    va_start(args, formato);
    std::vsnprintf(buffer, sizeof buffer, formato, args);
    va_end(args);
    ultimoMensaje = buffer;
    if (funcionSalidaTexto)
    {
        funcionSalidaTexto(buffer);
    }
    if (pantalla_ != nullptr)
    {
        pantalla_->muestraTexto(buffer);
    }
}

const char* EditorDibujo::texto(int grupo, int numero, const char* porDefecto) const
{
    return GestorMensajes::Instancia().mensaje(grupo, numero, porDefecto);
}

void EditorDibujo::teclaPulsada(int codigo, bool shift, bool control, bool alt)
{
    (void)codigo;
    (void)shift;
    (void)control;
    (void)alt;
}

void EditorDibujo::deselecciona()
{
    dibujo_->deselecciona();
    dibujo_->redibujar = true;
    actualiza(kPropiedades, false);
}

void EditorDibujo::dibuja(PantallaCAD& p, bool entidadesDibujadas)
{
    (void)entidadesDibujadas;
    Configuracion& configuracion = Configuracion::instancia();
    p.inicioSuperposicion();
    cursor_t cursor;
    p.getCursor(cursor);
    p.setPrimerPlano(true);
    {
        std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
        if (dibujo_->mascaraReferencias != 0 && tipoMarcaReferencia != 0)
        {
            int simbolo = PantallaCAD::kMarcaPunto;
            switch (tipoMarcaReferencia)
            {
                case 2:
                    simbolo = PantallaCAD::kMarcaExtremo;
                    break;
                case 4:
                    simbolo = PantallaCAD::kMarcaMedio;
                    break;
                case 8:
                    simbolo = PantallaCAD::kMarcaCentro;
                    break;
                case 16:
                    simbolo = PantallaCAD::kMarcaInterseccion;
                    break;
                default:
                    break;
            }
            p.dibujaMarca(marcaReferencia, simbolo,
                          configuracion.color(Configuracion::kMarcaReferencia).ABGR());
        }
    }
    p.setPrimerPlano(false);
    p.finSuperposicion();
    p.setGrosor(1.0F);
    const int lado = configuracion.valor(Configuracion::kVentanaReferencia);
    const uint32_t colorCursor = configuracion.color(Configuracion::kCursor).ABGR();
    if (cursor.x < 0 || cursor.y < 0)
    {
        return;
    }
    // The glyphs are drawn in pixel coordinates of the viewport.
    const auto px = [](double x, double y) { return Punto3<double>(x, y, 0.0); };
    const double x = cursor.x;
    const double y = cursor.y;
    if (dibujo_->tipoCursor == 2)
    {
        const double d = 2.0 * lado;
        const Punto3<double> horizontal[2] = {px(x - d, y), px(x + d, y)};
        const Punto3<double> vertical[2] = {px(x, y - d), px(x, y + d)};
        p.dibujaPolilinea(2, horizontal, false, colorCursor, nullptr);
        p.dibujaPolilinea(2, vertical, false, colorCursor, nullptr);
    }
    else if (dibujo_->tipoCursor == 3)
    {
        const double h = lado;
        const Punto3<double> caja[4] = {px(x - h, y - h), px(x + h, y - h), px(x + h, y + h),
                                        px(x - h, y + h)};
        p.dibujaPolilinea(4, caja, true, colorCursor, nullptr);
    }
}

bool EditorDibujo::nuevaEntidad(Entidad* e)
{
    if (e == nullptr)
    {
        return false;
    }
    const auto handle = static_cast<int64_t>(reinterpret_cast<intptr_t>(e));
    if (reactorInsercionEntidades && !reactorInsercionEntidades(handle, kEntidadInsertada))
    {
        return false;
    }
    if (!dibujo_->nuevaEntidad(e))
    {
        return false;
    }
    actualiza(kControl, false);
    return true;
}

bool EditorDibujo::nuevaCapa(Capa* capa, bool hacerActual)
{
    if (!dibujo_->nuevaCapa(capa))
    {
        return false;
    }
    if (hacerActual)
    {
        dibujo_->capaActual(capa->nombre.c_str());
        actualiza(kCapaActual, false);
    }
    actualiza(kCapas, false);
    return true;
}

bool EditorDibujo::posicionaCapa(Capa* capa)
{
    if (dibujo_->buscaCapa(capa->nombre.c_str()) != nullptr)
    {
        muestraCapa(capa->nombre.c_str());
        dibujo_->capaActual(capa->nombre.c_str());
        actualiza(kCapaActual, false);
        return true;
    }
    dibujo_->nuevaCapa(capa);
    actualiza(kCapas, false);
    return true;
}

bool EditorDibujo::capaActual(const char* nombre)
{
    const bool ok = dibujo_->capaActual(nombre);
    actualiza(kCapaActual, false);
    return ok;
}

bool EditorDibujo::muestraCapa(const char* nombre)
{
    if (!dibujo_->visibilidadCapa(nombre, true))
    {
        return false;
    }
    actualiza(kCapas, false);
    actualiza(kControl, false);
    return true;
}

bool EditorDibujo::colorCapa(const char* nombre, int32_t rgba)
{
    Capa* capa = dibujo_->buscaCapa(nombre);
    if (capa == nullptr)
    {
        return false;
    }
    const auto v = static_cast<uint32_t>(rgba);
    capa->color.mColor.rojo = static_cast<uint8_t>(v >> 24);
    capa->color.mColor.verde = static_cast<uint8_t>(v >> 16);
    capa->color.mColor.azul = static_cast<uint8_t>(v >> 8);
    capa->color.mColor.alfa = static_cast<uint8_t>(v);
    capa->color.colorCAD = 512;
    dibujo_->hayCambios_ = true;
    dibujo_->redibujar = true;
    actualiza(kCapas, false);
    return true;
}

bool EditorDibujo::renombraCapa(const char* nombre, const char* nuevoNombre)
{
    if (!dibujo_->renombraCapa(nombre, nuevoNombre))
    {
        return false;
    }
    actualiza(kCapas, false);
    return true;
}

bool EditorDibujo::borraCapa(const char* nombre)
{
    if (!dibujo_->borraCapa(nombre))
    {
        return false;
    }
    actualiza(kCapas, false);
    return true;
}

bool EditorDibujo::setColorActualIndice(int indice)
{
    return dibujo_->setColorActualIndice(indice);
}

void EditorDibujo::setColorActualRGB(int32_t rgb)
{
    dibujo_->setColorActualRGB(static_cast<uint32_t>(rgb));
}

}  // namespace cad
