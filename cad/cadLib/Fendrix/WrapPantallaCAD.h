// The host's handle to a display device that the host made; it never owns the device.
#pragma once

#include "pantalla/PantallaCAD.h"

namespace Fendrix
{

class WrapPantallaCAD
{
public:
    WrapPantallaCAD() = default;
    ~WrapPantallaCAD() { Dispose(); }
    WrapPantallaCAD(const WrapPantallaCAD&) = delete;
    WrapPantallaCAD& operator=(const WrapPantallaCAD&) = delete;

    // Stores the pointer that the host's display component hands over.
    void setPantalla(cad::PantallaCAD* pantalla) { mPantalla = pantalla; }
    // Forgets the device; nothing here deletes it.
    void Dispose() { mPantalla = nullptr; }

    cad::PantallaCAD* mPantalla = nullptr;
};

}  // namespace Fendrix
