// The code pages whose tables the host brings: all but UTF-8 and ISCII. Called through
// platform/code_pages.h alone, which holds the whole contract.
#pragma once

#include "platform/code_pages.h"

namespace kvx {

/// As FromCodePage for a page of the host; EucKr may decode bytes that are no EUC-KR.
std::optional<std::u16string> FromHostPage(CodePage page, ByteView bytes);

/// As ToCodePage for a page of the host; EucKr may give bytes that are no EUC-KR.
std::optional<Bytes> ToHostPage(CodePage page, std::u16string_view text);

} // namespace kvx
