// The facade's property sheets and clipboard.
#include "Fendrix/WrapDibujoCAD.h"

namespace Fendrix
{

// PLACEHOLDER (helper 4 replaces this file's bodies).
void WrapDibujoCAD::cortar() {}
void WrapDibujoCAD::copiar() {}
void WrapDibujoCAD::pegar() {}
bool WrapDibujoCAD::comandoPropiedades() { return false; }

}  // namespace Fendrix
