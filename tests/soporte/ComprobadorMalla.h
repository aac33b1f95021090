// Test support: the rules a sound mesh keeps, checked from its records alone. No walking
// operation of the mesh is called, so a fault in them cannot hide a fault in the records.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "modelo/Modelo3D.h"

// In cad, beside the mesh, so that a test anywhere in cad finds them by the argument's type.
namespace cad
{

// Every broken rule, up to `maximo` messages, each as "<record> <index>: <field> = <value>,
// <what is wrong>". An edge is dead when an end is -1. The rules:
//  - a vertex's edge is -1 or a live edge that touches it;
//  - a dead edge (both ends -1) has -1 in every index field, and no edge has one end -1;
//  - a live edge has both ends in range; a side without face has no wings, a side with one
//    names a face that exists and is not deleted, and its two wings are live edges;
//  - the wings undo each other: the next edge's previous on that face is this one and the
//    previous edge's next is this one; the next edge shares an end with this one;
//  - the walk of each face from each of its edges comes back to that edge within as many
//    steps as there are edges, without leaving the face;
//  - a live face's edge is a live edge that names it.
std::vector<std::string> defectosMalla(const Modelo3D& m, size_t maximo = 20);

// For EXPECT_TRUE: success when defectosMalla finds nothing, else a failure listing it.
::testing::AssertionResult mallaSana(const Modelo3D& m);

}  // namespace cad
