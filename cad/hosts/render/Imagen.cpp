#include "Imagen.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <stdexcept>

// Both libraries unwind their errors with longjmp. The decoding functions below hold no C++
// object of their own between setjmp and the calls that may jump: everything with a
// destructor lives in the caller, so a jump skips nothing that must be destroyed.
#include <csetjmp>

#include <jerror.h>
#include <jpeglib.h>
#include <png.h>

#include "base/FicheroAtomico.h"

namespace cad
{

namespace
{

enum class fallo_e
{
    kNinguno,
    kDanada,
    kCortada,
    kGrande,
    kMemoria
};

// What a decoder reports back from inside the library.
struct estado_t
{
    fallo_e fallo = fallo_e::kNinguno;
    int ancho = 0;
    int alto = 0;
};

bool esPNG(const unsigned char* d, size_t n)
{
    static const unsigned char firma[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    return n >= 8 && std::memcmp(d, firma, 8) == 0;
}

bool esJPEG(const unsigned char* d, size_t n)
{
    return n >= 3 && d[0] == 0xFF && d[1] == 0xD8 && d[2] == 0xFF;
}

// Room for the pixels; false instead of throwing, since a texture of a damaged file may ask
// for far more than the machine has.
bool reserva(imagen_t& imagen, int ancho, int alto, estado_t& estado)
{
    try
    {
        imagen.rgba.assign(static_cast<size_t>(ancho) * static_cast<size_t>(alto) * 4, 0);
    }
    catch (const std::bad_alloc&)
    {
        estado.fallo = fallo_e::kMemoria;
        return false;
    }
    imagen.ancho = ancho;
    imagen.alto = alto;
    return true;
}

// ---------------------------------------------------------------------------------------
// PNG

struct lectorPNG_t
{
    const unsigned char* datos = nullptr;
    size_t tamano = 0;
    size_t posicion = 0;
    estado_t* estado = nullptr;
};

void errorPNG(png_structp png, png_const_charp /*mensaje*/)
{
    auto* lector = static_cast<lectorPNG_t*>(png_get_error_ptr(png));
    if (lector != nullptr && lector->estado->fallo == fallo_e::kNinguno)
    {
        lector->estado->fallo = fallo_e::kDanada;
    }
    png_longjmp(png, 1);
}

void avisoPNG(png_structp /*png*/, png_const_charp /*mensaje*/) {}

void leePNG(png_structp png, png_bytep destino, size_t n)
{
    auto* lector = static_cast<lectorPNG_t*>(png_get_io_ptr(png));
    if (n > lector->tamano - lector->posicion)
    {
        lector->estado->fallo = fallo_e::kCortada;
        png_error(png, "cortado");
    }
    std::memcpy(destino, lector->datos + lector->posicion, n);
    lector->posicion += n;
}

// Decodes into `imagen`, with `filas` as the row table; both belong to the caller.
bool decodificaPNG(png_structp png, png_infop info, lectorPNG_t& lector, int maximoLado,
                   imagen_t& imagen, std::vector<png_bytep>& filas)
{
    if (setjmp(png_jmpbuf(png)) != 0)
    {
        return false;
    }
    png_set_read_fn(png, &lector, leePNG);
    // libpng's own limit refuses the header before any row is allocated.
    png_set_user_limits(png, static_cast<png_uint_32>(maximoLado),
                        static_cast<png_uint_32>(maximoLado));
    png_read_info(png, info);
    const png_uint_32 ancho = png_get_image_width(png, info);
    const png_uint_32 alto = png_get_image_height(png, info);
    const int profundidad = png_get_bit_depth(png, info);
    const int tipo = png_get_color_type(png, info);

    png_set_expand(png);  // palette to RGB, grey below 8 bits to 8, tRNS to alpha
    if (profundidad == 16)
    {
        png_set_strip_16(png);
    }
    if (tipo == PNG_COLOR_TYPE_GRAY || tipo == PNG_COLOR_TYPE_GRAY_ALPHA)
    {
        png_set_gray_to_rgb(png);
    }
    if ((tipo & PNG_COLOR_MASK_ALPHA) == 0 && png_get_valid(png, info, PNG_INFO_tRNS) == 0)
    {
        png_set_filler(png, 0xFF, PNG_FILLER_AFTER);
    }
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    if (png_get_rowbytes(png, info) != static_cast<size_t>(ancho) * 4)
    {
        png_error(png, "formato de filas inesperado");
    }
    if (!reserva(imagen, static_cast<int>(ancho), static_cast<int>(alto), *lector.estado))
    {
        return false;
    }
    try
    {
        filas.resize(alto);
    }
    catch (const std::bad_alloc&)
    {
        lector.estado->fallo = fallo_e::kMemoria;
        return false;
    }
    for (png_uint_32 y = 0; y < alto; ++y)
    {
        filas[y] = imagen.rgba.data() + static_cast<size_t>(y) * ancho * 4;
    }
    png_read_image(png, filas.data());
    // The chunks after the pixels are not needed: a file cut after its image data still
    // gives the whole image.
    return true;
}

void cargaPNG(const unsigned char* datos, size_t tamano, int maximoLado, imagen_t& imagen,
              estado_t& estado)
{
    lectorPNG_t lector;
    lector.datos = datos;
    lector.tamano = tamano;
    lector.estado = &estado;
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &lector, errorPNG, avisoPNG);
    if (png == nullptr)
    {
        estado.fallo = fallo_e::kMemoria;
        return;
    }
    png_infop info = png_create_info_struct(png);
    if (info == nullptr)
    {
        png_destroy_read_struct(&png, nullptr, nullptr);
        estado.fallo = fallo_e::kMemoria;
        return;
    }
    std::vector<png_bytep> filas;
    if (!decodificaPNG(png, info, lector, maximoLado, imagen, filas))
    {
        if (estado.fallo == fallo_e::kNinguno)
        {
            estado.fallo = fallo_e::kDanada;
        }
        // Plain getters only: png_get_IHDR checks the header and would raise a new error
        // with no place left to jump to. A header refused early is read as it stands.
        uint32_t a = png_get_image_width(png, info);
        uint32_t h = png_get_image_height(png, info);
        if (a == 0 && tamano >= 24 && std::memcmp(datos + 12, "IHDR", 4) == 0)
        {
            auto be32 = [datos](size_t i)
            {
                return (static_cast<uint32_t>(datos[i]) << 24) |
                       (static_cast<uint32_t>(datos[i + 1]) << 16) |
                       (static_cast<uint32_t>(datos[i + 2]) << 8) | datos[i + 3];
            };
            a = be32(16);
            h = be32(20);
        }
        if (a > static_cast<uint32_t>(maximoLado) || h > static_cast<uint32_t>(maximoLado))
        {
            estado.fallo = fallo_e::kGrande;
            estado.ancho = static_cast<int>(std::min<uint32_t>(a, 0x7FFFFFFF));
            estado.alto = static_cast<int>(std::min<uint32_t>(h, 0x7FFFFFFF));
        }
    }
    png_destroy_read_struct(&png, &info, nullptr);
}

// ---------------------------------------------------------------------------------------
// JPEG

struct errorJPEG_t
{
    jpeg_error_mgr base;
    std::jmp_buf salto;
    bool cortada = false;
};

void salidaJPEG(j_common_ptr info)
{
    auto* error = reinterpret_cast<errorJPEG_t*>(info->err);
    std::longjmp(error->salto, 1);
}

void mensajeJPEG(j_common_ptr /*info*/) {}

void avisoJPEG(j_common_ptr info, int nivel)
{
    // A file cut short decodes as grey to its end with only a warning: that is a failure
    // here, as for a PNG.
    if (nivel < 0 && info->err->msg_code == JWRN_JPEG_EOF)
    {
        reinterpret_cast<errorJPEG_t*>(info->err)->cortada = true;
    }
}

bool decodificaJPEG(jpeg_decompress_struct& info, errorJPEG_t& error, const unsigned char* datos,
                    size_t tamano, int maximoLado, imagen_t& imagen, std::vector<uint8_t>& fila,
                    estado_t& estado)
{
    if (setjmp(error.salto) != 0)
    {
        return false;
    }
    jpeg_create_decompress(&info);
    jpeg_mem_src(&info, const_cast<unsigned char*>(datos), static_cast<unsigned long>(tamano));
    jpeg_read_header(&info, TRUE);
    if (info.image_width > static_cast<JDIMENSION>(maximoLado) ||
        info.image_height > static_cast<JDIMENSION>(maximoLado))
    {
        estado.fallo = fallo_e::kGrande;
        estado.ancho = static_cast<int>(info.image_width);
        estado.alto = static_cast<int>(info.image_height);
        return false;
    }
    const bool cmyk = info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK;
    if (cmyk)
    {
        info.out_color_space = JCS_CMYK;
    }
    else if (info.jpeg_color_space == JCS_GRAYSCALE)
    {
        info.out_color_space = JCS_GRAYSCALE;
    }
    else
    {
        info.out_color_space = JCS_RGB;
    }
    jpeg_start_decompress(&info);
    const int ancho = static_cast<int>(info.output_width);
    const int alto = static_cast<int>(info.output_height);
    const int componentes = info.output_components;
    if (!reserva(imagen, ancho, alto, estado))
    {
        return false;
    }
    try
    {
        fila.resize(static_cast<size_t>(ancho) * static_cast<size_t>(componentes));
    }
    catch (const std::bad_alloc&)
    {
        estado.fallo = fallo_e::kMemoria;
        return false;
    }
    // Adobe's CMYK files store the inks inverted.
    const bool invertida = cmyk && info.saw_Adobe_marker;
    while (info.output_scanline < info.output_height)
    {
        const size_t y = info.output_scanline;
        JSAMPROW filas[1] = {fila.data()};
        if (jpeg_read_scanlines(&info, filas, 1) != 1)
        {
            error.cortada = true;
            return false;
        }
        uint8_t* p = imagen.rgba.data() + y * static_cast<size_t>(ancho) * 4;
        const uint8_t* q = fila.data();
        for (int x = 0; x < ancho; ++x, p += 4, q += componentes)
        {
            if (componentes == 1)
            {
                p[0] = p[1] = p[2] = q[0];
            }
            else if (componentes == 3)
            {
                p[0] = q[0];
                p[1] = q[1];
                p[2] = q[2];
            }
            else
            {
                const int k = invertida ? q[3] : 255 - q[3];
                for (int c = 0; c < 3; ++c)
                {
                    const int tinta = invertida ? q[c] : 255 - q[c];
                    p[c] = static_cast<uint8_t>(tinta * k / 255);
                }
            }
            p[3] = 0xFF;
        }
        if (error.cortada)
        {
            return false;
        }
    }
    jpeg_finish_decompress(&info);
    return !error.cortada;
}

void cargaJPEG(const unsigned char* datos, size_t tamano, int maximoLado, imagen_t& imagen,
               estado_t& estado)
{
    jpeg_decompress_struct info;
    std::memset(&info, 0, sizeof info);
    errorJPEG_t error;
    info.err = jpeg_std_error(&error.base);
    error.base.error_exit = salidaJPEG;
    error.base.output_message = mensajeJPEG;
    error.base.emit_message = avisoJPEG;
    std::vector<uint8_t> fila;
    if (!decodificaJPEG(info, error, datos, tamano, maximoLado, imagen, fila, estado) &&
        estado.fallo == fallo_e::kNinguno)
    {
        estado.fallo = error.cortada ? fallo_e::kCortada : fallo_e::kDanada;
    }
    jpeg_destroy_decompress(&info);
}

// ---------------------------------------------------------------------------------------
// PNG writing

struct escritorPNG_t
{
    std::vector<uint8_t>* bytes = nullptr;
    bool sinMemoria = false;
};

void escribePNG(png_structp png, png_bytep datos, size_t n)
{
    auto* escritor = static_cast<escritorPNG_t*>(png_get_io_ptr(png));
    try
    {
        escritor->bytes->insert(escritor->bytes->end(), datos, datos + n);
    }
    catch (const std::bad_alloc&)
    {
        escritor->sinMemoria = true;
        png_error(png, "sin memoria");
    }
}

void vaciaPNG(png_structp /*png*/) {}

void errorEscrituraPNG(png_structp png, png_const_charp /*mensaje*/)
{
    png_longjmp(png, 1);
}

bool codificaPNG(png_structp png, png_infop info, escritorPNG_t& escritor, const imagen_t& imagen,
                 std::vector<png_bytep>& filas)
{
    if (setjmp(png_jmpbuf(png)) != 0)
    {
        return false;
    }
    png_set_write_fn(png, &escritor, escribePNG, vaciaPNG);
    png_set_IHDR(png, info, static_cast<png_uint_32>(imagen.ancho),
                 static_cast<png_uint_32>(imagen.alto), 8, PNG_COLOR_TYPE_RGB_ALPHA,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    // Renders are flat colour over large areas: a fast level loses little size.
    png_set_compression_level(png, 3);
    png_write_info(png, info);
    png_write_image(png, filas.data());
    png_write_end(png, nullptr);
    return true;
}

}  // namespace

bool cargaImagen(const std::string& ruta, imagen_t& imagen, std::string& error, int maximoLado)
{
    std::unique_ptr<FicheroLeido> fichero;
    try
    {
        fichero = std::make_unique<FicheroLeido>(ruta);
    }
    catch (const std::bad_alloc&)
    {
        error = "no se pudo leer la imagen " + ruta + ": no hay memoria para leerla";
        return false;
    }
    catch (const std::exception&)
    {
        error = "no se pudo leer la imagen: la ruta no es texto UTF-8 válido";
        return false;
    }
    if (!fichero->ok())
    {
        error = "no se pudo leer la imagen: " + fichero->mensaje();
        return false;
    }
    const std::string prefijo = "no se pudo leer la imagen " + ruta + ": ";
    const unsigned char* datos = fichero->datos();
    const size_t tamano = fichero->tamano();
    imagen_t leida;
    estado_t estado;
    if (esPNG(datos, tamano))
    {
        cargaPNG(datos, tamano, maximoLado, leida, estado);
    }
    else if (esJPEG(datos, tamano))
    {
        cargaJPEG(datos, tamano, maximoLado, leida, estado);
    }
    else
    {
        error = prefijo + "no es un PNG ni un JPEG";
        return false;
    }
    switch (estado.fallo)
    {
        case fallo_e::kNinguno:
            imagen = std::move(leida);
            return true;
        case fallo_e::kCortada:
            error = prefijo + "el fichero está cortado";
            break;
        case fallo_e::kGrande:
            error = prefijo + "mide " + std::to_string(estado.ancho) + "x" +
                    std::to_string(estado.alto) + " píxeles, más de los " +
                    std::to_string(maximoLado) + " por lado que se admiten";
            break;
        case fallo_e::kMemoria:
            error = prefijo + "no hay memoria para sus píxeles";
            break;
        case fallo_e::kDanada:
            error = prefijo + "está dañada";
            break;
    }
    return false;
}

bool guardaPNG(const std::string& ruta, const imagen_t& imagen, std::string& error)
{
    if (imagen.ancho <= 0 || imagen.alto <= 0 ||
        imagen.rgba.size() !=
            static_cast<size_t>(imagen.ancho) * static_cast<size_t>(imagen.alto) * 4)
    {
        error = "no se pudo escribir la imagen " + ruta + ": la imagen no tiene píxeles completos";
        return false;
    }
    std::vector<uint8_t> bytes;
    std::vector<png_bytep> filas(static_cast<size_t>(imagen.alto));
    for (size_t y = 0; y < filas.size(); ++y)
    {
        // libpng only reads the rows it writes; its row type is not const.
        filas[y] = const_cast<png_bytep>(imagen.rgba.data() + y * imagen.ancho * 4);
    }
    escritorPNG_t escritor;
    escritor.bytes = &bytes;
    png_structp png =
        png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, errorEscrituraPNG, avisoPNG);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    const bool codificada = info != nullptr && codificaPNG(png, info, escritor, imagen, filas);
    png_destroy_write_struct(&png, info != nullptr ? &info : nullptr);
    if (!codificada)
    {
        error = "no se pudo escribir la imagen " + ruta +
                (escritor.sinMemoria || info == nullptr ? ": no hay memoria para comprimirla"
                                                        : ": no se pudo comprimir");
        return false;
    }
    try
    {
        FicheroAtomico fichero(ruta);
        fichero.escribe(bytes.data(), bytes.size());
        if (!fichero.confirma())
        {
            error = "no se pudo escribir la imagen: " + fichero.mensaje();
            return false;
        }
    }
    catch (const std::logic_error&)
    {
        error = "no se pudo escribir la imagen: la ruta no es texto UTF-8 válido";
        return false;
    }
    return true;
}

}  // namespace cad
