#include "base/FicheroAtomico.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <new>
#include <system_error>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/Utf8.h"

namespace cad
{

namespace
{

namespace fs = std::filesystem;

// Links followed before giving up, as the system does.
constexpr int kMaximoEnlaces = 40;
// Bytes of the target's name kept in the temporary file's name, so that it stays within the
// system's limit of 255.
constexpr size_t kMaximoNombre = 200;
constexpr int kIntentosNombre = 1000;
// Writes from this size on are sent to the disk at once.
constexpr size_t kEnvioTemprano = size_t{1} << 20;

std::string carpetaDe(const std::string& ruta)
{
    const fs::path carpeta = fs::path(ruta).parent_path();
    return carpeta.empty() ? std::string(".") : carpeta.string();
}

// Cuts `nombre` to at most `n` bytes without splitting a UTF-8 sequence.
std::string recortaUtf8(const std::string& nombre, size_t n)
{
    if (nombre.size() <= n)
    {
        return nombre;
    }
    while (n > 0 && (static_cast<unsigned char>(nombre[n]) & 0xC0) == 0x80)
    {
        --n;
    }
    return nombre.substr(0, n);
}

// The file that a write to `ruta` must replace: `ruta` itself, or where its links lead. A
// missing file is its own answer (it will be created); `error` gets an errno otherwise.
std::string resuelveEnlaces(const std::string& ruta, int& error)
{
    fs::path p(ruta);
    for (int i = 0; i < kMaximoEnlaces; ++i)
    {
        struct stat st;
        if (::lstat(p.c_str(), &st) != 0)
        {
            if (errno != ENOENT)
            {
                error = errno;
            }
            return p.string();
        }
        if (!S_ISLNK(st.st_mode))
        {
            return p.string();
        }
        std::error_code ec;
        const fs::path destino = fs::read_symlink(p, ec);
        if (ec)
        {
            error = ec.value();
            return p.string();
        }
        p = destino.is_absolute() ? destino : p.parent_path() / destino;
    }
    error = ELOOP;
    return p.string();
}

// Writes all `n` bytes at the end (`posicion` negative) or at `posicion`, through short
// writes and interruptions; false with the errno in `error`.
bool escribeTodo(int fd, int64_t posicion, const unsigned char* p, size_t n, int& error)
{
    while (n > 0)
    {
        const ssize_t hecho = posicion < 0 ? ::write(fd, p, n) : ::pwrite(fd, p, n, posicion);
        if (hecho < 0)
        {
            if (errno == EINTR)
            {
                continue;
            }
            error = errno;
            return false;
        }
        p += hecho;
        n -= static_cast<size_t>(hecho);
        posicion += posicion < 0 ? 0 : hecho;
    }
    return true;
}

std::atomic<unsigned> contadorTemporales{0};

}  // namespace

void liberaMemoria_t::operator()(unsigned char* p) const
{
    std::free(p);
}

void paginasGrandes(const void* p, size_t n)
{
    constexpr uintptr_t kPaginaGrande = uintptr_t{2} << 20;
    // Only whole huge pages inside the block: the advice must not reach memory of others.
    const auto inicio = (reinterpret_cast<uintptr_t>(p) + kPaginaGrande - 1) & ~(kPaginaGrande - 1);
    const auto fin = (reinterpret_cast<uintptr_t>(p) + n) & ~(kPaginaGrande - 1);
    if (p != nullptr && fin > inicio)
    {
        ::madvise(reinterpret_cast<void*>(inicio), fin - inicio, MADV_HUGEPAGE);
    }
}

memoria_t reservaMemoria(size_t n)
{
    constexpr size_t kPaginaGrande = size_t{2} << 20;
    void* p = nullptr;
    if (n >= 2 * kPaginaGrande)
    {
        p = std::aligned_alloc(kPaginaGrande,
                               (n + kPaginaGrande - 1) / kPaginaGrande * kPaginaGrande);
        if (p != nullptr)
        {
            ::madvise(p, n, MADV_HUGEPAGE);
        }
    }
    else
    {
        p = std::malloc(n > 0 ? n : 1);
    }
    if (p == nullptr)
    {
        throw std::bad_alloc();
    }
    return memoria_t(static_cast<unsigned char*>(p));
}

std::string mensajeErrorFichero(int codigo, const std::string& ruta, bool escritura)
{
    switch (codigo)
    {
        case ENOSPC:
        case EDQUOT:
            return "no queda espacio en el disco para escribir " + ruta;
        case EFBIG:
            return "el fichero " + ruta + " supera el tamaño que admite el sistema";
        case EACCES:
        case EPERM:
            return escritura ? "sin permiso para escribir " + ruta
                             : "sin permiso para leer " + ruta;
        case EROFS:
            return "el disco de " + ruta + " es de solo lectura";
        case ENOENT:
            return escritura ? "no existe la carpeta " + carpetaDe(ruta)
                             : "no existe el fichero " + ruta;
        case ENOTDIR:
            return "una parte de la ruta " + ruta + " no es una carpeta";
        case EISDIR:
            return ruta + " es una carpeta";
        case ELOOP:
            return "demasiados enlaces simbólicos en " + ruta;
        case ENAMETOOLONG:
            return "la ruta es demasiado larga: " + ruta;
        case EIO:
            return "error del disco al " + std::string(escritura ? "escribir " : "leer ") + ruta;
        default:
            return std::string(escritura ? "no se pudo escribir " : "no se pudo leer ") + ruta +
                   ": " + std::strerror(codigo);
    }
}

FicheroAtomico::FicheroAtomico(const std::string& ruta) : destino(ruta)
{
    utf8AUtf16(ruta);
    int codigo = 0;
    final = resuelveEnlaces(ruta, codigo);
    if (codigo != 0)
    {
        falla(codigo);
        return;
    }
    struct stat previo;
    const bool existe = ::stat(final.c_str(), &previo) == 0;
    if (existe && S_ISDIR(previo.st_mode))
    {
        falla(EISDIR);
        return;
    }
    if (existe && !S_ISREG(previo.st_mode))
    {
        // Renaming over a device or a FIFO would replace it by a plain file.
        falla(EINVAL, ruta + " no es un fichero regular");
        return;
    }
    // A file the user may not write stays so: the rename would replace it all the same.
    if (existe && ::access(final.c_str(), W_OK) != 0)
    {
        falla(errno);
        return;
    }

    const fs::path objetivo(final);
    const std::string carpeta = carpetaDe(final);
    const std::string nombre = recortaUtf8(objetivo.filename().string(), kMaximoNombre);
    for (int intento = 0; intento < kIntentosNombre; ++intento)
    {
        const unsigned n = contadorTemporales.fetch_add(1);
        temporal = (fs::path(carpeta) / ("." + nombre + "." + std::to_string(::getpid()) + "-" +
                                         std::to_string(n) + ".tmp"))
                       .string();
        // 0666 as any new file: the process's umask decides, as it would for the target.
        descriptor =
            ::open(temporal.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
        if (descriptor >= 0 || errno != EEXIST)
        {
            break;
        }
    }
    if (descriptor < 0)
    {
        const int e = errno;
        temporal.clear();
        falla(e);
        return;
    }
    if (existe)
    {
        if (::geteuid() == 0)
        {
            // Only the superuser can give the file to its former owner; others own it anyway.
            [[maybe_unused]] const int r = ::fchown(descriptor, previo.st_uid, previo.st_gid);
        }
        if (::fchmod(descriptor, previo.st_mode & 07777) != 0)
        {
            falla(errno);
        }
    }
}

FicheroAtomico::~FicheroAtomico()
{
    if (!confirmado)
    {
        descarta();
    }
}

void FicheroAtomico::falla(int codigo)
{
    falla(codigo, mensajeErrorFichero(codigo, destino, true));
}

void FicheroAtomico::falla(int codigo, const std::string& mensaje)
{
    // The first failure is the one worth telling; later ones follow from it.
    if (error == 0 && texto.empty())
    {
        error = codigo;
        texto = mensaje;
    }
}

bool FicheroAtomico::escribe(const void* datos, size_t n)
{
    if (descriptor < 0 || error != 0 || !texto.empty())
    {
        return false;
    }
    int codigo = 0;
    if (!escribeTodo(descriptor, -1, static_cast<const unsigned char*>(datos), n, codigo))
    {
        falla(codigo);
        return false;
    }
    // A large piece starts on its way to the disk now, while the next one is prepared, so
    // that little is left for the flush at the end.
    if (n >= kEnvioTemprano)
    {
        ::sync_file_range(descriptor, static_cast<off_t>(escritos), static_cast<off_t>(n),
                          SYNC_FILE_RANGE_WRITE);
    }
    escritos += n;
    return true;
}

bool FicheroAtomico::escribeEn(uint64_t posicion, const void* datos, size_t n)
{
    if (descriptor < 0 || error != 0 || !texto.empty())
    {
        return false;
    }
    int codigo = 0;
    if (!escribeTodo(descriptor, static_cast<int64_t>(posicion),
                     static_cast<const unsigned char*>(datos), n, codigo))
    {
        falla(codigo);
        return false;
    }
    return true;
}

bool FicheroAtomico::confirma()
{
    if (confirmado)
    {
        return true;
    }
    if (descriptor < 0 || error != 0 || !texto.empty())
    {
        if (texto.empty())
        {
            falla(EIO);
        }
        descarta();
        return false;
    }
    // Some file systems cannot flush (EINVAL): their data is as safe as they make it.
    if (::fsync(descriptor) != 0 && errno != EINVAL)
    {
        falla(errno);
        descarta();
        return false;
    }
    const int fd = descriptor;
    descriptor = -1;
    if (::close(fd) != 0)
    {
        falla(errno);
        descarta();
        return false;
    }
    if (::rename(temporal.c_str(), final.c_str()) != 0)
    {
        falla(errno);
        descarta();
        return false;
    }
    confirmado = true;
    temporal.clear();
    // The rename itself must reach the disk too; a folder that cannot be flushed leaves it to
    // the system, and the file is in place either way.
    const int carpeta = ::open(carpetaDe(final).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (carpeta >= 0)
    {
        [[maybe_unused]] const int r = ::fsync(carpeta);
        ::close(carpeta);
    }
    return true;
}

void FicheroAtomico::descarta()
{
    if (descriptor >= 0)
    {
        ::close(descriptor);
        descriptor = -1;
    }
    if (!temporal.empty())
    {
        ::unlink(temporal.c_str());
        temporal.clear();
    }
}

std::FILE* ficheroAnonimo(const std::string& ruta, int& error)
{
    const std::string carpeta = carpetaDe(ruta);
    int fd = ::open(carpeta.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (fd < 0 && (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL))
    {
        // A file system without unnamed files: a fresh name, removed as soon as it is open.
        for (int intento = 0; intento < kIntentosNombre && fd < 0; ++intento)
        {
            const std::string nombre =
                (fs::path(carpeta) / (".tarvelo." + std::to_string(::getpid()) + "-" +
                                      std::to_string(contadorTemporales.fetch_add(1)) + ".tmp"))
                    .string();
            fd = ::open(nombre.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
            if (fd >= 0)
            {
                ::unlink(nombre.c_str());
            }
            else if (errno != EEXIST)
            {
                break;
            }
        }
    }
    if (fd < 0)
    {
        error = errno;
        return nullptr;
    }
    std::FILE* f = ::fdopen(fd, "w+");
    if (f == nullptr)
    {
        error = errno;
        ::close(fd);
    }
    return f;
}

int abreLecturaRegular(const std::string& ruta, int& error, std::string& mensaje)
{
    // Non-blocking, so that a FIFO with no writer is refused instead of waited for.
    const int fd = ::open(ruta.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
    {
        error = errno;
        mensaje = mensajeErrorFichero(error, ruta, false);
        return -1;
    }
    struct stat st = {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode))
    {
        error = S_ISDIR(st.st_mode) ? EISDIR : EINVAL;
        mensaje = error == EISDIR ? mensajeErrorFichero(error, ruta, false)
                                  : ruta + " no es un fichero regular";
        ::close(fd);
        return -1;
    }
    return fd;
}

FicheroLeido::FicheroLeido(const std::string& ruta)
{
    utf8AUtf16(ruta);
    const int fd = abreLecturaRegular(ruta, error, texto);
    if (fd < 0)
    {
        return;
    }
    struct stat st = {};
    ::fstat(fd, &st);
    const auto previsto = static_cast<size_t>(st.st_size);
    bytes = reservaMemoria(previsto > 0 ? previsto : 1);
    // The file may shrink while it is read: what came is what there is.
    while (longitud < previsto)
    {
        const ssize_t n = ::read(fd, bytes.get() + longitud, previsto - longitud);
        if (n < 0 && errno == EINTR)
        {
            continue;
        }
        if (n < 0)
        {
            error = errno;
            texto = mensajeErrorFichero(error, ruta, false);
            ::close(fd);
            return;
        }
        if (n == 0)
        {
            break;
        }
        longitud += static_cast<size_t>(n);
    }
    ::close(fd);
    leido = true;
}

}  // namespace cad
