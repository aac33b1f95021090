// Cilindro: written in this change.
#pragma once
