// Files whose calls a test scripts one by one. Without a script they succeed and do nothing, or
// find nothing.
#pragma once

#include "platform/file_layer.h"

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <string>

namespace kvx {

class MockFileLayer : public FileLayer {
public:
    MOCK_METHOD(std::unique_ptr<ReadableFile>, OpenForReading, (const std::u16string&, ErrorCode&),
                (override));
    MOCK_METHOD(std::unique_ptr<WritableFile>, OpenForWriting, (const std::u16string&, ErrorCode&),
                (override));
    MOCK_METHOD(std::unique_ptr<WritableFile>, CreateForWriting,
                (const std::u16string&, ErrorCode&), (override));
    MOCK_METHOD(std::optional<std::u16string>, MakeTempFile,
                (const std::u16string&, std::u16string_view, ErrorCode&), (override));
    MOCK_METHOD(FileResult, MoveOver, (const std::u16string&, const std::u16string&), (override));
    MOCK_METHOD(FileResult, Delete, (const std::u16string&), (override));
};

class MockWritableFile : public WritableFile {
public:
    MOCK_METHOD(FileResult, Seek, (std::uint64_t), (override));
    MOCK_METHOD(FileResult, Write, (ByteView, std::uint64_t&), (override));
    MOCK_METHOD(FileResult, SetEnd, (), (override));
    MOCK_METHOD(FileResult, Flush, (), (override));
};

} // namespace kvx
