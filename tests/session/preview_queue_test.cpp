#include "session/preview.h"

#include <gtest/gtest.h>

#include <utility>

namespace orvane {
namespace {

/// Told apart by its width.
Bitmap Numbered(int32 number) {
    Bitmap bitmap;
    bitmap.Create(number, 1);
    return bitmap;
}

TEST(PreviewQueue, GivesWhatItGotInOrderAndIsEmptyThen) {
    PreviewQueue queue;
    EXPECT_TRUE(queue.Pop().IsEmpty());
    for (const int32 number : {3, 1, 2}) queue.Push(Numbered(number));
    for (const int32 number : {3, 1, 2}) EXPECT_EQ(queue.Pop().Width(), number);
    EXPECT_TRUE(queue.Pop().IsEmpty());
}

TEST(PreviewQueue, KeepsTheNewestSixtyFour) {
    PreviewQueue queue;
    for (int32 number = 1; number <= 100; ++number) queue.Push(Numbered(number));
    for (int32 number = 37; number <= 100; ++number) ASSERT_EQ(queue.Pop().Width(), number);
    EXPECT_TRUE(queue.Pop().IsEmpty());
}

TEST(PreviewQueue, ForgetsWhatWaitsWhenCleared) {
    PreviewQueue queue;
    queue.Push(Numbered(1));
    queue.Clear();
    EXPECT_TRUE(queue.Pop().IsEmpty());
}

} // namespace
} // namespace orvane
