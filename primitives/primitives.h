// Every primitive by name. A call goes through a slot: one indirect jump to the implementation that
// `SelectPrimitiveColumn` chose for the processor; before selection the slots hold the generic ones.
// Signatures, status codes and meanings stand at the declarations in the topic headers below.
//
// Conventions: a region is walked row by row from its first pixel in memory; a step is the byte
// distance of two rows; channels are interleaved. Names tell element and layout: 8u, 16s, 16u, 32f; C1,
// C3 channels, P3 planes; I in place; Sfs with a scale factor.
#pragma once

#include "primitives/arithmetic.h"
#include "primitives/border.h"
#include "primitives/edge.h"
#include "primitives/entries.h"
#include "primitives/fill_copy.h"
#include "primitives/flood_fill.h"
#include "primitives/haar.h"
#include "primitives/integral.h"
#include "primitives/memory.h"
#include "primitives/morphology.h"
#include "primitives/pixel.h"
#include "primitives/resize.h"
#include "primitives/rotate.h"
#include "primitives/statistics.h"

namespace orvane {

#define ORVANE_DECLARE_SLOT(name) extern decltype(&generic::name) name;
ORVANE_PRIMITIVE_ENTRIES(ORVANE_DECLARE_SLOT)
#undef ORVANE_DECLARE_SLOT

} // namespace orvane
