// Esfera: written in this change.
#pragma once
