// The facade's creation commands: each runs the editor's command of the same name.
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

}  // namespace Fendrix
