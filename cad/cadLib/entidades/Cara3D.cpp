#include "entidades/Cara3D.h"
