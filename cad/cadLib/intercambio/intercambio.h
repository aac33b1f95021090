// Interchange with other formats.
#pragma once

#include "intercambio/ExportaDXF.h"
