#include "processing/RenamePanel.h"
#include "foundation/ScriptedPrompt.h"

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

using Option = RenamePanel::Option;

TEST(RenamePanel, OptionsResetEachOtherAndCloseBringsTheRuleBack) {
    Rename live;
    RenamePanel panel(live);
    panel.open("IMG_0001", "jpg");
    EXPECT_EQ(panel.example(Option::add), "Example:");

    panel.clickOption(Option::add);
    panel.setAddText("Trip-");
    EXPECT_TRUE(live.is<AddText>());
    EXPECT_EQ(panel.example(Option::add), "Example: Trip-IMG_0001.jpg");
    panel.setAddPosition(1);
    EXPECT_EQ(panel.example(Option::add), "Example: IMG_0001Trip-.jpg");

    panel.clickOption(Option::keep); // keep resets everything
    panel.clickOption(Option::add);
    EXPECT_EQ(live.as<AddText>()->addTextValueAT, "");

    panel.clickOption(Option::format);
    panel.setNameFormatRow(1);
    EXPECT_TRUE(panel.formatEnabled().minDigits);
    panel.setNameFormatRow(2);
    EXPECT_FALSE(panel.formatEnabled().startNumber);
    EXPECT_EQ(panel.setStartNumberText(""), "1");
    EXPECT_EQ(live.as<ChangeFileNameFormat>()->startNumberAtNF, 1);
    panel.setStartNumberText("12.7");
    EXPECT_EQ(live.as<ChangeFileNameFormat>()->startNumberAtNF, 12);

    panel.clickClose();
    EXPECT_EQ(live, Rename{}) << "Close brings back the rule of the opening";
    EXPECT_FALSE(panel.isOpened());

    Rename empty;
    RenamePanel noPhotos(empty);
    noPhotos.open("", "");
    noPhotos.clickOption(Option::add);
    noPhotos.setAddText("x");
    EXPECT_EQ(noPhotos.example(Option::add), "Example: x.");
}

TEST(RenamePanel, TheRuleHoldsOnlyTheChosenOptionsValues) {
    Rename live;
    RenamePanel panel(live);
    panel.open("IMG_0001", "jpg");
    panel.clickOption(Option::format);
    panel.setNameFormatRow(1);
    panel.setMinDigitsRow(3);
    panel.setAddText("ignored"); // the add option is off: its input takes nothing
    panel.clickOption(Option::format);
    EXPECT_EQ(panel.nameFormatRow(), 1) << "choosing the option that is on keeps its values";
    EXPECT_EQ(live.as<ChangeFileNameFormat>()->minNumberDigitsNF, 3);

    panel.clickOption(Option::add);
    EXPECT_EQ(live, Rename(AddText{})) << "the format's values go with it";
    EXPECT_EQ(panel.option(), Option::add);
    panel.clickOption(Option::capture);
    panel.setCapturePattern("yyyy");
    EXPECT_EQ(live, Rename(CaptureDateName{"yyyy"}));
    EXPECT_EQ(panel.formatEnabled().format, false);
    EXPECT_EQ(panel.nameFormatRow(), 0);
}

TEST(RenamePanel, SaveRefusesEmptyTextsAndSlashesThenAsksAboutOverwriting) {
    Rename live;
    RenamePanel panel(live);
    ScriptedPrompt prompt;
    bool overwrite = false;
    panel.open("a", "jpg");

    panel.clickOption(Option::add);
    EXPECT_FALSE(panel.clickNext(prompt, overwrite));
    EXPECT_EQ(prompt.alerts.last().title, "'Add Text' textfield is empty");
    EXPECT_EQ(prompt.alerts.last().text, "'Add Text' textfield is empty");

    panel.setAddText("../up");
    EXPECT_FALSE(panel.clickNext(prompt, overwrite)) << "a name never makes or leaves a folder";

    panel.clickOption(Option::replace);
    EXPECT_FALSE(panel.clickNext(prompt, overwrite));
    EXPECT_EQ(prompt.alerts.last().title, "'Find' textfield is empty");

    panel.setFindText("a");
    prompt.answerNext("Overwrite", {"Overwrite", "Do not Overwrite"});
    EXPECT_TRUE(panel.clickNext(prompt, overwrite));
    EXPECT_EQ(prompt.alerts.last().title,
              "Overwrite if a file exists with the same name in the destination folder.");
    EXPECT_TRUE(overwrite);

    const int asked = int(prompt.alerts.size());
    panel.open("a", "jpg");
    EXPECT_TRUE(panel.clickNext(prompt, overwrite));
    EXPECT_EQ(prompt.alerts.size(), asked) << "overwriting already on: no question";
}

} // namespace
} // namespace tagmoor
