// The interactive editor.
#pragma once

#include "editor/EditorDibujo.h"
