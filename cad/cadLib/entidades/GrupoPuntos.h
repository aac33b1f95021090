// GrupoPuntos: written in this change.
#pragma once
