// A person who does one random thing after the other with the real program and knows what it must
// show and save. The same start of the random numbers makes the same actions.
#pragma once

#include "dialog_user.h"
#include "posted_input.h"
#include "process_resources.h"
#include "soak_model.h"

#include "app/commands.h"

#include <atomic>
#include <deque>
#include <filesystem>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <string_view>

namespace kvx::test {

class Soak {
public:
    explicit Soak(std::uint32_t seed);

    // Each throws std::runtime_error at the first difference between program and model.
    /// And opens each file and chooses each font: of much the system keeps something after the
    /// first time.
    void DoEverythingTwice();
    void DoSomething();
    /// Ends the program.
    void Exit();
    /// Closes the document and all panes, undoes choices, and says what the program holds then.
    ProcessResources ResourcesAtRest();

    /// Ends the program by force; from any thread.
    void Kill() const;
    /// Grows with every action; from any thread.
    std::uint64_t Steps() const { return steps_; }

    struct Counts {
        int saves = 0;   ///< with the bytes on disk compared afterwards
        int inPlace = 0; ///< of these, those that wrote into the file itself
        int opened = 0;
        int searches = 0;
        int fileDialogs = 0;
    };
    const Counts& Done() const { return done_; }

    /// Where the run stands: seed, step, the last actions, and the windows that are there.
    std::string Place() const;

private:
    struct Action {
        const char* name;
        void (Soak::*run)();
        unsigned weight;
    };
    static const Action kActions[];

    // The hex view: soak_view.cpp.
    void TypeDigits();
    void Move();
    void ToggleInserting();
    void Remove();
    void EndSelection();
    void CopySelection();
    void Click();
    void Wheel();
    void Scroll();
    // The main window and its choices: soak_choices.cpp.
    void MoveWindow();
    void TakeUsualPlace() const;
    void WaitUntilPainted() const;
    void Minimize();
    void ToggleReadOnly();
    void ChooseEncoding();
    void ChangeFavorites();
    void ChooseTheme();
    void Zoom();
    void ChooseLanguage();
    void ChooseFont();
    void ShowAbout();
    // Places in the document: soak_search.cpp.
    void GoTo();
    void Search();
    void CancelLongSearch();
    // Files: soak_files.cpp.
    void Save();
    void SaveWhileHeld();
    void Close();
    void Open();
    void OpenMissing();
    void DropOnOpenDocument();
    void RefuseToEnd();
    // Panes: soak_panes.cpp.
    void TogglePane();
    void ClosePane();
    void UsePane();
    void MovePane();
    void CheckInspector();
    void CheckStructView();
    void ChangePattern();
    void ChooseFormat();

    void Run(const Action& action);
    void CheckShown();
    bool ShowsWarning() const;
    void ExpectWarning();
    /// Adds to what is told of the action that runs.
    template <typename... Parts>
    void Note(const Parts&... parts) {
        std::ostringstream text;
        text << ' ';
        (text << ... << parts);
        last_.back() += text.str();
    }
    [[noreturn]] void Differ(std::string_view what, const std::u16string& shown,
                             const std::u16string& expected) const;
    void Expect(std::string_view what, const std::u16string& shown,
                const std::u16string& expected) const;
    static void Require(bool holds, const char* what);

    std::size_t Below(std::size_t end) { return random_() % end; }
    bool OneIn(std::size_t chances) { return Below(chances) == 0; }

    HWND View() const { return kivra_.View(); }
    std::filesystem::path PathOf(std::size_t file) const {
        return folder_.Root() / model_.files.at(file).name;
    }
    void Do(Command command, std::uint32_t steps = 0);
    Dialog DialogOf(std::wstring_view className) const;
    void End(const Dialog& dialog, int button);
    void Answer(std::string_view textKey, int button);
    bool ConfirmChanges();
    void ExpectSaved();
    void OpenFile(std::size_t file);
    void DropFile(const std::filesystem::path& path);
    void ChooseFile(const std::filesystem::path& path);
    void MoveByPage(bool down);
    std::uint64_t ShownOffset() const;
    void SearchOnce(const Dialog& dialog);
    void ExpectHit(const Dialog& dialog, const std::string& pattern, bool forward);
    HWND Pane(const wchar_t* className) const;
    void ExpectList(const wchar_t* pane, const std::u16string& expected);
    void SetPane(const wchar_t* className, Command command, bool& shown);

    std::uint32_t seed_;
    std::mt19937 random_;
    ProgramCopy program_;
    TempFolder folder_;
    SoakModel model_;
    std::filesystem::path hugeFile_;
    std::filesystem::path patternFile_;
    KivraProcess kivra_;
    std::optional<PostedInput> input_;
    std::optional<std::uint64_t> pageRows_; ///< as the view showed it, until it may have changed
    RECT pageArea_{};                       ///< the view's client area at that time
    std::u16string warning_;                ///< of the last edit that was refused
    std::uint64_t warnedAt_ = 0;            ///< its tick
    std::size_t fontsChosen_ = 0;
    bool allFonts_ = false; ///< each was chosen once
    std::atomic<std::uint64_t> steps_ = 0;
    std::deque<std::string> last_;
    Counts done_;
};

} // namespace kvx::test
