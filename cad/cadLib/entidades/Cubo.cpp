#include "entidades/Cubo.h"
