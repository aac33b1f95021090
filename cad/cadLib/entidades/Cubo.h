// Cubo: written in this change.
#pragma once
