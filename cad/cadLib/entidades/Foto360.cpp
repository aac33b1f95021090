#include "entidades/Foto360.h"
