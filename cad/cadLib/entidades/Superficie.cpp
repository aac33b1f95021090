#include "entidades/Superficie.h"
