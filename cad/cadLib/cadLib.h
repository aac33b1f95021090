// The whole kernel and its facade.
#pragma once

#include "Fendrix/Fendrix.h"
#include "base/base.h"
#include "documento/documento.h"
#include "editor/editor.h"
#include "entidades/entidades.h"
#include "intercambio/intercambio.h"
#include "modelo/modelo.h"
#include "pantalla/PantallaCAD.h"
