// The binary file writer of the document format, and its block that patches its length.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "base/FicheroAtomico.h"
#include "base/SerializadorEscrituraBase.h"

namespace cad
{

class SerializadorBinarioEscritura;

// Writes the tag and a zero length on construction; on deletion puts the real length there,
// counted from the length field's first byte to the current position.
class BloqueSerializacionBE : public BloqueSerializacion
{
public:
    BloqueSerializacionBE(SerializadorBinarioEscritura& w, const char* tag, int tipoBloque);
    ~BloqueSerializacionBE() override;

    SerializadorBinarioEscritura& escritor;
    int tipoBloque;
    int64_t posicionLongitud;
};

// Writes the document format. The bytes are assembled in memory, where block lengths are
// patched, and go to the file in large writes; a path is written through a FicheroAtomico,
// so the file appears, whole and checked, only when cierra() succeeds.
class SerializadorBinarioEscritura : public SerializadorEscrituraBase
{
public:
    // Writes `ruta` (UTF-8). Throws std::logic_error for a path that is not UTF-8; a file that
    // can't be created leaves abierto() false, every write does nothing, and mensaje() says
    // why.
    explicit SerializadorBinarioEscritura(const std::string& ruta);
    // Writes into memory only; bytes() gives the result.
    SerializadorBinarioEscritura();
    // cierra(): a writer that goes out of scope puts its file in place when all went well.
    ~SerializadorBinarioEscritura() override;
    SerializadorBinarioEscritura(const SerializadorBinarioEscritura&) = delete;
    SerializadorBinarioEscritura& operator=(const SerializadorBinarioEscritura&) = delete;

    void escribeVectorEnteros(const std::vector<int>& v) override;
    void escribeVectorPuntos(const std::vector<Punto3<double>>& v) override;
    void escribePlano(const void* plano) override;
    void escribeVector3(const Vector3D<double>& v) override;
    void escribePunto3(const Punto3<double>& p) override;
    void escribeVector2(const Vector2D<double>& v) override;
    void escribeVector3Simple(const Vector3D<float>& v) override;
    void escribeVector2Simple(const Vector2D<float>& v) override;
    void escribeBytes(const void* datos, uint32_t n) override;
    // A string longer than the 16-bit length field can tell is cut, at a character boundary,
    // to the longest that reads back: what enters the drawing is refused before it gets here.
    void escribeCadena(const std::string& s) override;
    void escribeDoble(double v) override;
    void escribeFlotante(float v) override;
    void escribeEntero(int32_t v) override;
    void escribeEnteroSinSigno(uint32_t v) override;
    void escribeCorto(int16_t v) override;
    void escribeCortoSinSigno(uint16_t v) override;
    void escribeCaracter(char v) override;
    void escribeByte(uint8_t v) override;
    void escribeBooleano(bool v) override;
    void escribeLongitud16(uint32_t v) override;
    void escribeLongitud32(uint32_t v) override;
    void escribeLongitud64(uint64_t v) override;
    BloqueSerializacion* nuevoBloque(const char* tag, int tipoBloque) override;
    BloqueSerializacion* nuevoBloque16(const char* tag) override;
    BloqueSerializacion* nuevoBloque32(const char* tag) override;
    BloqueSerializacion* nuevoBloque64(const char* tag) override;
    void escribePuntos(const Punto3<double>* puntos, size_t n) override;

    bool abierto() const;
    // Bytes written so far, from the start of the file.
    int64_t posicion() const { return static_cast<int64_t>(base + usado); }
    // Overwrites bytes already written at `pos`; a block's length goes in this way.
    void reescribe(int64_t pos, const void* datos, uint32_t n);
    // Ends the file: the last bytes go out, and a file written through a path is flushed,
    // checked and put in place of its target. False, with the reason in mensaje(), when
    // anything failed; the target is then untouched. Later writes do nothing.
    bool cierra();
    // Drops everything written: the target is untouched.
    void descarta();
    // Why the file could not be written; empty while all goes well.
    const std::string& mensaje() const;
    int codigoError() const;
    // Everything written, for a writer into memory.
    std::vector<uint8_t> bytes() const;

private:
    // Sends the memory to the file once it has grown this much.
    static constexpr size_t kVolcado = size_t{1} << 20;

    // The common case inline: an open writer with room in memory.
    void anade(const void* datos, size_t n)
    {
        if (n == 0)
        {
            return;
        }
        if (activo && capacidad - usado >= n)
        {
            std::memcpy(memoria.get() + usado, datos, n);
            usado += n;
            return;
        }
        anadeLento(datos, n);
    }
    void anadeLento(const void* datos, size_t n);
    void vuelca();

    std::unique_ptr<FicheroAtomico> fichero;
    memoria_t memoria;
    size_t usado = 0;
    size_t capacidad = 0;
    // File offset of memoria[0]: what stands before it is on the file already.
    uint64_t base = 0;
    bool cerrado = false;
    bool enMemoria = false;
    // abierto(), kept for the writes' fast path.
    bool activo = false;
};

}  // namespace cad
