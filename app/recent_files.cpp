#include "app/recent_files.h"

#include "platform/text.h"
#include "settings/app_settings.h"

namespace kvx {

void AddRecentFile(std::vector<std::u16string>& recentFiles, const std::u16string& path,
                   const PathNormalizer& normalize) {
    if (path.empty()) return;
    const std::u16string added = normalize(path);
    std::erase_if(recentFiles, [&](const std::u16string& entry) {
        return CompareIgnoringCase(normalize(entry), added) == 0;
    });
    recentFiles.insert(recentFiles.begin(), path);
    if (recentFiles.size() > kMaxRecentFiles) recentFiles.resize(kMaxRecentFiles);
}

} // namespace kvx
