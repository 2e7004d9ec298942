// Slots and their table. Every column has the same results to the bit, so the SSE2 and SSE3 columns name the generic
// functions too: their inner loops come in a form for each instruction set by themselves.
#include "primitives/dispatch.h"

#include "platform/message_box.h"
#include "primitives/instruction_set.h"
#include "primitives/primitives.h"
#include "primitives/processor.h"

#include <type_traits>

namespace orvane {

// Statically initialised, so that primitives work before selection and after a failed one.
#define ORVANE_DEFINE_SLOT(name) decltype(&generic::name) name = &generic::name;
ORVANE_PRIMITIVE_ENTRIES(ORVANE_DEFINE_SLOT)
#undef ORVANE_DEFINE_SLOT

namespace {

template <auto& Slot>
void Assign(PrimitiveFunction implementation) {
    Slot = reinterpret_cast<std::remove_reference_t<decltype(Slot)>>(implementation);
}

#define ORVANE_RECORD(name)                                                                                            \
    {#name,                                                                                                            \
     Assign<name>,                                                                                                     \
     {reinterpret_cast<PrimitiveFunction>(&generic::name), nullptr,                                                    \
      reinterpret_cast<PrimitiveFunction>(&generic::name), reinterpret_cast<PrimitiveFunction>(&generic::name)}},
const DispatchRecord kRecords[] = {ORVANE_PRIMITIVE_ENTRIES(ORVANE_RECORD)};
#undef ORVANE_RECORD

constexpr int32 kEnd = 4;
constexpr int32 kWaterfall[kClassCount][kColumnCount + 1] = {
    {0, kEnd},
    {1, 0, kEnd},
    {2, 1, 0, kEnd},
    {3, 2, 1, 0, kEnd},
};

int32 g_selectedColumn = 0;

} // namespace

DispatchTable PrimitiveTable() { return {kRecords, static_cast<int32>(sizeof(kRecords) / sizeof(kRecords[0]))}; }

bool FillSlots(DispatchTable table, int32 column) {
    for (int32 i = 0; i < table.count; ++i) {
        const DispatchRecord& record = table.records[i];
        if (record.columns[column] == nullptr) return false;
        record.assign(record.columns[column]);
    }
    return true;
}

int32 SelectColumn(DispatchTable table, int32 processorClass) {
    if (table.count < 1 || processorClass < 0 || processorClass >= kClassCount) return -1;
    for (const int32* column = kWaterfall[processorClass]; *column != kEnd; ++column) {
        if (FillSlots(table, *column)) return *column;
    }
    return -1;
}

int32 SelectPrimitiveColumn() {
    const int32 column = SelectColumn(PrimitiveTable(), ProcessorClass(ProcessorCode(SystemCpuid())));
    if (column < 0) {
        ShowErrorBox("Set primitive library error",
                     " No primitive set matching to examined CPU was found during the Waterfall procedure");
        return -1;
    }
    g_selectedColumn = column;
    UseInstructionSet(BestInstructionSet());
    return 0;
}

int32 SelectedColumn() { return g_selectedColumn; }

} // namespace orvane
