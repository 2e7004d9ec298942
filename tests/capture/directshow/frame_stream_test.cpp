#include "capture/directshow/frame_stream.h"

#include "capture/directshow/com_holders.h"
#include "platform/thread_apartment.h"
#include "tests/support/fake_video.h"

#include <ocidl.h>

#include <cstring>

namespace orvane::test {
namespace {

class FrameObjects : public testing::Test {
protected:
    FrameObjects() {
        FakeDevice small;
        small.size = {5, 4};
        video_.devices.push_back(small);
        EXPECT_GT(capture_.EnumerateDevices(), 0);
        EXPECT_TRUE(capture_.OpenDevice(0));
        for (std::size_t i = 0; i < frame_.size(); ++i) frame_[i] = static_cast<uint8>(i);
    }
    void Deliver() {
        capture_.Run();
        capture_.BufferCB(0, frame_.data(), static_cast<int32>(frame_.size()));
    }
    /// What a stream holds, from its first byte.
    static std::vector<uint8> Contents(ISequentialStream& stream) {
        std::vector<uint8> bytes(4096);
        ULONG read = 0;
        EXPECT_TRUE(SUCCEEDED(stream.Read(bytes.data(), static_cast<ULONG>(bytes.size()), &read)));
        bytes.resize(read);
        return bytes;
    }
    void ExpectFile(const std::vector<uint8>& bytes) {
        ASSERT_EQ(bytes.size(), 54 + frame_.size());
        EXPECT_EQ(bytes[0], 'B');
        EXPECT_EQ(bytes[1], 'M');
        EXPECT_EQ(bytes[2], 54 + frame_.size());
        EXPECT_EQ(bytes[10], 54);
        BitmapHeader header;
        std::memcpy(&header, &bytes[14], sizeof header);
        EXPECT_EQ(header.biWidth, 5);
        EXPECT_EQ(header.biHeight, 4);
        EXPECT_TRUE(std::equal(frame_.begin(), frame_.end(), bytes.begin() + 54));
    }

    ThreadApartment apartment_;
    FakeVideo video_;
    CVideoCapture capture_{video_, false};
    std::vector<uint8> frame_ = std::vector<uint8>(16 * 4);
};

TEST_F(FrameObjects, AStreamHoldsTheWholeFile) {
    Deliver();
    int32 size = -1;
    ComPtr<IUnknown> object;
    *object.Put() = GrabFrameObject(capture_, FrameObject::stream, &size);
    ASSERT_TRUE(object);
    EXPECT_EQ(size, 118);
    auto& stream = static_cast<IStream&>(*object.Get());
    STATSTG state{};
    ASSERT_TRUE(SUCCEEDED(stream.Stat(&state, STATFLAG_NONAME)));
    EXPECT_EQ(state.cbSize.QuadPart, 118U);
    ExpectFile(Contents(stream));
    EXPECT_EQ(object.Release(), 0U) << "it is the caller's alone";
}

TEST_F(FrameObjects, ASequentialStreamHoldsTheSame) {
    Deliver();
    int32 size = -1;
    ComPtr<IUnknown> object;
    *object.Put() = GrabFrameObject(capture_, FrameObject::sequentialStream, &size);
    ASSERT_TRUE(object);
    EXPECT_EQ(size, 118);
    ExpectFile(Contents(static_cast<ISequentialStream&>(*object.Get())));
    EXPECT_EQ(object.Release(), 0U) << "it is the caller's alone";
}

/// The file says nothing of its depth, so whether that is a picture is the system's decision.
TEST_F(FrameObjects, APictureIsWhatTheSystemReadsInTheFile) {
    Deliver();
    int32 size = -1;
    ComPtr<IUnknown> object;
    *object.Put() = GrabFrameObject(capture_, FrameObject::picture, &size);
    EXPECT_EQ(size, 118);
    if (!object) return;
    SHORT kind = 0;
    EXPECT_TRUE(SUCCEEDED(static_cast<IPicture&>(*object.Get()).get_Type(&kind)));
}

TEST_F(FrameObjects, BeforeTheFirstFrameTheFileIsItsHeaders) {
    capture_.Run();
    int32 size = -1;
    ComPtr<IUnknown> object;
    *object.Put() = GrabFrameObject(capture_, FrameObject::stream, &size);
    ASSERT_TRUE(object);
    EXPECT_EQ(size, 54);
    *object.Put() = GrabFrameObject(capture_, FrameObject::picture, &size);
    EXPECT_EQ(size, 54);
}

TEST_F(FrameObjects, AreNoneWhileNothingRuns) {
    for (const FrameObject which : {FrameObject::stream, FrameObject::sequentialStream, FrameObject::picture}) {
        int32 size = -1;
        EXPECT_EQ(GrabFrameObject(capture_, which, &size), nullptr);
        EXPECT_EQ(size, 0);
    }
    Deliver();
    capture_.Pause();
    EXPECT_EQ(GrabFrameObject(capture_, FrameObject::stream), nullptr);
    capture_.Run();
    ComPtr<IUnknown> object;
    *object.Put() = GrabFrameObject(capture_, FrameObject::stream);
    EXPECT_TRUE(object);
    EXPECT_EQ(GrabFrameObject(capture_, static_cast<FrameObject>(0)), nullptr);
    EXPECT_EQ(GrabFrameObject(capture_, static_cast<FrameObject>(4)), nullptr);
}

} // namespace
} // namespace orvane::test
