// What the facade refuses to store: strings the file can't hold and non-finite coordinates.
// With an editor the refusal is told through its text channel; without one (after Dispose)
// it is refused all the same.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>

#include "base/Admisible.h"
#include "editor/EditorDibujo.h"

namespace Fendrix
{

inline bool admiteCadena(cad::EditorDibujo* editor, const std::string& s)
{
    return editor != nullptr ? editor->admiteCadena(s) : cad::cadenaAdmisible(s);
}

inline bool admiteCoordenadas(cad::EditorDibujo* editor, const double* valores, size_t n)
{
    return editor != nullptr ? editor->admiteCoordenadas(valores, n)
                             : cad::numerosFinitos(valores, n);
}

inline bool admiteCoordenadas(cad::EditorDibujo* editor, std::initializer_list<double> valores)
{
    return admiteCoordenadas(editor, valores.begin(), valores.size());
}

}  // namespace Fendrix
