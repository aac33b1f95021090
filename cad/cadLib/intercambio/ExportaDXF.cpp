// The ASCII DXF writer: entities go to a temporary file, copied behind the layer table.
#include "intercambio/ExportaDXF.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <limits>
#include <memory>
#include <string_view>

#include "base/Color.h"
#include "base/Excepcion.h"
#include "intercambio/CodificacionDXF.h"

namespace cad
{

namespace
{

// Diagnostics of each misuse. Excepcion carries no text, so they only name the condition at
// the throw site and are never shown to the user.
const char* const kSinTerminarAlFinal = "Polilinea/Seccion sin terminar en ExportaDXF::~ExportaDXF";
const char* const kCapaNoExiste = "La capa no existe en ExportaDXF::setCapa";
const char* const kSegundaSeccion =
    "Solo puede haber una seccion entidades en ExportaDXF::inicioEntidades";
const char* const kFinSinInicio = "Fin entidades sin inicio en ExportaDXF::finEntidades";
const char* const kPolilineaAbiertaPunto = "Polilinea sin terminar en ExportaDXF::punto";
const char* const kPolilineaAbiertaLinea = "Polilinea sin terminar en ExportaDXF::linea";
const char* const kPolilineaAbiertaInicio = "Polilinea sin terminar en ExportaDXF::inicioPolilinea";
const char* const kPolilineaSinCrearFin = "Polilinea sin crear en ExportaDXF::finPolilinea";
const char* const kPolilineaSinCrearVertice = "Polilinea sin crear en ExportaDXF::verticePolilinea";
const char* const kPolilineaNo3D =
    "Polilinea no creada como polilinea3D en ExportaDXF::verticePolilinea(x, y, z)";
const char* const kPolilineaAbiertaTexto = "Polilinea sin terminar en ExportaDXF::texto";
const char* const kSinCapa = "No se ha especificado en que capa se dibuja";

const uint32_t kPolilineaAbierta = 0x100;
const uint32_t kSeccionAbierta = 0x400;
const uint32_t kBitsGrupo70 = 0xFF;
const uint32_t kPolilinea3D = 8;
const int kPorCapa = 256;
const size_t kBloqueCopia = 0x40000;
// Kept as the constant of the text geometry, not M_PI: the files must not move.
const double kPi = 3.1415;

[[noreturn]] void falla(ExportaDXF& dxf, const char* diagnostico)
{
    dxf.diagnostico = diagnostico;
    throw Excepcion();
}

void cierra(std::FILE*& f)
{
    if (f != nullptr)
    {
        std::fclose(f);
        f = nullptr;
    }
}

const size_t kPendiente = 0x40000;

// Four decimals of `valor` rounded on its exact binary value, ties to even, as printf and
// to_chars do, in integer arithmetic: valor * 10^4 is m * 625 * 2^(exponent + 4), so the
// digits are m * 625 (below 2^63) shifted right with the bits shifted out deciding the
// rounding. Covers the usual coordinates (from 2^-15 up to 2^48 in magnitude, where the shift
// is from 1 to 63 bits) at a fraction of to_chars' cost; null for the rest.
char* fijoCuatroDecimales(char* p, double valor)
{
    const auto bits = std::bit_cast<uint64_t>(valor);
    const int exponente = static_cast<int>((bits >> 52) & 0x7FF);
    const int desplazamiento = 1071 - exponente;
    if (exponente == 0 || desplazamiento < 1 || desplazamiento > 63)
    {
        return nullptr;
    }
    const uint64_t m = (bits & ((uint64_t{1} << 52) - 1)) | (uint64_t{1} << 52);
    const uint64_t a = m * 625;
    uint64_t q = a >> desplazamiento;
    const uint64_t resto = a & ((uint64_t{1} << desplazamiento) - 1);
    const uint64_t mitad = uint64_t{1} << (desplazamiento - 1);
    if (resto > mitad || (resto == mitad && (q & 1) != 0))
    {
        ++q;
    }
    // The sign goes even when the value rounds to zero: "-0.0000", as printf writes it.
    if ((bits >> 63) != 0)
    {
        *p++ = '-';
    }
    p = std::to_chars(p, p + 20, q / 10000).ptr;
    const auto decimales = static_cast<unsigned>(q % 10000);
    p[0] = '.';
    p[1] = static_cast<char>('0' + decimales / 1000);
    p[2] = static_cast<char>('0' + decimales / 100 % 10);
    p[3] = static_cast<char>('0' + decimales / 10 % 10);
    p[4] = static_cast<char>('0' + decimales % 10);
    return p + 5;
}

// Room for any finite double in fixed notation with four decimals (DBL_MAX has 309 digits),
// so nothing is cut.
const size_t kMaximoReal = 400;

}  // namespace

// Writes into the writer's pending block. A scratch file that could not be opened is null and
// stdio on a null FILE* is undefined: everything is dropped then.
struct SalidaDXF
{
    static void vacia(ExportaDXF& dxf)
    {
        if (dxf.ocupado > 0 && dxf.temporal != nullptr)
        {
            pasa(dxf, dxf.pendiente.get(), dxf.ocupado);
        }
        dxf.ocupado = 0;
    }

    // The first failure's cause is kept: by the end errno tells nothing of it any more.
    static void pasa(ExportaDXF& dxf, const char* datos, size_t n)
    {
        errno = 0;
        if (std::fwrite(datos, 1, n, dxf.temporal) != n && dxf.errorTemporal == 0)
        {
            dxf.errorTemporal = errno != 0 ? errno : EIO;
        }
    }

    // At least `n` free bytes at the returned place; avanza() then says where the piece ends.
    static char* reserva(ExportaDXF& dxf, size_t n)
    {
        if (kPendiente - dxf.ocupado < n)
        {
            vacia(dxf);
        }
        return dxf.pendiente.get() + dxf.ocupado;
    }

    static void avanza(ExportaDXF& dxf, const char* fin)
    {
        dxf.ocupado = static_cast<size_t>(fin - dxf.pendiente.get());
    }

    static void escribe(ExportaDXF& dxf, const char* texto, size_t n)
    {
        if (dxf.temporal == nullptr)
        {
            return;
        }
        if (n > kPendiente)
        {
            vacia(dxf);
            pasa(dxf, texto, n);
            return;
        }
        char* p = reserva(dxf, n);
        std::memcpy(p, texto, n);
        dxf.ocupado += n;
    }

    template <size_t N>
    static void escribe(ExportaDXF& dxf, const char (&literal)[N])
    {
        escribe(dxf, literal, N - 1);
    }

    static void escribe(ExportaDXF& dxf, std::string_view texto)
    {
        escribe(dxf, texto.data(), texto.size());
    }

    // `cabeza`, the decimal value, a newline.
    template <size_t N>
    static void escribeEntero(ExportaDXF& dxf, const char (&cabeza)[N], int valor)
    {
        if (dxf.temporal == nullptr)
        {
            return;
        }
        char* p = reserva(dxf, N + 16);
        std::memcpy(p, cabeza, N - 1);
        p += N - 1;
        p = std::to_chars(p, p + 12, valor).ptr;
        *p++ = '\n';
        avanza(dxf, p);
    }

    // Fixed notation with four decimals and a newline: the same digits as printf's "%0.4lf"
    // (all round the exact binary value, ties to even), at a fraction of its cost; to_chars
    // takes what the integer path does not. A value that is not finite is counted, and the
    // file will not be put in place.
    static void escribeReal(ExportaDXF& dxf, double valor)
    {
        if (!std::isfinite(valor))
        {
            ++dxf.noFinitos;
        }
        if (dxf.temporal == nullptr)
        {
            return;
        }
        char* p = reserva(dxf, kMaximoReal + 1);
        char* fin = fijoCuatroDecimales(p, valor);
        p = fin != nullptr
                ? fin
                : std::to_chars(p, p + kMaximoReal, valor, std::chars_format::fixed, 4).ptr;
        *p++ = '\n';
        avanza(dxf, p);
    }

    // Group 8 of the current layer, encoded once per change of layer.
    static void escribeCapa(ExportaDXF& dxf)
    {
        if (dxf.lineaCapa.empty() || dxf.capaDeLinea != dxf.capaActual)
        {
            dxf.capaDeLinea = dxf.capaActual;
            dxf.lineaCapa = "  8\n" + utf8ADXF(dxf.capaActual) + "\n";
        }
        escribe(dxf, dxf.lineaCapa);
    }
};

ExportaDXF::ExportaDXF(const std::string& nombreFichero)
    : minimo(std::numeric_limits<double>::max(), std::numeric_limits<double>::max(),
             std::numeric_limits<double>::max()),
      maximo(-std::numeric_limits<double>::max(), -std::numeric_limits<double>::max(),
             -std::numeric_limits<double>::max()),
      origen(0.0, 0.0, 0.0),
      nombre(nombreFichero),
      final(std::make_unique<FicheroAtomico>(nombreFichero))
{
    // A failure is not raised here: the writes are dropped and nothing is assembled.
    if (final->abierto())
    {
        int error = 0;
        temporal = ficheroAnonimo(final->rutaFinal(), error);
        if (temporal == nullptr)
        {
            motivo = mensajeErrorFichero(error, nombre, true);
        }
        else
        {
            pendiente = std::make_unique<char[]>(kPendiente);
        }
    }
    else
    {
        motivo = final->mensaje();
    }
    nuevaCapa("0", 7);
}

ExportaDXF::~ExportaDXF() noexcept(false)
{
    // Raising while another exception unwinds would end the process; that one (often an
    // entity's own misuse) is the one worth reporting, and termina() then only tidies up.
    termina();
}

bool ExportaDXF::abierto() const
{
    return final->abierto() && temporal != nullptr;
}

void ExportaDXF::descarta()
{
    ocupado = 0;
    cierra(temporal);
    final->descarta();
    terminado = true;
}

bool ExportaDXF::termina()
{
    if (terminado)
    {
        return correcto;
    }
    terminado = true;
    if (!abierto())
    {
        descarta();
        return false;
    }
    if ((estado & (kPolilineaAbierta | kSeccionAbierta)) != 0)
    {
        // Handles are released before raising so that a misuse leaks nothing; the target
        // is untouched.
        descarta();
        if (std::uncaught_exceptions() == 0)
        {
            falla(*this, kSinTerminarAlFinal);
        }
        return false;
    }
    if (noFinitos > 0)
    {
        descarta();
        motivo =
            std::to_string(noFinitos) +
            (noFinitos == 1 ? " valor no finito (nan o inf)" : " valores no finitos (nan o inf)") +
            " en las coordenadas: el DXF no se escribe";
        return false;
    }

    std::string cabeza;
    cabeza += "  0\nSECTION\n";
    cabeza += "  2\nHEADER\n";
    cabeza += "  9\n$ACADVER\n  1\nAC1009\n";
    cabeza += "  0\nENDSEC\n";
    cabeza += "  0\nSECTION\n";
    cabeza += "  2\nTABLES\n";
    cabeza += "  0\nTABLE\n  2\nLAYER\n 70\n     1\n";
    // Names that differ in the drawing can meet once encoded (a byte that is not UTF-8 and the
    // character it stands for in the code page, a character and its own escape typed out):
    // the first keeps the entry, and the entities of both are on it for any reader.
    std::vector<std::string> escritas;
    for (const capa_t& c : capas)
    {
        std::string codificada = utf8ADXF(c.nombre);
        if (std::find(escritas.begin(), escritas.end(), codificada) != escritas.end())
        {
            continue;
        }
        char color[32];
        std::snprintf(color, sizeof color, " 62\n    %d\n", c.color);
        cabeza += "  0\nLAYER\n";
        cabeza += "  2\n";
        cabeza += codificada;
        cabeza += "\n";
        cabeza += " 70\n    0\n";
        cabeza += color;
        cabeza += "  6\nCONTINUOUS\n";
        escritas.push_back(std::move(codificada));
    }
    cabeza += "  0\nENDTAB\n";
    cabeza += "  0\nENDSEC\n";
    final->escribe(cabeza.data(), cabeza.size());

    SalidaDXF::escribe(*this, "  0\nEOF\n");
    SalidaDXF::vacia(*this);
    // The scratch file's failures (a full disk): the cause kept by the write that failed, or
    // errno after a failed flush, or a disk error when neither tells.
    int error = errorTemporal;
    errno = 0;
    if (error == 0 && (std::fflush(temporal) != 0 || std::ferror(temporal) != 0))
    {
        error = errno != 0 ? errno : EIO;
    }
    std::rewind(temporal);
    const std::unique_ptr<char[]> bloque(new char[kBloqueCopia]);
    size_t leidos = 0;
    while (error == 0 && (leidos = std::fread(bloque.get(), 1, kBloqueCopia, temporal)) > 0)
    {
        final->escribe(bloque.get(), leidos);
    }
    if (error == 0 && std::ferror(temporal) != 0)
    {
        error = EIO;
    }
    cierra(temporal);
    if (error != 0)
    {
        final->descarta();
        motivo = mensajeErrorFichero(error, nombre, true);
        return false;
    }
    // A failed write of the final file is kept by it and reported by confirma().
    correcto = final->confirma();
    if (!correcto)
    {
        motivo = final->mensaje();
    }
    return correcto;
}

std::string ExportaDXF::normalizaCapa(const std::string& nombreCapa)
{
    std::string resultado = nombreCapa;
    for (char& c : resultado)
    {
        const auto u = static_cast<unsigned char>(c);
        if (c == ' ' || u < 0x20 || u == 0x7F)
        {
            c = '_';
        }
    }
    for (char& c : resultado)
    {
        if (c == '.')
        {
            c = '_';
        }
    }
    return resultado;
}

int ExportaDXF::indiceColor(uint8_t rojo, uint8_t verde, uint8_t azul)
{
    int mejor = 0;
    long menor = std::numeric_limits<long>::max();
    for (int i = 0; i < 256; ++i)
    {
        const uint32_t rgb = Color::paletaRGB(i);
        const long dr = static_cast<long>((rgb >> 16) & 0xFF) - rojo;
        const long dg = static_cast<long>((rgb >> 8) & 0xFF) - verde;
        const long db = static_cast<long>(rgb & 0xFF) - azul;
        const long d = dr * dr + dg * dg + db * db;
        // Strictly less: on a tie the lower index stays.
        if (d < menor)
        {
            menor = d;
            mejor = i;
        }
    }
    return mejor;
}

void ExportaDXF::nuevaCapa(const std::string& nombreCapa, int color)
{
    const std::string normalizado = normalizaCapa(nombreCapa);
    for (const capa_t& c : capas)
    {
        if (c.nombre == normalizado)
        {
            return;
        }
    }
    capas.push_back({normalizado, color});
}

void ExportaDXF::nuevaCapaRGBA(const std::string& nombreCapa, const Color& color)
{
    // A palette index is kept as it is. By layer (256) means nothing for a layer, and a true
    // colour has no index: both take the nearest palette entry of their bytes.
    const int indice = color.colorCAD >= 0 && color.colorCAD < 256
                           ? color.colorCAD
                           : indiceColor(color.rojo(), color.verde(), color.azul());
    nuevaCapa(nombreCapa, indice);
}

void ExportaDXF::setCapa(const std::string& nombreCapa)
{
    // Layers are never removed from the table, so a name found before is still there.
    if (!capaActual.empty() && nombreCapa == capaPedida)
    {
        return;
    }
    const std::string normalizado = normalizaCapa(nombreCapa);
    for (const capa_t& c : capas)
    {
        if (c.nombre == normalizado)
        {
            capaActual = normalizado;
            capaPedida = nombreCapa;
            return;
        }
    }
    falla(*this, kCapaNoExiste);
}

void ExportaDXF::inicioEntidades()
{
    if ((estado & kSeccionAbierta) != 0)
    {
        falla(*this, kSegundaSeccion);
    }
    estado |= kSeccionAbierta;
    SalidaDXF::escribe(*this, "  0\nSECTION\n  2\nENTITIES\n");
}

void ExportaDXF::finEntidades()
{
    if ((estado & kSeccionAbierta) == 0)
    {
        falla(*this, kFinSinInicio);
    }
    estado &= ~kSeccionAbierta;
    SalidaDXF::escribe(*this, "  0\nENDSEC\n");
}

namespace
{

// Checked before a record starts, so that a refused record leaves no half of itself behind.
void compruebaCapa(ExportaDXF& dxf)
{
    if (dxf.capaActual.empty())
    {
        falla(dxf, kSinCapa);
    }
}

void escribeCabecera(ExportaDXF& dxf, std::string_view clave, int color)
{
    SalidaDXF::escribe(dxf, "  0\n");
    SalidaDXF::escribe(dxf, clave);
    SalidaDXF::escribe(dxf, "\n");
    compruebaCapa(dxf);
    SalidaDXF::escribeCapa(dxf);
    if (color != kPorCapa)
    {
        SalidaDXF::escribeEntero(dxf, " 62\n", color);
    }
}

// Groups 10+n, 20+n and 30+n of one point, scaled and moved, and the running extents.
void escribePunto(ExportaDXF& dxf, int n, double x, double y, double z)
{
    const double px = x * dxf.escala + dxf.origen.x;
    const double py = y * dxf.escala + dxf.origen.y;
    const double pz = z * dxf.escala + dxf.origen.z;
    SalidaDXF::escribeEntero(dxf, " ", 10 + n);
    SalidaDXF::escribeReal(dxf, px);
    SalidaDXF::escribeEntero(dxf, " ", 20 + n);
    SalidaDXF::escribeReal(dxf, py);
    SalidaDXF::escribeEntero(dxf, " ", 30 + n);
    SalidaDXF::escribeReal(dxf, pz);
    dxf.minimo.x = std::min(dxf.minimo.x, px);
    dxf.minimo.y = std::min(dxf.minimo.y, py);
    dxf.minimo.z = std::min(dxf.minimo.z, pz);
    dxf.maximo.x = std::max(dxf.maximo.x, px);
    dxf.maximo.y = std::max(dxf.maximo.y, py);
    dxf.maximo.z = std::max(dxf.maximo.z, pz);
}

// One TEXT record of a single line.
void escribeTexto(ExportaDXF& dxf, std::string_view linea, int justificacion, double x, double y,
                  double z, double altura, double rotacionGrados)
{
    SalidaDXF::escribe(dxf, "  0\nTEXT\n");
    compruebaCapa(dxf);
    SalidaDXF::escribeCapa(dxf);
    escribePunto(dxf, 0, x, y, z);
    if (justificacion != kJustificarIzquierda)
    {
        // One unit along the baseline whatever the height: files already written rely on it.
        const double a = rotacionGrados / 180.0 * kPi;
        escribePunto(dxf, 1, x + std::cos(a), y + std::sin(a), z);
    }
    SalidaDXF::escribe(dxf, " 40\n");
    SalidaDXF::escribeReal(dxf, altura * dxf.escala);
    SalidaDXF::escribeEntero(dxf, " 72\n", justificacion);
    if (rotacionGrados != 0.0)
    {
        SalidaDXF::escribe(dxf, " 50\n");
        SalidaDXF::escribeReal(dxf, rotacionGrados);
    }
    SalidaDXF::escribe(dxf, "  1\n");
    // Plain printable ASCII, the usual case, goes out as it is; a backslash may need the
    // encoder (when it starts what reads as an escape).
    bool llano = true;
    for (const char c : linea)
    {
        const auto u = static_cast<unsigned char>(c);
        llano = llano && u >= 0x20 && u < 0x7F && c != '\\';
    }
    if (llano)
    {
        SalidaDXF::escribe(dxf, linea);
    }
    else
    {
        // A carriage return or another control character would end the line for a reader
        // and let the rest pass for group codes: each becomes a blank. The encoding adds
        // none (code page bytes are above 0x7F, escapes are printable).
        std::string limpia(linea);
        for (char& c : limpia)
        {
            const auto u = static_cast<unsigned char>(c);
            if (u < 0x20 || u == 0x7F)
            {
                c = ' ';
            }
        }
        SalidaDXF::escribe(dxf, utf8ADXF(limpia));
    }
    SalidaDXF::escribe(dxf, "\n");
}

}  // namespace

void ExportaDXF::punto(int color, double x, double y, double z)
{
    if ((estado & kPolilineaAbierta) != 0)
    {
        falla(*this, kPolilineaAbiertaPunto);
    }
    compruebaCapa(*this);
    escribeCabecera(*this, "POINT", color);
    escribePunto(*this, 0, x, y, z);
}

void ExportaDXF::linea(int color, double x1, double y1, double z1, double x2, double y2, double z2)
{
    if ((estado & kPolilineaAbierta) != 0)
    {
        falla(*this, kPolilineaAbiertaLinea);
    }
    compruebaCapa(*this);
    escribeCabecera(*this, "LINE", color);
    escribePunto(*this, 0, x1, y1, z1);
    escribePunto(*this, 1, x2, y2, z2);
}

void ExportaDXF::cara(int n, const Punto3<double>* puntos, int color)
{
    // A face inside a polyline would cut its vertices off as a point would. None of the
    // listed diagnostics names a face, so it is raised without one.
    if ((estado & kPolilineaAbierta) != 0)
    {
        falla(*this, nullptr);
    }
    compruebaCapa(*this);
    escribeCabecera(*this, "3DFACE", color);
    for (int i = 0; i < n; ++i)
    {
        escribePunto(*this, i, puntos[i].x, puntos[i].y, puntos[i].z);
    }
    if (n == 3)
    {
        // A triangle repeats its last corner: the record always has four.
        escribePunto(*this, 3, puntos[2].x, puntos[2].y, puntos[2].z);
    }
    SalidaDXF::escribe(*this, " 70\n0\n");
}

void ExportaDXF::inicioPolilinea(int flags, int color)
{
    if ((estado & kPolilineaAbierta) != 0)
    {
        falla(*this, kPolilineaAbiertaInicio);
    }
    compruebaCapa(*this);
    escribeCabecera(*this, "POLYLINE", color);
    SalidaDXF::escribe(*this, " 66\n     1\n");
    SalidaDXF::escribeEntero(*this, " 70\n     ", flags);
    estado = (estado & ~kBitsGrupo70) | kPolilineaAbierta |
             (static_cast<uint32_t>(flags) & kBitsGrupo70);
}

void ExportaDXF::verticePolilinea(double x, double y, double z)
{
    if ((estado & kPolilineaAbierta) == 0)
    {
        falla(*this, kPolilineaSinCrearVertice);
    }
    if ((estado & kPolilinea3D) == 0)
    {
        falla(*this, kPolilineaNo3D);
    }
    compruebaCapa(*this);
    SalidaDXF::escribe(*this, "  0\nVERTEX\n 70\n    32\n");
    SalidaDXF::escribeCapa(*this);
    escribePunto(*this, 0, x, y, z);
}

void ExportaDXF::finPolilinea()
{
    if ((estado & kPolilineaAbierta) == 0)
    {
        falla(*this, kPolilineaSinCrearFin);
    }
    estado &= ~(kPolilineaAbierta | kBitsGrupo70);
    SalidaDXF::escribe(*this, "  0\nSEQEND\n");
}

void ExportaDXF::texto(const std::string& cadena, int justificacion, double x, double y, double z,
                       double altura, double rotacionGrados)
{
    if ((estado & kPolilineaAbierta) != 0)
    {
        falla(*this, kPolilineaAbiertaTexto);
    }
    if (cadena.empty())
    {
        return;
    }
    compruebaCapa(*this);

    // Lines run from the top down, one unit apart whatever the height, the first raised by
    // the height per extra line: kept as drawings already exported have it.
    const double a = rotacionGrados / 180.0 * kPi;
    size_t saltos = 0;
    for (char c : cadena)
    {
        if (c == '\n')
        {
            ++saltos;
        }
    }
    const double k = static_cast<double>(saltos);
    double lx = x + altura * std::sin(a) * k;
    double ly = y + altura * std::cos(a) * k;
    size_t inicio = 0;
    while (true)
    {
        const size_t fin = cadena.find('\n', inicio);
        const std::string_view linea = std::string_view(cadena).substr(
            inicio, fin == std::string::npos ? std::string::npos : fin - inicio);
        // An empty line is an empty text, which writes nothing, but it keeps its place.
        if (!linea.empty())
        {
            escribeTexto(*this, linea, justificacion, lx, ly, z, altura, rotacionGrados);
        }
        lx -= std::sin(a);
        ly -= std::cos(a);
        if (fin == std::string::npos)
        {
            break;
        }
        inicio = fin + 1;
    }
}

}  // namespace cad
