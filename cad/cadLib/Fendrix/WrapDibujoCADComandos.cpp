// The facade's creation and editing commands: each runs the editor's command of the same name.
#include "Fendrix/WrapDibujoCAD.h"
#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "entidades/Polilinea.h"

namespace Fendrix
{

namespace
{

// The polyline a handle names; null for 0, an unknown handle or another kind of entity.
cad::Polilinea* polilinea(const cad::Dibujo* d, int64_t handle)
{
    return handle == 0 ? nullptr : dynamic_cast<cad::Polilinea*>(d->buscaEntidad(handle));
}

// The polyline of a vertex command: null (the command asks) for 0. False with no editor or for
// a handle that names no polyline, which must not turn into "ask the user".
bool polilineaPedida(const cad::EditorDibujo* editor, const cad::Dibujo* d, int64_t handle,
                     cad::Polilinea*& p)
{
    // A disposed facade has neither editor nor drawing: no handle is looked up then.
    p = editor != nullptr ? polilinea(d, handle) : nullptr;
    return editor != nullptr && (handle == 0 || p != nullptr);
}

}  // namespace

int32_t WrapDibujoCAD::comandoPunto()
{
    return mEditor != nullptr ? mEditor->comandoPunto() : 0;
}

int32_t WrapDibujoCAD::comandoLinea()
{
    return mEditor != nullptr ? mEditor->comandoLinea() : 0;
}

int32_t WrapDibujoCAD::comandoPolilinea(bool unaSola, bool cerrada)
{
    return mEditor != nullptr ? mEditor->comandoPolilinea(unaSola, cerrada) : 0;
}

int64_t WrapDibujoCAD::comandoPolilineaGetHandle(bool cerrada)
{
    cad::Polilinea* p = nullptr;
    if (mEditor == nullptr || mEditor->comandoPolilinea(true, cerrada, &p) == 0 || p == nullptr)
    {
        return 0;
    }
    return cad::handleEntidad(p);
}

bool WrapDibujoCAD::comandoFusionPolilineas(int64_t destino, int64_t origen, bool borraOrigen)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    cad::Polilinea* d = polilinea(mDibujo, destino);
    cad::Polilinea* o = polilinea(mDibujo, origen);
    // A handle that names no polyline must not turn into "ask the user".
    if ((destino != 0 && d == nullptr) || (origen != 0 && o == nullptr))
    {
        return false;
    }
    return mEditor->comandoFusionPolilineas(d, o, borraOrigen);
}

bool WrapDibujoCAD::comandoFusionPolilineasNueva(int64_t destino, bool borraOrigen)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    cad::Polilinea* d = polilinea(mDibujo, destino);
    if (destino != 0 && d == nullptr)
    {
        return false;
    }
    return mEditor->comandoFusionPolilineasNueva(d, borraOrigen);
}

int32_t WrapDibujoCAD::comandoCara3D3()
{
    return mEditor != nullptr ? mEditor->comandoCara3D3() : 0;
}

int32_t WrapDibujoCAD::comandoCara3D4()
{
    return mEditor != nullptr ? mEditor->comandoCara3D4() : 0;
}

int32_t WrapDibujoCAD::comandoCara()
{
    return mEditor != nullptr ? mEditor->comandoCara() : 0;
}

int32_t WrapDibujoCAD::comandoPlano()
{
    return mEditor != nullptr ? mEditor->comandoPlano() : 0;
}

bool WrapDibujoCAD::comandoContornoPlano()
{
    return mEditor != nullptr && mEditor->comandoContornoPlano();
}

int32_t WrapDibujoCAD::comandoParalelaPlano()
{
    return mEditor != nullptr ? mEditor->comandoParalelaPlano() : 0;
}

int32_t WrapDibujoCAD::comandoPerpendicularPlano()
{
    return mEditor != nullptr ? mEditor->comandoPerpendicularPlano() : 0;
}

int32_t WrapDibujoCAD::comandoCubo()
{
    return mEditor != nullptr ? mEditor->comandoCubo() : 0;
}

int32_t WrapDibujoCAD::comandoModeloCubo()
{
    return mEditor != nullptr ? mEditor->comandoModeloCubo() : 0;
}

int32_t WrapDibujoCAD::comandoModeloCilindro()
{
    return mEditor != nullptr ? mEditor->comandoModeloCilindro() : 0;
}

int32_t WrapDibujoCAD::comandoModeloEsfera()
{
    return mEditor != nullptr ? mEditor->comandoModeloEsfera() : 0;
}

int32_t WrapDibujoCAD::comandoConvierteObjeto3D()
{
    return mEditor != nullptr ? mEditor->comandoConvierteObjeto3D() : 0;
}

bool WrapDibujoCAD::setMaterialActual(int32_t id)
{
    if (mEditor == nullptr || id < 0 || id > INT16_MAX || (id != 0 && !mDibujo->existeMaterial(id)))
    {
        return false;
    }
    mEditor->setMaterialActual(static_cast<int16_t>(id));
    return true;
}

int32_t WrapDibujoCAD::materialActual()
{
    return mEditor != nullptr ? mEditor->materialActual() : 0;
}

int32_t WrapDibujoCAD::comandoBorrar()
{
    return mEditor != nullptr ? mEditor->comandoBorrar() : 0;
}

int32_t WrapDibujoCAD::comandoMover()
{
    return mEditor != nullptr ? mEditor->comandoMover() : 0;
}

int32_t WrapDibujoCAD::comandoMoverXYZ(double dx, double dy, double dz)
{
    return mEditor != nullptr ? mEditor->comandoMoverXYZ(dx, dy, dz) : 0;
}

int32_t WrapDibujoCAD::comandoCopiar()
{
    return mEditor != nullptr ? mEditor->comandoCopiar() : 0;
}

bool WrapDibujoCAD::comandoEditar(int64_t handle, int32_t indice, bool repite,
                                  bool anunciaReactores)
{
    cad::Entidad* e = mEditor == nullptr || handle == 0 ? nullptr : mDibujo->buscaEntidad(handle);
    if (mEditor == nullptr || (handle != 0 && e == nullptr))
    {
        return false;
    }
    return mEditor->comandoEditar(e, indice, repite, anunciaReactores);
}

bool WrapDibujoCAD::comandoEditPol(int64_t handle)
{
    cad::Polilinea* p = nullptr;
    return polilineaPedida(mEditor, mDibujo, handle, p) &&
           (p == nullptr ? mEditor->comandoEditPol() : mEditor->comandoEditPol(p));
}

bool WrapDibujoCAD::comandoEditarVertsPolPerfil(int64_t handle, int32_t indice)
{
    cad::Polilinea* p = nullptr;
    return polilineaPedida(mEditor, mDibujo, handle, p) &&
           mEditor->comandoEditarVertsPolPerfil(p, indice);
}

bool WrapDibujoCAD::comandoInsertaVertsPolPerfil(int64_t handle)
{
    cad::Polilinea* p = nullptr;
    return polilineaPedida(mEditor, mDibujo, handle, p) && mEditor->comandoInsertaVertsPolPerfil(p);
}

bool WrapDibujoCAD::comandoInsertaVertsPol(int64_t handle, int32_t indice)
{
    cad::Polilinea* p = nullptr;
    return polilineaPedida(mEditor, mDibujo, handle, p) &&
           mEditor->comandoInsertaVertsPol(p, indice);
}

bool WrapDibujoCAD::comandoBorrarVertsPol(int64_t handle)
{
    cad::Polilinea* p = nullptr;
    return polilineaPedida(mEditor, mDibujo, handle, p) && mEditor->comandoBorrarVertsPol(p);
}

bool WrapDibujoCAD::comandoBorrarRangoVertsPol(int64_t handle)
{
    cad::Polilinea* p = nullptr;
    return polilineaPedida(mEditor, mDibujo, handle, p) && mEditor->comandoBorrarRangoVertsPol(p);
}

bool WrapDibujoCAD::comandoBorrarVentanaVertsPol(int64_t handle)
{
    cad::Polilinea* p = nullptr;
    return polilineaPedida(mEditor, mDibujo, handle, p) && mEditor->comandoBorrarVentanaVertsPol(p);
}

int32_t WrapDibujoCAD::comandoAsignaMaterial(const std::string& material)
{
    if (mEditor == nullptr)
    {
        return 0;
    }
    return mEditor->comandoAsignaMaterial(material.empty() ? nullptr : &material);
}

bool WrapDibujoCAD::comandoExtrusionEntidad()
{
    return mEditor != nullptr && mEditor->comandoExtrusionEntidad();
}

bool WrapDibujoCAD::comandoExtrusion(bool cierra)
{
    return mEditor != nullptr && mEditor->comandoExtrusion(cierra);
}

bool WrapDibujoCAD::comandoParteArista(int32_t partes)
{
    return mEditor != nullptr && mEditor->comandoParteArista(partes);
}

bool WrapDibujoCAD::comandoParteCara()
{
    return mEditor != nullptr && mEditor->comandoParteCara();
}

bool WrapDibujoCAD::comandoUneVertices()
{
    return mEditor != nullptr && mEditor->comandoUneVertices();
}

bool WrapDibujoCAD::comandoRecortaCara()
{
    return mEditor != nullptr && mEditor->comandoRecortaCara();
}

bool WrapDibujoCAD::comandoRellenaHueco()
{
    return mEditor != nullptr && mEditor->comandoRellenaHueco();
}

bool WrapDibujoCAD::comandoInvierteNormales()
{
    return mEditor != nullptr && mEditor->comandoInvierteNormales();
}

bool WrapDibujoCAD::comandoBorraVerticeModelo()
{
    return mEditor != nullptr && mEditor->comandoBorraVerticeModelo();
}

bool WrapDibujoCAD::comandoBorraAristaModelo()
{
    return mEditor != nullptr && mEditor->comandoBorraAristaModelo();
}

bool WrapDibujoCAD::comandoBorraCaraModelo()
{
    return mEditor != nullptr && mEditor->comandoBorraCaraModelo();
}

bool WrapDibujoCAD::comandoHueco()
{
    return mEditor != nullptr && mEditor->comandoHueco();
}

bool WrapDibujoCAD::comandoHuecoPolilinea()
{
    return mEditor != nullptr && mEditor->comandoHuecoPolilinea();
}

int32_t WrapDibujoCAD::comandoIsolineas()
{
    return mEditor != nullptr ? mEditor->comandoIsolineas() : -1;
}

bool WrapDibujoCAD::uneModelos()
{
    return mEditor != nullptr && mEditor->uneModelos();
}

bool WrapDibujoCAD::unePlanos()
{
    return mEditor != nullptr && mEditor->comandoUnePlanos();
}

bool WrapDibujoCAD::extiendePlanos()
{
    return mEditor != nullptr && mEditor->comandoExtiendePlanos();
}

}  // namespace Fendrix
