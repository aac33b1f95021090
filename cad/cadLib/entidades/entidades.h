// The entities of a drawing.
#pragma once

#include "entidades/Entidad.h"
