#include "exercised.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <mutex>

#include <gtest/gtest.h>

namespace kvx::test {
namespace {

// Lines of the file: "known", kind, name; or "used", kind, name, test. Parted by TABs.
class Record final : public testing::EmptyTestEventListener {
public:
    explicit Record(const std::filesystem::path& path)
        : file_(path, std::ios::app | std::ios::binary) {}

    void Add(const Use& use) {
        const std::lock_guard lock(mutex_);
        used_.insert(use);
    }

    void OnTestProgramStart(const testing::UnitTest&) override {
        for (const auto& [kind, name] : AllThereIs())
            file_ << "known\t" << kind << '\t' << name << '\n';
        file_.flush();
    }

    // What a soak does at random says nothing about any single thing.
    void OnTestEnd(const testing::TestInfo& test) override {
        const std::lock_guard lock(mutex_);
        const std::string suite = test.test_suite_name();
        if (test.result()->Passed() && suite.find("Soak") == suite.npos) {
            for (const auto& [kind, name] : used_)
                file_ << "used\t" << kind << '\t' << name << '\t' << suite << '.' << test.name()
                      << '\n';
            file_.flush();
        }
        used_.clear();
    }

private:
    std::ofstream file_;
    std::mutex mutex_;
    std::set<Use> used_; ///< by the test that runs
};

// The framework owns it. Null when nobody wants the list.
Record* const record = [] {
    const wchar_t* path = ::_wgetenv(L"KIVRA_EXERCISED");
    Record* const listener = path == nullptr ? nullptr : std::make_unique<Record>(path).release();
    if (listener != nullptr) testing::UnitTest::GetInstance()->listeners().Append(listener);
    return listener;
}();

} // namespace

void Used(const Use& use) {
    if (record != nullptr) record->Add(use);
}

} // namespace kvx::test
