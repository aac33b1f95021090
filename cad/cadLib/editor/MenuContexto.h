// The editor's own context-menu list.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace cad
{

// Items of a context menu kept by the editor; the facade's menu does not use them.
class MenuContexto
{
public:
    struct elemento_t
    {
        std::string texto;
        int32_t valor = 0;
    };

    std::vector<elemento_t> elementosMenu;
};

}  // namespace cad
