// Files written whole or not at all, and whole files read: what a failure leaves (nothing new,
// the previous file intact, no temporary file) and what it says.
#include "base/FicheroAtomico.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "soporte/FicheroTemporal.h"

namespace
{

namespace fs = std::filesystem;
using cad::FicheroAtomico;
using cad::FicheroLeido;
using cad::prueba::leeFichero;
using cad::prueba::restosTemporales;
using cad::prueba::rutaTemporal;

std::vector<uint8_t> bytes(const std::string& s)
{
    return {s.begin(), s.end()};
}

bool escribe(const std::string& ruta, const std::string& texto, std::string* mensaje = nullptr)
{
    FicheroAtomico f(ruta);
    f.escribe(texto.data(), texto.size());
    const bool ok = f.confirma();
    if (mensaje != nullptr)
    {
        *mensaje = f.mensaje();
    }
    return ok;
}

// A fresh file, a replaced one (its permissions kept), a patch of written bytes, and a link
// that keeps pointing at the file it named, which is the one replaced.
TEST(FicheroAtomico, reemplazaEnteroConservaPermisosYSigueEnlaces)
{
    const std::string ruta = rutaTemporal("plano.cad");
    ASSERT_TRUE(escribe(ruta, "primero"));
    EXPECT_EQ(leeFichero(ruta), bytes("primero"));
    ::chmod(ruta.c_str(), 0640);
    {
        FicheroAtomico f(ruta);
        f.escribe("segundo!", 8);
        ASSERT_TRUE(f.escribeEn(0, "S", 1));
        // Nothing reaches the target before the end.
        EXPECT_EQ(leeFichero(ruta), bytes("primero"));
        ASSERT_TRUE(f.confirma());
    }
    EXPECT_EQ(leeFichero(ruta), bytes("Segundo!"));
    struct stat st;
    ASSERT_EQ(::stat(ruta.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0640U);

    const std::string enlace = rutaTemporal("enlace.cad");
    fs::create_symlink(fs::path(ruta).filename(), enlace);
    ASSERT_TRUE(escribe(enlace, "por el enlace"));
    EXPECT_TRUE(fs::is_symlink(enlace));
    EXPECT_EQ(leeFichero(ruta), bytes("por el enlace"));
    EXPECT_TRUE(restosTemporales().empty());
}

// Every failure leaves the target as it was and no temporary file, and says why in the
// user's words: a missing folder, a folder or a device or a FIFO as the target, a file the
// user may not write, a write the system refuses (here a file size limit in a child
// process, as a full disk would), and an abandoned write.
TEST(FicheroAtomico, unFalloDejaElFicheroAnteriorYDiceElMotivo)
{
    std::string mensaje;
    const std::string sinCarpeta = rutaTemporal("no/hay/carpeta.cad");
    EXPECT_FALSE(escribe(sinCarpeta, "x", &mensaje));
    EXPECT_EQ(mensaje, "no existe la carpeta " + fs::path(sinCarpeta).parent_path().string());

    const std::string carpeta = rutaTemporal("carpeta");
    fs::create_directories(carpeta);
    EXPECT_FALSE(escribe(carpeta, "x", &mensaje));
    EXPECT_EQ(mensaje, carpeta + " es una carpeta");
    EXPECT_FALSE(escribe("/dev/null", "x", &mensaje));
    EXPECT_EQ(mensaje, "/dev/null no es un fichero regular");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    const std::string fifo = rutaTemporal("tuberia");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_FALSE(escribe(fifo, "x", &mensaje));
    EXPECT_TRUE(fs::is_fifo(fifo));

    const std::string ruta = rutaTemporal("anterior.cad");
    ASSERT_TRUE(escribe(ruta, "anterior"));
    if (::geteuid() != 0)
    {
        ::chmod(ruta.c_str(), 0444);
        EXPECT_FALSE(escribe(ruta, "nuevo", &mensaje));
        EXPECT_EQ(mensaje, "sin permiso para escribir " + ruta);
        ::chmod(ruta.c_str(), 0644);
    }

    // A child process whose files may not grow beyond 1 KiB: the write fails as on a full
    // disk, the child survives to tell, and the previous file stays.
    const pid_t hijo = ::fork();
    ASSERT_GE(hijo, 0);
    if (hijo == 0)
    {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limite{1024, 1024};
        ::setrlimit(RLIMIT_FSIZE, &limite);
        std::string motivo;
        const bool ok = escribe(ruta, std::string(4096, 'n'), &motivo);
        const bool dice =
            motivo == "el fichero " + ruta + " supera el tamaño que admite el sistema";
        std::_Exit(!ok && dice ? 0 : 1);
    }
    int estado = 0;
    ASSERT_EQ(::waitpid(hijo, &estado, 0), hijo);
    EXPECT_TRUE(WIFEXITED(estado) && WEXITSTATUS(estado) == 0);
    EXPECT_EQ(leeFichero(ruta), bytes("anterior"));

    {
        FicheroAtomico abandonado(ruta);
        abandonado.escribe("a medias", 8);
    }
    EXPECT_EQ(leeFichero(ruta), bytes("anterior"));
    EXPECT_TRUE(restosTemporales().empty());
}

// On a small file system of its own (root only; otherwise skipped with a message): a save
// that finds the disk full, and one onto a disk mounted read-only, report it and leave the
// previous file byte for byte, with no temporary file beside it.
TEST(FicheroAtomico, discoLlenoYSoloLectura)
{
    const std::string punto = rutaTemporal("tmpfs");
    fs::create_directories(punto);
    if (::geteuid() != 0 || ::mount("tmpfs", punto.c_str(), "tmpfs", 0, "size=64k") != 0)
    {
        GTEST_SKIP() << "mounting a small tmpfs needs root: the full-disk case is not run";
    }
    const std::string ruta = punto + "/plano.cad";
    std::string mensaje;
    EXPECT_TRUE(escribe(ruta, "anterior", &mensaje)) << mensaje;
    EXPECT_FALSE(escribe(ruta, std::string(200 * 1024, 'x'), &mensaje));
    EXPECT_EQ(mensaje, "no queda espacio en el disco para escribir " + ruta);
    EXPECT_EQ(leeFichero(ruta), bytes("anterior"));
    EXPECT_EQ(std::distance(fs::directory_iterator(punto), fs::directory_iterator()), 1);

    ASSERT_EQ(::mount("tmpfs", punto.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=64k"), 0);
    EXPECT_FALSE(escribe(ruta, "nuevo", &mensaje));
    EXPECT_EQ(mensaje, "el disco de " + ruta + " es de solo lectura");
    EXPECT_EQ(leeFichero(ruta), bytes("anterior"));
    ::umount(punto.c_str());
}

// Only regular files are read: a FIFO with no writer is refused at once instead of waited
// for (the read runs under a deadline), as are a folder and a missing file.
TEST(FicheroLeido, soloFicherosRegularesSinEsperar)
{
    const std::string fifo = rutaTemporal("tuberia");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    auto lectura = std::async(std::launch::async, [&] { return FicheroLeido(fifo).mensaje(); });
    if (lectura.wait_for(std::chrono::seconds(20)) != std::future_status::ready)
    {
        ADD_FAILURE() << "reading a FIFO hangs";
        std::_Exit(1);
    }
    EXPECT_EQ(lectura.get(), fifo + " no es un fichero regular");
    EXPECT_EQ(FicheroLeido(fs::temp_directory_path().string()).mensaje(),
              fs::temp_directory_path().string() + " es una carpeta");
    const std::string falta = rutaTemporal("falta.cad");
    const FicheroLeido ausente(falta);
    EXPECT_FALSE(ausente.ok());
    EXPECT_EQ(ausente.mensaje(), "no existe el fichero " + falta);

    const std::string ruta = rutaTemporal("leido.cad");
    ASSERT_TRUE(escribe(ruta, "contenido"));
    const FicheroLeido leido(ruta);
    ASSERT_TRUE(leido.ok());
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(leido.datos()), leido.tamano()),
              "contenido");
}

}  // namespace
