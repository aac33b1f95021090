#include "entidades/Policara.h"
