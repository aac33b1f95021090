// The ASCII DXF writer: entities go to a temporary file, copied behind the layer table.
#include "intercambio/ExportaDXF.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <exception>
#include <limits>
#include <memory>

#include "base/Color.h"
#include "base/Excepcion.h"

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

// A file that could not be opened stays null, and stdio on a null FILE* is undefined: every
// write goes through here and is dropped then.
void escribe(std::FILE* f, const char* texto)
{
    if (f != nullptr)
    {
        std::fputs(texto, f);
    }
}

void escribe(std::FILE* f, const std::string& texto) { escribe(f, texto.c_str()); }

void escribeEntero(std::FILE* f, const char* formato, int valor)
{
    char buffer[32];
    std::snprintf(buffer, sizeof(buffer), formato, valor);
    escribe(f, buffer);
}

// Large enough for any finite double in fixed notation, so nothing is cut. A value that is
// not finite is counted, and the file will not be put in place.
void escribeReal(ExportaDXF& dxf, double valor)
{
    if (!std::isfinite(valor))
    {
        ++dxf.noFinitos;
    }
    char buffer[400];
    std::snprintf(buffer, sizeof(buffer), "%0.4lf", valor);
    escribe(dxf.temporal, buffer);
    escribe(dxf.temporal, "\n");
}

void cierra(std::FILE*& f)
{
    if (f != nullptr)
    {
        std::fclose(f);
        f = nullptr;
    }
}

}  // namespace

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
    for (const capa_t& c : capas)
    {
        char color[32];
        std::snprintf(color, sizeof color, " 62\n    %d\n", c.color);
        cabeza += "  0\nLAYER\n";
        cabeza += "  2\n";
        cabeza += c.nombre;
        cabeza += "\n";
        cabeza += " 70\n    0\n";
        cabeza += color;
        cabeza += "  6\nCONTINUOUS\n";
    }
    cabeza += "  0\nENDTAB\n";
    cabeza += "  0\nENDSEC\n";
    final->escribe(cabeza.data(), cabeza.size());

    escribe(temporal, "  0\nEOF\n");
    // The scratch file's own failures (a full disk) show in its error flag; errno still
    // tells the cause after a failed flush, and a disk error stands in when it does not.
    int error = 0;
    errno = 0;
    if (std::fflush(temporal) != 0 || std::ferror(temporal) != 0)
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
    const std::string normalizado = normalizaCapa(nombreCapa);
    for (const capa_t& c : capas)
    {
        if (c.nombre == normalizado)
        {
            capaActual = normalizado;
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
    escribe(temporal, "  0\nSECTION\n");
    escribe(temporal, "  2\nENTITIES\n");
}

void ExportaDXF::finEntidades()
{
    if ((estado & kSeccionAbierta) == 0)
    {
        falla(*this, kFinSinInicio);
    }
    estado &= ~kSeccionAbierta;
    escribe(temporal, "  0\nENDSEC\n");
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

void escribeCapa(ExportaDXF& dxf)
{
    compruebaCapa(dxf);
    std::FILE* f = dxf.temporal;
    const std::string& capaActual = dxf.capaActual;
    escribe(f, "  8\n");
    escribe(f, capaActual);
    escribe(f, "\n");
}

void escribeCabecera(ExportaDXF& dxf, const char* clave, int color)
{
    std::FILE* f = dxf.temporal;
    escribe(f, "  0\n");
    escribe(f, clave);
    escribe(f, "\n");
    escribeCapa(dxf);
    if (color != kPorCapa)
    {
        escribeEntero(f, " 62\n%d\n", color);
    }
}

// Groups 10+n, 20+n and 30+n of one point, scaled and moved, and the running extents.
void escribePunto(ExportaDXF& dxf, int n, double x, double y, double z)
{
    const double px = x * dxf.escala + dxf.origen.x;
    const double py = y * dxf.escala + dxf.origen.y;
    const double pz = z * dxf.escala + dxf.origen.z;
    escribeEntero(dxf.temporal, " %d\n", 10 + n);
    escribeReal(dxf, px);
    escribeEntero(dxf.temporal, " %d\n", 20 + n);
    escribeReal(dxf, py);
    escribeEntero(dxf.temporal, " %d\n", 30 + n);
    escribeReal(dxf, pz);
    dxf.minimo.x = std::min(dxf.minimo.x, px);
    dxf.minimo.y = std::min(dxf.minimo.y, py);
    dxf.minimo.z = std::min(dxf.minimo.z, pz);
    dxf.maximo.x = std::max(dxf.maximo.x, px);
    dxf.maximo.y = std::max(dxf.maximo.y, py);
    dxf.maximo.z = std::max(dxf.maximo.z, pz);
}

// One TEXT record of a single line.
void escribeTexto(ExportaDXF& dxf, const std::string& linea, int justificacion, double x,
                  double y, double z, double altura, double rotacionGrados)
{
    escribe(dxf.temporal, "  0\nTEXT\n");
    escribeCapa(dxf);
    escribePunto(dxf, 0, x, y, z);
    if (justificacion != kJustificarIzquierda)
    {
        // One unit along the baseline whatever the height: files already written rely on it.
        const double a = rotacionGrados / 180.0 * kPi;
        escribePunto(dxf, 1, x + std::cos(a), y + std::sin(a), z);
    }
    escribe(dxf.temporal, " 40\n");
    escribeReal(dxf, altura * dxf.escala);
    escribeEntero(dxf.temporal, " 72\n%d\n", justificacion);
    if (rotacionGrados != 0.0)
    {
        escribe(dxf.temporal, " 50\n");
        escribeReal(dxf, rotacionGrados);
    }
    escribe(dxf.temporal, "  1\n");
    // A carriage return or another control character would end the line for a reader and
    // let the rest pass for group codes: each becomes a blank.
    std::string limpia = linea;
    for (char& c : limpia)
    {
        const auto u = static_cast<unsigned char>(c);
        if (u < 0x20 || u == 0x7F)
        {
            c = ' ';
        }
    }
    escribe(dxf.temporal, limpia);
    escribe(dxf.temporal, "\n");
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

void ExportaDXF::linea(int color, double x1, double y1, double z1, double x2, double y2,
                       double z2)
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
    escribe(temporal, " 70\n0\n");
}

void ExportaDXF::inicioPolilinea(int flags, int color)
{
    if ((estado & kPolilineaAbierta) != 0)
    {
        falla(*this, kPolilineaAbiertaInicio);
    }
    compruebaCapa(*this);
    escribeCabecera(*this, "POLYLINE", color);
    escribe(temporal, " 66\n     1\n");
    escribeEntero(temporal, " 70\n     %d\n", flags);
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
    escribe(temporal, "  0\nVERTEX\n");
    escribe(temporal, " 70\n    32\n");
    escribeCapa(*this);
    escribePunto(*this, 0, x, y, z);
}

void ExportaDXF::finPolilinea()
{
    if ((estado & kPolilineaAbierta) == 0)
    {
        falla(*this, kPolilineaSinCrearFin);
    }
    estado &= ~(kPolilineaAbierta | kBitsGrupo70);
    escribe(temporal, "  0\nSEQEND\n");
}

void ExportaDXF::texto(const std::string& cadena, int justificacion, double x, double y,
                       double z, double altura, double rotacionGrados)
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
        const std::string linea =
            cadena.substr(inicio, fin == std::string::npos ? std::string::npos : fin - inicio);
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
