// Everything a host needs to drive a drawing: the facade classes.
#pragma once

#include "Fendrix/WrapDibujoCAD.h"
#include "Fendrix/WrapPantallaCAD.h"
#include "Fendrix/constCharPtr.h"
