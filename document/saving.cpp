#include "document/editable_document.h"
#include "document/in_place_save.h"
#include "document/temp_file_save.h"

namespace kvx {

bool EditableDocument::Save(const ProgressCallback& progress) {
    lastErrorText_.clear();
    if (!IsOpen()) {
        lastErrorText_ = u"No file is open.";
        return false;
    }
    if (!IsModified()) return true;
    fileAhead_.Drop();

    const std::u16string path = file_.GetPath();
    const FileResult saved = CanSaveInPlace(file_, edits_)
                                 ? SaveInPlace(file_, edits_, progress)
                                 : SaveThroughTempFile(file_, edits_, progress);
    if (!saved) {
        lastErrorText_ = Win32ErrorText(saved.error);
        return false;
    }
    ForgetEdits();
    return file_.Open(path);
}

} // namespace kvx
