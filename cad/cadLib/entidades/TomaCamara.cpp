#include "entidades/TomaCamara.h"
