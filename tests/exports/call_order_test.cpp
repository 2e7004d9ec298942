// The twelve functions in every order and with odd arguments: a known code each time, and what it must be where
// the order alone decides; a session after all that gives the same portrait as ever.
#include "tests/exports/exports_fixture.h"
#include "tests/support/random.h"
#include "tests/support/sha256.h"

#include <array>
#include <cstdint>
#include <limits>
#include <set>

namespace orvane {
namespace {

using test::HostBlock;

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr int kFunctions = 12;

// The portrait of SmallFaceScene in 120 by 160, cropped by 0.75.
constexpr const char* kPortrait = "a74c08c37e55a6cea1fdcd45103516b3749c4e4fab5ee27bd4b7208fcb83948c";

const std::set<std::int32_t> kCodes = {
    ORV_OK,          ORV_NO_FACE,   ORV_LOCK_FAILED, ORV_BAD_ARGUMENT,  ORV_CAPTURE_FAILED,
    ORV_STEP_FAILED, ORV_NO_MEMORY, ORV_NO_PICTURE,  ORV_NO_CLASSIFIER, ORV_NO_SESSION};

class CallOrder : public test::ExportsTest {
protected:
    void ExpectUsualPortrait() {
        lib.orv_ReleaseDLL();
        OpenHidden();
        ASSERT_EQ(lib.orv_SetSizeOutputImage(120, 160), ORV_OK);
        ASSERT_EQ(lib.orv_SetFaceCropRatio(0.75F), ORV_OK);
        ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
        HostBlock output;
        ASSERT_EQ(lib.orv_GetOutputImage(output.Receive()), ORV_OK);
        std::vector<std::uint8_t> bytes = output.Bytes();
        bytes.resize(sizeof(test::DibHeader) + output.Header().sizeImage); // a system may round blocks up
        EXPECT_EQ(test::Sha256(bytes), kPortrait);
        ASSERT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
        open_ = false;
    }

    /// Calls a function, by its number, with arguments of the chance's choice; tells what it returned.
    void Call(int function) {
        const bool wasOpen = open_;
        const std::int32_t result = Invoke(function);
        if (function == 8) {
            ASSERT_TRUE(result == ORV_LOCK_FAILED || (result >= 0 && result <= 0xFFFF)) << result;
            return;
        }
        ASSERT_TRUE(kCodes.contains(result)) << "function " << function << " gave " << result;
        if (function == 0) {
            ASSERT_EQ(result, ORV_OK);
            open_ = true;
        } else if (function == 1) {
            ASSERT_EQ(result, wasOpen ? ORV_OK : ORV_NO_SESSION);
            open_ = false;
        } else if (function == 6 || function == 7) { // take no notice of a session
            ASSERT_TRUE(result == ORV_OK || result == ORV_BAD_ARGUMENT) << result;
        } else if (!wasOpen) {
            ASSERT_EQ(result, ORV_NO_SESSION) << "function " << function;
        }
    }

    bool open_ = false;

private:
    template <typename T, std::size_t kCount>
    T OneOf(const std::array<T, kCount>& values) {
        return values[static_cast<std::size_t>(random_.Int(0, kCount - 1))];
    }
    std::int32_t AnyNumber() {
        return OneOf(std::array{0, 1, -1, 5, 6, 74, 75, 120, 255, 256, 4000, kMost, kLeast, kMost - 3});
    }
    orv_Handle AnyBlock() {
        return OneOf(std::array{orv_Handle{nullptr}, small_.Handle(), small_.Handle(), face_.Handle(), cut_.Handle(),
                                empty_.Handle(), other_.Handle()});
    }
    orv_Window AnyWindow() {
        static int nothing;
#ifdef _WIN32
        return OneOf(std::array<orv_Window, 4>{nullptr, GetDesktopWindow(), HWND_MESSAGE, &nothing});
#else
        return OneOf(std::array<orv_Window, 3>{nullptr, reinterpret_cast<orv_Window>(std::uintptr_t{1}), &nothing});
#endif
    }
    const char* AnyPath() {
        static const std::string endless(5000, 'a');
        return OneOf(std::array{static_cast<const char*>(nullptr), "", ".", "..", "/", "Orvane.dat", "absent.txt",
                                "\xFF\xFE", "%s%n", endless.c_str()});
    }
    float AnyRatio() {
        return OneOf(std::array{0.75F, 1.0F, 0.0F, -1.0F, 1e-30F, 1e30F, std::numeric_limits<float>::quiet_NaN(),
                                std::numeric_limits<float>::infinity()});
    }
    std::int32_t TakeOutput() {
        if (random_.Int(0, 3) == 0) return lib.orv_GetOutputImage(nullptr);
        HostBlock output;
        const std::int32_t result = lib.orv_GetOutputImage(output.Receive());
        EXPECT_EQ(output.Handle() != nullptr, result == ORV_OK);
        return result;
    }
    std::int32_t Invoke(int function) {
        switch (function) {
        case 0:
            return lib.orv_InitDLL();
        case 1:
            return lib.orv_ReleaseDLL();
        case 2:
            return lib.orv_SetLanguageFile(AnyPath());
        case 3:
            return lib.orv_SetOwnerWindow(AnyWindow());
        case 4:
            return lib.orv_SetVisibleMode(AnyNumber());
        case 5: { // larger portraits would take their time
            const std::int32_t width = AnyNumber();
            return lib.orv_SetSizeOutputImage(width, width > 200 ? 0 : AnyNumber() % 200);
        }
        case 6:
            return lib.orv_SetFaceCropRatio(AnyRatio());
        case 7:
            return lib.orv_EnableAction(AnyNumber(), AnyNumber());
        case 8:
            return lib.orv_GetBitDepth(AnyBlock());
        case 9:
            return lib.orv_DetectFacePicture(AnyBlock());
        case 10:
            return lib.orv_DetectFaceLive(AnyNumber());
        default:
            return TakeOutput();
        }
    }

    test::Random random_;
    HostBlock small_{test::BlankScene(40, 30)};
    HostBlock face_{test::SmallFaceScene()};
    HostBlock cut_{test::HeaderFor(40, 30), {1, 2, 3}};
    HostBlock empty_{std::vector<std::uint8_t>()};
    HostBlock other_{test::HeaderFor(40, 30), std::vector<std::uint8_t>(5000, 9)};
};

TEST_F(CallOrder, EveryPairOfFunctionsGivesItsCodesWithAndWithoutASession) {
    for (const bool open : {false, true}) {
        for (int first = 0; first < kFunctions; ++first) {
            for (int second = 0; second < kFunctions; ++second) {
                SCOPED_TRACE(::testing::Message() << "functions " << first << ", " << second << (open ? ", open" : ""));
                for (int times = 0; times < 3; ++times) {
                    ASSERT_NO_FATAL_FAILURE(Call(1));
                    if (open) {
                        ASSERT_NO_FATAL_FAILURE(Call(0));
                    }
                    ASSERT_NO_FATAL_FAILURE(Call(first));
                    ASSERT_NO_FATAL_FAILURE(Call(second));
                }
            }
        }
    }
    ExpectUsualPortrait();
}

TEST_F(CallOrder, ThousandsOfShortSequencesGiveKnownCodesAndSpoilNothing) {
    test::Random order(2);
    for (int sequence = 1; sequence <= 3000; ++sequence) {
        SCOPED_TRACE(::testing::Message() << "sequence " << sequence);
        const int length = order.Int(1, 8);
        for (int i = 0; i < length; ++i) ASSERT_NO_FATAL_FAILURE(Call(order.Int(0, kFunctions - 1)));
        if (sequence % 500 == 0) ExpectUsualPortrait();
    }
}

} // namespace
} // namespace orvane
