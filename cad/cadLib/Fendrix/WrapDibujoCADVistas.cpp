// WrapDibujoCAD: measuring, views, reference plane, local systems and the remaining queries.
// PLACEHOLDER: being written.
#include "Fendrix/WrapDibujoCAD.h"
