// A token store whose answer, and the time it takes, the test can decide. Set `answer` before it is used.
#pragma once

#include "Support/Fakes/InMemoryTokenStore.h"

#include <functional>

namespace corvane {

class FakeTokenStore final : public InMemoryTokenStore {
public:
    // In the place of the stored Hugging Face token, on the reader's thread; also what no honest store keeps.
    std::function<std::optional<QString>()> answer;

    [[nodiscard]] std::optional<QString> readHuggingFaceToken() override {
        return answer ? answer() : InMemoryTokenStore::readHuggingFaceToken();
    }
};

} // namespace corvane
