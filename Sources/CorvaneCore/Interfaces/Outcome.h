// What an operation that is waited for with a QFuture came to: a value, or the exception that ended it. A future loses
// the type of an exception that is thrown through it; an outcome keeps it. A plain value; thread-safe as such.
#pragma once

#include <exception>
#include <type_traits>
#include <utility>
#include <variant>

namespace corvane {

template<typename T>
class Outcome {
public:
    Outcome(T value) : m_content(std::move(value)) {}
    Outcome(std::exception_ptr error) : m_content(std::move(error)) {}

    // The value; throws the exception if there is none.
    [[nodiscard]] const T& value() const {
        if (const auto* error = std::get_if<std::exception_ptr>(&m_content))
            std::rethrow_exception(*error);
        return std::get<T>(m_content);
    }

private:
    std::variant<T, std::exception_ptr> m_content;
};

// The outcome of calling a function.
template<typename Function>
[[nodiscard]] auto outcomeOf(Function function) -> Outcome<std::decay_t<decltype(function())>> {
    try {
        return function();
    } catch (...) {
        return std::current_exception();
    }
}

} // namespace corvane
