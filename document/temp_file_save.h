// Saving by writing the whole edited document into a temporary file and moving that over the file.
#pragma once

#include "document/edit_index.h"
#include "document/file_view_model.h"
#include "document/progress.h"

namespace kvx {

/// Success leaves `file` closed over the saved file: the caller opens it again. A failure deletes
/// the temporary file, leaves the file on disk as it was and `file` open on it (if it still opens).
/// Raises what the progress callback raises and std::filesystem::filesystem_error where a path
/// without a folder meets an unknown current one; both count as a failure.
FileResult SaveThroughTempFile(FileViewModel& file, const EditIndex& edits,
                               const ProgressCallback& callback);

} // namespace kvx
