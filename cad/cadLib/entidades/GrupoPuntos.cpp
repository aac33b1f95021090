#include "entidades/GrupoPuntos.h"
