// The renderer's letters: glyphs rasterised once into an atlas, texts laid out in em units.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace cad
{

// One glyph quad of a laid-out line, in em units (1 = the font's height as the kernel means
// it: a capital's height), pen at (0, 0) on the baseline, and its place in the atlas (0..1,
// v down from the atlas's top row).
struct cuadroGlifo_t
{
    float x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    float u0 = 0, v0 = 0, u1 = 0, v1 = 0;
};

// A sans-serif face (DejaVu Sans from the system's fonts) read with FreeType. Glyphs enter a
// single-channel atlas the first time a text uses them; version() changes whenever the atlas
// changed, so that a renderer uploads it again. A character the font lacks draws as the
// font's missing-glyph box.
//
// Not thread-safe.
class Tipografia
{
public:
    Tipografia();
    ~Tipografia();
    Tipografia(const Tipografia&) = delete;
    Tipografia& operator=(const Tipografia&) = delete;

    // Finds and opens the font. False, with the reason, when there is none; texts then lay
    // out as nothing.
    bool carga(std::string& error);
    bool cargada() const;

    // Lays out one UTF-8 line (invalid bytes become U+FFFD): appends a quad per visible glyph
    // and gives the advance width in em units.
    float compone(const std::string& texto, std::vector<cuadroGlifo_t>& cuadros);

    // The atlas: ancho() by alto() bytes of coverage, rows from the top.
    int ancho() const;
    int alto() const;
    const std::vector<uint8_t>& atlas() const;
    uint64_t version() const;

private:
    struct datos_t;
    std::unique_ptr<datos_t> d;
};

}  // namespace cad
