// EditorDibujo: the property front, by entity and by handle.
#include "editor/EditorDibujo.h"

namespace cad
{

// PLACEHOLDER (helper 4 replaces this file's bodies).
bool EditorDibujo::comandoPropiedades() { return false; }

}  // namespace cad
