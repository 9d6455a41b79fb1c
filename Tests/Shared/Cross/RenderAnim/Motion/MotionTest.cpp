#include "Shared/Cross/RenderAnim/Motion/Motion.h"

#include <gmock/gmock.h>

#include "Shared/Cross/RenderAnim/Motion/Clause.h"
#include "Shared/Cross/RenderAnim/Motion/Event.h"
#include "Shared/Cross/RenderAnim/Motion/Modifier.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"

using ra::Clause;
using ra::Name;

TEST(Motion, ClausesPrintThemselves) {
    ra::ClauseFloat speed(Name("fast"));
    const char* const texts[] = {" = ", " != ", "  < ", " <= ", "  > ", " >= "};
    for (int32_t code = 0; code < Clause::ComparisonCount; ++code) {
        speed.SetTest(Name("speed"), static_cast<Clause::Comparison>(code));
        speed.SetFirstValue(2.5f);
        EXPECT_EQ(speed.Print(), std::string("speed") + texts[code] + "2.5");
    }
    ra::ClauseBool alive(Name("alive"));
    alive.SetTest(Name("dead"), Clause::NotEqual);
    alive.SetFirstValue(true);
    EXPECT_EQ(alive.Print(), "dead != true");
    ra::ClauseString stance(Name("stance"));
    stance.SetTest(Name("pose"), Clause::Equal);
    stance.SetFirstValue("prone");
    EXPECT_EQ(stance.Print(), "pose = \"prone\"");
    EXPECT_THROW(stance.SetTest(Name("pose"), static_cast<Clause::Comparison>(6)), std::runtime_error);
    EXPECT_EQ(stance.GetComparison(), Clause::Equal);
}

TEST(Motion, ModifiersPrintThemselves) {
    ra::Modifier modifier = {
        .m_Name = Name("pace"), .m_variable = Name("speed"), .m_refValue = 3, .m_secondValue = .5f};
    EXPECT_EQ(modifier.Print(), "speedAbsolute [3, 0.5]");
    modifier.m_mode = ra::Modifier::Mode_Scaled;
    EXPECT_EQ(modifier.Print(), "speed, Scaled [3, 0.5]");
    EXPECT_STREQ(ra::Motion::GetText(ra::Motion::NonLooping), "Non-Looping");
    EXPECT_STREQ(ra::Motion::GetText(ra::Motion::Looping), "Looping");
    EXPECT_STREQ(ra::Motion::GetText(ra::Motion::HoldEnd), "Hold End");
}

TEST(Motion, DelaysAreDrawnBetweenTheirBounds) {
    const ra::DelayRange delay = {.min = 1, .max = 3};
    EXPECT_EQ(delay.Draw(0), 1);
    EXPECT_EQ(delay.Draw(0.5f), 2);
    EXPECT_EQ(delay.Draw(1), 3);
    EXPECT_EQ((ra::DelayRange{.min = 1, .max = 0}).Draw(0.5f), 0) << "no delay, whatever the minimum";
    const ReportCapture reports;
    EXPECT_THROW((ra::DelayRange{.min = 2, .max = 1}).Draw(0.5f), std::runtime_error);
    EXPECT_TRUE(ReportCapture::HasError("max >= min") || ReportCapture::HasWarning("max >= min"));
}

TEST(Motion, RandomMotionsHaveAWeight) {
    ra::Motion motion(Name("idle"));
    motion.AddRandMotion(Name("scratch"), 0.001f);
    const ReportCapture reports;
    EXPECT_THROW(motion.AddRandMotion(Name("yawn"), 0.0009f), std::runtime_error);
    EXPECT_EQ(motion.GetRandMotionCount(), 1u);
}

TEST(Motion, EventsAreKnownWithoutDriveAndWithForwardSlashes) {
    EXPECT_EQ(ra::NormaliseEventName("step"), "step");
    EXPECT_EQ(ra::NormaliseEventName("DATA:\\art\\events\\step"), "art/events/step");
    EXPECT_EQ(ra::NormaliseEventName("C:step"), "step");
    EXPECT_EQ(ra::NormaliseEventName("/art/step.events"), "art/step.events");
    EXPECT_EQ(ra::NormaliseEventName(""), "");
}
