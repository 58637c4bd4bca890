// A value or the reason why there is none: how every step of reading a pattern file answers.
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace kvx {

/// Either `value` is set, or `error` holds the message for the user.
template <typename T>
struct Outcome {
    std::optional<T> value;
    std::u16string error;

    static Outcome Success(T result) { return {std::move(result), {}}; }
    static Outcome Failure(std::u16string message) { return {std::nullopt, std::move(message)}; }
    explicit operator bool() const { return value.has_value(); }
};

} // namespace kvx
