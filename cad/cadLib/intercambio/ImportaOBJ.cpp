// OBJ and MTL input: Policara::importaObj with its MTL libraries, and the simpler token reader
// of Dibujo::importaDocumentoOBJ.
//
// The working path reads the file in large pieces and parses each line in place: no string
// per line, no streams, numbers by std::from_chars with scanf's tolerance around them. A
// first pass over the same bytes counts the lines of each kind, so that every list is
// reserved once from what the file really holds rather than from counts it states.
#include "intercambio/ImportaOBJ.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <limits>
#include <memory>
#include <system_error>
#include <type_traits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/FicheroAtomico.h"
#include "base/geometria/Punto3.h"
#include "base/geometria/Vector2D.h"
#include "documento/Dibujo.h"
#include "documento/Material.h"
#include "entidades/Policara.h"

namespace cad
{

namespace
{

// Bytes handed to the parser at a time; a longer line grows the buffer to fit it.
constexpr size_t kBloque = size_t{1} << 22;
// A usemtl name is looked up on at most this many bytes.
constexpr size_t kNombreMaximo = 1023;

// isspace in the C locale, which is what scanf and atoi skip.
inline bool esEspacio(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

inline bool empiezaPor(const char* ini, const char* fin, std::string_view clave)
{
    return static_cast<size_t>(fin - ini) >= clave.size() &&
           std::memcmp(ini, clave.data(), clave.size()) == 0;
}

// A value out of the type's range: from_chars leaves it unset, strtod gives infinity for an
// overflow and zero for an underflow. An underflow has a negative exponent or no nonzero digit
// before the point.
template <typename T>
T fueraDeRango(const char* ini, const char* fin)
{
    const char* e = std::find_if(ini, fin, [](char c) { return c == 'e' || c == 'E'; });
    const bool exponenteNegativo = e + 1 < fin && e[1] == '-';
    const bool enteroNulo =
        std::all_of(ini, std::find(ini, e, '.'), [](char c) { return c == '0'; });
    return exponenteNegativo || enteroNulo ? T(0) : std::numeric_limits<T>::infinity();
}

// scanf's %lf (or %f) on [p, fin): leading white space, an optional sign, then a decimal or
// hexadecimal number, inf or nan. On success p moves past the number. scanf takes an exponent
// mark even when no digit follows it, and then fails: "1e" or "3.1e+" is no number.
template <typename T>
bool leeReal(const char*& p, const char* fin, T& v)
{
    const char* q = p;
    while (q < fin && esEspacio(*q))
    {
        ++q;
    }
    bool negativo = false;
    if (q < fin && (*q == '+' || *q == '-'))
    {
        negativo = *q == '-';
        ++q;
    }
    if (q >= fin || *q == '+' || *q == '-')
    {
        return false;
    }
    T x{};
    std::from_chars_result r{};
    const bool hex = fin - q > 2 && q[0] == '0' && (q[1] == 'x' || q[1] == 'X') &&
                     std::isxdigit(static_cast<unsigned char>(q[2])) != 0;
    if (hex)
    {
        r = std::from_chars(q + 2, fin, x, std::chars_format::hex);
    }
    else
    {
        r = std::from_chars(q, fin, x);
    }
    if (r.ec == std::errc::invalid_argument)
    {
        return false;
    }
    if (r.ec == std::errc::result_out_of_range)
    {
        x = fueraDeRango<T>(q, r.ptr);
    }
    if (r.ptr < fin && (hex ? (*r.ptr == 'p' || *r.ptr == 'P') : (*r.ptr == 'e' || *r.ptr == 'E')))
    {
        return false;
    }
    v = negativo ? -x : x;
    p = r.ptr;
    return true;
}

// Reads up to n values in a row as sscanf("%lf %lf ...") does; how many were read.
template <typename T>
int leeReales(const char* p, const char* fin, T* v, int n)
{
    int leidos = 0;
    while (leidos < n && leeReal(p, fin, v[leidos]))
    {
        ++leidos;
    }
    return leidos;
}

// atoi on [p, fin): white space, a sign, digits. A value beyond int32 saturates, which no
// list can reach, so such a number always counts as out of range. `fin` of the number comes
// back in `resto`.
int32_t leeEntero(const char* p, const char* fin, const char*& resto)
{
    while (p < fin && esEspacio(*p))
    {
        ++p;
    }
    bool negativo = false;
    if (p < fin && (*p == '+' || *p == '-'))
    {
        negativo = *p == '-';
        ++p;
    }
    uint64_t v = 0;
    int cifras = 0;
    while (p < fin && static_cast<unsigned char>(*p - '0') < 10)
    {
        v = v * 10 + static_cast<unsigned>(*p - '0');
        ++p;
        if (++cifras > 11)
        {
            v = uint64_t{1} << 32;  // beyond any count; stops the product overflowing
            cifras = 11;
        }
    }
    resto = p;
    const int64_t s = negativo ? -static_cast<int64_t>(v) : static_cast<int64_t>(v);
    return static_cast<int32_t>(std::clamp<int64_t>(s, std::numeric_limits<int32_t>::min(),
                                                    std::numeric_limits<int32_t>::max()));
}

int32_t leeEntero(const char* p, const char* fin)
{
    const char* resto = nullptr;
    return leeEntero(p, fin, resto);
}

// The folder of a path with its trailing separator, empty for a bare name.
std::string carpetaDe(const std::string& ruta)
{
    const size_t k = ruta.rfind('/');
    return k == std::string::npos ? std::string() : ruta.substr(0, k + 1);
}

// Calls f(ini, fin) on each line of the bytes, without its "\n" or "\r\n". The last line
// needs no line end.
template <typename F>
void recorreLineas(const char* datos, size_t n, F&& f)
{
    const char* p = datos;
    const char* const fin = datos + n;
    while (p < fin)
    {
        const auto* nl =
            static_cast<const char*>(std::memchr(p, '\n', static_cast<size_t>(fin - p)));
        if (nl == nullptr)
        {
            f(p, fin);
            return;
        }
        f(p, nl > p && nl[-1] == '\r' ? nl - 1 : nl);
        p = nl + 1;
    }
}

// recorreLineas over a whole open file read in pieces. `trozo` sees each piece before its
// lines, told whether it is the first: false from it stops the read. False when the file
// could not be read to its end.
template <typename P, typename F>
bool recorreFichero(std::FILE* fichero, P&& trozo, F&& f)
{
    // A small file needs no piece of full size: clearing it would cost more than the parse.
    struct stat st = {};
    const size_t tamano = ::fstat(::fileno(fichero), &st) == 0 && st.st_size > 0
                              ? static_cast<size_t>(st.st_size)
                              : kBloque;
    std::vector<char> buf(std::min(kBloque, tamano + 1));
    size_t lleno = 0;
    bool inicio = true;
    while (true)
    {
        if (lleno == buf.size())
        {
            buf.resize(buf.size() * 2);  // one line fills the buffer
        }
        const size_t leidos = std::fread(buf.data() + lleno, 1, buf.size() - lleno, fichero);
        lleno += leidos;
        if (!trozo(buf.data(), lleno, inicio))
        {
            return true;
        }
        inicio = false;
        if (leidos == 0)
        {
            recorreLineas(buf.data(), lleno, f);
            return std::ferror(fichero) == 0;
        }
        const char* p = buf.data();
        const char* const fin = p + lleno;
        const char* ultimo = nullptr;
        for (const char* q = fin; q > p; --q)
        {
            if (q[-1] == '\n')
            {
                ultimo = q;
                break;
            }
        }
        if (ultimo == nullptr)
        {
            continue;  // no line end yet: read more behind it
        }
        recorreLineas(p, static_cast<size_t>(ultimo - p), f);
        lleno = static_cast<size_t>(fin - ultimo);
        std::memmove(buf.data(), ultimo, lleno);
    }
}

struct CierraFichero
{
    void operator()(std::FILE* f) const { std::fclose(f); }
};
using fichero_t = std::unique_ptr<std::FILE, CierraFichero>;

// Regular files only: a FIFO with no writer is refused at once instead of waited for.
fichero_t abre(const std::string& ruta, int& error, std::string& mensaje)
{
    error = 0;
    // A name holding a zero byte would open another file.
    if (ruta.empty() || ruta.find('\0') != std::string::npos)
    {
        error = ENOENT;
        mensaje = mensajeErrorFichero(error, ruta, false);
        return nullptr;
    }
    const int fd = abreLecturaRegular(ruta, error, mensaje);
    if (fd < 0)
    {
        return nullptr;
    }
    std::FILE* f = ::fdopen(fd, "rb");
    if (f == nullptr)
    {
        error = errno;
        mensaje = mensajeErrorFichero(error, ruta, false);
        ::close(fd);
    }
    return fichero_t(f);
}

fichero_t abre(const std::string& ruta)
{
    int error = 0;
    std::string mensaje;
    return abre(ruta, error, mensaje);
}

// A byte order mark of UTF-16: such a file holds no line the reader would recognise.
bool esUTF16(const char* datos, size_t n)
{
    if (n < 2)
    {
        return false;
    }
    const auto a = static_cast<unsigned char>(datos[0]);
    const auto b = static_cast<unsigned char>(datos[1]);
    return (a == 0xFE && b == 0xFF) || (a == 0xFF && b == 0xFE);
}

uint8_t byteColor(float c)
{
    const float v = c * 255.0F;
    if (!(v > 0.0F))
    {
        return 0;  // also NaN
    }
    return v >= 255.0F ? 255 : static_cast<uint8_t>(v);
}

// What a first pass finds in the file, so that each list is reserved once: lines of each kind
// and, for faces, at most four corners a line and no more than a corner per two bytes.
struct recuento_t
{
    size_t v = 0;
    size_t vt = 0;
    size_t vn = 0;
    size_t caras = 0;
    size_t esquinas = 0;

    void linea(const char* ini, const char* fin)
    {
        if (ini == fin)
        {
            return;
        }
        if (*ini == 'v')
        {
            const char c = fin - ini > 1 ? ini[1] : '\0';
            ++(c == 't' ? vt : c == 'n' ? vn : v);
        }
        else if (*ini == 'f')
        {
            ++caras;
            esquinas += std::min<size_t>(4, static_cast<size_t>(fin - ini) / 2);
        }
    }
};

struct esquinaLeida_t
{
    int32_t v;
    int32_t t;
    int32_t n;
};

// The state of one import, fed line by line.
class LectorOBJ
{
public:
    LectorOBJ(Policara& p, Dibujo& d, const std::string& ruta, const LeeBibliotecaOBJ& lee,
              informeOBJ_t* inf)
        : policara(p), dibujo(d), carpeta(carpetaDe(ruta)), leeBiblioteca(lee), informe(inf)
    {
    }

    void reserva(const recuento_t& r)
    {
        policara.puntos.reserve(r.v);
        uvs.reserve(r.vt);
        normales.reserve(r.vn);
        policara.esquinas.reserve(r.esquinas);
        policara.triangulos.reserve(std::min(r.caras, r.esquinas / 3));
        // Touching fresh memory page by page costs more than filling it: the large lists go
        // to huge pages where the system gives them.
        grandes(policara.puntos);
        grandes(uvs);
        grandes(normales);
        grandes(policara.esquinas);
        grandes(policara.triangulos);
    }

    template <typename T>
    static void grandes(const std::vector<T>& v)
    {
        paginasGrandes(v.data(), v.capacity() * sizeof(T));
    }

    void linea(const char* ini, const char* fin)
    {
        if (ini == fin)
        {
            return;
        }
        if (fin[-1] == '\\' && informe != nullptr)
        {
            ++informe->lineasContinuadas;
        }
        switch (*ini)
        {
            case 'v':
                vertice(ini, fin);
                break;
            case 'f':
                cara(ini, fin);
                break;
            case 'm':
                if (empiezaPor(ini, fin, "mtllib "))
                {
                    biblioteca(std::string(ini + 7, fin));
                }
                break;
            case 'u':
                if (empiezaPor(ini, fin, "usemtl "))
                {
                    usaMaterial(std::string_view(
                        ini + 7,
                        std::min<size_t>(static_cast<size_t>(fin - ini - 7), kNombreMaximo)));
                }
                break;
            case '#':
                if (empiezaPor(ini, fin, "#DX:"))
                {
                    desplazamiento(ini, fin);
                }
                break;
            default:
                break;
        }
    }

    // The report of what the libraries hold and how many of each list came in.
    void termina()
    {
        if (informe == nullptr)
        {
            return;
        }
        informe->vertices = policara.puntos.size();
        informe->coordenadasUV = uvs.size();
        informe->normales = normales.size();
        informe->triangulos = policara.triangulos.size();
        informe->cuadrilateros = policara.cuadrilateros.size();
        informe->materialesLeidos = materiales.materiales.size();
        for (const material_obj_t& m : materiales.materiales)
        {
            if (m.textura.empty())
            {
                continue;
            }
            std::error_code ec;
            const bool existe =
                m.textura.find('\0') == std::string::npos &&
                std::filesystem::is_regular_file(std::filesystem::path(m.textura), ec);
            (existe ? informe->texturas : informe->texturasQueFaltan).push_back(m.textura);
        }
    }

private:
    void vertice(const char* ini, const char* fin)
    {
        const char c = fin - ini > 1 ? ini[1] : '\0';
        if (c == 't')
        {
            double t[2];
            if (leeReales(ini + 2, fin, t, 2) == 2)
            {
                uvs.emplace_back(t[0], t[1]);
            }
        }
        else if (c == 'n')
        {
            double n[3];
            if (leeReales(ini + 2, fin, n, 3) == 3)
            {
                const Vector3D<double> u = Vector3D<double>(n[0], n[1], n[2]).unit();
                normales.emplace_back(static_cast<float>(u.x), static_cast<float>(u.y),
                                      static_cast<float>(u.z));
            }
        }
        else
        {
            double p[3];
            if (leeReales(ini + 1, fin, p, 3) == 3)
            {
                policara.puntos.emplace_back(p[0] + dx, p[1] + dy, p[2] + dz);
            }
        }
    }

    // The corners of a face line: up to four, each "v", "v/t", "v//n" or "v/t/n" between
    // blanks. A corner number 0 ends the list. The scan never passes the end of the line.
    int esquinasDeCara(const char* ini, const char* fin, esquinaLeida_t* e, bool& cortada) const
    {
        int cuenta = 0;
        cortada = false;
        const char* p = ini + 1;
        while (true)
        {
            if (p < fin && *p == ' ')
            {
                ++p;
            }
            while (p < fin && esEspacio(*p))
            {
                ++p;  // atoi skips these too; the corner starts behind them
            }
            const char* q = p;
            const int32_t v = leeEntero(p, fin, q);
            if (v == 0)
            {
                return cuenta;
            }
            if (cuenta == 4)
            {
                cortada = true;  // a fifth corner: the face keeps the first four
                return cuenta;
            }
            int32_t t = 0;
            int32_t n = 0;
            // The scan goes on behind the digits atoi read, which hold no '/' or blank.
            while (q < fin && *q != '/' && *q != ' ')
            {
                ++q;
            }
            bool sigue = q < fin;
            if (sigue && *q == '/')
            {
                ++q;
                // An empty field is no number: read across the blank, atoi would take the
                // next corner's vertex number as this one's.
                if (q < fin && *q != '/' && !esEspacio(*q))
                {
                    t = leeEntero(q, fin, q);
                }
                while (q < fin && *q != '/' && *q != ' ')
                {
                    ++q;
                }
                if (q >= fin)
                {
                    sigue = false;
                }
                else if (*q == ' ')
                {
                    sigue = q + 1 < fin;
                }
                else
                {
                    ++q;
                    if (q < fin && !esEspacio(*q))
                    {
                        n = leeEntero(q, fin, q);
                    }
                    while (q < fin && *q != ' ')
                    {
                        ++q;
                    }
                    sigue = q < fin && q + 1 < fin;
                }
            }
            e[cuenta++] = {v, t, n};
            if (!sigue)
            {
                return cuenta;
            }
            p = q;
        }
    }

    // A relative number counts back from the end of the list read so far: -1 is its last.
    int64_t resuelve(int32_t numero, size_t tamano, bool& negativo) const
    {
        if (numero < 0)
        {
            negativo = true;
            return static_cast<int64_t>(tamano) + numero + 1;
        }
        return numero;
    }

    void cara(const char* ini, const char* fin)
    {
        esquinaLeida_t e[4];
        bool cortada = false;
        const int c = esquinasDeCara(ini, fin, e, cortada);
        if (c < 3)
        {
            if (informe != nullptr)
            {
                ++informe->carasMenosDeTres;
            }
            return;
        }
        int32_t indice[4];
        int64_t t[4];
        int64_t n[4];
        uint64_t negativas = 0;
        const auto np = static_cast<int64_t>(policara.puntos.size());
        for (int i = 0; i < c; ++i)
        {
            bool negativo = false;
            const int64_t v = resuelve(e[i].v, policara.puntos.size(), negativo);
            t[i] = resuelve(e[i].t, uvs.size(), negativo);
            n[i] = resuelve(e[i].n, normales.size(), negativo);
            negativas += negativo ? 1 : 0;
            if (v < 1 || v > np)
            {
                // A corner naming no point would make the soup unreadable and unpaintable.
                if (informe != nullptr)
                {
                    ++informe->carasFueraDeRango;
                }
                return;
            }
            indice[i] = static_cast<int32_t>(v - 1);
        }
        if (informe != nullptr)
        {
            informe->esquinasNegativas += negativas;
            informe->carasCortadas += cortada ? 1 : 0;
        }
        const auto primera = static_cast<int32_t>(policara.esquinas.size());
        (c == 3 ? policara.triangulos : policara.cuadrilateros).push_back(primera);
        Vector2D<double> uv(0, 0);
        for (int i = 0; i < c; ++i)
        {
            esquina_t q;
            q.indice = indice[i];
            if (t[i] >= 1 && t[i] <= static_cast<int64_t>(uvs.size()))
            {
                uv = uvs[static_cast<size_t>(t[i] - 1)];
            }
            q.uv = uv;  // otherwise the preceding corner's
            if (n[i] >= 1 && n[i] <= static_cast<int64_t>(normales.size()))
            {
                q.normal = normales[static_cast<size_t>(n[i] - 1)];
            }
            else
            {
                const Punto3<double>& p = policara.puntos[static_cast<size_t>(indice[i])];
                const Punto3<double>& a =
                    policara.puntos[static_cast<size_t>(indice[(i + c - 1) % c])];
                const Punto3<double>& b = policara.puntos[static_cast<size_t>(indice[(i + 1) % c])];
                const Vector3D<double> m = (a - p).cross(b - p).unit();
                q.normal = Vector3D<float>(static_cast<float>(m.x), static_cast<float>(m.y),
                                           static_cast<float>(m.z));
                if (informe != nullptr)
                {
                    ++informe->normalesCalculadas;
                }
            }
            q.material = material;
            policara.esquinas.push_back(q);
        }
    }

    void biblioteca(std::string nombre)
    {
        // One library per line: the rest of the line, blanks and all, is one name.
        const std::string ruta = carpeta + nombre;
        std::string bytes;
        const bool leida = leeBiblioteca && leeBiblioteca(ruta, bytes);
        if (leida)
        {
            materiales.leeTextoMTL(bytes, ruta);
        }
        if (informe != nullptr)
        {
            (leida ? informe->bibliotecas : informe->bibliotecasQueFaltan).push_back(ruta);
        }
    }

    void usaMaterial(std::string_view nombre)
    {
        material_obj_t* m = materiales.buscaMaterial(nombre);
        if (m == nullptr)
        {
            if (informe != nullptr)
            {
                ++informe->usemtlDesconocidos;
            }
            return;  // the current material stays
        }
        if (static_cast<int16_t>(m->id) < 0)
        {
            const uint32_t color = (uint32_t{byteColor(m->Kd[0])} << 16) |
                                   (uint32_t{byteColor(m->Kd[1])} << 8) | byteColor(m->Kd[2]);
            const int16_t id = dibujo.nuevoMaterial(0, color, 1.0F, m->textura);
            if (Material* nuevo = dibujo.materialId(id))
            {
                nuevo->setComponentes({m->Ka[0], m->Ka[1], m->Ka[2]},
                                      {m->Kd[0], m->Kd[1], m->Kd[2]},
                                      {m->Ks[0], m->Ks[1], m->Ks[2]});
            }
            m->id = static_cast<uint16_t>(id);
            if (informe != nullptr)
            {
                ++informe->materialesCreados;
            }
        }
        if (m->id != material)
        {
            policara.cambiosMaterial.push_back(static_cast<int32_t>(policara.triangulos.size()));
            policara.cambiosMaterial.push_back(static_cast<int32_t>(policara.cuadrilateros.size()));
        }
        material = m->id;
    }

    // "#DX:x DY:y DZ:z": the offset changes only when all three are read.
    void desplazamiento(const char* ini, const char* fin)
    {
        const std::string_view linea(ini, static_cast<size_t>(fin - ini));
        double d[3];
        const char* p = ini + 4;
        if (!leeReal(p, fin, d[0]))
        {
            return;
        }
        const char* claves[2] = {"DY:", "DZ:"};
        for (int k = 0; k < 2; ++k)
        {
            const size_t en = linea.find(claves[k]);
            if (en == std::string_view::npos)
            {
                return;
            }
            p = ini + en + 3;
            if (!leeReal(p, fin, d[k + 1]))
            {
                return;
            }
        }
        dx = d[0];
        dy = d[1];
        dz = d[2];
        if (informe != nullptr)
        {
            ++informe->desplazamientos;
            informe->desplazamiento = Vector3D<double>(dx, dy, dz);
        }
    }

    Policara& policara;
    Dibujo& dibujo;
    std::string carpeta;
    const LeeBibliotecaOBJ& leeBiblioteca;
    informeOBJ_t* informe;
    MaterialesOBJ materiales;
    std::vector<Vector2D<double>> uvs;
    std::vector<Vector3D<float>> normales;
    double dx = 0;
    double dy = 0;
    double dz = 0;
    uint16_t material = 0xFFFF;
};

constexpr const char* kMotivoUTF16 =
    "el fichero está en UTF-16: solo se leen OBJ de texto de 8 bits (ASCII, UTF-8)";

// The values of a record after a reset.
material_obj_t materialNuevo()
{
    material_obj_t m;
    for (int i = 0; i < 3; ++i)
    {
        m.Ka[i] = 1;
        m.Kd[i] = 1;
        m.Ks[i] = 0;
        m.Ke[i] = 0;
    }
    m.illum = 0;
    m.d = 1.0;
    m.Ni = 1.0;
    m.Ns = 100.0;
    m.id = 0xFFFF;
    return m;
}

}  // namespace

bool leeBibliotecaDeDisco(const std::string& ruta, std::string& bytes)
{
    fichero_t f = abre(ruta);
    if (!f)
    {
        return false;
    }
    bytes.clear();
    char buf[1 << 16];
    size_t n = 0;
    while ((n = std::fread(buf, 1, sizeof buf, f.get())) > 0)
    {
        bytes.append(buf, n);
    }
    return std::ferror(f.get()) == 0;
}

// --- MaterialesOBJ ----------------------------------------------------------------------------

bool MaterialesOBJ::leeMTL(const std::string& ruta)
{
    std::string bytes;
    if (!leeBibliotecaDeDisco(ruta, bytes))
    {
        return false;
    }
    leeTextoMTL(bytes, ruta);
    return true;
}

void MaterialesOBJ::leeTextoMTL(std::string_view texto, const std::string& ruta)
{
    const std::string carpeta = carpetaDe(ruta);
    // The first record starts from zeros; only guarda resets to the table's values.
    material_obj_t m;
    bool nombrado = false;
    recorreLineas(texto.data(), texto.size(),
                  [&](const char* ini, const char* fin)
                  {
                      const auto terna = [&](size_t desde, float* v)
                      {
                          if (leeReales(ini + desde, fin, v, 3) != 3)
                          {
                              v[0] = v[1] = v[2] = 1.0F;
                          }
                      };
                      // "%ld" (or "%d") into a field: the integer read, or `siFalla` without one.
                      const auto entero = [&](size_t desde, auto& v, double siFalla)
                      {
                          const char* p = ini + desde;
                          while (p < fin && esEspacio(*p))
                          {
                              ++p;
                          }
                          const char* q = p + (p < fin && (*p == '+' || *p == '-') ? 1 : 0);
                          const bool hay = q < fin && *q >= '0' && *q <= '9';
                          using T = std::remove_reference_t<decltype(v)>;
                          v = hay ? static_cast<T>(leeEntero(p, fin)) : static_cast<T>(siFalla);
                      };
                      if (empiezaPor(ini, fin, "newmtl "))
                      {
                          guarda(m);
                          m.nombre.assign(ini + 7, fin);
                          nombrado = true;
                      }
                      else if (!nombrado)
                      {
                          return;  // before the first newmtl nothing belongs to a material
                      }
                      else if (empiezaPor(ini, fin, "Ka "))
                      {
                          terna(3, m.Ka);
                      }
                      else if (empiezaPor(ini, fin, "Kd "))
                      {
                          terna(3, m.Kd);
                      }
                      else if (empiezaPor(ini, fin, "Ks "))
                      {
                          terna(3, m.Ks);
                      }
                      else if (empiezaPor(ini, fin, "Ke "))
                      {
                          terna(3, m.Ke);
                      }
                      else if (empiezaPor(ini, fin, "d "))
                      {
                          entero(2, m.d, 1.0);
                      }
                      else if (empiezaPor(ini, fin, "Ni "))
                      {
                          entero(3, m.Ni, 1.0);
                      }
                      else if (empiezaPor(ini, fin, "Ns "))
                      {
                          entero(3, m.Ns, 100.0);
                      }
                      else if (empiezaPor(ini, fin, "illum "))
                      {
                          entero(6, m.illum, 2.0);
                      }
                      else if (empiezaPor(ini, fin, "map_Kd "))
                      {
                          m.textura = carpeta;
                          m.textura.append(ini + 7, fin);
                      }
                  });
    guarda(m);
}

bool MaterialesOBJ::guarda(material_obj_t& m)
{
    if (m.nombre.empty())
    {
        return false;
    }
    const bool nuevo = buscaMaterial(m.nombre) == nullptr;
    if (nuevo)
    {
        materiales.push_back(m);
    }
    m = materialNuevo();
    return nuevo;
}

material_obj_t* MaterialesOBJ::buscaMaterial(std::string_view nombre)
{
    for (material_obj_t& m : materiales)
    {
        if (m.nombre == nombre)
        {
            return &m;
        }
    }
    return nullptr;
}

// --- Policara ---------------------------------------------------------------------------------

void importaObjTexto(Policara& policara, std::string_view texto, const std::string& ruta,
                     Dibujo& dibujo, const LeeBibliotecaOBJ& leeBiblioteca, informeOBJ_t* informe)
{
    if (informe != nullptr)
    {
        informe->abierto = true;
    }
    if (esUTF16(texto.data(), texto.size()))
    {
        if (informe != nullptr)
        {
            informe->motivo = kMotivoUTF16;
        }
        return;
    }
    LectorOBJ lector(policara, dibujo, ruta, leeBiblioteca, informe);
    recuento_t r;
    recorreLineas(texto.data(), texto.size(),
                  [&r](const char* a, const char* b) { r.linea(a, b); });
    lector.reserva(r);
    recorreLineas(texto.data(), texto.size(),
                  [&lector](const char* a, const char* b) { lector.linea(a, b); });
    lector.termina();
}

void Policara::importaObj(const std::string& ruta, Dibujo& dibujo, informeOBJ_t* informe)
{
    int error = 0;
    std::string mensaje;
    fichero_t f = abre(ruta, error, mensaje);
    if (!f)
    {
        if (informe != nullptr)
        {
            informe->abierto = false;
            informe->motivo = mensaje;
        }
        return;
    }
    if (informe != nullptr)
    {
        informe->abierto = true;
    }
    // First pass: what each list will hold. Second: the lines themselves.
    bool utf16 = false;
    recuento_t r;
    const auto mira = [&utf16](const char* datos, size_t n, bool primero)
    { return !primero || !(utf16 = esUTF16(datos, n)); };
    recorreFichero(f.get(), mira, [&r](const char* a, const char* b) { r.linea(a, b); });
    if (utf16)
    {
        if (informe != nullptr)
        {
            informe->motivo = kMotivoUTF16;
        }
        return;
    }
    std::rewind(f.get());
    const LeeBibliotecaOBJ deDisco = leeBibliotecaDeDisco;
    LectorOBJ lector(*this, dibujo, ruta, deDisco, informe);
    lector.reserva(r);
    // Progress is told per piece read, over the second pass, which holds the time.
    struct stat st = {};
    const double total = ::fstat(::fileno(f.get()), &st) == 0 && st.st_size > 0
                             ? static_cast<double>(st.st_size)
                             : 1.0;
    const auto avance = [&](const char*, size_t, bool)
    {
        if (informe != nullptr && informe->progreso)
        {
            informe->progreso(std::min(1.0, static_cast<double>(std::ftell(f.get())) / total));
        }
        return true;
    };
    const bool entero = recorreFichero(
        f.get(), avance, [&lector](const char* a, const char* b) { lector.linea(a, b); });
    if (!entero && informe != nullptr)
    {
        informe->motivo = "no se pudo leer " + ruta + " hasta el final";
    }
    lector.termina();
}

// --- Dibujo::importaDocumentoOBJ ---------------------------------------------------------------

namespace
{

// fscanf over a whole file: tokens and numbers across line ends.
struct Escaner
{
    const char* p;
    const char* fin;

    void saltaEspacios()
    {
        while (p < fin && esEspacio(*p))
        {
            ++p;
        }
    }
    // %s: false at the end of the file.
    bool palabra(std::string_view& w)
    {
        saltaEspacios();
        const char* ini = p;
        while (p < fin && !esEspacio(*p))
        {
            ++p;
        }
        w = std::string_view(ini, static_cast<size_t>(p - ini));
        return p > ini;
    }
    bool real(double& v) { return leeReal(p, fin, v); }
    // %d
    bool entero(int32_t& v)
    {
        saltaEspacios();
        const char* q = p + (p < fin && (*p == '+' || *p == '-') ? 1 : 0);
        if (q >= fin || *q < '0' || *q > '9')
        {
            return false;
        }
        v = leeEntero(p, fin);
        p = q;
        while (p < fin && *p >= '0' && *p <= '9')
        {
            ++p;
        }
        return true;
    }
    bool literal(char c)
    {
        if (p < fin && *p == c)
        {
            ++p;
            return true;
        }
        return false;
    }
};

}  // namespace

bool Dibujo::importaDocumentoOBJ(const std::string& ruta)
{
    hayCambios_ = true;
    std::string bytes;
    if (!leeBibliotecaDeDisco(ruta, bytes))
    {
        return false;
    }
    std::vector<Punto3<double>> puntos;
    std::vector<Vector2D<double>> coordenadas;
    std::vector<Vector3D<double>> normales;
    std::vector<int32_t> indices;  // v, t, n per corner
    Escaner e{bytes.data(), bytes.data() + bytes.size()};
    std::string_view w;
    while (e.palabra(w))
    {
        double x[3];
        if (w == "v" || w == "vn")
        {
            int k = 0;
            while (k < 3 && e.real(x[k]))
            {
                ++k;
            }
            if (k == 3)
            {
                e.saltaEspacios();
                if (w == "v")
                {
                    puntos.emplace_back(x[0], x[1], x[2]);
                }
                else
                {
                    normales.emplace_back(x[0], x[1], x[2]);
                }
            }
        }
        else if (w == "vt")
        {
            if (e.real(x[0]) && e.real(x[1]))
            {
                e.saltaEspacios();
                coordenadas.emplace_back(x[0], x[1]);
            }
        }
        else if (w == "f")
        {
            for (int k = 0; k < 9; ++k)
            {
                int32_t v = 0;
                const bool ok = e.entero(v) && (k % 3 == 2 || e.literal('/'));
                if (!ok)
                {
                    return false;
                }
                indices.push_back(v);
            }
            e.saltaEspacios();
        }
    }
    // Per-corner lists of the caller, which has no use for them; a number naming nothing
    // gives nothing rather than a read outside the lists.
    std::vector<Punto3<double>> p;
    std::vector<Vector2D<double>> c;
    std::vector<Vector3D<double>> n;
    const auto dentro = [](int32_t i, size_t tam)
    { return i >= 1 && static_cast<size_t>(i) <= tam; };
    for (size_t i = 0; i + 2 < indices.size(); i += 3)
    {
        if (dentro(indices[i], puntos.size()))
        {
            p.push_back(puntos[static_cast<size_t>(indices[i] - 1)]);
        }
        if (dentro(indices[i + 1], coordenadas.size()))
        {
            c.push_back(coordenadas[static_cast<size_t>(indices[i + 1] - 1)]);
        }
        if (dentro(indices[i + 2], normales.size()))
        {
            n.push_back(normales[static_cast<size_t>(indices[i + 2] - 1)]);
        }
    }
    std::lock_guard<std::recursive_mutex> guardia(lock);
    recalculaExtension();
    return true;
}

}  // namespace cad
