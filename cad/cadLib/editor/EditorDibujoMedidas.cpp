// EditorDibujo: the measure commands. PLACEHOLDER: being written.
#include <string>

#include "editor/EditorDibujo.h"

namespace cad
{

double EditorDibujo::comandoDistancia() { return 0.0; }
bool EditorDibujo::comandoDistancia(Punto3<double>*, Punto3<double>*, double*, double*, bool)
{
    return false;
}
bool EditorDibujo::comandoDistanciaConSnap(Punto3<double>*, Punto3<double>*, double*, double*,
                                           bool)
{
    return false;
}
double EditorDibujo::comandoDistanciaPolilinea() { return 0.0; }
double EditorDibujo::comandoArea() { return 0.0; }
void EditorDibujo::comandoAngulo() {}
void EditorDibujo::textoEnEntidad(Entidad*, double, const std::string*) {}

}  // namespace cad
