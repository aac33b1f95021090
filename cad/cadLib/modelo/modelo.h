// The mesh model behind solids and surfaces, and the hot elements of an entity.
#pragma once

#include "modelo/Modelo3D.h"
#include "modelo/PuntosCalientes.h"
