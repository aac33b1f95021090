// The facade's vertex marks.
#include "Fendrix/WrapDibujoCAD.h"
#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"

namespace Fendrix
{

bool WrapDibujoCAD::marcaVerticesEntidad(int64_t handle, uint32_t inicio, uint32_t fin)
{
    if (mEditor == nullptr || mDibujo == nullptr)
    {
        return false;
    }
    cad::Entidad* e = mDibujo->buscaEntidad(handle);
    if (e == nullptr)
    {
        return false;
    }
    mEditor->marcaVerticesEntidad(e, inicio, fin);
    return true;
}

bool WrapDibujoCAD::quitaMarcasVerticesEntidad(int64_t handle)
{
    if (mEditor == nullptr || mDibujo == nullptr)
    {
        return false;
    }
    // The marks of an entity deleted since are cleared all the same: the editor finds them
    // by address and never touches the entity. The answer still says the handle is unknown.
    cad::Entidad* e = mDibujo->buscaEntidad(handle);
    mEditor->quitaMarcasVerticesEntidad(
        reinterpret_cast<cad::Entidad*>(static_cast<intptr_t>(handle)));
    return e != nullptr;
}

}  // namespace Fendrix
