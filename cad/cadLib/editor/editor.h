// The interactive editor.
#pragma once

#include "editor/Comando.h"
#include "editor/EditorDibujo.h"
#include "editor/LineaComandos.h"
#include "editor/LineaElastica.h"
#include "editor/MenuContexto.h"
