// The tolerance: edit, slider and buttons set each other without a loop, and only a change runs the pipeline.
#include "tests/session/window_fixture.h"

#include <string>

namespace orvane {
namespace {

using test::FakeWindow;

class Tolerance : public test::WindowTest {
protected:
    void Adjust(const Script& script) { WindowTest::Adjust({1, 1, 0, 0, 0, 0}, script); }

    /// Edit, slider and session must agree on a value.
    void ExpectTolerance(const FakeWindow& window, int32 value) const {
        EXPECT_EQ(session.m_tolerance, value);
        EXPECT_EQ(window.Slider(), value);
        EXPECT_EQ(window.Text(kToleranceEdit), std::to_wstring(value));
    }
    /// Runs of the pipeline since the messages were delivered last.
    static int32 Runs(FakeWindow& window) { return window.Pump(); }
};

TEST_F(Tolerance, TheButtonsStepByOneAndRunThePipeline) {
    Adjust([this](FakeWindow& window) {
        ExpectTolerance(window, 40);
        EXPECT_TRUE(window.Click(kToleranceUp));
        ExpectTolerance(window, 41);
        EXPECT_EQ(Runs(window), 1);
        EXPECT_TRUE(window.Click(kToleranceDown));
        EXPECT_TRUE(window.Click(kToleranceDown));
        ExpectTolerance(window, 39);
        EXPECT_EQ(Runs(window), 2);
        EXPECT_EQ(window.Pointer(), Cursor::wait);
    });
}

TEST_F(Tolerance, UpAt99Stays99AndDownAt0Stays0) {
    for (const int32 end : {99, 0}) {
        session.m_tolerance = end;
        Adjust([this, end](FakeWindow& window) {
            EXPECT_TRUE(window.Click(end == 99 ? kToleranceUp : kToleranceDown));
            ExpectTolerance(window, end);
            EXPECT_EQ(Runs(window), 0);
        });
    }
}

TEST_F(Tolerance, UpAt98Gives99) {
    session.m_tolerance = 98;
    Adjust([this](FakeWindow& window) {
        window.Click(kToleranceUp);
        ExpectTolerance(window, 99);
        EXPECT_EQ(Runs(window), 1);
    });
}

TEST_F(Tolerance, TheSliderCountsWhenItIsLetGo) {
    Adjust([this](FakeWindow& window) {
        for (int32 position = 41; position < 70; ++position) window.MoveThumb(position);
        EXPECT_EQ(session.m_tolerance, 40) << "not while it is dragged";
        EXPECT_EQ(Runs(window), 0);
        window.DragSlider(70);
        ExpectTolerance(window, 70);
        EXPECT_EQ(Runs(window), 1) << "one run, though the edit was written too";
        window.DragSlider(70);
        EXPECT_EQ(Runs(window), 0) << "no change, no run";
    });
}

TEST_F(Tolerance, TheEditSetsSliderAndValue) {
    struct Case {
        const wchar_t* typed;
        int32 value;
        const wchar_t* shown;
    };
    const Case kCases[] = {
        {L"7", 7, L"7"},      {L"07", 7, L"07"},   {L"85", 85, L"85"},  {L"99", 99, L"99"}, {L"100", 99, L"99"},
        {L"98", 98, L"98"},   {L"12", 12, L"12"},  {L"123", 99, L"99"}, {L" 5", 5, L" 5"},  {L"", 0, L""},
        {L"-3", 0, L"0"},     {L"abc", 0, L"abc"}, {L"+4", 4, L"+4"},   {L"4x", 4, L"4x"},  {L"0", 0, L"0"},
        {L"1234", 99, L"99"}, {L"001", 1, L"1"}, // two characters are read again, and those say 0
        {L"999", 99, L"999"},
    };
    Adjust([&](FakeWindow& window) {
        for (const Case& c : kCases) {
            SCOPED_TRACE(::testing::PrintToString(std::wstring(c.typed)));
            const bool changes = session.m_tolerance != c.value;
            EXPECT_TRUE(window.Type(kToleranceEdit, c.typed));
            EXPECT_EQ(session.m_tolerance, c.value);
            EXPECT_EQ(window.Slider(), c.value);
            EXPECT_EQ(window.Text(kToleranceEdit), c.shown);
            EXPECT_EQ(Runs(window), changes ? 1 : 0);
        }
    });
}

TEST_F(Tolerance, AnEmptiedEditMeans0AndRunsOnlyWhereItWasNot0) {
    Adjust([this](FakeWindow& window) {
        window.Type(kToleranceEdit, L"");
        EXPECT_EQ(session.m_tolerance, 0);
        EXPECT_EQ(window.Slider(), 0);
        EXPECT_EQ(Runs(window), 1);
        EXPECT_EQ(window.Text(kToleranceEdit), L"") << "room to type the next number";
        window.Type(kToleranceEdit, L"0");
        window.Type(kToleranceEdit, L"");
        EXPECT_EQ(Runs(window), 0);
    });
}

TEST_F(Tolerance, TheEditIsReadWithThreeCharactersAndComparedWithTwo) {
    Adjust([this](FakeWindow& window) {
        windows.log.clear();
        window.Type(kToleranceEdit, L"55");
        EXPECT_EQ(windows.Count("read 1003 4"), 1) << "three and the zero";
        EXPECT_EQ(windows.Count("read 1003 3"), 1);
        EXPECT_EQ(windows.Count("text 1003 55"), 0) << "it stands there already";
        EXPECT_EQ(windows.Count("update 1003"), 0);
        windows.log.clear();
        window.Click(kToleranceUp);
        EXPECT_EQ(windows.Count("text 1003 56"), 1);
        EXPECT_EQ(windows.Count("update 1003"), 1);
        EXPECT_EQ(windows.Count("slider 56"), 1);
    });
}

TEST_F(Tolerance, ValuesFromOutsideAreLimited) {
    Adjust([this](FakeWindow& window) {
        for (const int32 position : {-1, -2147483647 - 1, 100, 2147483647}) {
            window.DragSlider(position);
            ExpectTolerance(window, position < 0 ? 0 : 99);
        }
        window.Type(kToleranceEdit, L"99999999999999999999");
        EXPECT_EQ(session.m_tolerance, 99);
    });
}

TEST_F(Tolerance, TheRunUsesTheNewValue) {
    Adjust([this](FakeWindow& window) {
        window.DragSlider(5);
        const std::vector<uint8> at5 = Output();
        window.DragSlider(60);
        session.ProduceOutput(5, false);
        EXPECT_EQ(Output(), at5);
    });
}

TEST_F(Tolerance, TheNextSessionStartsWithIt) {
    Adjust([](FakeWindow& window) {
        window.DragSlider(63);
        window.Click(kPlainOk);
    });
    EXPECT_EQ(session.m_tolerance, 63);
    Run([this](FakeWindow& window) {
        EXPECT_EQ(session.m_tolerance, 63);
        EXPECT_EQ(window.Slider(), 63);
        EXPECT_EQ(window.Text(kToleranceEdit), L"63");
        window.CloseBox();
    });
    EXPECT_EQ(session.m_tolerance, 63) << "a cancel keeps it too";
}

TEST_F(Tolerance, OfAnotherControlsEditNothingIsRead) {
    Adjust([this](FakeWindow& window) {
        windows.log.clear();
        for (const int32 id : {1000, 1005, 0, -1, 4711}) window.events.OnEditChanged(id);
        EXPECT_TRUE(windows.log.empty());
    });
}

} // namespace
} // namespace orvane
