#include "primitives/dispatch.h"

#include "primitives/primitives.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

// A table of the test's own: two slots, and functions that are told apart by their addresses only.
PrimitiveFunction g_first = nullptr;
PrimitiveFunction g_second = nullptr;
void AssignFirst(PrimitiveFunction f) { g_first = f; }
void AssignSecond(PrimitiveFunction f) { g_second = f; }

int g_called = 0;
template <int Number>
void Implementation() {
    g_called = Number;
}

int Called(PrimitiveFunction f) {
    g_called = -1;
    if (f != nullptr) f();
    return g_called;
}

/// Row r, column c holds the implementation 10*r + c; the reserved column is empty.
const DispatchRecord kRecords[] = {
    {"first", AssignFirst, {Implementation<10>, nullptr, Implementation<12>, Implementation<13>}},
    {"second", AssignSecond, {Implementation<20>, nullptr, Implementation<22>, Implementation<23>}},
};
constexpr DispatchTable kTable = {kRecords, 2};

class Dispatch : public ::testing::Test {
protected:
    void SetUp() override { g_first = g_second = Implementation<99>; }
};

TEST_F(Dispatch, FillingWritesTheColumnIntoEverySlot) {
    for (const int32 column : {0, 2, 3}) {
        EXPECT_TRUE(FillSlots(kTable, column));
        EXPECT_EQ(10 + column, Called(g_first));
        EXPECT_EQ(20 + column, Called(g_second));
    }
}

TEST_F(Dispatch, FillingStopsAtTheFirstEmptyEntryAndLeavesWhatWasWritten) {
    const DispatchRecord records[] = {
        kRecords[0],
        {"second", AssignSecond, {Implementation<20>, nullptr, nullptr, Implementation<23>}},
    };
    EXPECT_FALSE(FillSlots({records, 2}, 2));
    EXPECT_EQ(12, Called(g_first));
    EXPECT_EQ(99, Called(g_second));
}

TEST_F(Dispatch, TheReservedColumnChangesNoSlot) {
    EXPECT_FALSE(FillSlots(kTable, 1));
    EXPECT_EQ(99, Called(g_first));
    EXPECT_EQ(99, Called(g_second));
}

TEST_F(Dispatch, AnEmptyTableIsFilledButNeverSelected) {
    EXPECT_TRUE(FillSlots({kRecords, 0}, 1));
    EXPECT_EQ(-1, SelectColumn({kRecords, 0}, 0));
    EXPECT_EQ(99, Called(g_first));
}

TEST_F(Dispatch, EachClassTakesItsBestColumnAndClassOneTheGenericOne) {
    const int32 columns[] = {0, 0, 2, 3};
    for (int32 processorClass = 0; processorClass < kClassCount; ++processorClass) {
        EXPECT_EQ(columns[processorClass], SelectColumn(kTable, processorClass)) << "class " << processorClass;
        EXPECT_EQ(10 + columns[processorClass], Called(g_first));
        EXPECT_EQ(20 + columns[processorClass], Called(g_second));
    }
}

TEST_F(Dispatch, AColumnWithAGapFallsBackToTheNextOne) {
    const DispatchRecord records[] = {
        kRecords[0],
        {"second", AssignSecond, {Implementation<20>, nullptr, Implementation<22>, nullptr}},
    };
    EXPECT_EQ(2, SelectColumn({records, 2}, 3));
    EXPECT_EQ(12, Called(g_first));
    EXPECT_EQ(22, Called(g_second));
}

TEST_F(Dispatch, WithoutAWholeColumnNothingIsSelected) {
    const DispatchRecord records[] = {{"first", AssignFirst, {nullptr, nullptr, nullptr, nullptr}}};
    EXPECT_EQ(-1, SelectColumn({records, 1}, 3));
    EXPECT_EQ(99, Called(g_first));
}

TEST_F(Dispatch, AClassOutOfRangeSelectsNothing) {
    for (const int32 processorClass : {-1, 4, 100}) {
        EXPECT_EQ(-1, SelectColumn(kTable, processorClass)) << processorClass;
    }
    EXPECT_EQ(99, Called(g_first));
}

/// True when every slot holds the generic implementation.
void ExpectGenericSlots(const char* when) {
#define ORVANE_TEST_SLOT(name) EXPECT_EQ(&generic::name, name) << #name << ", " << when;
    ORVANE_PRIMITIVE_ENTRIES(ORVANE_TEST_SLOT)
#undef ORVANE_TEST_SLOT
}

TEST(PrimitiveTable, EveryPrimitiveHasOneRecordAndAnEmptyReservedColumn) {
#define ORVANE_TEST_NAME(name) #name,
    const std::vector<std::string> names = {ORVANE_PRIMITIVE_ENTRIES(ORVANE_TEST_NAME)};
#undef ORVANE_TEST_NAME
    const DispatchTable table = PrimitiveTable();
    ASSERT_EQ(names.size(), static_cast<std::size_t>(table.count));
    EXPECT_EQ(69, table.count);
    EXPECT_EQ(names.size(), std::set<std::string>(names.begin(), names.end()).size()) << "a name stands twice";
    for (std::size_t i = 0; i < names.size(); ++i) {
        const DispatchRecord& record = table.records[i];
        EXPECT_EQ(names[i], record.name);
        EXPECT_NE(nullptr, record.assign) << names[i];
        EXPECT_EQ(nullptr, record.columns[1]) << names[i];
        for (const int32 column : {0, 2, 3}) EXPECT_NE(nullptr, record.columns[column]) << names[i];
    }
}

TEST(PrimitiveTable, SlotsAreGenericBeforeSelectionAndAfterTheReservedColumnFailed) {
    ExpectGenericSlots("before selection");
    EXPECT_FALSE(FillSlots(PrimitiveTable(), 1));
    ExpectGenericSlots("after the reserved column");
}

TEST(PrimitiveTable, EveryColumnWritesEverySlot) {
    for (const int32 column : {2, 3, 0}) {
#define ORVANE_TEST_CLEAR(name) name = nullptr;
        ORVANE_PRIMITIVE_ENTRIES(ORVANE_TEST_CLEAR)
#undef ORVANE_TEST_CLEAR
        EXPECT_TRUE(FillSlots(PrimitiveTable(), column));
#define ORVANE_TEST_WRITTEN(name) EXPECT_NE(nullptr, name) << #name << ", column " << column;
        ORVANE_PRIMITIVE_ENTRIES(ORVANE_TEST_WRITTEN)
#undef ORVANE_TEST_WRITTEN
    }
    ExpectGenericSlots("after the generic column");
}

TEST(PrimitiveTable, SelectionSucceedsHereAndKeepsItsColumn) {
    EXPECT_EQ(0, SelectPrimitiveColumn());
    const int32 column = SelectedColumn();
    EXPECT_TRUE(column == 0 || column == 2 || column == 3) << column;
    EXPECT_EQ(PrimitiveTable().records[0].columns[column], reinterpret_cast<PrimitiveFunction>(primMalloc));
}

} // namespace
} // namespace orvane::test
