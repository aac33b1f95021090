// Files written beside their target and put in its place only when complete, and whole files
// read into memory; both say why they failed in the user's words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

namespace cad
{

// What a checked file operation did. `mensaje` is empty when all went well, and otherwise
// says why in words for the user ("no queda espacio en el disco para guardar x.cad"); on a
// load that succeeded it may still tell of damaged entities.
struct resultadoFichero_t
{
    bool ok = false;
    int codigoError = 0;  // errno of the failure, 0 when none or not from the system
    std::string mensaje;
    uint64_t entidadesDanadas = 0;  // loads only: entities kept as raw bytes
};

// Memory for a whole file's bytes: large blocks are asked for in huge pages where the system
// gives them, as touching a fresh page one by one costs more than reading it.
struct liberaMemoria_t
{
    void operator()(unsigned char* p) const;
};
using memoria_t = std::unique_ptr<unsigned char[], liberaMemoria_t>;
// `n` bytes, not initialised; throws std::bad_alloc when there is no memory.
memoria_t reservaMemoria(size_t n);
// Asks for huge pages under the untouched memory of a large block already reserved (a
// vector's capacity about to be filled); small blocks and systems without them are left be.
void paginasGrandes(const void* p, size_t n);

// The failure of a system call on `ruta` as words for the user. `escritura` tells a write
// from a read; `codigo` is an errno value.
std::string mensajeErrorFichero(int codigo, const std::string& ruta, bool escritura);

// Writes a file so that its target is replaced only by a complete, checked copy: the bytes go
// to a fresh temporary file in the target's folder (unique name, created exclusively, never
// through a link), every write and the close are checked and the data is flushed to disk,
// and only then is it renamed over the target. When the target is a symbolic link the file
// it names is replaced, so the link keeps pointing at it; an existing target keeps its
// permissions. Whatever fails, the previous file stays as it was and the temporary file goes.
class FicheroAtomico
{
public:
    // Validates the path as UTF-8 (std::logic_error otherwise, before anything is touched)
    // and creates the temporary file; abierto() says whether that worked.
    explicit FicheroAtomico(const std::string& destino);
    // Discards the temporary file unless confirma() put it in place.
    ~FicheroAtomico();
    FicheroAtomico(const FicheroAtomico&) = delete;
    FicheroAtomico& operator=(const FicheroAtomico&) = delete;

    bool abierto() const { return descriptor >= 0; }
    // Appends; false from the first failure on, which confirma() then reports.
    bool escribe(const void* datos, size_t n);
    // Overwrites bytes already written at `posicion` (a block's length written after its
    // body); the file's end does not move.
    bool escribeEn(uint64_t posicion, const void* datos, size_t n);
    // Flushes to disk, closes and renames over the target. False, with the reason in
    // mensaje(), when anything failed since the start; the target is untouched then.
    bool confirma();
    // Drops the temporary file; the target is untouched. Harmless when already done.
    void descarta();

    int codigoError() const { return error; }
    const std::string& mensaje() const { return texto; }
    // The file that is replaced: the target, or what its links lead to.
    const std::string& rutaFinal() const { return final; }
    // Bytes written so far.
    uint64_t tamano() const { return escritos; }

private:
    void falla(int codigo);
    void falla(int codigo, const std::string& mensaje);

    std::string destino;
    std::string final;
    std::string temporal;
    int descriptor = -1;
    uint64_t escritos = 0;
    int error = 0;
    std::string texto;
    bool confirmado = false;
};

// A scratch file with no name in the folder of `ruta`, open for reading and writing: no
// other file can be met or replaced through it, and it goes away when closed or when the
// process ends. Null on failure, with an errno in `error`.
std::FILE* ficheroAnonimo(const std::string& ruta, int& error);

// A whole file read into memory. Only regular files are read: a FIFO, a device or a folder
// is refused at once, without waiting for a writer that may never come.
// Opens `ruta` for reading if it is a regular file, without waiting on a FIFO that has no
// writer. -1 otherwise, with `error` (errno; EINVAL for a file that is not regular) and
// `mensaje` in the user's words. The path is not validated as UTF-8 here.
int abreLecturaRegular(const std::string& ruta, int& error, std::string& mensaje);

class FicheroLeido
{
public:
    FicheroLeido() = default;
    // Validates the path as UTF-8 (std::logic_error otherwise) and reads the file; ok()
    // says whether that worked, mensaje() why not.
    explicit FicheroLeido(const std::string& ruta);

    bool ok() const { return leido; }
    const unsigned char* datos() const { return bytes.get(); }
    size_t tamano() const { return longitud; }
    int codigoError() const { return error; }
    const std::string& mensaje() const { return texto; }
    // Hands the bytes over; the object keeps none.
    memoria_t suelta() { return std::move(bytes); }

private:
    memoria_t bytes;
    size_t longitud = 0;
    bool leido = false;
    int error = 0;
    std::string texto;
};

}  // namespace cad
