// Colours: a palette index, by layer (256), or a true colour (512), with their bytes.
#pragma once

#include <cstdint>

#include "base/ObjetoCAD.h"

namespace cad
{

// Written inside its owner's block, 6 bytes: u16 index, then the four bytes as one i32.
class Color : public ObjetoCAD
{
public:
    // Index 7, all four bytes 255.
    Color();
    // Below 254 takes the palette colour with alpha 255; otherwise all bytes 255.
    explicit Color(int indice);

    const char* etiqueta() const override { return ""; }
    void escribe(SerializadorEscrituraBase& w) override;
    bool lee(SerializadorLecturaBase& r) override;

    // False outside 0..511. Below 256 also sets alpha 255 and the palette colour; from 256
    // up the bytes stay.
    bool setIndiceColor(int indice);
    // Red bits 0-7, green 8-15, blue 16-23, alpha 24-31; index becomes 512.
    void setABGR(uint32_t abgr);
    // A true colour from 0xRRGGBB (the high byte ignored): alpha 255, index 512.
    void setRGB(uint32_t rgb);
    uint8_t rojo() const { return mColor.rojo; }
    uint8_t verde() const { return mColor.verde; }
    uint8_t azul() const { return mColor.azul; }
    uint8_t alfa() const { return mColor.alfa; }
    // The bytes as one little-endian value: alpha lowest, red highest (0xRRGGBBAA).
    uint32_t RGBA() const;
    // Alpha, blue, green, red from high to low (0xAABBGGRR): the form the display takes.
    uint32_t ABGR() const;

    // Palette entry as 0xRRGGBB; white outside 0..255.
    static uint32_t paletaRGB(int indice);
    // "Negro" to "Blanco" for 0..7; null above: those entries have no name.
    static const char* nombreIndice(int indice);

    int16_t colorCAD;
    // Memory order alpha, blue, green, red.
    struct
    {
        uint8_t alfa;
        uint8_t azul;
        uint8_t verde;
        uint8_t rojo;
    } mColor;

private:
    void ponPaleta(int indice);
};

class ColorCapa : public Color
{
public:
    ColorCapa() : Color(7) {}
    explicit ColorCapa(int indice) : Color(indice) {}
};

class ColorEntidad : public Color
{
public:
    ColorEntidad() : Color(256) {}
    explicit ColorEntidad(int indice) : Color(indice) {}
};

}  // namespace cad
