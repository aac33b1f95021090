#include "entidades/Objeto3D.h"
