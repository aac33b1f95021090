// The kernel's own exception: raised by the DXF writer when its calls come in a wrong order.
#pragma once

namespace cad
{

// Empty on purpose: the only thing a catcher needs to know is that the writer was misused.
class Excepcion
{
};

}  // namespace cad
