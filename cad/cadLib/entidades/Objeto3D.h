// Objeto3D: written in this change.
#pragma once
