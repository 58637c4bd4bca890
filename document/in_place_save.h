// Saving by writing only what changed into the file itself.
#pragma once

#include "document/edit_index.h"
#include "document/file_view_model.h"
#include "document/progress.h"

namespace kvx {

/// True when no unchanged byte has to move: bytes are only replaced, appended at the end of the
/// file or cut off there.
bool CanSaveInPlace(const FileViewModel& file, const EditIndex& edits);

/// Writes the edits into the file, which stays open for reading meanwhile. A failure may leave a
/// part of them written.
FileResult SaveInPlace(const FileViewModel& file, const EditIndex& edits,
                       const ProgressCallback& callback);

} // namespace kvx
