#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "engine/changes/change.h"
#include "engine/changes/directory_change.h"

class ProductDescription;

// The numbers are fixed.
enum class ShortcutType : std::int32_t { kSymlink = 1, kFile = 2, kUrl = 3, kUninstall = 4 };

// A shortcut as the description asks for it. An empty icon path means none.
struct ShortcutRequest {
    ShortcutType type = ShortcutType::kFile;
    std::string linkPath;
    std::string target;
    std::string description;
    std::string arguments;
    std::string startPath;
    std::string iconPath;
};

// Links to programs, to pages and to the uninstaller, and symbolic links: the groups `Shortcuts`. A shortcut
// that fails ends its group; the next group is still visited. Windows makes no symbolic links: there that
// type fails.
class ShortcutChange : public Change {
public:
    static constexpr std::string_view kDefaultDescription = "Tandrel Group installer shortcut";

    // Both are borrowed and outlive this object.
    ShortcutChange(const ChangeContext& context, const ProductDescription& product)
        : context_(context), product_(product), directories_(context) {}

    bool apply() override;
    // False when the shortcut is there and stays. One that has gone is only reported.
    bool undo(const LogRecord& record) override;

    // Makes a shortcut and reports it. The fields of its record; none after a failure. A path that the action
    // log can't hold as it is fails, since what it would make could not be taken back. The product gives the
    // command of an uninstall shortcut. Fails, too, when the record can't be written to `log`; without a log
    // the caller keeps it.
    static std::optional<std::string> add(const platform::Platform& machine,
                                          const ProductDescription& product, Report& report,
                                          const DebugLog& debugLog, const ShortcutRequest& shortcut,
                                          ActionLogWriter* log = nullptr);
    // Deletes the file that the fields of a record name, and never a directory. Fields of another kind are
    // true without any action.
    static bool remove(platform::FileSystem& files, Report& report, std::string_view fields);

private:
    // A child of the group with its texts as they are to be used.
    struct Element {
        ShortcutRequest shortcut;
        std::string directory;
    };

    bool applyChild(std::int32_t node);
    std::optional<Element> readElement(std::int32_t node);
    bool prepareDirectory(const std::string& directory);
    bool applyRequest(const ShortcutRequest& shortcut);

    ChangeContext context_;
    const ProductDescription& product_;
    DirectoryChange directories_;
};
