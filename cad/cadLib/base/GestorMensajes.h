// Process-wide table of user-visible texts keyed by group and number, loadable from a file.
#pragma once

#include <map>
#include <mutex>
#include <string>

namespace cad
{

// Every text the kernel shows is fetched with its built-in wording, so the table works with
// no file loaded; a message file replaces the wordings, for instance with a translation.
// Every call takes the table's lock, as editors on separate threads fetch and add texts at
// once. A pointer from mensaje() is not covered by the lock: load the file before drawings
// run on other threads, or not while one of them shows a text.
class GestorMensajes
{
public:
    // The form of one line of a message file. The library reads such files but writes none.
    static constexpr const char* kFormatoLineaMensaje = "%d,%d,\"%s\"\n";
    // fgets buffer; a longer line is read in pieces and each piece is taken as a line.
    static constexpr int kTamanoLinea = 1024;

    static GestorMensajes& Instancia();

    GestorMensajes(const GestorMensajes&) = delete;
    GestorMensajes& operator=(const GestorMensajes&) = delete;

    // Empties the table, then reads `fichero` (a UTF-8 path) line by line. A line starting
    // with a zero byte, a blank or a line feed is skipped; the first line lacking a group,
    // a number or a text ends the reading and keeps what came before. True iff the file
    // opened. A null path gives false. A path that is not valid UTF-8 throws
    // std::logic_error("not a UTF-8 string") after the table has been emptied.
    // Invalidates every pointer returned by mensaje().
    bool cargarFicheroMensajes(const char* fichero);

    // The text under (grupo, numero). An absent key first stores `porDefecto` (null as the
    // empty text), so a later call with another default still gets the first one. The
    // pointer stays valid until the next load or setMensaje of the same key.
    const char* mensaje(int grupo, int numero, const char* porDefecto);

    // Stores a text, making the key if needed.
    void setMensaje(int grupo, int numero, const std::string& texto);

private:
    GestorMensajes() = default;

    std::mutex mCerrojo;
    std::map<int, std::map<int, std::string>> mMensajes;
};

}  // namespace cad
