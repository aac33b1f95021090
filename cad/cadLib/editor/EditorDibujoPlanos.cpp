// EditorDibujo: commands that join and extend planes.
#include "editor/EditorDibujo.h"

namespace cad
{

bool EditorDibujo::comandoUnePlanos()
{
    return false;
}

bool EditorDibujo::comandoExtiendePlanos()
{
    return false;
}

}  // namespace cad
