// Superficie: written in this change.
#pragma once
