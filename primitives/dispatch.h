// The dispatch table: for each primitive its slot and the implementation of each processor column,
// and the walk that writes one column into the slots.
#pragma once

#include "primitives/types.h"

namespace orvane {

/// A primitive without its type: the table holds many signatures side by side.
using PrimitiveFunction = void (*)();

inline constexpr int32 kColumnCount = 4; // generic, reserved (empty), SSE2, SSE3
inline constexpr int32 kClassCount = 4;

/// One primitive. `assign` writes an implementation into the slot with the slot's own type.
struct DispatchRecord {
    const char* name;
    void (*assign)(PrimitiveFunction implementation);
    PrimitiveFunction columns[kColumnCount];
};

struct DispatchTable {
    const DispatchRecord* records;
    int32 count;
};

/// The table of all primitives.
DispatchTable PrimitiveTable();

/// Writes one column into the slots, record by record. At the first record without an entry it stops
/// and answers false; what was written before stays.
bool FillSlots(DispatchTable table, int32 column);

/// Tries the columns of a processor class from best to generic. The column that took, or -1 when
/// none did or the class or the table is out of range.
int32 SelectColumn(DispatchTable table, int32 processorClass);

/// Chooses the column for this processor, once, before the first primitive is used. 0, or -1 after a
/// message box when no column fits.
int32 SelectPrimitiveColumn();

/// The column chosen last, 0 before any choice.
int32 SelectedColumn();

} // namespace orvane
