#include "app/prompt_dialog.h"

#include "app/modal_dialog_window.h"

namespace kvx {
namespace {

class PromptDialog final : public ModalDialogWindow {
public:
    explicit PromptDialog(const PromptContent& content)
        : ModalDialogWindow(
              {L"Kivra.PromptDialog", WS_POPUP | WS_CAPTION | WS_SYSMENU, WS_EX_DLGMODALFRAME},
              kPromptLayout),
          content_(content) {}

    const std::optional<std::u16string>& Answer() const { return answer_; }

private:
    // These two captions are the same in every language.
    void OnCreated() override {
        SetControlText(kDefaultButtonId, u"OK");
        SetControlText(kCancelButtonId, u"Cancel");
        SetControlText(kPromptLabelId, content_.prompt);
        SetControlText(kPromptAnswerId, content_.initialText);
        ::SendMessageW(Control(kPromptAnswerId), EM_SETSEL, 0, -1);
    }
    int FirstFocus() const override { return kPromptAnswerId; }
    void OnCommand(int id, int) override {
        if (id == kDefaultButtonId) answer_ = ControlText(kPromptAnswerId);
        if (id == kDefaultButtonId || id == kCancelButtonId) Close();
    }

    const PromptContent& content_;
    std::optional<std::u16string> answer_;
};

} // namespace

std::optional<std::u16string> AskForLine(HWND owner, const PromptContent& content) {
    PromptDialog dialog(content);
    dialog.Run(owner, content.title, {});
    return dialog.Answer();
}

} // namespace kvx
