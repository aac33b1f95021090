// The facade's vertex marks.
#include "Fendrix/WrapDibujoCAD.h"

namespace Fendrix
{

// PLACEHOLDER (helper 1 replaces this file's bodies).
bool WrapDibujoCAD::marcaVerticesEntidad(int64_t, uint32_t, uint32_t) { return false; }
bool WrapDibujoCAD::quitaMarcasVerticesEntidad(int64_t) { return false; }

}  // namespace Fendrix
