#include "app/find_command.h"

#include "app/search_dialog_state.h"
#include "tests/app/shell_fakes.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(FindCommand, OpensTheDialogOnAnOpenFileOnly) {
    ShellRig rig;
    FindInFile(rig.shell);
    EXPECT_TRUE(rig.host.boxes.empty());
    rig.Open("content");
    rig.stage.view.SetEncoding(TextEncoding::Gbk);
    rig.shell.Settings().searchHistory = {{u"hex", u"41"}};
    FindInFile(rig.shell);
    EXPECT_EQ(rig.host.searchDialog.encoding, TextEncoding::Gbk);
    EXPECT_EQ(rig.host.searchDialog.history, rig.shell.Settings().searchHistory);
}

TEST(SearchDialogState, CancelsARunningSearchInsteadOfClosing) {
    SearchDialogState state;
    state.RequestSearch(SearchDirection::Previous);
    EXPECT_EQ(state.TakeRequest(), SearchDirection::Previous);
    state.BeginSearch();
    state.RequestSearch(SearchDirection::Next);
    EXPECT_EQ(state.TakeRequest(), SearchDirection::None);
    state.RequestClose();
    EXPECT_TRUE(state.CancelRequested() && !state.Closed());
    state.EndSearch();
    state.BeginSearch();
    EXPECT_FALSE(state.CancelRequested()) << "of the search before";
    state.EndSearch();
    state.RequestClose();
    EXPECT_TRUE(state.Closed());
}

} // namespace
} // namespace kvx
