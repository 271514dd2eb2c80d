#include "engine/changes/file_looks.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "engine/changes/file_change.h"
#include "engine/changes/former_state.h"
#include "engine/line_reader.h"
#include "engine/product_state.h"
#include "platform/error_text.h"
#include "platform/file_system.h"
#include "platform/path_identity.h"
#include "platform/written_path.h"

namespace {

namespace Format = ActionLogFormat;
using platform::PathKind;

constexpr std::string_view kSeparators = "/\\";

RecordLook lookAt(std::string_view path) {
    RecordLook look;
    look.name = platform::writtenPath(path);
    look.identity = platform::pathIdentity(path);
    return look;
}

void setState(RecordLook& look, PlaceState state, std::string_view note) {
    look.state = state;
    look.note = note;
}

// For what isn't a file or a link. True when the kind settles it.
bool takeOtherKind(RecordLook& look, PathKind kind) {
    switch (kind) {
        case PathKind::kNothing:
            look.state = PlaceState::kAbsent;
            return true;
        case PathKind::kDirectory:
            setState(look, PlaceState::kDifferent, "a directory is in its place");
            return true;
        case PathKind::kOther:
            setState(look, PlaceState::kUnreadable, "it is no file, or this user may not look at it");
            return true;
        case PathKind::kFile:
        case PathKind::kLink:
            return false;
    }
    return false;
}

class FileLooker : public RecordLooker {
public:
    explicit FileLooker(const LookContext& context)
        : files_(context.machine.files), written_(context.written) {}

    void look(const LogRecord& record, std::vector<RecordLook>& outLooks) override {
        const std::string_view replaced = FileChange::replacedFile(record);
        const std::string_view path = replaced.empty() ? FileChange::createdFile(record) : replaced;
        if (path.empty()) {
            return;
        }
        RecordLook look = lookAt(path);
        look.rule = replaced.empty() ? UndoRule::kRemoves : UndoRule::kRestoresUnchanged;
        const PathKind kind = files_.kindOf(path);
        if (kind == PathKind::kLink) {
            lookAtLink(record, path, look);
        } else if (!takeOtherKind(look, kind)) {
            lookAtFile(record, path, look);
        }
        outLooks.push_back(std::move(look));
    }

private:
    // No installed file is a link.
    void lookAtLink(const LogRecord& record, std::string_view path, RecordLook& look) {
        look.content = FormerState::ofFile(files_, path);
        setState(look, FormerState::isOfLink(record.former) ? PlaceState::kOthers : PlaceState::kDifferent,
                 "a link is in its place");
    }

    void lookAtFile(const LogRecord& record, std::string_view path, RecordLook& look) {
        int status = 0;
        const std::optional<Md5Digest> digest = digestOfFile(files_, path, &status);
        if (!digest) {
            setState(look, PlaceState::kUnreadable, platform::errorText(status));
            return;
        }
        look.content = md5Text(*digest);
        if (!record.former.empty() && look.content == record.former) {
            look.state = PlaceState::kOthers;
        } else if (!written_.knows(path)) {
            setState(look, PlaceState::kAsMade, "what was installed isn't known");
        } else {
            look.state = written_.holds(path, *digest) ? PlaceState::kAsMade : PlaceState::kDifferent;
        }
    }

    platform::FileSystem& files_;
    const WrittenSums& written_;
};

class DirectoryLooker : public RecordLooker {
public:
    explicit DirectoryLooker(const LookContext& context) : files_(context.machine.files) {}

    // The levels that the undo would remove.
    void look(const LogRecord& record, std::vector<RecordLook>& outLooks) override {
        std::int32_t levels = OUtils::textToInteger(std::string(firstLogField(record.fields)));
        std::string_view path = nextLogField(record.fields);
        if (levels < 1 || path.empty()) {
            return;
        }
        if (!OUtils::isSeparator(path.back())) {
            outLooks.push_back(lookAtLevel(path));
        }
        for (; levels > 0; --levels) {
            path = path.substr(0, std::min(path.find_last_of(kSeparators), path.size()));
            if (path.empty() || path.find_first_of(kSeparators) == std::string_view::npos) {
                break;
            }
            outLooks.push_back(lookAtLevel(path));
        }
    }

private:
    RecordLook lookAtLevel(std::string_view path) {
        RecordLook look = lookAt(path);
        look.rule = UndoRule::kRemovesIfUnused;
        const PathKind kind = files_.kindOf(path);
        if (kind == PathKind::kDirectory) {
            look.state = PlaceState::kAsMade;
            addEntries(path, look);
        } else if (kind == PathKind::kFile || kind == PathKind::kLink) {
            setState(look, PlaceState::kDifferent,
                     kind == PathKind::kFile ? "a file is in its place" : "a link is in its place");
        } else {
            takeOtherKind(look, kind);
        }
        return look;
    }

    void addEntries(std::string_view path, RecordLook& look) {
        std::vector<platform::DirectoryEntry> entries;
        if (const int status = files_.list(path, entries); status != 0) {
            setState(look, PlaceState::kUnreadable, platform::errorText(status));
        }
        for (const platform::DirectoryEntry& entry : entries) {
            look.holds.push_back(platform::pathIdentity(std::string(path) + '\\' + entry.name));
        }
    }

    platform::FileSystem& files_;
};

class ShortcutLooker : public RecordLooker {
public:
    explicit ShortcutLooker(const LookContext& context) : files_(context.machine.files) {}

    void look(const LogRecord& record, std::vector<RecordLook>& outLooks) override {
        const std::string_view path = nextLogField(record.fields);
        if (firstLogField(record.fields) != Format::kCreate || path.empty()) {
            return;
        }
        RecordLook look = lookAt(path);
        if (!takeOtherKind(look, files_.kindOf(path))) {
            const bool isOthers =
                !record.former.empty() && FormerState::ofFile(files_, path) == record.former;
            look.state = isOthers ? PlaceState::kOthers : PlaceState::kAsMade;
        }
        outLooks.push_back(std::move(look));
    }

private:
    platform::FileSystem& files_;
};

}  // namespace

std::unique_ptr<RecordLooker> makeFileLooker(const LookContext& context) {
    return std::make_unique<FileLooker>(context);
}

std::unique_ptr<RecordLooker> makeDirectoryLooker(const LookContext& context) {
    return std::make_unique<DirectoryLooker>(context);
}

std::unique_ptr<RecordLooker> makeShortcutLooker(const LookContext& context) {
    return std::make_unique<ShortcutLooker>(context);
}
