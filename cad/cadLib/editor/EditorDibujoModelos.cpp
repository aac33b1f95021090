// EditorDibujo: commands on whole models: a hole by a polyline, contour lines, the union.
#include "editor/EditorDibujo.h"

namespace cad
{

bool EditorDibujo::comandoHuecoPolilinea()
{
    return false;
}

int EditorDibujo::comandoIsolineas()
{
    return -1;
}

bool EditorDibujo::uneModelos()
{
    return false;
}

}  // namespace cad
