// How the person looks for places in the document.
#include "soak.h"

#include "file_bytes.h"
#include "waiting.h"

#include "app/dialog_layout.h"

#include <iterator>

namespace kvx::test {
namespace {

/// `text` in an encoding, for text of letters.
std::string Encoded(const std::string& text, TextEncoding encoding) {
    std::string bytes;
    for (const char letter : text) {
        if (encoding == TextEncoding::Utf16Be) bytes += '\0';
        bytes += letter;
        if (encoding == TextEncoding::Utf16Le) bytes += '\0';
    }
    return bytes;
}

} // namespace

void Soak::GoTo() {
    if (OneIn(2))
        Do(Command::GoTo);
    else
        input_->KeyWithControl(View(), 'G');
    if (!model_.open) return;
    const Dialog dialog = DialogOf(L"Kivra.PromptDialog");
    Expect("the offered offset", dialog.Text(kPromptAnswerId), Hex(model_.view.caret));
    const std::uint64_t target = Below(model_.view.Size() * 5 / 4 + 2);
    const std::size_t choice = Below(6);
    Note(choice, ' ', target);
    if (choice == 0) return End(dialog, kCancelButtonId);
    dialog.SetText(kPromptAnswerId, choice == 1 ? u"12G" : u" 0x" + Hex(target));
    End(dialog, kDefaultButtonId);
    if (choice == 1)
        Answer("error.goto_invalid", IDOK);
    else
        model_.view.MoveTo(target);
}

void Soak::Search() {
    if (OneIn(2))
        Do(Command::Find);
    else
        input_->KeyWithControl(View(), 'F');
    if (!model_.open) return;
    const Dialog dialog = DialogOf(L"Kivra.SearchDialog");
    for (std::size_t searches = 1 + Below(3); searches > 0; --searches)
        SearchOnce(dialog);
    End(dialog, kCancelButtonId);
}

void Soak::SearchOnce(const Dialog& dialog) {
    const std::size_t choice = Below(7);
    const bool byText = choice >= 5;
    const bool forward = OneIn(2);
    const std::uint64_t size = model_.view.Size();
    std::u16string query;
    std::string pattern;
    if (choice < 3) { // bytes that are there
        pattern = ToString(model_.view.document.ReadBytes(Below(size + 1), 1 + Below(6)));
        query = HexText(pattern, OneIn(2) ? " " : "");
    } else if (choice == 3) { // bytes that may be
        pattern = KnownBytes(1 + Below(3), random_());
        query = HexText(pattern, " ");
    } else if (choice == 4) {
        query = OneIn(2) ? std::u16string(2 * 4097, u'4') : std::u16string(u"4G");
    } else {
        const char* const texts[] = {"Kivra", "ivra", "i", "zebra"};
        const std::string text = texts[Below(std::size(texts))];
        pattern = Encoded(text, model_.encoding);
        query = ToUtf16(text);
    }
    Note(byText ? "text " : "hex ", forward ? "next " : "previous ",
         Utf16ToUtf8(query.substr(0, 30)));
    dialog.Select(kSearchTypeId, byText ? 1 : 0);
    dialog.SetText(kSearchQueryId, query);
    dialog.Press(forward ? kDefaultButtonId : kSearchPreviousId);
    input_->Settle();
    if (!pattern.empty())
        ExpectHit(dialog, pattern, forward);
    else
        Answer(query.size() > 4096 ? "error.search_too_long" : "error.search_invalid_hex", IDOK);
    ++done_.searches;
    Require(WaitUntil([&] { return dialog.IsEnabled(kSearchQueryId); }), "the search ends");
    CheckShown();
}

void Soak::ExpectHit(const Dialog& dialog, const std::string& pattern, bool forward) {
    const std::string content = ToString(model_.view.document.Content());
    const auto& selection = model_.view.selection;
    std::size_t start = model_.view.caret;
    bool possible = !content.empty();
    if (selection) { // stepped over
        start = std::min(selection->first, selection->second);
        possible = forward ? start + 1 < content.size() : start != 0;
        start = forward ? start + 1 : start - 1;
    }
    std::size_t hit = std::string::npos;
    if (possible && (!forward || start < content.size()))
        hit = forward ? content.find(pattern, start) : content.rfind(pattern, start);
    if (hit == std::string::npos) return Answer("error.search_not_found", IDOK);
    Require(WaitUntil([&] { return dialog.IsEnabled(kSearchQueryId); }), "the search ends");
    model_.view.Select(hit, hit + pattern.size() - 1);
}

void Soak::CancelLongSearch() {
    Close();
    if (model_.open) return;
    const std::size_t huge = model_.files.size() - 1;
    DropFile(hugeFile_);
    model_.Show(huge);
    const std::u16string title = model_.Title();
    Expect("the title", kivra_.Title(), title);
    Do(Command::Find);
    const Dialog dialog = DialogOf(L"Kivra.SearchDialog");
    dialog.SetText(kSearchQueryId, u"12 34");
    dialog.Press(kDefaultButtonId);
    Require(WaitUntil([&] { return !dialog.IsEnabled(kSearchQueryId); }), "the search begins");
    dialog.Press(kCancelButtonId);
    Require(WaitUntil([&] { return dialog.IsEnabled(kSearchQueryId); }), "the search is cancelled");
    End(dialog, kCancelButtonId);
    Close();
}

} // namespace kvx::test
