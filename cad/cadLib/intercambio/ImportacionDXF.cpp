// The ASCII DXF token reader.
#include "intercambio/ImportacionDXF.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <memory>

#include "base/FicheroAtomico.h"
#include "base/Utf8.h"
#include "intercambio/PaginasCodigos.h"

namespace cad
{

namespace
{

// fgets with a 256-byte buffer: at most 255 characters, the newline included.
const size_t kLineaMaxima = 255;
const char kCentinelaBinario[] = "AutoCAD Binary DXF\r\n\x1a";

struct palabra_t
{
    std::string_view texto;
    int32_t tipo;
};

const palabra_t kPalabras[] = {
    {"POINT", ImportacionDXF::kPunto},        {"LINE", ImportacionDXF::kLinea},
    {"POLYLINE", ImportacionDXF::kPolilinea}, {"LWPOLYLINE", ImportacionDXF::kPolilineaLigera},
    {"VERTEX", ImportacionDXF::kVertice},     {"SEQEND", ImportacionDXF::kFinSecuencia},
    {"ARC", ImportacionDXF::kArco},           {"CIRCLE", ImportacionDXF::kCirculo},
    {"TEXT", ImportacionDXF::kTexto}};

bool blanco(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// atoi: leading blanks, a sign, digits; anything else ends it. Wraps instead of overflowing.
int32_t aEntero(std::string_view v)
{
    size_t i = 0;
    while (i < v.size() && blanco(v[i]))
    {
        ++i;
    }
    bool negativo = false;
    if (i < v.size() && (v[i] == '+' || v[i] == '-'))
    {
        negativo = v[i] == '-';
        ++i;
    }
    uint32_t n = 0;
    for (; i < v.size() && v[i] >= '0' && v[i] <= '9'; ++i)
    {
        n = n * 10u + static_cast<uint32_t>(v[i] - '0');
    }
    return static_cast<int32_t>(negativo ? 0u - n : n);
}

// atof: leading blanks, a sign, then the longest number; 0 when there is none.
double aReal(std::string_view v)
{
    size_t i = 0;
    while (i < v.size() && blanco(v[i]))
    {
        ++i;
    }
    bool negativo = false;
    if (i < v.size() && (v[i] == '+' || v[i] == '-'))
    {
        negativo = v[i] == '-';
        ++i;
    }
    // from_chars takes no sign of its own here: a second one is no number, as for atof.
    if (i < v.size() && (v[i] == '+' || v[i] == '-'))
    {
        return 0.0;
    }
    double r = 0.0;
    const auto res = std::from_chars(v.data() + i, v.data() + v.size(), r);
    if (res.ec == std::errc::result_out_of_range)
    {
        // atof gives the infinity or the zero that the value tends to; keep a finite value
        // out of the drawing's sums by taking what strtod would.
        const std::string copia(v.substr(i));
        r = std::strtod(copia.c_str(), nullptr);
    }
    else if (res.ec != std::errc())
    {
        return 0.0;
    }
    return negativo ? -r : r;
}

}  // namespace

bool ImportacionDXF::lee(const char* datos, size_t tamano)
{
    const size_t largoCentinela = sizeof(kCentinelaBinario) - 1;
    if (tamano >= largoCentinela && std::memcmp(datos, kCentinelaBinario, largoCentinela) == 0)
    {
        binario = true;
        motivo = "es un DXF binario: solo se leen DXF de texto";
        return false;
    }
    inicio = cursor = datos;
    final = datos + tamano;
    siguienteAviso = progreso ? datos : nullptr;
    if (finFichero)
    {
        return true;
    }
    bool esVersion = false;
    bool esPagina = false;
    int32_t codigo = 0;
    std::string_view valor;
    while (!finFichero && leePar(codigo, valor))
    {
        // The header's two variables that decide how names are decoded.
        if (esVersion)
        {
            version.assign(valor);
        }
        else if (esPagina)
        {
            paginaCodigos.assign(valor);
        }
        if (esVersion || esPagina)
        {
            codificacion = codificacionDeCabecera(version, paginaCodigos);
            altos = altosPagina(paginaCodigos);
        }
        esVersion = codigo == 9 && valor == "$ACADVER";
        esPagina = codigo == 9 && valor == "$DWGCODEPAGE";

        if (codigo == 2 && valor == "LAYER")
        {
            leeTabla();
        }
        else if (valor == "ENTITIES")
        {
            leeEntidades();
        }
    }
    if (progreso)
    {
        progreso(1.0);
    }
    inicio = cursor = final = siguienteAviso = nullptr;
    return true;
}

void ImportacionDXF::avisaProgreso()
{
    const size_t total = static_cast<size_t>(final - inicio);
    progreso(total == 0 ? 1.0 : static_cast<double>(cursor - inicio) / static_cast<double>(total));
    const size_t paso = total / 100 + 1;
    siguienteAviso = static_cast<size_t>(final - cursor) > paso ? cursor + paso : nullptr;
}

bool ImportacionDXF::lee(std::FILE* f)
{
    std::string datos;
    std::unique_ptr<char[]> trozo(new char[1 << 20]);
    size_t n = 0;
    while ((n = std::fread(trozo.get(), 1, 1 << 20, f)) > 0)
    {
        datos.append(trozo.get(), n);
    }
    if (std::ferror(f) != 0)
    {
        motivo = "no se pudo leer el fichero";
        return false;
    }
    return lee(datos.data(), datos.size());
}

bool ImportacionDXF::lee(const std::string& ruta)
{
    FicheroLeido fichero(ruta);
    if (!fichero.ok())
    {
        motivo = fichero.mensaje();
        return false;
    }
    return lee(reinterpret_cast<const char*>(fichero.datos()), fichero.tamano());
}

bool ImportacionDXF::leeTrozo(std::string_view& trozo)
{
    if (cursor == final)
    {
        return false;
    }
    const size_t disponible = static_cast<size_t>(final - cursor);
    const size_t maximo = disponible < kLineaMaxima ? disponible : kLineaMaxima;
    const void* salto = std::memchr(cursor, '\n', maximo);
    const size_t largo = salto != nullptr
                             ? static_cast<size_t>(static_cast<const char*>(salto) - cursor) + 1
                             : maximo;
    trozo = std::string_view(cursor, largo);
    cursor += largo;
    if (siguienteAviso != nullptr && cursor >= siguienteAviso)
    {
        avisaProgreso();
    }
    // A NUL ends the string that fgets gave, whatever follows it.
    const void* nulo = std::memchr(trozo.data(), '\0', trozo.size());
    if (nulo != nullptr)
    {
        trozo = trozo.substr(0, static_cast<size_t>(static_cast<const char*>(nulo) - trozo.data()));
    }
    return true;
}

bool ImportacionDXF::leeCodigo(int32_t& codigo)
{
    if (codigoPendiente != -1)
    {
        codigo = codigoPendiente;
        codigoPendiente = -1;
        return true;
    }
    std::string_view linea;
    if (!leeTrozo(linea))
    {
        return false;
    }
    codigo = aEntero(linea);
    return true;
}

bool ImportacionDXF::leeValor(std::string_view& valor)
{
    if (!leeTrozo(valor))
    {
        valor = {};
        return false;
    }
    // The line end goes: "\r\n" as one, else the last character, whatever it is.
    if (valor.size() >= 2 && valor[valor.size() - 2] == '\r' && valor.back() == '\n')
    {
        valor.remove_suffix(2);
    }
    else if (!valor.empty())
    {
        valor.remove_suffix(1);
    }
    return true;
}

bool ImportacionDXF::leePar(int32_t& codigo, std::string_view& valor)
{
    return leeCodigo(codigo) && leeValor(valor);
}

void ImportacionDXF::leeTabla()
{
    int32_t codigo = 0;
    std::string_view valor;
    while (leePar(codigo, valor))
    {
        if (codigo == 0 && valor == "LAYER")
        {
            leeCampos();
            nombresCapas.push_back(nombre);
            capa(nombre, color);
            continue;
        }
        if (valor == "ENDTAB")
        {
            return;
        }
    }
}

void ImportacionDXF::leeEntidades()
{
    trasCampos = true;
    do
    {
        tipo = siguientePalabra();
        if (tipo != kNinguno)
        {
            leeCampos();
            llama(tipo);
        }
    } while (!finFichero && tipo != kNinguno);
}

int32_t ImportacionDXF::siguientePalabra()
{
    // Whether the line about to be read names an entity: behind a code 0 read with it, or
    // behind the fields of an entity, or, while lines are skipped one by one, behind a line
    // that is a code 0. Only for the report of what was skipped.
    bool esNombre = trasCampos;
    trasCampos = false;
    for (;;)
    {
        esNombre = esNombre || codigoPendiente == -1;
        int32_t codigo = 0;
        std::string_view valor;
        if (!leePar(codigo, valor))
        {
            return kNinguno;
        }
        elevacion = 0;
        if (codigo != 0)
        {
            return kNinguno;
        }
        for (const palabra_t& p : kPalabras)
        {
            if (valor == p.texto)
            {
                return p.tipo;
            }
        }
        if (valor == "EOF")
        {
            finFichero = true;
        }
        else if (valor == "ENDSEC")
        {
            // Past the entities, skipped lines are objects and tables, not entities.
            finEntidades = true;
        }
        else if (esNombre && !finEntidades)
        {
            cuentaOmitida(valor);
        }
        esNombre = aEntero(valor) == 0 && valor.find('0') != std::string_view::npos &&
                   valor.find_first_not_of(" 0") == std::string_view::npos;
        codigoPendiente = 0;
    }
}

void ImportacionDXF::cuentaOmitida(std::string_view nombreEntidad)
{
    // Entity names are capitals, digits and underscores with at least one letter; the
    // section markers are no entities.
    bool letra = false;
    for (const char c : nombreEntidad)
    {
        if (c >= 'A' && c <= 'Z')
        {
            letra = true;
        }
        else if (!(c >= '0' && c <= '9') && c != '_')
        {
            return;
        }
    }
    if (!letra || nombreEntidad == "ENDSEC" || nombreEntidad == "SECTION" ||
        nombreEntidad == "ENDBLK" || nombreEntidad == "BLOCK")
    {
        return;
    }
    for (auto& o : omitidas)
    {
        if (o.first == nombreEntidad)
        {
            ++o.second;
            return;
        }
    }
    // A damaged file could name thousands of kinds: the list stays short.
    if (omitidas.size() < 64)
    {
        omitidas.emplace_back(std::string(nombreEntidad), 1);
    }
}

std::string ImportacionDXF::decodifica(std::string_view valor) const
{
    return dxfAUTF8(valor, codificacion, altos);
}

void ImportacionDXF::leeCampos()
{
    x = y = z = x2 = y2 = z2 = 0;
    valor40 = bulge = angulo1 = angulo2 = 0;
    flags = justificacion = 0;
    color = 256;
    numeroVertices = 0;
    verticesLigeros.clear();
    const bool ligera = tipo == kPolilineaLigera;
    int32_t codigo = 0;
    std::string_view valor;
    while (leeCodigo(codigo))
    {
        // The code line of the next entity stays read; its name is the next keyword's.
        if (codigo == 0)
        {
            codigoPendiente = 0;
            trasCampos = true;
            break;
        }
        if (!leeValor(valor))
        {
            break;
        }
        switch (codigo)
        {
            case 1:
            {
                if (dxfSinCambios(valor))
                {
                    valorTexto.assign(valor);
                }
                else
                {
                    valorTexto = decodifica(valor);
                }
                // The diameter sign: the Latin-1 letter o with stroke, in UTF-8 here.
                const size_t donde =
                    valorTexto.size() > 2 ? valorTexto.find("%%C") : std::string::npos;
                if (donde != std::string::npos)
                {
                    valorTexto.replace(donde, 3, "\xC3\xB8");
                }
                break;
            }
            case 2:
            case 8:
                if (dxfSinCambios(valor))
                {
                    nombre.assign(valor);
                }
                else
                {
                    nombre = decodifica(valor);
                }
                break;
            case 10:
                x = aReal(valor);
                if (ligera)
                {
                    verticesLigeros.push_back({x, 0, elevacion, 0});
                }
                break;
            case 20:
                y = aReal(valor);
                if (ligera && !verticesLigeros.empty())
                {
                    verticesLigeros.back()[1] = y;
                }
                break;
            case 30:
                z = aReal(valor);
                if (ligera && !verticesLigeros.empty())
                {
                    verticesLigeros.back()[2] = z;
                }
                break;
            case 11:
                x2 = aReal(valor);
                break;
            case 21:
                y2 = aReal(valor);
                break;
            case 31:
                z2 = aReal(valor);
                break;
            case 38:
                z = elevacion = aReal(valor);
                break;
            case 40:
                valor40 = aReal(valor);
                break;
            case 42:
                bulge = aReal(valor);
                if (ligera && !verticesLigeros.empty())
                {
                    verticesLigeros.back()[3] = bulge;
                }
                break;
            case 50:
                angulo1 = aReal(valor);
                break;
            case 51:
                angulo2 = aReal(valor);
                break;
            case 62:
                color = aEntero(valor);
                break;
            case 70:
                flags = aEntero(valor);
                break;
            case 72:
                justificacion = aEntero(valor);
                break;
            case 76:
            case 90:
                numeroVertices = aEntero(valor);
                break;
            default:
                break;
        }
    }
    if (ligera && numeroVertices != 0)
    {
        polilinea(nombre, color, (flags & 1) != 0);
        for (const auto& v : verticesLigeros)
        {
            vertice(v[0], v[1], v[2], v[3], nombre, color);
        }
        finPolilinea();
    }
}

void ImportacionDXF::llama(int32_t t)
{
    switch (t)
    {
        case kPunto:
            punto(x, y, z, nombre, color);
            break;
        case kLinea:
            linea(x, y, z, x2, y2, z2, nombre, color);
            break;
        case kPolilinea:
            polilinea(nombre, color, (flags & 1) != 0);
            break;
        case kVertice:
            vertice(x, y, z, bulge, nombre, color);
            break;
        case kFinSecuencia:
            finPolilinea();
            break;
        case kArco:
            arco(x, y, z, angulo1, angulo2, valor40, nombre, color);
            break;
        case kCirculo:
            circulo(x, y, z, valor40, nombre, color);
            break;
        case kTexto:
            texto(x, y, z, valorTexto, valor40, angulo1, justificacion, nombre, color);
            break;
        default:
            break;
    }
}

}  // namespace cad
