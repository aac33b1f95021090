// EditorDibujo: polylines and their merges.
#include "editor/EditorDibujo.h"
#include "entidades/Polilinea.h"

namespace cad
{

// PLACEHOLDER (helper 2 replaces this file's bodies).
int EditorDibujo::comandoPolilinea(bool, bool, Polilinea**) { return 0; }
int EditorDibujo::comandoPolilinea(bool unaSola, bool cerrada)
{
    return comandoPolilinea(unaSola, cerrada, nullptr);
}
bool EditorDibujo::comandoFusionPolilineas(Polilinea*, Polilinea*, bool) { return false; }
bool EditorDibujo::comandoFusionPolilineasNueva(Polilinea*, bool) { return false; }

}  // namespace cad
