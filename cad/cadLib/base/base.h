// The foundation: value geometry, persistent objects, serialisers, colours, configuration.
#pragma once

#include "base/BloqueSerializacion.h"
#include "base/ColaMensajes.h"
#include "base/Color.h"
#include "base/Configuracion.h"
#include "base/Excepcion.h"
#include "base/GeneradorId.h"
#include "base/GestorMensajes.h"
#include "base/ObjetoCAD.h"
#include "base/Propiedades.h"
#include "base/ReferenciaObjetoCAD.h"
#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "base/Utf8.h"
#include "base/geometria/geometria.h"
