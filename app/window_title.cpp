#include "app/window_title.h"

#include "platform/system.h"

namespace kvx {

std::u16string WindowTitle(const std::u16string& appTitle, const std::u16string& path,
                           bool modified) {
    if (path.empty()) return appTitle;
    return appTitle + u" - " + FileNameOf(path) + (modified ? u" *" : u"");
}

} // namespace kvx
