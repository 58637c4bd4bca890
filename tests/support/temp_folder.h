// A folder of its own for one test, removed with all that is in it.
#pragma once

#include "platform/bytes.h"
#include "tests/support/sparse_file.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace kvx {

class TempFolder {
public:
    TempFolder() {
        std::random_device random;
        do {
            root_ = std::filesystem::temp_directory_path() / ("kivra-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(root_));
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() {
        std::error_code ignored;
        // The library cannot list a folder beyond the classic limit: those come up first.
        for (; !deep_.empty(); deep_.pop_back())
            std::filesystem::rename(deep_.back(), root_ / std::to_string(deep_.size()), ignored);
        std::filesystem::remove_all(root_, ignored);
    }

    const std::filesystem::path& Root() const { return root_; }

    /// Full path of `name` in the folder.
    std::u16string Path(const std::u16string& name) const { return (root_ / name).u16string(); }

    /// Writes a file and gives its path.
    std::u16string Write(const std::u16string& name, ByteView content) const {
        std::ofstream out(root_ / name, std::ios::binary);
        out.write(reinterpret_cast<const char*>(content.data()),
                  static_cast<std::streamsize>(content.size()));
        return Path(name);
    }

    std::u16string Write(const std::u16string& name, std::string_view content) const {
        return Write(name, {reinterpret_cast<const std::uint8_t*>(content.data()), content.size()});
    }

    /// Makes a file of `size` bytes, of which only `head` and `tail` (its last bytes) take space.
    std::u16string WriteSparse(const std::u16string& name, std::uint64_t size,
                               std::string_view head, std::string_view tail) const {
        MakeSparseFile(root_ / name, size, head, tail);
        return Path(name);
    }

    /// Makes folders within each other until the path has at least `length` units, and gives it.
    std::u16string MakeDeepFolder(std::size_t length) {
#ifdef _WIN32
        const std::u16string prefix = u"\\\\?\\"; // leads the library's calls beyond the limit
#else
        const std::u16string prefix;
#endif
        std::filesystem::path deep = prefix + root_.u16string();
        while (deep.u16string().size() < length + prefix.size()) {
            deep /= u"\u65E5\u672C " + std::u16string(60, u'x');
            std::filesystem::create_directory(deep);
            deep_.push_back(deep);
        }
        return deep.u16string().substr(prefix.size());
    }

    /// Content of a file; empty when there is none.
    std::string Read(const std::u16string& name) const {
        std::ostringstream content;
        content << std::ifstream(root_ / name, std::ios::binary).rdbuf();
        return content.str();
    }

    /// Names of all that is in the folder.
    std::set<std::u16string> Names() const {
        std::set<std::u16string> names;
        for (const auto& entry : std::filesystem::directory_iterator(root_))
            names.insert(entry.path().filename().u16string());
        return names;
    }

private:
    std::filesystem::path root_;
    std::vector<std::filesystem::path> deep_; ///< folders within each other
};

} // namespace kvx
