#include "entidades/Esfera.h"
