#include "entidades/Prisma.h"
