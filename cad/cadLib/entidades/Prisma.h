// Prisma: written in this change.
#pragma once
