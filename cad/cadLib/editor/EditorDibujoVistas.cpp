// EditorDibujo: view, reference plane and local-system commands. PLACEHOLDER: being written.
#include <string>

#include "editor/EditorDibujo.h"

namespace cad
{

bool EditorDibujo::comandoEncuadre() { return true; }
bool EditorDibujo::comandoRotacion() { return true; }
bool EditorDibujo::comandoZoomVentana() { return false; }
bool EditorDibujo::comandoZoomVentana(const std::string&, const std::string&) { return false; }
void EditorDibujo::zoomEscala(double) {}
void EditorDibujo::zoomVentana(int, int, int, int) {}
void EditorDibujo::zoomVentana(double, double, double, double, double, double) {}
bool EditorDibujo::zoomExtension() { return true; }
bool EditorDibujo::zoomExtension(Entidad*) { return true; }
bool EditorDibujo::comandoPlanoReferencia() { return false; }
void EditorDibujo::setPlanoReferenciaVista() {}
bool EditorDibujo::comandoCentroRotacion() { return false; }
bool EditorDibujo::comandoSistemaLocal(const std::string*) { return false; }
bool EditorDibujo::comandoPosicionCamara() { return false; }
bool EditorDibujo::comandoInterseccionPlanos() { return false; }

}  // namespace cad
