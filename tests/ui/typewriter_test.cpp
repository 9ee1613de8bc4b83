#include "ui/typewriter.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

TEST(Typewriter, RevealsCharactersAtItsSpeedFromItsStart) {
    Typewriter typewriter("[pin_center][#f00]Hello[/c], world", 10, 1000);
    typewriter.update(1000);
    EXPECT_EQ(typewriter.visible_characters(), 0u);
    EXPECT_EQ(typewriter.visible_text(), "[pin_center][#f00]");
    typewriter.update(1350);
    EXPECT_EQ(typewriter.visible_characters(), 3u);
    EXPECT_EQ(typewriter.visible_text(), "[pin_center][#f00]Hel");
    typewriter.update(1500);
    EXPECT_EQ(typewriter.visible_text(), "[pin_center][#f00]Hello[/c]");
    EXPECT_FALSE(typewriter.finished());
    // A clock that steps back hides nothing again.
    typewriter.update(1100);
    EXPECT_EQ(typewriter.visible_characters(), 5u);
    typewriter.update(2200);
    EXPECT_EQ(typewriter.visible_characters(), 12u);
    EXPECT_TRUE(typewriter.finished());
    EXPECT_EQ(typewriter.visible_text(), typewriter.text());
}

TEST(Typewriter, SkippingAndInstantSpeedsShowEverything) {
    Typewriter slow("[b]Grüße[/b]", 1, 0);
    slow.update(2000);
    EXPECT_EQ(slow.visible_text(), "[b]Gr");
    slow.skip();
    EXPECT_TRUE(slow.finished());
    EXPECT_EQ(slow.visible_characters(), 5u);
    EXPECT_EQ(slow.visible_text(), "[b]Grüße[/b]");
    Typewriter instant("abc", 0, 0);
    EXPECT_TRUE(instant.finished());
    EXPECT_TRUE(Typewriter("[pin_center]", 5, 0).finished());
    Typewriter early("abc", 100, 5000);
    early.update(0);
    EXPECT_EQ(early.visible_characters(), 0u);
}

}  // namespace
}  // namespace veldra
