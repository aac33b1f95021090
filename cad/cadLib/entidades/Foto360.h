// Foto360: written in this change.
#pragma once
