#include "base/Color.h"

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"

namespace cad
{

namespace
{

// clang-format off
// The classic indexed palette, RRGGBB, index 0 black.
const uint32_t kPaleta[256] = {
    0x000000, 0xFF0000, 0xFFFF00, 0x00FF00, 0x00FFFF, 0x0000FF, 0xFF00FF, 0xFFFFFF,  // 0
    0x414141, 0x808080, 0xFF0000, 0xFFAAAA, 0xBD0000, 0xBD7E7E, 0x810000, 0x815656,  // 8
    0x680000, 0x684545, 0x4F0000, 0x4F3535, 0xFF3F00, 0xFFBFAA, 0xBD2E00, 0xBD8D7E,  // 16
    0x811F00, 0x816056, 0x681900, 0x684E45, 0x4F1300, 0x4F3B35, 0xFF7F00, 0xFFD4AA,  // 24
    0xBD5E00, 0xBD9D7E, 0x814000, 0x816B56, 0x683400, 0x685645, 0x4F2700, 0x4F4235,  // 32
    0xFFBF00, 0xFFEAAA, 0xBD8D00, 0xBDAD7E, 0x816000, 0x817656, 0x684E00, 0x685F45,  // 40
    0x4F3B00, 0x4F4935, 0xFFFF00, 0xFFFFAA, 0xBDBD00, 0xBDBD7E, 0x818100, 0x818156,  // 48
    0x686800, 0x686845, 0x4F4F00, 0x4F4F35, 0xBFFF00, 0xEAFFAA, 0x8DBD00, 0xADBD7E,  // 56
    0x608100, 0x768156, 0x4E6800, 0x5F6845, 0x3B4F00, 0x494F35, 0x7FFF00, 0xD4FFAA,  // 64
    0x5EBD00, 0x9DBD7E, 0x408100, 0x6B8156, 0x346800, 0x566845, 0x274F00, 0x424F35,  // 72
    0x3FFF00, 0xBFFFAA, 0x2EBD00, 0x8DBD7E, 0x1F8100, 0x608156, 0x196800, 0x4E6845,  // 80
    0x134F00, 0x3B4F35, 0x00FF00, 0xAAFFAA, 0x00BD00, 0x7EBD7E, 0x008100, 0x568156,  // 88
    0x006800, 0x456845, 0x004F00, 0x354F35, 0x00FF3F, 0xAAFFBF, 0x00BD2E, 0x7EBD8D,  // 96
    0x00811F, 0x568160, 0x006819, 0x45684E, 0x004F13, 0x354F3B, 0x00FF7F, 0xAAFFD4,  // 104
    0x00BD5E, 0x7EBD9D, 0x008140, 0x56816B, 0x006834, 0x456856, 0x004F27, 0x354F42,  // 112
    0x00FFBF, 0xAAFFEA, 0x00BD8D, 0x7EBDAD, 0x008160, 0x568176, 0x00684E, 0x45685F,  // 120
    0x004F3B, 0x354F49, 0x00FFFF, 0xAAFFFF, 0x00BDBD, 0x7EBDBD, 0x008181, 0x568181,  // 128
    0x006868, 0x456868, 0x004F4F, 0x354F4F, 0x00BFFF, 0xAAEAFF, 0x008DBD, 0x7EADBD,  // 136
    0x006081, 0x567681, 0x004E68, 0x455F68, 0x003B4F, 0x35494F, 0x007FFF, 0xAAD4FF,  // 144
    0x005EBD, 0x7E9DBD, 0x004081, 0x566B81, 0x003468, 0x455668, 0x00274F, 0x35424F,  // 152
    0x003FFF, 0xAABFFF, 0x002EBD, 0x7E8DBD, 0x001F81, 0x566081, 0x001968, 0x454E68,  // 160
    0x00134F, 0x353B4F, 0x0000FF, 0xAAAAFF, 0x0000BD, 0x7E7EBD, 0x000081, 0x565681,  // 168
    0x000068, 0x454568, 0x00004F, 0x35354F, 0x3F00FF, 0xBFAAFF, 0x2E00BD, 0x8D7EBD,  // 176
    0x1F0081, 0x605681, 0x190068, 0x4E4568, 0x13004F, 0x3B354F, 0x7F00FF, 0xD4AAFF,  // 184
    0x5E00BD, 0x9D7EBD, 0x400081, 0x6B5681, 0x340068, 0x564568, 0x27004F, 0x42354F,  // 192
    0xBF00FF, 0xEAAAFF, 0x8D00BD, 0xAD7EBD, 0x600081, 0x765681, 0x4E0068, 0x5F4568,  // 200
    0x3B004F, 0x49354F, 0xFF00FF, 0xFFAAFF, 0xBD00BD, 0xBD7EBD, 0x810081, 0x815681,  // 208
    0x680068, 0x684568, 0x4F004F, 0x4F354F, 0xFF00BF, 0xFFAAEA, 0xBD008D, 0xBD7EAD,  // 216
    0x810060, 0x815676, 0x68004E, 0x68455F, 0x4F003B, 0x4F3549, 0xFF007F, 0xFFAAD4,  // 224
    0xBD005E, 0xBD7E9D, 0x810040, 0x81566B, 0x680034, 0x684556, 0x4F0027, 0x4F3542,  // 232
    0xFF003F, 0xFFAABF, 0xBD002E, 0xBD7E8D, 0x81001F, 0x815660, 0x680019, 0x68454E,  // 240
    0x4F0013, 0x4F353B, 0x333333, 0x505050, 0x696969, 0x828282, 0xBEBEBE, 0xFFFFFF,  // 248
};
// clang-format on

const char* const kNombres[8] = {"Negro", "Rojo", "Amarillo", "Verde",
                                 "Cian",  "Azul", "Magenta",  "Blanco"};

}  // namespace

uint32_t Color::paletaRGB(int indice)
{
    return indice >= 0 && indice < 256 ? kPaleta[indice] : 0xFFFFFF;
}

const char* Color::nombreIndice(int indice)
{
    return indice >= 0 && indice < 8 ? kNombres[indice] : nullptr;
}

Color::Color() : colorCAD(7)
{
    mColor.alfa = mColor.azul = mColor.verde = mColor.rojo = 255;
}

Color::Color(int indice) : colorCAD(static_cast<int16_t>(indice))
{
    // Indices 254 and 255 are not looked up here, unlike setIndiceColor: kept as it stands.
    mColor.alfa = mColor.azul = mColor.verde = mColor.rojo = 255;
    if (indice >= 0 && indice < 254)
    {
        ponPaleta(indice);
    }
}

void Color::ponPaleta(int indice)
{
    const uint32_t rgb = kPaleta[indice];
    mColor.alfa = 255;
    mColor.rojo = static_cast<uint8_t>(rgb >> 16);
    mColor.verde = static_cast<uint8_t>(rgb >> 8);
    mColor.azul = static_cast<uint8_t>(rgb);
}

bool Color::setIndiceColor(int indice)
{
    if (indice < 0 || indice > 511)
    {
        return false;
    }
    colorCAD = static_cast<int16_t>(indice);
    if (indice < 256)
    {
        ponPaleta(indice);
    }
    return true;
}

void Color::setABGR(uint32_t abgr)
{
    mColor.rojo = static_cast<uint8_t>(abgr);
    mColor.verde = static_cast<uint8_t>(abgr >> 8);
    mColor.azul = static_cast<uint8_t>(abgr >> 16);
    mColor.alfa = static_cast<uint8_t>(abgr >> 24);
    colorCAD = 512;
}

void Color::setRGB(uint32_t rgb)
{
    mColor.rojo = static_cast<uint8_t>(rgb >> 16);
    mColor.verde = static_cast<uint8_t>(rgb >> 8);
    mColor.azul = static_cast<uint8_t>(rgb);
    mColor.alfa = 255;
    colorCAD = 512;
}

uint32_t Color::RGBA() const
{
    return static_cast<uint32_t>(mColor.alfa) | static_cast<uint32_t>(mColor.azul) << 8 |
           static_cast<uint32_t>(mColor.verde) << 16 | static_cast<uint32_t>(mColor.rojo) << 24;
}

uint32_t Color::ABGR() const
{
    return static_cast<uint32_t>(mColor.rojo) | static_cast<uint32_t>(mColor.verde) << 8 |
           static_cast<uint32_t>(mColor.azul) << 16 | static_cast<uint32_t>(mColor.alfa) << 24;
}

void Color::escribe(SerializadorEscrituraBase& w)
{
    w.escribeCortoSinSigno(static_cast<uint16_t>(colorCAD));
    w.escribeEntero(static_cast<int32_t>(RGBA()));
}

bool Color::lee(SerializadorLecturaBase& r)
{
    uint16_t indice = 0;
    int32_t bytes = 0;
    const bool ok1 = r.leeCortoSinSigno(indice);
    const bool ok2 = r.leeEntero(bytes);
    colorCAD = static_cast<int16_t>(indice);
    const auto v = static_cast<uint32_t>(bytes);
    mColor.alfa = static_cast<uint8_t>(v);
    mColor.azul = static_cast<uint8_t>(v >> 8);
    mColor.verde = static_cast<uint8_t>(v >> 16);
    mColor.rojo = static_cast<uint8_t>(v >> 24);
    return ok1 && ok2;
}

}  // namespace cad
