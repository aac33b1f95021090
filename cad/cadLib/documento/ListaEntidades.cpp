#include "documento/ListaEntidades.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <optional>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "entidades/Cara3D.h"
#include "entidades/Cilindro.h"
#include "entidades/Cubo.h"
#include "entidades/EntidadDesconocida.h"
#include "entidades/Esfera.h"
#include "entidades/Firmas.h"
#include "entidades/Foto360.h"
#include "entidades/GrupoPuntos.h"
#include "entidades/Linea.h"
#include "entidades/Objeto3D.h"
#include "entidades/Plano.h"
#include "entidades/Policara.h"
#include "entidades/Poligono.h"
#include "entidades/Polilinea.h"
#include "entidades/Prisma.h"
#include "entidades/Punto.h"
#include "entidades/PuntoControl.h"
#include "entidades/SistemaLocal.h"
#include "entidades/Superficie.h"
#include "entidades/Texto.h"
#include "entidades/TomaCamara.h"

namespace cad
{

ListaEntidades::~ListaEntidades()
{
    vacia();
}

void ListaEntidades::vacia()
{
    for (Entidad* e : *this)
    {
        delete e;
    }
    clear();
    ++generacion;
}

namespace
{

using Fabrica = Entidad* (*)();

struct fila_t
{
    const char* tag;
    Fabrica crea;  // null: a kind with no class in this build, kept as unknown
};

// Tested in this order, exactly. "Pg1" is taken by the polyline first, so the polygon's row
// never fires and a saved polygon comes back as a polyline: the file format stands so.
const fila_t kFabrica[] = {
    {kFirmaEntidadPunto, [] { return static_cast<Entidad*>(new Punto()); }},
    {kFirmaEntidadGrupoPuntos, [] { return static_cast<Entidad*>(new GrupoPuntos()); }},
    {kFirmaEntidadLinea, [] { return static_cast<Entidad*>(new Linea()); }},
    {kFirmaEntidadPolilinea, [] { return static_cast<Entidad*>(new Polilinea()); }},
    {kFirmaEntidadPolilineaLarga, [] { return static_cast<Entidad*>(new Polilinea()); }},
    {kFirmaEntidadPolilinea, [] { return static_cast<Entidad*>(new Poligono()); }},
    {kFirmaEntidadCara3D, [] { return static_cast<Entidad*>(new Cara3D()); }},
    {kFirmaEntidadPolicara, [] { return static_cast<Entidad*>(new Policara()); }},
    {kFirmaEntidadCubo, [] { return static_cast<Entidad*>(new Cubo()); }},
    {kFirmaEntidadPrisma, [] { return static_cast<Entidad*>(new Prisma()); }},
    {kFirmaEntidadCilindro, [] { return static_cast<Entidad*>(new Cilindro()); }},
    {kFirmaEntidadEsfera, [] { return static_cast<Entidad*>(new Esfera()); }},
    {kFirmaEntidadPuntoControl, [] { return static_cast<Entidad*>(new PuntoControl()); }},
    {kFirmaEntidadSuperficie, [] { return static_cast<Entidad*>(new Superficie()); }},
    {kFirmaEntidadObjeto3D, [] { return static_cast<Entidad*>(new Objeto3D()); }},
    {kFirmaEntidadPlano, [] { return static_cast<Entidad*>(new Plano()); }},
    {kFirmaEntidadSistemaLocal, [] { return static_cast<Entidad*>(new SistemaLocal()); }},
    {kFirmaEntidadTomaCamara, [] { return static_cast<Entidad*>(new TomaCamara()); }},
    {kFirmaEntidadFoto360, [] { return static_cast<Entidad*>(new Foto360()); }},
    {kFirmaEntidadTexto, [] { return static_cast<Entidad*>(new Texto()); }},
};

const fila_t* filaDe(const char* tag)
{
    for (const fila_t& f : kFabrica)
    {
        if (std::strcmp(f.tag, tag) == 0)
        {
            return &f;
        }
    }
    return nullptr;
}

// Whether a tag of the table begins with `c`: most bytes of a damaged stretch are ruled out
// by this alone.
bool iniciaEtiqueta(unsigned char c)
{
    static const std::array<bool, 256> kIniciales = []
    {
        std::array<bool, 256> t{};
        for (const fila_t& f : kFabrica)
        {
            t[static_cast<unsigned char>(f.tag[0])] = true;
        }
        return t;
    }();
    return kIniciales[c];
}

}  // namespace

Entidad* ListaEntidades::creaEntidad(const char* tag)
{
    const fila_t* f = filaDe(tag);
    return f != nullptr && f->crea != nullptr ? f->crea() : new EntidadDesconocida(tag);
}

void ListaEntidades::extension(Rect3<double>& caja) const
{
    caja = Rect3<double>(Punto3<double>(1, 1, 1), Punto3<double>(0, 0, 0));
    for (const Entidad* e : *this)
    {
        caja.une(e->extension());
    }
}

void ListaEntidades::escribe(SerializadorEscrituraBase& w)
{
    std::unique_ptr<BloqueSerializacion> bloque(w.nuevoBloque64(etiqueta()));
    w.escribeLongitud64(size());
    // The binary writer's blocks are made on the stack: a million entities need no million
    // allocations. The bytes are the same.
    auto* binario = dynamic_cast<SerializadorBinarioEscritura*>(&w);
    for (size_t i = 0; i < size(); ++i)
    {
        anticipa(i);
        Entidad* e = (*this)[i];
        const int ancho = e->tamanoBloque();
        if (ancho == kBloqueCrudo)
        {
            e->escribe(w);
            continue;
        }
        std::optional<BloqueSerializacionBE> enPila;
        std::unique_ptr<BloqueSerializacion> propio;
        if (binario != nullptr)
        {
            enPila.emplace(*binario, e->etiqueta(),
                           ancho == kBloque16 || ancho == kBloque32 ? ancho : kBloque64);
        }
        else
        {
            propio.reset(w.nuevoBloque(e->etiqueta(), ancho));
        }
        e->escribe(w);
        e->escribeDatosDesconocidos(w);
    }
    escribeDatosDesconocidos(w);
}

namespace
{

// A block's frame as the reader found it.
struct marco_t
{
    char tag[20] = {};
    int64_t inicio = 0;  // the tag's first byte
    int64_t posicionLongitud = 0;
    int anchura = 0;        // bytes of the length field
    uint64_t longitud = 0;  // as stored: from the length field's first byte
    // The tag stands as a writer puts it: printable, its terminator closing a field of
    // strlen + 1 bytes, so that written back it reads back the same.
    bool legible = false;

    int64_t cuerpo() const { return posicionLongitud + anchura; }
    // The end the stored length gives, or -1 when it falls outside [cuerpo, limite].
    int64_t finDeclarado(int64_t limite) const
    {
        if (posicionLongitud + anchura > limite || longitud < static_cast<uint64_t>(anchura) ||
            longitud > static_cast<uint64_t>(limite - posicionLongitud))
        {
            return -1;
        }
        return posicionLongitud + static_cast<int64_t>(longitud);
    }
};

marco_t marcoDe(const BloqueSerializacionBL& bl, int64_t inicio, int64_t posicion)
{
    marco_t m;
    m.inicio = inicio;
    bl.tipo(m.tag);
    m.anchura = bl.tipoBloque == kBloque16 ? 2 : (bl.tipoBloque == kBloque32 ? 4 : 8);
    m.longitud = bl.longitud;
    m.posicionLongitud = bl.posicionLongitud;
    const size_t n = std::strlen(m.tag);
    bool imprimible = n > 0;
    for (size_t i = 0; i < n; ++i)
    {
        const auto c = static_cast<unsigned char>(m.tag[i]);
        imprimible = imprimible && c > 0x20 && c < 0x7F;
    }
    // The width written back is the one the tag's size gives an unknown entity (below 4
    // characters u16, below 8 u32, else u64); where the reader derived another (a 5-character
    // tag reads with u64), the block would not read back written so.
    const int anchuraEscrita = n < 4 ? 2 : (n < 8 ? 4 : 8);
    m.legible = imprimible && m.posicionLongitud == inicio + static_cast<int64_t>(n) + 1 &&
                posicion == m.cuerpo() && m.anchura == anchuraEscrita;
    return m;
}

// Reads the frame of the block that starts where the reader stands; the block is made on the
// stack, as a million entities need no million allocations.
marco_t leeMarco(SerializadorBinarioLectura& r)
{
    const int64_t inicio = r.posicion();
    const BloqueSerializacionBL bloque(r, -1);
    return marcoDe(bloque, inicio, r.posicion());
}

// How a body read agreed with its block's length.
enum lectura_e
{
    kFalla,   // it did not read, or it ran past the length
    kExacta,  // it ended where the length says (or whole turns of a u16/u32 field beyond)
    kConCola  // it ended before: what is left is a newer version's tail
};

// Reads `e`'s body from the block's start on, and says how its end agrees with the stored
// length. Only where `vuelta` allows may it end beyond the length by whole turns of a u16 or
// u32 field, which a body larger than its field leaves when it is written.
lectura_e leeCuerpo(Entidad& e, SerializadorBinarioLectura& r, const marco_t& m, int64_t limite,
                    bool vuelta, uint64_t& cola)
{
    cola = 0;
    r.situa(m.cuerpo());
    if (!e.lee(r))
    {
        return kFalla;
    }
    const int64_t fin = r.posicion();
    if (fin > limite)
    {
        return kFalla;
    }
    const auto leido = static_cast<uint64_t>(fin - m.posicionLongitud);
    if (leido <= m.longitud)
    {
        if (m.finDeclarado(limite) < 0)
        {
            return kFalla;
        }
        cola = m.longitud - leido;
        return cola == 0 ? kExacta : kConCola;
    }
    const uint64_t mascara = m.anchura == 2 ? 0xFFFFu : (m.anchura == 4 ? 0xFFFFFFFFu : 0);
    return vuelta && mascara != 0 && ((leido - m.longitud) & mascara) == 0 ? kExacta : kFalla;
}

// A polyline made from a polygon's body, which comes under the tag they share: its
// vertices, closed, and the polygon's common fields.
Entidad* polilineaDePoligono(const Poligono& p)
{
    auto* resultado = new Polilinea();
    static_cast<Entidad&>(*resultado) = static_cast<const Entidad&>(p);
    resultado->vertices = p.vertices;
    resultado->cerrada = true;
    return resultado;
}

// The entity of a block whose frame is `m`, when its body reads as its kind and agrees with
// the block's length; null otherwise. The reader stands at the block's end after a success.
std::unique_ptr<Entidad> intentaLeer(SerializadorBinarioLectura& r, const marco_t& m,
                                     int64_t limite)
{
    if (!m.legible)
    {
        return nullptr;
    }
    const fila_t* fila = filaDe(m.tag);
    const bool conocida = fila != nullptr && fila->crea != nullptr;
    std::unique_ptr<Entidad> e(conocida ? fila->crea() : new EntidadDesconocida(m.tag));
    uint64_t cola = 0;
    // Only a kind that knows its own counts may outgrow its field; an unknown one is skipped
    // by its stored length.
    lectura_e lectura = leeCuerpo(*e, r, m, limite, conocida, cola);
    if (lectura != kExacta && conocida && std::strcmp(m.tag, kFirmaEntidadPolilinea) == 0)
    {
        // A polygon's body is a polyline's without the two bytes of the closed flag: read
        // exactly, at most one of the two agrees with the length (bodies are whole multiples
        // of 24 bytes of vertices apart, and 2^16 is no such multiple plus two).
        Poligono p;
        uint64_t colaPoligono = 0;
        if (leeCuerpo(p, r, m, limite, true, colaPoligono) == kExacta)
        {
            e.reset(polilineaDePoligono(p));
            lectura = kExacta;
            cola = 0;
        }
        else if (lectura == kConCola)
        {
            // A polyline with a newer version's tail: read it again as such.
            lectura = leeCuerpo(*e, r, m, limite, true, cola);
        }
    }
    if (lectura == kFalla || cola > UINT32_MAX)
    {
        return nullptr;
    }
    // The tail of a newer version is kept; it lies inside the limit, as leeCuerpo checked.
    if (cola > 0)
    {
        e->datosDesconocidos = static_cast<unsigned char*>(std::malloc(cola));
        if (e->datosDesconocidos == nullptr)
        {
            throw std::bad_alloc();
        }
        e->tamanoDatosDesconocidos = static_cast<uint32_t>(cola);
        r.leeBytes(e->datosDesconocidos, static_cast<uint32_t>(cola));
    }
    return e;
}

// Whether a block that reads as its kind starts at `pos`, where the list goes on after a
// damaged block. Leaves the reader where it stood.
bool empiezaBloque(SerializadorBinarioLectura& r, int64_t pos, int64_t limite)
{
    const int64_t antes = r.posicion();
    r.situa(pos);
    const marco_t m = leeMarco(r);
    const bool ok = m.legible && filaDe(m.tag) != nullptr && intentaLeer(r, m, limite) != nullptr;
    r.situa(antes);
    return ok;
}

// Where the list goes on after the damaged block that starts at `m.inicio`: at the end its
// length gives when a sound block (or the list's end) stands there, else at the first later
// place where a block of a known kind reads whole, else at the list's end.
int64_t siguienteBloque(SerializadorBinarioLectura& r, const marco_t& m, int64_t limite)
{
    const int64_t declarado = m.finDeclarado(limite);
    if (declarado > m.inicio && (declarado == limite || empiezaBloque(r, declarado, limite)))
    {
        return declarado;
    }
    // Only where a tag of the table stands, terminator included, is a block worth trying; the
    // bytes are looked at in place, as a damaged stretch may be long.
    for (int64_t pos = m.inicio + 1; pos < limite; ++pos)
    {
        if (!iniciaEtiqueta(r.datos()[pos]))
        {
            continue;
        }
        char cabeza[16] = {};
        const auto n = static_cast<size_t>(std::min<int64_t>(15, limite - pos));
        std::memcpy(cabeza, r.datos() + pos, n);
        if (std::memchr(cabeza, '\0', n) != nullptr && filaDe(cabeza) != nullptr &&
            empiezaBloque(r, pos, limite))
        {
            return pos;
        }
    }
    return limite;
}

}  // namespace

bool ListaEntidades::lee(SerializadorLecturaBase& lector)
{
    vacia();
    danadas = 0;
    std::unique_ptr<BloqueSerializacion> bloque(lector.leeBloque64());
    if (!bloque->esTipo(etiqueta()))
    {
        finLectura(lector, bloque.release());
        return false;
    }
    uint64_t cuenta = 0;
    if (!lector.leeLongitud64(cuenta))
    {
        return false;
    }
    // Resuming after a damaged block needs the file's bytes and positions: the list reads
    // through the binary reader, the one the format has.
    auto* binario = dynamic_cast<SerializadorBinarioLectura*>(&lector);
    if (binario == nullptr)
    {
        return false;
    }
    SerializadorBinarioLectura& r = *binario;
    // The list ends where its length says, or at the file's end if that comes first.
    const int64_t limite =
        r.posicion() + static_cast<int64_t>(std::min(bloque->restante(), r.bytesDisponibles()));
    // The count comes from the file (negative as signed: none): the loop also ends at the
    // list's end, so a lying count cannot spin; in a sound file every entity is read first.
    const uint64_t total = static_cast<int64_t>(cuenta) > 0 ? cuenta : 0;
    for (uint64_t i = 0; i < total && r.posicion() < limite; ++i)
    {
        const int64_t desde = r.posicion();
        const marco_t m = leeMarco(r);
        std::unique_ptr<Entidad> e = intentaLeer(r, m, limite);
        if (!e)
        {
            // Never read on from the middle of a block: the bytes up to the next sound block
            // are kept whole, to be written back as they came.
            const int64_t hasta = siguienteBloque(r, m, limite);
            e.reset(EntidadDesconocida::cruda(
                std::vector<uint8_t>(r.datos() + desde, r.datos() + hasta)));
            r.situa(hasta);
            ++danadas;
        }
        push_back(e.release());
    }
    return finLectura(r, bloque.release());
}

}  // namespace cad
