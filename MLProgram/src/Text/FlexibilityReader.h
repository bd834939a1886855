// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/Program.h"
#include "Text/Literal.h"

#include <map>
#include <string>

namespace MLProgram {

// Makes sense of a function's attribute `FlexibleShapeInformation`: pairs of a word and a dictionary, which are
//
//   "DefaultShapes"     shape by parameter                      {{"x", [1, 4]}}
//   "RangeDims"         bounds of each dimension by parameter   {{"x", [[1, 4], [4, 4]]}}, upper -1: none
//   "EnumeratedShapes"  of some label, shape by parameter       {{"a1", {{"x", [1]}}}, {"b2", {{"x", [2]}}}}
//
// Other words are passed over. Errors: MLModelError (invalidProgram) for values of other forms.
std::map<std::string, ShapeFlexibility> shapeFlexibility(const Literal& information);

} // namespace MLProgram
