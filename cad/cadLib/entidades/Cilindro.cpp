#include "entidades/Cilindro.h"
