// Policara: written in this change.
#pragma once
