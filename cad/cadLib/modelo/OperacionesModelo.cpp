// Operations on whole models: union, a hole by a polyline, contour lines.
#include "modelo/OperacionesModelo.h"
