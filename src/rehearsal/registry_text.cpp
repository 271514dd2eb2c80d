#include "rehearsal/registry_text.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>

#include "base/text_functions.h"
#include "rehearsal/entry_text.h"
#include "rehearsal/machine_format.h"

using platform::RegistryRoot;

namespace {

struct RootName {
    const char* name;
    RegistryRoot root;
};

constexpr RootName kRoots[] = {{"HKCR", RegistryRoot::kClassesRoot},
                               {"HKCU", RegistryRoot::kCurrentUser},
                               {"HKLM", RegistryRoot::kLocalMachine},
                               {"HKU", RegistryRoot::kUsers}};

enum class Form { kText, kNumber, kBytes };

struct TypeName {
    const char* name;
    std::uint32_t type;
    Form form;
    std::size_t size = 0;  // of a number, in bytes
};

constexpr TypeName kTypes[] = {
    {"string", platform::kRegString, Form::kText},     {"expand", platform::kRegExpandString, Form::kText},
    {"multi", platform::kRegMultiString, Form::kText}, {"dword", platform::kRegDword, Form::kNumber, 4},
    {"qword", platform::kRegQword, Form::kNumber, 8},  {"binary", platform::kRegBinary, Form::kBytes},
    {"none", platform::kRegNone, Form::kBytes},
};

constexpr std::string_view kDigits = "0123456789abcdef";

std::string bytesOf(std::uint64_t number, std::size_t size) {
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i) {
        bytes += static_cast<char>(number >> (8 * i));
    }
    return bytes;
}

std::uint64_t numberOf(std::string_view bytes) {
    std::uint64_t number = 0;
    for (std::size_t i = bytes.size(); i > 0; --i) {
        number = number << 8U | static_cast<unsigned char>(bytes[i - 1]);
    }
    return number;
}

std::string readNumber(const std::string& text, std::size_t size, int line) {
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    const std::uint64_t most =
        size == 4 ? std::numeric_limits<std::uint32_t>::max() : std::numeric_limits<std::uint64_t>::max();
    if (error != std::errc() || stop != end || number > most) {
        failAtLine(line, "\"" + text + "\" is no number from 0 to " + std::to_string(most));
    }
    return bytesOf(number, size);
}

std::string readBytes(const std::string& text, int line) {
    std::string bytes;
    const std::string digits = OUtils::toLowerAscii(text);
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        const std::size_t high = kDigits.find(digits[i]);
        const std::size_t low = i + 1 < digits.size() ? kDigits.find(digits[i + 1]) : std::string_view::npos;
        if (high == std::string_view::npos || low == std::string_view::npos) {
            failAtLine(line, "bytes are pairs of the digits 0 to 9 and a to f, without blanks");
        }
        bytes += static_cast<char>(high * 16 + low);
    }
    return bytes;
}

std::string hexOf(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        text += kDigits[static_cast<unsigned char>(byte) >> 4U];
        text += kDigits[static_cast<unsigned char>(byte) & 15U];
    }
    return text.empty() ? "\"\"" : text;
}

platform::RegistryValue readValue(EntryReader& reader, int line) {
    const std::string word = reader.takeText({" "});
    const auto* const type = std::ranges::find(kTypes, word, &TypeName::name);
    if (type == std::end(kTypes)) {
        failAtLine(
            line, "\"" + word + "\" is no type: there are string, expand, multi, dword, qword, binary, none");
    }
    if (!reader.take(" ")) {
        failAtLine(line, "the value is missing; an empty one is \"\"");
    }
    const std::string text = reader.takeText({});
    switch (type->form) {
        case Form::kNumber:
            return {type->type, readNumber(text, type->size, line)};
        case Form::kBytes:
            return {type->type, readBytes(text, line)};
        case Form::kText:
            break;
    }
    return {type->type, text};
}

}  // namespace

RegistryEntry readRegistryEntry(const NumberedLine& line, platform::RegistryView view) {
    EntryReader reader(line.text, line.number);
    const std::string key = reader.takeText({MachineFormat::kOf, MachineFormat::kIs});
    const std::size_t end = std::min(key.find('\\'), key.size());
    const auto* const root = std::ranges::find(kRoots, key.substr(0, end), &RootName::name);
    if (root == std::end(kRoots) || end + 1 >= key.size()) {
        failAtLine(line.number, "\"" + key + "\" is no key, such as HKLM\\Software\\Product");
    }
    if (key.size() > MachineFormat::kMostPathBytes) {
        failAtLine(line.number, "this key is too long");
    }
    RegistryEntry entry{root->root, view, key.substr(end + 1), std::nullopt, {}};
    if (reader.isAtEnd()) {
        return entry;
    }
    if (!reader.take(MachineFormat::kOf)) {
        failAtLine(line.number, "\" : \" and the name of a value are missing; that of the default is \"\"");
    }
    entry.name = reader.takeText({MachineFormat::kIs});
    if (!reader.take(MachineFormat::kIs)) {
        failAtLine(line.number, "\" = \", a type and a value are missing");
    }
    entry.value = readValue(reader, line.number);
    return entry;
}

std::string registryKeyText(RegistryRoot root, std::string_view path) {
    const auto* const name = std::ranges::find(kRoots, root, &RootName::root);
    return std::string(name->name) + "\\" + std::string(path);
}

std::string registryNameText(std::string_view keyText, std::string_view name) {
    const bool isAmbiguous = keyText.find(MachineFormat::kIs) != std::string_view::npos;
    return (isAmbiguous ? quotedText(keyText) : entryText(keyText, MachineFormat::kOf)) +
           std::string(MachineFormat::kOf) + entryText(name, MachineFormat::kIs);
}

std::string registryValueText(const platform::RegistryValue& value) {
    for (const TypeName& type : kTypes) {
        const bool isWhole = type.form != Form::kNumber || value.data.size() == type.size;
        if (type.type != value.type || !isWhole) {
            continue;
        }
        const std::string data = type.form == Form::kNumber  ? std::to_string(numberOf(value.data))
                                 : type.form == Form::kBytes ? hexOf(value.data)
                                                             : entryText(value.data, "");
        return std::string(type.name) + " " + data;
    }
    return "type " + std::to_string(value.type) + " " + hexOf(value.data);
}
