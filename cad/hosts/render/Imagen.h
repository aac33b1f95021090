// Images for the renderer: textures read from PNG and JPEG files, renders written as PNG.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace cad
{

// 8-bit RGBA pixels, rows from the top.
struct imagen_t
{
    int ancho = 0;
    int alto = 0;
    std::vector<uint8_t> rgba;  // ancho * alto * 4
};

// Reads a PNG or JPEG file (told by its first bytes, not its name) into RGBA. False, with the
// reason in the user's words, for a file that can't be read, is neither, is damaged, or is
// larger than `maximoLado` pixels on a side. Survives any bytes.
bool cargaImagen(const std::string& ruta, imagen_t& imagen, std::string& error,
                 int maximoLado = 16384);

// Writes the image as an 8-bit RGBA PNG through a temporary file renamed over the target only
// when complete. False, with the reason, when anything failed; the previous file stays then.
bool guardaPNG(const std::string& ruta, const imagen_t& imagen, std::string& error);

}  // namespace cad
