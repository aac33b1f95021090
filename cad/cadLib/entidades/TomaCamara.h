// TomaCamara: written in this change.
#pragma once
