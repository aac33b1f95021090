// PLACEHOLDER (helper 1 writes this file).
#include "editor/ModificadorVertice.h"
