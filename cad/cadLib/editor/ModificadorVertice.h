// Vertex modifiers: what drags one hot element of an entity.
#pragma once
// PLACEHOLDER (helper 1 writes this header).
