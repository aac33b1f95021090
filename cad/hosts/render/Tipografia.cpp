#include "Tipografia.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

#include <ft2build.h>
#include FT_FREETYPE_H

namespace cad
{

namespace
{

// Where the font is on the usual systems; the first that opens is used.
const char* const kRutasFuente[] = {
    "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
    "/usr/share/fonts/dejavu/DejaVuSans.ttf",
    "/usr/share/fonts/TTF/DejaVuSans.ttf",
    "/usr/share/fonts/dejavu-sans-fonts/DejaVuSans.ttf",
    "/usr/local/share/fonts/DejaVuSans.ttf",
    "/usr/share/fonts/truetype/liberation/LiberationSans-Regular.ttf",
    "/usr/share/fonts/truetype/freefont/FreeSans.ttf",
};

// Pixels per em the glyphs are drawn at: large enough for texts filling the screen.
constexpr int kPixelesEm = 48;
// Empty pixels around each glyph, so that filtering never reads a neighbour.
constexpr int kSeparacion = 2;
constexpr int kAnchoAtlas = 1024;
constexpr int kAltoInicial = 1024;
constexpr int kAltoMaximo = 8192;
constexpr char32_t kSustituto = 0xFFFD;

// The code points of a UTF-8 text. A byte that starts no valid sequence, or the longest
// valid start of a sequence cut short, becomes one U+FFFD; overlong forms, surrogates and
// values above U+10FFFF are invalid.
std::u32string decodifica(const std::string& texto)
{
    std::u32string salida;
    salida.reserve(texto.size());
    const auto* s = reinterpret_cast<const unsigned char*>(texto.data());
    const size_t n = texto.size();
    size_t i = 0;
    while (i < n)
    {
        const unsigned char b = s[i];
        if (b < 0x80)
        {
            salida.push_back(b);
            ++i;
            continue;
        }
        int resto = 0;
        char32_t codigo = 0;
        unsigned char minimo = 0x80;  // range of the second byte
        unsigned char maximo = 0xBF;
        if (b >= 0xC2 && b <= 0xDF)
        {
            resto = 1;
            codigo = b & 0x1F;
        }
        else if (b >= 0xE0 && b <= 0xEF)
        {
            resto = 2;
            codigo = b & 0x0F;
            minimo = b == 0xE0 ? 0xA0 : 0x80;
            maximo = b == 0xED ? 0x9F : 0xBF;
        }
        else if (b >= 0xF0 && b <= 0xF4)
        {
            resto = 3;
            codigo = b & 0x07;
            minimo = b == 0xF0 ? 0x90 : 0x80;
            maximo = b == 0xF4 ? 0x8F : 0xBF;
        }
        else
        {
            salida.push_back(kSustituto);
            ++i;
            continue;
        }
        size_t j = i + 1;
        bool valido = true;
        for (int k = 0; k < resto; ++k, ++j)
        {
            const unsigned char minimoK = k == 0 ? minimo : 0x80;
            const unsigned char maximoK = k == 0 ? maximo : 0xBF;
            if (j >= n || s[j] < minimoK || s[j] > maximoK)
            {
                valido = false;
                break;
            }
            codigo = (codigo << 6) | (s[j] & 0x3F);
        }
        salida.push_back(valido ? codigo : kSustituto);
        i = j;
    }
    return salida;
}

}  // namespace

struct Tipografia::datos_t
{
    // A glyph as drawn at kPixelesEm: its bitmap's place in the atlas and its box and advance
    // in pixels.
    struct glifo_t
    {
        int x = 0, y = 0;  // top-left corner in the atlas
        int ancho = 0, alto = 0;
        int izquierda = 0, arriba = 0;  // bitmap origin from the pen, y up
        float avance = 0.0F;
    };

    FT_Library biblioteca = nullptr;
    FT_Face cara = nullptr;
    // Pixels of a capital's height at kPixelesEm: the em unit of the laid-out quads.
    float pixelesMayuscula = 1.0F;
    std::unordered_map<FT_UInt, glifo_t> glifos;
    std::unordered_map<char32_t, FT_UInt> indices;

    int ancho = kAnchoAtlas;
    int alto = kAltoInicial;
    std::vector<uint8_t> atlas;
    uint64_t version = 0;
    // The shelf being filled: its top row, height so far and next free column.
    int estanteY = kSeparacion;
    int estanteAlto = 0;
    int estanteX = kSeparacion;
    bool lleno = false;

    ~datos_t()
    {
        if (cara != nullptr)
        {
            FT_Done_Face(cara);
        }
        if (biblioteca != nullptr)
        {
            FT_Done_FreeType(biblioteca);
        }
    }

    // A place for a bitmap of w by h pixels, growing the atlas when the shelves are full.
    bool sitio(int w, int h, int& x, int& y)
    {
        if (w + 2 * kSeparacion > ancho)
        {
            return false;
        }
        if (estanteX + w + kSeparacion > ancho)
        {
            estanteY += estanteAlto + kSeparacion;
            estanteX = kSeparacion;
            estanteAlto = 0;
        }
        while (estanteY + h + kSeparacion > alto)
        {
            if (alto * 2 > kAltoMaximo)
            {
                lleno = true;
                return false;
            }
            alto *= 2;
            atlas.resize(static_cast<size_t>(ancho) * static_cast<size_t>(alto), 0);
        }
        x = estanteX;
        y = estanteY;
        estanteX += w + kSeparacion;
        estanteAlto = std::max(estanteAlto, h);
        return true;
    }

    // Draws the glyph into the atlas; null when FreeType can't draw it or it has no room.
    const glifo_t* rasteriza(FT_UInt indice)
    {
        const auto encontrado = glifos.find(indice);
        if (encontrado != glifos.end())
        {
            return &encontrado->second;
        }
        if (lleno || FT_Load_Glyph(cara, indice, FT_LOAD_RENDER | FT_LOAD_TARGET_LIGHT) != 0)
        {
            return nullptr;
        }
        const FT_GlyphSlot g = cara->glyph;
        const FT_Bitmap& mapa = g->bitmap;
        glifo_t glifo;
        // The unhinted advance, so that a line's width does not drift by whole pixels.
        glifo.avance = static_cast<float>(g->linearHoriAdvance) / 65536.0F;
        glifo.ancho = static_cast<int>(mapa.width);
        glifo.alto = static_cast<int>(mapa.rows);
        glifo.izquierda = g->bitmap_left;
        glifo.arriba = g->bitmap_top;
        if (glifo.ancho > 0 && glifo.alto > 0)
        {
            if (mapa.pixel_mode != FT_PIXEL_MODE_GRAY ||
                !sitio(glifo.ancho, glifo.alto, glifo.x, glifo.y))
            {
                return nullptr;
            }
            for (int fila = 0; fila < glifo.alto; ++fila)
            {
                const unsigned char* origen =
                    mapa.buffer + static_cast<ptrdiff_t>(fila) * mapa.pitch;
                uint8_t* destino =
                    atlas.data() +
                    static_cast<size_t>(glifo.y + fila) * static_cast<size_t>(ancho) +
                    static_cast<size_t>(glifo.x);
                std::memcpy(destino, origen, static_cast<size_t>(glifo.ancho));
            }
            ++version;
        }
        return &glifos.emplace(indice, glifo).first->second;
    }

    FT_UInt indiceDe(char32_t codigo)
    {
        const auto encontrado = indices.find(codigo);
        if (encontrado != indices.end())
        {
            return encontrado->second;
        }
        const FT_UInt indice = FT_Get_Char_Index(cara, codigo);
        indices.emplace(codigo, indice);
        return indice;
    }
};

Tipografia::Tipografia() : d(std::make_unique<datos_t>()) {}

Tipografia::~Tipografia() = default;

bool Tipografia::carga(std::string& error)
{
    if (d->cara != nullptr)
    {
        return true;
    }
    if (d->biblioteca == nullptr && FT_Init_FreeType(&d->biblioteca) != 0)
    {
        d->biblioteca = nullptr;
        error = "no se pudo iniciar FreeType para dibujar los textos";
        return false;
    }
    for (const char* ruta : kRutasFuente)
    {
        FT_Face cara = nullptr;
        if (FT_New_Face(d->biblioteca, ruta, 0, &cara) != 0)
        {
            continue;
        }
        if (FT_Set_Pixel_Sizes(cara, 0, kPixelesEm) != 0 ||
            FT_Load_Char(cara, 'H', FT_LOAD_RENDER | FT_LOAD_TARGET_LIGHT) != 0 ||
            cara->glyph->bitmap.rows == 0)
        {
            FT_Done_Face(cara);
            continue;
        }
        d->cara = cara;
        // The drawn H itself, so that its quad is exactly one em tall.
        d->pixelesMayuscula = static_cast<float>(cara->glyph->bitmap.rows);
        d->atlas.assign(static_cast<size_t>(d->ancho) * static_cast<size_t>(d->alto), 0);
        // The missing-glyph box first, so that it has room whatever fills the atlas later.
        d->rasteriza(0);
        ++d->version;
        return true;
    }
    error =
        "no se encontró la fuente DejaVu Sans (paquete fonts-dejavu-core); los textos no se "
        "dibujan";
    return false;
}

bool Tipografia::cargada() const
{
    return d->cara != nullptr;
}

float Tipografia::compone(const std::string& texto, std::vector<cuadroGlifo_t>& cuadros)
{
    if (d->cara == nullptr)
    {
        return 0.0F;
    }
    const float escala = 1.0F / d->pixelesMayuscula;
    const float anchoAtlas = static_cast<float>(d->ancho);
    float pluma = 0.0F;  // pixels
    std::vector<const datos_t::glifo_t*> colocados;
    std::vector<float> plumas;
    for (const char32_t codigo : decodifica(texto))
    {
        if (codigo < 0x20 || (codigo >= 0x7F && codigo < 0xA0))
        {
            continue;  // control characters take no room
        }
        const datos_t::glifo_t* g = d->rasteriza(d->indiceDe(codigo));
        if (g == nullptr)
        {
            g = d->rasteriza(0);
        }
        if (g == nullptr)
        {
            continue;
        }
        if (g->ancho > 0 && g->alto > 0)
        {
            colocados.push_back(g);
            plumas.push_back(pluma);
        }
        pluma += g->avance;
    }
    // The atlas may have grown while the line was laid out: v is taken against its final
    // height.
    const float altoAtlas = static_cast<float>(d->alto);
    for (size_t i = 0; i < colocados.size(); ++i)
    {
        const datos_t::glifo_t& g = *colocados[i];
        cuadroGlifo_t c;
        c.x0 = (plumas[i] + static_cast<float>(g.izquierda)) * escala;
        c.x1 = c.x0 + static_cast<float>(g.ancho) * escala;
        c.y1 = static_cast<float>(g.arriba) * escala;
        c.y0 = static_cast<float>(g.arriba - g.alto) * escala;
        c.u0 = static_cast<float>(g.x) / anchoAtlas;
        c.u1 = static_cast<float>(g.x + g.ancho) / anchoAtlas;
        c.v0 = static_cast<float>(g.y) / altoAtlas;
        c.v1 = static_cast<float>(g.y + g.alto) / altoAtlas;
        cuadros.push_back(c);
    }
    return pluma * escala;
}

int Tipografia::ancho() const
{
    return d->ancho;
}

int Tipografia::alto() const
{
    return d->alto;
}

const std::vector<uint8_t>& Tipografia::atlas() const
{
    return d->atlas;
}

uint64_t Tipografia::version() const
{
    return d->version;
}

}  // namespace cad
