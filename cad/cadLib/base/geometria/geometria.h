// Umbrella header for the value geometry types.
#pragma once

#include "base/geometria/Linea3D.h"
#include "base/geometria/Matriz4.h"
#include "base/geometria/Plano3D.h"
#include "base/geometria/Polilinea3D.h"
#include "base/geometria/Punto2.h"
#include "base/geometria/Punto3.h"
#include "base/geometria/Punto4.h"
#include "base/geometria/Rect2.h"
#include "base/geometria/Rect3.h"
#include "base/geometria/SistemaLocal3D.h"
#include "base/geometria/Vector2D.h"
#include "base/geometria/Vector3D.h"
#include "base/geometria/Vector4D.h"
