// EditorDibujo: vertex drags and vertex marks.
#include "editor/EditorDibujo.h"
#include "modelo/PuntosCalientes.h"

namespace cad
{

// PLACEHOLDER (helper 1 replaces this file's bodies).
bool EditorDibujo::editaPunto(const elemento_seleccionado_t&) { return false; }
void EditorDibujo::marcaVerticesEntidad(Entidad*, uint32_t, uint32_t) {}
void EditorDibujo::quitaMarcasVerticesEntidad(Entidad*) {}

}  // namespace cad
