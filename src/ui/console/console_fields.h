#pragma once

#include <cstdint>
#include <memory>

#include "contracts/input_provider.h"
#include "contracts/install_exchange_info.h"

struct DialogFieldDesc;

// Each input field of a page is one question on the console.
namespace ConsoleInterface {

// Handles one field once: asks, and stores the answer in the field's variable.
class ConsoleField {
public:
    virtual ~ConsoleField() = default;
    // A field whose condition is false is skipped, and its variable keeps its value. An interrupted
    // question is stored like any other answer.
    void process(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine);

protected:
    virtual void ask(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) = 0;
};

// One of several items; stores its index.
class RadioField : public ConsoleField {
protected:
    void ask(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) override;
};

// Stores 0 for no and 1 for yes.
class CheckboxField : public ConsoleField {
protected:
    void ask(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) override;
};

// A path: separators become `\`, doubled and trailing ones are dropped.
class DirectoryField : public ConsoleField {
protected:
    void ask(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) override;
};

// A text without white space at its ends.
class PlainTextField : public ConsoleField {
protected:
    void ask(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) override;
};

// A text that isn't shown while it is typed, stored as it is.
class PasswordField : public ConsoleField {
protected:
    void ask(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) override;
};

// The handler for a field's type; null for a type that has no question on the console.
std::unique_ptr<ConsoleField> makeField(std::int32_t type);

}  // namespace ConsoleInterface
