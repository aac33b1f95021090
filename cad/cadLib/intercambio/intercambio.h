// Interchange with other formats.
#pragma once

#include "intercambio/CodificacionDXF.h"
#include "intercambio/ExportaDXF.h"
#include "intercambio/ImportaDXF.h"
#include "intercambio/ImportaOBJ.h"
#include "intercambio/ImportacionDXF.h"
