// Interchange with other formats.
#pragma once
