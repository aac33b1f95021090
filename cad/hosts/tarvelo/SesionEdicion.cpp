// The session's editing orders: moving, copying and deleting entities, polyline vertices and
// mesh edits, each through the facade's command of the same purpose.
#include "Sesion.h"

namespace tarvelo
{

void Sesion::creaOrdenesEdicion() {}

}  // namespace tarvelo
