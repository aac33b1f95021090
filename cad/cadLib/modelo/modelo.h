// The mesh model behind solids and surfaces.
#pragma once
