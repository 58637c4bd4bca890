#include "fuzz/pattern_checks.h"

#include "pattern/evaluation.h"
#include "pattern/loader.h"
#include "pattern/parser.h"
#include "pattern/summary.h"
#include "platform/characters.h"
#include "platform/text.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <vector>

namespace kvx {
namespace {

std::string_view AsText(ByteView bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The lexer in its plainest form, character by character. Empty when the text has an error.
class PlainLexer {
public:
    explicit PlainLexer(std::u16string_view text) : text_(text) {}

    std::optional<std::vector<PatternToken>> Run() {
        while (at_ < text_.size())
            if (!Step()) return std::nullopt;
        tokens_.push_back({{{}, TokenKind::End}, place_});
        return tokens_;
    }

private:
    char16_t Peek(std::size_t ahead = 0) const {
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : u'\0';
    }

    void Pass() {
        if (text_[at_++] == u'\n')
            place_ = {place_.line + 1, 1};
        else
            ++place_.column;
    }

    template <typename Condition>
    void AddWhile(TokenKind kind, Condition condition) {
        const SourcePosition place = place_;
        const std::size_t start = at_;
        do
            Pass();
        while (at_ < text_.size() && condition(text_[at_]));
        tokens_.push_back({{text_.substr(start, at_ - start), kind}, place});
    }

    bool PassBlockComment() {
        Pass();
        Pass();
        while (at_ < text_.size() && !(Peek() == u'*' && Peek(1) == u'/'))
            Pass();
        if (at_ == text_.size()) return false;
        Pass();
        Pass();
        return true;
    }

    bool Step() {
        const char16_t unit = Peek();
        if (unit == u'\r') {
            ++at_;
        } else if (IsSpace(unit)) {
            Pass();
        } else if (unit == u'/' && Peek(1) == u'/') {
            while (at_ < text_.size() && Peek() != u'\n')
                Pass();
        } else if (unit == u'/' && Peek(1) == u'*') {
            return PassBlockComment();
        } else if (unit == u'_' || IsLetter(unit)) {
            AddWhile(TokenKind::Identifier,
                     [](char16_t next) { return next == u'_' || IsLetterOrDigit(next); });
        } else if (unit >= u'0' && unit <= u'9') {
            AddWhile(TokenKind::Number, [](char16_t next) { return next >= u'0' && next <= u'9'; });
        } else if (std::u16string_view(u"@{}[];,*").find(unit) != std::u16string_view::npos) {
            AddWhile(TokenKind::Symbol, [](char16_t) { return false; });
        } else {
            return false;
        }
        return true;
    }

    std::u16string_view text_;
    std::size_t at_ = 0;
    SourcePosition place_;
    std::vector<PatternToken> tokens_;
};

std::string CheckLexer(std::u16string_view text) {
    const std::optional<std::vector<PatternToken>> plain = PlainLexer(text).Run();
    PatternLexer lexer(text);
    std::vector<PatternToken> tokens{lexer.Current()};
    while (!lexer.AtEnd()) {
        lexer.Advance();
        tokens.push_back(lexer.Current());
    }
    if (plain.has_value() != lexer.Error().empty()) return "the lexers disagree on errors";
    if (plain && *plain != tokens) return "the lexers disagree on tokens";
    return {};
}

/// Rows lie one behind the other and fill the struct.
std::string CheckLayout(const StructPatternFile& pattern, const ResolvedStructInfo& layout) {
    const std::uint64_t cap = std::max<std::uint64_t>(pattern.settings.memberAlign, 1);
    std::uint64_t end = 0;
    for (const StructMemberLayout& row : layout.members) {
        const std::uint64_t size = row.TotalSize();
        if (row.offset != end) return "a hole or an overlap";
        if (row.count != 0 && size / row.count != row.elementSize) return "a total that wrapped";
        if (size > std::numeric_limits<std::uint64_t>::max() - end) return "an end that wrapped";
        if (row.isPadding && (size == 0 || size >= cap)) return "a gap that needs not be";
        const ResolvedStructInfo* type = pattern.StructAt(row.structIndex);
        const bool isStruct = row.kind == MemberKind::Struct && !row.isPadding;
        if (isStruct != (type != nullptr)) return "a kind that does not fit the type";
        if (type != nullptr && type->size != row.elementSize) return "a struct of another size";
        end += size;
    }
    if (end != layout.size) return "a size that is not the sum";
    if (layout.alignment > cap || layout.size % layout.alignment != 0) return "a wrong alignment";
    return {};
}

std::string CheckPattern(const StructPatternFile& pattern) {
    if (pattern.Entry() == nullptr || pattern.Entry()->name != pattern.entryName) return "no entry";
    for (const ResolvedStructInfo& layout : pattern.structs)
        if (std::string problem = CheckLayout(pattern, layout); !problem.empty()) return problem;
    if (FormatPatternSummary(pattern).empty()) return "no summary";
    return {};
}

bool SameLoad(const Outcome<SharedPattern>& first, const Outcome<SharedPattern>& second) {
    if (!first || !second) return first.error == second.error;
    return (*first.value)->structs == (*second.value)->structs;
}

std::string CheckRows(const std::vector<StructViewRow>& rows, const StructEvalRequest& request) {
    if (rows.size() > kMaxStructRows + 1) return "too many rows";
    const bool isCut = rows.size() == kMaxStructRows + 1;
    if (isCut != (!rows.empty() && rows.back().Offset().empty())) return "a wrong marker";
    if (rows.empty() && !request.pattern->Entry()->members.empty()) return "no rows";
    for (const StructViewRow& row : rows)
        if (row.Name().empty() || row.Size().empty() || row.Type().empty())
            return "an empty column";
    return {};
}

/// The bytes of single members give the same rows as all bytes.
std::string CheckMemberBytes(const std::vector<StructViewRow>& rows, StructEvalRequest request) {
    const Bytes all = std::move(request.bytes);
    request.bytes.clear();
    for (const ShownMember& member : ShownMembers(*request.pattern)) {
        std::optional<Bytes>& bytes = request.memberBytes.emplace_back();
        if (member.offset > all.size() || member.size > all.size() - member.offset) continue;
        const ByteView rest = ByteView(all).subspan(static_cast<std::size_t>(member.offset));
        const ByteView shown = rest.first(
            static_cast<std::size_t>(std::min<std::uint64_t>(member.shown, rest.size())));
        bytes.emplace(shown.begin(), shown.end());
    }
    return EvaluateStruct(request) == rows ? "" : "other rows from the bytes of single members";
}

} // namespace

std::string CheckParser(ByteView input) {
    const std::u16string text = Utf8ToUtf16(AsText(input));
    if (std::string problem = CheckLexer(text); !problem.empty()) return problem;
    ParseState state(text);
    while (!state.tokens.AtEnd()) {
        const SourcePosition before = state.tokens.Current().position;
        if (!ParseTopLevel(state)) return state.error.empty() ? "a failure without a message" : "";
        if (!state.error.empty()) return "a message without a failure";
        if (state.tokens.Current().position == before) return "no progress";
    }
    return {};
}

std::string CheckLoader(ByteView input) {
    const Outcome<SharedPattern> load = LoadStructPattern(input);
    if (load.value.has_value() != load.error.empty()) return "neither a file nor a message";
    if (!SameLoad(load, LoadStructPattern(input))) return "another result the second time";
    return load ? CheckPattern(**load.value) : std::string();
}

std::string CheckEvaluator(ByteView input) {
    if (input.empty()) return {};
    const unsigned options = input[0];
    const ByteView rest = input.subspan(1);
    const auto end = std::ranges::find(rest, 0);
    const auto length = static_cast<std::size_t>(end - rest.begin());
    const Outcome<SharedPattern> load = LoadStructPattern(rest.first(length));
    if (!load) return {};

    StructEvalRequest request;
    request.pattern = *load.value;
    const ByteView bytes = rest.subspan(std::min(length + 1, rest.size()));
    request.bytes.assign(bytes.begin(), bytes.end());
    request.format.byteArrays = (options & 1) != 0 ? ByteArrayStyle::Ascii : ByteArrayStyle::Hex;
    request.format.byteOrder = (options & 2) != 0 ? ByteOrder::Big : ByteOrder::Little;
    request.format.numberBase = (options & 4) != 0 ? NumberBase::Decimal : NumberBase::Hex;
    if ((options & 8) != 0) request.baseOffset = std::numeric_limits<std::uint64_t>::max() - 100;
    if ((options & 16) != 0) request.unavailableText = u"(none)";
    const std::vector<StructViewRow> rows = EvaluateStruct(request);
    std::string problem = CheckRows(rows, request);
    return problem.empty() ? CheckMemberBytes(rows, std::move(request)) : problem;
}

} // namespace kvx
