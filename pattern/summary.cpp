#include "pattern/summary.h"

#include "pattern/directives.h"
#include "platform/number_text.h"

namespace kvx {

std::u16string FormatPatternSummary(const StructPatternFile& pattern) {
    std::u16string text = u"entry = " + pattern.entryName;
    if (pattern.entryIsImplicit) text += u" (implicit)";
    for (const Directive& directive : NumericDirectives()) {
        text += u"\r\n";
        text += directive.name;
        text += u" = ";
        AppendDecimal(text, pattern.settings.*directive.setting);
    }
    return text;
}

} // namespace kvx
